// SPDX-License-Identifier: Apache-2.0
#include "tests/support/model_json.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string_view>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/visit_primitive.h"
#include "platform/visualization/fonts/ORVFont.h"

namespace {

using Json = nlohmann::json;

Json Number(double value) { return std::isfinite(value) ? Json(value) : Json(nullptr); }
Json Number(float value) { return Number(static_cast<double>(value)); }
Json Text(const ORVUnicodeString& text) { return std::string(text.GetView()); }
Json Point(const ORVMathPoint2D& p) { return {Number(p.x), Number(p.y)}; }
Json Box(const ORVPrtViewBox& b) {
    return {Number(b.minX), Number(b.minY), Number(b.width), Number(b.height)};
}
Json Image(const ORVPixelImage* image) {
    if (!image) return nullptr;
    return {{"width", image->GetWidth()}, {"height", image->GetHeight()}};
}

Json Stroke(const ORVPrtStrokeAttributes& set) {
    Json dash = Json::array();
    for (const float length : set.GetStrokeDashPattern()) dash.push_back(Number(length));
    return {{"colour", set.GetStrokeColourIndex()},
            {"transparency", set.GetStrokeColourTransparency()},
            {"type", set.GetStrokeType()},
            {"dash", std::move(dash)},
            {"width", Number(set.GetStrokeWidth())},
            {"style", set.GetStrokeStyle()},
            {"cap", set.GetStrokeCap()},
            {"join", set.GetStrokeJoin()}};
}

Json Fill(const ORVPrtFillAttributes& set) {
    return {{"style", set.GetFillStyle()},
            {"rule", set.GetFillRule()},
            {"colour", set.GetFillColourIndex()},
            {"transparency", set.GetFillColourTransparency()},
            {"patternImage", Image(set.GetFillPatternImage())}};
}

Json TextSet(const ORVPrtTextAttributes& set) {
    return {{"font", set.GetFont() ? Text(set.GetFont()->GetName()) : Json(nullptr)},
            {"weight", set.GetWeight()},
            {"height", Number(set.GetHeight())},
            {"anchor", set.GetAnchor()},
            {"slant", Number(set.GetSlant())},
            {"direction", Number(set.GetDirection())},
            {"extraSpacing", Number(set.GetExtraSpacing())},
            {"expansion", Number(set.GetExpansion())},
            {"writingMode", set.GetWritingMode()},
            {"textVersion", set.GetTextVersion()}};
}

Json Operation(const ORVPrtTransformOperation& o) {
    switch (o.kind) {
        case ORVPrtTransformOperation::kTranslate: return {"translate", Number(o.a), Number(o.b)};
        case ORVPrtTransformOperation::kScaleX: return {"scaleX", Number(o.a)};
        case ORVPrtTransformOperation::kScaleY: return {"scaleY", Number(o.a)};
        case ORVPrtTransformOperation::kRotate: return {"rotate", Number(o.a)};
        case ORVPrtTransformOperation::kSkewX: return {"skewX", Number(o.a)};
        case ORVPrtTransformOperation::kSkewY: return {"skewY", Number(o.a)};
        case ORVPrtTransformOperation::kMatrix:
            return {"matrix", Number(o.a), Number(o.b), Number(o.c), Number(o.d)};
    }
    return nullptr;
}

Json Points(const std::vector<ORVMathPoint2D>& points) {
    Json list = Json::array();
    for (const ORVMathPoint2D& p : points) list.push_back(Point(p));
    return list;
}

void AddGeometry(Json& out, const ORVPrtRectangleElt& one) {
    out["points"] = {Point(one.GetFirstPoint()), Point(one.GetSecondPoint())};
}
void AddGeometry(Json& out, const ORVPrtCircleElt& one) {
    out["center"] = Point(one.GetCenter());
    out["radius"] = Number(one.GetRadius());
}
void AddGeometry(Json& out, const ORVPrtEllipseElt& one) {
    out["center"] = Point(one.GetCenter());
    out["horzRadius"] = Number(one.GetHorzRadius());
    out["vertRadius"] = Number(one.GetVertRadius());
    out["slope"] = Number(one.GetSlope());
}
void AddGeometry(Json& out, const ORVPrtEllipticalArcElt& one) {
    out["center"] = Point(one.GetCenter());
    out["horzRadius"] = Number(one.GetHorzRadius());
    out["vertRadius"] = Number(one.GetVertRadius());
    out["startAngle"] = Number(one.GetStartAngle());
    out["endAngle"] = Number(one.GetEndAngle());
    out["slope"] = Number(one.GetSlope());
}
void AddGeometry(Json& out, const ORVPrtLineElt& one) {
    out["start"] = Point(one.GetStartPoint());
    out["end"] = Point(one.GetEndPoint());
}
void AddGeometry(Json& out, const ORVPrtPolylineElt& one) { out["points"] = Points(one.GetPoints()); }
void AddGeometry(Json& out, const ORVPrtPolygonElt& one) { out["points"] = Points(one.GetPoints()); }
void AddGeometry(Json& out, const ORVPrtPolyCubicBezierElt& one) { out["points"] = Points(one.GetPoints()); }
void AddGeometry(Json& out, const ORVPrtPolyQuadraticBezierElt& one) {
    out["points"] = Points(one.GetPoints());
}
void AddGeometry(Json& out, const ORVPrtTextElt& one) {
    out["position"] = Point(one.GetPosition());
    out["string"] = Text(one.GetText());
    const auto* clip = one.GetClippingBox();
    out["clippingBox"] =
        clip ? Json{Number(clip->x), Number(clip->y), Number(clip->width), Number(clip->height)}
             : Json(nullptr);
}
void AddGeometry(Json& out, const ORVPrtBitmapImageElt& one) {
    double width = 0.0, height = 0.0;
    one.GetSize(width, height);
    out["origin"] = Point(one.GetOrigin());
    out["size"] = {Number(width), Number(height)};
    out["orientation"] = Number(one.GetOrientation());
    out["pixelImage"] = Image(one.GetPixelImage());
}
void AddGeometry(Json& out, const ORVPrtGroupElt& one) {
    const ORVPrintLinkURI& link = one.GetGroupAttributes().GetLinkURI();
    out["link"] = {{"elementId", Text(link.GetElementId())},
                   {"baseURL", Text(link.GetBaseURL())},
                   {"show", link.GetLinkShow()}};
}
void AddGeometry(Json& out, const ORVPrtSymbolElt& one) {
    out["viewBox"] = one.GetViewBox() ? Box(*one.GetViewBox()) : Json(nullptr);
}
void AddGeometry(Json& /*out*/, const ORVPrtGraphicPrimitiveElt& /*one*/) {}

Json Describe(const ORVPrtGraphicPrimitiveElt& primitive) {
    Json out = {{"class", primitive.IsA()},
                {"id", Text(primitive.GetID())},
                {"description", Text(primitive.GetDescription())},
                {"title", Text(primitive.GetTitle())}};
    VisitPrimitive(primitive, [&out]<class Primitive>(const Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) {
            out["drawStyle"] = one.GetDrawStyle();
            out["fill"] = Fill(one.GetFillAttributes());
        }
        if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>)
            out["stroke"] = Stroke(one.GetStrokeAttributes());
        if constexpr (std::is_same_v<ORVPrtTextElt, Primitive>)
            out["text"] = TextSet(one.GetTextAttributes());
        if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>) {
            Json operations = Json::array();
            for (const auto& operation : one.GetTransformAttributes().GetOperations())
                operations.push_back(Operation(operation));
            out["transform"] = std::move(operations);
        }
        AddGeometry(out, one);
    });
    return out;
}

