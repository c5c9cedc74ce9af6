// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_neighbours.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

const FilterBox kInput{-4, 2, 23, 17};
const FilterBox kBoxes[] = {{-8, -8, 41, 33}, {5, 4, 7, 3}, kInput, {40, 40, 3, 3}};

// ---- Convolution ------------------------------------------------------------------------------------------

PlainPixel AtEdge(const FilterPixels& input, const FilterConvolution& c, int x, int y, bool straight) {
    const auto place = [&](int p, int begin, int size) {
        if (c.edge == FilterEdge::kDuplicate) return std::clamp(p, begin, begin + size - 1);
        while (c.edge == FilterEdge::kWrap && p < begin) p += size;
        while (c.edge == FilterEdge::kWrap && p >= begin + size) p -= size;
        return p;
    };
    x = place(x, c.area.left, c.area.width);
    y = place(y, c.area.top, c.area.height);
    if (!c.area.Contains(x, y)) return {};
    return straight ? StraightAt(input, x, y) : PlainAt(input, x, y);
}

PlainPixel SlowConvolution(const FilterPixels& input, const FilterConvolution& c, int x, int y) {
    double divisor = c.divisor;
    if (divisor == 0.0)
        for (const double weight : c.kernel) divisor += weight;
    if (divisor == 0.0) divisor = 1.0;
    PlainPixel sum{};
    for (int i = 0; i < c.rows; ++i)
        for (int j = 0; j < c.columns; ++j) {
            const PlainPixel from =
                AtEdge(input, c, x - c.targetColumn + j, y - c.targetRow + i, c.preservesAlpha);
            const double weight =
                c.kernel[static_cast<std::size_t>((c.rows - 1 - i) * c.columns + c.columns - 1 - j)];
            for (std::size_t k = 0; k < 4; ++k) sum[k] += from[k] * weight / divisor;
        }
    const double opacity = PlainAt(input, x, y)[3];
    for (double& channel : sum) channel += c.bias * opacity;
    if (!c.preservesAlpha) return Possible(sum);
    sum[3] = opacity;
    return Premultiplied(sum);
}

struct ConvolutionCase {
    const char* name;
    FilterConvolution convolution;
};
class FilterConvolutionTest : public testing::TestWithParam<ConvolutionCase> {};
TEST_P(FilterConvolutionTest, IsTheSlowSum) {
    const FilterPixels input = RandomFilterPixels(kInput, 1);
    for (const FilterBox& box : kBoxes)
        ExpectPixels(ConvolveFilterPixels(input, GetParam().convolution, box), box, 2.0,
                     [&](int x, int y) { return SlowConvolution(input, GetParam().convolution, x, y); });
}
using enum FilterEdge;
const std::vector<double> kNine{1, 2, -3, 4, 5, 6, -7, 8, 9};
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterConvolutionTest,
    testing::Values(
        ConvolutionCase{"Duplicate", {3, 3, kNine, 0, 0, 1, 1, kDuplicate, kInput, false}},
        ConvolutionCase{"Wrap", {3, 3, kNine, 30, 0, 1, 1, kWrap, kInput, false}},
        ConvolutionCase{"None", {3, 3, kNine, 20, 0, 1, 1, kNone, kInput, false}},
        ConvolutionCase{"Bias", {3, 3, kNine, 50, 0.25, 1, 1, kNone, kInput, false}},
        ConvolutionCase{"PreservesAlpha", {3, 3, kNine, 0, 0.1, 1, 1, kDuplicate, kInput, true}},
        ConvolutionCase{"SumOf0", {3, 1, {-1, 0, 1}, 0, 0, 1, 0, kDuplicate, kInput, false}},
        ConvolutionCase{"Target", {2, 3, {1, 2, 3, 4, 5, 6}, 0, 0, 0, 2, kDuplicate, kInput, false}},
        ConvolutionCase{"AreaLargerThanInput", {3, 3, kNine, 0, 0, 1, 1, kWrap, {-6, 0, 27, 25}, false}},
        ConvolutionCase{"AreaSmallerThanInput", {3, 3, kNine, 0, 0, 1, 1, kDuplicate, {0, 5, 9, 4}, false}},
        ConvolutionCase{"WiderThanTheArea",
                        {31, 1, std::vector<double>(31, 1.0), 0, 0, 15, 0, kWrap, {0, 5, 9, 4}, false}},
        ConvolutionCase{"OnePlace", {1, 1, {2}, 4, 0, 0, 0, kDuplicate, kInput, false}}),
    kNameOfRow);

TEST(FilterConvolutionTest, TurnsTheKernel) {
    FilterPixels dot({0, 0, 1, 1});
    std::fill_n(dot.At(0, 0), 4, std::uint16_t{60000});
    FilterConvolution c{3, 1, {1, 2, 3}, 6, 0, 1, 0, kNone, {-5, -5, 11, 11}, false};
    const FilterPixels result = ConvolveFilterPixels(dot, c, {-1, 0, 3, 1});
    EXPECT_EQ(result.At(-1, 0)[3], 10000);
    EXPECT_EQ(result.At(0, 0)[3], 20000);
    EXPECT_EQ(result.At(1, 0)[3], 30000);
}

