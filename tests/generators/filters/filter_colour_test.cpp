// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_colour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
const FilterBox kInput{-4, 2, 23, 17}, kLarger{-8, 0, 31, 22};

struct MatrixCase {
    const char* name;
    FilterMatrix matrix;
    PlainPixel from, to;  // not premultiplied
};
class FilterMatrixTest : public testing::TestWithParam<MatrixCase> {};
TEST_P(FilterMatrixTest, ChangesAColour) {
    const FilterPixels changed =
        ApplyFilterMatrix(OnePixel(Premultiplied(GetParam().from)), GetParam().matrix, {0, 0, 1, 1});
    ExpectPixels(changed, {0, 0, 1, 1}, 3.0, [](int, int) { return Premultiplied(GetParam().to); });
}
constexpr PlainPixel kColour{0.2, 0.5, 0.9, 0.75};
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterMatrixTest,
    testing::Values(
        MatrixCase{"Identity", {}, kColour, kColour},
        MatrixCase{"Rows",
                   {{0, 1, 0, 0, 0.1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0.5, 0.2}},
                   kColour,
                   {0.6, 0.9, 0.2, 0.575}},
        MatrixCase{"OfTransparency",
                   {{0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.5}},
                   {},
                   {0.5, 0.0, 1.0, 0.5}},
        MatrixCase{"CutToWhatCanBe",
                   {{9, 0, 0, 0, 0, 0, -9, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 9, 0}},
                   kColour,
                   {1.0, 0.0, 0.9, 1.0}},
        MatrixCase{"OfNoNumbers",
                   {{kNoNumber, 0, 0, 0, 0, 0, INFINITY, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0}},
                   kColour,
                   {0.0, 0.0, 0.9, 0.75}},
        // Grey is 0.213 * 0.2 + 0.715 * 0.5 + 0.072 * 0.9 = 0.4649.
        MatrixCase{"NoSaturation", SaturationMatrix(0.0), kColour, {0.4649, 0.4649, 0.4649, 0.75}},
        MatrixCase{"FullSaturation", SaturationMatrix(1.0), kColour, kColour},
        MatrixCase{"MoreSaturation", SaturationMatrix(1.5), kColour, {0.06755, 0.51755, 1.0, 0.75}},
        MatrixCase{"HueUnturned", HueRotationMatrix(0.0), kColour, kColour},
        MatrixCase{"HueFullTurn", HueRotationMatrix(720.0), kColour, kColour},
        // Half a turn: twice the grey minus the colour.
        MatrixCase{"HueHalfTurn", HueRotationMatrix(180.0), kColour, {0.7298, 0.4298, 0.0298, 0.75}},
        // A quarter turn: the grey plus the column of the sine.
        MatrixCase{"HueQuarterTurn", HueRotationMatrix(90.0), kColour, {0.9, 0.3088, 0.7298, 0.75}},
        MatrixCase{"HueOfNoNumber", HueRotationMatrix(kNoNumber), kColour, kColour},
        // 0.2125 * 0.2 + 0.7154 * 0.5 + 0.0721 * 0.9
        MatrixCase{"LuminanceToAlpha", LuminanceToAlphaMatrix(), kColour, {0.0, 0.0, 0.0, 0.46509}},
        MatrixCase{"Brightness", BrightnessMatrix(1.5), kColour, {0.3, 0.75, 1.0, 0.75}},
        MatrixCase{"NegativeBrightness", BrightnessMatrix(-2.0), kColour, {0.0, 0.0, 0.0, 0.75}},
        MatrixCase{"Contrast", ContrastMatrix(0.5), kColour, {0.35, 0.5, 0.7, 0.75}},
        MatrixCase{"MoreContrast", ContrastMatrix(2.0), kColour, {0.0, 0.5, 1.0, 0.75}},
        // 0.2126 * 0.2 + 0.7152 * 0.5 + 0.0722 * 0.9 = 0.4651
        MatrixCase{"Greyscale", GreyscaleMatrix(1.0), kColour, {0.4651, 0.4651, 0.4651, 0.75}},
        MatrixCase{"HalfGreyscale", GreyscaleMatrix(0.5), kColour, {0.33255, 0.48255, 0.68255, 0.75}},
        MatrixCase{"GreyscalePastAll", GreyscaleMatrix(7.0), kColour, {0.4651, 0.4651, 0.4651, 0.75}},
        MatrixCase{"Inversion", InversionMatrix(1.0), kColour, {0.8, 0.5, 0.1, 0.75}},
        MatrixCase{"HalfInversion", InversionMatrix(0.5), kColour, {0.5, 0.5, 0.5, 0.75}},
        MatrixCase{"Opacity", OpacityMatrix(0.4), kColour, {0.2, 0.5, 0.9, 0.3}},
        MatrixCase{"OpacityPastFull", OpacityMatrix(4.0), kColour, kColour},
        // 0.393 * 0.2 + 0.769 * 0.5 + 0.189 * 0.9, and so on
        MatrixCase{"Sepia", SepiaMatrix(1.0), kColour, {0.6332, 0.564, 0.4393, 0.75}},
        MatrixCase{"NoSepia", SepiaMatrix(0.0), kColour, kColour}),
    kNameOfRow);

