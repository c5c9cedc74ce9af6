// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"

/// One arc of path data, in page coordinates.
struct EndpointArc {
    ORVMathPoint2D start;
    double rx = 0.0, ry = 0.0;
    double rotation = 0.0;      ///< degrees
    double largeArcFlag = 0.0;  ///< set only when exactly 1: 2 counts as not set, on purpose
    double sweepFlag = 0.0;     ///< likewise
    ORVMathPoint2D end;
};

/// The same arc by its centre. Angles are radians from the ellipse's own first axis.
struct CenterArc {
    ORVMathPoint2D center;
    double horzRadius = 0.0, vertRadius = 0.0;
    double startAngle = 0.0, endAngle = 0.0;
    double slope = 0.0;  ///< radians
};

/// Radians; the start may be the larger.
struct ArcAngles {
    double start = 0.0, end = 0.0;
};

/// Start and end angle of the arc between two points of its ellipse.
/// @param a, b   angles of the arc's first and last point, within half a turn of 0 on either side
/// @param large  the large-arc flag is set
/// @param sweep  the sweep flag is set
[[nodiscard]] ArcAngles ChooseArcAngles(double a, double b, bool large, bool sweep);

enum class ArcShape {
    kArc,       ///< an arc
    kStraight,  ///< exactly one radius is positive: a straight segment
    kNothing,   ///< neither radius is positive, or start and end agree
};

/// Converts an arc; `center` is written for kArc only. Radii too small to reach the end point grow.
[[nodiscard]] ArcShape ConvertArc(const EndpointArc& arc, CenterArc& center);
