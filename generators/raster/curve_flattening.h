// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/mathematics/geometry.h"

/// Maximum distance between a curve and its polyline, in pixels.
inline constexpr double kFlatness = 0.04;

/// Number of line segments for a cubic curve. The deviation is at most one eighth of the second derivative
/// per squared step, and the second derivative is greatest at one of the ends.
inline int ORVPiecesOfCubic(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                            const ORVMathPoint2D& p3) {
    constexpr double kMostPieces = 1000.0;
    const auto square = [](double x, double y) { return x * x + y * y; };
    const double bend = std::max(square(p0.x - 2.0 * p1.x + p2.x, p0.y - 2.0 * p1.y + p2.y),
                                 square(p1.x - 2.0 * p2.x + p3.x, p1.y - 2.0 * p2.y + p3.y));
    const double pieces = std::min(std::sqrt(std::sqrt(bend) * (0.75 / kFlatness)), kMostPieces);
    // Rounds up with a small tolerance; NaN yields one segment.
    return pieces > 1.0 ? static_cast<int>(pieces + (1.0 - 1e-9)) : 1;
}

/// Passes the end points of a cubic curve's segments to `add`, without the start of the curve.
template <class Add>
void ORVFlattenCubic(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                     const ORVMathPoint2D& p3, int pieces, Add add) {
    const double cx = 3.0 * (p1.x - p0.x), cy = 3.0 * (p1.y - p0.y);
    const double bx = 3.0 * (p2.x - p1.x) - cx, by = 3.0 * (p2.y - p1.y) - cy;
    const double ax = p3.x - p0.x - cx - bx, ay = p3.y - p0.y - cy - by;
    const double step = 1.0 / pieces;
    for (int i = 1; i < pieces; ++i) {
        const double t = i * step;
        add(ORVMathPoint2D{((ax * t + bx) * t + cx) * t + p0.x, ((ay * t + by) * t + cy) * t + p0.y});
    }
    add(p3);
}
