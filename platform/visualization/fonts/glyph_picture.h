// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

class ORVFontFace;

/// A glyph that its font holds as pixels and not as an outline. The box is in em, from the glyph's own
/// origin, y up.
struct ORVGlyphPicture {
    ORVRef<const ORVPixelImage> image;  ///< null when the font has no picture of the glyph
    double left = 0.0, top = 0.0, width = 0.0, height = 0.0;
};

/// The colour of pictures that have none of their own.
struct ORVGlyphColour {
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// Looks for the picture of a glyph, of those in the font the one that suits `pixelsPerEm` best. Uses the
/// face's FreeType object, so that it is for one thread at a time.
[[nodiscard]] ORV_PLATFORM_EXPORT ORVGlyphPicture ORVMakeGlyphPicture(const ORVFontFace& face,
                                                                      std::uint32_t glyph, double pixelsPerEm,
                                                                      const ORVGlyphColour& colour);

/// A part of a glyph of several colours: the outline of another glyph.
struct ORVGlyphLayer {
    std::uint32_t glyph = 0;
    bool isTextColour = true;  ///< painted like text of one colour
    ORVGlyphColour colour;     ///< otherwise
    std::uint8_t opacity = 255;
};

/// Whether a face has glyphs of several colours, or glyphs that are images.
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVHasColours(const ORVFontFace& face);
/// The layers of a glyph, the lowest first; none for glyphs of one colour.
[[nodiscard]] ORV_PLATFORM_EXPORT std::vector<ORVGlyphLayer> ORVFindGlyphLayers(const ORVFontFace& face,
                                                                                std::uint32_t glyph);
