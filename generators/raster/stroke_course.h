// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/raster_outline.h"
#include "platform/mathematics/geometry.h"

/// The flattened centre line of a stroke: device points, each different from the one before.
struct StrokeCourse {
    std::vector<ORVMathPoint2D> points;
    std::vector<std::uint8_t> smooth;  ///< for each point, whether it is inside a curve

    void Clear() {
        points.clear();
        smooth.clear();
    }
    void Add(const ORVMathPoint2D& point, bool isSmooth) {
        if (!points.empty() && points.back() == point) return;
        points.push_back(point);
        smooth.push_back(isSmooth ? 1 : 0);
    }
    /// Removes the last point if it equals the first.
    void DropClosingPoint() {
        if (points.size() < 2 || points.front() != points.back()) return;
        points.pop_back();
        smooth.pop_back();
    }
};

/// A range of consecutive verbs of a contour.
struct VerbRange {
    std::uint32_t first = 0, count = 0;
    std::uint32_t firstPoint = 0;  ///< index of the start point of the first verb
};

/// Number of points that belong to a range of verbs.
std::uint32_t ORVCountPoints(const RasterContour& contour, std::uint32_t firstVerb, std::uint32_t count);

/// Appends the flattened verbs, including the start point of the first one.
/// @param penRadius  of the widest pen that will stroke them, in pixels
void ORVAppendVerbs(const RasterGeometry& geometry, const RasterContour& contour, const VerbRange& verbs,
                    double penRadius, StrokeCourse& course);

/// Appends flattened verbs together with one verb before and one after; a closed contour wraps around.
/// @param first, last  receive the segments [first, last) that belong to the verbs themselves
void ORVAppendVerbsInContext(const RasterGeometry& geometry, const RasterContour& contour,
                             const VerbRange& verbs, double penRadius, StrokeCourse& course,
                             std::size_t& first, std::size_t& last);
