// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_blur.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "generators/filters/blur_kernel.h"
#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

using Weights = std::vector<double>;  // of an odd number of pixels

Weights Gaussian(double sigma) {
    if (sigma == 0.0) return {1.0};
    const int reach = static_cast<int>(std::ceil(5.0 * sigma));
    Weights weights;
    double sum = 0.0;
    for (int i = -reach; i <= reach; ++i)
        sum += weights.emplace_back(std::exp(-0.5 * i * i / (sigma * sigma)));
    for (double& weight : weights) weight /= sum;
    return weights;
}

Weights Convolved(const Weights& a, const Weights& b) {
    Weights sums(a.size() + b.size() - 1);
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t j = 0; j < b.size(); ++j) sums[i + j] += a[i] * b[j];
    return sums;
}

Weights Boxes(const BlurKernel& kernel) {
    const auto box = [](int width) { return Weights(static_cast<std::size_t>(width), 1.0 / width); };
    return Convolved(Convolved(box(kernel.box), box(kernel.box)), box(kernel.third));
}

/// Reference implementation: convolves along x, then along y.
std::vector<PlainPixel> SlowBlur(const FilterPixels& input, const Weights& alongX, const Weights& alongY,
                                 const FilterBox& box) {
    const int reachX = static_cast<int>(alongX.size() / 2), reachY = static_cast<int>(alongY.size() / 2);
    const auto add = [](PlainPixel& sum, const PlainPixel& pixel, double weight) {
        for (std::size_t i = 0; i < 4; ++i) sum[i] += pixel[i] * weight;
    };
    const int rows = box.height + 2 * reachY;
    std::vector<PlainPixel> along(static_cast<std::size_t>(rows * box.width)), out;
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < box.width; ++x)
            for (int i = -reachX; i <= reachX; ++i)
                add(along[static_cast<std::size_t>(y * box.width + x)],
                    PlainAt(input, box.left + x + i, box.top + y - reachY),
                    alongX[static_cast<std::size_t>(i + reachX)]);
    for (int y = 0; y < box.height; ++y)
        for (int x = 0; x < box.width; ++x) {
            PlainPixel sum{};
            for (int i = 0; i <= 2 * reachY; ++i)
                add(sum, along[static_cast<std::size_t>((y + i) * box.width + x)],
                    alongY[static_cast<std::size_t>(i)]);
            out.push_back(sum);
        }
    return out;
}

void ExpectSlowBlur(const FilterPixels& blurred, const FilterPixels& input, const Weights& alongX,
                    const Weights& alongY, const FilterBox& box, double tolerance) {
    const std::vector<PlainPixel> slow = SlowBlur(input, alongX, alongY, box);
    ExpectPixels(blurred, box, tolerance, [&](int x, int y) {
        return slow[static_cast<std::size_t>((y - box.top) * box.width + x - box.left)];
    });
}

// In units of 1/65535: a tenth of an 8-bit level.
constexpr double kTenthOfLevel = 25.7;

struct BlurCase {
    const char* name;
    double sigmaX, sigmaY;
    FilterBox box;  // of the result; the input is 33 x 21 at (-5, 4)
};
const FilterBox kInput{-5, 4, 33, 21};

class SmallBlurTest : public testing::TestWithParam<BlurCase> {};
TEST_P(SmallBlurTest, IsGaussian) {
    const FilterPixels input = RandomFilterPixels(kInput, 7);
    const auto [name, sigmaX, sigmaY, box] = GetParam();
    ExpectSlowBlur(BlurFilterPixels(input.Copy(), {sigmaX, sigmaY}, box), input, Gaussian(sigmaX),
                   Gaussian(sigmaY), box, kTenthOfLevel * 2);
}
INSTANTIATE_TEST_SUITE_P(
    Filter, SmallBlurTest,
    testing::Values(BlurCase{"Tenth", 0.1, 0.1, kInput}, BlurCase{"Half", 0.5, 0.5, kInput},
                    BlurCase{"OneAndAHalf", 1.5, 1.0, kInput}, BlurCase{"AlmostThree", 2.5, 2.99, kInput},
                    BlurCase{"OnlyAcross", 1.9, 0.0, kInput}, BlurCase{"OnlyDown", 0.0, 1.9, kInput},
                    BlurCase{"LargerBox", 1.0, 1.3, {-15, -6, 50, 41}},
                    BlurCase{"SmallerBox", 1.0, 1.3, {3, 10, 5, 3}},
                    BlurCase{"Beside", 1.5, 1.5, {28, 4, 3, 9}}),
    kNameOfRow);

