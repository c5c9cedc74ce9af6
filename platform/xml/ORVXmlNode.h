// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/xml/vocabulary.h"

/// Number of set bits. (std::popcount is a function call unless the target is known to have an instruction
/// for it.)
constexpr unsigned ORVCountBits(std::uint64_t bits) {
    bits -= bits >> 1U & 0x5555555555555555U;
    bits = (bits & 0x3333333333333333U) + (bits >> 2U & 0x3333333333333333U);
    bits = (bits + (bits >> 4U)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<unsigned>(bits * 0x0101010101010101U >> 56U);
}

/// An attribute of an element; valid as long as its tree.
struct ORVXmlAttribute {
    std::string_view name;   ///< as written, including a prefix
    std::string_view value;  ///< normalised, with entities resolved
};

/// Location of a text: in the document's bytes, or among the other texts of its tree.
struct ORVXmlTextPlace {
    static constexpr std::uint32_t kOther = 0xFFFFFFFFU;   ///< value of `length`: one of the other texts
    static constexpr std::uint32_t kShared = 0xFFFFFFFEU;  ///< value of `length`: one of the other texts,
                                                           ///< shared by several elements

    std::uint32_t start = 0;   ///< offset in the document, or index of the other text
    std::uint32_t length = 0;  ///< in bytes; or kOther or kShared

    /// Whether the text is in the document's bytes.
    bool IsInDocument() const { return length < kShared; }
};

/// How often the attribute values of a document will be read.
enum class ORVXmlReading : std::uint8_t {
    kAny,
    kOnceInKeptSource,  ///< nodes and values may be freed after they have been read; the document's bytes are
                        ///< kept
    kOnce               ///< the document's bytes may be freed, too
};

class ORVXmlNodeStore;

/// The texts of a tree. Nodes refer to them by ORVXmlTextPlace, which is half the size of a string_view.
struct ORVXmlTexts {
    const char* document = nullptr;               ///< the document's bytes; null when they are not kept
    std::vector<std::string_view> others;         ///< texts that are not in the document's bytes
    ORVXmlReading reading = ORVXmlReading::kAny;  ///< how often the texts will be read
    ORVXmlNodeStore* readOnce = nullptr;          ///< the store, if nodes are read only once; else null

    /// The text at a location.
    std::string_view Get(ORVXmlTextPlace place) const {
        if (place.IsInDocument()) return {document + place.start, place.length};
        return others[place.start];
    }
    /// Frees the memory of a text that is read only once and has been read; shared texts are kept.
    void Forget(ORVXmlTextPlace place) const;
};

/// A node of a document. Nodes and everything they point to belong to an ORVXmlTree, are immutable and live
/// as long as the tree. Exception: with ORVXmlReading::kOnce or kOnceInKeptSource, values passed to Forget
/// and nodes that an ORVXmlChildWalk has passed are lost.
struct ORVXmlNode {
    /// Kind of node.
    enum class Kind : std::uint8_t { kElement, kText, kComment };

    const ORVXmlNode* firstChild = nullptr;   ///< null for none
    const ORVXmlNode* nextSibling = nullptr;  ///< null for none
    /// The values of the known attributes, in order of AttributeName, followed by the other attributes in
    /// document order, each as name and value.
    const ORVXmlTextPlace* attributeTexts = nullptr;
    const ORVXmlTexts* texts = nullptr;  ///< the texts that the node refers to
    std::uint64_t known = 0;             ///< bit set of orvprint::AttributeName values that are present
    ORVXmlTextPlace namePlace;           ///< name of an element whose name is not known
    ORVXmlTextPlace textPlace;           ///< the node's own character data
    std::uint32_t attributeCount = 0;    ///< known and other attributes
    orvprint::ElementName id = orvprint::ElementName::kUnknown;  ///< name of the element; kUnknown for other
                                                                 ///< names
    Kind kind = Kind::kElement;                                  ///< kind of node

    /// Whether the node is an element.
    bool IsElement() const { return kind == Kind::kElement; }

    /// Tag as written; "#text" or "#comment" for other nodes.
    ORV_PLATFORM_EXPORT std::string_view GetName() const;
    /// Character data and CDATA sections of an element, joined; the data of a text or comment.
    std::string_view GetText() const { return texts ? texts->Get(textPlace) : std::string_view(); }

    /// Whether the attribute is present.
    bool Has(orvprint::AttributeName attribute) const {
        return ((known >> static_cast<unsigned>(attribute)) & 1U) != 0;
    }

    /// Value of an attribute; empty when it is absent.
    std::string_view Value(orvprint::AttributeName attribute) const {
        return Has(attribute) ? texts->Get(PlaceOf(attribute)) : std::string_view();
    }

    /// Declares that the value of an attribute has been read. If the document is read only once, the memory
    /// of a long value is freed and the value must not be used any more.
    ORV_PLATFORM_EXPORT void Forget(orvprint::AttributeName attribute) const;

    /// Value of the attribute with that name, known or not; nullopt when it is absent.
    ORV_PLATFORM_EXPORT std::optional<std::string_view> Find(std::string_view attributeName) const;
    /// An attribute by its index, from 0 to `attributeCount` - 1. Known attributes come first.
    ORV_PLATFORM_EXPORT ORVXmlAttribute GetAttribute(std::uint32_t index) const;

private:
    /// Location of the value of an attribute, which must be present.
    ORVXmlTextPlace PlaceOf(orvprint::AttributeName attribute) const {
        const std::uint64_t before = known & ((std::uint64_t{1} << static_cast<unsigned>(attribute)) - 1);
        return attributeTexts[ORVCountBits(before)];
    }
};
