// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/ORVInk.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "tests/generators/drawing_calls.h"

namespace {

struct Shown {
    int grey, opacity;  // both are -1 if the area is left out
};

Shown Area(ORVColourMode mode, ORVPrintColour colour) {
    if (!ORVInk(mode).ConvertArea(colour)) return {-1, -1};
    EXPECT_EQ(colour.red, colour.green);
    EXPECT_EQ(colour.red, colour.blue);
    return {colour.red, colour.opacity};
}

TEST(ORVInkTest, GreysAreAsLightAsTheirColours) {
    struct Row {
        ORVPrintColour colour;
        int grey;
    };
    // The luminance is x = 0.2126 R + 0.7152 G + 0.0722 B; sRGB is 12.92 x or 1.055 x^(1/2.4) - 0.055.
    for (const Row& row : {Row{{0, 0, 0, 255}, 0}, Row{{255, 255, 255, 255}, 255}, Row{{77, 77, 77, 255}, 77},
                           Row{{255, 0, 0, 255}, 127}, Row{{0, 255, 0, 255}, 220}, Row{{0, 0, 255, 255}, 76},
                           Row{{255, 255, 0, 255}, 248}}) {
        const Shown shown = Area(ORVColourMode::kGrey, row.colour);
        EXPECT_NEAR(shown.grey, row.grey, 1);
        const ORVPrintColour line = ORVInk(ORVColourMode::kGrey).ConvertLine(row.colour);
        EXPECT_EQ(line.green, shown.grey);
    }
    EXPECT_EQ(Area(ORVColourMode::kGrey, {9, 9, 9, 40}).opacity, 40);
}

TEST(ORVInkTest, LinesAndTextThatAreNotWhiteBecomeBlack) {
    const ORVInk ink(ORVColourMode::kMono);
    for (const ORVPrintColour& colour :
         {ORVPrintColour{254, 255, 255, 255}, ORVPrintColour{255, 255, 0, 20}, ORVPrintColour{0, 0, 0, 1}}) {
        const ORVPrintColour line = ink.ConvertLine(colour);
        EXPECT_EQ(line.red + line.green + line.blue, 0);
        EXPECT_EQ(line.opacity, 255);
    }
    EXPECT_EQ(ink.ConvertLine({255, 255, 255, 255}).green, 255);
}

TEST(ORVInkTest, AreasBecomeBlackOrWhiteOrAreLeftOut) {
    EXPECT_EQ(Area(ORVColourMode::kMono, {200, 0, 0, 255}).grey, 0);
    EXPECT_EQ(Area(ORVColourMode::kMono, {0, 255, 0, 255}).grey, 255);
    // Dark despite transparency: black. Too light: left out. Translucent white must not hide what is below.
    const Shown dark = Area(ORVColourMode::kMono, {0, 0, 0, 200});
    EXPECT_EQ(dark.grey, 0);
    EXPECT_EQ(dark.opacity, 255);
    EXPECT_EQ(Area(ORVColourMode::kMono, {0, 0, 0, 60}).grey, -1);
    EXPECT_EQ(Area(ORVColourMode::kMono, {255, 255, 255, 128}).grey, -1);
}

TEST(ORVInkTest, ColoursStayAsTheyAre) {
    ORVInk ink(ORVColourMode::kColour);
    EXPECT_FALSE(ink.ChangesColours());
    const auto image = PlainImage(2, 2, {1, 2, 3, 255});
    EXPECT_EQ(&ink.ConvertImage(*image), image.get());
}

TEST(ORVInkTest, PicturesBecomeGrey) {
    ORVInk ink(ORVColourMode::kGrey);
    const auto image = PlainImage(2, 1, {255, 0, 0, 100});
    const ORVPixelImage& grey = ink.ConvertImage(*image);
    const auto pixels = grey.GetPixels();
    ASSERT_EQ(pixels.size(), 8U);
    EXPECT_NEAR(pixels[4], 127, 1);
    EXPECT_EQ(pixels[4], pixels[5]);
    EXPECT_EQ(pixels[4], pixels[6]);
    EXPECT_EQ(pixels[7], 100);
    // An image is converted once; a grey one needs no copy.
    EXPECT_EQ(&ink.ConvertImage(*image), &grey);
    EXPECT_EQ(&ink.ConvertImage(grey), &grey);
}

TEST(ORVInkTest, PicturesInBlackAndWhiteKeepTheirGreysInTheMean) {
    ORVInk ink(ORVColourMode::kMono);
    for (const int grey : {0, 40, 64, 128, 200, 255}) {
        const auto value = static_cast<std::uint8_t>(grey);
        const auto image = PlainImage(64, 64, {value, value, value, 255});
        const auto pixels = ink.ConvertImage(*image).GetPixels();
        double sum = 0.0;
        for (std::size_t i = 0; i < pixels.size(); i += 4) {
            EXPECT_TRUE(pixels[i] == 0 || pixels[i] == 255);
            sum += pixels[i];
        }
        EXPECT_NEAR(sum / 64.0 / 64.0, grey, 3.0);
    }
}

/// Reference implementation of Floyd-Steinberg dithering, from left to right: 7/16 of the error go to the
/// next pixel, and 3/16, 5/16 and 1/16 to those below.
std::vector<int> DiffusedPlainly(const std::vector<int>& greys, int width) {
    const int height = static_cast<int>(greys.size()) / width;
    std::vector<int> sixteenths(greys.size(), 0), result(greys.size());
    const auto give = [&](int x, int y, int part) {
        if (x >= 0 && x < width && y < height) sixteenths[static_cast<std::size_t>(y * width + x)] += part;
    };
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto at = static_cast<std::size_t>(y * width + x);
            const int wanted = greys[at] + sixteenths[at] / 16;
            result[at] = wanted >= 128 ? 255 : 0;
            const int error = wanted - result[at];
            give(x + 1, y, error * 7);
            give(x - 1, y + 1, error * 3);
            give(x, y + 1, error * 5);
            give(x + 1, y + 1, error);
        }
    return result;
}

