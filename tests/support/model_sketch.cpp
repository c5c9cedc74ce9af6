// SPDX-License-Identifier: Apache-2.0
#include "tests/support/model_sketch.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/visit_primitive.h"

namespace {

std::string Number(double value) {
    if (std::isnan(value)) return "nan";
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", value == 0.0 ? 0.0 : value);
    return text;
}

std::string Pair(double a, double b) { return Number(a) + "," + Number(b); }
std::string Point(const ORVMathPoint2D& p) { return Pair(p.x, p.y); }

std::string Points(const std::vector<ORVMathPoint2D>& points) {
    std::string text;
    for (const ORVMathPoint2D& p : points) text += (text.empty() ? "" : " ") + Point(p);
    return text;
}

std::string Hex(const ORVPrtColourTable& colours, unsigned int index, unsigned int opacity) {
    const ORVPrtColourTable::Colour c = colours.GetColour(index);
    char text[32];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", c.red, c.green, c.blue);
    return opacity == 255 ? text : text + ("@" + std::to_string(opacity));
}

bool IsMirror(const std::vector<ORVPrtTransformOperation>& operations, std::size_t at) {
    return at + 1 < operations.size() && operations[at].kind == ORVPrtTransformOperation::kTranslate &&
           operations[at].a == 0.0 && operations[at + 1].kind == ORVPrtTransformOperation::kScaleY &&
           operations[at + 1].a == -1.0;
}

std::string Operation(const ORVPrtTransformOperation& o) {
    switch (o.kind) {
        case ORVPrtTransformOperation::kTranslate: return "t(" + Pair(o.a, o.b) + ")";
        case ORVPrtTransformOperation::kScaleX: return "sx(" + Number(o.a) + ")";
        case ORVPrtTransformOperation::kScaleY: return "sy(" + Number(o.a) + ")";
        case ORVPrtTransformOperation::kRotate: return "r(" + Number(o.a) + ")";
        case ORVPrtTransformOperation::kSkewX: return "kx(" + Number(o.a) + ")";
        case ORVPrtTransformOperation::kSkewY: return "ky(" + Number(o.a) + ")";
        case ORVPrtTransformOperation::kMatrix:
            return "m(" + Number(o.a) + " " + Number(o.b) + " " + Number(o.c) + " " + Number(o.d) + ")";
    }
    return "?";
}

std::string Transform(const std::vector<ORVPrtTransformOperation>& operations) {
    std::string text;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        if (!text.empty()) text += ' ';
        if (IsMirror(operations, i)) {
            text += "~" + Number(operations[i++].b);
        } else {
            text += Operation(operations[i]);
        }
    }
    return text;
}

const char* KindOf(const ORVPrtGraphicPrimitiveElt& primitive) {
    switch (primitive.GetKind()) {
        case ORVPrtKind::kOther: return primitive.IsA();
        case ORVPrtKind::kImage: return "page";
        case ORVPrtKind::kGroup: return "g";
        case ORVPrtKind::kSymbol: return "symbol";
        case ORVPrtKind::kPattern: return "pattern";
        case ORVPrtKind::kClosedFigure: return "figure";
        case ORVPrtKind::kRegion: return "region";
        case ORVPrtKind::kRectangle: return "rect";
        case ORVPrtKind::kCircle: return "circle";
        case ORVPrtKind::kEllipse: return "ellipse";
        case ORVPrtKind::kEllipticalArc: return "arc";
        case ORVPrtKind::kLine: return "line";
        case ORVPrtKind::kPolyline: return "polyline";
        case ORVPrtKind::kPolygon: return "polygon";
        case ORVPrtKind::kPolyCubicBezier: return "cubic";
        case ORVPrtKind::kPolyQuadraticBezier: return "quad";
        case ORVPrtKind::kText: return "text";
        case ORVPrtKind::kBitmapImage: return "image";
    }
    return "?";
}