class BoxBlurTest : public testing::TestWithParam<BlurCase> {};
TEST_P(BoxBlurTest, IsThreeMeans) {
    const FilterPixels input = RandomFilterPixels(kInput, 8);
    const auto [name, sigmaX, sigmaY, box] = GetParam();
    const auto weights = [](double sigma) { return sigma == 0.0 ? Weights{1.0} : Boxes(BlurKernel(sigma)); };
    ExpectSlowBlur(BlurFilterPixels(input.Copy(), {sigmaX, sigmaY}, box), input, weights(sigmaX),
                   weights(sigmaY), box, 2.0);
}
INSTANTIATE_TEST_SUITE_P(Filter, BoxBlurTest,
                         testing::Values(BlurCase{"Three", 3.0, 3.0, kInput},
                                         BlurCase{"Five", 5.0, 5.4, kInput},
                                         BlurCase{"LargerThanTheInput", 12.0, 17.0, {-40, -20, 60, 70}},
                                         BlurCase{"Largest", 20.0, 20.0, kInput},
                                         BlurCase{"OnlyAcross", 4.0, 0.0, {-15, -6, 50, 41}},
                                         BlurCase{"OnlyDown", 0.0, 4.0, {-15, -6, 50, 41}},
                                         BlurCase{"Beside", 5.0, 5.0, {31, 27, 7, 9}},
                                         BlurCase{"OnePixel", 5.0, 5.0, {3, 9, 1, 1}}),
                         kNameOfRow);

TEST(BoxBlurTest, HasTheVarianceOfTheGaussian) {
    for (double sigma = 3.0; sigma <= BlurKernel::kLargestBoxSigma; sigma += 0.01) {
        const BlurKernel kernel(sigma);
        const double variance =
            (2.0 * (kernel.box * kernel.box - 1) + kernel.third * kernel.third - 1) / 12.0;
        EXPECT_NEAR(std::sqrt(variance) / sigma, 1.0, sigma < 8.0 ? 0.06 : 0.02) << sigma;
        // Sums of pixels at full value fit into 32 bits.
        EXPECT_LT(65535.0 * kernel.box * kernel.box * kernel.third, 4294967296.0) << sigma;
        EXPECT_EQ(kernel.box % 2 + kernel.third % 2, 2) << sigma;
    }
}

/// A disc and a bar of different colours.
FilterPixels Shapes(const FilterBox& box) {
    FilterPixels pixels(box);
    for (int y = 0; y < box.height; ++y)
        for (int x = 0; x < box.width; ++x) {
            std::uint16_t* pixel = pixels.At(box.left + x, box.top + y);
            if (std::hypot(x - box.width / 3.0, y - box.height / 2.0) < box.height / 3.0)
                pixel[0] = pixel[3] = 65535;
            if (x > box.width * 3 / 4) pixel[1] = pixel[2] = pixel[3] = 40000;
        }
    return pixels;
}

class LargeBlurTest : public testing::TestWithParam<BlurCase> {};
TEST_P(LargeBlurTest, IsNearlyGaussian) {
    const FilterPixels input = Shapes({-5, 4, 90, 70});
    const auto [name, sigmaX, sigmaY, box] = GetParam();
    // In the middle of small shapes, three box blurs are flatter than a Gaussian by up to 8 levels of 8 bits.
    ExpectSlowBlur(BlurFilterPixels(input.Copy(), {sigmaX, sigmaY}, box), input, Gaussian(sigmaX),
                   Gaussian(sigmaY), box, 8.0 * 257.0);
}
INSTANTIATE_TEST_SUITE_P(Filter, LargeBlurTest,
                         testing::Values(BlurCase{"InPlace", 24.0, 21.0, {-5, 4, 90, 70}},
                                         BlurCase{"Cells", 41.0, 23.0, {-30, -10, 80, 60}},
                                         BlurCase{"CellsAcrossOnly", 45.0, 3.0, {-21, -3, 117, 81}},
                                         BlurCase{"CellsDownOnly", 0.0, 45.0, {-21, -3, 117, 81}},
                                         BlurCase{"BarelyCells", 20.1, 20.1, {-25, 4, 60, 70}}),
                         kNameOfRow);

