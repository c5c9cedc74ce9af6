// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/// A box of whole pixels. Coordinates may be negative; y grows downwards.
struct FilterBox {
    int left = 0, top = 0, width = 0, height = 0;

    int Right() const { return left + width; }   ///< the first column behind it
    int Bottom() const { return top + height; }  ///< the first row below it
    bool IsEmpty() const { return width <= 0 || height <= 0; }
    bool Contains(int x, int y) const { return x >= left && x < Right() && y >= top && y < Bottom(); }
    /// The number of its pixels; 0 when it is empty.
    double Area() const { return IsEmpty() ? 0.0 : static_cast<double>(width) * height; }
    /// What both boxes hold; an empty box when they do not meet.
    FilterBox CutTo(const FilterBox& other) const;
    /// Larger by so many pixels on each side; the result stays within what FilterPixels can be.
    FilterBox GrownBy(int columns, int rows) const;
    friend bool operator==(const FilterBox&, const FilterBox&) = default;
};

/// What the numbers of a buffer mean.
enum class FilterColours : std::uint8_t {
    kSrgb,   ///< as in images and style sheets
    kLinear  ///< proportional to light
};

/// What full colour and full opacity are, in a buffer.
inline constexpr unsigned int kFilterFull = 65535;
/// Shorts of a pixel: red, green, blue, opacity.
inline constexpr int kFilterChannels = 4;

/// Pixels of a box: premultiplied red, green, blue, opacity, 16 bits each. All outside is transparent. It can
/// be moved, and copied by Copy only, so that no page is copied by mistake. Not for several threads at once
/// while it is written to. Memory that cannot be had is std::bad_alloc.
class FilterPixels {
public:
    FilterPixels() = default;
    /// Transparent pixels. A box without area, or with corners past +-2^29, gives an empty buffer;
    /// std::bad_alloc when there is no memory. Pages that are never written to cost no memory.
    explicit FilterPixels(const FilterBox& box, FilterColours colours = FilterColours::kSrgb);

    const FilterBox& GetBox() const { return box_; }
    FilterColours GetColours() const { return colours_; }
    void SetColours(FilterColours colours) {
        colours_ = colours;
    }  ///< says so only; see ConvertFilterColours
    /// True when red, green and blue are 0 everywhere, which operations use to be faster.
    bool IsAlphaOnly() const { return isAlphaOnly_; }
    void SetAlphaOnly(bool isAlphaOnly) { isAlphaOnly_ = isAlphaOnly; }
    FilterPixels Copy() const;

    /// Row `y` of the plane, from the box's left on; `y` must be in the box.
    std::uint16_t* Row(int y) { return pixels_.get() + Place(y); }
    const std::uint16_t* Row(int y) const { return pixels_.get() + Place(y); }
    /// The pixel at (x, y), which must be in the box.
    std::uint16_t* At(int x, int y) { return Row(y) + Column(x); }
    const std::uint16_t* At(int x, int y) const { return Row(y) + Column(x); }

private:
    struct Release {
        void operator()(std::uint16_t* memory) const { std::free(memory); }
    };
    std::size_t Place(int y) const {
        return static_cast<std::size_t>(y - box_.top) * static_cast<std::size_t>(box_.width) *
               kFilterChannels;
    }
    std::size_t Column(int x) const { return static_cast<std::size_t>(x - box_.left) * kFilterChannels; }

    std::unique_ptr<std::uint16_t[], Release> pixels_;
    FilterBox box_;
    FilterColours colours_ = FilterColours::kSrgb;
    bool isAlphaOnly_ = false;
};

/// Reads premultiplied sRGB pixels of 8 bits a channel (red, green, blue, opacity).
/// @param rgba    the pixel at the box's left top corner
/// @param stride  bytes from a row to the next
FilterPixels LoadFilterPixels(const std::uint8_t* rgba, std::size_t stride, const FilterBox& box,
                              FilterColours colours);
/// Writes a buffer as premultiplied sRGB pixels of 8 bits a channel.
/// @param rgba    the pixel at the left top corner of `box`, all of which is written
void StoreFilterPixels(const FilterPixels& pixels, const FilterBox& box, std::uint8_t* rgba,
                       std::size_t stride);
/// Converts in place. Nothing is done when the colours are so already, or when there is only opacity.
void ConvertFilterColours(FilterPixels& pixels, FilterColours colours);
/// The opacity alone, in black: what filters call SourceAlpha.
FilterPixels AlphaOfFilterPixels(const FilterPixels& pixels);
/// The part of `pixels` in `box`, transparent elsewhere: the same memory when nothing has to change.
FilterPixels ClipFilterPixels(FilterPixels pixels, const FilterBox& box);

/// A colour as it is written: sRGB and opacity, each from 0 to 1 (what is outside is clamped, what is no
/// number is 0), as a pixel of a buffer.
struct FilterColour {
    double red = 0.0, green = 0.0, blue = 0.0, alpha = 1.0;
    /// Premultiplied, in these colours.
    void Pixel(FilterColours colours, std::uint16_t (&pixel)[kFilterChannels]) const;
};
