// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg2/paint/Paints.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// The coordinate system and context in which content is drawn.
struct DrawState {
    ORVMathAffine2D toPage;  ///< from user units to page coordinates
    Viewport viewport;       ///< the reference of percentages
    const ContextPaints* context = nullptr;
    int depth = 0;  ///< levels of recursion
    /// Inside a clip path: shapes contribute their areas only, without paint or markers.
    bool isWithinClip = false;
    bool isWithinTile = false;  ///< inside a tile of a pattern
};

}  // namespace svg2
