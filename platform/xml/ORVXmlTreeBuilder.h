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

/// Which nodes a tree keeps.
enum class XmlTreeShape {
    kElements,  ///< elements only
    kAllNodes   ///< elements, texts and comments, also those beside the root
};

/// A document's bytes, and how long they stay.
struct XmlSource {
    std::string_view bytes;
    /// True when the bytes outlive every tree that is made of them; trees then refer to them.
    bool staysInPlace = false;
    /// What keeps them in place as long as a tree needs them; null when the caller does.
    std::shared_ptr<const void> owner;
    ORVXmlReading reading = ORVXmlReading::kAny;
};

/// Builds a tree from events. Throws std::bad_alloc.
class ORVXmlTreeBuilder final : public XmlEventSink {
public:
    /// @param places  if not null, gets the place of every element, in document order
    explicit ORVXmlTreeBuilder(XmlTreeShape shape, ORVXmlReading reading = ORVXmlReading::kAny,
                               std::vector<ORVXmlPlace>* places = nullptr);
    /// For events whose views may lie in the source.
    ORVXmlTreeBuilder(XmlTreeShape shape, const XmlSource& source,
                      std::vector<ORVXmlPlace>* places = nullptr);

    void StartElement(const XmlStartTag& tag) override;
    void EndElement() override;
    void Text(std::string_view piece) override;
    void Comment(std::string_view data) override;

    /// Closes what is still open, so that a document that breaks off leaves what was read of it, and hands
    /// the tree over. The builder cannot be used again.
    ORVRef<const ORVXmlTree> Finish();

    /// Adds a copy of an element and of the elements below it.
    void CopyElement(const ORVXmlNode& source);

private:
    // An element whose end has not come yet, or the document itself.
    struct Level {
        ORVXmlNode* node = nullptr;  // null for the document
        ORVXmlNode* lastChild = nullptr;
        std::string text;           // the element's own text so far
        ORVXmlTextPlace firstText;  // its first text node, while that is all its text
    };

    struct KeptAttribute {
        ORVXmlTextPlace name, value;
    };

    /// Whether an element that begins now lies in an "svg" element.
    bool IsInDrawing() const;
    /// @param places  of texts that its attributes have
    ORVXmlNode& AppendNode(std::size_t places = 0);
    /// Texts of an attribute that live as long as the tree.
    /// @param isWritten  false when the document type supplied it
    KeptAttribute Keep(const ORVXmlAttribute& attribute, bool isKnown, bool isWritten);
    void AppendDataNode(ORVXmlNode::Kind kind, ORVXmlTextPlace data);
    void FlushText();
    void CloseLevel();

    const XmlTreeShape shape_;
    std::vector<ORVXmlPlace>* const places_;
    ORVRef<ORVXmlTree> tree_;
    std::vector<Level> levels_;  // used up to depth_; the rest keeps its storage for the next elements
    std::size_t depth_ = 0;
    std::string run_;                                          // the text node that is being read
    std::unordered_map<const char*, KeptAttribute> supplied_;  // of the document type, by address
};

/// Reads a document into a tree. Nothing is thrown.
/// @param tree   out: the document, or what was read of it before the error; null only when out of memory
/// @param error  out: what is wrong with the document; its message is empty when it is well formed
/// @param places  out, if not null: the place of every element, in document order
/// @return true when the document is well formed
[[nodiscard]] bool BuildXmlTree(const XmlSource& source, XmlEncoding encoding, XmlTreeShape shape,
                                ORVRef<const ORVXmlTree>& tree, ORVXmlError& error,
                                std::vector<ORVXmlPlace>* places = nullptr);
