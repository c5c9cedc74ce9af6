// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/xml/ORVXmlNode.h"

/// A parsed document. Owns its nodes, attributes and texts. Reference counted (not atomic), to be held by
/// ORVRef; a new tree has one reference.
class ORV_PLATFORM_EXPORT ORVXmlTree {
public:
    ORVXmlTree();
    ORVXmlTree(const ORVXmlTree&) = delete;
    ORVXmlTree& operator=(const ORVXmlTree&) = delete;

    /// Adds a reference.
    void AddRef() const { ++references_; }
    /// Releases a reference; the last one destroys the tree.
    void Release() const;

    /// First node of the document: the root element, or a comment before it if the tree keeps comments.
    const ORVXmlNode* GetFirstNode() const { return firstNode_; }
    /// The root element; null when parsing stopped before it.
    const ORVXmlNode* GetRoot() const { return root_; }
    /// The document's bytes if the tree keeps them, else empty.
    std::string_view GetSource() const { return stable_; }
    /// Bits of the elements inside drawings whose names are not in the vocabulary; see unread_elements.h.
    /// Drawings nested more than three levels deep in another document are not examined.
    std::uint32_t GetUnreadElements() const { return unreadElements_; }
    /// Bytes currently allocated for nodes, attributes and texts.
    std::size_t GetMemoryInUse() const;

private:
    friend class ORVXmlTreeBuilder;

    ~ORVXmlTree();

    /// Allocates memory, for everything except nodes, that lives as long as the tree. Throws std::bad_alloc.
    void* Allocate(std::size_t size, std::size_t alignment);
    /// True for a text in the document's bytes, which outlive the tree.
    bool IsStable(std::string_view text) const {
        return std::less_equal<>()(stable_.data(), text.data()) &&
               std::less<>()(text.data(), stable_.data() + stable_.size());
    }
    /// Returns a text that lives as long as the tree: `text` itself if it is in document bytes that are kept,
    /// else a copy. Copies of recent short texts are shared.
    std::string_view Keep(std::string_view text);
    /// The same for the text of an attribute.
    ORVXmlTextPlace KeepPlace(std::string_view text);

    std::string_view stable_;                  // the document's bytes, if they outlive the tree
    std::shared_ptr<const void> sourceOwner_;  // owner of the document's bytes
    std::unique_ptr<ORVXmlNodeStore> nodes_;
    std::size_t keptTo_ = 0;  // end of the last text that was kept in the document's bytes
    std::vector<std::unique_ptr<char[]>> chunks_;
    char* free_ = nullptr;  // unused part of the current chunk
    std::size_t left_ = 0;
    std::size_t nextChunk_;
    std::size_t memoryInUse_ = 0;
    /// A short text that was copied recently, and its location for attributes.
    struct Recent {
        std::string_view text;
        ORVXmlTextPlace place;
    };
    std::unique_ptr<Recent[]> recent_;  // indexed by hash; freed when the tree is complete
    ORVXmlTexts texts_;
    const ORVXmlNode* firstNode_ = nullptr;
    const ORVXmlNode* root_ = nullptr;
    std::uint32_t unreadElements_ = 0;
    mutable std::uint32_t references_ = 1;
};
