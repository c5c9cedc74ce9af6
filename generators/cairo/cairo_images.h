// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <unordered_map>

#include "generators/cairo/cairo_handles.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// The platform's images as cairo takes them. One that is drawn often is converted once. The surface of a
/// very large image has fewer pixels than the image.
class CairoImageCache {
public:
    /// @return the image's surface; throws std::bad_alloc
    cairo_surface_t* Find(const ORVPixelImage& image);

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being used again
        CairoSurface surface;
    };
    std::unordered_map<const ORVPixelImage*, Entry> entries_;
    std::size_t bytes_ = 0;
};
