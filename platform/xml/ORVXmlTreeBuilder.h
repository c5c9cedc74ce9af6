// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/xml/ORVXmlTree.h"
#include "platform/xml/xml_events.h"
#include "platform/xml/xml_reader.h"

/// Which nodes a tree contains.
enum class XmlTreeShape {
    kElements,  ///< elements only
    kAllNodes   ///< elements, texts and comments, including those outside the root
};

/// A document's bytes and their lifetime.
struct XmlSource {
    std::string_view bytes;
    /// True when the bytes outlive every tree made from them, so that trees may refer to them.
    bool staysInPlace = false;
    /// Owner of the bytes, shared by the trees; null when the caller keeps them valid.
    std::shared_ptr<const void> owner;
    ORVXmlReading reading = ORVXmlReading::kAny;
};

/// Builds a tree from parser events. Functions throw std::bad_alloc.
class ORVXmlTreeBuilder final : public XmlEventSink {
public:
    /// @param places  may be null; receives the position of every element, in document order
    explicit ORVXmlTreeBuilder(XmlTreeShape shape, ORVXmlReading reading = ORVXmlReading::kAny,
                               std::vector<ORVXmlPlace>* places = nullptr);
    /// For events whose views may point into the source.
    ORVXmlTreeBuilder(XmlTreeShape shape, const XmlSource& source);

    void StartElement(const XmlStartTag& tag) override;
    void EndElement() override;
    void Text(std::string_view piece) override;
    void Comment(std::string_view data) override;

    /// Closes all open elements, so that a document with an error yields what was read before it, and returns
    /// the tree. The builder cannot be used again.
    ORVRef<const ORVXmlTree> Finish();

    /// Appends a copy of an element and its descendant elements.
    void CopyElement(const ORVXmlNode& source);

private:
    // An open element, or the document itself.
    struct Level {
        ORVXmlNode* node = nullptr;  // null for the document
        ORVXmlNode* lastChild = nullptr;
        std::string text;           // the element's own text so far
        ORVXmlTextPlace firstText;  // its first text node, as long as it is the only one
    };

    struct KeptAttribute {
        ORVXmlTextPlace name, value;
    };

    /// Whether an element that starts now is inside an "svg" element.
    bool IsInDrawing() const;
    /// @param places  number of text locations needed for its attributes
    ORVXmlNode& AppendNode(std::size_t places = 0);
    /// Returns the attribute with texts that live as long as the tree.
    /// @param isWritten  false when the document type supplied it
    KeptAttribute Keep(const ORVXmlAttribute& attribute, bool isKnown, bool isWritten);
    void AppendDataNode(ORVXmlNode::Kind kind, ORVXmlTextPlace data);
    void FlushText();
    void CloseLevel();

    const XmlTreeShape shape_;
    std::vector<ORVXmlPlace>* const places_;
    ORVRef<ORVXmlTree> tree_;
    std::vector<Level> levels_;  // used up to depth_; the others keep their memory for reuse
    std::size_t depth_ = 0;
    std::string run_;                                          // text node being read
    std::unordered_map<const char*, KeptAttribute> supplied_;  // values from the document type, by address
};

/// Reads a document into a tree. Throws nothing.
/// @param tree   out: the document, or what was read before the error; null only when out of memory
/// @param error  out: the error; its message is empty when the document is well formed
/// @param places  out, may be null: the position of every element, in document order
/// @return true when the document is well formed
[[nodiscard]] bool BuildXmlTree(const XmlSource& source, XmlEncoding encoding, XmlTreeShape shape,
                                ORVRef<const ORVXmlTree>& tree, ORVXmlError& error,
                                std::vector<ORVXmlPlace>* places = nullptr);
