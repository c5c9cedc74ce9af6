// SPDX-License-Identifier: Apache-2.0
#include "library/dump/model_dump.h"

#include <cstddef>
#include <type_traits>
#include <vector>

#include "library/dump/json_writer.h"
#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/visit_primitive.h"
#include "platform/print/primitive_count.h"
#include "platform/visualization/fonts/ORVFont.h"

namespace {

/// A container being walked.
struct Frame {
    const ORVPrtChildList* children;
    std::size_t next;
};

/// The children to dump; those of patterns are not included.
const ORVPrtChildList* DumpedChildren(const ORVPrtGraphicPrimitiveElt& primitive) {
    const bool isOpaque =
        primitive.GetKind() == ORVPrtKind::kPattern || primitive.GetKind() == ORVPrtKind::kOther;
    return isOpaque ? nullptr : primitive.GetChildList();
}

void DumpNumbers(JsonWriter& json, std::initializer_list<double> numbers) {
    json.BeginArray();
    for (const double number : numbers) json.Number(number);
    json.EndArray();
}

void DumpPoint(JsonWriter& json, std::string_view key, const ORVMathPoint2D& point) {
    json.Key(key);
    DumpNumbers(json, {point.x, point.y});
}

void DumpNumber(JsonWriter& json, std::string_view key, double number) {
    json.Key(key);
    json.Number(number);
}

void DumpInteger(JsonWriter& json, std::string_view key, long long number) {
    json.Key(key);
    json.Integer(number);
}

void DumpText(JsonWriter& json, std::string_view key, std::string_view text) {
    json.Key(key);
    json.Text(text);
}

void DumpImageSize(JsonWriter& json, std::string_view key, const ORVPixelImage* image) {
    json.Key(key);
    if (!image) return json.Null();
    json.BeginObject();
    DumpInteger(json, "width", image->GetWidth());
    DumpInteger(json, "height", image->GetHeight());
    json.EndObject();
}

void DumpIdentity(JsonWriter& json, const ORVPrtGraphicPrimitiveElt& primitive) {
    DumpText(json, "class", primitive.IsA());
    DumpText(json, "id", primitive.GetID());
    DumpText(json, "description", primitive.GetDescription());
    DumpText(json, "title", primitive.GetTitle());
}

void DumpStroke(JsonWriter& json, const ORVPrtStrokeAttributes& stroke) {
    json.Key("stroke");
    json.BeginObject();
    DumpInteger(json, "colour", stroke.GetStrokeColourIndex());
    DumpInteger(json, "transparency", stroke.GetStrokeColourTransparency());
    DumpInteger(json, "type", stroke.GetStrokeType());
    json.Key("dash");
    json.BeginArray();
    for (const float length : stroke.GetStrokeDashPattern()) json.Number(static_cast<double>(length));
    json.EndArray();
    DumpNumber(json, "width", stroke.GetStrokeWidth());
    DumpInteger(json, "style", stroke.GetStrokeStyle());
    DumpInteger(json, "cap", stroke.GetStrokeCap());
    DumpInteger(json, "join", stroke.GetStrokeJoin());
    json.EndObject();
}

void DumpFill(JsonWriter& json, const ORVPrtFillAttributes& fill) {
    json.Key("fill");
    json.BeginObject();
    DumpInteger(json, "style", fill.GetFillStyle());
    DumpInteger(json, "rule", fill.GetFillRule());
    DumpInteger(json, "colour", fill.GetFillColourIndex());
    DumpInteger(json, "transparency", fill.GetFillColourTransparency());
    DumpImageSize(json, "patternImage", fill.GetFillPatternImage());
    json.EndObject();
}

void DumpOperation(JsonWriter& json, const ORVPrtTransformOperation& operation) {
    const auto dump = [&json](std::string_view name, std::initializer_list<double> numbers) {
        json.BeginArray();
        json.Text(name);
        for (const double number : numbers) json.Number(number);
        json.EndArray();
    };
    switch (operation.kind) {
        case ORVPrtTransformOperation::kTranslate: return dump("translate", {operation.a, operation.b});
        case ORVPrtTransformOperation::kScaleX: return dump("scaleX", {operation.a});
        case ORVPrtTransformOperation::kScaleY: return dump("scaleY", {operation.a});
        case ORVPrtTransformOperation::kRotate: return dump("rotate", {operation.a});
        case ORVPrtTransformOperation::kSkewX: return dump("skewX", {operation.a});
        case ORVPrtTransformOperation::kSkewY: return dump("skewY", {operation.a});
        case ORVPrtTransformOperation::kMatrix:
            return dump("matrix", {operation.a, operation.b, operation.c, operation.d});
    }
}

void DumpPoints(JsonWriter& json, const ORVPrtPointList& list) {
    json.Key("points");
    json.BeginArray();
    for (const ORVMathPoint2D& point : list.GetPoints()) DumpNumbers(json, {point.x, point.y});
    json.EndArray();
}

// Attributes of individual classes, one overload each.

void DumpOwn(JsonWriter& json, const ORVPrtRectangleElt& rectangle) {
    json.Key("points");
    json.BeginArray();
    for (const ORVMathPoint2D& point : {rectangle.GetFirstPoint(), rectangle.GetSecondPoint()})
        DumpNumbers(json, {point.x, point.y});
    json.EndArray();
}

void DumpOwn(JsonWriter& json, const ORVPrtCircleElt& circle) {
    DumpPoint(json, "center", circle.GetCenter());
    DumpNumber(json, "radius", circle.GetRadius());
}

void DumpOwn(JsonWriter& json, const ORVPrtEllipseElt& ellipse) {
    DumpPoint(json, "center", ellipse.GetCenter());
    DumpNumber(json, "horzRadius", ellipse.GetHorzRadius());
    DumpNumber(json, "vertRadius", ellipse.GetVertRadius());
    DumpNumber(json, "slope", static_cast<double>(ellipse.GetSlope()));
}

void DumpOwn(JsonWriter& json, const ORVPrtEllipticalArcElt& arc) {
    DumpPoint(json, "center", arc.GetCenter());
    DumpNumber(json, "horzRadius", arc.GetHorzRadius());
    DumpNumber(json, "vertRadius", arc.GetVertRadius());
    DumpNumber(json, "startAngle", static_cast<double>(arc.GetStartAngle()));
    DumpNumber(json, "endAngle", static_cast<double>(arc.GetEndAngle()));
    DumpNumber(json, "slope", static_cast<double>(arc.GetSlope()));
}

void DumpOwn(JsonWriter& json, const ORVPrtLineElt& line) {
    DumpPoint(json, "start", line.GetStartPoint());
    DumpPoint(json, "end", line.GetEndPoint());
}

void DumpOwn(JsonWriter& json, const ORVPrtTextElt& text) {
    const ORVPrtTextAttributes& attributes = text.GetTextAttributes();
    json.Key("text");
    json.BeginObject();
    json.Key("font");
    if (attributes.GetFont())
        json.Text(attributes.GetFont()->GetName());
    else
        json.Null();
    DumpInteger(json, "weight", attributes.GetWeight());
    DumpNumber(json, "height", attributes.GetHeight());
    DumpInteger(json, "anchor", attributes.GetAnchor());
    DumpNumber(json, "slant", static_cast<double>(attributes.GetSlant()));
    DumpNumber(json, "direction", static_cast<double>(attributes.GetDirection()));
    DumpNumber(json, "extraSpacing", attributes.GetExtraSpacing());
    DumpNumber(json, "expansion", attributes.GetExpansion());
    DumpInteger(json, "writingMode", attributes.GetWritingMode());
    DumpInteger(json, "textVersion", attributes.GetTextVersion());
    json.EndObject();
    DumpPoint(json, "position", text.GetPosition());
    DumpText(json, "string", text.GetText());
    json.Key("clippingBox");
    if (const ORVPrtTextElt::ClippingBox* box = text.GetClippingBox())
        DumpNumbers(json, {box->x, box->y, box->width, box->height});
    else
        json.Null();
}

void DumpOwn(JsonWriter& json, const ORVPrtBitmapImageElt& bitmap) {
    double width = 0.0, height = 0.0;
    bitmap.GetSize(width, height);
    DumpPoint(json, "origin", bitmap.GetOrigin());
    json.Key("size");
    DumpNumbers(json, {width, height});
    DumpNumber(json, "orientation", static_cast<double>(bitmap.GetOrientation()));
    DumpImageSize(json, "pixelImage", bitmap.GetPixelImage());
}

void DumpOwn(JsonWriter& json, const ORVPrtGroupElt& group) {
    const ORVPrintLinkURI& link = group.GetGroupAttributes().GetLinkURI();
    json.Key("link");
    json.BeginObject();
    DumpText(json, "elementId", link.GetElementId());
    DumpText(json, "baseURL", link.GetBaseURL());
    DumpInteger(json, "show", link.GetLinkShow());
    json.EndObject();
}

void DumpOwn(JsonWriter& json, const ORVPrtSymbolElt& symbol) {
    json.Key("viewBox");
    if (const ORVPrtViewBox* box = symbol.GetViewBox())
        DumpNumbers(json, {box->minX, box->minY, box->width, box->height});
    else
        json.Null();
}

void DumpOwn(JsonWriter& json, const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    DumpPoint(json, "origin", page.GetOrigin());
    json.Key("size");
    DumpNumbers(json, {width, height});
    DumpInteger(json, "units", page.GetUnits());
    const ORVMath2x2Matrix& matrix = page.GetMatrix();
    json.Key("matrix");
    DumpNumbers(json, {matrix.m11, matrix.m12, matrix.m21, matrix.m22});
    json.Key("colours");
    json.BeginArray();
    if (const ORVPrtColourTable* table = page.GetColourTable())
        for (const ORVPrtColourTable::Colour& colour : table->GetColours()) {
            json.BeginArray();
            for (const std::uint8_t channel : {colour.red, colour.green, colour.blue}) json.Integer(channel);
            json.EndArray();
        }
    json.EndArray();
}

template <class Primitive>
void DumpOwn(JsonWriter& /*json*/, const Primitive& /*primitive*/) {}

/// Dumps everything but the children.
void DumpAttributes(JsonWriter& json, const ORVPrtGraphicPrimitiveElt& primitive) {
    DumpIdentity(json, primitive);
    VisitPrimitive(primitive, [&json]<class Primitive>(const Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) {
            DumpInteger(json, "drawStyle", one.GetDrawStyle());
            DumpFill(json, one.GetFillAttributes());
        }
        if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>)
            DumpStroke(json, one.GetStrokeAttributes());
        if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>) {
            json.Key("transform");
            json.BeginArray();
            for (const ORVPrtTransformOperation& operation : one.GetTransformAttributes().GetOperations())
                DumpOperation(json, operation);
            json.EndArray();
        }
        if constexpr (std::is_base_of_v<ORVPrtPointList, Primitive>) DumpPoints(json, one);
        DumpOwn(json, one);
    });
}

}  // namespace

