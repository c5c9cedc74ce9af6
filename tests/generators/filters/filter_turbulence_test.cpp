// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_turbulence.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

/// Reference implementation in double precision: one channel at a time, with doubled tables and a random
/// number generator whose intermediate results fit into 32 bits.
class SlowNoise {
public:
    explicit SlowNoise(long seed) {
        if (seed <= 0) seed = -(seed % 2147483646) + 1;
        if (seed > 2147483646) seed = 2147483646;
        for (auto& channel : directions_)
            for (int i = 0; i < 256; ++i) {
                order_[Index(i)] = i;
                for (double& part : channel[Index(i)]) {
                    seed = Next(seed);
                    part = static_cast<double>(seed % 512 - 256) / 256.0;
                }
                const double length = std::hypot(channel[Index(i)][0], channel[Index(i)][1]);
                for (double& part : channel[Index(i)]) part /= length;
            }
        for (int i = 255; i > 0; --i) {
            seed = Next(seed);
            std::swap(order_[Index(i)], order_[Index(static_cast<int>(seed % 256))]);
        }
        for (int i = 0; i < 258; ++i) {
            order_[Index(256 + i)] = order_[Index(i)];
            for (auto& channel : directions_) channel[Index(256 + i)] = channel[Index(i)];
        }
    }

    PlainPixel At(const FilterTurbulence& t, ORVMathPoint2D p) const {
        PlainPixel pixel;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            double sum = 0.0, ratio = 1.0, fx = t.frequencyX, fy = t.frequencyY;
            int width = 0, height = 0, wrapX = 0, wrapY = 0;
            if (t.isStitched) {
                Stitch(fx, t.tile.xMin, t.tile.xMax, width, wrapX);
                Stitch(fy, t.tile.yMin, t.tile.yMax, height, wrapY);
            }
            double x = p.x * fx, y = p.y * fy;
            for (int octave = 0; octave < t.octaves; ++octave) {
                const double noise = Noise(channel, x, y, t.isStitched, width, height, wrapX, wrapY);
                sum += (t.isFractal ? noise : std::abs(noise)) / ratio;
                x *= 2.0;
                y *= 2.0;
                ratio *= 2.0;
                width *= 2;
                height *= 2;
                wrapX = 2 * wrapX - 4096;
                wrapY = 2 * wrapY - 4096;
            }
            pixel[channel] = t.isFractal ? (sum + 1.0) / 2.0 : sum;
        }
        return Premultiplied(pixel);
    }

private:
    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
    static long Next(long seed) {
        const long result = 16807 * (seed % 127773) - 2836 * (seed / 127773);
        return result <= 0 ? result + 2147483647 : result;
    }
    static void Stitch(double& frequency, double begin, double end, int& size, int& wrap) {
        const double length = end - begin;
        const double low = std::floor(length * frequency) / length,
                     high = std::ceil(length * frequency) / length;
        frequency = frequency / low < high / frequency ? low : high;
        size = static_cast<int>(length * frequency + 0.5);
        wrap = static_cast<int>(begin * frequency + 4096 + size);
    }
    double Noise(std::size_t channel, double x, double y, bool isStitched, int width, int height, int wrapX,
                 int wrapY) const {
        x += 4096.0;
        y += 4096.0;
        int x0 = static_cast<int>(x), y0 = static_cast<int>(y), x1 = x0 + 1, y1 = y0 + 1;
        const double dx = x - x0, dy = y - y0;
        if (isStitched) {
            if (x0 >= wrapX) x0 -= width;
            if (x1 >= wrapX) x1 -= width;
            if (y0 >= wrapY) y0 -= height;
            if (y1 >= wrapY) y1 -= height;
        }
        const auto share = [&](int column, int row, double u, double v) {
            const int place = order_[Index(order_[Index(column & 255)] + (row & 255))];
            const auto& direction = directions_[channel][Index(place)];
            return u * direction[0] + v * direction[1];
        };
        const double sx = dx * dx * (3 - 2 * dx), sy = dy * dy * (3 - 2 * dy);
        const auto mix = [](double t, double a, double b) { return a + t * (b - a); };
        return mix(sy, mix(sx, share(x0, y0, dx, dy), share(x1, y0, dx - 1, dy)),
                   mix(sx, share(x0, y1, dx, dy - 1), share(x1, y1, dx - 1, dy - 1)));
    }

    std::array<int, 514> order_{};
    std::array<std::array<std::array<double, 2>, 514>, 4> directions_{};
};

