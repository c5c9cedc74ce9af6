// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "generators/common/ORVColourMode.h"

/// Options for rasterising pages.
struct ORVRasterOptions {
    double dotsPerInch = 90.0;  ///< greater than 0; at 90, one user unit is one pixel
    ORVColourMode colourMode = ORVColourMode::kColour;
    /// Maximum pixels of a page; larger pages are refused.
    std::uint64_t pixelLimit = 4'000'000'000;
    /// Maximum pixels of all pages; the page that exceeds it is refused.
    std::uint64_t outputPixelLimit = 1'000'000'000'000;
    /// Maximum painting for all pages, in pixels filled with one colour, on top of a hundred per page pixel.
    /// Drawing ends when it is exceeded.
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;
    unsigned int threads = 0;  ///< rendering threads; 0 for one per processor
    int bandRows = 0;          ///< rows drawn at once; 0 to choose by the width of the page
    bool isClear = false;      ///< transparent pages in colour, RasterPixels::kClear
};
