// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/visualization/fonts/ORVShapedText.h"

/// See ORVShapeText. Throws FontFailure when the text cannot be set correctly.
void ShapeText(std::u32string_view text, std::span<const ORVShapingPart> parts,
               std::span<const ORVShapingParagraph> paragraphs, ORVShapedText& shaped);
/// See ORVFindClusterParts.
void FindClusterParts(std::u32string_view text, std::vector<bool>& isPart);
/// See ORVHasFontFeature.
bool HasFontFeature(const ORVFontFace& face, std::uint32_t tag);
