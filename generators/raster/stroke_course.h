// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/raster_outline.h"
#include "generators/raster/stroke_pen.h"
#include "platform/mathematics/geometry.h"

/// What the line does at a point.
enum class CoursePoint : std::uint8_t {
    kCorner,  ///< has a join
    kSmooth,  ///< inside a curve
    kTurn     ///< beside the end of a curve: the short piece between has the direction of the curve's tangent
};

/// The flattened centre line of a stroke: device points, each different from the one before.
struct StrokeCourse {
    std::vector<ORVMathPoint2D> points;
    std::vector<CoursePoint> kinds;  ///< one for each point

    void Clear() {
        points.clear();
        kinds.clear();
    }
    void Add(const ORVMathPoint2D& point, CoursePoint kind) {
        if (!points.empty() && points.back() == point) return;
        points.push_back(point);
        kinds.push_back(kind);
    }
    /// Removes the last point if it equals the first.
    void DropClosingPoint() {
        if (points.size() < 2 || points.front() != points.back()) return;
        points.pop_back();
        kinds.pop_back();
    }
};

/// A range of consecutive verbs of a contour.
struct VerbRange {
    std::uint32_t first = 0, count = 0;
    std::uint32_t firstPoint = 0;  ///< index of the start point of the first verb
};

/// Number of points that belong to a range of verbs.
std::uint32_t ORVCountPoints(const RasterContour& contour, std::uint32_t firstVerb, std::uint32_t count);

/// Appends the verbs, flattened for a pen, including the start point of the first one.
void ORVAppendVerbs(const RasterGeometry& geometry, const RasterContour& contour, const VerbRange& verbs,
                    const StrokePen& pen, StrokeCourse& course);

/// Appends flattened verbs together with one verb before and one after; a closed contour wraps around.
/// @param first, last  receive the segments [first, last) that belong to the verbs themselves
void ORVAppendVerbsInContext(const RasterGeometry& geometry, const RasterContour& contour,
                             const VerbRange& verbs, const StrokePen& pen, StrokeCourse& course,
                             std::size_t& first, std::size_t& last);
