// SPDX-License-Identifier: Apache-2.0
#include "platform/print/shape_drawing.h"

#include <cmath>
#include <type_traits>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/drawing_budget.h"
#include "platform/print/ellipse_frame.h"
#include "platform/print/text_placement.h"

namespace {

constexpr int kDone = 1;

/// Whether a transformation is invertible enough to draw with; otherwise shapes have no area.
bool IsUsable(const ORVMathAffine2D& map) {
    const double determinant = map.Determinant();
    return map.IsFinite() && determinant != 0.0 && std::isfinite(determinant);
}

/// Start point of an open primitive; nullopt when it has no points.
std::optional<ORVMathPoint2D> StartOf(const ORVPrtPointList& primitive) {
    if (primitive.GetPoints().empty()) return std::nullopt;
    return primitive.GetPoints().front();
}

std::optional<ORVMathPoint2D> StartOf(const ORVPrtEllipticalArcElt& arc) {
    return ORVEllipseFrame::FromRadii(arc.GetCenter(), arc.GetHorzRadius(), arc.GetVertRadius(),
                                      static_cast<double>(arc.GetSlope()))
        .At(static_cast<double>(arc.GetStartAngle()));
}

}  // namespace

int ORVPrintShapeDrawing::Draw(const ORVPrtGraphicPrimitiveElt& primitive, const ORVMathAffine2D& outer) {
    outer_ = outer;
    int result = kDone;
    VisitPrimitive(primitive, [&](const auto& one) { result = DrawAs(one); });
    return result;
}

int ORVPrintShapeDrawing::Flush() {
    if (!pending_) return kDone;
    outline_.EndContour();
    const ORVPrintStroke* stroke = paints_.MakeStroke(pending_->stroke);
    const ORVMathAffine2D toPage = pending_->toPage;
    if (followsOrigins_) generator_.NoteOrigin(pending_->origin);
    pending_.reset();
    return DrawPath(toPage, nullptr, stroke);
}

template <class Primitive>
const ORVPrintFill* ORVPrintShapeDrawing::FillOf(const Primitive& primitive) {
    return ORVFills(primitive.GetDrawStyle()) ? paints_.MakeFill(primitive.GetFillAttributes()) : nullptr;
}

template <class Primitive>
const ORVPrintStroke* ORVPrintShapeDrawing::StrokeOf(const Primitive& primitive) {
    return ORVStrokes(primitive.GetDrawStyle()) ? paints_.MakeStroke(primitive.GetStrokeAttributes())
                                                : nullptr;
}

int ORVPrintShapeDrawing::DrawPath(const ORVMathAffine2D& toPage, const ORVPrintFill* fill,
                                   const ORVPrintStroke* stroke) {
    if (path_.IsEmpty() || (!fill && !stroke)) return kDone;
    if (const int result = budget_.TakePath(page_, path_, toPage, stroke); result != kDone) return result;
    return generator_.DrawShape({path_, toPage, fill, stroke, id_});
}

template <class Primitive>
int ORVPrintShapeDrawing::AddOpen(const Primitive& primitive, bool isCurve) {
    const ORVMathAffine2D toPage = MapOf(primitive);
    const std::optional<ORVMathPoint2D> start = StartOf(primitive);
    if (!start || !IsUsable(toPage)) return kDone;

    // Consecutive parts of an outline are stroked as one line, so that joins are drawn and dashes continue.
    // Two adjacent runs of straight segments are separate outlines.
    const bool continues =
        pending_ && (isCurve || pending_->endsWithCurve) && primitive.GetTransformAttributes().IsEmpty() &&
        pending_->stroke == primitive.GetStrokeAttributes() && outline_.ContinuesAt(*start);
    if (!continues) {
        if (const int result = Flush(); result != kDone) return result;
        path_.Clear();
        outline_.SetMap({});
        outline_.SetScale(toPage.Enlargement());
        pending_ = PendingLine{primitive.GetStrokeAttributes(), toPage, isCurve, {origin_, origin_}};
    }
    outline_.Add(primitive);
    pending_->origin.last = origin_;
    pending_->endsWithCurve = isCurve;
    // A primitive with its own transformation must not be continued by the next one.
    return primitive.GetTransformAttributes().IsEmpty() ? kDone : Flush();
}

template <class Primitive>
int ORVPrintShapeDrawing::DrawOutline(const Primitive& primitive) {
    if (const int result = Flush(); result != kDone) return result;
    const ORVPrintFill* fill = nullptr;
    const ORVPrintStroke* stroke = nullptr;
    if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) {
        fill = FillOf(primitive);
        stroke = StrokeOf(primitive);
    } else {
        stroke = paints_.MakeStroke(primitive.GetStrokeAttributes());
    }
    if (!fill && !stroke) return kDone;
    const ORVMathAffine2D toPage = MapOf(primitive);
    if (!IsUsable(toPage)) return kDone;
    path_.Clear();
    outline_.SetMap({});
    outline_.SetScale(toPage.Enlargement());
    outline_.Add(primitive);
    outline_.EndContour();
    NoteOrigin();
    return DrawPath(toPage, fill, stroke);
}

