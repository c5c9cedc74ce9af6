// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

class ORVPrtTextElt;

/// How the fonts are to set a text of the model.
ORVTextStyle ORVTextStyleOf(const ORVPrtTextElt& text);

/// Where a line of text stands.
struct ORVTextPlacement {
    ORVMathAffine2D toModel;  ///< from the layout's space, without the text's own transform
    ORVMathBox2D box;         ///< in the layout's space, from the font's metrics
};

/// Places a text of the given extent by its position, anchor, slant and direction. In right-to-left text the
/// anchor's start is the right end, in vertical text the upper end; vertical text is centred on its line
/// whatever the vertical part of the anchor.
ORVTextPlacement ORVPlaceText(const ORVPrtTextElt& text, const ORVTextExtent& extent);
