// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

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

/// An attribute of an element; valid as long as its tree.
struct ORVXmlAttribute {
    std::string_view name;   ///< as written, with its prefix
    std::string_view value;  ///< normalised, entities resolved
};

/// Where the text of an attribute lies: in the document's own bytes, or among the other texts of its tree.
struct ORVXmlTextPlace {
    static constexpr std::uint32_t kOther = 0xFFFFFFFFU;   ///< a length: the text is one of the others
    static constexpr std::uint32_t kShared = 0xFFFFFFFEU;  ///< a length: several elements share the text

    std::uint32_t start = 0;   ///< offset in the document, or index of the other text
    std::uint32_t length = 0;  ///< bytes; kOther for another text, kShared for one of several elements

    /// Whether the text lies in the document's own bytes.
    bool IsInDocument() const { return length < kShared; }
};

/// How often the values of a document's attributes are read.
enum class ORVXmlReading : std::uint8_t {
    kAny,
    kOnceInKeptSource,  ///< nodes and values are given up as they are read; the document's own bytes stay
    kOnce               ///< the bytes of the document go with them
};

class ORVXmlNodeStore;

/// The texts of a tree, as its nodes refer to them. Half the size of views, which large documents feel.
struct ORVXmlTexts {
    const char* document = nullptr;               ///< the document's bytes; null when they do not stay
    std::vector<std::string_view> others;         ///< what lies elsewhere
    ORVXmlReading reading = ORVXmlReading::kAny;  ///< how often the texts are going to be read
    ORVXmlNodeStore* readOnce = nullptr;          ///< of nodes that are read once; else null

    /// The text at a place.
    std::string_view Get(ORVXmlTextPlace place) const {
        if (place.IsInDocument()) return {document + place.start, place.length};
        return others[place.start];
    }
    /// Gives the memory of a text back that is read once and has been; what several elements share stays.
    void Forget(ORVXmlTextPlace place) const;
};

/// A node of a document. Nodes and all they point to belong to an ORVXmlTree, never change and live as long
/// as the tree does; but where the document is read once, values that are forgotten are lost, and nodes that
/// an ORVXmlChildWalk has left behind.
struct ORVXmlNode {
    /// What a node is.
    enum class Kind : std::uint8_t { kElement, kText, kComment };

    const ORVXmlNode* firstChild = nullptr;   ///< null for none
    const ORVXmlNode* nextSibling = nullptr;  ///< null for none
    /// The values of the known attributes, in the order of their numbers; behind them the other attributes
    /// in document order, each as its name and its value.
    const ORVXmlTextPlace* attributeTexts = nullptr;
    const ORVXmlTexts* texts = nullptr;  ///< where these lie
    std::uint64_t known = 0;             ///< one bit per orvprint::AttributeName that is present
    ORVXmlTextPlace namePlace;           ///< of an element whose name is not known
    ORVXmlTextPlace textPlace;           ///< of the node's own character data
    std::uint32_t attributeCount = 0;    ///< known ones and others
    orvprint::ElementName id = orvprint::ElementName::kUnknown;  ///< the name, as a number
    Kind kind = Kind::kElement;                                  ///< what the node is

    /// Whether the node is an element.
    bool IsElement() const { return kind == Kind::kElement; }

    /// Tag as written; "#text" or "#comment" for a node that is no element.
    ORV_PLATFORM_EXPORT std::string_view GetName() const;
    /// An element's own character data and CDATA sections, joined; the data of a text or comment.
    std::string_view GetText() const { return texts ? texts->Get(textPlace) : std::string_view(); }

    /// Whether the attribute is present.
    bool Has(orvprint::AttributeName attribute) const {
        return ((known >> static_cast<unsigned>(attribute)) & 1U) != 0;
    }

    /// Value of an attribute; empty when it is absent.
    std::string_view Value(orvprint::AttributeName attribute) const {
        return Has(attribute) ? texts->Get(PlaceOf(attribute)) : std::string_view();
    }

    /// Tells that the value of an attribute has been read. Where the document is read once, a long one gives
    /// its memory back, and holds nothing that can be counted on from now on.
    ORV_PLATFORM_EXPORT void Forget(orvprint::AttributeName attribute) const;

    /// The value of the attribute of that name, known or not; nothing when it is absent.
    ORV_PLATFORM_EXPORT std::optional<std::string_view> Find(std::string_view attributeName) const;
    /// One of the attributes by its place, from 0 to `attributeCount` - 1: the known ones come first.
    ORV_PLATFORM_EXPORT ORVXmlAttribute GetAttribute(std::uint32_t index) const;

private:
    /// Where the value of an attribute lies that is present.
    ORVXmlTextPlace PlaceOf(orvprint::AttributeName attribute) const {
        const std::uint64_t before = known & ((std::uint64_t{1} << static_cast<unsigned>(attribute)) - 1);
        return attributeTexts[ORVCountBits(before)];
    }
};