bool IsTooLargeToDump(const ORVPrtModel& model) {
    std::uint64_t distinct = 0;
    for (const ORVPrtImageElt* page : *model.GetImages()) ORVCountPrimitives(*page, 1, distinct);
    const std::uint64_t most =
        ORVPrintLimits::Get(ORVPrintLimit::kRepeats) + (1 + kGrowthPerPrimitive) * distinct;
    std::uint64_t count = 0;
    std::vector<Frame> open;
    for (const ORVPrtImageElt* page : *model.GetImages()) {
        open.push_back({page->GetChildList(), 0});
        while (!open.empty()) {
            Frame& frame = open.back();
            if (frame.next == frame.children->size()) {
                open.pop_back();
                continue;
            }
            const ORVPrtGraphicPrimitiveElt& child = *(*frame.children)[frame.next++];
            count += ORVDrawingWork(child);
            if (count > most) return true;
            if (const ORVPrtChildList* children = DumpedChildren(child)) open.push_back({children, 0});
        }
    }
    return false;
}

ORVFailure WhyNotDumped(const ORVPrtModel& model) {
    const ORVFailure built = model.GetBudget().GetFailure();
    if (!built.limit && IsTooLargeToDump(model)) return ORVFailure::OfLimit(ORVPrintLimit::kRepeats);
    return built;
}

void DumpPages(const ORVPrtModel& model, JsonWriter& json) {
    std::vector<Frame> open;
    // Writes a primitive up to its children, which the loop below continues with; closes a primitive without
    // children.
    const auto begin = [&](const ORVPrtGraphicPrimitiveElt& primitive) {
        json.BeginObject();
        DumpAttributes(json, primitive);
        if (const ORVPrtChildList* children = DumpedChildren(primitive)) {
            json.Key("children");
            json.BeginArray();
            open.push_back({children, 0});
        } else {
            json.EndObject();
        }
    };
    json.BeginArray();
    for (const ORVPrtImageElt* page : *model.GetImages()) {
        json.LineBreak();
        begin(*page);
        while (!open.empty()) {
            Frame& frame = open.back();
            if (frame.next < frame.children->size()) {
                begin(*(*frame.children)[frame.next++]);
                continue;
            }
            open.pop_back();
            json.EndArray();
            json.EndObject();
        }
    }
    json.EndArray();
}
