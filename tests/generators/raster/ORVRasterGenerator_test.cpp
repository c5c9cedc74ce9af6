// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/ORVRasterGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "generators/common/generator_status.h"
#include "generators/common/path_range.h"
#include "generators/common/vector_power.h"
#include "tests/generators/raster/pixel_page.h"
#include "tests/support/named_rows.h"

namespace {

TEST(ORVRasterGeneratorTest, OpacityBlends) {
    PixelPage page(4.0, 4.0);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 4.0, 4.0, {0, 0, 0, 128}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 2.0, 4.0, {255, 0, 0, 51}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(3, 1), 0x7F7F7FU);
    EXPECT_EQ(page.Colour(1, 1), 0x996666U);  // a fifth of red over the grey
}

TEST(ORVRasterGeneratorTest, LaterShapesCoverEarlierOnes) {
    PixelPage page(8.0, 8.0);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 8.0, 8.0, {255, 0, 0}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 2.0, 2.0, 4.0, 4.0, {0, 255, 0}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(1, 1), 0xFF0000U);
    EXPECT_EQ(page.Colour(4, 4), 0x00FF00U);
}

TEST(ORVRasterGeneratorTest, ShapesEndWhereRoundingPutsTheirBorder) {
    // A right border that is rounded to the edge of a pixel must not paint the next pixel.
    for (const double right : {11.9, 11.998, 11.9999, 12.0, 12.0001}) {
        PixelPage page(40.0, 16.0);
        ORVPrintPath path;
        path.MoveTo({4.0, 4.0});
        path.LineTo({right, 5.5});  // the corner lies within a row
        path.LineTo({right, 9.5});
        path.LineTo({4.0, 12.0});
        path.Close();
        ORVPrintFill fill;
        fill.colour = {255, 0, 0};
        EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
        page.Finish();
        for (int y = 0; y < 16; ++y)
            for (int x = 13; x < 40; ++x)
                EXPECT_EQ(page.Colour(x, y), 0xFFFFFFU) << right << " " << x << " " << y;
        EXPECT_EQ(page.Colour(10, 7), 0xFF0000U) << right;
    }
}

TEST(ORVRasterGeneratorTest, EvenOddLeavesHoles) {
    PixelPage page(10.0, 10.0);
    ORVPrintPath path = RectanglePath(0.0, 0.0, 10.0, 10.0);
    const ORVPrintPath inner = RectanglePath(3.0, 3.0, 4.0, 4.0);
    path.verbs.insert(path.verbs.end(), inner.verbs.begin(), inner.verbs.end());
    path.points.insert(path.points.end(), inner.points.begin(), inner.points.end());
    ORVPrintFill fill;
    fill.evenOdd = true;
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(1, 1), 0U);
    EXPECT_EQ(page.Colour(5, 5), 0xFFFFFFU);
}

TEST(ORVRasterGeneratorTest, OpenContoursAreFilledClosed) {
    PixelPage page(10.0, 10.0);
    ORVPrintPath path;
    path.MoveTo({1.0, 1.0});
    path.LineTo({9.0, 1.0});
    path.LineTo({9.0, 9.0});
    path.LineTo({1.0, 9.0});
    path.Close();
    path.LineTo({5.0, 5.0});  // continues from the start of the closed subpath
    const ORVPrintFill fill;
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    page.Finish();
    EXPECT_NEAR(page.TotalInk(), 64.0, 0.01);
}

TEST(ORVRasterGeneratorTest, CurvesAreRound) {
    PixelPage page(100.0, 100.0);
    ORVPrintPath path;
    constexpr double k = 0.5522847498 * 40.0;
    path.MoveTo({90.0, 50.0});
    path.CubicTo({90.0, 50.0 + k}, {50.0 + k, 90.0}, {50.0, 90.0});
    path.CubicTo({50.0 - k, 90.0}, {10.0, 50.0 + k}, {10.0, 50.0});
    path.CubicTo({10.0, 50.0 - k}, {50.0 - k, 10.0}, {50.0, 10.0});
    path.CubicTo({50.0 + k, 10.0}, {90.0, 50.0 - k}, {90.0, 50.0});
    const ORVPrintFill fill;
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    page.Finish();
    EXPECT_NEAR(page.TotalInk(), 3.14159265 * 40.0 * 40.0, 8.0);
}

