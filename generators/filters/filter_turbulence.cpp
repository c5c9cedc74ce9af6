// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_turbulence.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "generators/filters/pixel_steps.h"

namespace {

constexpr int kPlaces = 256;
// Offset of the pattern from the origin.
constexpr double kOrigin = 4096.0;
// Octaves beyond this are invisible: each has half the amplitude of the previous one.
constexpr int kVisibleOctaves = 16;
// Limit up to which coordinates keep a usable fraction.
constexpr double kFarthest = 1e12;

/// Park and Miller's random number generator, as specified, so that patterns are the same everywhere.
class RandomNumbers {
public:
    explicit RandomNumbers(double seed) {
        const double whole = std::isfinite(seed) ? std::trunc(seed) : 0.0;
        auto number = static_cast<std::int64_t>(std::clamp(whole, -2147483648.0, 2147483647.0));
        if (number <= 0) number = -(number % (kModulus - 1)) + 1;
        number_ = std::min(number, kModulus - 1);
    }
    std::int64_t Next() { return number_ = number_ * 16807 % kModulus; }

private:
    static constexpr std::int64_t kModulus = 2147483647;
    std::int64_t number_ = 1;
};

/// A gradient vector for each lattice point and channel.
class Lattice {
public:
    explicit Lattice(double seed) {
        RandomNumbers numbers(seed);
        for (int channel = 0; channel < kFilterChannels; ++channel)
            for (int i = 0; i < kPlaces; ++i) SetDirection(i, channel, numbers);
        for (std::size_t i = 0; i < kPlaces; ++i) order_[i] = static_cast<std::uint8_t>(i);
        for (std::size_t i = kPlaces - 1; i > 0; --i)
            std::swap(order_[i], order_[static_cast<std::size_t>(numbers.Next() % kPlaces)]);
    }

    /// Contribution of the corner (column, row) of a cell to all channels, at (x, y) from that corner.
    FloatLanes Share(std::int64_t column, std::int64_t row, float x, float y) const {
        const std::size_t first = order_[static_cast<std::size_t>(column & (kPlaces - 1))];
        const std::size_t place = order_[(first + static_cast<std::size_t>(row & (kPlaces - 1))) % kPlaces];
        return across_[place] * x + down_[place] * y;
    }

private:
    void SetDirection(int place, int channel, RandomNumbers& numbers) {
        const auto part = [&] {
            return static_cast<double>(numbers.Next() % (2L * kPlaces) - kPlaces) / kPlaces;
        };
        const double x = part(), y = part(), length = std::hypot(x, y);
        const auto i = static_cast<std::size_t>(place);
        // A zero vector cannot be normalised.
        across_[i][channel] = length > 0.0 ? static_cast<float>(x / length) : 0.0F;
        down_[i][channel] = length > 0.0 ? static_cast<float>(y / length) : 0.0F;
    }

    std::array<FloatLanes, kPlaces> across_{}, down_{};
    std::array<std::uint8_t, kPlaces> order_{};
};

/// How the lattice wraps around in an octave.
struct Wrapping {
    /// A column from `end` on equals the one `size` before it; size 0: no wrapping.
    std::int64_t end = 0, size = 0;

    std::int64_t operator()(std::int64_t place) const {
        return size > 0 && place >= end ? place - size : place;
    }
    Wrapping NextOctave() const { return {2 * end - static_cast<std::int64_t>(kOrigin), 2 * size}; }
};

/// A frequency and its wrapping along one axis.
struct NoiseAxis {
    double frequency = 0.0;
    Wrapping wrapping;