TEST(FilterMatrixTest, IsTheSlowProductForEveryPixel) {
    const FilterMatrix matrix{{0.3, -0.2, 0.9,  0.1, 0.05, 0.4, 0.4, 0.4, -0.3, 0,
                               1.1, 0,    -0.6, 0.2, 0.1,  0.1, 0.2, 0.3, 0.5,  -0.05}};
    const FilterPixels input = RandomFilterPixels(kInput, 1);
    const FilterPixels changed = ApplyFilterMatrix(input.Copy(), matrix, kLarger);
    ExpectPixels(changed, kLarger, 2.0, [&](int x, int y) {
        const PlainPixel from = StraightAt(input, x, y);
        PlainPixel to;
        for (std::size_t i = 0; i < 4; ++i) {
            const double* row = &matrix.numbers[i * 5];
            to[i] = row[0] * from[0] + row[1] * from[1] + row[2] * from[2] + row[3] * from[3] + row[4];
        }
        return Premultiplied(to);
    });
}

TEST(FilterMatrixTest, OfLuminanceLeavesOpacityOnly) {
    EXPECT_TRUE(
        ApplyFilterMatrix(RandomFilterPixels(kInput, 1), LuminanceToAlphaMatrix(), kInput).IsAlphaOnly());
    FilterPixels black(kInput);
    black.SetAlphaOnly(true);
    EXPECT_FALSE(ApplyFilterMatrix(std::move(black), InversionMatrix(1.0), kInput).IsAlphaOnly());
}

// ---- Transfer functions -----------------------------------------------------------------------------------

using enum FilterTransfer::Kind;
FilterTransfer Linear(double slope, double intercept) {
    return {kLinear, {}, slope, intercept, 1.0, 1.0, 0.0};
}
FilterTransfer Gamma(double amplitude, double exponent, double offset) {
    return {kGamma, {}, 1.0, 0.0, amplitude, exponent, offset};
}
FilterTransfer Values(FilterTransfer::Kind kind, std::vector<double> values) {
    FilterTransfer transfer;
    transfer.kind = kind;
    transfer.values = std::move(values);
    return transfer;
}

struct TransferCase {
    const char* name;
    FilterTransfer transfer;
    double from, to;
};
class FilterTransferTest : public testing::TestWithParam<TransferCase> {};
TEST_P(FilterTransferTest, ChangesAChannel) {
    EXPECT_NEAR(GetParam().transfer(GetParam().from), GetParam().to, 1e-9);
}
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterTransferTest,
    testing::Values(TransferCase{"Identity", {}, 0.3, 0.3},
                    TransferCase{"TableBegin", Values(kTable, {0.2, 1.0, 0.0}), 0.0, 0.2},
                    TransferCase{"TableBetween", Values(kTable, {0.2, 1.0, 0.0}), 0.25, 0.6},
                    TransferCase{"TableEntry", Values(kTable, {0.2, 1.0, 0.0}), 0.5, 1.0},
                    TransferCase{"TableEnd", Values(kTable, {0.2, 1.0, 0.4}), 1.0, 0.4},
                    TransferCase{"TableOfOne", Values(kTable, {0.7}), 0.1, 0.7},
                    TransferCase{"TableOfNone", Values(kTable, {}), 0.1, 0.1},
                    TransferCase{"StepBegin", Values(kDiscrete, {0.2, 0.9, 0.4}), 0.33, 0.2},
                    TransferCase{"StepNext", Values(kDiscrete, {0.2, 0.9, 0.4}), 0.34, 0.9},
                    TransferCase{"StepEnd", Values(kDiscrete, {0.2, 0.9, 0.4}), 1.0, 0.4},
                    TransferCase{"StepsOfNone", Values(kDiscrete, {}), 0.1, 0.1},
                    TransferCase{"Linear", Linear(0.5, 0.1), 0.4, 0.3},
                    TransferCase{"LinearPastFull", Linear(5.0, 0.1), 0.4, 1.0},
                    TransferCase{"LinearBelow0", Linear(-5.0, 0.1), 0.4, 0.0},
                    TransferCase{"Gamma", Gamma(2.0, 3.0, 0.1), 0.5, 0.35},
                    TransferCase{"GammaOf0", Gamma(1.0, 0.0, 0.0), 0.0, 1.0},
                    TransferCase{"GammaWithoutEnd", Gamma(1.0, -1.0, 0.0), 0.0, 1.0},
                    TransferCase{"NoNumbers", Linear(kNoNumber, 0.0), 0.5, 0.0},
                    TransferCase{"NoNumbersInATable", Values(kTable, {kNoNumber, INFINITY}), 0.5, 0.0}),
    kNameOfRow);

/// The result is the same for small buffers, calculated per pixel, and for large ones, which use a table.
class FilterTransferSizeTest : public testing::TestWithParam<FilterBox> {};
TEST_P(FilterTransferSizeTest, IsTheFunctionForEveryPixel) {
    const std::array<FilterTransfer, 4> functions{Gamma(0.9, 0.6, 0.05), Values(kTable, {0.0, 0.9, 0.3, 1.0}),
                                                  FilterTransfer{}, Linear(0.8, 0.1)};
    const FilterPixels input = RandomFilterPixels(kInput, 2);
    const FilterPixels changed = ApplyFilterTransfer(input.Copy(), functions, GetParam());
    ExpectPixels(changed, GetParam(), 2.0, [&](int x, int y) {
        PlainPixel pixel = StraightAt(input, x, y);
        for (std::size_t i = 0; i < 4; ++i) pixel[i] = functions[i](std::round(pixel[i] * 65535.0) / 65535.0);
        return Premultiplied(pixel);
    });
}
INSTANTIATE_TEST_SUITE_P(Filter, FilterTransferSizeTest,
                         testing::Values(kInput, kLarger, FilterBox{-130, -140, 260, 270}));

}  // namespace
