// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/cairo/cairo_handles.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// True if an image should be compressed until cairo writes it: cairo keeps everything that a page shows
/// until the page ends. Holds for opaque images made from pixels, such as transparent parts of a page, but
/// small ones.
bool ORVShouldPack(const ORVPixelImage& image);

/// Compresses the pixels of an image.
/// @return a pattern of the image's size that decompresses the pixels each time cairo reads them, and no
/// longer refers to the image; throws std::bad_alloc
CairoPattern ORVPackImage(const ORVPixelImage& image);
