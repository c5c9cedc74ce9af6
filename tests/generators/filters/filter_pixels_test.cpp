// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_pixels.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

double LinearOf(double srgb) {
    return srgb <= 0.04045 ? srgb / 12.92 : std::pow((srgb + 0.055) / 1.055, 2.4);
}

struct CutCase {
    const char* name;
    FilterBox first, second, shared;
};
class FilterBoxCutTest : public testing::TestWithParam<CutCase> {};
TEST_P(FilterBoxCutTest, GivesWhatBothHold) {
    const FilterBox cut = GetParam().first.CutTo(GetParam().second);
    if (GetParam().shared.IsEmpty())
        EXPECT_TRUE(cut.IsEmpty());
    else
        EXPECT_EQ(cut, GetParam().shared);
    EXPECT_EQ(cut.IsEmpty(), GetParam().second.CutTo(GetParam().first).IsEmpty());
}
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterBoxCutTest,
    testing::Values(CutCase{"Overlapping", {0, 0, 10, 10}, {5, -3, 10, 10}, {5, 0, 5, 7}},
                    CutCase{"Inside", {0, 0, 10, 10}, {2, 3, 4, 5}, {2, 3, 4, 5}},
                    CutCase{"Touching", {0, 0, 10, 10}, {10, 0, 5, 5}, {}},
                    CutCase{"Apart", {0, 0, 10, 10}, {-30, 0, 5, 5}, {}},
                    CutCase{"Empty", {0, 0, 10, 10}, {2, 2, 0, 5}, {}},
                    CutCase{"PastIntegers",
                            {INT_MAX - 5, 0, INT_MAX, 9},
                            {INT_MAX - 3, 0, INT_MAX, 9},
                            {INT_MAX - 3, 0, INT_MAX - 2, 9}},
                    CutCase{"NegativeSize", {0, 0, -4, 10}, {0, 0, 10, 10}, {}}),
    kNameOfRow);

TEST(FilterBoxTest, GrowsWithinWhatABufferCanBe) {
    EXPECT_EQ((FilterBox{1, 2, 3, 4}.GrownBy(10, 20)), (FilterBox{-9, -18, 23, 44}));
    EXPECT_TRUE((FilterBox{1, 2, 0, 4}.GrownBy(10, 20).IsEmpty()));
    const FilterBox far = FilterBox{1, 2, 3, 4}.GrownBy(INT_MAX, INT_MAX);
    EXPECT_EQ(far, (FilterBox{-(1 << 29), -(1 << 29), 1 << 30, 1 << 30}));
}

TEST(FilterPixelsTest, AreTransparentAtFirst) {
    const FilterPixels pixels({-3, 5, 4, 3});
    ExpectPixels(pixels, {-3, 5, 4, 3}, 0.0, [](int, int) { return PlainPixel{}; });
}

struct ImpossibleCase {
    const char* name;
    FilterBox box;
};
class ImpossibleFilterPixelsTest : public testing::TestWithParam<ImpossibleCase> {};
TEST_P(ImpossibleFilterPixelsTest, AreEmpty) { EXPECT_TRUE(FilterPixels(GetParam().box).GetBox().IsEmpty()); }
INSTANTIATE_TEST_SUITE_P(Filter, ImpossibleFilterPixelsTest,
                         testing::Values(ImpossibleCase{"NoWidth", {0, 0, 0, 5}},
                                         ImpossibleCase{"NegativeHeight", {0, 0, 5, -1}},
                                         ImpossibleCase{"FarRight", {INT_MAX - 1, 0, 10, 10}},
                                         ImpossibleCase{"FarUp", {0, INT_MIN, 10, 10}},
                                         ImpossibleCase{"Wide", {0, 0, INT_MAX, 1}}),
                         kNameOfRow);

TEST(FilterPixelsTest, TooManyAreOutOfMemory) {
    EXPECT_THROW(FilterPixels({0, 0, 1 << 28, 1 << 28}), std::bad_alloc);
}

/// Pixels with every opacity, and for each with every premultiplied value of red.
std::vector<std::uint8_t> AllBytes() {
    std::vector<std::uint8_t> bytes;
    for (int alpha = 0; alpha < 256; ++alpha)
        for (int red = 0; red < 256; ++red) {
            const auto value = static_cast<std::uint8_t>(std::min(red, alpha));
            bytes.insert(bytes.end(),
                         {value, static_cast<std::uint8_t>(value / 2), 0, static_cast<std::uint8_t>(alpha)});
        }
    return bytes;
}

class FilterBytesTest : public testing::TestWithParam<FilterColours> {};
TEST_P(FilterBytesTest, ComeBack) {
    const std::vector<std::uint8_t> bytes = AllBytes();
    const FilterBox box{-7, 3, 256, 256};
    const FilterPixels pixels = LoadFilterPixels(bytes.data(), 1024, box, GetParam());
    EXPECT_FALSE(pixels.IsAlphaOnly());
    std::vector<std::uint8_t> stored(bytes.size(), 99);
    StoreFilterPixels(pixels, box, stored.data(), 1024);
    EXPECT_EQ(stored, bytes);
}
INSTANTIATE_TEST_SUITE_P(Filter, FilterBytesTest,
                         testing::Values(FilterColours::kSrgb, FilterColours::kLinear));

