// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/visualization/fonts/glyph_bitmap.h"

class FileFace;

/// See ORVMakeGlyphBitmap.
ORVGlyphBitmap MakeGlyphBitmap(const FileFace& face, std::uint32_t glyph, double pixelsPerEm,
                               const ORVGlyphColour& colour);
/// See ORVHasColours.
bool HasColours(const FileFace& face);
/// See ORVFindGlyphLayers.
std::vector<ORVGlyphLayer> FindGlyphLayers(const FileFace& face, std::uint32_t glyph);
