// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

#include "platform/mathematics/geometry.h"

/// An ellipse given by its centre and two conjugate semi-axes: the point at angle t (radians) is centre +
/// first cos t + second sin t. The image of an ellipse under an affine transformation is an ellipse.
struct ORVEllipseFrame {
    ORVMathPoint2D center;
    ORVMathVector2D first, second;

    /// @param slope  angle of the first axis, radians
    static ORVEllipseFrame FromRadii(const ORVMathPoint2D& center, double horzRadius, double vertRadius,
                                     double slope) {
        // Without slope, avoids rounding: the axes are exactly parallel to x and y.
        if (slope == 0.0) return {center, {horzRadius, 0.0}, {0.0, vertRadius}};
        const double c = std::cos(slope), s = std::sin(slope);
        return {center, {horzRadius * c, horzRadius * s}, {-vertRadius * s, vertRadius * c}};
    }

    ORVEllipseFrame MappedBy(const ORVMathAffine2D& map) const {
        return {map(center),
                {map.m11 * first.x + map.m12 * first.y, map.m21 * first.x + map.m22 * first.y},
                {map.m11 * second.x + map.m12 * second.y, map.m21 * second.x + map.m22 * second.y}};
    }

    ORVMathPoint2D At(double angle) const {
        const double c = std::cos(angle), s = std::sin(angle);
        return {center.x + first.x * c + second.x * s, center.y + first.y * c + second.y * s};
    }

    bool IsFinite() const {
        return std::isfinite(center.x) && std::isfinite(center.y) && std::isfinite(first.x) &&
               std::isfinite(first.y) && std::isfinite(second.x) && std::isfinite(second.y);
    }
};
