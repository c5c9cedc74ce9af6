// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtBitmapImageElt;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;
class ORVUnicodeString;

/// Fills a bitmap primitive from an "image" element. When its reference yields no pixels, it stays in the
/// model with its origin and size.
/// @param state  a copy: what the element's own style changes reaches no sibling
/// @return kDone, or kUnusable when `bitmap` is null
template <SvgElementAccess Element>
int HandleImage(SvgDrawState state, const Element& element, ORVPrtBitmapImageElt* bitmap,
                ORVPrtGraphicPrimitiveElt& container);

/// Loads the pixels that a reference names: a file as it stands or beside the document, as far as the host
/// lets documents read it, or base64 data of a PNG, JPEG or BMP. Nothing is set when there are none.
/// @return false when memory ran out, which says nothing of the image
bool LoadPixelImage(const SvgDrawState& state, std::string_view reference, ORVPrtBitmapImageElt& bitmap);

/// The file that a reference names, as it stands or beside the document, as far as the host lets documents
/// read it. @return false when there is none
bool FindImageFile(const SvgDrawState& state, std::string_view reference, ORVUnicodeString& path);

/// Whether a reference holds its picture itself, in one of the formats that are read.
bool HoldsImageData(std::string_view reference);

/// Adds the definition that "#identifier" names to a group, which any other reference leaves alone.
/// @return the definition, owned by the group; null when there is none
ORVPrtGraphicPrimitiveElt* AddReferencedDefinition(const SvgDrawState& state, std::string_view reference,
                                                   ORVPrtGroupElt& group);
