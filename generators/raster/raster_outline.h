// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "generators/raster/coverage_buffer.h"
#include "platform/mathematics/geometry.h"

// Outlines in a display list: float points relative to an origin in device space.

/// A point relative to the origin of its geometry.
struct RasterPoint {
    float x = 0.0F, y = 0.0F;
    friend bool operator==(const RasterPoint&, const RasterPoint&) = default;
};

struct RasterContour {
    enum class Verb : std::uint8_t { kLine, kCubic };  // one point; three points
    const RasterPoint* points = nullptr;               // the start, then those of the verbs
    const Verb* verbs = nullptr;
    std::uint32_t verbCount = 0;
    bool closed = false;  // its last point then equals its first
};

/// Outlines in device space. The points and verbs of all contours are contiguous.
struct RasterGeometry {
    int originX = 0, originY = 0;
    std::uint32_t contourCount = 0;
    const RasterContour* contours = nullptr;

    /// Position of a contour point on the page.
    ORVMathPoint2D PlaceOf(const RasterPoint& p) const {
        return {originX + static_cast<double>(p.x), originY + static_cast<double>(p.y)};
    }
    /// The same position as a vector of x and y.
    DoubleLanes LanesOf(const RasterPoint& p) const {
        return DoubleLanes{static_cast<double>(p.x), static_cast<double>(p.y)} +
               DoubleLanes{static_cast<double>(originX), static_cast<double>(originY)};
    }
};

/// A bounding box in device space.
struct RasterExtent {
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
};

/// Maximum absolute coordinate in a display list, in pixels: half of what the coverage buffer accepts, to
/// leave room for pens.
inline constexpr double kDeviceLimit = CoverageBuffer::kFarthest / 2.0;

inline bool IsWithinLimit(const ORVMathPoint2D& p) {
    return std::fabs(p.x) <= kDeviceLimit && std::fabs(p.y) <= kDeviceLimit;
}

/// The pixel that contains a coordinate, clamped to a range that fits an int.
inline int PixelOf(double value) {
    return static_cast<int>(
        std::floor(value > -kDeviceLimit * 2 ? std::min(value, kDeviceLimit * 2) : -kDeviceLimit * 2));
}