class ImpossibleConvolutionTest : public testing::TestWithParam<ConvolutionCase> {};
TEST_P(ImpossibleConvolutionTest, IsTransparent) {
    const FilterPixels input = RandomFilterPixels(kInput, 1);
    ExpectPixels(ConvolveFilterPixels(input, GetParam().convolution, kInput), kInput, 0.0,
                 [](int, int) { return PlainPixel{}; });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, ImpossibleConvolutionTest,
    testing::Values(ConvolutionCase{"ShortKernel", {3, 3, {1, 2}, 0, 0, 1, 1, kNone, kInput, false}},
                    ConvolutionCase{"LongKernel", {1, 1, {1, 2}, 0, 0, 0, 0, kNone, kInput, false}},
                    ConvolutionCase{"NoColumns", {0, 3, {}, 0, 0, 0, 0, kNone, kInput, false}},
                    ConvolutionCase{"HugeOrder", {INT_MAX, INT_MAX, {1}, 0, 0, 0, 0, kNone, kInput, false}},
                    ConvolutionCase{"TargetOutside", {3, 3, kNine, 0, 0, 3, 1, kNone, kInput, false}},
                    ConvolutionCase{"NegativeTarget", {3, 3, kNine, 0, 0, 1, -1, kNone, kInput, false}},
                    ConvolutionCase{
                        "NoNumber",
                        {1, 1, {std::numeric_limits<double>::quiet_NaN()}, 0, 0, 0, 0, kNone, kInput, false}},
                    ConvolutionCase{"NoArea", {3, 3, kNine, 0, 0, 1, 1, kDuplicate, {}, false}}),
    kNameOfRow);

TEST(FilterConvolutionTest, CostsItsKernel) {
    const FilterConvolution c{31, 1, std::vector<double>(31, 1.0), 0, 0, 15, 0, kWrap, kInput, false};
    EXPECT_GE(FilterConvolutionWork(c, {0, 0, 100, 10}), 31000.0);
}

// ---- Morphology -------------------------------------------------------------------------------------------

struct MorphologyCase {
    const char* name;
    FilterMorphology morphology;
};
class FilterMorphologyTest : public testing::TestWithParam<MorphologyCase> {};
TEST_P(FilterMorphologyTest, IsTheSlowSearch) {
    const FilterPixels input = RandomFilterPixels(kInput, 2);
    const FilterMorphology& morphology = GetParam().morphology;
    const bool isDilation = morphology.isDilation;
    const int reachX = std::clamp(morphology.radiusX, 0, 60), reachY = std::clamp(morphology.radiusY, 0, 60);
    // Pixels further out are as transparent as those next to the input, so the search stops there.
    const int left = kInput.left - 1, top = kInput.top - 1, right = kInput.Right(), bottom = kInput.Bottom();
    for (const FilterBox& box : kBoxes)
        ExpectPixels(MorphFilterPixels(input, GetParam().morphology, box), box, 0.0, [&](int x, int y) {
            PlainPixel found = PlainAt(input, x, y);
            for (int v = std::max(y - reachY, top); v <= std::min(y + reachY, bottom); ++v)
                for (int u = std::max(x - reachX, left); u <= std::min(x + reachX, right); ++u)
                    for (std::size_t i = 0; i < 4; ++i)
                        found[i] = isDilation ? std::max(found[i], PlainAt(input, u, v)[i])
                                              : std::min(found[i], PlainAt(input, u, v)[i]);
            return found;
        });
}
INSTANTIATE_TEST_SUITE_P(Filter, FilterMorphologyTest,
                         testing::Values(MorphologyCase{"Erosion", {false, 1, 1}},
                                         MorphologyCase{"Dilation", {true, 1, 1}},
                                         MorphologyCase{"WideDilation", {true, 5, 2}},
                                         MorphologyCase{"ErosionAcross", {false, 3, 0}},
                                         MorphologyCase{"DilationDown", {true, 0, 4}},
                                         MorphologyCase{"Nothing", {true, 0, 0}},
                                         MorphologyCase{"NegativeRadius", {false, -4, 2}},
                                         MorphologyCase{"HugeDilation", {true, INT_MAX, INT_MAX}},
                                         MorphologyCase{"HugeErosion", {false, INT_MAX, 1}}),
                         kNameOfRow);

TEST(FilterMorphologyTest, CostsNothingForItsRadius) {
    const FilterBox box{0, 0, 1000, 1000};
    EXPECT_EQ(FilterMorphologyWork(box, {true, 1, 1}, box),
              FilterMorphologyWork(box, {true, 900, INT_MAX}, box));
}

}  // namespace
