// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/view_box.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Which tiles of a pattern are drawn, by their places in both directions.
struct TileRange {
    long xFirst, xLast, yFirst, yLast;
    std::uint64_t Count() const {
        return static_cast<std::uint64_t>(xLast - xFirst + 1) *
               static_cast<std::uint64_t>(yLast - yFirst + 1);
    }
};

/// The tiles of a pattern, and where its content lies in them.
struct PatternTiles {
    Rectangle first;                ///< the tile at 0, 0, in the pattern's units
    TileRange range;                ///< of those that are drawn
    ORVMathAffine2D toTile;         ///< from the content's units to the pattern's
    ORVMathAffine2D patternToPage;  ///< from the pattern's units
    Viewport viewport;              ///< that the content's percentages refer to
};

/// A shape of a pattern that is drawn for all tiles at once.
struct FusedShape {
    ElementIndex element;
    Style style;
    ORVPrintPath path;
    ORVMathAffine2D toPattern;  // for the first tile
    double opacity = 1.0;
    ORVMathBox2D box;  // what the first tile shows of it, in the pattern's units
};

}  // namespace svg2