    NoiseAxis() = default;
    /// Adjusts the frequency to an integer number of cells between `begin` and `end`.
    NoiseAxis(double wanted, bool isStitched, double begin, double end) : frequency(wanted) {
        const double size = end - begin;
        if (!isStitched || frequency == 0.0 || !(size > 0.0) || !(size * frequency < kFarthest)) return;
        const double lower = std::floor(size * frequency) / size, upper = std::ceil(size * frequency) / size;
        frequency = lower > 0.0 && frequency / lower < upper / frequency ? lower : upper;
        const double cells = size * frequency;
        wrapping.size = static_cast<std::int64_t>(cells + 0.5);
        const double origin = std::isfinite(begin * frequency) ? begin * frequency : 0.0;
        wrapping.end = static_cast<std::int64_t>(
            std::clamp(origin + kOrigin + static_cast<double>(wrapping.size), -kFarthest, kFarthest));
    }
};

float Ease(float part) { return part * part * (3.0F - 2.0F * part); }
FloatLanes Mix(float part, const FloatLanes& a, const FloatLanes& b) { return a + (b - a) * part; }

/// Noise from -1 to 1.
FloatLanes NoiseAt(const Lattice& lattice, double x, double y, const Wrapping& acrossWrap,
                   const Wrapping& downWrap) {
    const double left = std::floor(x += kOrigin), top = std::floor(y += kOrigin);
    const auto right = static_cast<float>(x - left), lower = static_cast<float>(y - top);
    const auto column = static_cast<std::int64_t>(left), row = static_cast<std::int64_t>(top);
    const std::int64_t columns[] = {acrossWrap(column), acrossWrap(column + 1)};
    const std::int64_t rows[] = {downWrap(row), downWrap(row + 1)};
    const float part = Ease(right);
    const FloatLanes above = Mix(part, lattice.Share(columns[0], rows[0], right, lower),
                                 lattice.Share(columns[1], rows[0], right - 1.0F, lower));
    const FloatLanes below = Mix(part, lattice.Share(columns[0], rows[1], right, lower - 1.0F),
                                 lattice.Share(columns[1], rows[1], right - 1.0F, lower - 1.0F));
    return Mix(Ease(lower), above, below);
}

struct NoisePattern {
    Lattice lattice;
    NoiseAxis across, down;
    int octaves = 0;
    bool isFractal = false;

    /// The channels, normally from 0 to 1.
    FloatLanes At(const ORVMathPoint2D& p) const {
        double x = p.x * across.frequency, y = p.y * down.frequency;
        Wrapping acrossWrap = across.wrapping, downWrap = down.wrapping;
        FloatLanes sum{};
        float share = 1.0F;
        for (int i = 0; i < octaves; ++i) {
            if (!(std::abs(x) < kFarthest) || !(std::abs(y) < kFarthest)) break;
            const FloatLanes noise = NoiseAt(lattice, x, y, acrossWrap, downWrap);
            sum += (isFractal ? noise : blending::Most(noise, -noise)) * share;
            x *= 2.0;
            y *= 2.0;
            share *= 0.5F;
            acrossWrap = acrossWrap.NextOctave();
            downWrap = downWrap.NextOctave();
        }
        return isFractal ? (sum + 1.0F) * 0.5F : sum;
    }
};

void StoreNoise(const FloatLanes& noise, std::uint16_t* pixel) {
    constexpr auto kFullChannel = static_cast<float>(kFilterFull);
    const FloatLanes inside = blending::Least(blending::Most(noise, FloatLanes{}), blending::All(1.0F));
    const float opacity = inside[3] * kFullChannel;
    StorePixel(inside * FloatLanes{opacity, opacity, opacity, kFullChannel}, pixel);
}

bool IsFrequency(double value) { return std::isfinite(value) && value >= 0.0; }

}  // namespace

FilterPixels MakeFilterTurbulence(const FilterTurbulence& turbulence, FilterColours colours,
                                  const FilterBox& box) {
    FilterPixels out(box, colours);
    if (!IsFrequency(turbulence.frequencyX) || !IsFrequency(turbulence.frequencyY)) return out;
    const ORVMathBox2D& tile = turbulence.tile;
    const NoisePattern pattern{Lattice(turbulence.seed),
                               NoiseAxis(turbulence.frequencyX, turbulence.isStitched, tile.xMin, tile.xMax),
                               NoiseAxis(turbulence.frequencyY, turbulence.isStitched, tile.yMin, tile.yMax),
                               std::clamp(turbulence.octaves, 0, kVisibleOctaves), turbulence.isFractal};
    const FilterBox made = out.GetBox();
    for (int y = made.top; y < made.Bottom(); ++y) {
        std::uint16_t* pixel = out.Row(y);
        for (int x = made.left; x < made.Right(); ++x, pixel += kFilterChannels)
            StoreNoise(pattern.At(turbulence.toUser({1.0 * x, 1.0 * y})), pixel);
    }
    return out;
}

double FilterTurbulenceWork(const FilterTurbulence& turbulence, const FilterBox& box) {
    // An octave takes as long as a dozen pixels that are only blended.
    return box.Area() * (1.0 + 12.0 * std::clamp(turbulence.octaves, 0, kVisibleOctaves));
}