// Each clip cuts at one side only, and leaves a quarter of the pixels there.
TEST(ORVRasterGeneratorTest, AClipCutsAtEachOfItsSides) {
    struct Row {
        const char* name;
        ORVMathBox2D clip;
        int x, y;                // a pixel that the clip cuts
        int outsideX, outsideY;  // its neighbour outside the clip
    };
    for (const Row& row : {Row{"left", {6.75, 20.0, 0.0, 20.0}, 6, 10, 5, 10},
                           Row{"right", {0.0, 13.25, 0.0, 20.0}, 13, 10, 14, 10},
                           Row{"top", {0.0, 20.0, 6.75, 20.0}, 10, 6, 10, 5},
                           Row{"bottom", {0.0, 20.0, 0.0, 13.25}, 10, 13, 10, 14}}) {
        PixelPage page(20.0, 20.0);
        EXPECT_EQ(page.Get().BeginClip(row.clip), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 2.0, 2.0, 16.0, 16.0), 1);
        EXPECT_EQ(page.Get().EndClip(), 1);
        page.Finish();
        EXPECT_EQ(page.Ink(10, 10), 255) << row.name;
        EXPECT_EQ(page.Ink(row.x, row.y), 64) << row.name;
        EXPECT_EQ(page.Ink(row.outsideX, row.outsideY), 0) << row.name;
    }
}

TEST(ORVRasterGeneratorTest, ClipsCutAndNest) {
    PixelPage page(20.0, 20.0);
    EXPECT_EQ(page.Get().BeginClip({2.5, 18.0, 4.0, 16.25}), 1);
    EXPECT_EQ(page.Get().BeginClip({0.0, 10.0, 0.0, 100.0}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 20.0, 20.0), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 14.0, 0.0, 2.0, 20.0), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 19.0, 0.0, 1.0, 1.0), 1);
    page.Finish();
    EXPECT_EQ(page.Ink(1, 8), 0);
    EXPECT_EQ(page.Ink(2, 8), 128);  // half of the pixel
    EXPECT_EQ(page.Ink(9, 8), 255);
    EXPECT_EQ(page.Ink(10, 8), 0);
    EXPECT_EQ(page.Ink(9, 3), 0);
    EXPECT_EQ(page.Ink(9, 16), 64);
    EXPECT_EQ(page.Ink(2, 16), 32);
    EXPECT_EQ(page.Ink(9, 17), 0);
    EXPECT_EQ(page.Ink(14, 4), 255);
    EXPECT_EQ(page.Ink(14, 3), 0);
    EXPECT_EQ(page.Ink(19, 0), 255);
}

TEST(ORVRasterGeneratorTest, EmptyClipsShowNothing) {
    PixelPage page(20.0, 20.0);
    for (const ORVMathBox2D& box :
         {ORVMathBox2D(), ORVMathBox2D{30.0, 40.0, 0.0, 20.0}, ORVMathBox2D{5.0, 5.0, 5.0, 5.0}}) {
        EXPECT_EQ(page.Get().BeginClip(box), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 20.0, 20.0), 1);
        EXPECT_EQ(WriteText(page.Get(), "HHH", 0.0, 10.0), 1);
        EXPECT_EQ(page.Get().EndClip(), 1);
    }
    page.Finish();
    EXPECT_EQ(page.TotalInk(), 0.0);
}

/// Draws a pattern, a stroke, an image, clipped and translucent content, and text.
void DrawAll(ORVRasterGenerator& generator) {
    const auto image = PlainImage(5, 7, {10, 200, 30, 180});
    std::vector<std::uint8_t> tilePixels;
    for (int i = 0; i < 6 * 6; ++i)
        tilePixels.insert(tilePixels.end(), {static_cast<std::uint8_t>(i * 7), 20, 90, 255});
    const ORVRef<ORVPixelImage> tile(ORVPixelImage::CreateFromPixels(6, 6, tilePixels));
    ORVPrintFill fill;
    fill.pattern = tile.get();
    fill.colour.opacity = 200;
    fill.patternToPage = ORVMathAffine2D::Scaling(1.3, 0.7);
    ORVPrintPath path;
    path.MoveTo({10.0, 90.0});
    path.CubicTo({60.0, -40.0}, {110.0, 190.0}, {140.0, 20.0});
    path.LineTo({100.0, 110.0});
    path.Close();
    ORVPrintStroke stroke;
    stroke.width = 3.3;
    stroke.colour = {0, 0, 180, 140};
    stroke.join = ORVPrintStroke::Join::kRound;
    EXPECT_EQ(generator.DrawShape({path, {}, &fill, &stroke}), 1);
    EXPECT_EQ(generator.DrawImage({*image, {70.0, 12.0, -9.0, 50.0, 30.0, 20.0}}), 1);
    EXPECT_EQ(generator.BeginClip({20.4, 120.7, 33.3, 77.7}), 1);
    EXPECT_EQ(FillRectangle(generator, 0.0, 60.0, 150.0, 30.0, {250, 120, 0, 90}), 1);
    EXPECT_EQ(WriteText(generator, "Bands do not show", 15.0, 66.0), 1);
    EXPECT_EQ(generator.EndClip(), 1);
    EXPECT_EQ(WriteText(generator, "nor do threads", 25.0, 105.0), 1);
}

