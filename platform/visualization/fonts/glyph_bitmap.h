// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

class ORVFontFace;

/// A bitmap glyph. The box is in em, relative to the glyph's origin, y up.
struct ORVGlyphBitmap {
    ORVRef<const ORVPixelImage> image;  ///< null when the font has no bitmap for the glyph
    double left = 0.0, top = 0.0, width = 0.0, height = 0.0;
};

/// Colour of bitmaps without colours, such as masks.
struct ORVGlyphColour {
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// Returns the bitmap of a glyph in the size closest to `pixelsPerEm`. Uses the face's FreeType object, so a
/// face must be used by one thread at a time.
[[nodiscard]] ORV_PLATFORM_EXPORT ORVGlyphBitmap ORVMakeGlyphBitmap(const ORVFontFace& face,
                                                                    std::uint32_t glyph, double pixelsPerEm,
                                                                    const ORVGlyphColour& colour);

/// A layer of a multicolour glyph: the outline of another glyph in one colour.
struct ORVGlyphLayer {
    std::uint32_t glyph = 0;
    bool isTextColour = true;  ///< painted in the colour of the text
    ORVGlyphColour colour;     ///< when `isTextColour` is false
    std::uint8_t opacity = 255;
};

/// Whether a face has multicolour or bitmap glyphs.
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVHasColours(const ORVFontFace& face);
/// The layers of a glyph, lowest first; empty for glyphs of one colour.
[[nodiscard]] ORV_PLATFORM_EXPORT std::vector<ORVGlyphLayer> ORVFindGlyphLayers(const ORVFontFace& face,
                                                                                std::uint32_t glyph);
