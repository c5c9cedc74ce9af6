// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVDOMXml.h"

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "platform/xml/ORVXmlTreeBuilder.h"

namespace {

constexpr int kFound = 1;
constexpr int kNone = -1;

}  // namespace

ORVIDOMNode_var::ORVIDOMNode_var(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* node)
    : tree_(std::move(tree)), node_(node) {}

int ORVIDOMNode_var::GetNodeName(ORVUnicodeString& name) const {
    if (!node_) return kNone;
    name = node_->GetName();
    return kFound;
}

int ORVIDOMNode_var::GetFirstChild(ORVIDOMNode_var& child) const {
    const ORVXmlNode* const first = node_ ? node_->firstChild : nullptr;
    child = first ? ORVIDOMNode_var(tree_, first) : ORVIDOMNode_var();
    return first ? kFound : kNone;
}

ORVIDOMElement_var ORVIDOMNode_var::AsElement() const {
    return node_ && node_->IsElement() ? ORVIDOMElement_var(tree_, node_) : ORVIDOMElement_var();
}

ORVIDOMElement_var::ORVIDOMElement_var(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* element)
    : ORVIDOMNode_var(std::move(tree), element) {}

int ORVIDOMElement_var::GetAttribute(std::string_view name, ORVUnicodeString& value) const {
    const auto attribute = GetNode() ? GetNode()->Find(name) : std::nullopt;
    if (!attribute) return kNone;
    value = *attribute;
    return kFound;
}

int BuildParser(const ORVUnicodeString& text, const char* /*kind*/, ORVIDOMElement_var& element,
                ORVXmlError* error, ORVXmlReading reading) {
    element = ORVIDOMElement_var();
    ORVRef<const ORVXmlTree> tree;
    ORVXmlError ownError;
    ORVXmlError& reported = error ? *error : ownError;
    try {
        // The tree refers to this copy of the text and keeps it alive.
        const auto copy = std::make_shared<const std::string>(text.GetView());
        const XmlSource source{*copy, true, copy, reading};
        if (!BuildXmlTree(source, XmlEncoding::kUtf8, XmlTreeShape::kAllNodes, tree, reported)) return kNone;
    } catch (const std::bad_alloc&) {
        reported = ORVXmlError::OutOfMemory();
        return kNone;
    }
    const ORVXmlNode* const root = tree->GetRoot();
    element = ORVIDOMElement_var(std::move(tree), root);
    return kFound;
}

int ORVParseXml(const ORVLightXmlInputStreamBuffer& stream, ORVIDOMElement_var& element, ORVXmlError* error) {
    element = ORVIDOMElement_var();
    ORVRef<const ORVXmlTree> tree;
    ORVXmlError ownError;
    const XmlSource source{stream.GetBytes(), stream.StayInPlace(), stream.GetOwner(), stream.GetReading()};
    const bool isWellFormed = BuildXmlTree(source, XmlEncoding::kDeclared, XmlTreeShape::kAllNodes, tree,
                                           error ? *error : ownError);
    const ORVXmlNode* const root = tree ? tree->GetRoot() : nullptr;
    if (root) element = ORVIDOMElement_var(std::move(tree), root);
    return isWellFormed && root ? kFound : kNone;
}

int GetNextNode(const ORVIDOMNode_var& node, ORVIDOMNode_var& next, ORVUnicodeString& name) {
    const ORVXmlNode* const sibling = node.GetNode() ? node.GetNode()->nextSibling : nullptr;
    if (!sibling) {
        next = ORVIDOMNode_var();
        return kNone;
    }
    next = ORVIDOMNode_var(node.GetTree(), sibling);
    name = sibling->GetName();
    return kFound;
}

int GetValue(const ORVIDOMNode_var& node, ORVUnicodeString& value) {
    if (!node || node.GetNode()->GetText().empty()) return kNone;
    value = node.GetNode()->GetText();
    return kFound;
}
