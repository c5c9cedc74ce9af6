// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "library/print/PrintJob.h"

/// Pixels that a side of a page may be asked for; what a format holds is less.
inline constexpr double kGreatestSide = 1e6;
/// Pixels for each px.
inline constexpr double kSmallestZoom = 1e-4, kGreatestZoom = 1e4;

/// Options that say in another way how large a page becomes, and so say nothing beside a size in pixels.
inline constexpr const char* kOtherSizes[] = {"--dpi",    "--paper", "--orientation", "--scale",
                                              "--margin", "--align", "--tile",        "--nup"};

/// What is said of sizes in pixels, in words; what was not said is empty.
struct SizeWords {
    std::optional<double> width, height, zoom;
    std::optional<std::string> background;
    std::string otherSize;  ///< the first of kOtherSizes that was given
};

/// Makes options of the words. A pixel is a px of the drawings where the format has no pixels.
/// @param isStandard  drawings are standard SVG, which has another px
/// @param options     what was read of paper and resolution; sizes and the background are added
/// @return a result; a failure was reported
int ReadSizeWords(const SizeWords& words, bool isStandard, PrintHost& host, PageOptions& options);
