// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "generators/raster/coverage_buffer.h"
#include "platform/mathematics/geometry.h"

// Outlines as a page keeps them: in device space, as points of two floats near a place of their own.

/// A point near the place that its geometry counts from.
struct RasterPoint {
    float x = 0.0F, y = 0.0F;
    friend bool operator==(const RasterPoint&, const RasterPoint&) = default;
};

struct RasterContour {
    enum class Verb : std::uint8_t { kLine, kCubic };  // one point, three points
    const RasterPoint* points = nullptr;               // the start, then those of the verbs
    const Verb* verbs = nullptr;
    std::uint32_t verbCount = 0;
    bool closed = false;  // its last point is its first, then
};

/// Outlines in device space. Points and verbs of all contours follow each other without gaps.
struct RasterGeometry {
    int originX = 0, originY = 0;
    std::uint32_t contourCount = 0;
    const RasterContour* contours = nullptr;

    /// Where a point of its contours lies on the page.
    ORVMathPoint2D PlaceOf(const RasterPoint& p) const {
        return {originX + static_cast<double>(p.x), originY + static_cast<double>(p.y)};
    }
    /// The same, as x and y.
    DoubleLanes LanesOf(const RasterPoint& p) const {
        return DoubleLanes{static_cast<double>(p.x), static_cast<double>(p.y)} +
               DoubleLanes{static_cast<double>(originX), static_cast<double>(originY)};
    }
};

/// What an outline extends over, in device space.
struct RasterExtent {
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
};

/// Farthest that coordinates of a display list may be (pixels): half of what the coverage buffer takes, which
/// leaves room for pens.
inline constexpr double kDeviceLimit = CoverageBuffer::kFarthest / 2.0;

inline bool IsWithinLimit(const ORVMathPoint2D& p) {
    return std::fabs(p.x) <= kDeviceLimit && std::fabs(p.y) <= kDeviceLimit;
}

/// The pixel that a coordinate lies in, as far as that matters for anything.
inline int PixelOf(double value) {
    return static_cast<int>(
        std::floor(value > -kDeviceLimit * 2 ? std::min(value, kDeviceLimit * 2) : -kDeviceLimit * 2));
}
