#pragma once

#include <cstddef>
#include <unordered_map>

#include "generators/cairo/cairo_handles.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// The platform's images as cairo takes them. One that is drawn often is converted once, so that a document
/// holds it once. The surface of a very large image has fewer pixels than the image.
class CairoImageCache {
public:
    /// The image with its pixels. @return null when memory is spent
    cairo_surface_t* FindPixels(const ORVPixelImage& image);
    /// The image for a format that takes JPEG files as they are: an image read from such a file keeps its
    /// compressed bytes and has no pixels. Only to be painted plainly. @return null when memory is spent
    cairo_surface_t* FindEmbeddable(const ORVPixelImage& image);

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being used again
        CairoSurface surface;
    };
    using Entries = std::unordered_map<const ORVPixelImage*, Entry>;
    cairo_surface_t* Keep(Entries& entries, const ORVPixelImage& image, CairoSurface surface,
                          std::size_t bytes);

    Entries pixels_, files_;
    std::size_t bytes_ = 0;
};
