// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/raster_outline.h"
#include "platform/mathematics/geometry.h"

/// The course of a line, flattened: device points, none equal to its predecessor.
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
    /// Takes away the last point where it is the first one again.
    void DropClosingPoint() {
        if (points.size() < 2 || points.front() != points.back()) return;
        points.pop_back();
        smooth.pop_back();
    }
};

/// Some verbs of a contour that follow each other.
struct VerbRange {
    std::uint32_t first = 0, count = 0;
    std::uint32_t firstPoint = 0;  ///< where the first verb starts
};

/// Points that verbs add to a contour.
std::uint32_t ORVCountPoints(const RasterContour& contour, std::uint32_t firstVerb, std::uint32_t count);

/// Appends the course of verbs, the start of the first one included.
/// @param penRadius  of the widest pen that will follow the course (pixels)
void ORVAppendVerbs(const RasterGeometry& geometry, const RasterContour& contour, const VerbRange& verbs,
                    double penRadius, StrokeCourse& course);

/// Appends the course of verbs with what comes before and after: a verb each, a closed contour going on at
/// its other end.
/// @param first, last  receive the segments [first, last) of the verbs themselves
void ORVAppendVerbsInContext(const RasterGeometry& geometry, const RasterContour& contour,
                             const VerbRange& verbs, double penRadius, StrokeCourse& course,
                             std::size_t& first, std::size_t& last);
