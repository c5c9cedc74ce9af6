// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/// A rectangle of whole pixels. Coordinates may be negative; y points down.
struct FilterBox {
    int left = 0, top = 0, width = 0, height = 0;

    int Right() const { return left + width; }   ///< the first column past it
    int Bottom() const { return top + height; }  ///< the first row below it
    bool IsEmpty() const { return width <= 0 || height <= 0; }
    bool Contains(int x, int y) const { return x >= left && x < Right() && y >= top && y < Bottom(); }
    /// Number of pixels; 0 if the box is empty.
    double Area() const { return IsEmpty() ? 0.0 : static_cast<double>(width) * height; }
    /// Intersection of two boxes; empty if they do not overlap.
    FilterBox CutTo(const FilterBox& other) const;
    /// Enlarged by this many pixels on each side, within the limits of FilterPixels.
    FilterBox GrownBy(int columns, int rows) const;
    friend bool operator==(const FilterBox&, const FilterBox&) = default;
};

/// Colour space of a buffer.
enum class FilterColours : std::uint8_t {
    kSrgb,   ///< as in images and style sheets
    kLinear  ///< proportional to light
};

/// Value of full colour and full opacity in a buffer.
inline constexpr unsigned int kFilterFull = 65535;
/// Shorts per pixel: red, green, blue, opacity.
inline constexpr int kFilterChannels = 4;

/// The pixels of a box: premultiplied red, green, blue and opacity, 16 bits each. Everything outside is
/// transparent. Move-only: Copy must be called explicitly, so that large buffers are not copied by accident.
/// Not thread-safe while it is written to. Throws std::bad_alloc.
class FilterPixels {
public:
    FilterPixels() = default;
    /// Transparent pixels. A box without area, or with corners beyond +-2^29, makes an empty buffer. Throws
    /// std::bad_alloc when out of memory. Memory pages that are never written to are not committed.
    explicit FilterPixels(const FilterBox& box, FilterColours colours = FilterColours::kSrgb);

    const FilterBox& GetBox() const { return box_; }
    FilterColours GetColours() const { return colours_; }
    void SetColours(FilterColours colours) {
        colours_ = colours;
    }  ///< Only sets the label; ConvertFilterColours converts the pixels.
    /// True if red, green and blue are 0 everywhere, which lets operations be faster.
    bool IsAlphaOnly() const { return isAlphaOnly_; }
    void SetAlphaOnly(bool isAlphaOnly) { isAlphaOnly_ = isAlphaOnly; }
    FilterPixels Copy() const;

    /// Row `y`, beginning at the left of the box; `y` must be in the box.
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

/// Reads premultiplied sRGB pixels of 8 bits per channel (red, green, blue, opacity).
/// @param rgba    the pixel at the top left corner of the box
/// @param stride  bytes from one row to the next
FilterPixels LoadFilterPixels(const std::uint8_t* rgba, std::size_t stride, const FilterBox& box,
                              FilterColours colours);
/// Writes a buffer as premultiplied sRGB pixels of 8 bits per channel.
/// @param rgba    the pixel at the top left corner of `box`, all of which is written
void StoreFilterPixels(const FilterPixels& pixels, const FilterBox& box, std::uint8_t* rgba,
                       std::size_t stride);
/// Converts in place. Does nothing if the colour space is the same or there is only opacity.
void ConvertFilterColours(FilterPixels& pixels, FilterColours colours);
/// The opacity on its own, in black: SourceAlpha of a filter.
FilterPixels AlphaOfFilterPixels(const FilterPixels& pixels);
/// The part of `pixels` inside `box`, transparent elsewhere. Reuses the memory if nothing has to change.
FilterPixels ClipFilterPixels(FilterPixels pixels, const FilterBox& box);

/// A colour as specified: sRGB and opacity from 0 to 1, clamped, with NaN as 0. Converts to a pixel of a
/// buffer.
struct FilterColour {
    double red = 0.0, green = 0.0, blue = 0.0, alpha = 1.0;
    /// Premultiplied, in the given colour space.
    void Pixel(FilterColours colours, std::uint16_t (&pixel)[kFilterChannels]) const;
};
