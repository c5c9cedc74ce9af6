// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_displacement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

const FilterBox kInput{-4, 2, 23, 17}, kMap{-2, 0, 15, 15};

struct DisplacementCase {
    const char* name;
    FilterDisplacement displacement;
};
class FilterDisplacementTest : public testing::TestWithParam<DisplacementCase> {};
TEST_P(FilterDisplacementTest, ShowsWhatLiesWhereTheMapSays) {
    const FilterPixels input = RandomFilterPixels(kInput, 1), map = RandomFilterPixels(kMap, 2);
    const FilterDisplacement& d = GetParam().displacement;
    const auto move = [](double scale, double channel) {
        return std::isfinite(scale) ? scale * (channel - 0.5) : 0.0;
    };
    for (const FilterBox& box : {FilterBox{-8, -8, 41, 33}, FilterBox{5, 4, 7, 3}, kInput})
        ExpectPixels(DisplaceFilterPixels(input, map, d, box), box, 0.0, [&](int x, int y) {
            const PlainPixel colour = StraightAt(map, x, y);
            const double fromX =
                std::floor(x + 0.5 + move(d.scaleX, colour[static_cast<std::size_t>(d.channelX)]));
            const double fromY =
                std::floor(y + 0.5 + move(d.scaleY, colour[static_cast<std::size_t>(d.channelY)]));
            if (std::abs(fromX) > 1e6 || std::abs(fromY) > 1e6) return PlainPixel{};
            return PlainAt(input, static_cast<int>(fromX), static_cast<int>(fromY));
        });
}
INSTANTIATE_TEST_SUITE_P(Filter, FilterDisplacementTest,
                         testing::Values(DisplacementCase{"Nothing", {0.0, 0.0, 0, 1}},
                                         DisplacementCase{"RedAndGreen", {10.0, 10.0, 0, 1}},
                                         DisplacementCase{"BlueAndOpacity", {7.3, -9.1, 2, 3}},
                                         DisplacementCase{
                                             "OfNoNumbers",
                                             {std::numeric_limits<double>::quiet_NaN(), INFINITY, 0, 1}},
                                         DisplacementCase{"Huge", {1e300, -1e300, 3, 3}}),
                         kNameOfRow);

TEST(FilterDisplacementTest, OfAMiddleGreyMovesNothing) {
    const FilterPixels input = RandomFilterPixels(kInput, 3);
    FilterPixels map(kInput);
    for (int y = 2; y < 19; ++y)
        for (int x = -4; x < 19; ++x) {
            map.At(x, y)[0] = 128 * 257;
            map.At(x, y)[1] = 127 * 257;
            map.At(x, y)[3] = 65535;
        }
    ExpectSame(DisplaceFilterPixels(input, map, {100.0, 100.0, 0, 1}, kInput), input);
}

}  // namespace
