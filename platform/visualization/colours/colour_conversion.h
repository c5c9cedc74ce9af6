// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

// Colours of images that are not sRGB. The library that converts them lives in a module of its own, which is
// loaded with the first such image.

/// What a file says of the colours of its pixels.
struct ORVColourDescription {
    enum class Space : std::uint8_t {
        kGrey,  ///< pixels are RGBA, red, green and blue being the same
        kRGB,   ///< pixels are RGBA
        kCMYK,  ///< pixels are four amounts of ink, 255 being all
        kNoInk  ///< pixels are four amounts of ink, 255 being none
    };
    Space space = Space::kRGB;
    std::span<const std::uint8_t> profile;  ///< ICC; empty: the numbers below tell
    double gamma = 0.0;  ///< exponent from light to samples, such as 0.45455; 0: as sRGB has it
    /// x and y of white, red, green and blue; all 0: those of sRGB. Of no account for greys.
    std::array<double, 8> chromaticities{};
};

/// Converts pixels to sRGB. May be used by several threads at once.
class ORVColourConversion {
public:
    ORVColourConversion() = default;
    ORVColourConversion(const ORVColourConversion&) = delete;
    ORVColourConversion& operator=(const ORVColourConversion&) = delete;
    virtual ~ORVColourConversion() = default;
    /// @param pixels  `count` of them in the described space; become RGBA. The alpha of RGBA stays, that of
    /// inks
    ///                becomes opaque. Nothing is thrown.
    virtual void Convert(std::uint8_t* pixels, std::size_t count) const = 0;
};

enum class ORVColourStatus : std::uint8_t {
    kSame,         ///< the colours are those of sRGB as far as eight bits can tell; there is no conversion
    kConverted,    ///< there is a conversion
    kBroken,       ///< the description is none of colours in that space
    kMissing,      ///< the module cannot be loaded
    kMemorySpent,  ///< no conversion for lack of memory
};

/// Makes what converts the described colours.
/// @param pixelCount  how many pixels there are: preparing for many takes time, which few do not pay back
/// @param conversion  made when kConverted is returned, else null
ORVColourStatus ORVCreateColourConversion(const ORVColourDescription& description, std::size_t pixelCount,
                                          std::unique_ptr<ORVColourConversion>& conversion);

// ---- the module ----

inline constexpr char kColourModule[] = "liborvcolour.so";
inline constexpr char kColourFactory[] = "orvCreateColourConversion";
/// What the module exports under that name: as ORVCreateColourConversion, the caller deletes the conversion.
using ColourFactory = ORVColourStatus (*)(const ORVColourDescription& description, std::size_t pixelCount,
                                          ORVColourConversion** conversion);
