// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "generators/common/blend_formulas.h"
#include "generators/common/lanes.h"
#include "generators/filters/filter_pixels.h"

// Helpers of several operations.

/// Size of this many pixels in bytes.
inline std::size_t PixelSize(int pixels) {
    return static_cast<std::size_t>(pixels) * kFilterChannels * sizeof(std::uint16_t);
}
/// Size of this many pixels in shorts.
inline std::ptrdiff_t PixelShorts(int pixels) { return std::ptrdiff_t{pixels} * kFilterChannels; }

/// Converts a number from 0 to 1 to a channel, clamped; NaN becomes 0.
inline std::uint16_t ChannelOf(double value) {
    if (!(value > 0.0)) return 0;
    return static_cast<std::uint16_t>(value < 1.0 ? value * kFilterFull + 0.5 : kFilterFull);
}
/// Products of numbers up to this size do not overflow.
inline constexpr double kGreatestUsable = 1e9;
/// Makes a number usable in computations: 0 if it is not finite, clamped so that products do not overflow.
inline double UsableNumber(double value) {
    return std::isfinite(value) ? std::clamp(value, -kGreatestUsable, kGreatestUsable) : 0.0;
}

/// Product of two channels, rounded.
inline unsigned int Product(unsigned int a, unsigned int b) {
    return (a * b + kFilterFull / 2) / kFilterFull;
}

/// The channels of a pixel as floating-point numbers from 0 to 65535.
inline FloatLanes LoadPixel(const std::uint16_t* pixel) { return ToFloat(LoadShorts(pixel)); }
/// Stores rounded channels; they must be from 0 to 65535.
inline void StorePixel(const FloatLanes& channels, std::uint16_t* pixel) {
    const SignedLanes whole = ToWhole(channels + 0.5F);
    const auto number = std::bit_cast<LongLanes>(PackShorts(whole, whole))[0];
    std::memcpy(pixel, &number, sizeof number);
}
/// The opacity of a pixel in all lanes.
inline FloatLanes Opacity(const FloatLanes& pixel) {
    return __builtin_shufflevector(pixel, pixel, 3, 3, 3, 3);
}

/// Composites a pixel over another.
inline void LayPixelOver(const std::uint16_t* over, std::uint16_t* pixel) {
    constexpr float kPart = 1.0F / static_cast<float>(kFilterFull);
    if (over[3] == 0) return;
    if (over[3] == kFilterFull) {
        std::memcpy(pixel, over, PixelSize(1));
        return;
    }
    const FloatLanes top = LoadPixel(over);
    const FloatLanes sum = top + LoadPixel(pixel) * (1.0F - Opacity(top) * kPart);
    StorePixel(blending::Least(sum, blending::All(static_cast<float>(kFilterFull))), pixel);
}

/// The rows of a box in a buffer, padded with transparent pixels where the buffer does not cover the box.
class FilterRows {
public:
    FilterRows(const FilterPixels& pixels, const FilterBox& box)
        : pixels_(pixels), box_(box), shown_(box.CutTo(pixels.GetBox())) {
        if (shown_ != box) row_.resize(static_cast<std::size_t>(PixelShorts(std::max(0, box.width))));
    }
    /// Row `y` of the box; valid until the next call.
    const std::uint16_t* operator()(int y) {
        if (row_.empty()) return pixels_.At(box_.left, y);
        if (shown_.IsEmpty()) return row_.data();
        std::uint16_t* to = row_.data() + PixelShorts(shown_.left - box_.left);
        if (y >= shown_.top && y < shown_.Bottom())
            std::memcpy(to, pixels_.At(shown_.left, y), PixelSize(shown_.width));
        else
            std::memset(to, 0, PixelSize(shown_.width));
        return row_.data();
    }

private:
    const FilterPixels& pixels_;
    FilterBox box_, shown_;
    std::vector<std::uint16_t> row_;
};

/// Calls `change` for each pixel of a buffer.
template <class Change>
void ForEachPixel(FilterPixels& pixels, Change change) {
    const FilterBox box = pixels.GetBox();
    for (int y = box.top; y < box.Bottom(); ++y) {
        std::uint16_t* pixel = pixels.Row(y);
        for (int x = 0; x < box.width; ++x, pixel += kFilterChannels) change(pixel);
    }
}
