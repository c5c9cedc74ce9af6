// SPDX-License-Identifier: Apache-2.0

// Arcs: nine numbers in the order of path data, the start point first. Numbers of ordinary magnitude must
// give an arc that starts and ends at the given points.

#include <algorithm>
#include <array>
#include <cmath>

#include "fuzz/support/FuzzTarget.h"
#include "interpreters/svg/geometry/elliptical_arc.h"
#include "interpreters/svg/values/text_scan.h"
#include "platform/system/number_conversion.h"

namespace {

// How far rounding may move a point, including the single precision that is part of the format.
constexpr double kTolerance = 0.02;

bool IsUsual(double number) { return number == 0.0 || (std::fabs(number) > 1e-3 && std::fabs(number) < 1e6); }

ORVMathPoint2D PointOf(const CenterArc& arc, double angle) {
    const double x = arc.horzRadius * std::cos(angle), y = arc.vertRadius * std::sin(angle);
    const double cosine = std::cos(arc.slope), sine = std::sin(arc.slope);
    return {arc.center.x + cosine * x - sine * y, arc.center.y + sine * x + cosine * y};
}

bool IsNear(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double distance) {
    return std::fabs(a.x - b.x) <= distance && std::fabs(a.y - b.y) <= distance;
}

const FuzzTarget kTarget("arcs", [](std::string_view text) {
    std::array<double, 9> numbers{};
    for (double& number : numbers) ORVConvertToDouble(CutUpTo(text, ' '), number);
    const EndpointArc arc{
        {numbers[0], numbers[1]}, numbers[2], numbers[3], numbers[4], numbers[5], numbers[6],
        {numbers[7], numbers[8]}};
    CenterArc center;
    const ArcShape shape = ConvertArc(arc, center);
    Require((shape == ArcShape::kStraight) ==
            ((arc.rx > 0.0 && arc.ry <= 0.0) || (arc.ry > 0.0 && arc.rx <= 0.0)));
    if (shape != ArcShape::kArc) return;
    Require(arc.rx > 0.0 && arc.ry > 0.0);
    if (!std::all_of(numbers.begin(), numbers.end(), IsUsual)) return;

    Require(std::isfinite(center.center.x) && std::isfinite(center.center.y));
    Require(std::isfinite(center.horzRadius) && std::isfinite(center.vertRadius));
    const double chord = std::hypot(arc.start.x - arc.end.x, arc.start.y - arc.end.y);
    const double flatness = std::max(arc.rx, arc.ry) / std::min(arc.rx, arc.ry);
    if (flatness > 100.0) return;  // a tiny change of angle is then a long distance
    const double distance = kTolerance * (std::max(arc.rx, arc.ry) + flatness * chord);
    const ORVMathPoint2D first = PointOf(center, center.startAngle), last = PointOf(center, center.endAngle);
    Require((IsNear(first, arc.start, distance) && IsNear(last, arc.end, distance)) ||
            (IsNear(first, arc.end, distance) && IsNear(last, arc.start, distance)));
});

}  // namespace
