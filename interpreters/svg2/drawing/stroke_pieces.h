// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Corners of a closed area.
using Corners = std::vector<ORVMathPoint2D>;

/// A contour of a path as straight lines.
struct Contour {
    Corners points;  ///< no two that follow each other are equal
    bool isClosed = false;
};

/// The contours of a path; curves become lines.
std::vector<Contour> ContoursOf(const ORVPrintPath& path);

/// Areas that a pen covers along a contour, which may overlap. Dashes are not counted.
void AddStrokePieces(const Contour& contour, const ORVPrintStroke& pen, std::vector<Corners>& pieces);

/// What of an area lies in a box. Inside the box, the windings around every point stay what they are.
Corners CutToBox(Corners area, const ORVMathBox2D& box);

}  // namespace svg2