TEST(ORVRasterGeneratorTest, BandsAndThreadsDoNotShow) {
    for (const ORVColourMode mode : {ORVColourMode::kColour, ORVColourMode::kGrey, ORVColourMode::kMono}) {
        std::vector<std::uint8_t> expected;
        for (const int rows : {120, 1, 9, 32})
            for (const unsigned int threads : {1U, 2U, 5U}) {
                ORVRasterOptions options;
                options.colourMode = mode;
                options.bandRows = rows;
                options.threads = threads;
                PixelPage page(150.0, 120.0, options);
                DrawAll(page.Get());
                const std::vector<std::uint8_t>& bytes = page.Finish().bytes;
                if (expected.empty()) expected = bytes;
                EXPECT_EQ(bytes, expected) << rows << " rows, " << threads << " threads";
            }
    }
}

TEST(ORVRasterGeneratorTest, VectorInstructionsDoNotShow) {
    const auto draw = [](ORVRasterOptions options) {
        PixelPage page(300.0, 200.0, options);
        std::mt19937 random(7);
        const auto upTo = [&](double most) {
            return std::uniform_real_distribution<double>(0.0, most)(random);
        };
        const auto byte = [&] { return static_cast<std::uint8_t>(upTo(255.0)); };
        const auto point = [&](double x, double y) { return ORVMathPoint2D{x + upTo(60.0), y + upTo(60.0)}; };
        for (int i = 0; i < 300; ++i) {
            const double x = upTo(300.0) - 30.0, y = upTo(200.0) - 30.0;
            ORVPrintPath path;
            path.MoveTo(point(x, y));
            path.CubicTo(point(x, y), point(x, y), point(x, y));
            path.LineTo(point(x, y));
            if (i % 2 == 0) path.Close();
            ORVPrintFill fill;
            fill.colour = {byte(), byte(), byte(), i % 3 == 0 ? byte() : std::uint8_t{255}};
            fill.evenOdd = i % 5 == 0;
            ORVPrintStroke stroke;
            stroke.width = upTo(i % 7 == 0 ? 8.0 : 1.5);
            stroke.join = static_cast<ORVPrintStroke::Join>(i % 4);
            stroke.cap = static_cast<ORVPrintStroke::Cap>(i % 3);
            stroke.colour = {byte(), byte(), byte(), i % 4 == 0 ? byte() : std::uint8_t{255}};
            const bool isClipped = i % 6 == 0;
            if (isClipped) EXPECT_EQ(page.Get().BeginClip(BoxOf(x + 3.3, y + 2.2, x + 40.7, y + 41.1)), 1);
            EXPECT_EQ(page.Get().DrawShape({path, {}, i % 9 == 0 ? nullptr : &fill, &stroke}), 1);
            if (isClipped) EXPECT_EQ(page.Get().EndClip(), 1);
        }
        return page.Finish().bytes;
    };
    for (const ORVColourMode mode : {ORVColourMode::kColour, ORVColourMode::kGrey, ORVColourMode::kMono}) {
        ORVRasterOptions options;
        options.colourMode = mode;
        options.dotsPerInch = 150.0;
        UsedVectorPower() = VectorPower::kPlain;
        const std::vector<std::uint8_t> plain = draw(options);
        for (const VectorPower power : {VectorPower::kSse41, VectorPower::kAvx2}) {
            UsedVectorPower() = std::min(power, DetectVectorPower());
            EXPECT_TRUE(draw(options) == plain)
                << "mode " << static_cast<int>(mode) << ", power " << static_cast<int>(power);
        }
    }
    UsedVectorPower() = DetectVectorPower();
}

