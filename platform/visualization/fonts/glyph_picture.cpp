// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/glyph_picture.h"

#include "platform/visualization/fonts/font_system.h"

ORVGlyphPicture ORVMakeGlyphPicture(const ORVFontFace& face, std::uint32_t glyph, double pixelsPerEm,
                                    const ORVGlyphColour& colour) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system ? system->MakeGlyphPicture(face, glyph, pixelsPerEm, colour) : ORVGlyphPicture();
}

bool ORVHasColours(const ORVFontFace& face) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->HasColours(face);
}

std::vector<ORVGlyphLayer> ORVFindGlyphLayers(const ORVFontFace& face, std::uint32_t glyph) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system ? system->FindGlyphLayers(face, glyph) : std::vector<ORVGlyphLayer>();
}
