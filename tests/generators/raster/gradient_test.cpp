// SPDX-License-Identifier: Apache-2.0

// Gradients, compared with a slow reference implementation.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <random>

#include "tests/generators/gradients.h"
#include "tests/generators/raster/pixel_page.h"
#include "tests/generators/raster/plain_paint.h"
#include "tests/support/named_rows.h"

namespace {

using Kind = ORVPrintGradient::Kind;
using Spread = ORVPrintGradient::Spread;

constexpr int kWidth = 61, kHeight = 47;

/// Fills the page with a gradient.
void Cover(ORVRasterGenerator& generator, const ORVPrintGradient& gradient) {
    ORVPrintFill fill;
    fill.gradient = &gradient;
    fill.colour = {1, 2, 3, 77};  // ignored where gradients are supported
    const ORVPrintPath path = RectanglePath(-5.0, -5.0, 1000.0, 1000.0);
    EXPECT_EQ(generator.DrawShape({path, {}, &fill, nullptr}), 1);
}

/// Compares every pixel of a page with the reference implementation. A pixel may have any colour that the
/// gradient has near the pixel's centre.
void ExpectGradient(PixelPage& page, const ORVPrintGradient& gradient, const std::string& what) {
    int wrong = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            std::array<double, 3> least{255.0, 255.0, 255.0}, most{};
            const auto include = [&](const std::optional<double>& place) {
                const PlainColour colour = place ? PlainColourAt(gradient, *place) : PlainColour{};
                for (std::size_t i = 0; i < 3; ++i) {
                    const double seen =
                        255.0 * (1.0 - colour.opacity) + colour.rgb[i] * colour.opacity * 255.0;
                    least[i] = std::min(least[i], seen);
                    most[i] = std::max(most[i], seen);
                }
            };
            for (const double dx : {-0.02, 0.0, 0.02})
                for (const double dy : {-0.02, 0.0, 0.02}) {
                    const std::optional<double> place = PlainPlaceAt(gradient, {x + 0.5 + dx, y + 0.5 + dy});
                    include(place);
                    // Colours come from a table, so the offset may differ by one of its entries.
                    for (int i = -2; place && i <= 2; ++i) include(*place + i / 2.0 / 512.0);
                }
            const unsigned int colour = page.Colour(x, y);
            for (std::size_t i = 0; i < 3; ++i) {
                const double seen = colour >> (16 - 8 * i) & 255;
                if (seen < least[i] - 1.6 || seen > most[i] + 1.6) {
                    if (++wrong < 3)
                        ADD_FAILURE() << what << ": at " << x << ", " << y << " channel " << i << " is "
                                      << seen << ", not " << least[i] << " to " << most[i];
                }
            }
        }
    EXPECT_EQ(wrong, 0) << what;
}

class RandomGradients {
public:
    explicit RandomGradients(unsigned int seed) : random_(seed) {}
    double Between(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random_);
    }
    int Choice(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    ORVPrintGradient Next(Kind kind, Spread spread) {
        stops.clear();
        const int count = 2 + Choice(5);
        double at = Choice(3) == 0 ? 0.0 : Between(0.0, 0.4);
        for (int i = 0; i < count; ++i) {
            const auto byte = [&] { return static_cast<std::uint8_t>(Choice(256)); };
            stops.push_back({at, {byte(), byte(), byte(), Choice(2) == 0 ? std::uint8_t{255} : byte()}});
            if (Choice(4) != 0) at = std::min(1.0, at + Between(0.05, 0.4));
        }
        ORVPrintGradient gradient;
        gradient.kind = kind;
        gradient.spread = spread;
        gradient.start = {Between(-1.0, 2.0), Between(-1.0, 2.0)};
        gradient.end = {Between(-1.0, 2.0), Between(-1.0, 2.0)};
        gradient.startRadius = Choice(3) == 0 ? 0.0 : Between(0.0, 1.0);
        gradient.endRadius = Choice(6) == 0 ? 0.0 : Between(0.1, 1.5);
        if (gradient.startRadius == 0.0 && gradient.endRadius == 0.0) gradient.endRadius = 0.5;
        if (Choice(3) == 0 && kind == Kind::kRadial && gradient.startRadius != gradient.endRadius)
            gradient.end = gradient.start;
        gradient.stops = stops;
        const double c = Between(8.0, 40.0), s = Choice(2) == 0 ? 0.0 : Between(-20.0, 20.0);
        gradient.toPage = {c, -s, s * 0.7, c * Between(0.4, 1.3), Between(0.0, 50.0), Between(0.0, 40.0)};
        return gradient;
    }

private:
    std::vector<ORVPrintGradientStop> stops;
    std::mt19937 random_;
};

