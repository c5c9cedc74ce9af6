// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <random>

#include "generators/filters/filter_pixels.h"

// Buffers with random content, and floating-point pixels for the reference implementations of filters.

// How failed tests print parameters.
inline void PrintTo(const FilterBox& box, std::ostream* out) {
    *out << box.left << ',' << box.top << ' ' << box.width << 'x' << box.height;
}
inline void PrintTo(FilterColours colours, std::ostream* out) {
    *out << (colours == FilterColours::kLinear ? "linear" : "sRGB");
}

/// Red, green, blue and opacity from 0 to 1; premultiplied unless stated otherwise.
using PlainPixel = std::array<double, 4>;

/// The pixel at any point of the plane; transparent outside the buffer.
inline PlainPixel PlainAt(const FilterPixels& pixels, int x, int y) {
    if (!pixels.GetBox().Contains(x, y)) return {};
    PlainPixel plain;
    for (std::size_t i = 0; i < 4; ++i) plain[i] = pixels.At(x, y)[i] / 65535.0;
    return plain;
}
/// The pixel with its colours not premultiplied.
inline PlainPixel StraightAt(const FilterPixels& pixels, int x, int y) {
    PlainPixel plain = PlainAt(pixels, x, y);
    for (std::size_t i = 0; i < 3; ++i) plain[i] = plain[3] > 0.0 ? std::min(1.0, plain[i] / plain[3]) : 0.0;
    return plain;
}
/// Clamps to valid premultiplied values.
inline PlainPixel Possible(PlainPixel plain) {
    plain[3] = std::clamp(plain[3], 0.0, 1.0);
    for (std::size_t i = 0; i < 3; ++i) plain[i] = std::clamp(plain[i], 0.0, plain[3]);
    return plain;
}
inline PlainPixel Premultiplied(PlainPixel straight) {
    for (double& channel : straight) channel = std::clamp(channel, 0.0, 1.0);
    for (std::size_t i = 0; i < 3; ++i) straight[i] *= straight[3];
    return straight;
}

/// Random pixels of all kinds, reproducible by `number`: transparent, opaque, translucent, black and
/// saturated.
inline FilterPixels RandomFilterPixels(const FilterBox& box, unsigned int number) {
    FilterPixels pixels(box);
    std::mt19937 random(number);
    const auto channel = [&](unsigned int most) {
        switch (random() % 4) {
            case 0: return 0U;
            case 1: return most;
            default: return static_cast<unsigned int>(random()) % (most + 1);
        }
    };
    for (int y = box.top; y < box.Bottom(); ++y)
        for (int x = box.left; x < box.Right(); ++x) {
            std::uint16_t* pixel = pixels.At(x, y);
            const unsigned int opacity = channel(kFilterFull);
            for (int i = 0; i < 3; ++i) pixel[i] = static_cast<std::uint16_t>(channel(opacity));
            pixel[3] = static_cast<std::uint16_t>(opacity);
        }
    return pixels;
}

inline FilterPixels OnePixel(const PlainPixel& plain) {
    FilterPixels pixels({0, 0, 1, 1});
    for (std::size_t i = 0; i < 4; ++i)
        pixels.At(0, 0)[i] = static_cast<std::uint16_t>(std::lround(plain[i] * 65535.0));
    return pixels;
}

/// Compares all pixels of a buffer with those computed by `expected(x, y)`.
/// @param tolerance  in units of 1/65535
template <class Expected>
void ExpectPixels(const FilterPixels& pixels, const FilterBox& box, double tolerance, Expected expected) {
    ASSERT_EQ(pixels.GetBox(), box);
    for (int y = box.top; y < box.Bottom(); ++y)
        for (int x = box.left; x < box.Right(); ++x) {
            const PlainPixel plain = expected(x, y);
            for (std::size_t i = 0; i < 4; ++i)
                ASSERT_NEAR(pixels.At(x, y)[i], plain[i] * 65535.0, tolerance)
                    << "channel " << i << " of (" << x << ", " << y << ")";
            if (pixels.IsAlphaOnly()) {
                ASSERT_EQ(pixels.At(x, y)[0] | pixels.At(x, y)[1] | pixels.At(x, y)[2], 0)
                    << "colour at (" << x << ", " << y << ")";
            }
        }
}

/// Expects two buffers to be identical.
inline void ExpectSame(const FilterPixels& pixels, const FilterPixels& other) {
    ExpectPixels(pixels, other.GetBox(), 0.0, [&](int x, int y) { return PlainAt(other, x, y); });
}
