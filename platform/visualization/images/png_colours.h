// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/visualization/colours/colour_conversion.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// What the chunks before the pixels of a PNG file say of their colours.
struct PngColours {
    /// Something is said, and it is not sRGB for sure. The description refers to `profile`.
    bool isDescribed = false;
    ORVColourDescription description;
    std::vector<std::uint8_t> profile;
    ORVImageRemark remark = ORVImageRemark::kNone;
};

/// Reads them. Chunks that are damaged count as absent, a damaged profile with a remark. Throws
/// std::bad_alloc.
/// @param isGrey  whether the pixels are greys
PngColours ReadPngColours(std::span<const std::uint8_t> file, bool isGrey);
