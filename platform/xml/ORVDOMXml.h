// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVRef.h"
#include "platform/system/ORVUnicodeString.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlError.h"
#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlTree.h"

class ORVIDOMElement_var;

/// Handle of a document node: element, text or comment. Keeps the document alive; copying costs a
/// reference count. A null handle holds nothing and answers every question with a negative status.
class ORV_PLATFORM_EXPORT ORVIDOMNode_var {
public:
    ORVIDOMNode_var() = default;
    /// @param node  any node of `tree`
    ORVIDOMNode_var(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* node);

    /// Whether the handle holds a node.
    explicit operator bool() const { return node_ != nullptr; }
    /// Valid as long as the document is.
    const ORVXmlNode* GetNode() const { return node_; }
    /// The document; null for a null handle.
    const ORVRef<const ORVXmlTree>& GetTree() const { return tree_; }

    /// Name of the node: an element's tag as written, "#text" or "#comment".
    /// @return 1, or -1 for a null handle
    int GetNodeName(ORVUnicodeString& name) const;
    /// The node's first child of any kind.
    /// @return 1, or -1 when there is none (`child` is then null)
    int GetFirstChild(ORVIDOMNode_var& child) const;
    /// The same node as an element; null when it is none.
    ORVIDOMElement_var AsElement() const;

private:
    ORVRef<const ORVXmlTree> tree_;
    const ORVXmlNode* node_ = nullptr;
};

/// Handle of an element.
class ORV_PLATFORM_EXPORT ORVIDOMElement_var : public ORVIDOMNode_var {
public:
    ORVIDOMElement_var() = default;
    /// @param element  any element of `tree`, whichever parser made it
    ORVIDOMElement_var(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* element);

    /// @return 1, or -1 for a null handle
    int GetTagName(ORVUnicodeString& name) const { return GetNodeName(name); }
    /// Value of the attribute of that exact name.
    /// @return 1, or -1 when it is absent (`value` is then unchanged)
    int GetAttribute(std::string_view name, ORVUnicodeString& value) const;
};

/// Parses a document given as text. Its declared encoding is ignored, for it has been decoded already.
/// @param kind     what the document is, such as "SVG"; any document is taken
/// @param element  out: the root element; null when the document is not well formed
/// @param error    out, if not null: what is wrong with the document and where
/// @param reading  of the document's attributes; `text` stays as it is
/// @return 1, or -1 when the document is not well formed
ORV_PLATFORM_EXPORT int BuildParser(const ORVUnicodeString& text, const char* kind,
                                    ORVIDOMElement_var& element, ORVXmlError* error = nullptr,
                                    ORVXmlReading reading = ORVXmlReading::kAny);

/// Parses bytes, in the encoding that they declare, into elements, texts and comments.
/// @param element  out: the root element with everything up to the first error; null when the document broke
///                 off before its root
/// @return 1, or -1 when the document is not well formed
ORV_PLATFORM_EXPORT int ORVParseXml(const ORVLightXmlInputStreamBuffer& stream, ORVIDOMElement_var& element,
                                    ORVXmlError* error = nullptr);

/// Goes on to the next sibling, of any kind.
/// @param next  out: the sibling; null when there is none. May be `node` itself.
/// @param name  out: its name; unchanged when there is none
/// @return 1, or -1 when there is none
ORV_PLATFORM_EXPORT int GetNextNode(const ORVIDOMNode_var& node, ORVIDOMNode_var& next,
                                    ORVUnicodeString& name);

/// An element's own character data, joined; the data of a text or comment.
/// @return 1, or -1 when there is none (`value` is then unchanged)
ORV_PLATFORM_EXPORT int GetValue(const ORVIDOMNode_var& node, ORVUnicodeString& value);