TEST(FilterBytesTest, BlackAndTransparentOnesAreOpacityOnly) {
    const std::array<std::uint8_t, 8> bytes{0, 0, 0, 255, 0, 0, 0, 17};
    const FilterPixels pixels = LoadFilterPixels(bytes.data(), 8, {0, 0, 2, 1}, FilterColours::kLinear);
    EXPECT_TRUE(pixels.IsAlphaOnly());
    EXPECT_EQ(pixels.At(1, 0)[3], 17 * 257);
}

TEST(FilterBytesTest, AreTransparentOutsideTheBuffer) {
    FilterPixels pixels({1, 1, 1, 1});
    std::fill_n(pixels.At(1, 1), 4, std::uint16_t{65535});
    std::array<std::uint8_t, 36> bytes{};
    bytes.fill(99);
    StoreFilterPixels(pixels, {0, 0, 3, 3}, bytes.data(), 12);
    for (std::size_t i = 0; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], i / 4 == 4 ? 255 : 0) << i;
}

TEST(FilterColoursTest, FollowTheCurveForEveryNumber) {
    FilterPixels pixels({0, 0, 256, 256});
    const auto at = [](int x, int y) { return y * 256 + x; };
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x) {
            pixels.At(x, y)[0] = static_cast<std::uint16_t>(at(x, y));
            pixels.At(x, y)[3] = 65535;
        }
    ConvertFilterColours(pixels, FilterColours::kLinear);
    EXPECT_EQ(pixels.GetColours(), FilterColours::kLinear);
    ExpectPixels(pixels, {0, 0, 256, 256}, 2.0, [&](int x, int y) {
        return PlainPixel{LinearOf(at(x, y) / 65535.0), 0.0, 0.0, 1.0};
    });
    EXPECT_EQ(pixels.At(255, 255)[0], 65535);
    ConvertFilterColours(pixels, FilterColours::kSrgb);
    // Dark values are closer together in linear light, so rounding errors there grow on the way back.
    ExpectPixels(pixels, {0, 0, 256, 256}, 16.0, [&](int x, int y) {
        return PlainPixel{at(x, y) / 65535.0, 0.0, 0.0, 1.0};
    });
    EXPECT_EQ(pixels.At(255, 255)[0], 65535);
}

TEST(FilterColoursTest, AreConvertedWithoutTheirOpacity) {
    FilterPixels pixels = OnePixel({0.25, 0.5, 0.0, 0.5});
    ConvertFilterColours(pixels, FilterColours::kLinear);
    EXPECT_NEAR(pixels.At(0, 0)[0], LinearOf(0.5) * 0.5 * 65535, 2.0);
    EXPECT_NEAR(pixels.At(0, 0)[1], 0.5 * 65535, 1.0);
    EXPECT_EQ(pixels.At(0, 0)[2], 0);
    EXPECT_NEAR(pixels.At(0, 0)[3], 0.5 * 65535, 0.5);
}

TEST(FilterColoursTest, OfAColourArePremultiplied) {
    std::uint16_t pixel[4];
    FilterColour{1.0, 0.5, std::nan(""), 0.5}.Pixel(FilterColours::kLinear, pixel);
    EXPECT_EQ(pixel[0], 32768);
    EXPECT_NEAR(pixel[1], LinearOf(0.5) * 0.5 * 65535, 0.5);
    EXPECT_EQ(pixel[2], 0);
    EXPECT_EQ(pixel[3], 32768);
    FilterColour{7.0, -1.0, 0.5, 1e300}.Pixel(FilterColours::kSrgb, pixel);
    EXPECT_EQ(pixel[0], 65535);
    EXPECT_EQ(pixel[1], 0);
    EXPECT_EQ(pixel[2], 32768);
    EXPECT_EQ(pixel[3], 65535);
}

TEST(FilterPixelsTest, OfOpacityAreBlack) {
    const FilterPixels pixels = RandomFilterPixels({2, 3, 9, 7}, 1), alpha = AlphaOfFilterPixels(pixels);
    EXPECT_TRUE(alpha.IsAlphaOnly());
    ExpectPixels(alpha, {2, 3, 9, 7}, 0.0, [&](int x, int y) {
        return PlainPixel{0.0, 0.0, 0.0, PlainAt(pixels, x, y)[3]};
    });
}

TEST(FilterPixelsTest, AreClippedWithoutACopyWhereNothingChanges) {
    FilterPixels pixels = RandomFilterPixels({2, 3, 9, 7}, 2);
    const FilterPixels before = pixels.Copy();
    const std::uint16_t* memory = pixels.Row(3);
    pixels = ClipFilterPixels(std::move(pixels), {2, 3, 9, 7});
    EXPECT_EQ(pixels.Row(3), memory);
    pixels = ClipFilterPixels(std::move(pixels), {-1, 5, 6, 10});
    ExpectPixels(pixels, {-1, 5, 6, 10}, 0.0, [&](int x, int y) { return PlainAt(before, x, y); });
}

}  // namespace
