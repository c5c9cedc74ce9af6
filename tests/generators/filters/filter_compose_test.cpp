// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_compose.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

// Two inputs that overlap; the boxes of results enclose both, lie inside, equal the first, or lie outside.
const FilterBox kFirst{-4, 2, 23, 17}, kSecond{3, -5, 19, 18};
const FilterBox kBoxes[] = {{-8, -8, 41, 33}, {5, 4, 7, 3}, kFirst, {40, 40, 3, 3}};

PlainPixel LaidOver(const PlainPixel& over, const PlainPixel& below) {
    PlainPixel sum;
    for (std::size_t i = 0; i < 4; ++i) sum[i] = over[i] + below[i] * (1.0 - over[3]);
    return sum;
}

// ---- Composite --------------------------------------------------------------------------------------------

struct OperatorCase {
    const char* name;
    FilterComposition composition;
    double (*compose)(double a, double b, double inA, double inB);
};
class FilterOperatorTest : public testing::TestWithParam<OperatorCase> {};
TEST_P(FilterOperatorTest, FollowsItsFormula) {
    const FilterPixels a = RandomFilterPixels(kFirst, 1), b = RandomFilterPixels(kSecond, 2);
    for (const FilterBox& box : kBoxes)
        ExpectPixels(ComposeFilterPixels(a, b, GetParam().composition, box), box, 1.0, [&](int x, int y) {
            const PlainPixel over = PlainAt(a, x, y), below = PlainAt(b, x, y);
            PlainPixel result;
            for (std::size_t i = 0; i < 4; ++i)
                result[i] = GetParam().compose(over[i], below[i], over[3], below[3]);
            return Possible(result);
        });
}
using enum FilterOperator;
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterOperatorTest,
    testing::Values(
        OperatorCase{
            "Over", {kOver, {}}, [](double a, double b, double inA, double) { return a + b * (1 - inA); }},
        OperatorCase{"In", {kIn, {}}, [](double a, double, double, double inB) { return a * inB; }},
        OperatorCase{"Out", {kOut, {}}, [](double a, double, double, double inB) { return a * (1 - inB); }},
        OperatorCase{"Atop",
                     {kAtop, {}},
                     [](double a, double b, double inA, double inB) { return a * inB + b * (1 - inA); }},
        OperatorCase{
            "Xor",
            {kXor, {}},
            [](double a, double b, double inA, double inB) { return a * (1 - inB) + b * (1 - inA); }},
        OperatorCase{"Lighter", {kLighter, {}}, [](double a, double b, double, double) { return a + b; }},
        OperatorCase{
            "Arithmetic",
            {kArithmetic, {0.5, 0.4, -0.7, 0.1}},
            [](double a, double b, double, double) { return 0.5 * a * b + 0.4 * a - 0.7 * b + 0.1; }},
        OperatorCase{"ArithmeticPastFull",
                     {kArithmetic, {2.0, 3.0, 4.0, 0.5}},
                     [](double a, double b, double, double) { return 2 * a * b + 3 * a + 4 * b + 0.5; }},
        OperatorCase{"ArithmeticOfNoNumbers",
                     {kArithmetic, {std::numeric_limits<double>::quiet_NaN(), 1.0, INFINITY, 0.0}},
                     [](double a, double, double, double) { return a; }},
        OperatorCase{"ArithmeticOfHugeNumbers",
                     {kArithmetic, {0.0, 1e300, 0.0, 0.0}},
                     [](double a, double, double, double) { return a * 1e9; }}),
    kNameOfRow);

TEST(FilterComposeTest, AddsColourToBlack) {
    FilterPixels black({0, 0, 1, 1});
    black.SetAlphaOnly(true);
    const FilterPixels sum =
        ComposeFilterPixels(black, black, {kArithmetic, {0.0, 0.0, 0.0, 0.5}}, {0, 0, 1, 1});
    EXPECT_FALSE(sum.IsAlphaOnly());
    EXPECT_EQ(sum.At(0, 0)[0], 32768);
    EXPECT_EQ(sum.At(0, 0)[3], 32768);
}

