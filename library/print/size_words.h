// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "library/print/PrintJob.h"

/// Greatest page side in pixels that can be requested; formats have lower limits.
inline constexpr double kGreatestSide = 1e6;
/// Range of the zoom, in pixels per px.
inline constexpr double kSmallestZoom = 1e-4, kGreatestZoom = 1e4;

/// Options that determine the page size in another way and conflict with a size in pixels.
inline constexpr const char* kOtherSizes[] = {"--dpi",    "--paper", "--orientation", "--scale",
                                              "--margin", "--align", "--tile",        "--nup"};

/// Options for sizes in pixels; empty if not given.
struct SizeWords {
    std::optional<double> width, height, zoom;
    std::optional<std::string> background;
    std::string otherSize;  ///< the first of kOtherSizes that was given
};

/// Interprets the options. If the format has no pixels, one pixel is one px of the drawings.
/// @param isStandard  drawings are standard SVG, whose px has another size
/// @param options     holds paper and resolution; sizes and the background are added
/// @return a result; failures are reported to the host
int ReadSizeWords(const SizeWords& words, bool isStandard, PrintHost& host, PageOptions& options);
