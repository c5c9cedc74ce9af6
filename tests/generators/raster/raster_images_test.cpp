// SPDX-License-Identifier: Apache-2.0

// Images and pattern fills as pixels.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "tests/generators/raster/pixel_page.h"

namespace {

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
    EXPECT_EQ(page.Get().DrawImage({*image, {0.0, 16.0, 16.0, 0.0, 2.0, 2.0}}), 1);  // rows become columns
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
    // A checkerboard of single pixels becomes an even grey at any size.
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

/// Returns a channel of the image's colour at a point, interpolated between the four samples around it.
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
                // The position between two samples is resolved to 1/256.
                EXPECT_NEAR(page.Colour(x, y) >> 16U, expected, 2.5)
                    << width << "x" << height << " at " << x << ", " << y;
            }
    }
}

TEST(ORVRasterGeneratorTest, TransparentImagesBlendWithoutFringes) {
    // The transparent pixel has another colour, which must not show.
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

}  // namespace
