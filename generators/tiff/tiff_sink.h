#pragma once

#include <cstdio>
#include <memory>

#include "generators/raster/ORVBandSink.h"

class ORVOutput;
struct tiff;

/// Writes pages into one TIFF file, a band becoming a strip. The format links pages by writing into what was
/// written before: the file is made in a nameless one and goes to the output when it is whole.
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
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    int Open(const RasterPageInfo& page);
    int Fail(const char* error);
    void Close();

    ORVOutput& output_;
    std::unique_ptr<std::FILE, CloseFile> file_;
    tiff* tiff_ = nullptr;
    RasterPixels pixels_ = RasterPixels::kRGB;
    unsigned int strip_ = 0;
};
