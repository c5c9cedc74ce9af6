// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Reads path data into `path`, behind what it holds: quadratic curves and arcs become cubic ones.
/// @param segmentEnds  if not null: receives, for every segment of the data, the number of verbs behind it;
///                     an arc is one segment, however many curves it becomes
/// @return false when the data ends with something that cannot be read; what stands before it is there
bool ReadPathData(std::string_view text, ORVPrintPath& path, std::vector<std::size_t>* segmentEnds = nullptr);

/// Reads a list of points, up to the first number that cannot be read; an odd last number falls away.
void ReadPoints(std::string_view text, std::vector<ORVMathPoint2D>& points);

/// Adds an arc from the path's current point `from`, as cubic curves of at most a quarter turn each.
void AddArc(ORVPrintPath& path, const ORVMathPoint2D& from, double rx, double ry, double rotationDegrees,
            bool isLarge, bool isClockwise, const ORVMathPoint2D& to);

}  // namespace svg2
