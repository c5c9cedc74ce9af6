// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/glyph_paint.h"

#include "platform/visualization/fonts/font_system.h"

bool ORVPaintGlyph(const ORVFontFace& face, std::uint32_t glyph, ORVGlyphPaintSink& sink) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->PaintGlyph(face, glyph, &sink);
}

bool ORVIsPaintedGlyph(const ORVFontFace& face, std::uint32_t glyph) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->PaintGlyph(face, glyph, nullptr);
}