TEST(ORVRasterGeneratorTest, BlankBandsAreSaidToBe) {
    ORVRasterOptions options;
    options.bandRows = 10;
    PixelPage page(30.0, 95.0, options);
    EXPECT_EQ(FillRectangle(page.Get(), 3.0, 25.0, 10.0, 10.0), 1);
    const auto& pixels = page.Finish();
    EXPECT_EQ(pixels.bands, 10);
    EXPECT_EQ(pixels.blankBands, 8);
    EXPECT_EQ(pixels.bytes.size(), 30U * 95U * 3U);
    EXPECT_NEAR(page.TotalInk(), 100.0, 1e-9);
}

TEST(ORVRasterGeneratorTest, MonoDithersGreysAndKeepsEdges) {
    ORVRasterOptions options;
    options.colourMode = ORVColourMode::kMono;
    PixelPage page(64.0, 64.0, options);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 32.0, 32.0, {192, 192, 192}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 32.3, 0.0, 31.7, 32.0), 1);
    const auto& pixels = page.Finish();
    EXPECT_EQ(pixels.page.pixels, RasterPixels::kBlack);
    EXPECT_EQ(pixels.rowBytes, 8U);
    int grey = 0, black = 0, white = 0;
    for (std::size_t y = 0; y < 64; ++y)
        for (std::size_t x = 0; x < 64; ++x) {
            const int bit = pixels.bytes[y * 8 + x / 8] >> (7 - x % 8) & 1;
            (y >= 32 ? white : x < 32 ? grey : black) += bit;
        }
    EXPECT_NEAR(grey, 32 * 32 / 4, 16);
    EXPECT_EQ(black, 32 * 32);
    EXPECT_EQ(white, 0);
}

TEST(ORVRasterGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    PixelPage page(10.0, 10.0);
    const double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(FillRectangle(page.Get(), -huge, 5.0, huge, 1.0, {255, 0, 0}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), huge, huge, 1.0, 1.0), 1);
    ORVPrintFill fill;
    ORVPrintStroke stroke;
    stroke.width = huge;
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 1.0, 1.0);
    for (const double scale : {0.0, 1e-300, 1e300, std::nan("")})
        EXPECT_EQ(page.Get().DrawShape({path, ORVMathAffine2D::Scaling(scale, scale), &fill, &stroke}), 1);
    EXPECT_EQ(WriteText(page.Get(), "far", 1e30, 1e30), 1);
    const auto image = PlainImage(2, 2, {1, 2, 3});
    for (const double scale : {0.0, 1e-300, 1e20, 1e300, std::nan("")})
        EXPECT_EQ(page.Get().DrawImage({*image, {scale, 0.0, 0.0, 1.0, 100.0, 0.0}}), 1);
    EXPECT_EQ(page.Get().BeginClip({-huge, huge, -huge, huge}), 1);
    // The page still accepts content after all that.
    EXPECT_EQ(FillRectangle(page.Get(), 2.0, 2.0, 2.0, 2.0, {0, 255, 0}), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(3, 3), 0x00FF00U);
}

