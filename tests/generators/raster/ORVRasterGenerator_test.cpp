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
    // Nothing to the right of the shape is painted when its border becomes that of its last pixel.
    for (const double right : {11.9, 11.998, 11.9999, 12.0, 12.0001}) {
        PixelPage page(40.0, 16.0);
        ORVPrintPath path;
        path.MoveTo({4.0, 4.0});
        path.LineTo({right, 5.5});  // the corner lies inside of a row
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
    path.LineTo({5.0, 5.0});  // goes on from the start of the closed contour
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

// A quarter of a pixel is left at each border, whichever it is and when it is the only one that cuts.
TEST(ORVRasterGeneratorTest, AClipCutsAtEachOfItsSides) {
    struct Row {
        const char* name;
        ORVMathBox2D clip;
        int x, y;                // the pixel that is cut into
        int outsideX, outsideY;  // its neighbour
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

TEST(ORVRasterGeneratorTest, ImagesKeepTheirEdges) {
    PixelPage page(20.0, 20.0);
    const auto image = PlainImage(2, 2, {0, 0, 255});
    EXPECT_EQ(page.Get().DrawImage({*image, {10.0, 0.0, 0.0, 10.0, 5.0, 5.0}}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(5, 5), 0x0000FFU);
    EXPECT_EQ(page.Colour(14, 14), 0x0000FFU);
    EXPECT_EQ(page.Colour(15, 15), 0xFFFFFFU);
}

TEST(ORVRasterGeneratorTest, ImagesPixelByPixelAreExact) {
    std::mt19937 random(11);
    std::vector<std::uint8_t> rgba(16 * 16 * 4);
    for (std::size_t i = 0; i < rgba.size(); ++i)
        rgba[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(random());
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(16, 16, rgba));
    PixelPage page(20.0, 20.0);
    EXPECT_EQ(page.Get().DrawImage({*image, {0.0, 16.0, 16.0, 0.0, 2.0, 2.0}}), 1);  // turned about
    page.Finish();
    for (std::size_t y = 0; y < 16; ++y)
        for (std::size_t x = 0; x < 16; ++x) {
            const std::size_t i = (x * 16 + y) * 4;
            const unsigned int colour =
                static_cast<unsigned int>(rgba[i] << 16 | rgba[i + 1] << 8 | rgba[i + 2]);
            EXPECT_EQ(page.Colour(static_cast<int>(x) + 2, static_cast<int>(y) + 2), colour);
        }
}

TEST(ORVRasterGeneratorTest, SmallerImagesAreAverages) {
    // A board of black and white squares of one pixel becomes an even grey, at any size.
    std::vector<std::uint8_t> rgba;
    for (int i = 0; i < 120 * 120; ++i) {
        const auto value = static_cast<std::uint8_t>((i % 120 + i / 120) % 2 == 0 ? 0 : 255);
        rgba.insert(rgba.end(), {value, value, value, 255});
    }
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(120, 120, rgba));
    for (const double size : {60.0, 30.0, 12.0, 2.0}) {
        PixelPage page(60.0, 60.0);
        EXPECT_EQ(page.Get().DrawImage({*image, {size, 0.0, 0.0, size, 0.0, 0.0}}), 1);
        page.Finish();
        const int middle = static_cast<int>(size) / 2;
        EXPECT_NEAR(page.Ink(middle, middle), 127, 2) << size;
        EXPECT_NEAR(page.TotalInk(), size * size / 2.0, size * size * 0.01) << size;
    }
}

TEST(ORVRasterGeneratorTest, LargerImagesAreSmooth) {
    const std::vector<std::uint8_t> rgba{0, 0, 0, 255, 255, 255, 255, 255};
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(2, 1, rgba));
    PixelPage page(40.0, 10.0);
    EXPECT_EQ(page.Get().DrawImage({*image, {40.0, 0.0, 0.0, 10.0, 0.0, 0.0}}), 1);
    page.Finish();
    EXPECT_EQ(page.Ink(0, 5), 255);
    EXPECT_EQ(page.Ink(39, 5), 0);
    for (int x = 1; x < 40; ++x) EXPECT_LE(page.Ink(x, 5), page.Ink(x - 1, 5));
    EXPECT_NEAR(page.Ink(20, 5), 124, 3);
}

/// The channel of an image's colour at a place: what the four samples around it mix to.
double MixedSample(const std::vector<std::uint8_t>& rgba, int width, int height, double x, double y,
                   std::size_t channel) {
    x = std::clamp(x - 0.5, 0.0, width - 1.0);
    y = std::clamp(y - 0.5, 0.0, height - 1.0);
    const int left = static_cast<int>(x), top = static_cast<int>(y);
    const auto at = [&](int column, int row) {
        column = std::min(column, width - 1);
        row = std::min(row, height - 1);
        return static_cast<double>(rgba[static_cast<std::size_t>(row * width + column) * 4 + channel]);
    };
    const double right = x - left, below = y - top;
    return (at(left, top) * (1.0 - right) + at(left + 1, top) * right) * (1.0 - below) +
           (at(left, top + 1) * (1.0 - right) + at(left + 1, top + 1) * right) * below;
}

TEST(ORVRasterGeneratorTest, StretchedImagesMixTheirFourNeighbours) {
    std::mt19937 random(12);
    for (const auto& [width, height] : {std::pair{4, 4}, {1, 7}, {7, 1}, {2, 2}, {13, 5}}) {
        std::vector<std::uint8_t> rgba(static_cast<std::size_t>(width * height) * 4);
        for (std::size_t i = 0; i < rgba.size(); ++i)
            rgba[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(random());
        const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(width, height, rgba));
        PixelPage page(90.0, 90.0);
        const ORVMathAffine2D map{100.3, -30.7, 40.2, 110.9, -10.0, -25.0};
        EXPECT_EQ(page.Get().DrawImage({*image, map}), 1);
        page.Finish();
        const std::optional<ORVMathAffine2D> inverse = map.Inverse();
        ASSERT_TRUE(inverse);
        for (int y = 0; y < 90; ++y)
            for (int x = 0; x < 90; ++x) {
                const ORVMathPoint2D place = (*inverse)({x + 0.5, y + 0.5});
                const bool isInside = place.x > 0.02 && place.x < 0.98 && place.y > 0.02 && place.y < 0.98;
                if (!isInside) continue;
                const double expected =
                    MixedSample(rgba, width, height, place.x * width, place.y * height, 0);
                // Places are told apart in 256ths of the way to the next sample.
                EXPECT_NEAR(page.Colour(x, y) >> 16U, expected, 2.5)
                    << width << "x" << height << " at " << x << ", " << y;
            }
    }
}

TEST(ORVRasterGeneratorTest, TransparentImagesBlendWithoutFringes) {
    // What is transparent has another colour, which must not show.
    const std::vector<std::uint8_t> rgba{255, 0, 0, 255, 0, 255, 0, 0};
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(2, 1, rgba));
    PixelPage page(40.0, 10.0);
    EXPECT_EQ(page.Get().DrawImage({*image, {40.0, 0.0, 0.0, 10.0, 0.0, 0.0}}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(1, 5), 0xFF0000U);
    EXPECT_EQ(page.Colour(38, 5), 0xFFFFFFU);
    for (int x = 0; x < 40; ++x) EXPECT_EQ(page.Colour(x, 5) >> 16U, 0xFFU) << x;
}

TEST(ORVRasterGeneratorTest, PatternsRepeatFromThePageOrigin) {
    const std::vector<std::uint8_t> pixels{255, 0, 0, 255, 0, 255, 0, 255};
    const ORVRef<ORVPixelImage> tile(ORVPixelImage::CreateFromPixels(2, 1, pixels));
    PixelPage page(8.0, 4.0);
    ORVPrintFill fill;
    fill.pattern = tile.get();
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 5.0, 4.0);
    EXPECT_EQ(page.Get().DrawShape({path, ORVMathAffine2D::Translation(3.0, 0.0), &fill, nullptr}), 1);
    fill.colour.opacity = 0;
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(2, 1), 0xFFFFFFU);
    EXPECT_EQ(page.Colour(3, 1), 0x00FF00U);
    EXPECT_EQ(page.Colour(4, 1), 0xFF0000U);
}