std::string Geometry(const ORVPrtRectangleElt& p) {
    return "(" + Point(p.GetFirstPoint()) + " " + Point(p.GetSecondPoint()) + ")";
}
std::string Geometry(const ORVPrtCircleElt& p) {
    return "(" + Point(p.GetCenter()) + " " + Number(p.GetRadius()) + ")";
}
std::string Geometry(const ORVPrtEllipseElt& p) {
    return "(" + Point(p.GetCenter()) + " " + Pair(p.GetHorzRadius(), p.GetVertRadius()) +
           (p.GetSlope() == 0.0F ? "" : " slope" + Number(static_cast<double>(p.GetSlope()))) + ")";
}
std::string Geometry(const ORVPrtEllipticalArcElt& p) {
    const auto angle = [](float value) { return Number(std::round(static_cast<double>(value) * 1e5) / 1e5); };
    return "(" + Point(p.GetCenter()) + " " + Pair(p.GetHorzRadius(), p.GetVertRadius()) + " " +
           angle(p.GetStartAngle()) + ".." + angle(p.GetEndAngle()) +
           (p.GetSlope() == 0.0F ? "" : " slope" + angle(p.GetSlope())) + ")";
}
std::string Geometry(const ORVPrtLineElt& p) {
    return "(" + Point(p.GetStartPoint()) + " " + Point(p.GetEndPoint()) + ")";
}
std::string Geometry(const ORVPrtTextElt& p) {
    std::string text = "(" + Point(p.GetPosition()) + " '";
    text.append(p.GetText().GetView()).append("'");
    if (const auto* clip = p.GetClippingBox())
        text += " clip " + Pair(clip->x, clip->y) + " " + Pair(clip->width, clip->height);
    return text + ")";
}
std::string Geometry(const ORVPrtBitmapImageElt& p) {
    double width = 0.0, height = 0.0;
    p.GetSize(width, height);
    std::string text = "(" + Point(p.GetOrigin()) + " " + Number(width) + "x" + Number(height);
    if (const ORVPixelImage* image = p.GetPixelImage())
        text += " px" + std::to_string(image->GetWidth()) + "x" + std::to_string(image->GetHeight());
    if (p.GetOrientation() != 0.0F) text += " o" + Number(static_cast<double>(p.GetOrientation()));
    return text + ")";
}
std::string Geometry(const ORVPrtSymbolElt& p) {
    const ORVPrtViewBox* box = p.GetViewBox();
    if (!box) return {};
    return "<" + Number(box->minX) + " " + Number(box->minY) + " " + Number(box->width) + " " +
           Number(box->height) + ">";
}
std::string Geometry(const ORVPrtGroupElt& p) {
    const ORVPrintLinkURI& link = p.GetGroupAttributes().GetLinkURI();
    std::string text;
    if (!link.GetElementId().IsEmpty()) text.append("->#").append(link.GetElementId().GetView());
    if (!link.GetBaseURL().IsEmpty()) text.append("->").append(link.GetBaseURL().GetView());
    if (link.GetLinkShow() != kLinkShowUnset) text.append("!").append(std::to_string(link.GetLinkShow()));
    return text;
}
std::string Geometry(const ORVPrtGraphicPrimitiveElt& /*anything else*/) { return {}; }

std::string Stroke(const ORVPrtStrokeAttributes& stroke, const ORVPrtColourTable& colours) {
    std::string text =
        " stroke=" + Hex(colours, stroke.GetStrokeColourIndex(), stroke.GetStrokeColourTransparency());
    if (stroke.GetStrokeWidth() != 1.0) text += " w" + Number(stroke.GetStrokeWidth());
    if (stroke.GetStrokeCap() != kCapButt) text += " c" + std::to_string(stroke.GetStrokeCap());
    if (stroke.GetStrokeJoin() != kJoinMiter) text += " j" + std::to_string(stroke.GetStrokeJoin());
    if (stroke.GetStrokeType() == kLineUserDash) text += " d";
    const char* separator = "";
    for (const float length : stroke.GetStrokeDashPattern()) {
        text += separator + Number(static_cast<double>(length));
        separator = ",";
    }
    return text;
}

