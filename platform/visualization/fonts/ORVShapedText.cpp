// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVShapedText.h"

#include "platform/visualization/fonts/font_system.h"

bool ORVShapeText(std::u32string_view text, std::span<const ORVShapingPart> parts,
                  std::span<const ORVShapingParagraph> paragraphs, ORVShapedText& shaped) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->Shape(text, parts, paragraphs, shaped);
}

bool ORVFindClusterParts(std::u32string_view text, std::vector<bool>& isPart) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->FindClusterParts(text, isPart);
}

bool ORVHasFontFeature(const ORVFontFace& face, std::uint32_t tag) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system && system->HasFeature(face, tag);
}
