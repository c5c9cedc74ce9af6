// SPDX-License-Identifier: Apache-2.0
#include "platform/print/text_placement.h"

#include <cmath>

#include "platform/model/ORVPrtTextElt.h"

namespace {

/// The point in layout space that an anchor refers to.
ORVMathPoint2D AnchorPoint(const ORVPrtTextAttributes& attributes, const ORVTextExtent& extent) {
    int anchor = attributes.GetAnchor();
    if (anchor < kAnchorFirst || anchor > kAnchorLast) anchor = kAnchorStartBaseline;
    const int horizontal = (anchor - kAnchorFirst) / 4;  // 0 start, 1 middle, 2 end
    const double along = 0.5 * horizontal;
    if (attributes.GetWritingMode() == kTopToBottom) return {0.0, -along * extent.advance};

    const double x = (attributes.GetWritingMode() == kRightToLeft ? 1.0 - along : along) * extent.advance;
    switch ((anchor - kAnchorFirst) % 4) {
        case 0: return {x, -extent.descent};
        case 2: return {x, 0.5 * (extent.ascent - extent.descent)};
        case 3: return {x, extent.ascent};
        default: return {x, 0.0};
    }
}

}  // namespace

ORVTextStyle ORVTextStyleOf(const ORVPrtTextElt& text) {
    const ORVPrtTextAttributes& attributes = text.GetTextAttributes();
    return {attributes.GetFont(),        attributes.GetWeight(),       attributes.GetHeight(),
            attributes.GetWritingMode(), attributes.GetExtraSpacing(), attributes.GetExpansion()};
}

ORVTextPlacement ORVPlaceText(const ORVPrtTextElt& text, const ORVTextExtent& extent) {
    const ORVPrtTextAttributes& attributes = text.GetTextAttributes();
    const ORVMathPoint2D anchor = AnchorPoint(attributes, extent);
    const double direction = static_cast<double>(attributes.GetDirection());
    const double slant = static_cast<double>(attributes.GetSlant());

    ORVTextPlacement placement;
    placement.toModel = ORVMathAffine2D::Translation(text.GetPosition().x, text.GetPosition().y);
    if (direction != 0.0) {
        const double c = std::cos(direction), s = std::sin(direction);
        placement.toModel = placement.toModel * ORVMathAffine2D{c, -s, s, c, 0.0, 0.0};
    }
    if (slant != 0.0)
        placement.toModel = placement.toModel * ORVMathAffine2D{1.0, std::tan(slant), 0.0, 1.0, 0.0, 0.0};
    placement.toModel = placement.toModel * ORVMathAffine2D::Translation(-anchor.x, -anchor.y);

    if (attributes.GetWritingMode() == kTopToBottom) {
        const double half = 0.5 * (extent.ascent + extent.descent);
        placement.box.Add({-half, 0.0});
        placement.box.Add({half, -extent.advance});
    } else {
        placement.box.Add({0.0, -extent.descent});
        placement.box.Add({extent.advance, extent.ascent});
    }
    return placement;
}