TEST(ORVRasterGeneratorTest, PatternsFollowTheMapOfEachShape) {
    // The same tile, moved by one pixel for the second shape.
    const std::uint8_t pixels[]{255, 0, 0, 255, 0, 0, 255, 255};
    const ORVRef<ORVPixelImage> tile(ORVPixelImage::CreateFromPixels(2, 1, pixels));
    PixelPage page(20.0, 20.0);
    for (const double shift : {0.0, 1.0}) {
        ORVPrintFill fill;
        fill.pattern = tile.get();
        fill.patternToPage = ORVMathAffine2D::Translation(shift, 0.0);
        ORVPrintPath path;
        path.MoveTo({0.0, shift * 10.0});
        path.LineTo({20.0, shift * 10.0});
        path.LineTo({20.0, shift * 10.0 + 10.0});
        path.LineTo({0.0, shift * 10.0 + 10.0});
        path.Close();
        EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    }
    page.Finish();
    EXPECT_EQ(page.Colour(4, 5), 0xFF0000U);
    EXPECT_EQ(page.Colour(5, 5), 0x0000FFU);
    EXPECT_EQ(page.Colour(4, 15), 0x0000FFU);
    EXPECT_EQ(page.Colour(5, 15), 0xFF0000U);
}

TEST(ORVRasterGeneratorTest, ImagesOfOnePixelAreOneColour) {
    const auto opaque = PlainImage(1, 1, {10, 200, 30});
    const auto clear = PlainImage(1, 1, {0, 0, 0, 128});
    PixelPage page(20.0, 20.0);
    EXPECT_EQ(page.Get().DrawImage({*opaque, {14.0, 14.0, -14.0, 14.0, -4.0, 5.0}}), 1);
    EXPECT_EQ(page.Get().DrawImage({*clear, {20.0, 0.0, 0.0, 10.0, 0.0, 10.0}}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(10, 5), 0x0AC81EU);
    EXPECT_EQ(page.Colour(10, 12), 0x05640FU);
}

TEST(ORVRasterGeneratorTest, PatternsHaveOpacityAndScale) {
    const auto tile = PlainImage(3, 3, {0, 0, 0});
    PixelPage page(30.0, 10.0);
    ORVPrintFill fill;
    fill.pattern = tile.get();
    fill.colour = {255, 0, 0, 51};
    fill.patternToPage = ORVMathAffine2D::Scaling(0.1, 0.1);
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 30.0, 10.0);
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(7, 7), 0xCCCCCCU);
}

