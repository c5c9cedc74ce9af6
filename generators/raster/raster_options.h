// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "generators/common/ORVColourMode.h"

/// How pages become pixels.
struct ORVRasterOptions {
    double dotsPerInch = 90.0;  ///< greater than 0; at 90 a user unit is a pixel
    ORVColourMode colourMode = ORVColourMode::kColour;
    std::uint64_t pixelLimit = 4'000'000'000;            ///< of a page; past it, the page is refused
    std::uint64_t outputPixelLimit = 1'000'000'000'000;  ///< of all pages; the page that passes it is refused
    /// That are painted for all pages, besides a hundred for each of their pixels; past it, drawing ends.
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;
    unsigned int threads = 0;  ///< that draw; 0 for as many as the machine has processors
    int bandRows = 0;          ///< rows drawn at a time; 0 for what suits the page
    bool isClear = false;      ///< pages are transparent, RasterPixels::kClear, and in colour
};
