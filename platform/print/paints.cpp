// SPDX-License-Identifier: Apache-2.0
#include "platform/print/paints.h"

#include <cmath>
#include <limits>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

/// User units per pixel of an image: 1, unless the image specifies pixels per metre.
double UserUnitsPerPixel(double resolution) {
    constexpr double kUserUnitsPerMetre = 90.0 / 0.0254;
    return resolution > 0.0 && std::isfinite(resolution) ? kUserUnitsPerMetre / resolution : 1.0;
}

/// Transformation from the pixels of a fill's tile to the page.
ORVMathAffine2D PatternToPage(const ORVPixelImage& image) {
    return ORVMathAffine2D::Scaling(UserUnitsPerPixel(image.GetHorizontalResolution()),
                                    UserUnitsPerPixel(image.GetVerticalResolution()));
}

}  // namespace

ORVPrintColour ORVPrintPaints::Colour(unsigned int index, std::uint8_t opacity) const {
    const ORVPrtColourTable::Colour colour =
        colours_ ? colours_->GetColour(index) : ORVPrtColourTable::Colour{};
    return {colour.red, colour.green, colour.blue, opacity};
}

const ORVPrintFill* ORVPrintPaints::MakeFill(const ORVPrtFillAttributes& attributes) {
    if (attributes.GetFillColourTransparency() == 0) return nullptr;
    fill_.colour = Colour(attributes.GetFillColourIndex(), attributes.GetFillColourTransparency());
    fill_.evenOdd = attributes.GetFillRule() == kFillEvenOdd;
    // Without a bitmap, a pattern fill uses the colour.
    fill_.pattern = attributes.GetFillStyle() == kFillPattern ? attributes.GetFillPatternImage() : nullptr;
    if (fill_.pattern) fill_.patternToPage = PatternToPage(*fill_.pattern);
    return &fill_;
}

void ORVPrintPaints::MakeDashes(const std::vector<float>& pattern) {
    dashes_.clear();
    double sum = 0.0;
    for (const float length : pattern) {
        if (!(length >= 0.0F)) sum = std::numeric_limits<double>::infinity();
        sum += static_cast<double>(length);
    }
    // If all lengths are zero or one is not finite, the line is solid.
    if (!(sum > 0.0) || !std::isfinite(sum)) return;
    dashes_.assign(pattern.begin(), pattern.end());
    // A list with an odd number of lengths is repeated, with dashes and gaps exchanged.
    if (pattern.size() % 2 == 1) dashes_.insert(dashes_.end(), pattern.begin(), pattern.end());
}

const ORVPrintStroke* ORVPrintPaints::MakeStroke(const ORVPrtStrokeAttributes& attributes) {
    const double width = attributes.GetStrokeWidth();
    if (attributes.GetStrokeColourTransparency() == 0 || !(width > 0.0) || !std::isfinite(width))
        return nullptr;
    stroke_.colour = Colour(attributes.GetStrokeColourIndex(), attributes.GetStrokeColourTransparency());
    stroke_.width = width;
    switch (attributes.GetStrokeCap()) {
        case kCapSquare: stroke_.cap = ORVPrintStroke::Cap::kSquare; break;
        case kCapRound: stroke_.cap = ORVPrintStroke::Cap::kRound; break;
        default: stroke_.cap = ORVPrintStroke::Cap::kButt; break;
    }
    switch (attributes.GetStrokeJoin()) {
        case kJoinRound: stroke_.join = ORVPrintStroke::Join::kRound; break;
        case kJoinBevel: stroke_.join = ORVPrintStroke::Join::kBevel; break;
        default: stroke_.join = ORVPrintStroke::Join::kMiter; break;
    }
    dashes_.clear();
    if (attributes.GetStrokeType() == kLineUserDash) MakeDashes(attributes.GetStrokeDashPattern());
    stroke_.dashes = dashes_;
    return &stroke_;
}
