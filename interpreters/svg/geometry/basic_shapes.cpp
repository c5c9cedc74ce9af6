// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/basic_shapes.h"

#include <vector>

#include "interpreters/svg/geometry/markers.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/point_list.h"
#include "interpreters/svg/values/transform_list.h"
#include "platform/model/ORVPrtCircleElt.h"
#include "platform/model/ORVPrtEllipseElt.h"
#include "platform/model/ORVPrtLineElt.h"
#include "platform/model/ORVPrtPolygonElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/model/ORVPrtRectangleElt.h"

namespace {

template <class Primitive>
void PushPaint(const SvgDrawState& state, Primitive& primitive) {
    primitive.SetDrawStyle(state.drawStyle);
    primitive.SetStrokeAttributes(state.stroke);
    primitive.SetFillAttributes(state.fill);
}

// Reads the attributes that all shapes have besides their geometry.
template <SvgElementAccess Element>
void ReadShapeTexts(const SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& shape) {
    ReadIdentifier(element, shape);
    const std::string_view transform = element.Attribute(AttributeName::kTransform).text;
    if (!transform.empty()) ApplyTransformList(state, transform, &shape);
    ReadDescriptions(element, shape);
}

// Reads a point in page coordinates; an absent coordinate is 0 in the drawing's own coordinates.
template <SvgElementAccess Element>
ORVMathPoint2D ReadPoint(const SvgDrawState& state, const Element& element, AttributeName xName,
                         AttributeName yName) {
    double x = 0.0, y = 0.0;
    ReadHorizontalAttribute(state, element, xName, x);
    ReadVerticalCoordinateAttribute(state, element, yName, y);
    return {x, y};
}

template <SvgElementAccess Element>
double ReadHorizontal(const SvgDrawState& state, const Element& element, AttributeName name) {
    double length = 0.0;
    ReadHorizontalAttribute(state, element, name, length);
    return length;
}

template <SvgElementAccess Element>
double ReadVertical(const SvgDrawState& state, const Element& element, AttributeName name) {
    double length = 0.0;
    ParseVerticalLength(state, element.Attribute(name).text, length);
    return length;
}

// Reads the vertices of a polyline or polygon and places its markers.
template <SvgElementAccess Element, class Primitive>
void ReadPointList(const SvgDrawState& state, const Element& element, Primitive& primitive,
                   ORVPrtGraphicPrimitiveElt& container) {
    const ResolvedMarkers markers = ResolveMarkers(state);
    const std::string_view value = element.Attribute(AttributeName::kPoints).text;
    if (value.empty()) return;
    std::vector<double> numbers;
    if (!ReadCoordinateNumbers(state, value, numbers) && primitive.GetBudget())
        primitive.GetBudget()->Refuse(ORVPrintLimit::kPathPoints);
    element.Forget(AttributeName::kPoints);
    if (numbers.size() >= 2) primitive.SetPoints(numbers.data(), numbers.size() / 2);
    PlaceMarkers(state, markers, numbers, container);
}

}  // namespace

template <SvgElementAccess Element>
int HandleRect(SvgDrawState state, const Element& element, ORVPrtRectangleElt* rectangle,
               ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!rectangle) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithoutMarkers);
    PushPaint(state, *rectangle);
    ReadShapeTexts(state, element, *rectangle);

    const ORVMathPoint2D corner = ReadPoint(state, element, AttributeName::kX, AttributeName::kY);
    const double width = ReadHorizontal(state, element, AttributeName::kWidth);
    const double height = ReadVertical(state, element, AttributeName::kHeight);
    // Y points up if flipped.
    const double oppositeY = state.yFlip == 1 ? corner.y - height : corner.y + height;
    rectangle->SetPoints(corner, {corner.x + width, oppositeY});
    return kDone;
}

template <SvgElementAccess Element>
int HandleCircle(SvgDrawState state, const Element& element, ORVPrtCircleElt* circle,
                 ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!circle) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithoutMarkers);
    PushPaint(state, *circle);
    ReadShapeTexts(state, element, *circle);

    circle->SetCenter(ReadPoint(state, element, AttributeName::kCx, AttributeName::kCy));
    double radius = 0.0;
    ReadLengthAttribute(state, element, AttributeName::kR, radius);
    circle->SetRadius(radius);
    return kDone;
}

template <SvgElementAccess Element>
int HandleEllipse(SvgDrawState state, const Element& element, ORVPrtEllipseElt* ellipse,
                  ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!ellipse) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithoutMarkers);
    PushPaint(state, *ellipse);
    ReadShapeTexts(state, element, *ellipse);

    ellipse->SetCenter(ReadPoint(state, element, AttributeName::kCx, AttributeName::kCy));
    ellipse->SetHorzRadius(ReadHorizontal(state, element, AttributeName::kRx));
    ellipse->SetVertRadius(ReadVertical(state, element, AttributeName::kRy));
    return kDone;
}

template <SvgElementAccess Element>
int HandleLine(SvgDrawState state, const Element& element, ORVPrtLineElt* line,
               ORVPrtGraphicPrimitiveElt& container) {
    if (!line) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithMarkers);
    line->SetStrokeAttributes(state.stroke);
    ReadShapeTexts(state, element, *line);

    const ORVMathPoint2D start = ReadPoint(state, element, AttributeName::kX1, AttributeName::kY1);
    const ORVMathPoint2D end = ReadPoint(state, element, AttributeName::kX2, AttributeName::kY2);
    line->SetStartPoint(start);
    line->SetEndPoint(end);
    const double vertices[] = {start.x, start.y, end.x, end.y};
    PlaceMarkers(state, ResolveMarkers(state), vertices, container);
    return kDone;
}

template <SvgElementAccess Element>
int HandlePolyline(SvgDrawState state, const Element& element, ORVPrtPolylineElt* polyline,
                   ORVPrtGraphicPrimitiveElt& container) {
    if (!polyline) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithMarkers);
    polyline->SetStrokeAttributes(state.stroke);
    ReadShapeTexts(state, element, *polyline);
    ReadPointList(state, element, *polyline, container);
    return kDone;
}

template <SvgElementAccess Element>
int HandlePolygon(SvgDrawState state, const Element& element, ORVPrtPolygonElt* polygon,
                  ORVPrtGraphicPrimitiveElt& container) {
    if (!polygon) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithMarkers);
    PushPaint(state, *polygon);
    ReadShapeTexts(state, element, *polygon);
    ReadPointList(state, element, *polygon, container);
    return kDone;
}

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are names of a function and of a type.
#define ORV_INSTANTIATE_SHAPE(handler, Primitive)                                                        \
    template int handler(SvgDrawState, const DomElementAccess&, Primitive*, ORVPrtGraphicPrimitiveElt&); \
    template int handler(SvgDrawState, const LightElementAccess&, Primitive*, ORVPrtGraphicPrimitiveElt&)
// NOLINTEND(bugprone-macro-parentheses)
ORV_INSTANTIATE_SHAPE(HandleRect, ORVPrtRectangleElt);
ORV_INSTANTIATE_SHAPE(HandleCircle, ORVPrtCircleElt);
ORV_INSTANTIATE_SHAPE(HandleEllipse, ORVPrtEllipseElt);
ORV_INSTANTIATE_SHAPE(HandleLine, ORVPrtLineElt);
ORV_INSTANTIATE_SHAPE(HandlePolyline, ORVPrtPolylineElt);
ORV_INSTANTIATE_SHAPE(HandlePolygon, ORVPrtPolygonElt);
#undef ORV_INSTANTIATE_SHAPE
