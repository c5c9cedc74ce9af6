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

/// Index of an element in document order; 0 is the root.
using ElementIndex = std::uint32_t;
inline constexpr ElementIndex kNoElement = std::numeric_limits<ElementIndex>::max();

/// An SVG element and its neighbours in the tree. Elements of other namespaces and their descendants are not
/// part of a document, except for pages of editors.
struct Element {
    const ORVXmlNode* node = nullptr;
    ElementIndex parent = kNoElement, firstChild = kNoElement;
    ElementIndex nextSibling = kNoElement, previousSibling = kNoElement;
    std::uint32_t position = 1;    ///< among its siblings, from 1
    std::uint32_t childCount = 0;  ///< number of child elements
    Tag tag = Tag::kUnknown;
    /// Length of its attributes and text, excluding references, in units of kPayloadUnit bytes.
    std::uint16_t payload = 0;
};

/// The SVG elements of a drawing, built over an XML tree whose lifetime it shares. Immutable after
/// construction except for the outer style sheets. Elements are matched by namespace, not by prefix; if the
/// root has no namespace, names without one are SVG names.
class Document {
public:
    /// @param root  an element of `tree`; need not be an SVG element
    Document(ORVRef<const ORVXmlTree> tree, const ORVXmlNode& root);

    /// False if the root is not an "svg" element of the SVG namespace; the document then has no elements.
    bool IsSvg() const { return !elements_.empty(); }
    static constexpr ElementIndex kRoot = 0;
    std::size_t GetCount() const { return elements_.size(); }
    /// Sum of the elements' payloads.
    std::uint64_t GetPayload() const { return payload_; }
    const Element& operator[](ElementIndex index) const { return elements_[index]; }

    /// Value of an attribute; empty optional if absent. A plain "href" takes precedence over the XLink one.
    std::optional<std::string_view> Find(ElementIndex element, Name name) const;
    /// Like Find(), but an empty string if absent.
    std::string_view ValueOf(ElementIndex element, Name name) const {
        return Find(element, name).value_or(std::string_view());
    }
    /// The language of an element, by its "lang" attributes or those of its ancestors; empty if unknown.
    std::string_view LanguageOf(ElementIndex element) const;
    /// Whether the document declares the namespace of an editor and so may have pages and layers.
    bool HasEditorNames() const { return !editorPrefixes_.empty(); }
    /// Calls `use(Name, value)` for each property specified by the element's attributes, in unspecified
    /// order.
    template <class Use>
    void ForEachProperty(ElementIndex element, Use use) const;

    /// The first element with an identifier; kNoElement if there is none.
    ElementIndex FindById(std::string_view id) const;
    /// The target of a reference such as "#id"; kNoElement if it is not an element of this document.
    ElementIndex FindByReference(std::string_view reference) const;
    /// Whether `ancestor` is the element itself or one of its ancestors.
    bool IsWithin(ElementIndex element, ElementIndex ancestor) const;

    /// Sets the external style sheets, which precede the document's own.
    void SetOuterSheets(std::vector<OuterSheet> sheets) { outerSheets_ = std::move(sheets); }
    const std::vector<OuterSheet>& GetOuterSheets() const { return outerSheets_; }

    /// All elements with a tag, in document order.
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
