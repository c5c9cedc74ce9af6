// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Metadata from the segments before the first scan of a JPEG file.
struct JpegSegments {
    /// Exif orientation: 1 (upright) to 8.
    int orientation = 1;
    /// The ICC profile, joined from all its segments; empty when there is none.
    std::vector<std::uint8_t> profile;
    /// A segment of the profile is missing or duplicated, or the profile is too long.
    bool isProfileBroken = false;
};

/// Reads the segments, up to the first bytes that are not valid JPEG. Throws std::bad_alloc.
JpegSegments ReadJpegSegments(std::span<const std::uint8_t> file);

/// The orientation in Exif data (a TIFF header and directories); 1 when there is none.
int ReadExifOrientation(std::span<const std::uint8_t> exif);
