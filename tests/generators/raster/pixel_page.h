// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "generators/raster/ORVRasterGenerator.h"
#include "tests/generators/drawing_calls.h"

/// Stores the pixels of the last page.
class PixelSink final : public ORVBandSink {
public:
    struct Pixels {
        RasterPageInfo page;
        std::vector<std::uint8_t> bytes;
        std::size_t rowBytes = 0;
        int blankBands = 0, bands = 0;
    };
    explicit PixelSink(Pixels& pixels) : pixels_(pixels) {}

    int BeginPage(const RasterPageInfo& page) override {
        pixels_ = {};
        pixels_.page = page;
        return 1;
    }
    void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const override {
        bytes.resize(band.rowBytes * static_cast<std::size_t>(band.rowCount));
        for (std::size_t y = 0; y < static_cast<std::size_t>(band.rowCount); ++y)
            std::memcpy(bytes.data() + y * band.rowBytes, band.pixels + y * band.stride, band.rowBytes);
    }
    int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) override {
        EXPECT_EQ(static_cast<std::size_t>(band.firstRow) * band.rowBytes, pixels_.bytes.size());
        pixels_.bytes.insert(pixels_.bytes.end(), bytes.begin(), bytes.end());
        pixels_.rowBytes = band.rowBytes;
        pixels_.blankBands += band.isBlank ? 1 : 0;
        ++pixels_.bands;
        return 1;
    }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

private:
    Pixels& pixels_;
};

/// A page drawn by a test, and its pixels. At 90 dots per inch, one user unit is one pixel.
class PixelPage {
public:
    PixelPage(double width, double height, const ORVRasterOptions& options = {})
        : generator_(std::make_unique<PixelSink>(pixels_), options) {
        EXPECT_EQ(generator_.BeginDocument({"", 1}), 1);
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height)), 1);
    }
    ORVRasterGenerator& Get() { return generator_; }
    const PixelSink::Pixels& Finish() {
        EXPECT_EQ(generator_.EndPage(), 1);
        EXPECT_EQ(generator_.EndDocument(), 1);
        return pixels_;
    }
    /// 0xRRGGBB
    unsigned int Colour(int x, int y) const {
        const std::uint8_t* p = pixels_.bytes.data() + static_cast<std::size_t>(y) * pixels_.rowBytes +
                                static_cast<std::size_t>(x) * 3;
        return static_cast<unsigned int>(p[0] << 16 | p[1] << 8 | p[2]);
    }
    /// How dark the pixel is, from its red channel: 0 white, 255 black.
    int Ink(int x, int y) const {
        return 255 -
               pixels_
                   .bytes[static_cast<std::size_t>(y) * pixels_.rowBytes + static_cast<std::size_t>(x) * 3];
    }
    /// Sum of the ink of all pixels, where a black pixel counts 1.
    double TotalInk() const {
        double sum = 0.0;
        for (std::size_t i = 0; i < pixels_.bytes.size(); i += 3) sum += 255 - pixels_.bytes[i];
        return sum / 255.0;
    }

private:
    PixelSink::Pixels pixels_;
    ORVRasterGenerator generator_;
};
