// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtBitmapImageElt;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;
class ORVUnicodeString;

/// Fills in a bitmap primitive from an "image" element. If its reference yields no pixels, it stays in the
/// model with its origin and size.
/// @param state  a copy, so that the element's own style does not affect its siblings
/// @return kDone, or kUnusable if `bitmap` is null
template <SvgElementAccess Element>
int HandleImage(SvgDrawState state, const Element& element, ORVPrtBitmapImageElt* bitmap,
                ORVPrtGraphicPrimitiveElt& container);

/// Loads the pixels of a reference: a file, at the path as given or in the document's folder, as far as the
/// access policy allows, or a base64 data URI of a PNG, JPEG or BMP. Leaves the primitive unchanged if there
/// are none.
/// @return false if memory ran out, in which case the image may be valid
bool LoadPixelImage(const SvgDrawState& state, std::string_view reference, ORVPrtBitmapImageElt& bitmap);

/// Finds the file of a reference, at the path as given or in the document's folder, as far as the access
/// policy allows.
/// @return false if there is none
bool FindImageFile(const SvgDrawState& state, std::string_view reference, ORVUnicodeString& path);

/// Whether a reference is a data URI in a supported image format.
bool HoldsImageData(std::string_view reference);

/// Adds the definition of a reference "#identifier" to a group. Other references have no effect.
/// @return the definition, owned by the group; null if there is none
ORVPrtGraphicPrimitiveElt* AddReferencedDefinition(const SvgDrawState& state, std::string_view reference,
                                                   ORVPrtGroupElt& group);
