// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "generators/common/ORVColourMode.h"

/// What the user may ask of a format.
struct ORVFormatOptions {
    double dotsPerInch = 90.0;                           ///< of pictures; a user unit is then a pixel
    ORVColourMode colourMode = ORVColourMode::kColour;   ///< of pictures' pixels
    std::uint64_t pixelLimit = 4'000'000'000;            ///< pictures of more pixels are refused
    std::uint64_t outputPixelLimit = 1'000'000'000'000;  ///< of all pictures of a document
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;  ///< pixels that pictures may take painting for
    unsigned int threads = 0;  ///< that draw a picture; 0 for as many as the machine has processors
    /// When the document counts as made, in seconds since 1970; formats that state it state nothing without.
    std::optional<std::int64_t> creationTime;
};
