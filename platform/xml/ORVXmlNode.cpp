// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlNode.h"

#include <bit>

#include "platform/system/released_pages.h"

void ORVXmlTexts::Forget(ORVXmlTextPlace place) const {
    if (reading == ORVXmlReading::kAny || place.length == ORVXmlTextPlace::kShared) return;
    if (place.IsInDocument() && reading == ORVXmlReading::kOnceInKeptSource) return;
    const std::string_view text = Get(place);
    ORVReleasePages(text.data(), text.size());
}

std::string_view ORVXmlNode::GetName() const {
    switch (kind) {
        case Kind::kText: return "#text";
        case Kind::kComment: return "#comment";
        case Kind::kElement: break;
    }
    if (id != ElementName::kUnknown) return GetNameText(id);
    return texts ? texts->Get(namePlace) : std::string_view();
}

void ORVXmlNode::Forget(AttributeName attribute) const {
    if (Has(attribute)) texts->Forget(PlaceOf(attribute));
}

std::optional<std::string_view> ORVXmlNode::Find(std::string_view attributeName) const {
    if (const auto number = FindAttributeName(attributeName)) {
        if (!Has(*number)) return std::nullopt;
        return Value(*number);
    }
    const std::uint32_t knownCount = ORVCountBits(known);
    const ORVXmlTextPlace* other = attributeTexts + knownCount;
    for (std::uint32_t i = knownCount; i < attributeCount; ++i, other += 2)
        if (texts->Get(other[0]) == attributeName) return texts->Get(other[1]);
    return std::nullopt;
}

ORVXmlAttribute ORVXmlNode::GetAttribute(std::uint32_t index) const {
    const std::uint32_t knownCount = ORVCountBits(known);
    if (index >= knownCount) {
        const ORVXmlTextPlace* const other =
            attributeTexts + knownCount + std::size_t{2} * (index - knownCount);
        return {texts->Get(other[0]), texts->Get(other[1])};
    }
    std::uint64_t rest = known;
    for (std::uint32_t i = 0; i < index; ++i) rest &= rest - 1;
    return {GetNameText(static_cast<AttributeName>(std::countr_zero(rest))),
            texts->Get(attributeTexts[index])};
}