int ORVPrintShapeDrawing::DrawAs(const ORVPrtClosedFigureElt& figure) {
    if (const int result = Flush(); result != kDone) return result;
    const ORVMathAffine2D toPage = MapOf(figure);
    path_.Clear();
    outline_.SetScale(toPage.Enlargement());
    for (const ORVPrtGraphicPrimitiveElt* child : figure.GetChildren()) {
        if (const int result = budget_.TakePrimitive(*child); result != kDone) return result;
        if (child->GetKind() != ORVPrtKind::kRegion) continue;
        const auto& region = static_cast<const ORVPrtClosedFigureRegionElt&>(*child);
        if (const int result = AddRegion(region); result != kDone) return result;
    }
    if (!IsUsable(toPage)) return kDone;
    const ORVPrintFill* fill = FillOf(figure);
    const ORVPrintStroke* stroke = StrokeOf(figure);
    NoteOrigin();
    return DrawPath(toPage, fill, stroke);
}

int ORVPrintShapeDrawing::AddRegion(const ORVPrtClosedFigureRegionElt& region) {
    const ORVMathAffine2D regionMap = region.GetTransformAttributes().GetAffine();
    for (const ORVPrtGraphicPrimitiveElt* piece : region.GetChildren()) {
        if (const int result = budget_.TakePrimitive(*piece); result != kDone) return result;
        VisitPrimitive(*piece, [&]<class Primitive>(const Primitive& one) {
            if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>) {
                outline_.SetMap(one.GetTransformAttributes().IsEmpty()
                                    ? regionMap
                                    : regionMap * one.GetTransformAttributes().GetAffine());
                outline_.Add(one);
            }
        });
    }
    outline_.EndContour();
    return kDone;
}

int ORVPrintShapeDrawing::DrawAs(const ORVPrtTextElt& text) {
    if (const int result = Flush(); result != kDone) return result;
    const ORVPrintFill* fill = FillOf(text);
    const ORVPrintStroke* stroke = StrokeOf(text);
    const ORVMathAffine2D map = MapOf(text);
    if (text.GetText().IsEmpty() || (!fill && !stroke) || !IsUsable(map)) return kDone;

    const ORVTextLayout layout = ORVLayoutText(text.GetText(), ORVTextStyleOf(text));
    if (!layout.isSet) return ORVPrintModelRender::kTextNotSet;
    const ORVTextPlacement placement = ORVPlaceText(text, {layout.advance, layout.ascent, layout.descent});
    const ORVMathAffine2D toPage = map * placement.toModel;
    if (layout.runs.empty() || !IsUsable(toPage)) return kDone;
    if (const int result = budget_.TakeText(page_, placement.box.MappedBy(toPage), layout, stroke);
        result != kDone)
        return result;
    const bool clipped = MakeClip(text, map);
    NoteOrigin();
    return generator_.DrawText(
        {layout, text.GetText(), toPage, fill, stroke, clipped ? &clip_ : nullptr, id_});
}

bool ORVPrintShapeDrawing::MakeClip(const ORVPrtTextElt& text, const ORVMathAffine2D& map) {
    const ORVPrtTextElt::ClippingBox* box = text.GetClippingBox();
    if (!box) return false;
    clip_.Clear();
    const double top = page_.GetMirrorHeight() - box->y;
    const ORVMathPoint2D corners[]{{box->x, top},
                                   {box->x + box->width, top},
                                   {box->x + box->width, top - box->height},
                                   {box->x, top - box->height}};
    for (const ORVMathPoint2D& corner : corners) {
        const ORVMathPoint2D mapped = map(corner);
        if (!std::isfinite(mapped.x) || !std::isfinite(mapped.y)) return false;
        if (clip_.IsEmpty())
            clip_.MoveTo(mapped);
        else
            clip_.LineTo(mapped);
    }
    clip_.Close();
    return true;
}

int ORVPrintShapeDrawing::DrawAs(const ORVPrtBitmapImageElt& bitmap) {
    if (const int result = Flush(); result != kDone) return result;
    const ORVPixelImage* image = bitmap.GetPixelImage();
    double width = 0.0, height = 0.0;
    bitmap.GetSize(width, height);
    if (!image || !(width > 0.0) || !(height > 0.0)) return kDone;
    const ORVEllipseFrame axes = ORVEllipseFrame::FromRadii(bitmap.GetOrigin(), width, height,
                                                            static_cast<double>(bitmap.GetOrientation()));
    // The image's upper left corner is one height above the origin of its box; rows run downwards from there.
    const ORVMathAffine2D toModel{axes.first.x,
                                  -axes.second.x,
                                  axes.first.y,
                                  -axes.second.y,
                                  axes.center.x + axes.second.x,
                                  axes.center.y + axes.second.y};
    const ORVMathAffine2D toPage = MapOf(bitmap) * toModel;
    if (!IsUsable(toPage)) return kDone;
    const ORVMathBox2D square{0.0, 1.0, 0.0, 1.0};
    if (const int result = budget_.TakeBox(page_, square.MappedBy(toPage)); result != kDone) return result;
    NoteOrigin();
    return generator_.DrawImage({*image, toPage, id_});
}