TEST(ORVRasterGeneratorTest, ShapesFarLargerThanThePageCoverIt) {
    PixelPage page(10.0, 10.0);
    EXPECT_EQ(FillRectangle(page.Get(), -1e30, -1e20, 2e30, 2e20, {0, 0, 255}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(0, 0), 0x0000FFU);
    EXPECT_EQ(page.Colour(9, 9), 0x0000FFU);
}

TEST(ORVRasterGeneratorTest, PagesBeyondTheLimitAreRefused) {
    const auto begin = [](double width, double height, const ORVRasterOptions& options) {
        PixelSink::Pixels pixels;
        ORVRasterGenerator generator(std::make_unique<PixelSink>(pixels), options);
        EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
        const int status = generator.BeginPage(PageInfo(width, height));
        EXPECT_EQ(generator.GetError().empty(), status == 1);
        return status;
    };
    EXPECT_EQ(begin(63'000.0, 63'000.0, {}), 1);
    EXPECT_EQ(begin(64'000.0, 64'000.0, {}), kPageTooLarge);
    EXPECT_EQ(begin(1'000'001.0, 1.0, {}), kPageTooLarge);
    EXPECT_EQ(begin(1e300, 1e300, {}), kPageTooLarge);
    ORVRasterOptions options;
    options.pixelLimit = 100;
    EXPECT_EQ(begin(10.0, 10.0, options), 1);
    EXPECT_EQ(begin(10.0, 11.0, options), kPageTooLarge);
}

TEST(ORVRasterGeneratorTest, ThePageThatPassesTheLimitOfAllPagesIsRefused) {
    PixelSink::Pixels pixels;
    ORVRasterOptions options;
    options.outputPixelLimit = 250;
    ORVRasterGenerator generator(std::make_unique<PixelSink>(pixels), options);
    for (int document = 0; document < 2; ++document) {
        EXPECT_EQ(generator.BeginDocument({"", 0}), 1);
        for (const double height : {10.0, 15.0}) {
            EXPECT_EQ(generator.BeginPage(PageInfo(10.0, height)), 1);
            EXPECT_EQ(generator.EndPage(), 1);
        }
        if (document == 0) EXPECT_EQ(generator.EndDocument(), 1);
    }
    EXPECT_EQ(generator.GetError(), "");
    EXPECT_EQ(generator.BeginPage(PageInfo(1.0, 1.0)), kOutputTooLarge);
    EXPECT_NE(generator.GetError(), "");
}

struct SideCase {
    const char* name;
    double side;  // in user units, one pixel each
    int pixels;
};
class RasterSideTest : public testing::TestWithParam<SideCase> {};
TEST_P(RasterSideTest, IsTheNearestWholeNumber) {
    PixelPage page(GetParam().side, 50.0);
    EXPECT_EQ(page.Finish().page.width, GetParam().pixels);
    PixelPage turned(50.0, GetParam().side);
    EXPECT_EQ(turned.Finish().page.height, GetParam().pixels);
}
INSTANTIATE_TEST_SUITE_P(
    Raster, RasterSideTest,
    testing::Values(SideCase{"Whole", 100.0, 100}, SideCase{"AThousandthMore", 100.001, 100},
                    SideCase{"LessThanHalf", 100.49, 100}, SideCase{"MoreThanHalf", 100.51, 101},
                    SideCase{"AThousandthLess", 99.999, 100}, SideCase{"NearlyNothing", 0.01, 1}),
    kNameOfRow);

/// Fills the page several times. @return the status of EndPage
int PaintOver(unsigned int times, std::uint64_t limit, unsigned int threads = 1, int bandRows = 0) {
    ORVRasterOptions options;
    options.paintLimit = limit;
    options.threads = threads;
    options.bandRows = bandRows;
    PixelSink::Pixels pixels;
    ORVRasterGenerator generator(std::make_unique<PixelSink>(pixels), options);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(200.0, 200.0)), 1);
    for (unsigned int i = 0; i < times; ++i) EXPECT_EQ(FillRectangle(generator, 0.0, 0.0, 200.0, 200.0), 1);
    const int status = generator.EndPage();
    EXPECT_EQ(generator.GetError().empty(), status == 1);
    return status;
}

TEST(ORVRasterGeneratorTest, PaintingEndsAtItsLimit) {
    // By default, a hundred times the page is allowed.
    EXPECT_EQ(PaintOver(20, 0), 1);
    EXPECT_EQ(PaintOver(1000, 0), kTooMuchToPaint);
    EXPECT_EQ(PaintOver(1000, 3000 * 200 * 200), 1);
    for (const int rows : {1, 7, 200})
        for (const unsigned int threads : {1U, 3U})
            EXPECT_EQ(PaintOver(1000, 0, threads, rows), kTooMuchToPaint) << rows << ", " << threads;
}

TEST(ORVRasterGeneratorTest, SinksThatFailEndThePage) {
    struct Failing final : ORVBandSink {
        int BeginPage(const RasterPageInfo&) override { return 1; }
        void EncodeBand(const RasterBand&, std::vector<std::uint8_t>&) const override {}
        int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>&) override {
            return band.firstRow >= 20 ? kOutputFailed : kGeneratorDone;
        }
        int EndPage() override { return 1; }
        int EndDocument() override { return 1; }
    };
    ORVRasterOptions options;
    options.bandRows = 10;
    options.threads = 4;
    ORVRasterGenerator generator(std::make_unique<Failing>(), options);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(10.0, 1000.0)), 1);
    EXPECT_EQ(generator.EndPage(), kOutputFailed);
}

}  // namespace
