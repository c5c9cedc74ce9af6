// SPDX-License-Identifier: Apache-2.0
#include "library/check/shape_checks.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/point_list.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

using enum FindingCode;

// The lengths of an element in its own coordinates, where y points down.
class Sizes {
public:
    Sizes(const ORVXmlNode& node, const SvgDrawState& state) : node_(node), state_(state) {}

    bool Has(AttributeName name) const {
        const std::string_view value = node_.Value(name);
        return !value.empty() && value != "auto";
    }
    double Across(AttributeName name) const {
        double length = 0.0;
        ParseHorizontalLength(state_, node_.Value(name), length);
        return length;
    }
    double Down(AttributeName name) const {
        double length = 0.0;
        ParseVerticalLength(state_, node_.Value(name), length);
        return length;
    }
    double Diagonal(AttributeName name) const {
        double length = 0.0;
        ParseLength(state_, node_.Value(name), length);
        return length;
    }

private:
    const ORVXmlNode& node_;
    const SvgDrawState& state_;
};

ORVMathBox2D BoxOf(double x, double y, double width, double height) {
    ORVMathBox2D box;
    box.Add({x, y});
    box.Add({x + width, y + height});
    return box;
}

void NoteSize(CheckContext& check, const NumberedElement& element, std::string message) {
    check.findings.Note(kShapeSize, element, {}, {}, std::move(message));
}

ORVMathBox2D CheckRect(CheckContext& check, const NumberedElement& element, const Sizes& sizes,
                       bool strokes) {
    const double width = sizes.Across(AttributeName::kWidth), height = sizes.Down(AttributeName::kHeight);
    if (width < 0.0 || height < 0.0)
        NoteSize(check, element, "its size is negative: other programs do not draw it");
    else if (strokes && (width == 0.0) != (height == 0.0))
        NoteSize(check, element, "has no area: other programs do not draw its outline");
    else if (strokes && width == 0.0)
        return {};
    return BoxOf(sizes.Across(AttributeName::kX), sizes.Down(AttributeName::kY), width, height);
}

ORVMathBox2D CheckEllipse(CheckContext& check, const NumberedElement& element, const Sizes& sizes) {
    const double rx = sizes.Across(AttributeName::kRx), ry = sizes.Down(AttributeName::kRy);
    const bool hasX = sizes.Has(AttributeName::kRx), hasY = sizes.Has(AttributeName::kRy);
    if (rx < 0.0 || ry < 0.0)
        NoteSize(check, element, "a radius is negative: other programs do not draw it, or ignore the radius");
    else if (hasX != hasY && (rx > 0.0 || ry > 0.0))
        NoteSize(check, element, "has one radius only: other programs use it for both");
    return BoxOf(sizes.Across(AttributeName::kCx) - rx, sizes.Down(AttributeName::kCy) - ry, 2.0 * rx,
                 2.0 * ry);
}

// On thin lines, caps are invisible.
bool IsBroad(const SvgDrawState& state) { return state.stroke.GetStrokeWidth() > 2.0; }

// SVG draws the caps of a zero-length line.
void CheckDot(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    if (state.stroke.GetStrokeCap() != kCapButt && state.stroke.GetStrokeWidth() > 0.0)
        check.findings.Note(kZeroLength, element, {}, {},
                            "has a part of zero length, whose caps are not drawn");
}

// The interpreter always uses the initial miter limit.
void CheckCorners(CheckContext& check, const NumberedElement& element, const SvgDrawState& state,
                  const Corners& corners) {
    const double limit = check.inForce.meant.miterLimit;
    if (limit == Corners::kLimit || state.stroke.GetStrokeJoin() != kJoinMiter || !corners.DependOn(limit))
        return;
    check.findings.Note(kIgnoredProperty, element, "stroke-miterlimit", {},
                        "has corners that stroke-miterlimit would draw differently");
}

bool MeetsItsStart(const std::vector<double>& numbers) {
    const std::size_t last = numbers.size() / 2 * 2 - 2;
    return numbers[0] == numbers[last] && numbers[1] == numbers[last + 1];
}