Json DescribeTree(const ORVPrtGraphicPrimitiveElt& primitive) {
    Json out = Describe(primitive);
    const ORVPrtChildList* children = primitive.GetChildList();
    if (!children || primitive.GetKind() == ORVPrtKind::kPattern) return out;
    Json& list = out["children"] = Json::array();
    for (const ORVPrtGraphicPrimitiveElt* child : *children) list.push_back(DescribeTree(*child));
    return out;
}

Json DescribePage(const ORVPrtImageElt& page) {
    Json out = DescribeTree(page);
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    const ORVMath2x2Matrix& m = page.GetMatrix();
    out["origin"] = Point(page.GetOrigin());
    out["size"] = {Number(width), Number(height)};
    out["units"] = page.GetUnits();
    out["matrix"] = {Number(m.m11), Number(m.m12), Number(m.m21), Number(m.m22)};
    Json& colours = out["colours"] = Json::array();
    if (page.GetColourTable())
        for (const auto& c : page.GetColourTable()->GetColours()) colours.push_back({c.red, c.green, c.blue});
    return out;
}

class Comparison {
public:
    std::string lines;

    void Compare(const Json& expected, const Json& actual, const std::string& path, bool angle) {
        if (expected.is_number() && actual.is_number()) {
            const double a = expected.get<double>(), b = actual.get<double>();
            const double tolerance = angle ? 1e-6 : 1e-9;
            if (std::abs(a - b) > tolerance * std::max({1.0, std::abs(a), std::abs(b)}))
                Report(path, expected, actual);
        } else if (expected.is_object() && actual.is_object()) {
            for (const auto& [key, value] : expected.items()) {
                if (!actual.contains(key)) {
                    Report(path + "." + key, value, "(missing)");
                } else if (key != "font") {
                    Compare(value, actual[key], path + "." + key, IsAngle(key));
                }
            }
            for (const auto& [key, value] : actual.items())
                if (!expected.contains(key)) Report(path + "." + key, "(missing)", value);
        } else if (expected.is_array() && actual.is_array()) {
            if (expected.size() != actual.size()) Report(path + ".length", expected.size(), actual.size());
            const bool angles = angle || (!expected.empty() && expected[0].is_string() &&
                                          IsAngle(expected[0].get<std::string>()));
            for (std::size_t i = 0; i < std::min(expected.size(), actual.size()); ++i)
                Compare(expected[i], actual[i], path + "[" + std::to_string(i) + "]", angles);
        } else if (expected != actual) {
            Report(path, expected, actual);
        }
    }

private:
    static bool IsAngle(std::string_view name) {
        for (const std::string_view angle : {"startAngle", "endAngle", "slope", "slant", "direction",
                                             "orientation", "rotate", "skewX", "skewY"})
            if (name == angle) return true;
        return false;
    }

    void Report(const std::string& path, const Json& expected, const Json& actual) {
        if (++count_ > 10) return;
        lines += path + ": expected " + expected.dump().substr(0, 200) + ", is " +
                 actual.dump().substr(0, 200) + "\n";
    }

    int count_ = 0;
};

}  // namespace

nlohmann::json ModelToJson(const ORVPrtModel& model, int result) {
    Json pages = Json::array();
    for (const ORVPrtImageElt* page : *model.GetImages()) pages.push_back(DescribePage(*page));
    return {{"result", result}, {"pages", std::move(pages)}};
}

std::string DifferencesOf(const nlohmann::json& expected, const nlohmann::json& actual) {
    Comparison comparison;
    comparison.Compare(expected, actual, "$", false);
    return comparison.lines;
}