double InkOfText(const ORVTextLayout& layout, const ORVPrintFill* fill, const ORVPrintStroke* stroke,
                 const ORVPrintPath* clip = nullptr) {
    PixelPage page(100.0, 40.0);
    EXPECT_EQ(page.Get().DrawText({layout, "HHHH", {1.0, 0.0, 0.0, -1.0, 5.0, 25.0}, fill, stroke, clip}), 1);
    page.Finish();
    return page.TotalInk();
}

TEST(ORVRasterGeneratorTest, TextIsFilledStrokedAndClipped) {
    ORVTextStyle style;
    style.height = 20.0;
    const ORVTextLayout layout = ORVLayoutText("HHHH", style);
    const ORVPrintFill fill;
    ORVPrintStroke stroke;
    const double filled = InkOfText(layout, &fill, nullptr), stroked = InkOfText(layout, nullptr, &stroke);
    const double both = InkOfText(layout, &fill, &stroke);
    EXPECT_GT(filled, 100.0);
    EXPECT_GT(stroked, filled);
    EXPECT_GT(both, stroked);

    const ORVPrintPath around = RectanglePath(0.0, 0.0, 100.0, 40.0);
    EXPECT_EQ(InkOfText(layout, &fill, nullptr, &around), filled);
    const ORVPrintPath elsewhere = RectanglePath(0.0, 0.0, 100.0, 5.0);
    EXPECT_EQ(InkOfText(layout, &fill, nullptr, &elsewhere), 0.0);
    // Two halves make the whole, along a slanted line, too.
    ORVPrintPath upper, lower;
    upper.MoveTo({0.0, 0.0});
    upper.LineTo({100.0, 0.0});
    upper.LineTo({0.0, 40.0});
    upper.Close();
    lower.MoveTo({100.0, 40.0});
    lower.LineTo({100.0, 0.0});
    lower.LineTo({0.0, 40.0});
    lower.Close();
    const double first = InkOfText(layout, &fill, nullptr, &upper),
                 second = InkOfText(layout, &fill, nullptr, &lower);
    EXPECT_GT(first, filled * 0.2);
    EXPECT_GT(second, filled * 0.05);
    EXPECT_NEAR(first + second, filled, filled * 0.01);
}

