// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/ORVBandSink.h"

class ORVOutput;
// The library's own name for it.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif
struct _cups_raster_s;
#ifdef __clang__
#pragma clang diagnostic pop
#endif

/// The two streams of pixels that driverless printers take. They hold the same pages; Apple Raster has no
/// pixels of one bit, so that black and white comes as grey.
enum class PrintRaster : std::uint8_t { kPWG, kApple };

/// Writes pages as PWG Raster or Apple Raster through the print system's library.
class PwgSink final : public ORVBandSink {
public:
    /// @param output  must outlive the sink
    PwgSink(ORVOutput& output, PrintRaster raster) : output_(output), raster_(raster) {}
    ~PwgSink() override;

    /// A page has the pixels that the library gives to paper of its size.
    void FitPage(RasterPageInfo& page) const override;
    int BeginPage(const RasterPageInfo& page) override;
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override;
    int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) override;
    int EndPage() override { return failed_ ? Failure() : 1; }
    int EndDocument() override;

private:
    int Open();
    int Failure() const;

    ORVOutput& output_;
    PrintRaster raster_;
    _cups_raster_s* stream_ = nullptr;
    bool failed_ = false;
    int greyWidth_ = 0;  // pixels in a row that come as bits and go as grey; 0 when they go as they come
};
