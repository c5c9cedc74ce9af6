// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <string_view>

#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlNodeStore.h"
#include "platform/xml/vocabulary.h"

/// Result of looking up an attribute. The text is valid as long as the document.
struct AttributeValue {
    int status = -1;        ///< negative if the attribute is absent
    std::string_view text;  ///< empty if absent

    /// Whether the look-up succeeded, even with an empty value.
    bool WasRead() const { return status >= 0; }
};

/// An XML element as seen by the handlers; cheap to copy. Known names are numbered when the document is
/// parsed, so testing for an absent attribute takes one bit test. Children are nodes; those that are not
/// elements have no known name. Handlers release long attributes, such as outlines and images, after reading
/// them: these may be most of a document, and its text and model would otherwise both be in memory.
template <class T>
concept SvgElementAccess = std::copyable<T> && requires(const T element, AttributeName name) {
    { element.Name() } -> std::same_as<ElementName>;
    { element.Attribute(name) } -> std::same_as<AttributeValue>;
    { element.Forget(name) } -> std::same_as<void>;
    { element.Text() } -> std::same_as<std::string_view>;
    { element.FirstChild() } -> std::same_as<T>;
    { element.NextSibling() } -> std::same_as<T>;
    { element.IsNull() } -> std::same_as<bool>;
    { element.Node() } -> std::same_as<const ORVXmlNode&>;
};

/// An element of the DOM back-end, where looking up an absent attribute fails.
class DomElementAccess {
public:
    explicit DomElementAccess(const ORVXmlNode* node) : node_(node) {}
    bool IsNull() const { return node_ == nullptr; }
    const ORVXmlNode& Node() const { return *node_; }
    ElementName Name() const { return node_->id; }
    AttributeValue Attribute(AttributeName name) const {
        if (!node_->Has(name)) return {};
        return {1, node_->Value(name)};
    }
    void Forget(AttributeName name) const { node_->Forget(name); }
    std::string_view Text() const { return node_->GetText(); }
    DomElementAccess FirstChild() const { return DomElementAccess(node_->firstChild); }
    DomElementAccess NextSibling() const { return DomElementAccess(node_->nextSibling); }

private:
    const ORVXmlNode* node_;
};

/// An element of the light back-end, where an absent attribute has an empty value.
class LightElementAccess {
public:
    explicit LightElementAccess(const ORVXmlNode* node) : node_(node) {}
    bool IsNull() const { return node_ == nullptr; }
    const ORVXmlNode& Node() const { return *node_; }
    ElementName Name() const { return node_->id; }
    AttributeValue Attribute(AttributeName name) const {
        if (!node_->Has(name)) return {1, {}};
        return {1, node_->Value(name)};
    }
    void Forget(AttributeName name) const { node_->Forget(name); }
    std::string_view Text() const { return node_->GetText(); }
    LightElementAccess FirstChild() const { return LightElementAccess(node_->firstChild); }
    LightElementAccess NextSibling() const { return LightElementAccess(node_->nextSibling); }

private:
    const ORVXmlNode* node_;
};

static_assert(SvgElementAccess<DomElementAccess> && SvgElementAccess<LightElementAccess>);