ORVMathBox2D CheckPoints(CheckContext& check, const NumberedElement& element, const SvgDrawState& state,
                         bool strokes) {
    SvgDrawState upright = state;
    upright.yFlip = 0;
    ReadCoordinateNumbers(upright, element.node->Value(AttributeName::kPoints), check.numbers);
    ORVMathBox2D box;
    for (std::size_t i = 0; i + 1 < check.numbers.size(); i += 2)
        box.Add({check.numbers[i], check.numbers[i + 1]});
    Corners corners;
    const auto edge = [&](std::size_t from, std::size_t to) {
        return ORVMathVector2D{check.numbers[2 * to] - check.numbers[2 * from],
                               check.numbers[2 * to + 1] - check.numbers[2 * from + 1]};
    };
    const std::size_t points = check.numbers.size() / 2;
    for (std::size_t i = 1; i + 1 < points; ++i) corners.Add(edge(i - 1, i), edge(i, i + 1));
    if (strokes) CheckCorners(check, element, state, corners);
    const bool isDot = !box.IsEmpty() && box.xMin == box.xMax && box.yMin == box.yMax;
    if (strokes && isDot && check.numbers.size() >= 4) CheckDot(check, element, state);
    const std::size_t count = check.numbers.size() / 2;
    if (strokes && IsBroad(state) && element.node->id == ElementName::kPolyline && count > 2 &&
        MeetsItsStart(check.numbers))
        check.findings.Note(kJoinedEnds, element, {}, {}, "ends where it begins, and is closed there");
    return box;
}

ORVMathBox2D TextBox(const NumberedElement& element, const Sizes& sizes, const SvgDrawState& state) {
    const std::string_view text = element.node->GetText();
    if (text.find_first_not_of(" \t\r\n") == text.npos) return {};
    const double height = state.text.GetHeight();
    const ORVTextLayout layout = ORVLayoutText(
        text, {.font = state.text.GetFont(), .weight = state.text.GetWeight(), .height = height});
    const int place = (state.text.GetAnchor() - kAnchorFirst) / 4;
    const double x =
        sizes.Across(AttributeName::kX) + sizes.Across(AttributeName::kDx) - layout.advance * place / 2.0;
    // Glyphs seldom reach the full ascent and descent of their font.
    return BoxOf(x, sizes.Down(AttributeName::kY) - 0.7 * height, layout.advance, 0.7 * height);
}

void Grow(ORVMathBox2D& box, double by) {
    if (box.IsEmpty() || !(by > 0.0)) return;
    box = BoxOf(box.xMin - by, box.yMin - by, box.xMax - box.xMin + 2.0 * by, box.yMax - box.yMin + 2.0 * by);
}

ORVMathBox2D CheckGeometry(CheckContext& check, const NumberedElement& element, const SvgDrawState& state,
                           const PathShape& path, bool strokes) {
    const Sizes sizes(*element.node, state);
    switch (element.node->id) {
        case ElementName::kRect: return CheckRect(check, element, sizes, strokes);
        case ElementName::kEllipse: return CheckEllipse(check, element, sizes);
        case ElementName::kCircle: {
            const double r = sizes.Diagonal(AttributeName::kR);
            return BoxOf(sizes.Across(AttributeName::kCx) - r, sizes.Down(AttributeName::kCy) - r, 2.0 * r,
                         2.0 * r);
        }
        case ElementName::kLine: {
            const double x = sizes.Across(AttributeName::kX1), y = sizes.Down(AttributeName::kY1);
            const double dx = sizes.Across(AttributeName::kX2) - x, dy = sizes.Down(AttributeName::kY2) - y;
            if (strokes && dx == 0.0 && dy == 0.0) CheckDot(check, element, state);
            return BoxOf(x, y, dx, dy);
        }
        case ElementName::kPolyline:
        case ElementName::kPolygon: return CheckPoints(check, element, state, strokes);
        case ElementName::kPath:
            if (path.hasOtherSmooth)
                check.findings.Note(
                    kSmoothControl, element, "d", element.node->Value(AttributeName::kD),
                    "an S after Q or T, or a T after C or S, reflects the control point before it");
            if (path.hasOtherArc)
                check.findings.Note(kArcShape, element, "d", element.node->Value(AttributeName::kD),
                                    "has an arc that other programs draw differently");
            if (strokes && IsBroad(state) && path.hasJoinedEnds)
                check.findings.Note(kJoinedEnds, element, "d", element.node->Value(AttributeName::kD),
                                    "has a part that ends where it begins, and is closed there");
            if (strokes && IsBroad(state) && path.hasLooseArc)
                check.findings.Note(kJoinedEnds, element, "d", element.node->Value(AttributeName::kD),
                                    "has an arc at its beginning that the closing line is not joined to");
            if (strokes) CheckCorners(check, element, state, path.corners);
            if (strokes && path.hasDot) CheckDot(check, element, state);
            return path.box;
        case ElementName::kText: return TextBox(element, sizes, state);
        default: return {};
    }
}

}  // namespace

ORVMathBox2D CheckShape(CheckContext& check, const NumberedElement& element, const SvgDrawState& state,
                        const PathShape& path, bool strokes) {
    ORVMathBox2D box = CheckGeometry(check, element, state, path, strokes);
    if (strokes) Grow(box, state.stroke.GetStrokeWidth() / 2.0);
    return box;
}
