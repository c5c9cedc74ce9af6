// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

// Conversion of image colours to sRGB. The conversion library is in a separate module, which is loaded with
// the first image that needs it.

/// The colour space of an image file.
struct ORVColourDescription {
    enum class Space : std::uint8_t {
        kGrey,  ///< pixels are RGBA with equal red, green and blue
        kRGB,   ///< pixels are RGBA
        kCMYK,  ///< pixels are four ink amounts, 255 means full ink
        kNoInk  ///< pixels are four ink amounts, 255 means no ink
    };
    Space space = Space::kRGB;
    std::span<const std::uint8_t> profile;  ///< ICC profile; empty to use the values below
    double gamma = 0.0;  ///< exponent from light to samples, such as 0.45455; 0 for the sRGB curve
    /// x and y of white, red, green and blue; all 0 for those of sRGB. Ignored for greys.
    std::array<double, 8> chromaticities{};
};

/// A conversion to sRGB. Thread-safe.
class ORVColourConversion {
public:
    ORVColourConversion() = default;
    ORVColourConversion(const ORVColourConversion&) = delete;
    ORVColourConversion& operator=(const ORVColourConversion&) = delete;
    virtual ~ORVColourConversion() = default;
    /// Converts pixels in place. Throws nothing.
    /// @param pixels  `count` pixels in the described space; converted to RGBA. The alpha of RGBA pixels is
    /// kept; ink pixels become opaque
    virtual void Convert(std::uint8_t* pixels, std::size_t count) const = 0;
};

enum class ORVColourStatus : std::uint8_t {
    kSame,         ///< equivalent to sRGB in 8 bits; no conversion is needed
    kConverted,    ///< a conversion was created
    kBroken,       ///< the description is invalid for the colour space
    kMissing,      ///< the module cannot be loaded
    kOutOfMemory,  ///< out of memory
};

/// Creates a conversion.
/// @param pixelCount  number of pixels: a set-up that speeds up large images is skipped for small ones
/// @param conversion  set when kConverted is returned, else null
ORVColourStatus ORVCreateColourConversion(const ORVColourDescription& description, std::size_t pixelCount,
                                          std::unique_ptr<ORVColourConversion>& conversion);

// ---- the module ----

inline constexpr char kColourModule[] = "liborvcolour.so";
inline constexpr char kColourFactory[] = "orvCreateColourConversion";
/// Type of the function that the module exports: like ORVCreateColourConversion; the caller deletes the
/// conversion.
using ColourFactory = ORVColourStatus (*)(const ORVColourDescription& description, std::size_t pixelCount,
                                          ORVColourConversion** conversion);
