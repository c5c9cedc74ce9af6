// SPDX-License-Identifier: Apache-2.0
#include "generators/tiff/ORVTiffGenerator.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"

namespace {

/// A file in memory, read by libtiff.
struct Memory {
    const std::string& bytes;
    toff_t at = 0;
};

TIFF* Open(Memory& memory) {
    return TIFFClientOpen(
        "", "rm", &memory,
        [](thandle_t handle, void* to, tmsize_t size) -> tmsize_t {
            auto& from = *static_cast<Memory*>(handle);
            const auto left =
                static_cast<tmsize_t>(from.bytes.size() - std::min<toff_t>(from.at, from.bytes.size()));
            const tmsize_t count = std::min(size, left);
            std::memcpy(to, from.bytes.data() + from.at, static_cast<std::size_t>(count));
            from.at += static_cast<toff_t>(count);
            return count;
        },
        [](thandle_t, void*, tmsize_t) -> tmsize_t { return 0; },
        [](thandle_t handle, toff_t offset, int whence) -> toff_t {
            auto& from = *static_cast<Memory*>(handle);
            from.at = whence == SEEK_SET   ? offset
                      : whence == SEEK_CUR ? from.at + offset
                                           : from.bytes.size() + offset;
            return from.at;
        },
        [](thandle_t) { return 0; },
        [](thandle_t handle) -> toff_t { return static_cast<Memory*>(handle)->bytes.size(); }, nullptr,
        nullptr);
}

/// A page as stored in the file.
struct StoredPage {
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 0, samples = 0, photometric = 0, compression = 0, unit = 0;
    float resolution = 0.0F;
    std::uint32_t kind = 0;
    std::uint16_t number = 0, count = 0;
    std::vector<std::vector<std::uint8_t>> rows;
};

std::vector<StoredPage> Read(const std::string& bytes) {
    Memory memory{bytes};
    TIFF* tiff = Open(memory);
    std::vector<StoredPage> pages;
    if (!tiff) return pages;
    do {
        StoredPage& page = pages.emplace_back();
        TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &page.width);
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &page.height);
        TIFFGetField(tiff, TIFFTAG_BITSPERSAMPLE, &page.bits);
        TIFFGetField(tiff, TIFFTAG_SAMPLESPERPIXEL, &page.samples);
        TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &page.photometric);
        TIFFGetField(tiff, TIFFTAG_COMPRESSION, &page.compression);
        TIFFGetField(tiff, TIFFTAG_RESOLUTIONUNIT, &page.unit);
        TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &page.resolution);
        TIFFGetField(tiff, TIFFTAG_SUBFILETYPE, &page.kind);
        TIFFGetField(tiff, TIFFTAG_PAGENUMBER, &page.number, &page.count);
        for (std::uint32_t y = 0; y < page.height; ++y) {
            auto& row = page.rows.emplace_back(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
            EXPECT_EQ(TIFFReadScanline(tiff, row.data(), y, 0), 1) << y;
        }
    } while (TIFFReadDirectory(tiff) == 1);
    TIFFClose(tiff);
    return pages;
}

/// @param known  number of pages stated at the start; 0 if unknown
std::string Draw(ORVColourMode mode, unsigned int pages, unsigned int known) {
    ORVMemoryOutput output;
    ORVRasterOptions options;
    options.colourMode = mode;
    options.bandRows = 7;
    ORVTiffGenerator generator(output, options);
    EXPECT_EQ(generator.BeginDocument({"Title", known}), 1);
    for (unsigned int i = 1; i <= pages; ++i) {
        EXPECT_EQ(generator.BeginPage(PageInfo(20.0, 29.0 + i, i)), 1);
        EXPECT_EQ(FillRectangle(generator, 2.0, 20.0, 10.0, 5.0, {200, 0, 0}), 1);
        EXPECT_EQ(FillRectangle(generator, 2.0, 2.0, 10.0, 5.0), 1);
        EXPECT_EQ(generator.EndPage(), 1);
    }
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(output.GetPartCount(), 1U);
    return output.GetBytes();
}

