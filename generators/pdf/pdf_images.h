#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

class PdfFile;

/// The images of a document. Each is held once, however often it is drawn, and written when no other object
/// is open.
class PdfImageTable {
public:
    /// The object of an image; it is written by the next call of WritePending.
    /// @param smooth  whether enlarging is to blend pixels; tiles are not, for their edges would show
    unsigned int Find(const ORVPixelImage& image, bool smooth, PdfFile& file);
    void WritePending(PdfFile& file);

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being used again
        bool smooth = true;
        unsigned int object = 0;
    };
    using Entries = std::unordered_map<const ORVPixelImage*, Entry>;
    Entries smooth_, plain_;
    std::vector<Entry> pending_;
    std::size_t bytes_ = 0;  // of the pixels of all entries
};
