// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/ORVBandSink.h"

class ORVOutput;
// Macro of the library's header.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif
struct _cups_raster_s;
#ifdef __clang__
#pragma clang diagnostic pop
#endif

/// Raster streams for driverless printers. They are equivalent, except that Apple Raster has no 1-bit pixels:
/// black and white is sent as grey.
enum class PrintRaster : std::uint8_t { kPWG, kApple };

/// Writes pages as PWG Raster or Apple Raster with the print system's library.
class PwgSink final : public ORVBandSink {
public:
    /// @param output  must outlive the sink
    PwgSink(ORVOutput& output, PrintRaster raster) : output_(output), raster_(raster) {}
    ~PwgSink() override;

    /// Uses the size in pixels that the library computes for the paper size.
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
    // Width of rows converted from bits to grey; 0 if rows are not converted.
    int greyWidth_ = 0;
};
