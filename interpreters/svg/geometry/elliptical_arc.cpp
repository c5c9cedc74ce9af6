// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/elliptical_arc.h"

#include <cmath>

#include "platform/mathematics/constants.h"

namespace {

// Rounded to single precision, on which results depend.
constexpr double kEpsilon = static_cast<double>(0.01F);

bool IsSet(double flag) { return flag == 1.0; }

}  // namespace

// The asymmetry between the two orders of the angles is intentional: results depend on it.
ArcAngles ChooseArcAngles(double a, double b, bool large, bool sweep) {
    const double d = std::fabs(b - a);
    const bool isLarge = d > ORVPI + kEpsilon;
    const bool isHalf = std::fabs(d - ORVPI) <= kEpsilon;
    if (a <= b) {
        if (isHalf) return sweep ? ArcAngles{a, b} : ArcAngles{a + ORV2PI, b};
        if (isLarge == large) return sweep ? ArcAngles{a, b} : ArcAngles{b, a};
        return sweep ? ArcAngles{b, a + ORV2PI} : ArcAngles{a + ORV2PI, b};
    }
    if (isHalf) return sweep ? ArcAngles{a, b + ORV2PI} : ArcAngles{a, b};
    if (isLarge == large) return sweep ? ArcAngles{b, a} : ArcAngles{a, b};
    return sweep ? ArcAngles{a, b + ORV2PI} : ArcAngles{b + ORV2PI, a};
}

ArcShape ConvertArc(const EndpointArc& arc, CenterArc& center) {
    const double rx = arc.rx, ry = arc.ry;
    if ((rx <= 0.0 && ry > 0.0) || (ry <= 0.0 && rx > 0.0)) return ArcShape::kStraight;

    const double phi = arc.rotation * ORVDegreeToRadian;
    const double cosine = std::cos(phi), sine = std::sin(phi);
    const double dx = (arc.start.x - arc.end.x) / 2.0, dy = (arc.start.y - arc.end.y) / 2.0;
    const double x1 = cosine * dx + sine * dy, y1 = cosine * dy - sine * dx;

    const double denominator = ry * ry * (x1 * x1) + rx * rx * (y1 * y1);
    const double numerator = rx * rx * (ry * ry) - denominator;
    if (denominator == 0.0 || !(rx > 0.0) || !(ry > 0.0)) return ArcShape::kNothing;

    // Not positive if the radii are too small: the centre is then the midpoint of the chord.
    const double quotient = numerator / denominator;
    const double c = quotient > 0.0 ? std::sqrt(quotient) : 0.0;
    const bool large = IsSet(arc.largeArcFlag), sweep = IsSet(arc.sweepFlag);
    const double sign = large == sweep ? -1.0 : 1.0;
    const double cx1 = sign * (c * rx * y1 / ry), cy1 = sign * (-c * ry * x1 / rx);
    const double cx = cosine * cx1 - sine * cy1 + (arc.start.x + arc.end.x) / 2.0;
    const double cy = sine * cx1 + cosine * cy1 + (arc.start.y + arc.end.y) / 2.0;

    const auto toEllipse = [&](const ORVMathPoint2D& p) {
        const double vx = p.x - cx, vy = p.y - cy;
        return ORVMathPoint2D{cosine * vx + sine * vy, cosine * vy - sine * vx};
    };
    const ORVMathPoint2D p1 = toEllipse(arc.start), p2 = toEllipse(arc.end);
    const double a = std::atan2(p1.y / ry, p1.x / rx), b = std::atan2(p2.y / ry, p2.x / rx);

    // Deriving the radii from the start point enlarges those that were too small.
    const double cosA = std::cos(a), sinA = std::sin(a);
    center.horzRadius = std::fabs(cosA) > kEpsilon ? p1.x / cosA : rx;
    center.vertRadius = std::fabs(sinA) > kEpsilon ? p1.y / sinA : ry;
    center.center = {cx, cy};
    const ArcAngles angles = ChooseArcAngles(a, b, large, sweep);
    center.startAngle = angles.start;
    center.endAngle = angles.end;
    center.slope = phi;
    return ArcShape::kArc;
}
