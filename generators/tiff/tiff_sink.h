// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVBandSink.h"
#include "platform/system/ORVTemporaryData.h"

class ORVOutput;
struct tiff;

/// Writes pages to one TIFF file, each band as a strip. The format links pages by changing earlier bytes, so
/// the file is created in an unnamed temporary file and copied to the output at the end.
class TiffSink final : public ORVBandSink {
public:
    /// @param output  must outlive the sink
    explicit TiffSink(ORVOutput& output) : output_(output) {}
    ~TiffSink() override;

    int BeginPage(const RasterPageInfo& page) override;
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override;
    int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) override;
    int EndPage() override;
    int EndDocument() override;

private:
    int Open(const RasterPageInfo& page);
    int Fail(const char* error);
    int FailWriting();
    void Close();

    ORVOutput& output_;
    ORVTemporaryData data_;
    tiff* tiff_ = nullptr;
    RasterPixels pixels_ = RasterPixels::kRGB;
    unsigned int strip_ = 0;
};
