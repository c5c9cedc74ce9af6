// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "generators/filters/pixel_steps.h"

namespace {

/// Maximum coordinate, so that sums of a few coordinates do not overflow an int.
constexpr int kFarthest = 1 << 29;
// More than fits into memory.
constexpr double kMostPixels = 1e10;

bool IsPossible(const FilterBox& box) {
    const auto isNear = [](std::int64_t value) { return value >= -kFarthest && value <= kFarthest; };
    return !box.IsEmpty() && isNear(box.left) && isNear(box.top) &&
           isNear(std::int64_t{box.left} + box.width) && isNear(std::int64_t{box.top} + box.height);
}

double LinearOf(double srgb) {
    return srgb <= 0.04045 ? srgb / 12.92 : std::pow((srgb + 0.055) / 1.055, 2.4);
}
double SrgbOf(double linear) {
    return linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

/// A curve on 0..65535 as a table of 4097 values with linear interpolation. The error is at most 2 of 65535,
/// and the table fits the first-level cache.
class CurveTable {
public:
    template <class Curve>
    explicit CurveTable(Curve curve) {
        for (std::size_t i = 0; i < values_.size(); ++i)
            values_[i] = static_cast<unsigned int>(
                std::lround(curve(static_cast<double>(i << kShift) / kFilterFull) * kFilterFull));
    }
    unsigned int operator()(unsigned int value) const {
        const unsigned int part = value & (kStep - 1), *at = &values_[value >> kShift];
        return (at[0] * (kStep - part) + at[1] * part + kStep / 2) >> kShift;
    }

private:
    static constexpr unsigned int kShift = 4, kStep = 1U << kShift;
    std::array<unsigned int, 4097> values_{};
};

const CurveTable& ToLinear() {
    static const CurveTable table(LinearOf);
    return table;
}
const CurveTable& ToSrgb() {
    static const CurveTable table(SrgbOf);
    return table;
}
const CurveTable& ToColours(FilterColours colours) {
    return colours == FilterColours::kLinear ? ToLinear() : ToSrgb();
}

std::uint16_t Short(unsigned int value) { return static_cast<std::uint16_t>(value); }

/// Rounded to nearest; exact.
unsigned int ByteOf(unsigned int value) { return (value * 255 + 32895) >> 16; }

void ConvertPixel(const CurveTable& curve, std::uint16_t* pixel) {
    const unsigned int alpha = pixel[3];
    if (alpha == kFilterFull) {
        for (int i = 0; i < 3; ++i) pixel[i] = Short(curve(pixel[i]));
        return;
    }
    if (alpha == 0) return;
    const float up = static_cast<float>(kFilterFull) / static_cast<float>(alpha);
    for (int i = 0; i < 3; ++i) {
        const auto straight = static_cast<unsigned int>(static_cast<float>(pixel[i]) * up + 0.5F);
        const unsigned int converted = curve(std::min(straight, kFilterFull));
        pixel[i] = Short((converted * alpha + kFilterFull / 2) / kFilterFull);
    }
}

bool HasColour(const std::uint16_t* pixel) { return (pixel[0] | pixel[1] | pixel[2]) != 0; }

/// The channels of a pixel as one integer, for comparing and copying.
template <class Number, class Channel>
Number NumberOf(const Channel* pixel) {
    Number number;
    std::memcpy(&number, pixel, sizeof number);
    return number;
}

void WidenPixel(const std::uint8_t* bytes, std::uint16_t* pixel) {
    for (int i = 0; i < kFilterChannels; ++i) pixel[i] = Short(bytes[i] * 257U);
}

/// Adjacent pixels are often equal, so the last result is reused.
class PixelLoader {
public:
    explicit PixelLoader(FilterColours colours)
        : curve_(colours == FilterColours::kSrgb ? nullptr : &ToLinear()) {}
    void Load(const std::uint8_t* bytes, std::uint16_t* pixel) {
        if (const auto number = NumberOf<std::uint32_t>(bytes); number != last_) {
            last_ = number;
            WidenPixel(bytes, loaded_);
            if (HasColour(loaded_)) {
                hasColour_ = true;
                if (curve_) ConvertPixel(*curve_, loaded_);
            }
        }
        std::memcpy(pixel, loaded_, sizeof loaded_);
    }
    bool HasSeenColour() const { return hasColour_; }

private:
    const CurveTable* curve_;
    std::uint32_t last_ = 0;
    std::uint16_t loaded_[kFilterChannels] = {};
    bool hasColour_ = false;
};

class PixelStore {
public:
    explicit PixelStore(FilterColours colours)
        : curve_(colours == FilterColours::kSrgb ? nullptr : &ToSrgb()) {}
    void Store(const std::uint16_t* pixel, std::uint8_t* bytes) {
        if (const auto number = NumberOf<std::uint64_t>(pixel); number != last_) {
            last_ = number;
            std::uint16_t converted[kFilterChannels];
            std::memcpy(converted, pixel, sizeof converted);
            if (curve_ && HasColour(converted)) ConvertPixel(*curve_, converted);
            for (int i = 0; i < kFilterChannels; ++i)
                stored_[i] = static_cast<std::uint8_t>(ByteOf(converted[i]));
        }
        std::memcpy(bytes, stored_, sizeof stored_);
    }

private:
    const CurveTable* curve_;
    std::uint64_t last_ = 0;
    std::uint8_t stored_[kFilterChannels] = {};
};

}  // namespace

// ---- Boxes ------------------------------------------------------------------------------------------------

FilterBox FilterBox::CutTo(const FilterBox& other) const {
    if (IsEmpty() || other.IsEmpty()) return {left, top, 0, 0};
    const std::int64_t x0 = std::max(left, other.left), y0 = std::max(top, other.top);
    const std::int64_t x1 = std::min(std::int64_t{left} + width, std::int64_t{other.left} + other.width);
    const std::int64_t y1 = std::min(std::int64_t{top} + height, std::int64_t{other.top} + other.height);
    if (x1 <= x0 || y1 <= y0) return {left, top, 0, 0};
    return {static_cast<int>(x0), static_cast<int>(y0), static_cast<int>(x1 - x0), static_cast<int>(y1 - y0)};
}

FilterBox FilterBox::GrownBy(int columns, int rows) const {
    if (IsEmpty()) return *this;
    const auto edge = [](std::int64_t place) {
        return static_cast<int>(std::clamp<std::int64_t>(place, -kFarthest, kFarthest));
    };
    const int x0 = edge(std::int64_t{left} - columns), y0 = edge(std::int64_t{top} - rows);
    const int x1 = edge(std::int64_t{left} + width + columns), y1 = edge(std::int64_t{top} + height + rows);
    return {x0, y0, std::max(0, x1 - x0), std::max(0, y1 - y0)};
}

// ---- Buffers ----------------------------------------------------------------------------------------------

FilterPixels::FilterPixels(const FilterBox& box, FilterColours colours) : colours_(colours) {
    if (!IsPossible(box)) return;
    if (box.Area() > kMostPixels) throw std::bad_alloc();
    // Zeroed memory from the system is not committed until it is used.
    const auto count = static_cast<std::size_t>(box.width) * static_cast<std::size_t>(box.height);
    pixels_.reset(static_cast<std::uint16_t*>(std::calloc(count, PixelSize(1))));
    if (!pixels_) throw std::bad_alloc();
    box_ = box;
}

FilterPixels FilterPixels::Copy() const {
    FilterPixels copy(box_, colours_);
    copy.isAlphaOnly_ = isAlphaOnly_;
    for (int y = box_.top; y < box_.Bottom(); ++y) std::memcpy(copy.Row(y), Row(y), PixelSize(box_.width));
    return copy;
}

FilterPixels LoadFilterPixels(const std::uint8_t* rgba, std::size_t stride, const FilterBox& box,
                              FilterColours colours) {
    FilterPixels pixels(box, colours);
    PixelLoader loader(colours);
    const FilterBox made = pixels.GetBox();
    for (int y = 0; y < made.height; ++y, rgba += stride) {
        std::uint16_t* row = pixels.Row(made.top + y);
        for (int x = 0; x < made.width; ++x) loader.Load(rgba + PixelShorts(x), row + PixelShorts(x));
    }
    pixels.SetAlphaOnly(!loader.HasSeenColour());
    return pixels;
}

void StoreFilterPixels(const FilterPixels& pixels, const FilterBox& box, std::uint8_t* rgba,
                       std::size_t stride) {
    const FilterBox shown = box.CutTo(pixels.GetBox());
    PixelStore store(pixels.GetColours());
    for (int y = 0; y < box.height; ++y, rgba += stride) {
        std::memset(rgba, 0, static_cast<std::size_t>(PixelShorts(std::max(0, box.width))));
        if (!shown.Contains(shown.left, box.top + y)) continue;
        const std::uint16_t* from = pixels.At(shown.left, box.top + y);
        std::uint8_t* to = rgba + PixelShorts(shown.left - box.left);
        for (int x = 0; x < shown.width; ++x) store.Store(from + PixelShorts(x), to + PixelShorts(x));
    }
}

void ConvertFilterColours(FilterPixels& pixels, FilterColours colours) {
    if (colours == pixels.GetColours()) return;
    pixels.SetColours(colours);
    if (pixels.IsAlphaOnly()) return;
    const CurveTable& curve = ToColours(colours);
    const FilterBox box = pixels.GetBox();
    for (int y = box.top; y < box.Bottom(); ++y) {
        std::uint16_t* pixel = pixels.Row(y);
        for (int x = 0; x < box.width; ++x, pixel += kFilterChannels)
            if (HasColour(pixel)) ConvertPixel(curve, pixel);
    }
}

FilterPixels AlphaOfFilterPixels(const FilterPixels& pixels) {
    const FilterBox box = pixels.GetBox();
    FilterPixels alpha(box, pixels.GetColours());
    alpha.SetAlphaOnly(true);
    for (int y = box.top; y < box.Bottom(); ++y) {
        const std::uint16_t* from = pixels.Row(y);
        std::uint16_t* to = alpha.Row(y);
        for (int x = 0; x < box.width; ++x) to[PixelShorts(x) + 3] = from[PixelShorts(x) + 3];
    }
    return alpha;
}

FilterPixels ClipFilterPixels(FilterPixels pixels, const FilterBox& box) {
    if (pixels.GetBox() == box) return pixels;
    FilterPixels clipped(box, pixels.GetColours());
    clipped.SetAlphaOnly(pixels.IsAlphaOnly());
    const FilterBox shown = clipped.GetBox().CutTo(pixels.GetBox());
    for (int y = shown.top; y < shown.Bottom(); ++y)
        std::memcpy(clipped.At(shown.left, y), pixels.At(shown.left, y), PixelSize(shown.width));
    return clipped;
}

void FilterColour::Pixel(FilterColours colours, std::uint16_t (&pixel)[kFilterChannels]) const {
    const auto inside = [](double value) { return value > 0.0 ? std::min(value, 1.0) : 0.0; };
    const double opacity = inside(alpha), channels[] = {red, green, blue};
    for (int i = 0; i < 3; ++i) {
        const double value = inside(channels[i]);
        const double straight = colours == FilterColours::kLinear ? LinearOf(value) : value;
        pixel[i] = Short(static_cast<unsigned int>(std::lround(straight * opacity * kFilterFull)));
    }
    pixel[3] = Short(static_cast<unsigned int>(std::lround(opacity * kFilterFull)));
}
