// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/glyph_bitmap.h"

#include "platform/visualization/fonts/font_system.h"

ORVGlyphBitmap ORVMakeGlyphBitmap(const ORVFontFace& face, std::uint32_t glyph, double pixelsPerEm,
                                  const ORVGlyphColour& colour) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system ? system->MakeGlyphBitmap(face, glyph, pixelsPerEm, colour) : ORVGlyphBitmap();
}

bool ORVHasColours(const ORVFontFace& face) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->HasColours(face);
}

std::vector<ORVGlyphLayer> ORVFindGlyphLayers(const ORVFontFace& face, std::uint32_t glyph) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system ? system->FindGlyphLayers(face, glyph) : std::vector<ORVGlyphLayer>();
}
