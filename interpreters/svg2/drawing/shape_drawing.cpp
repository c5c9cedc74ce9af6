// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/tree/shapes.h"

namespace svg2 {

bool Drawing::HasMarkers(ElementIndex element, const Style& style) const {
    if (style.markerStart.empty() && style.markerMid.empty() && style.markerEnd.empty()) return false;
    return IsShape(scene_.GetDocument()[element].tag);
}

void Drawing::DrawShape(ElementIndex element, const Style& style, const DrawState& state) {
    if (style.visibility != Visibility::kVisible) return;
    const bool hasMarkers = !state.isWithinClip && HasMarkers(element, style);
    ORVPrintPath path;
    std::vector<std::size_t> segmentEnds;
    if (!AddOutline(scene_, element, style, state.viewport, path, hasMarkers ? &segmentEnds : nullptr))
        return;
    if (state.isWithinClip) {
        const ORVPrintFill fill{.colour = {}, .evenOdd = style.clipIsEvenOdd, .isCrisp = style.hasCrispEdges};
        Do(generator_.DrawShape({path, state.toPage, &fill, nullptr}));
        return;
    }
    const double opacity = PaintOpacity(element, style);
    if (!hasMarkers) {
        DrawOutline(element, path, style, state, opacity);
        return;
    }
    if (style.paintOrder[2] == PaintPart::kMarkers) {
        DrawOutline(element, path, style, state, opacity);
        DrawMarkers(path, segmentEnds, style, state);
        return;
    }
    for (const PaintPart part : style.paintOrder) {
        if (part == PaintPart::kMarkers) {
            DrawMarkers(path, segmentEnds, style, state);
            continue;
        }
        Style only = style;
        (part == PaintPart::kFill ? only.stroke : only.fill) = {};
        DrawOutline(element, path, only, state, opacity);
    }
}

namespace {

ORVPrintFill FillOf(const MadePaint& paint, const Style& style) {
    return {.colour = paint.colour,
            .evenOdd = style.fillIsEvenOdd,
            .gradient = paint.GetGradient(),
            .isCrisp = style.hasCrispEdges,
            .isExact = true};
}

}  // namespace

void Drawing::DrawPart(PaintPart part, const ORVPrintPath& path, const Style& style, const DrawState& state,
                       const MadePaint& fill, const ORVPrintStroke* stroke, const MadePaint* pattern) {
    using Kind = MadePaint::Kind;
    if (part == PaintPart::kFill) {
        if (fill.kind == Kind::kPattern) {
            DrawPattern(path, state.toPage, style.fillIsEvenOdd, fill, state);
        } else if (fill.kind != Kind::kNothing) {
            const ORVPrintFill made = FillOf(fill, style);
            Do(generator_.DrawShape({path, state.toPage, &made, nullptr}));
        }
        return;
    }
    if (!stroke) return;
    if (pattern)
        DrawPatternedStroke(path, style, state, *stroke, *pattern);
    else
        DrawStroke(path, style, state, *stroke);
}

void Drawing::DrawStroke(const ORVPrintPath& path, const Style& style, const DrawState& state,
                         const ORVPrintStroke& stroke) {
    if (!style.hasNonScalingStroke) {
        Do(generator_.DrawShape({path, state.toPage, nullptr, &stroke}));
        return;
    }
    // A non-scaling stroke: its width is in units of the root's viewport.
    const ORVMathAffine2D toRoot = Inverse(rootToPage_) * state.toPage;
    ORVPrintPath mapped = path;
    for (ORVMathPoint2D& point : mapped.points) point = toRoot(point);
    Do(generator_.DrawShape({mapped, rootToPage_, nullptr, &stroke}));
}

// Masks the pattern with the stroke.
void Drawing::DrawPatternedStroke(const ORVPrintPath& path, const Style& style, const DrawState& state,
                                  ORVPrintStroke stroke, const MadePaint& pattern) {
    ORVPrintLayer layer;
    layer.hasMask = true;
    layer.box = page_;
    if (!Do(generator_.BeginLayer(layer))) return;
    ORVPrintMask mask;
    mask.kind = ORVPrintMask::Kind::kOpacity;
    mask.box = page_;
    stroke.colour = {};
    if (generator_.BeginMask(mask) != ORVPrintGenerator::kSkipMask) {
        DrawStroke(path, style, state, stroke);
        Do(generator_.EndMask());
    }
    ORVPrintPath area;
    const ORVMathAffine2D toUser = Inverse(state.toPage);
    const ORVMathBox2D shown = MapBox(toUser, page_);
    AddRectangle(area, {shown.xMin, shown.yMin, shown.xMax - shown.xMin, shown.yMax - shown.yMin});
    DrawPattern(area, state.toPage, false, pattern, state);
    Do(generator_.EndLayer());
}

void Drawing::DrawOutline(ElementIndex element, const ORVPrintPath& path, const Style& style,
                          const DrawState& state, double opacity) {
    const PaintPlace place{style, state.viewport, state.toPage, state.context,
                           [&path] { return BoxOf(path); }};
    MadePaint fill, strokePaint;
    paints_.MakeFill(place, opacity, fill);
    MadePen pen;
    ORVPrintStroke& stroke = pen.stroke;
    bool hasStroke = false;
    if (style.stroke.kind != Paint::Kind::kNone) {
        double dashScale = 1.0;
        if (style.dashes) {
            const double stated = scene_.NumberOf(element, Name::kPathLength, 0.0);
            if (stated > 0.0) dashScale = LengthOf(path) / stated;
        }
        paints_.MakeStroke(place, opacity, strokePaint);
        hasStroke = strokePaint.kind != MadePaint::Kind::kNothing &&
                    paints_.MakePen(style, state.viewport, dashScale, pen);
        stroke.colour = strokePaint.colour;
        stroke.gradient = strokePaint.GetGradient();
    }
    const bool fillIsFirst = [&] {
        for (const PaintPart part : style.paintOrder)
            if (part != PaintPart::kMarkers) return part == PaintPart::kFill;
        return true;
    }();
    const MadePaint* const patternedStroke =
        hasStroke && strokePaint.kind == MadePaint::Kind::kPattern ? &strokePaint : nullptr;
    const bool isPlain = fill.kind != MadePaint::Kind::kPattern && !patternedStroke &&
                         !style.hasNonScalingStroke && fillIsFirst;
    if (isPlain) {
        const bool hasFill = fill.kind != MadePaint::Kind::kNothing;
        if (!hasFill && !hasStroke) return;
        const ORVPrintFill made = FillOf(fill, style);
        ORVPrintShape shape{path, state.toPage, hasFill ? &made : nullptr, hasStroke ? &stroke : nullptr};
        if (keepsIdentifiers_) shape.id = scene_.GetDocument().ValueOf(element, Name::kId);
        Do(generator_.DrawShape(shape));
        return;
    }
    for (const PaintPart part : style.paintOrder)
        if (part != PaintPart::kMarkers)
            DrawPart(part, path, style, state, fill, hasStroke ? &stroke : nullptr, patternedStroke);
}

}  // namespace svg2
