// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/filters/filter_pixels.h"
#include "generators/raster/ORVBandSink.h"

/// Keeps the pixels of a page on transparent paper for filters.
class ClearPixelSink final : public ORVBandSink {
public:
    /// Where the next page goes: its first pixel is the first one of the box, which has the page's size.
    void SetTarget(FilterPixels* pixels) { pixels_ = pixels; }

    int BeginPage(const RasterPageInfo& page) override;
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override;
    int WriteBand(const RasterBand& /*band*/, const std::vector<std::uint8_t>& /*bytes*/) override { return 1; }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

private:
    FilterPixels* pixels_ = nullptr;
};