std::string Draw(ORVColourMode mode, unsigned int pages = 1) { return Draw(mode, pages, pages); }

TEST(ORVTiffGeneratorTest, ColoursAreReadBack) {
    const auto pages = Read(Draw(ORVColourMode::kColour));
    ASSERT_EQ(pages.size(), 1U);
    const StoredPage& page = pages[0];
    EXPECT_EQ(page.width, 20U);
    EXPECT_EQ(page.height, 30U);
    EXPECT_EQ(page.bits, 8);
    EXPECT_EQ(page.samples, 3);
    EXPECT_EQ(page.photometric, PHOTOMETRIC_RGB);
    EXPECT_EQ(page.compression, COMPRESSION_ADOBE_DEFLATE);
    EXPECT_EQ(page.unit, RESUNIT_INCH);
    EXPECT_FLOAT_EQ(page.resolution, 90.0F);
    EXPECT_EQ(page.rows[22][3 * 3], 200);
    EXPECT_EQ(page.rows[22][3 * 3 + 1], 0);
    EXPECT_EQ(page.rows[29][0], 255);
}

TEST(ORVTiffGeneratorTest, GreyHasOneSample) {
    const auto pages = Read(Draw(ORVColourMode::kGrey));
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(pages[0].samples, 1);
    EXPECT_EQ(pages[0].photometric, PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(pages[0].rows[22][3], 60);  // 200 * 77 / 256
    EXPECT_EQ(pages[0].rows[3][3], 0);
}

TEST(ORVTiffGeneratorTest, BlackAndWhiteIsFax) {
    const auto pages = Read(Draw(ORVColourMode::kMono));
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(pages[0].bits, 1);
    EXPECT_EQ(pages[0].compression, COMPRESSION_CCITTFAX4);
    EXPECT_EQ(pages[0].photometric, PHOTOMETRIC_MINISWHITE);
    EXPECT_EQ(pages[0].rows[3][0], 0x3F);  // black from the third pixel on
    EXPECT_EQ(pages[0].rows[3][1], 0xF0);
    EXPECT_EQ(pages[0].rows[10][0], 0);
}

TEST(ORVTiffGeneratorTest, PagesFollowEachOther) {
    const auto pages = Read(Draw(ORVColourMode::kColour, 3));
    ASSERT_EQ(pages.size(), 3U);
    for (std::uint32_t i = 0; i < 3; ++i) EXPECT_EQ(pages[i].height, 30U + i);
    EXPECT_EQ(Draw(ORVColourMode::kColour, 3), Draw(ORVColourMode::kColour, 3));
}

// Page numbers count from 0; a page count of 0 means that it is unknown.
TEST(ORVTiffGeneratorTest, PagesOfADocumentAreNumbered) {
    for (const unsigned int known : {3U, 0U}) {
        const auto pages = Read(Draw(ORVColourMode::kGrey, 3, known));
        ASSERT_EQ(pages.size(), 3U);
        for (std::uint16_t i = 0; i < 3; ++i) {
            EXPECT_EQ(pages[i].kind, static_cast<std::uint32_t>(FILETYPE_PAGE)) << known;
            EXPECT_EQ(pages[i].number, i) << known;
            EXPECT_EQ(pages[i].count, known);
        }
    }
    EXPECT_EQ(Read(Draw(ORVColourMode::kGrey))[0].kind, 0U) << "a picture by itself";
}

TEST(ORVTiffGeneratorTest, OutputsThatFailAreReported) {
    struct Failing final : ORVOutput {
        int BeginPart() override { return 1; }
        int Append(const void*, std::size_t) override { return Fail("full"); }
        int EndPart() override { return 1; }
        int Commit() override { return 1; }
    } output;
    ORVTiffGenerator generator(output, {});
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(5.0, 5.0)), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.EndDocument(), kOutputFailed);
}

}  // namespace
