// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/mathematics/geometry.h"

// Properties of transformations that generators check before drawing.

/// False for matrices that are not finite, or that scale areas so far up or down that nothing would show.
inline bool IsDrawable(const ORVMathAffine2D& map) {
    constexpr double kAreaLimit = 1e60;
    const double area = std::fabs(map.Determinant());
    return map.IsFinite() && area < kAreaLimit && area > 1.0 / kAreaLimit;
}

/// True for matrices so close to singular that pens lose their width and glyphs their height. Readers of the
/// output may treat such matrices as not invertible.
inline bool IsFlat(const ORVMathAffine2D& map) {
    constexpr double kFlattest = 1e-8;  // ratio of the axes
    const double scale = map.Enlargement();
    return !(std::fabs(map.Determinant()) > kFlattest * scale * scale);
}

/// True for similarity transformations, under which a round pen stays round.
inline bool KeepsAngles(const ORVMathAffine2D& map) {
    const double x = map.m11 * map.m11 + map.m21 * map.m21, y = map.m12 * map.m12 + map.m22 * map.m22;
    const double mixed = map.m11 * map.m12 + map.m21 * map.m22;
    const double tolerance = 1e-9 * (x + y);
    return std::fabs(x - y) <= tolerance && std::fabs(mixed) <= tolerance;
}