struct GradientCase {
    const char* name;
    Kind kind;
    Spread spread;
};
class RasterGradientTest : public testing::TestWithParam<GradientCase> {};

TEST_P(RasterGradientTest, HasTheColoursOfTheSlowCalculation) {
    RandomGradients random(7);
    for (int i = 0; i < 12; ++i) {
        const ORVPrintGradient gradient = random.Next(GetParam().kind, GetParam().spread);
        PixelPage page(kWidth, kHeight);
        Cover(page.Get(), gradient);
        page.Finish();
        ExpectGradient(page, gradient, "gradient " + std::to_string(i));
    }
}

INSTANTIATE_TEST_SUITE_P(Raster, RasterGradientTest,
                         testing::Values(GradientCase{"LinearPad", Kind::kLinear, Spread::kPad},
                                         GradientCase{"LinearReflect", Kind::kLinear, Spread::kReflect},
                                         GradientCase{"LinearRepeat", Kind::kLinear, Spread::kRepeat},
                                         GradientCase{"RadialPad", Kind::kRadial, Spread::kPad},
                                         GradientCase{"RadialReflect", Kind::kRadial, Spread::kReflect},
                                         GradientCase{"RadialRepeat", Kind::kRadial, Spread::kRepeat}),
                         kNameOfRow);

constexpr std::array kRedToBlue{ORVPrintGradientStop{0.0, {255, 0, 0}},
                                ORVPrintGradientStop{1.0, {0, 0, 255}}};

TEST(RasterGradientsTest, AlongAxesEveryRowOrColumnIsAlike) {
    for (const Spread spread : {Spread::kPad, Spread::kReflect, Spread::kRepeat})
        for (const bool isDown : {false, true}) {
            const ORVPrintGradient gradient =
                LinearGradient(kRedToBlue, {7.0, 3.0},
                               isDown ? ORVMathPoint2D{7.0, 31.0} : ORVMathPoint2D{40.0, 3.0}, spread);
            PixelPage page(kWidth, kHeight);
            Cover(page.Get(), gradient);
            page.Finish();
            ExpectGradient(page, gradient, isDown ? "down" : "across");
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; ++x)
                    EXPECT_EQ(page.Colour(x, y), isDown ? page.Colour(0, y) : page.Colour(x, 0));
        }
}

TEST(RasterGradientsTest, SuddenChangesAreSharp) {
    constexpr std::array stops{ORVPrintGradientStop{0.0, {255, 0, 0}}, ORVPrintGradientStop{0.5, {255, 0, 0}},
                               ORVPrintGradientStop{0.5, {0, 0, 255}},
                               ORVPrintGradientStop{1.0, {0, 0, 255}}};
    PixelPage page(40.0, 4.0);
    Cover(page.Get(), LinearGradient(stops, {10.0, 0.0}, {30.0, 0.0}));
    page.Finish();
    for (int x = 0; x < 40; ++x) EXPECT_EQ(page.Colour(x, 1), x < 20 ? 0xFF0000U : 0x0000FFU) << x;
}

TEST(RasterGradientsTest, WhatLiesBeyondTheEndsHasTheOuterColours) {
    constexpr std::array stops{ORVPrintGradientStop{0.0, {255, 0, 0}}, ORVPrintGradientStop{0.0, {0, 255, 0}},
                               ORVPrintGradientStop{1.0, {0, 255, 0}},
                               ORVPrintGradientStop{1.0, {0, 0, 255}}};
    PixelPage page(40.0, 4.0);
    Cover(page.Get(), LinearGradient(stops, {10.0, 0.0}, {30.0, 0.0}));
    page.Finish();
    for (int x = 0; x < 40; ++x)
        EXPECT_EQ(page.Colour(x, 1), x < 10 ? 0xFF0000U : x < 30 ? 0x00FF00U : 0x0000FFU) << x;
}

