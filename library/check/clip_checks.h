// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

// Other programs clip the content of nested drawings, of symbols with a viewBox and of markers. This
// interpreter does not, so the checks track where content is actually drawn.

/// The viewport of a nested "svg" in its own coordinates, and the transformation from these to the
/// coordinates around it.
struct NestedRegion {
    ORVMathBox2D region;
    ORVMathAffine2D map;
};
NestedRegion ReadNestedRegion(const ORVXmlNode& svg, const SvgDrawState& state);

/// Adds the bounding box of something drawn to the current region and definition.
/// @param box  in the element's own coordinates, before its "transform"
void NoteDrawn(CheckContext& check, const NumberedElement& element, const ORVMathBox2D& box);

/// The bounding box of a transformed box.
ORVMathBox2D MapBox(const ORVMathAffine2D& map, const ORVMathBox2D& box);
