// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/clear_pixels.h"

#include <cstddef>

#include "generators/common/generator_status.h"

int ClearPixelSink::BeginPage(const RasterPageInfo& page) {
    const bool fits = pixels_ && pixels_->GetBox().width == page.width &&
                      pixels_->GetBox().height == page.height && page.pixels == RasterPixels::kClear;
    return fits ? kGeneratorDone : kDrawingFailed;
}

// Bands have rows of their own, so that threads do not meet. Blank ones stay as they are, which is transparent.
void ClearPixelSink::EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& /*bytes*/) const {
    if (band.isBlank) return;
    constexpr std::uint16_t kWidened = kFilterFull / 255;
    const auto count = static_cast<std::size_t>(pixels_->GetBox().width) * kFilterChannels;
    for (int i = 0; i < band.rowCount; ++i) {
        const std::uint8_t* from = band.pixels + static_cast<std::size_t>(i) * band.stride;
        std::uint16_t* to = pixels_->Row(pixels_->GetBox().top + band.firstRow + i);
        for (std::size_t k = 0; k < count; ++k) to[k] = static_cast<std::uint16_t>(from[k] * kWidened);
    }
}
