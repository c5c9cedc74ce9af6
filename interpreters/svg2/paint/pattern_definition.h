// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/view_box.h"

namespace svg2 {

/// A pattern with the attributes it takes from its templates.
struct PatternDefinition {
    ElementIndex content = kNoElement;  ///< element whose children are drawn
    Units units = Units::kBoundingBox, contentUnits = Units::kUserSpace;
    std::optional<Rectangle> viewBox;
    AspectRatio ratio;
    ORVMathAffine2D transform;
    bool isSingular = false;
    /// Elements that specify x, y, width and height.
    ElementIndex places[4] = {kNoElement, kNoElement, kNoElement, kNoElement};

    /// The first tile, in pattern units.
    /// @param box  bounding box of what is painted; used with units of the bounding box only
    Rectangle TileOf(Scene& scene, const ORVMathBox2D& box, const Viewport& viewport) const;
    /// False if the pattern paints nothing because it has no content, or its tile or viewBox has no area.
    bool HasTiles(const Rectangle& tile) const;
};

PatternDefinition ResolvePattern(Scene& scene, ElementIndex pattern);

}  // namespace svg2