TEST(ORVRasterGeneratorTest, GlyphsLieWhereTheirOutlinesDo) {
    // Glyph by glyph from the store, or as an outline of their own: the same ink.
    ORVTextStyle style;
    style.height = 20.0;
    ORVTextLayout layout = ORVLayoutText("Sage&", style);
    const ORVPrintFill fill;
    const auto draw = [&](double enlarge) {
        ORVRasterOptions options;
        options.dotsPerInch = 90.0;
        PixelPage page(100.0, 40.0, options);
        EXPECT_EQ(page.Get().DrawText(
                      {layout, "Sage&", {enlarge, 0.0, 0.0, -enlarge, 5.0, 25.0}, &fill, nullptr, nullptr}),
                  1);
        return page.Finish().bytes;
    };
    const std::vector<std::uint8_t> usual = draw(1.0);
    // A size that is no longer kept as a glyph, scaled back.
    for (ORVGlyphRun& run : layout.runs) {
        run.size *= 4096.0;
        for (ORVGlyph& glyph : run.glyphs) glyph.x *= 4096.0, glyph.y *= 4096.0;
    }
    const std::vector<std::uint8_t> scaled = draw(1.0 / 4096.0);
    ASSERT_EQ(usual.size(), scaled.size());
    for (std::size_t i = 0; i < usual.size(); ++i) EXPECT_NEAR(usual[i], scaled[i], 2) << i;
}

TEST(ORVRasterGeneratorTest, GlyphsLargerThanAnyPageAreDrawn) {
    ORVTextStyle style;
    style.height = 1e6;
    const ORVTextLayout layout = ORVLayoutText("H", style);
    PixelPage page(50.0, 50.0);
    const ORVPrintFill fill;
    // The left stem of the letter lies on the page.
    EXPECT_EQ(page.Get().DrawText(
                  {layout, "H", {1.0, 0.0, 0.0, -1.0, -120'000.0, 300'000.0}, &fill, nullptr, nullptr}),
              1);
    page.Finish();
    EXPECT_GT(page.TotalInk(), 2000.0);
}

TEST(ORVRasterGeneratorTest, SyntheticBoldIsOneInk) {
    ORVTextStyle style;
    style.height = 24.0;
    ORVTextLayout layout = ORVLayoutText("HO8", style);
    ORVPrintFill fill;
    const double plain = InkOfText(layout, &fill, nullptr);
    for (ORVGlyphRun& run : layout.runs) run.syntheticBold = true;
    const double bold = InkOfText(layout, &fill, nullptr);
    EXPECT_GT(bold, plain * 1.1);
    EXPECT_LT(bold, plain * 1.8);
    // Where a glyph and its line overlap, transparency shows once only.
    fill.colour.opacity = 51;
    EXPECT_NEAR(InkOfText(layout, &fill, nullptr), bold / 5.0, bold * 0.01);
    PixelPage page(100.0, 40.0);
    EXPECT_EQ(page.Get().DrawText({layout, "HO8", {1.0, 0.0, 0.0, -1.0, 5.0, 25.0}, &fill, nullptr, nullptr}),
              1);
    page.Finish();
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 100; ++x) EXPECT_LE(page.Ink(x, y), 51);
}

/// Some of everything.
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
    // The page still takes what is drawn after all that.
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
    double side;  // user units, a pixel each
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

/// Draws squares as large as the page. @return the status of the page's end
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
    // A hundred times the page are always allowed.
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
