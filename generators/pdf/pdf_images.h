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

/// An image as the document holds it.
struct PdfImage {
    unsigned int object = 0;
    bool isGray = false;
    bool hasAlpha = false;
    /// From the unit square of the object to that of the image, y pointing up in both: a photograph may lie
    /// turned in its file.
    ORVMathAffine2D turn;
    bool isTurned = false;
};

/// The images of a document. Each is held once, however often it is drawn, and from however many files of the
/// same content it was read.
class PdfImageTable {
public:
    /// The image's object, which is written when it is first asked for.
    /// @param smooth  whether enlarging is to blend pixels; tiles are not, for their edges would show
    const PdfImage& Find(const ORVPixelImage& image, bool smooth, PdfFile& file);

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being used again
        PdfImage written;
    };
    /// The images of either smoothness.
    struct Group {
        std::unordered_map<const ORVPixelImage*, Entry> byAddress;
        std::unordered_multimap<std::uint64_t, const ORVPixelImage*> byContent;
    };
    Group smooth_, plain_;
    std::size_t bytes_ = 0;  // of the pixels of all entries
};
