// SPDX-License-Identifier: Apache-2.0

// Compares each blend mode with its formula.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "tests/generators/raster/pixel_page.h"
#include "tests/generators/raster/plain_page.h"
#include "tests/support/named_rows.h"

namespace {

using Blend = ORVPrintBlendMode;

constexpr ORVMathBox2D kEverything{-1e4, 1e4, -1e4, 1e4};

struct ModeCase {
    const char* name;
    Blend mode;
};
class RasterBlendModeTest : public testing::TestWithParam<ModeCase> {};

constexpr int kSide = 64;

std::vector<std::uint8_t> RandomPixels(unsigned int seed, int leastOpacity) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> rgba;
    for (int i = 0; i < kSide * kSide; ++i) {
        for (int k = 0; k < 3; ++k) {
            // Including black, white and equal channels.
            const unsigned int choice = random() % 8;
            rgba.push_back(choice == 0            ? std::uint8_t{0}
                           : choice == 1          ? std::uint8_t{255}
                           : choice == 2 && k > 0 ? rgba.back()
                                                  : static_cast<std::uint8_t>(random()));
        }
        rgba.push_back(leastOpacity == 255
                           ? std::uint8_t{255}
                           : static_cast<std::uint8_t>(leastOpacity +
                                                       static_cast<int>(random()) % (256 - leastOpacity)));
    }
    return rgba;
}

/// Returns a colour of an image as it is stored: premultiplied and rounded.
PlainColour KeptColour(const std::uint8_t* rgba) {
    PlainColour colour;
    colour.opacity = rgba[3] / 255.0;
    for (std::size_t k = 0; k < 3; ++k)
        colour.rgb[k] = rgba[3] == 0 ? 0.0 : std::round(rgba[k] * rgba[3] / 255.0) / rgba[3];
    return colour;
}

/// Blends images in a layer. @return the largest difference of a pixel from the mode's formula
double FarthestFromFormula(Blend mode, int leastOpacity) {
    const std::vector<std::uint8_t> below = RandomPixels(1, leastOpacity),
                                    over = RandomPixels(2, leastOpacity);
    PixelPage page(kSide, kSide);
    const ORVMathAffine2D map = ORVMathAffine2D::Scaling(kSide, kSide);
    ORVPrintLayer outer;
    outer.box = kEverything;
    ORVPrintLayer inner = outer;
    inner.blend = mode;
    const ORVRef<ORVPixelImage> ground(ORVPixelImage::CreateFromPixels(kSide, kSide, below));
    const ORVRef<ORVPixelImage> top(ORVPixelImage::CreateFromPixels(kSide, kSide, over));
    EXPECT_EQ(page.Get().BeginLayer(outer), 1);
    EXPECT_EQ(page.Get().DrawImage({*ground, map}), 1);
    EXPECT_EQ(page.Get().BeginLayer(inner), 1);
    EXPECT_EQ(page.Get().DrawImage({*top, map}), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    page.Finish();
    double farthest = 0.0;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const std::size_t at = static_cast<std::size_t>(y * kSide + x) * 4;
            const PlainColour b = KeptColour(&below[at]), s = KeptColour(&over[at]);
            const std::array<double, 3> mixed = PlainBlend(mode, b.rgb, s.rgb);
            const double paper = (1.0 - s.opacity) * (1.0 - b.opacity);
            for (std::size_t k = 0; k < 3; ++k) {
                const double expected = (1.0 - b.opacity) * s.opacity * s.rgb[k] +
                                        b.opacity * s.opacity * mixed[k] +
                                        (1.0 - s.opacity) * b.opacity * b.rgb[k] + paper;
                const double seen = page.Colour(x, y) >> (16 - 8 * k) & 255;
                farthest = std::max(farthest, std::fabs(seen - expected * 255.0));
            }
        }
    return farthest;
}

TEST_P(RasterBlendModeTest, FollowsItsFormulaWhereAllIsOpaque) {
    EXPECT_LE(FarthestFromFormula(GetParam().mode, 255), 0.6);
}
TEST_P(RasterBlendModeTest, FollowsItsFormulaWhereSomethingShowsThrough) {
    EXPECT_LE(FarthestFromFormula(GetParam().mode, 1), 2.5);
}
INSTANTIATE_TEST_SUITE_P(
    Raster, RasterBlendModeTest,
    testing::Values(ModeCase{"Normal", Blend::kNormal}, ModeCase{"Multiply", Blend::kMultiply},
                    ModeCase{"Screen", Blend::kScreen}, ModeCase{"Overlay", Blend::kOverlay},
                    ModeCase{"Darken", Blend::kDarken}, ModeCase{"Lighten", Blend::kLighten},
                    ModeCase{"ColourDodge", Blend::kColourDodge}, ModeCase{"ColourBurn", Blend::kColourBurn},
                    ModeCase{"HardLight", Blend::kHardLight}, ModeCase{"SoftLight", Blend::kSoftLight},
                    ModeCase{"Difference", Blend::kDifference}, ModeCase{"Exclusion", Blend::kExclusion},
                    ModeCase{"Hue", Blend::kHue}, ModeCase{"Saturation", Blend::kSaturation},
                    ModeCase{"Colour", Blend::kColour}, ModeCase{"Luminosity", Blend::kLuminosity}),
    kNameOfRow);

}  // namespace