TEST(ORVInkTest, ErrorsAreSpreadByTheWeightsOfFloydAndSteinberg) {
    constexpr int kWidth = 9, kHeight = 7;
    std::vector<int> greys;
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < kWidth * kHeight; ++i) {
        greys.push_back(i * 37 % 256);
        pixels.insert(pixels.end(), 3, static_cast<std::uint8_t>(greys.back()));
        pixels.push_back(255);
    }
    const ORVRef<const ORVPixelImage> image(ORVPixelImage::CreateFromPixels(kWidth, kHeight, pixels));
    ORVInk ink(ORVColourMode::kMono);
    const auto dots = ink.ConvertImage(*image).GetPixels();
    std::vector<int> shown;
    for (std::size_t i = 0; i < dots.size(); i += 4) shown.push_back(dots[i]);
    EXPECT_EQ(shown, DiffusedPlainly(greys, kWidth));
}

TEST(ORVInkTest, TransparentPixelsStayTransparentAndPatternsAreSharp) {
    ORVInk ink(ORVColourMode::kMono);
    const auto faint = PlainImage(4, 4, {0, 0, 0, 100});
    for (const std::uint8_t value : ink.ConvertImage(*faint).GetPixels())
        EXPECT_TRUE(value == 0 || value == 255);
    EXPECT_EQ(ink.ConvertImage(*faint).GetPixels()[3], 0);
    const auto grey = PlainImage(4, 4, {127, 127, 127, 255});
    const auto pixels = ink.ConvertPattern(*grey).GetPixels();
    EXPECT_EQ(std::accumulate(pixels.begin(), pixels.end(), 0), 16 * 255);  // black, opaque
}

TEST(ORVInkTest, KeepsABoundedNumberOfPictures) {
    ORVInk ink(ORVColourMode::kGrey, 1000);
    const auto first = PlainImage(1, 1, {255, 0, 0, 255});
    const ORVRef<const ORVPixelImage> once = ORVRef<const ORVPixelImage>::Share(&ink.ConvertImage(*first));
    EXPECT_EQ(once->GetReferenceCount(), 2U);
    const auto large = PlainImage(16, 16, {255, 0, 0, 255});
    ink.ConvertImage(*large);
    const auto other = PlainImage(1, 1, {0, 255, 0, 255});
    ink.ConvertImage(*other);
    EXPECT_EQ(once->GetReferenceCount(), 1U);  // released
    EXPECT_EQ(large->GetReferenceCount(), 1U);
}

TEST(ORVInkTest, FormatsThatMakeDotsGetTheGreysOfAreas) {
    ORVInk ink(ORVColourMode::kMono, 1000, true);
    ORVPrintColour area{255, 200, 200, 100};
    EXPECT_TRUE(ink.ConvertArea(area));
    EXPECT_EQ(area.red, area.blue);
    EXPECT_GT(area.red, 200);
    EXPECT_LT(area.red, 255);
    EXPECT_EQ(area.opacity, 100);
    EXPECT_EQ(ink.ConvertLine({255, 200, 200, 100}).red, 0);
    EXPECT_EQ(ink.ConvertLine({255, 255, 255, 100}).red, 255);
    const auto image = PlainImage(2, 2, {0, 200, 0, 255});
    const auto pixels = ink.ConvertImage(*image).GetPixels();
    EXPECT_GT(pixels[0], 100);
    EXPECT_LT(pixels[0], 200);
}

