// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "generators/common/path_range.h"
#include "generators/raster/raster_memory.h"
#include "generators/raster/raster_outline.h"
#include "platform/print/ORVPrintPath.h"

/// Turns paths into outlines in device space: contours with points of floats, kept in an arena.
class OutlineCollector {
public:
    explicit OutlineCollector(RasterArena& arena) : arena_(arena) {}

    /// Looks at a path, which Keep keeps. What is too far away is to be fitted first (see Make).
    /// @return false when a point is farther away than kDeviceLimit
    bool Collect(const ORVPrintPath& path, const ORVMathAffine2D& toDevice);
    /// False when the path that was collected last shows nothing, whatever draws it.
    bool HasContours() const { return !points_.empty(); }
    /// Keeps what was collected last, which must have contours.
    RasterGeometry Keep(RasterExtent& extent);
    /// Collects a path, cut to what is near enough, and keeps it.
    /// @return false when it shows nothing
    bool Make(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, PathUse use,
              RasterGeometry& geometry, RasterExtent& extent);
    /// True when the path that was collected last is one box, parallel to the axes.
    bool IsBox() const;

private:
    struct Draft {
        std::size_t firstPoint = 0, firstVerb = 0;
        bool closed = false;
    };

    RasterArena& arena_;
    // Kept between calls for their memory.
    std::vector<Draft> drafts_;
    std::vector<ORVMathPoint2D> points_;
    std::vector<RasterContour::Verb> verbs_;
    ORVPrintPath fitted_;
};
