#include "generators/flatten/flat_pixels.h"

#include <algorithm>
#include <cstddef>

#include "generators/common/generator_status.h"

namespace {

void Expand(const std::uint8_t* row, RasterPixels kind, std::uint8_t* rgba, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x, rgba += 4) {
        switch (kind) {
            case RasterPixels::kRGB: std::copy_n(row + x * 3, 3, rgba); break;
            case RasterPixels::kGrey: std::fill_n(rgba, 3, row[x]); break;
            case RasterPixels::kBlack:
                std::fill_n(rgba, 3, std::uint8_t((row[x / 8] >> (7 - x % 8) & 1) != 0 ? 0 : 255));
                break;
        }
        rgba[3] = 255;
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

// Bands have rows of their own, so that threads do not meet.
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
