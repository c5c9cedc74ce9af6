// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "generators/common/path_range.h"
#include "generators/raster/raster_memory.h"
#include "generators/raster/raster_outline.h"
#include "platform/print/ORVPrintPath.h"

/// Converts paths to outlines in device space: contours of float points, stored in an arena.
class OutlineCollector {
public:
    explicit OutlineCollector(RasterArena& arena) : arena_(arena) {}

    /// Collects a path for Keep. Paths with points too far away must be clipped first (see Make).
    /// @return false if a point is farther away than kDeviceLimit
    bool Collect(const ORVPrintPath& path, const ORVMathAffine2D& toDevice);
    /// False if the last collected path is empty and shows nothing, filled or stroked.
    bool HasContours() const { return !points_.empty(); }
    /// Stores the last collected path, which must have contours, in the arena.
    RasterGeometry Keep(RasterExtent& extent);
    /// Collects a path, clipped to kDeviceLimit, and stores it.
    /// @return false if it shows nothing
    bool Make(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, PathUse use,
              RasterGeometry& geometry, RasterExtent& extent);
    /// True if the last collected path is a single axis-parallel rectangle.
    bool IsBox() const;

private:
    struct Draft {
        std::size_t firstPoint = 0, firstVerb = 0;
        bool closed = false;
    };

    RasterArena& arena_;
    // Members to reuse their memory between calls.
    std::vector<Draft> drafts_;
    std::vector<ORVMathPoint2D> points_;
    std::vector<RasterContour::Verb> verbs_;
    ORVPrintPath fitted_;
};
