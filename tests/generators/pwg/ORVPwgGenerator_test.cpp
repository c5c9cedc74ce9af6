// SPDX-License-Identifier: Apache-2.0
#include "generators/pwg/ORVPwgGenerator.h"

#include <cups/cups.h>
#include <cups/raster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/support/named_rows.h"

namespace {

struct StoredPage {
    cups_page_header2_t header;
    std::vector<std::vector<std::uint8_t>> rows;
};

std::vector<StoredPage> Read(const std::string& bytes) {
    struct Source {
        const std::string& bytes;
        std::size_t at = 0;
    } source{bytes};
    cups_raster_t* stream = cupsRasterOpenIO(
        [](void* context, unsigned char* to, size_t size) -> ssize_t {
            auto& from = *static_cast<Source*>(context);
            const std::size_t count = std::min(size, from.bytes.size() - from.at);
            std::memcpy(to, from.bytes.data() + from.at, count);
            from.at += count;
            return static_cast<ssize_t>(count);
        },
        &source, CUPS_RASTER_READ);
    std::vector<StoredPage> pages;
    if (!stream) return pages;
    cups_page_header2_t header;
    while (cupsRasterReadHeader2(stream, &header) == 1) {
        StoredPage& page = pages.emplace_back(StoredPage{header, {}});
        for (unsigned int y = 0; y < header.cupsHeight; ++y) {
            auto& row = page.rows.emplace_back(header.cupsBytesPerLine);
            EXPECT_EQ(cupsRasterReadPixels(stream, row.data(), header.cupsBytesPerLine),
                      header.cupsBytesPerLine);
        }
    }
    cupsRasterClose(stream);
    EXPECT_EQ(source.at, bytes.size());
    return pages;
}

template <class Generator = ORVPwgGenerator>
std::string Draw(ORVColourMode mode, double width, double height, unsigned int pages = 1) {
    ORVMemoryOutput output;
    ORVRasterOptions options;
    options.colourMode = mode;
    options.dotsPerInch = 180.0;
    options.bandRows = 13;
    Generator generator(output, options);
    EXPECT_EQ(generator.BeginDocument({"", pages}), 1);
    for (unsigned int i = 1; i <= pages; ++i) {
        EXPECT_EQ(generator.BeginPage(PageInfo(width, height, i)), 1);
        EXPECT_EQ(FillRectangle(generator, 1.0, 10.0, 4.0, 5.0, {0, 200, 0}), 1);
        EXPECT_EQ(FillRectangle(generator, 1.0, 1.0, 4.0, 5.0), 1);
        EXPECT_EQ(generator.EndPage(), 1);
    }
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(output.GetPartCount(), 1U);
    return output.GetBytes();
}

constexpr double kUnitsPerMillimetre = 90.0 / 25.4;

TEST(ORVPwgGeneratorTest, PagesAreReadBack) {
    const std::string bytes =
        Draw(ORVColourMode::kColour, 210.0 * kUnitsPerMillimetre, 297.0 * kUnitsPerMillimetre, 2);
    EXPECT_EQ(bytes.substr(0, 4), "RaS2");
    EXPECT_EQ(bytes.substr(4, 9), "PwgRaster");
    const auto pages = Read(bytes);
    ASSERT_EQ(pages.size(), 2U);
    for (const StoredPage& page : pages) {
        EXPECT_EQ(page.header.HWResolution[0], 180U);
        EXPECT_EQ(page.header.HWResolution[1], 180U);
        EXPECT_EQ(page.header.cupsWidth, 1488U);  // 210 mm, rounded down
        EXPECT_EQ(page.header.cupsHeight, 2104U);
        EXPECT_EQ(page.header.PageSize[0], 595U);
        EXPECT_EQ(page.header.PageSize[1], 842U);
        EXPECT_STREQ(page.header.cupsPageSizeName, "iso_a4_210x297mm");
        EXPECT_EQ(page.header.cupsColorSpace, CUPS_CSPACE_SRGB);
        EXPECT_EQ(page.header.cupsBitsPerPixel, 24U);
        EXPECT_EQ(page.header.cupsInteger[CUPS_RASTER_PWG_TotalPageCount], 2U);
        // No image box is stated: the image is the whole page.
        for (const int side : {CUPS_RASTER_PWG_ImageBoxLeft, CUPS_RASTER_PWG_ImageBoxTop,
                               CUPS_RASTER_PWG_ImageBoxRight, CUPS_RASTER_PWG_ImageBoxBottom})
            EXPECT_EQ(page.header.cupsInteger[side], 0U) << side;
        EXPECT_EQ(page.rows[25][3 * 3 + 1], 200);
        EXPECT_EQ(page.rows[25][3 * 3], 0);
        EXPECT_EQ(page.rows[25][0], 255);
        EXPECT_EQ(page.rows[2103][1487 * 3], 255);
    }
}

struct MediumCase {
    const char* name;
    const char* medium;  // its standard name
};
class PwgMediumTest : public testing::TestWithParam<MediumCase> {};
TEST_P(PwgMediumTest, HasThePixelsOfItsOwnPageHeader) {
    const pwg_media_t* medium = pwgMediaForPWG(GetParam().medium);
    ASSERT_NE(medium, nullptr);
    const auto userUnits = [](int hundredths) { return hundredths / 100.0 * kUnitsPerMillimetre; };
    const auto pages =
        Read(Draw(ORVColourMode::kColour, userUnits(medium->width), userUnits(medium->length)));
    ASSERT_EQ(pages.size(), 1U);
    cups_page_header2_t expected;
    std::memset(&expected, 0, sizeof expected);
    ASSERT_EQ(cupsRasterInitPWGHeader(&expected, pwgMediaForPWG(GetParam().medium), "srgb_8", 180, 180,
                                      nullptr, nullptr),
              1);
    EXPECT_EQ(pages[0].header.cupsWidth, expected.cupsWidth);
    EXPECT_EQ(pages[0].header.cupsHeight, expected.cupsHeight);
    EXPECT_STREQ(pages[0].header.cupsPageSizeName, expected.cupsPageSizeName);
}
INSTANTIATE_TEST_SUITE_P(Pwg, PwgMediumTest,
                         testing::Values(MediumCase{"A4", "iso_a4_210x297mm"},
                                         MediumCase{"A6", "iso_a6_105x148mm"},
                                         MediumCase{"Letter", "na_letter_8.5x11in"}),
                         kNameOfRow);

TEST(ORVPwgGeneratorTest, TinyPagesHaveAPixel) {
    const auto pages = Read(Draw(ORVColourMode::kColour, 0.1, 0.1));
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(pages[0].header.cupsWidth, 1U);
    EXPECT_EQ(pages[0].header.cupsHeight, 1U);
}

TEST(ORVPwgGeneratorTest, GreyAndBlackAreColourSpacesOfTheirOwn) {
    const auto grey = Read(Draw(ORVColourMode::kGrey, 101.0, 77.0));
    ASSERT_EQ(grey.size(), 1U);
    EXPECT_EQ(grey[0].header.cupsColorSpace, CUPS_CSPACE_SW);
    EXPECT_EQ(grey[0].header.cupsBitsPerPixel, 8U);
    EXPECT_EQ(grey[0].header.cupsWidth, 201U);
    EXPECT_EQ(grey[0].header.cupsHeight, 153U);
    EXPECT_EQ(grey[0].rows[25][3], 117);  // 200 * 150 / 256
    EXPECT_EQ(grey[0].rows[5][3], 0);

    const auto black = Read(Draw(ORVColourMode::kMono, 101.0, 77.0));
    ASSERT_EQ(black.size(), 1U);
    EXPECT_EQ(black[0].header.cupsColorSpace, CUPS_CSPACE_K);
    EXPECT_EQ(black[0].header.cupsBitsPerPixel, 1U);
    EXPECT_EQ(black[0].rows[5][0], 0x3F);
    EXPECT_EQ(black[0].rows[5][1], 0xC0);
    EXPECT_EQ(black[0].rows[50][0], 0);
}

TEST(ORVUrfGeneratorTest, PagesAreReadBack) {
    const std::string bytes = Draw<ORVUrfGenerator>(ORVColourMode::kColour, 210.0 * kUnitsPerMillimetre,
                                                    297.0 * kUnitsPerMillimetre, 2);
    EXPECT_EQ(bytes.substr(0, 12), std::string("UNIRAST\0\0\0\0\2", 12));
    const auto pages = Read(bytes);
    ASSERT_EQ(pages.size(), 2U);
    const auto asPwg =
        Read(Draw(ORVColourMode::kColour, 210.0 * kUnitsPerMillimetre, 297.0 * kUnitsPerMillimetre, 2));
    for (const StoredPage& page : pages) {
        EXPECT_EQ(page.header.HWResolution[0], 180U);
        EXPECT_EQ(page.header.cupsWidth, 1488U);
        EXPECT_EQ(page.header.cupsHeight, 2104U);
        EXPECT_EQ(page.header.cupsColorSpace, CUPS_CSPACE_SRGB);
        EXPECT_EQ(page.header.cupsBitsPerPixel, 24U);
        EXPECT_EQ(page.rows, asPwg.front().rows);
    }
}

TEST(ORVUrfGeneratorTest, GreyAndBlackAreGrey) {
    const auto grey = Read(Draw<ORVUrfGenerator>(ORVColourMode::kGrey, 101.0, 77.0));
    ASSERT_EQ(grey.size(), 1U);
    EXPECT_EQ(grey[0].header.cupsColorSpace, CUPS_CSPACE_SW);
    EXPECT_EQ(grey[0].header.cupsBitsPerPixel, 8U);
    EXPECT_EQ(grey[0].rows[25][3], 117);  // 200 * 150 / 256
    EXPECT_EQ(grey[0].rows[5][3], 0);

    const auto bits = Read(Draw(ORVColourMode::kMono, 101.0, 77.0));
    const auto black = Read(Draw<ORVUrfGenerator>(ORVColourMode::kMono, 101.0, 77.0));
    ASSERT_EQ(black.size(), 1U);
    ASSERT_EQ(bits.size(), 1U);
    EXPECT_EQ(black[0].header.cupsBitsPerPixel, 8U);
    ASSERT_EQ(black[0].header.cupsWidth, 201U);
    ASSERT_EQ(black[0].rows.size(), 153U);
    for (std::size_t y = 0; y < 153; ++y)
        for (std::size_t x = 0; x < 201; ++x)
            ASSERT_EQ(black[0].rows[y][x], bits[0].rows[y][x / 8] >> (7 - x % 8) & 1 ? 0 : 255)
                << x << " " << y;
}

TEST(ORVPwgGeneratorTest, OutputsThatFailAreReported) {
    struct Failing final : ORVOutput {
        int BeginPart() override { return Fail("full"); }
        int Append(const void*, std::size_t) override { return 0; }
        int EndPart() override { return 0; }
        int Commit() override { return 0; }
    } output;
    ORVPwgGenerator generator(output, {});
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(50.0, 50.0)), 1);
    EXPECT_EQ(generator.EndPage(), kOutputFailed);
}

}  // namespace
