#include "platform/xml/ORVXmlNode.h"

#include <bit>

const std::string_view* ORVXmlNode::Find(std::string_view attributeName) const {
    const auto knownCount = ORVCountBits(known);
    if (const auto number = FindAttributeName(attributeName)) {
        if (!Has(*number)) return nullptr;
        const std::uint64_t before = known & ((std::uint64_t{1} << static_cast<unsigned>(*number)) - 1);
        return attributeTexts + ORVCountBits(before);
    }
    const std::string_view* other = attributeTexts + knownCount;
    for (std::uint32_t i = knownCount; i < attributeCount; ++i, other += 2)
        if (other[0] == attributeName) return other + 1;
    return nullptr;
}

ORVXmlAttribute ORVXmlNode::GetAttribute(std::uint32_t index) const {
    const auto knownCount = ORVCountBits(known);
    if (index >= knownCount) {
        const std::string_view* const other = attributeTexts + knownCount + 2 * (index - knownCount);
        return {other[0], other[1]};
    }
    std::uint64_t rest = known;
    for (std::uint32_t i = 0; i < index; ++i) rest &= rest - 1;
    return {GetNameText(static_cast<AttributeName>(std::countr_zero(rest))), attributeTexts[index]};
}
