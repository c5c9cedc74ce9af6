// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

class PdfFile;

/// An image in the document.
struct PdfImage {
    unsigned int object = 0;
    bool isGray = false;
    bool hasAlpha = false;
    /// From the unit square of the object to that of the image, y pointing up in both. Not the identity for
    /// photographs stored rotated.
    ORVMathAffine2D turn;
    bool isTurned = false;
};

/// The images of a document. Each is stored once, even if it is drawn repeatedly or read from several files
/// with the same content.
class PdfImageTable {
public:
    /// Returns the object of an image, writing it on first use.
    /// @param smooth  whether readers should interpolate; false for tiles, whose edges would show
    const PdfImage& Find(const ORVPixelImage& image, bool smooth, PdfFile& file);

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being reused
        PdfImage written;
    };
    /// Images of one kind of smoothing.
    struct Group {
        std::unordered_map<const ORVPixelImage*, Entry> byAddress;
        std::unordered_multimap<std::uint64_t, const ORVPixelImage*> byContent;
    };
    Group smooth_, plain_;
    std::size_t bytes_ = 0;  // size of the pixels of all entries
};
