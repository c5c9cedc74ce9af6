// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// Colours of raster output.
enum class ORVColourMode : std::uint8_t {
    kColour,
    kGrey,  ///< 256 levels
    kMono,  ///< black and white without antialiasing; greys are dithered
};
