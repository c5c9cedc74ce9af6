// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/ORVBandSink.h"

/// The pixels of a rendered image: red, green, blue and 255 for each.
struct FlatPixels {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgba;
};

/// Stores the pixels of the last page.
class FlatPixelSink final : public ORVBandSink {
public:
    /// @param pixels  must outlive the sink
    explicit FlatPixelSink(FlatPixels& pixels) : pixels_(pixels) {}

    int BeginPage(const RasterPageInfo& page) override;
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override;
    int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) override;
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

private:
    FlatPixels& pixels_;
    RasterPixels kind_ = RasterPixels::kRGB;
};