std::vector<ORVPrintGradientStop> Stops(ORVPrintColour from, ORVPrintColour to) {
    return {{0.0, from}, {1.0, to}};
}

TEST(ORVInkTest, GradientsInGreysAreAsLightAsTheirMixedColours) {
    std::vector<ORVPrintGradientStop> stops = Stops({255, 0, 0, 255}, {0, 0, 255, 55});
    EXPECT_TRUE(ORVInk(ORVColourMode::kGrey).ConvertStops(stops, true));
    ASSERT_EQ(stops.size(), 9U);
    for (const ORVPrintGradientStop& stop : stops) {
        ORVPrintColour mixed{static_cast<std::uint8_t>(std::lround(255 * (1 - stop.offset))), 0,
                             static_cast<std::uint8_t>(std::lround(255 * stop.offset)), 255};
        EXPECT_NEAR(stop.colour.red, Area(ORVColourMode::kGrey, mixed).grey, 1);
        EXPECT_NEAR(stop.colour.opacity, 255 - 200 * stop.offset, 1);
    }
    std::vector<ORVPrintGradientStop> greys = Stops({0, 0, 0, 255}, {200, 200, 200, 255});
    EXPECT_TRUE(ORVInk(ORVColourMode::kGrey).ConvertStops(greys, true));
    EXPECT_EQ(greys.size(), 2U) << "greys mix to greys";
}

TEST(ORVInkTest, GradientsOfAreasInBlackAndWhiteHaveSteps) {
    const ORVInk ink(ORVColourMode::kMono);
    std::vector<ORVPrintGradientStop> stops = Stops({0, 0, 0, 255}, {255, 255, 255, 255});
    EXPECT_TRUE(ink.ConvertStops(stops, true));
    ASSERT_EQ(stops.size(), 4U);
    EXPECT_EQ(stops[0].colour.red + stops[1].colour.red, 0);
    EXPECT_EQ(stops[2].colour.red + stops[3].colour.red, 510);
    EXPECT_NEAR(stops[1].offset, 0.5, 0.01);
    EXPECT_EQ(stops[1].offset, stops[2].offset);
    EXPECT_EQ(stops[3].offset, 1.0);

    // Fading black stays black while it is dark on paper; beyond that, nothing is painted.
    stops = Stops({0, 0, 0, 255}, {0, 0, 0, 0});
    EXPECT_TRUE(ink.ConvertStops(stops, true));
    ASSERT_EQ(stops.size(), 4U);
    EXPECT_EQ(stops[1].colour.opacity, 255);
    EXPECT_EQ(stops[2].colour.opacity, 0);
    EXPECT_NEAR(stops[2].offset, 0.5, 0.01);

    stops = Stops({255, 255, 0, 200}, {255, 255, 255, 100});
    EXPECT_FALSE(ink.ConvertStops(stops, true)) << "light all over, not to hide what lies below";
}

TEST(ORVInkTest, GradientsOfLinesInBlackAndWhiteAreBlackUnlessWhite) {
    const ORVInk ink(ORVColourMode::kMono);
    for (const ORVPrintColour& colour :
         {ORVPrintColour{255, 255, 255, 255}, ORVPrintColour{255, 255, 0, 9}}) {
        std::vector<ORVPrintGradientStop> stops = Stops(colour, {255, 255, 255, 100});
        EXPECT_TRUE(ink.ConvertStops(stops, false));
        for (const ORVPrintGradientStop& stop : stops) {
            EXPECT_EQ(stop.colour.red, colour.blue == 0 ? 0 : 255);
            EXPECT_EQ(stop.colour.opacity, 255);
        }
    }
}

TEST(ORVInkTest, PicturesAreAsLightAsTheirOpacityMakesThem) {
    const auto image = PlainImage(40, 40, {0, 0, 0, 255});
    ORVInk mono(ORVColourMode::kMono), grey(ORVColourMode::kGrey);
    const auto pixels = mono.ConvertImage(*image, 64).GetPixels();
    const double mean =
        std::accumulate(pixels.begin(), pixels.end(), 0.0) / static_cast<double>(pixels.size());
    EXPECT_NEAR((mean * 4.0 - 255.0) / 3.0, 191.0, 6.0);
    EXPECT_EQ(grey.ConvertImage(*image, 64).GetPixels()[3], 64);
    EXPECT_EQ(grey.ConvertImage(*image).GetPixels()[3], 255);
}

}  // namespace