TEST(RasterGradientsTest, OpacityIsMixedBesideColours) {
    // Halfway between red and transparent red is red at half opacity.
    constexpr std::array stops{ORVPrintGradientStop{0.0, {255, 0, 0}},
                               ORVPrintGradientStop{1.0, {255, 0, 0, 0}}};
    PixelPage page(100.0, 4.0);
    Cover(page.Get(), LinearGradient(stops, {0.0, 0.0}, {100.0, 0.0}));
    page.Finish();
    EXPECT_NEAR(page.Colour(50, 1) & 255U, 128.0, 2.0);
    EXPECT_EQ(page.Colour(50, 1) >> 16U, 255U);
}

TEST(RasterGradientsTest, StrokesAndTextsHaveThem) {
    const ORVPrintGradient gradient = LinearGradient(kRedToBlue, {0.0, 0.0}, {100.0, 0.0});
    ORVPrintFill fill;
    fill.gradient = &gradient;
    ORVPrintStroke stroke;
    stroke.gradient = &gradient;
    stroke.width = 6.0;
    ORVTextStyle style;
    style.height = 30.0;
    const ORVTextLayout layout = ORVLayoutText("HHHH", style);
    ORVPrintPath line;
    line.MoveTo({0.0, 20.0});
    line.LineTo({100.0, 20.0});
    const auto draw = [&](int what) {
        PixelPage page(100.0, 40.0);
        const ORVMathAffine2D map{1.0, 0.0, 0.0, -1.0, 0.0, 35.0};
        if (what == 0) EXPECT_EQ(page.Get().DrawShape({line, {}, nullptr, &stroke}), 1);
        if (what == 1) EXPECT_EQ(page.Get().DrawText({layout, "HHHH", map, &fill, nullptr, nullptr}), 1);
        if (what == 2) EXPECT_EQ(page.Get().DrawText({layout, "HHHH", map, nullptr, &stroke, nullptr}), 1);
        page.Finish();
        int painted = 0;
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 100; ++x) {
                const unsigned int colour = page.Colour(x, y);
                // Only fully covered pixels have no green.
                if ((colour >> 8U & 255U) != 0) continue;
                ++painted;
                EXPECT_NEAR(colour & 255U, (x + 0.5) * 2.55, 2.0) << x;
                EXPECT_NEAR(colour >> 16U, 255.0 - (x + 0.5) * 2.55, 2.0) << x;
            }
        return painted;
    };
    EXPECT_EQ(draw(0), 600);
    EXPECT_GT(draw(1), 100);
    EXPECT_GT(draw(2), 100);
}

TEST(RasterGradientsTest, GreyOnesLeavePagesGrey) {
    const auto draw = [](std::uint8_t blue) {
        struct GreySink final : ORVBandSink {
            explicit GreySink(RasterPixels& found) : pixels(found) {}
            bool TakesGreyForColour() const override { return true; }
            int BeginPage(const RasterPageInfo& page) override {
                pixels = page.pixels;
                return 1;
            }
            void EncodeBand(const RasterBand&, std::vector<std::uint8_t>&) const override {}
            int WriteBand(const RasterBand&, const std::vector<std::uint8_t>&) override { return 1; }
            int EndPage() override { return 1; }
            int EndDocument() override { return 1; }
            RasterPixels& pixels;
        };
        RasterPixels pixels = RasterPixels::kBlack;
        ORVRasterGenerator generator(std::make_unique<GreySink>(pixels), {});
        EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
        EXPECT_EQ(generator.BeginPage(PageInfo(10.0, 10.0)), 1);
        const std::array stops{ORVPrintGradientStop{0.0, {10, 10, 10}},
                               ORVPrintGradientStop{1.0, {200, 200, blue}}};
        Cover(generator, LinearGradient(stops, {0.0, 0.0}, {10.0, 0.0}));
        EXPECT_EQ(generator.EndPage(), 1);
        return pixels;
    };
    EXPECT_EQ(draw(200), RasterPixels::kGrey);
    EXPECT_EQ(draw(201), RasterPixels::kRGB);
}

TEST(RasterGradientsTest, InGreyTheyAreAsLightAsTheirColours) {
    ORVRasterOptions options;
    options.colourMode = ORVColourMode::kGrey;
    PixelPage page(100.0, 4.0, options);
    Cover(page.Get(), LinearGradient(kRedToBlue, {0.0, 0.0}, {100.0, 0.0}));
    const PixelSink::Pixels& pixels = page.Finish();
    for (std::size_t x = 0; x < 100; ++x) {
        const double share = (static_cast<double>(x) + 0.5) / 100.0;
        EXPECT_NEAR(pixels.bytes[x], 77.0 * (1.0 - share) + 29.0 * share, 2.0) << x;
    }
}

