// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/clear_pixels.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "generators/common/generator_status.h"

namespace {

/// Divides colours by their opacity, as images require.
std::vector<std::uint8_t> StraightBytes(const FilterPixels& pixels, bool& isBlank) {
    const FilterBox& box = pixels.GetBox();
    const auto width = static_cast<std::size_t>(box.width);
    std::vector<std::uint8_t> bytes(width * static_cast<std::size_t>(box.height) * 4);
    std::uint8_t* to = bytes.data();
    unsigned int seen = 0;
    constexpr unsigned int kWidened = kFilterFull / 255;
    for (int y = box.top; y < box.Bottom(); ++y) {
        const std::uint16_t* from = pixels.Row(y);
        for (std::size_t x = 0; x < width; ++x, from += kFilterChannels, to += 4) {
            const unsigned int opacity = from[3];
            const unsigned int byte = (opacity + kWidened / 2) / kWidened;
            if (byte == 0) continue;
            seen |= byte;
            to[3] = static_cast<std::uint8_t>(byte);
            for (int i = 0; i < 3; ++i)
                to[i] = static_cast<std::uint8_t>(
                    opacity == kFilterFull ? (from[i] + kWidened / 2) / kWidened
                                           : std::min((from[i] * 255U + opacity / 2) / opacity, 255U));
        }
    }
    isBlank = seen == 0;
    return bytes;
}

}  // namespace

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

ORVRef<ORVPixelImage> ORVImageOf(FilterPixels pixels) {
    const FilterBox box = pixels.GetBox();
    bool isBlank = false;
    const std::vector<std::uint8_t> bytes = StraightBytes(pixels, isBlank);
    pixels = {};  // may be hundreds of megabytes
    if (isBlank) return {};
    ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(box.width, box.height, bytes));
    if (!image) throw std::bad_alloc();
    return image;
}