struct NoiseCase {
    const char* name;
    FilterTurbulence turbulence;
};
class FilterTurbulenceTest : public testing::TestWithParam<NoiseCase> {};
TEST_P(FilterTurbulenceTest, IsTheSlowNoise) {
    const FilterTurbulence& t = GetParam().turbulence;
    const SlowNoise slow(static_cast<long>(t.seed));
    const FilterBox box{-7, -3, 60, 41};
    ExpectPixels(MakeFilterTurbulence(t, FilterColours::kLinear, box), box, 3.0, [&](int x, int y) {
        return slow.At(t, t.toUser({1.0 * x, 1.0 * y}));
    });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterTurbulenceTest,
    testing::Values(
        NoiseCase{"Turbulence", {0.05, 0.05, 1, 0.0, false, false, {}, {}}},
        NoiseCase{"Fractal", {0.05, 0.05, 1, 0.0, true, false, {}, {}}},
        NoiseCase{"Octaves", {0.03, 0.11, 5, 3.0, false, false, {}, {}}},
        NoiseCase{"FractalOctaves", {0.03, 0.11, 5, 3.0, true, false, {}, {}}},
        NoiseCase{"SeedIsCut", {0.05, 0.05, 2, 1.9, true, false, {}, {}}},
        NoiseCase{"NegativeSeed", {0.05, 0.05, 2, -5.7, true, false, {}, {}}},
        NoiseCase{"LargeSeed", {0.05, 0.05, 2, 2147483647.0, true, false, {}, {}}},
        NoiseCase{"OneAxis", {0.0, 0.1, 2, 1.0, true, false, {}, {}}},
        NoiseCase{"NoFrequency", {0.0, 0.0, 2, 1.0, true, false, {}, {}}},
        NoiseCase{"NoOctaves", {0.1, 0.1, 0, 1.0, true, false, {}, {}}},
        NoiseCase{"Stitched", {0.13, 0.07, 3, 4.0, false, true, {0.0, 31.0, 0.0, 23.0}, {}}},
        NoiseCase{"StitchedFractal", {0.21, 0.34, 2, 4.0, true, true, {5.0, 31.0, 3.0, 17.0}, {}}},
        NoiseCase{"Turned", {0.05, 0.02, 3, 2.0, false, false, {}, {0.6, -0.3, 0.4, 0.8, 10.0, 20.0}}}),
    kNameOfRow);

TEST(FilterTurbulenceTest, StitchedEdgesMeet) {
    const FilterTurbulence t{0.13, 0.07, 3, 4.0, true, true, {0.0, 32.0, 0.0, 24.0}, {}};
    const FilterPixels noise = MakeFilterTurbulence(t, FilterColours::kSrgb, {0, 0, 33, 25});
    for (int x = 0; x <= 32; ++x) EXPECT_EQ(PlainAt(noise, x, 0), PlainAt(noise, x, 24)) << x;
    for (int y = 0; y <= 24; ++y) EXPECT_EQ(PlainAt(noise, 0, y), PlainAt(noise, 32, y)) << y;
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

class NoTurbulenceTest : public testing::TestWithParam<NoiseCase> {};
TEST_P(NoTurbulenceTest, IsTransparent) {
    const FilterBox box{0, 0, 5, 4};
    ExpectPixels(MakeFilterTurbulence(GetParam().turbulence, FilterColours::kSrgb, box), box, 0.0,
                 [](int, int) { return PlainPixel{}; });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, NoTurbulenceTest,
    testing::Values(NoiseCase{"NegativeFrequency", {-0.1, 0.1, 1, 0.0, true, false, {}, {}}},
                    NoiseCase{"FrequencyOfNoNumber", {0.1, kNoNumber, 1, 0.0, true, false, {}, {}}},
                    NoiseCase{"NoOctaves", {0.1, 0.1, 0, 0.0, false, false, {}, {}}},
                    NoiseCase{"NegativeOctaves", {0.1, 0.1, INT_MIN, 0.0, false, false, {}, {}}}),
    kNameOfRow);

class OddTurbulenceTest : public testing::TestWithParam<NoiseCase> {};
TEST_P(OddTurbulenceTest, IsSafe) {
    const FilterPixels noise =
        MakeFilterTurbulence(GetParam().turbulence, FilterColours::kSrgb, {-9, -9, 20, 20});
    EXPECT_EQ(noise.GetBox().width, 20);
    EXPECT_LE(FilterTurbulenceWork(GetParam().turbulence, noise.GetBox()), 400.0 * 200.0);
}
INSTANTIATE_TEST_SUITE_P(
    Filter, OddTurbulenceTest,
    testing::Values(
        NoiseCase{"HugeFrequency", {1e300, 1e300, 3, 0.0, true, true, {0.0, 1e300, 0.0, 1e-300}, {}}},
        NoiseCase{"HugeOctaves", {0.1, 0.1, INT_MAX, 0.0, true, true, {0.0, 10.0, 0.0, 10.0}, {}}},
        NoiseCase{"InfiniteSeed", {0.1, 0.1, 1, -INFINITY, true, false, {}, {}}},
        NoiseCase{"HugeSeed", {0.1, 0.1, 1, 1e300, true, false, {}, {}}},
        NoiseCase{"MapOfNoNumbers", {0.1, 0.1, 1, 0.0, true, false, {}, {kNoNumber, 0, 0, INFINITY, 0, 0}}},
        NoiseCase{"TileOfNoNumbers",
                  {0.1, 0.1, 2, 0.0, true, true, {kNoNumber, kNoNumber, -INFINITY, INFINITY}, {}}},
        NoiseCase{"FarTile", {0.1, 0.1, 2, 0.0, true, true, {-1e308, 1e308, 1e15, 1e15 + 8}, {}}}),
    kNameOfRow);

}  // namespace