TEST(RasterGradientsTest, WhatCannotBeInvertedIsTheFirstColour) {
    ORVPrintGradient gradient = LinearGradient(kRedToBlue, {0.0, 0.0}, {10.0, 0.0});
    gradient.toPage = {1.0, 2.0, 2.0, 4.0, 0.0, 0.0};
    ORVPrintFill fill;
    fill.gradient = &gradient;
    fill.colour = {255, 0, 0};
    PixelPage page(10.0, 10.0);
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 10.0, 10.0);
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(5, 5), 0xFF0000U);
}

struct OffsetCase {
    const char* name;
    std::vector<double> dashes;
    double offset;
};

/// Returns how much of each pixel along a line is inked; walks along the line in small steps.
std::vector<double> PlainDashes(const std::vector<double>& dashes, double offset, int length) {
    double period = 0.0;
    for (const double dash : dashes) period += dash;
    std::vector<double> ink(static_cast<std::size_t>(length), 0.0);
    constexpr int kSteps = 200;
    for (int i = 0; i < length * kSteps; ++i) {
        double at = std::fmod((i + 0.5) / kSteps + offset, period);
        std::size_t entry = 0;
        while (entry + 1 < dashes.size() && at >= dashes[entry]) at -= dashes[entry++];
        if (entry % 2 == 0) ink[static_cast<std::size_t>(i / kSteps)] += 1.0 / kSteps;
    }
    return ink;
}

class RasterDashOffsetTest : public testing::TestWithParam<OffsetCase> {};
TEST_P(RasterDashOffsetTest, IsWhereTheLineBegins) {
    ORVPrintStroke stroke;
    stroke.dashes = GetParam().dashes;
    stroke.dashOffset = GetParam().offset;
    // A straight, a bent and a closed line; only the upper side is compared.
    for (const int shape : {0, 1, 2}) {
        PixelPage page(60.0, 30.0);
        ORVPrintPath path;
        path.MoveTo({5.0, 2.5});
        path.LineTo({45.0, 2.5});
        if (shape > 0) path.LineTo({45.0, 22.5});
        if (shape > 1) {
            path.LineTo({5.0, 22.5});
            path.Close();
        }
        EXPECT_EQ(page.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
        page.Finish();
        const std::vector<double> expected = PlainDashes(GetParam().dashes, GetParam().offset, 40);
        for (int x = 1; x < 39; ++x)
            EXPECT_NEAR(page.Ink(5 + x, 2) / 255.0, expected[static_cast<std::size_t>(x)], 0.02)
                << "shape " << shape << ", " << x;
    }
}
INSTANTIATE_TEST_SUITE_P(
    Raster, RasterDashOffsetTest,
    testing::Values(OffsetCase{"None", {6.0, 3.0}, 0.0}, OffsetCase{"InADash", {6.0, 3.0}, 2.0},
                    OffsetCase{"AtAGap", {6.0, 3.0}, 6.0}, OffsetCase{"InAGap", {6.0, 3.0}, 7.5},
                    OffsetCase{"APeriod", {6.0, 3.0}, 9.0}, OffsetCase{"ManyPeriods", {6.0, 3.0}, 9002.0},
                    OffsetCase{"FourEntries", {6.0, 3.0, 1.0, 2.0}, 9.5}),
    kNameOfRow);

TEST(RasterDashOffsetTest, LinesThatCapsMakeSolidBeginAfterTheirGap) {
    ORVPrintStroke stroke;
    stroke.width = 6.0;
    stroke.cap = ORVPrintStroke::Cap::kSquare;
    const std::array dashes{4.0, 6.0};  // a gap is as long as two caps
    stroke.dashes = dashes;
    stroke.dashOffset = 4.0;
    PixelPage page(60.0, 12.0);
    ORVPrintPath path;
    path.MoveTo({10.0, 6.0});
    path.LineTo({50.0, 6.0});
    EXPECT_EQ(page.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
    page.Finish();
    EXPECT_EQ(page.Ink(12, 6), 0);  // the gap ends at 16, the cap before it begins at 13
    EXPECT_EQ(page.Ink(13, 6), 255);
    EXPECT_EQ(page.Ink(40, 6), 255);
}

}  // namespace
