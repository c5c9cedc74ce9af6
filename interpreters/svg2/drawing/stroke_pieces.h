// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Corners of a polygon.
using Corners = std::vector<ORVMathPoint2D>;

/// A contour of a path as a polyline.
struct Contour {
    Corners points;  ///< consecutive points differ
    bool isClosed = false;
};

/// The contours of a path, with curves flattened to lines.
std::vector<Contour> ContoursOf(const ORVPrintPath& path);

/// Appends polygons, which may overlap, that cover the stroke of a contour. Dashes are ignored.
void AddStrokePieces(const Contour& contour, const ORVPrintStroke& pen, std::vector<Corners>& pieces);

/// How far the tips of mitered joins reach from a contour, in half line widths; at least 1.
double LongestTip(const Contour& contour, const ORVPrintStroke& pen);

/// Clips a polygon to a box. Winding numbers inside the box are preserved.
Corners CutToBox(Corners area, const ORVMathBox2D& box);

}  // namespace svg2
