// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "generators/raster/ORVBandSink.h"

class ORVOutput;

/// Writes pages as PNG files. The thread that renders a band also compresses it, to a piece of the image's
/// zlib stream, which becomes an IDAT chunk.
class PngSink final : public ORVBandSink {
public:
    /// @param output  must outlive the sink
    explicit PngSink(ORVOutput& output) : output_(output) {}

    bool TakesGreyForColour() const override { return true; }
    int BeginPage(const RasterPageInfo& page) override;
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override;
    int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) override;
    int EndPage() override;
    int EndDocument() override { return 1; }

private:
    void WriteChunk(std::string_view type, std::span<const std::uint8_t> content);
    void WriteTitle(std::string_view title);
    void Write(std::span<const std::uint8_t> bytes);

    ORVOutput& output_;
    RasterPixels pixels_ = RasterPixels::kRGB;
    int bandRows_ = 0;
    std::uint32_t adler_ = 1;
    bool isOpen_ = false, failed_ = false;

    // A white band is compressed only once.
    mutable std::mutex blankMutex_;
    mutable std::vector<std::uint8_t> blank_;
};
