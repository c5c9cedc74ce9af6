// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"

/// An arc of path data in endpoint form, in page coordinates.
struct EndpointArc {
    ORVMathPoint2D start;
    double rx = 0.0, ry = 0.0;
    double rotation = 0.0;      ///< in degrees
    double largeArcFlag = 0.0;  ///< set only if exactly 1: 2 counts as not set, on purpose
    double sweepFlag = 0.0;     ///< set only if exactly 1
    ORVMathPoint2D end;
};

/// The same arc in centre form. Angles are in radians from the ellipse's own first axis.
struct CenterArc {
    ORVMathPoint2D center;
    double horzRadius = 0.0, vertRadius = 0.0;
    double startAngle = 0.0, endAngle = 0.0;
    double slope = 0.0;  ///< rotation of the first axis, in radians
};

/// In radians; the start may be greater than the end.
struct ArcAngles {
    double start = 0.0, end = 0.0;
};

/// Start and end angle of the arc between two points of its ellipse.
/// @param a, b   angles of the arc's first and last point, from -pi to pi
/// @param large  the large-arc flag is set
/// @param sweep  the sweep flag is set
[[nodiscard]] ArcAngles ChooseArcAngles(double a, double b, bool large, bool sweep);

enum class ArcShape {
    kArc,       ///< an arc
    kStraight,  ///< exactly one radius is positive: a straight segment
    kNothing,   ///< neither radius is positive, or start and end are equal
};

/// Converts an arc to centre form; `center` is set for kArc only. Radii too small to reach the end point are
/// scaled up.
[[nodiscard]] ArcShape ConvertArc(const EndpointArc& arc, CenterArc& center);
