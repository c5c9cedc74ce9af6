// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Whether an element is a shape: path, rect, circle, ellipse, line, polyline or polygon.
bool IsShape(Tag tag);

/// Adds the outline of a shape to a path, in user units.
/// @param segmentEnds  if not null, receives the number of verbs after each segment; see ReadPathData
/// @return false if there is nothing to draw
bool AddOutline(const Scene& scene, ElementIndex element, const Style& style, const Viewport& viewport,
                ORVPrintPath& path, std::vector<std::size_t>* segmentEnds = nullptr);

/// The bounding box of a path, tight around its curves. Moves that start no segment are ignored.
ORVMathBox2D BoxOf(const ORVPrintPath& path, const ORVMathAffine2D& map = {});

/// Adds a rectangle; rounded if both radii are greater than 0.
void AddRectangle(ORVPrintPath& path, const Rectangle& rectangle, double rx = 0.0, double ry = 0.0);
void AddEllipse(ORVPrintPath& path, const ORVMathPoint2D& centre, double rx, double ry);

}  // namespace svg2
