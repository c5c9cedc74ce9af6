// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/clear_pixels.h"

#include <cstddef>

#include "generators/common/generator_status.h"

int ClearPixelSink::BeginPage(const RasterPageInfo& page) {
    if (box_.width != page.width || box_.height != page.height || page.pixels != RasterPixels::kClear)
        return kDrawingFailed;
    pixels_ = FilterPixels(box_);
    return kGeneratorDone;
}

// Bands write to distinct rows, so threads do not conflict. Blank bands are left as they are: transparent.
void ClearPixelSink::EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& /*bytes*/) const {
    if (band.isBlank) return;
    constexpr std::uint16_t kWidened = kFilterFull / 255;
    const auto count = static_cast<std::size_t>(box_.width) * kFilterChannels;
    for (int i = 0; i < band.rowCount; ++i) {
        const std::uint8_t* from = band.pixels + static_cast<std::size_t>(i) * band.stride;
        std::uint16_t* to = pixels_.Row(box_.top + band.firstRow + i);
        for (std::size_t k = 0; k < count; ++k) to[k] = static_cast<std::uint16_t>(from[k] * kWidened);
    }
}
