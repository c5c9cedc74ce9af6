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

/// Handle of a node: element, text or comment. Keeps the document alive; copying increments a reference
/// count. All functions of a null handle return a negative status.
class ORV_PLATFORM_EXPORT ORVIDOMNode_var {
public:
    ORVIDOMNode_var() = default;
    /// @param node  a node of `tree`
    ORVIDOMNode_var(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* node);

    /// Whether the handle holds a node.
    explicit operator bool() const { return node_ != nullptr; }
    /// The node; null for a null handle. Valid as long as the document.
    const ORVXmlNode* GetNode() const { return node_; }
    /// The document; null for a null handle.
    const ORVRef<const ORVXmlTree>& GetTree() const { return tree_; }

    /// Name of the node: the tag of an element as written, "#text" or "#comment".
    /// @return 1, or -1 for a null handle
    int GetNodeName(ORVUnicodeString& name) const;
    /// The first child node, of any kind.
    /// @return 1, or -1 when there is none (`child` is then null)
    int GetFirstChild(ORVIDOMNode_var& child) const;
    /// This node as an element; a null handle when it is not one.
    ORVIDOMElement_var AsElement() const;

private:
    ORVRef<const ORVXmlTree> tree_;
    const ORVXmlNode* node_ = nullptr;
};

/// Handle of an element.
class ORV_PLATFORM_EXPORT ORVIDOMElement_var : public ORVIDOMNode_var {
public:
    ORVIDOMElement_var() = default;
    /// @param element  an element of `tree`, which may come from either parser
    ORVIDOMElement_var(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* element);

    /// Name of the tag as written. @return 1, or -1 for a null handle
    int GetTagName(ORVUnicodeString& name) const { return GetNodeName(name); }
    /// Value of the attribute with exactly that name.
    /// @return 1, or -1 when it is absent (`value` is then unchanged)
    int GetAttribute(std::string_view name, ORVUnicodeString& value) const;
};

/// Parses a document given as decoded text; an encoding declaration in it is ignored.
/// @param kind     kind of document, such as "SVG"; not checked
/// @param element  out: the root element; null when the document is not well formed
/// @param error    out, may be null: the error and its position
/// @param reading  how often attributes will be read; `text` itself is not affected
/// @return 1, or -1 when the document is not well formed
ORV_PLATFORM_EXPORT int BuildParser(const ORVUnicodeString& text, const char* kind,
                                    ORVIDOMElement_var& element, ORVXmlError* error = nullptr,
                                    ORVXmlReading reading = ORVXmlReading::kAny);

/// Parses bytes in their declared encoding into elements, texts and comments.
/// @param element  out: the root element with everything before the first error; null when the error is
/// before the root
/// @return 1, or -1 when the document is not well formed
ORV_PLATFORM_EXPORT int ORVParseXml(const ORVLightXmlInputStreamBuffer& stream, ORVIDOMElement_var& element,
                                    ORVXmlError* error = nullptr);

/// Finds the next sibling, of any kind.
/// @param next  out: the sibling; null when there is none. May be the same object as `node`
/// @param name  out: the sibling's name; unchanged when there is none
/// @return 1, or -1 when there is none
ORV_PLATFORM_EXPORT int GetNextNode(const ORVIDOMNode_var& node, ORVIDOMNode_var& next,
                                    ORVUnicodeString& name);

/// The character data of an element, joined and without that of descendants; the data of a text or comment.
/// @return 1, or -1 when there is none (`value` is then unchanged)
ORV_PLATFORM_EXPORT int GetValue(const ORVIDOMNode_var& node, ORVUnicodeString& value);