// ---- Blend ------------------------------------------------------------------------------------------------

double SlowHardLight(double b, double s) { return s <= 0.5 ? b * 2 * s : b + (2 * s - 1) - b * (2 * s - 1); }
double SlowSoftLight(double b, double s) {
    const double d = b <= 0.25 ? ((16 * b - 12) * b + 4) * b : std::sqrt(b);
    return s <= 0.5 ? b - (1 - 2 * s) * b * (1 - b) : b + (2 * s - 1) * (d - b);
}
double SlowDodge(double b, double s) { return b == 0 ? 0 : s == 1 ? 1 : std::min(1.0, b / (1 - s)); }
double SlowBurn(double b, double s) { return b == 1 ? 1 : s == 0 ? 0 : 1 - std::min(1.0, (1 - b) / s); }

using Mode = ORVPrintBlendMode;
struct ModeCase {
    const char* name;
    Mode mode;
    double (*mix)(double below, double over);
};
class FilterBlendTest : public testing::TestWithParam<ModeCase> {};
TEST_P(FilterBlendTest, FollowsItsFormula) {
    const FilterPixels a = RandomFilterPixels(kFirst, 3), b = RandomFilterPixels(kSecond, 4);
    for (const FilterBox& box : kBoxes)
        ExpectPixels(BlendFilterPixels(a, b, GetParam().mode, box), box, 2.0, [&](int x, int y) {
            const PlainPixel over = PlainAt(a, x, y), below = PlainAt(b, x, y);
            const PlainPixel overColour = StraightAt(a, x, y), belowColour = StraightAt(b, x, y);
            PlainPixel result;
            for (std::size_t i = 0; i < 3; ++i)
                result[i] = over[i] * (1 - below[3]) + below[i] * (1 - over[3]) +
                            over[3] * below[3] * GetParam().mix(belowColour[i], overColour[i]);
            result[3] = over[3] + below[3] - over[3] * below[3];
            return result;
        });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterBlendTest,
    testing::Values(
        ModeCase{"Normal", Mode::kNormal, [](double, double s) { return s; }},
        ModeCase{"Multiply", Mode::kMultiply, [](double b, double s) { return b * s; }},
        ModeCase{"Screen", Mode::kScreen, [](double b, double s) { return b + s - b * s; }},
        ModeCase{"Overlay", Mode::kOverlay, [](double b, double s) { return SlowHardLight(s, b); }},
        ModeCase{"Darken", Mode::kDarken, [](double b, double s) { return std::min(b, s); }},
        ModeCase{"Lighten", Mode::kLighten, [](double b, double s) { return std::max(b, s); }},
        ModeCase{"ColourDodge", Mode::kColourDodge, SlowDodge},
        ModeCase{"ColourBurn", Mode::kColourBurn, SlowBurn},
        ModeCase{"HardLight", Mode::kHardLight, SlowHardLight},
        ModeCase{"SoftLight", Mode::kSoftLight, SlowSoftLight},
        ModeCase{"Difference", Mode::kDifference, [](double b, double s) { return std::abs(b - s); }},
        ModeCase{"Exclusion", Mode::kExclusion, [](double b, double s) { return b + s - 2 * b * s; }}),
    kNameOfRow);

