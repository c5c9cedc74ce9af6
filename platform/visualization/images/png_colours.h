// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/visualization/colours/colour_conversion.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Colour description from the chunks before the image data of a PNG file.
struct PngColours {
    /// There is a description, and it is not known to be sRGB. `description` refers to `profile`.
    bool isDescribed = false;
    ORVColourDescription description;
    std::vector<std::uint8_t> profile;
    ORVImageRemark remark = ORVImageRemark::kNone;
};

/// Reads the colour description. Damaged chunks are ignored; a damaged profile is also remarked on. Throws
/// std::bad_alloc.
/// @param isGrey  whether the image is greyscale
PngColours ReadPngColours(std::span<const std::uint8_t> file, bool isGrey);
