// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/mathematics/geometry.h"

// What generators ask of a map before they draw with it.

/// False for maps that are not finite, and for those that enlarge or reduce areas so much that nothing shows.
inline bool IsDrawable(const ORVMathAffine2D& map) {
    constexpr double kAreaLimit = 1e60;
    const double area = std::fabs(map.Determinant());
    return map.IsFinite() && area < kAreaLimit && area > 1.0 / kAreaLimit;
}

/// True for maps that flatten so much that they leave no width to a pen and no height to a glyph. Readers of
/// files take them for maps without an inverse.
inline bool IsFlat(const ORVMathAffine2D& map) {
    constexpr double kFlattest = 1e-8;  // ratio of the axes
    const double scale = map.Enlargement();
    return !(std::fabs(map.Determinant()) > kFlattest * scale * scale);
}

/// True for maps under which a pen stays round.
inline bool KeepsAngles(const ORVMathAffine2D& map) {
    const double x = map.m11 * map.m11 + map.m21 * map.m21, y = map.m12 * map.m12 + map.m22 * map.m22;
    const double mixed = map.m11 * map.m12 + map.m21 * map.m22;
    const double tolerance = 1e-9 * (x + y);
    return std::fabs(x - y) <= tolerance && std::fabs(mixed) <= tolerance;
}
