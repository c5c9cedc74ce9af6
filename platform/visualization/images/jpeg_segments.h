// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// What the segments before the first scan of a JPEG file say of its pixels.
struct JpegSegments {
    /// As Exif counts them: 1 for pixels that lie as they are shown, up to 8.
    int orientation = 1;
    /// The ICC profile, of all its pieces; empty when there is none.
    std::vector<std::uint8_t> profile;
    /// A piece of the profile is missing, there twice, or all are too long.
    bool isProfileBroken = false;
};

/// Reads them. Bytes that are no JPEG give what stood before them. Throws std::bad_alloc.
JpegSegments ReadJpegSegments(std::span<const std::uint8_t> file);

/// The orientation that data in the form of Exif (a TIFF header, then directories) name; 1 when they name
/// none.
int ReadExifOrientation(std::span<const std::uint8_t> exif);
