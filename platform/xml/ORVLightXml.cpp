// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVLightXml.h"

#include <new>
#include <utility>

#include "platform/xml/ORVXmlTreeBuilder.h"

namespace {

// The first element among `node` and its following siblings.
const ORVXmlNode* SkipToElement(const ORVXmlNode* node) {
    while (node && !node->IsElement()) node = node->nextSibling;
    return node;
}

}  // namespace

ORVUnicodeString ORVLightXmlElementItf::GetName() const {
    const ORVXmlNode* const node = GetNode();
    return node ? node->GetName() : std::string_view();
}

ORVUnicodeString ORVLightXmlElementItf::GetAttributeValue(std::string_view name) const {
    const ORVXmlNode* const node = GetNode();
    return node ? node->Find(name).value_or(std::string_view()) : std::string_view();
}

ORVUnicodeString ORVLightXmlElementItf::GetValue() const {
    const ORVXmlNode* const node = GetNode();
    return node ? node->GetText() : std::string_view();
}

ORVLightXmlChildHandle ORVLightXmlElementItf::GetChildren() const {
    const ORVXmlNode* const node = GetNode();
    return node ? SkipToElement(node->firstChild) : nullptr;
}

ORVLightXmlElement ORVLightXmlElementItf::GetChild(ORVLightXmlChildHandle& handle) const {
    if (!handle) return {};
    const ORVXmlNode* const child = handle;
    handle = SkipToElement(child->nextSibling);
    return ORVLightXmlElement(GetTree(), child);
}

ORVLightXmlElement::ORVLightXmlElement(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* node)
    : tree_(std::move(tree)), node_(node) {}

int ORVLightXmlElement::Assign(const ORVLightXmlElementItf& other) {
    const ORVXmlNode* const source = other.GetNode();
    if (!source) {
        *this = ORVLightXmlElement();
        return 1;
    }
    try {
        ORVXmlTreeBuilder builder(XmlTreeShape::kElements);
        builder.CopyElement(*source);
        tree_ = builder.Finish();
    } catch (const std::bad_alloc&) {
        return 0;
    }
    node_ = tree_->GetRoot();
    return 1;
}

int ORVLightXmlParser::Parse(const ORVLightXmlInputStreamBuffer& stream, ORVLightXmlElement& element,
                             std::vector<ORVXmlPlace>* places) {
    ORVRef<const ORVXmlTree> tree;
    const bool wellFormed =
        BuildXmlTree({stream.GetBytes(), stream.StayInPlace(), stream.GetOwner(), stream.GetReading()},
                     XmlEncoding::kDeclared, XmlTreeShape::kElements, tree, error_, places);
    const ORVXmlNode* const root = tree ? tree->GetRoot() : nullptr;
    element = root ? ORVLightXmlElement(std::move(tree), root) : ORVLightXmlElement();
    return wellFormed ? 1 : -1;
}
