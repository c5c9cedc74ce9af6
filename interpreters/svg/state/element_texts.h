// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

/// Reads "id": stored whenever the look-up works, also when it is empty.
template <SvgElementAccess Element>
void ReadIdentifier(const Element& element, ORVPrtGraphicPrimitiveElt& primitive) {
    const AttributeValue identifier = element.Attribute(AttributeName::kId);
    // An identifier that was never set reads as empty: storing an empty one needs no work.
    if (identifier.WasRead() && !(identifier.text.empty() && primitive.GetID().IsEmpty()))
        primitive.SetID(ORVUnicodeString(identifier.text));
}

/// True when `child` is a "desc" or "title". Its text, when there is any, becomes the description: only
/// pages keep titles.
template <SvgElementAccess Element>
bool ReadDescription(const Element& child, ORVPrtGraphicPrimitiveElt& primitive) {
    if (child.Name() != ElementName::kDesc && child.Name() != ElementName::kTitle) return false;
    if (!child.Text().empty()) primitive.SetDescription(ORVUnicodeString(child.Text()));
    return true;
}

/// The description of an element that has no other children; the last text wins.
template <SvgElementAccess Element>
void ReadDescriptions(const Element& element, ORVPrtGraphicPrimitiveElt& primitive) {
    for (Element child = element.FirstChild(); !child.IsNull(); child = child.NextSibling())
        ReadDescription(child, primitive);
}