std::string Fill(const ORVPrtFillAttributes& fill, const ORVPrtColourTable& colours) {
    std::string text = " fill=" + Hex(colours, fill.GetFillColourIndex(), fill.GetFillColourTransparency());
    if (fill.GetFillRule() == kFillEvenOdd) text += " eo";
    if (fill.GetFillStyle() == kFillPattern) text += " pattern";
    if (const ORVPixelImage* image = fill.GetFillPatternImage())
        text += "(" + std::to_string(image->GetWidth()) + "x" + std::to_string(image->GetHeight()) + ")";
    return text;
}

std::string TextSet(const ORVPrtTextAttributes& set) {
    std::string text;
    if (set.GetHeight() != 12.0) text += " h" + Number(set.GetHeight());
    if (set.GetWeight() != kWeightNormal) text += " w" + std::to_string(set.GetWeight());
    if (set.GetAnchor() != kAnchorStartBaseline) text += " a" + std::to_string(set.GetAnchor());
    if (set.GetExtraSpacing() != 0.0) text += " s" + Number(set.GetExtraSpacing());
    if (set.GetWritingMode() != kLeftToRight) text += " m" + std::to_string(set.GetWritingMode());
    if (set.GetTextVersion() != 0) text += " v" + std::to_string(set.GetTextVersion());
    return text;
}

// Writes a tree without recursion, since it may be very deep.
class Writer {
public:
    explicit Writer(const ORVPrtColourTable* colours) : colours_(colours) {}

    std::string Write(const ORVPrtChildList& roots) {
        open_.push_back({&roots, 0});
        while (!open_.empty()) {
            Frame& frame = open_.back();
            if (frame.next == frame.children->size()) {
                open_.pop_back();
                if (!open_.empty()) text_ += '}';
                continue;
            }
            if (frame.next > 0) text_ += ' ';
            WriteOne(*(*frame.children)[frame.next++]);
        }
        return text_;
    }

private:
    struct Frame {
        const ORVPrtChildList* children;
        std::size_t next;
    };

    void WriteOne(const ORVPrtGraphicPrimitiveElt& primitive) {
        text_ += KindOf(primitive);
        if (!primitive.GetID().IsEmpty()) text_.append("#").append(primitive.GetID().GetView());
        if (!primitive.GetDescription().IsEmpty())
            text_.append("\"").append(primitive.GetDescription().GetView()).append("\"");
        if (!primitive.GetTitle().IsEmpty())
            text_.append("'").append(primitive.GetTitle().GetView()).append("'");
        VisitPrimitive(primitive, [this]<class Primitive>(const Primitive& one) {
            if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>)
                if (!one.GetTransformAttributes().IsEmpty())
                    text_ += "[" + Transform(one.GetTransformAttributes().GetOperations()) + "]";
            if constexpr (std::is_base_of_v<ORVPrtPointList, Primitive>) {
                text_ += "(" + Points(one.GetPoints()) + ")";
            } else {
                text_ += Geometry(one);
            }
            if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>)
                if (colours_)
                    text_ +=
                        ":" + std::to_string(one.GetDrawStyle()) + Fill(one.GetFillAttributes(), *colours_);
            if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>)
                if (colours_) text_ += Stroke(one.GetStrokeAttributes(), *colours_);
            if constexpr (std::is_same_v<ORVPrtTextElt, Primitive>)
                if (colours_) text_ += TextSet(one.GetTextAttributes());
        });
        if (const ORVPrtChildList* children = primitive.GetChildList()) {
            text_ += '{';
            open_.push_back({children, 0});
        }
    }

    const ORVPrtColourTable* colours_;
    std::vector<Frame> open_;
    std::string text_;
};

}  // namespace

std::string SketchOf(const ORVPrtGraphicPrimitiveElt& primitive) {
    return Writer(nullptr).Write({const_cast<ORVPrtGraphicPrimitiveElt*>(&primitive)});
}

std::string SketchOfChildren(const ORVPrtGraphicPrimitiveElt& container) {
    const ORVPrtChildList* children = container.GetChildList();
    return children ? Writer(nullptr).Write(*children) : std::string();
}

std::string PaintedSketchOfChildren(const ORVPrtImageElt& page) {
    return Writer(page.GetColourTable()).Write(page.GetChildren());
}
