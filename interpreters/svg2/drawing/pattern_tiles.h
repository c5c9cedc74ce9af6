// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/view_box.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// The range of pattern tiles to draw, by tile index in both directions.
struct TileRange {
    long xFirst, xLast, yFirst, yLast;
    std::uint64_t Count() const {
        return static_cast<std::uint64_t>(xLast - xFirst + 1) *
               static_cast<std::uint64_t>(yLast - yFirst + 1);
    }
};

/// The tiles of a pattern and the coordinate systems of its content.
struct PatternTiles {
    Rectangle first;                ///< tile (0, 0), in pattern units
    TileRange range;                ///< tiles to draw
    ORVMathAffine2D toTile;         ///< from content units to pattern units
    ORVMathAffine2D patternToPage;  ///< from pattern units to page coordinates
    Viewport viewport;              ///< reference of the content's percentages
};

/// What determines the content of a tile.
struct TileContent {
    ElementIndex pattern = kNoElement;
    ORVMathPoint2D low, high;          // corners of the tile, in tile coordinates
    ORVMathAffine2D toTile;            // from content units
    double width = 0.0, height = 0.0;  // of the viewport
    friend bool operator==(const TileContent&, const TileContent&) = default;
};

/// A shape of a pattern that is drawn for all tiles at once.
struct FusedShape {
    ElementIndex element;
    Style style;
    ORVPrintPath path;
    ORVMathAffine2D toPattern;  // for the first tile
    double opacity = 1.0;
    ORVMathBox2D box;          // visible part in the first tile, in pattern units
    std::uint64_t points = 0;  // drawn per tile
};

}  // namespace svg2
