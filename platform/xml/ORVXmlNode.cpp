#include "platform/xml/ORVXmlNode.h"

const ORVXmlAttribute* ORVXmlNode::Find(std::string_view attributeName) const {
    const auto firstUnknown = static_cast<std::uint32_t>(std::popcount(known));
    if (const auto number = FindAttributeName(attributeName)) {
        if (!Has(*number)) return nullptr;
        const std::uint64_t before = known & ((std::uint64_t{1} << static_cast<unsigned>(*number)) - 1);
        return attributes + std::popcount(before);
    }
    for (std::uint32_t i = firstUnknown; i < attributeCount; ++i)
        if (attributes[i].name == attributeName) return attributes + i;
    return nullptr;
}
