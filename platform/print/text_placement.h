// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

class ORVPrtTextElt;

/// The style in which a text of the model is laid out.
ORVTextStyle ORVTextStyleOf(const ORVPrtTextElt& text);

/// Position of a line of text.
struct ORVTextPlacement {
    ORVMathAffine2D toModel;  ///< from layout space to the model, without the text's own transformation
    ORVMathBox2D box;         ///< bounding box in layout space, from the font's metrics
};

/// Positions a text of the given extent according to its position, anchor, slant and direction. In
/// right-to-left text, the start anchor is the right end; in vertical text, the upper end. Vertical text is
/// always centred on its line, whatever the vertical part of the anchor.
ORVTextPlacement ORVPlaceText(const ORVPrtTextElt& text, const ORVTextExtent& extent);
