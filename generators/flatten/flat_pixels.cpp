// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/flat_pixels.h"

#include <algorithm>
#include <cstddef>

#include "generators/common/generator_status.h"

namespace {

template <class Colour>
void Expand(std::uint8_t* rgba, std::size_t width, Colour colour) {
    for (std::size_t x = 0; x < width; ++x, rgba += 4) {
        rgba[0] = colour(x, 0);
        rgba[1] = colour(x, 1);
        rgba[2] = colour(x, 2);
        rgba[3] = 255;
    }
}

void Expand(const std::uint8_t* row, RasterPixels kind, std::uint8_t* rgba, std::size_t width) {
    switch (kind) {
        case RasterPixels::kRGB:
            return Expand(rgba, width,
                          [=](std::size_t x, std::size_t channel) { return row[x * 3 + channel]; });
        case RasterPixels::kGrey: return Expand(rgba, width, [=](std::size_t x, int) { return row[x]; });
        case RasterPixels::kBlack:
            return Expand(rgba, width, [=](std::size_t x, int) -> std::uint8_t {
                return (row[x / 8] >> (7 - x % 8) & 1) != 0 ? 0 : 255;
            });
        case RasterPixels::kClear: return;  // not used here: it is for transparent paper
    }
}

}  // namespace

int FlatPixelSink::BeginPage(const RasterPageInfo& page) {
    kind_ = page.pixels;
    pixels_.width = page.width;
    pixels_.height = page.height;
    pixels_.rgba.resize(static_cast<std::size_t>(page.width) * static_cast<std::size_t>(page.height) * 4);
    return kGeneratorDone;
}

// Bands write to distinct rows, so threads do not conflict.
void FlatPixelSink::EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& /*bytes*/) const {
    const auto width = static_cast<std::size_t>(pixels_.width);
    const auto rows = static_cast<std::size_t>(band.rowCount);
    std::uint8_t* to = pixels_.rgba.data() + static_cast<std::size_t>(band.firstRow) * width * 4;
    if (band.isBlank) {
        std::fill_n(to, rows * width * 4, std::uint8_t{255});
        return;
    }
    for (std::size_t row = 0; row < rows; ++row)
        Expand(band.pixels + row * band.stride, kind_, to + row * width * 4, width);
}

int FlatPixelSink::WriteBand(const RasterBand& /*band*/, const std::vector<std::uint8_t>& /*bytes*/) {
    return kGeneratorDone;
}
