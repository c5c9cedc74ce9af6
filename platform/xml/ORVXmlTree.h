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

/// A parsed document: owns its nodes, attributes and texts, all of which go with it at once. Reference
/// counted, to be held by ORVRef; a new tree has one reference. Counts are not atomic.
class ORV_PLATFORM_EXPORT ORVXmlTree {
public:
    ORVXmlTree();
    ORVXmlTree(const ORVXmlTree&) = delete;
    ORVXmlTree& operator=(const ORVXmlTree&) = delete;

    /// Adds a reference.
    void AddRef() const { ++references_; }
    /// Gives a reference back; the last one destroys the tree.
    void Release() const;

    /// First node of the document: the root element, or what the tree keeps of the comments before it.
    const ORVXmlNode* GetFirstNode() const { return firstNode_; }
    /// The root element; null when the document broke off before it.
    const ORVXmlNode* GetRoot() const { return root_; }
    /// The document's bytes, if the tree keeps them; else none.
    std::string_view GetSource() const { return stable_; }
    /// Names of elements within drawings that are not among those of the vocabulary, as the bits of
    /// unread_elements.h. Drawings that lie deeper than three levels in another document are not looked into.
    std::uint32_t GetUnreadElements() const { return unreadElements_; }
    /// Bytes taken for nodes, attributes and texts at this moment.
    std::size_t GetMemoryInUse() const;

private:
    friend class ORVXmlTreeBuilder;

    ~ORVXmlTree();

    /// Storage for all but nodes that lives as long as the tree; throws std::bad_alloc.
    void* Allocate(std::size_t size, std::size_t alignment);
    /// True for what lies in the document's own bytes, which outlive the tree.
    bool IsStable(std::string_view text) const {
        return std::less_equal<>()(stable_.data(), text.data()) &&
               std::less<>()(text.data(), stable_.data() + stable_.size());
    }
    /// `text`, or a copy of it, that lives as long as the tree: what lies in the document's own bytes stays
    /// there, if they stay. Short texts that were copied lately are copied once.
    std::string_view Keep(std::string_view text);
    /// The same for an attribute.
    ORVXmlTextPlace KeepPlace(std::string_view text);

    std::string_view stable_;                  // the document's bytes, if they outlive the tree
    std::shared_ptr<const void> sourceOwner_;  // what keeps them
    std::unique_ptr<ORVXmlNodeStore> nodes_;
    std::size_t keptTo_ = 0;  // where the last text ends that was kept in the document's own bytes
    std::vector<std::unique_ptr<char[]>> chunks_;
    char* free_ = nullptr;  // the unused part of the current chunk
    std::size_t left_ = 0;
    std::size_t nextChunk_;
    std::size_t memoryInUse_ = 0;
    /// A short text that was copied lately, and where attributes find it.
    struct Recent {
        std::string_view text;
        ORVXmlTextPlace place;
    };
    std::unique_ptr<Recent[]> recent_;  // by hash, forgotten when the tree is complete
    ORVXmlTexts texts_;
    const ORVXmlNode* firstNode_ = nullptr;
    const ORVXmlNode* root_ = nullptr;
    std::uint32_t unreadElements_ = 0;
    mutable std::uint32_t references_ = 1;
};
