// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Appends path data to `path`; quadratic curves and arcs become cubic ones.
/// @param segmentEnds  if not null, receives, for each segment of the data, the number of verbs after it; an
///         arc is one segment, however many curves it becomes
/// @return false if the data are invalid at some point; what precedes it has been appended
bool ReadPathData(std::string_view text, ORVPrintPath& path, std::vector<std::size_t>* segmentEnds = nullptr);

/// Reads a list of points up to the first invalid number; an unpaired last number is dropped.
void ReadPoints(std::string_view text, std::vector<ORVMathPoint2D>& points);

/// Appends an arc that starts at the path's current point `from`, as cubic curves of at most 90 degrees each.
void AddArc(ORVPrintPath& path, const ORVMathPoint2D& from, double rx, double ry, double rotationDegrees,
            bool isLarge, bool isClockwise, const ORVMathPoint2D& to);

}  // namespace svg2
