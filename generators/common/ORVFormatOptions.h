// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "generators/common/ORVColourMode.h"

/// User options of an output format. Formats ignore those that do not apply to them.
struct ORVFormatOptions {
    /// Dots per inch of raster output. At 90, one user unit is one pixel.
    double dotsPerInch = 90.0;
    /// Colours of raster output.
    ORVColourMode colourMode = ORVColourMode::kColour;
    /// Maximum number of pixels of a page; larger pages are refused.
    std::uint64_t pixelLimit = 4'000'000'000;
    /// Maximum number of pixels of all pages of a document.
    std::uint64_t outputPixelLimit = 1'000'000'000'000;
    /// Limit of painting for all pages, in pixels filled with one colour, on top of a hundred per page pixel.
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;
    /// Threads that render a page; 0 for one per processor.
    unsigned int threads = 0;
    /// Creation time stated in the document, in seconds since 1970. If absent, no time is stated.
    std::optional<std::int64_t> creationTime;
};
