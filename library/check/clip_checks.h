// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

// Other programs cut off what reaches beyond an inner drawing, a symbol with a viewBox or a marker. Here
// nothing is cut: what is drawn is followed to where it lies.

/// The region that a nested "svg" has in its own coordinates, and the map from these to those around it.
struct NestedRegion {
    ORVMathBox2D region;
    ORVMathAffine2D map;
};
NestedRegion ReadNestedRegion(const ORVXmlNode& svg, const SvgDrawState& state);

/// Takes in what an element draws.
/// @param box  in the element's own coordinates, before its "transform"
void NoteDrawn(CheckContext& check, const NumberedElement& element, const ORVMathBox2D& box);

/// The box around a box that is mapped.
ORVMathBox2D MapBox(const ORVMathAffine2D& map, const ORVMathBox2D& box);