// Calculated by hand: (0.8, 0.5, 0.1), luminosity 0.546, over (0.2, 0.6, 0.4), luminosity 0.458; both opaque.
struct WholeColourCase {
    const char* name;
    Mode mode;
    PlainPixel result;
};
class FilterBlendWholeTest : public testing::TestWithParam<WholeColourCase> {};
TEST_P(FilterBlendWholeTest, LooksAtWholeColours) {
    const FilterPixels mixed = BlendFilterPixels(
        OnePixel({0.8, 0.5, 0.1, 1.0}), OnePixel({0.2, 0.6, 0.4, 1.0}), GetParam().mode, {0, 0, 1, 1});
    ExpectPixels(mixed, {0, 0, 1, 1}, 4.0, [](int, int) { return GetParam().result; });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterBlendWholeTest,
    testing::Values(
        // (0.4, 4/7 * 0.4, 0) has luminosity 0.254857: raised by 0.203143.
        WholeColourCase{"Hue", Mode::kHue, {0.603143, 0.431714, 0.203143, 1.0}},
        // (0, 0.7, 0.35) has luminosity 0.4515: raised by 0.0065.
        WholeColourCase{"Saturation", Mode::kSaturation, {0.0065, 0.7065, 0.3565, 1.0}},
        // Lowered by 0.088. No channel becomes negative, so none has to be clipped to the valid range.
        WholeColourCase{"Colour", Mode::kColour, {0.712, 0.412, 0.012, 1.0}},
        WholeColourCase{"Luminosity", Mode::kLuminosity, {0.288, 0.688, 0.488, 1.0}}),
    kNameOfRow);

// ---- Other operations -------------------------------------------------------------------------------------

TEST(FilterFloodTest, FillsTheBox) {
    const FilterPixels flood = FloodFilterPixels({0.2, 0.4, 1.0, 0.5}, FilterColours::kSrgb, {-3, 2, 7, 5});
    ExpectPixels(flood, {-3, 2, 7, 5}, 0.51, [](int, int) { return PlainPixel{0.1, 0.2, 0.5, 0.5}; });
    EXPECT_TRUE(FloodFilterPixels({0.0, 0.0, 0.0, 0.3}, FilterColours::kSrgb, {0, 0, 2, 2}).IsAlphaOnly());
}

struct OffsetCase {
    const char* name;
    int columns, rows;
};
class FilterOffsetTest : public testing::TestWithParam<OffsetCase> {};
TEST_P(FilterOffsetTest, MovesPixels) {
    const FilterPixels input = RandomFilterPixels(kFirst, 5);
    const int columns = GetParam().columns, rows = GetParam().rows;
    for (const FilterBox& box : kBoxes)
        ExpectPixels(OffsetFilterPixels(input, columns, rows, box), box, 0.0, [&](int x, int y) {
            const bool isNear = std::abs(columns) < 1000 && std::abs(rows) < 1000;
            return isNear ? PlainAt(input, x - columns, y - rows) : PlainPixel{};
        });
}
INSTANTIATE_TEST_SUITE_P(Filter, FilterOffsetTest,
                         testing::Values(OffsetCase{"Nowhere", 0, 0}, OffsetCase{"RightAndDown", 3, 7},
                                         OffsetCase{"LeftAndUp", -9, -2}, OffsetCase{"Away", 100, 0},
                                         OffsetCase{"PastIntegers", INT_MAX, INT_MIN}),
                         kNameOfRow);

TEST(FilterMergeTest, LaysOneOverAnother) {
    const FilterPixels a = RandomFilterPixels(kFirst, 6), b = RandomFilterPixels(kSecond, 7),
                       c = RandomFilterPixels({0, 0, 9, 9}, 8);
    const FilterPixels* const inputs[] = {&a, &b, &c};
    for (const FilterBox& box : kBoxes)
        ExpectPixels(MergeFilterPixels(inputs, box), box, 2.0, [&](int x, int y) {
            return LaidOver(PlainAt(c, x, y), LaidOver(PlainAt(b, x, y), PlainAt(a, x, y)));
        });
    ExpectPixels(MergeFilterPixels({}, kFirst), kFirst, 0.0, [](int, int) { return PlainPixel{}; });
}

