// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// Which colours a format with pixels has.
enum class ORVColourMode : std::uint8_t {
    kColour,
    kGrey,  ///< 256 levels
    kMono,  ///< black and white, without levels on edges; greys become patterns of dots
};
