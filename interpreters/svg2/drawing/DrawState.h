// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg2/paint/Paints.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// Where content is drawn.
struct DrawState {
    ORVMathAffine2D toPage;  ///< from user units to page coordinates
    Viewport viewport;       ///< that percentages refer to
    const ContextPaints* context = nullptr;
    int depth = 0;              ///< levels of the stack
    bool isWithinClip = false;  ///< shapes stand for their areas: no paints of their own, no markers
};

}  // namespace svg2
