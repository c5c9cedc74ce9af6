#pragma once

#include <cstdint>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/xml/vocabulary.h"

/// Number of bits that are set. (The standard's function is a call where the processor need not have an
/// instruction for it.)
constexpr unsigned ORVCountBits(std::uint64_t bits) {
    bits -= bits >> 1U & 0x5555555555555555U;
    bits = (bits & 0x3333333333333333U) + (bits >> 2U & 0x3333333333333333U);
    bits = (bits + (bits >> 4U)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<unsigned>(bits * 0x0101010101010101U >> 56U);
}

struct ORVXmlAttribute {
    std::string_view name;   ///< as written, with its prefix
    std::string_view value;  ///< normalised, entities resolved
};

/// A node of a document. Nodes and all they point to belong to an ORVXmlTree, never change and live as long
/// as the tree does.
struct ORVXmlNode {
    std::string_view name;  ///< tag as written; "#text" or "#comment" for a node that is no element
    /// An element's own character data and CDATA sections, joined; the data of a text or comment.
    std::string_view text;
    const ORVXmlNode* firstChild = nullptr;
    const ORVXmlNode* nextSibling = nullptr;
    /// The values of the known attributes, in the order of their numbers; behind them the other attributes
    /// in document order, each as its name and its value.
    const std::string_view* attributeTexts = nullptr;
    std::uint32_t attributeCount = 0;
    ElementName id = ElementName::kUnknown;
    std::uint64_t known = 0;  ///< one bit per AttributeName that is present

    bool IsElement() const { return name.empty() || name.front() != '#'; }

    bool Has(AttributeName attribute) const {
        return ((known >> static_cast<unsigned>(attribute)) & 1U) != 0;
    }

    /// Value of an attribute; empty when it is absent.
    std::string_view Value(AttributeName attribute) const {
        if (!Has(attribute)) return {};
        const std::uint64_t before = known & ((std::uint64_t{1} << static_cast<unsigned>(attribute)) - 1);
        return attributeTexts[ORVCountBits(before)];
    }

    /// The value of the attribute of that name, known or not; null when it is absent.
    ORV_PLATFORM_EXPORT const std::string_view* Find(std::string_view attributeName) const;
    /// One of the attributes by its place, from 0 to `attributeCount` - 1: the known ones come first.
    ORV_PLATFORM_EXPORT ORVXmlAttribute GetAttribute(std::uint32_t index) const;
};
