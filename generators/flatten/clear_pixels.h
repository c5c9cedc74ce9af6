// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "generators/filters/filter_pixels.h"
#include "generators/raster/ORVBandSink.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Stores the pixels of a page on transparent paper, for filters.
class ClearPixelSink final : public ORVBandSink {
public:
    /// Sets the position of the next page, which has the size of the box.
    void SetBox(const FilterBox& box) { box_ = box; }
    /// Moves out the pixels of the last page.
    FilterPixels Take() { return std::move(pixels_); }

    int BeginPage(const RasterPageInfo& page) override;
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override;
    int WriteBand(const RasterBand& /*band*/, const std::vector<std::uint8_t>& /*bytes*/) override {
        return 1;
    }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

private:
    FilterBox box_;
    // Bands write to distinct rows, from several threads.
    mutable FilterPixels pixels_;
};

/// An image of the pixels; null if all are transparent. Throws std::bad_alloc.
ORVRef<ORVPixelImage> ORVImageOf(FilterPixels pixels);
