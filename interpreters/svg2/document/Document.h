// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "interpreters/svg2/document/names.h"
#include "interpreters/svg2/document/sheet_links.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlTree.h"

namespace svg2 {

/// Place of an element in its document, in document order from 0, the root.
using ElementIndex = std::uint32_t;
inline constexpr ElementIndex kNoElement = std::numeric_limits<ElementIndex>::max();

/// An element of SVG with what lies around it. Elements of other namespaces, and what lies below them, are
/// not among the elements of a document; pages of editors are.
struct Element {
    const ORVXmlNode* node = nullptr;
    ElementIndex parent = kNoElement, firstChild = kNoElement;
    ElementIndex nextSibling = kNoElement, previousSibling = kNoElement;
    std::uint32_t position = 1;    ///< among the children of its parent, from 1
    std::uint32_t childCount = 0;  ///< elements that are its children
    Tag tag = Tag::kUnknown;
    std::uint16_t payload =
        0;  ///< length of its attributes and text, references apart, in kPayloadUnit bytes
};

/// The elements of a drawing, over the tree that the XML parser made, which it keeps. Nothing changes once
/// it stands. Namespaces count, not prefixes; where the root has no namespace, names without one are SVG's.
class Document {
public:
    /// @param root  an element of `tree`, SVG's or not
    Document(ORVRef<const ORVXmlTree> tree, const ORVXmlNode& root);

    /// False when the root is no "svg" of SVG's namespace: there are no elements then.
    bool IsSvg() const { return !elements_.empty(); }
    static constexpr ElementIndex kRoot = 0;
    std::size_t GetCount() const { return elements_.size(); }
    /// The sum of the elements' payloads.
    std::uint64_t GetPayload() const { return payload_; }
    const Element& operator[](ElementIndex index) const { return elements_[index]; }

    /// Value of an attribute; nothing when it is absent. Of "href", the plain one wins over that of XLink.
    std::optional<std::string_view> Find(ElementIndex element, Name name) const;
    /// The same, empty when it is absent.
    std::string_view ValueOf(ElementIndex element, Name name) const {
        return Find(element, name).value_or(std::string_view());
    }
    /// Whether the document declares the namespace of an editor, so that it may have pages and layers.
    bool HasEditorNames() const { return !editorPrefixes_.empty(); }
    /// Calls `use(Name, value)` for each property that the element's attributes state, in no certain order.
    template <class Use>
    void ForEachProperty(ElementIndex element, Use use) const;

    /// The first element of an identifier; kNoElement when there is none.
    ElementIndex FindById(std::string_view id) const;
    /// What a reference such as "#id" leads to; kNoElement when that is no element of this document.
    ElementIndex FindByReference(std::string_view reference) const;
    /// True when `ancestor` is the element or holds it.
    bool IsWithin(ElementIndex element, ElementIndex ancestor) const;

    /// Gives it style sheets that stand outside of it; they come before its own.
    void SetOuterSheets(std::vector<OuterSheet> sheets) { outerSheets_ = std::move(sheets); }
    const std::vector<OuterSheet>& GetOuterSheets() const { return outerSheets_; }

    /// Elements of a tag, in document order.
    std::vector<ElementIndex> FindAll(Tag tag) const;

private:
    class Builder;
    static const std::optional<Name>* NamesOfKnown();

    ORVRef<const ORVXmlTree> tree_;
    std::vector<Element> elements_;
    std::uint64_t payload_ = 0;
    std::unordered_map<std::string_view, ElementIndex> ids_;
    std::unordered_set<std::string_view> xlinkPrefixes_, editorPrefixes_;
    std::vector<OuterSheet> outerSheets_;
};

template <class Use>
void Document::ForEachProperty(ElementIndex element, Use use) const {
    const ORVXmlNode& node = *elements_[element].node;
    const std::optional<Name>* known = NamesOfKnown();
    for (std::uint64_t bits = node.known; bits != 0; bits &= bits - 1) {
        const auto attribute = static_cast<AttributeName>(ORVCountBits((bits & (~bits + 1)) - 1));
        const std::optional<Name>& name = known[static_cast<std::size_t>(attribute)];
        if (name && IsPresentationAttribute(*name)) use(*name, node.Value(attribute));
    }
    for (std::uint32_t i = ORVCountBits(node.known); i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        const std::optional<Name> name = FindName(attribute.name);
        if (name && IsPresentationAttribute(*name)) use(*name, attribute.value);
    }
}

}  // namespace svg2
