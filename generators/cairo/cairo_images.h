// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <unordered_map>

#include "generators/cairo/cairo_handles.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Cairo surfaces for the platform's images. An image that is drawn several times is converted once. The
/// surface of a very large image has a lower resolution than the image.
class CairoImageCache {
public:
    /// @return the image's surface, owned by the cache; throws std::bad_alloc
    cairo_surface_t* Find(const ORVPixelImage& image);

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being reused
        CairoSurface surface;
    };
    std::unordered_map<const ORVPixelImage*, Entry> entries_;
    std::size_t bytes_ = 0;
};