TEST(FilterBlurTest, KeepsWhatIsFullFull) {
    for (const double sigma : {0.5, 1.9, 4.0, 7.3, 19.5, 25.0, 90.0}) {
        FilterPixels input({0, 0, 900, 20});
        for (int y = 0; y < 20; ++y) std::fill_n(input.Row(y), 900 * 4, std::uint16_t{65535});
        const FilterPixels blurred = BlurFilterPixels(std::move(input), {sigma, 0.0}, {0, 0, 900, 20});
        EXPECT_EQ(blurred.At(450, 10)[0], 65535) << sigma;
        EXPECT_EQ(blurred.At(450, 10)[3], 65535) << sigma;
        EXPECT_LT(blurred.At(0, 10)[3], 60000) << sigma;
    }
}

TEST(FilterBlurTest, IsTheSameInPlaceAndElsewhere) {
    for (const double sigma : {0.8, 3.0, 30.0}) {
        FilterPixels input = RandomFilterPixels(kInput, 9);
        const FilterPixels larger = BlurFilterPixels(input.Copy(), {sigma, sigma}, kInput.GrownBy(3, 5));
        const FilterPixels inPlace = BlurFilterPixels(std::move(input), {sigma, sigma}, kInput);
        ExpectPixels(inPlace, kInput, 0.0, [&](int x, int y) { return PlainAt(larger, x, y); });
    }
}

TEST(FilterBlurTest, OfOpacityAloneIsThatOfAllChannels) {
    for (const double sigma : {0.8, 3.0, 30.0}) {
        const FilterPixels input = RandomFilterPixels(kInput, 10);
        const FilterBox box = kInput.GrownBy(3, 5);
        const FilterPixels all = BlurFilterPixels(input.Copy(), {sigma, 2.0 * sigma}, box);
        const FilterPixels alpha = BlurFilterPixels(AlphaOfFilterPixels(input), {sigma, 2.0 * sigma}, box);
        EXPECT_TRUE(alpha.IsAlphaOnly());
        ExpectPixels(alpha, box, 0.0, [&](int x, int y) {
            return PlainPixel{0.0, 0.0, 0.0, PlainAt(all, x, y)[3]};
        });
    }
}

TEST(FilterBlurTest, ReachesNoFartherThanItSays) {
    for (const double sigma : {0.4, 1.9, 4.0, 5.0, 19.5, 19.6, 50.0, 200.0}) {
        FilterPixels dot({0, 0, 1, 1});
        std::fill_n(dot.At(0, 0), 4, std::uint16_t{65535});
        const int reach = FilterBlurReach(sigma);
        EXPECT_GE(reach, 2.0 * sigma);
        const FilterPixels blurred =
            BlurFilterPixels(std::move(dot), {sigma, 0.0}, {-reach - 600, 0, 2 * reach + 1200, 1});
        for (int x = -reach - 600; x < reach + 600; ++x)
            if (x < -reach || x > reach) {
                ASSERT_EQ(blurred.At(x, 0)[3], 0) << sigma << " at " << x;
            }
    }
}

struct OddBlurCase {
    const char* name;
    double sigma;
    bool isNothing;
};
class OddBlurTest : public testing::TestWithParam<OddBlurCase> {};
TEST_P(OddBlurTest, IsSafe) {
    const FilterPixels input = RandomFilterPixels(kInput, 11);
    const FilterPixels blurred = BlurFilterPixels(input.Copy(), {GetParam().sigma, GetParam().sigma}, kInput);
    EXPECT_LE(FilterBlurReach(GetParam().sigma), 1 << 16);
    if (GetParam().isNothing)
        ExpectSame(blurred, input);
    else
        ExpectPixels(blurred, kInput, 10.0, [](int, int) { return PlainPixel{}; });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, OddBlurTest,
    testing::Values(OddBlurCase{"Zero", 0.0, true}, OddBlurCase{"Negative", -3.0, true},
                    OddBlurCase{"NotANumber", std::numeric_limits<double>::quiet_NaN(), true},
                    OddBlurCase{"Tiny", 1e-300, true}, OddBlurCase{"Huge", 1e300, false},
                    OddBlurCase{"Infinite", std::numeric_limits<double>::infinity(), false}),
    kNameOfRow);

TEST(FilterBlurTest, OfNothingOrIntoNothingIsEmpty) {
    EXPECT_TRUE(BlurFilterPixels(RandomFilterPixels(kInput, 1), {3.0, 3.0}, {0, 0, 0, 5}).GetBox().IsEmpty());
    const FilterPixels blurred = BlurFilterPixels(FilterPixels(), {3.0, 30.0}, kInput);
    ExpectPixels(blurred, kInput, 0.0, [](int, int) { return PlainPixel{}; });
}

}  // namespace
