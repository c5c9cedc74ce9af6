// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

/// Reads "id" and stores it if the look-up succeeds, even if it is empty.
template <SvgElementAccess Element>
void ReadIdentifier(const Element& element, ORVPrtGraphicPrimitiveElt& primitive) {
    const AttributeValue identifier = element.Attribute(AttributeName::kId);
    // The default identifier is empty, so an empty one need not be stored.
    if (identifier.WasRead() && !(identifier.text.empty() && primitive.GetID().IsEmpty()))
        primitive.SetID(ORVUnicodeString(identifier.text));
}

/// Whether `child` is a "desc" or "title". Its text, unless empty, becomes the description: only pages have
/// titles.
template <SvgElementAccess Element>
bool ReadDescription(const Element& child, ORVPrtGraphicPrimitiveElt& primitive) {
    if (child.Name() != ElementName::kDesc && child.Name() != ElementName::kTitle) return false;
    if (!child.Text().empty()) primitive.SetDescription(ORVUnicodeString(child.Text()));
    return true;
}

/// Reads the description of an element without other children; the last text wins.
template <SvgElementAccess Element>
void ReadDescriptions(const Element& element, ORVPrtGraphicPrimitiveElt& primitive) {
    for (Element child = element.FirstChild(); !child.IsNull(); child = child.NextSibling())
        ReadDescription(child, primitive);
}