struct TileCase {
    const char* name;
    FilterBox tile;
};
class FilterTileTest : public testing::TestWithParam<TileCase> {};
TEST_P(FilterTileTest, RepeatsWhatLiesInIt) {
    const FilterPixels input = RandomFilterPixels(kFirst, 9);
    const FilterBox tile = GetParam().tile;
    for (const FilterBox& box : kBoxes)
        ExpectPixels(TileFilterPixels(input, tile, box), box, 0.0, [&](int x, int y) {
            if (tile.IsEmpty()) return PlainPixel{};
            const auto wrap = [](int place, int begin, int size) {
                while (place < begin) place += size;
                while (place >= begin + size) place -= size;
                return place;
            };
            return PlainAt(input, wrap(x, tile.left, tile.width), wrap(y, tile.top, tile.height));
        });
}
INSTANTIATE_TEST_SUITE_P(Filter, FilterTileTest,
                         testing::Values(TileCase{"Inside", {0, 5, 4, 3}}, TileCase{"All", kFirst},
                                         TileCase{"PartlyOutside", {-9, 0, 11, 7}},
                                         TileCase{"LargerThanAll", {-100, -100, 300, 300}},
                                         TileCase{"OnePixel", {1, 3, 1, 1}}, TileCase{"Empty", {1, 3, 0, 4}},
                                         TileCase{"Outside", {50, 50, 5, 5}}),
                         kNameOfRow);

TEST(FilterPlaceTest, TakesWhatLiesUnderEachCentre) {
    const FilterPixels image = RandomFilterPixels({0, 0, 8, 6}, 10);
    const ORVMathAffine2D toImage{0.4, 0.2, -0.3, 0.5, 1.0, 2.0};
    const FilterBox box{-10, -10, 40, 30};
    const auto at = [&](int x, int y) { return toImage({x + 0.5, y + 0.5}); };
    ExpectPixels(PlaceFilterPixels(image, toImage, false, box), box, 0.51, [&](int x, int y) {
        return PlainAt(image, static_cast<int>(std::floor(at(x, y).x)),
                       static_cast<int>(std::floor(at(x, y).y)));
    });
    ExpectPixels(PlaceFilterPixels(image, toImage, true, box), box, 1.0, [&](int x, int y) {
        // Bilinear interpolation: weights fall linearly with the distance from the pixel's centre.
        PlainPixel sum{};
        for (int v = -1; v <= 6; ++v)
            for (int u = -1; u <= 8; ++u) {
                const double weight = std::max(0.0, 1.0 - std::abs(u + 0.5 - at(x, y).x)) *
                                      std::max(0.0, 1.0 - std::abs(v + 0.5 - at(x, y).y));
                for (std::size_t i = 0; i < 4; ++i) sum[i] += weight * PlainAt(image, u, v)[i];
            }
        return sum;
    });
}

TEST(FilterPlaceTest, WithoutAMapIsTransparent) {
    const FilterPixels image = RandomFilterPixels({0, 0, 8, 6}, 10);
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), 1e308, static_cast<double>(-INFINITY)})
        ExpectPixels(PlaceFilterPixels(image, {bad, bad, bad, bad, bad, bad}, true, kFirst), kFirst, 0.0,
                     [](int, int) { return PlainPixel{}; });
}

TEST(FilterShadowTest, IsABlurredCopyInOneColourBelow) {
    const FilterPixels input = RandomFilterPixels(kFirst, 11);
    const FilterShadow shadow{{1.5, 2.5}, 4, -3, {1.0, 0.5, 0.25, 0.8}};
    for (const FilterBox& box : kBoxes) {
        const FilterPixels blurred =
            BlurFilterPixels(AlphaOfFilterPixels(input), shadow.blur, box.GrownBy(5, 5));
        ExpectPixels(ShadowFilterPixels(input, shadow, box), box, 2.0, [&](int x, int y) {
            const double opacity = 0.8 * PlainAt(blurred, x - 4, y + 3)[3];
            return LaidOver(PlainAt(input, x, y), {opacity, opacity * 0.5, opacity * 0.25, opacity});
        });
    }
}

TEST(FilterShadowTest, ThatLiesFarAwayIsNotSeen) {
    const FilterPixels input = RandomFilterPixels(kFirst, 12);
    ExpectSame(ShadowFilterPixels(input, {{1.0, 1.0}, INT_MIN, INT_MAX, {}}, kFirst), input);
}

}  // namespace
