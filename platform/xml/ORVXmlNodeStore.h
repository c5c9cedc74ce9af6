// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/xml/ORVXmlNode.h"

/// Storage for the nodes of a tree and their attributes, in blocks in document order. If a document is read
/// only once, blocks that the reader has passed are freed while it proceeds, together with the part of the
/// document that their texts are in.
class ORV_PLATFORM_EXPORT ORVXmlNodeStore {
public:
    /// Allocates memory for a node and its attributes, aligned for nodes. Throws std::bad_alloc.
    /// @param source  offset in the document, which never decreases: the texts of this and all later nodes
    /// are at or after it
    void* Allocate(std::size_t size, std::size_t source) {
        if (size > left_) Grow(size, source);
        char* const place = free_;
        free_ += size;
        left_ -= size;
        return place;
    }
    /// Largest size that Allocate accepts.
    static constexpr std::size_t kLargest = 2048;

    /// Current size of all blocks in bytes.
    std::size_t GetMemoryInUse() const { return memoryInUse_; }
    /// Sets the document's bytes, so that parts that have been read can be freed; null when they must be
    /// kept.
    void SetSource(const char* source) { source_ = source; }

    /// Prevents the block of an element from being freed until LetGo. The first element held starts a
    /// reading: blocks up to and including its block are never freed.
    /// @return the index of the block
    std::size_t Hold(const ORVXmlNode& element);
    /// Ends a Hold. The last one ends the reading.
    void LetGo(std::size_t block);
    /// Declares that the reader has reached a node and will not access earlier nodes, except those held.
    void Reach(const ORVXmlNode& node) {
        const char* const place = reinterpret_cast<const char*>(&node);
        if (std::less<>()(place, currentBegin_) || !std::less<>()(place, currentEnd_)) Advance(node);
    }

private:
    struct Block {
        std::unique_ptr<char[]> bytes;  // null once freed
        std::size_t size = 0;
        std::size_t source = 0;     // offset in the document where the texts of its nodes begin
        std::uint32_t holders = 0;  // number of elements held
    };

    void Grow(std::size_t size, std::size_t source);
    bool IsIn(std::size_t block, const ORVXmlNode& node) const;
    /// Index of the first block from `from` on that contains the node; number of blocks when there is none.
    std::size_t Find(std::size_t from, const ORVXmlNode& node) const;
    void GoTo(std::size_t block);
    void Advance(const ORVXmlNode& node);
    void Free(std::size_t block);
    void ReleaseSource();

    std::vector<Block> blocks_;
    char* free_ = nullptr;  // unused part of the last block
    std::size_t left_ = 0;
    std::size_t memoryInUse_ = 0;

    const char* source_ = nullptr;
    std::size_t depth_ = 0;                                       // number of elements held
    std::size_t current_ = 0;                                     // the block that the reader has reached
    const char *currentBegin_ = nullptr, *currentEnd_ = nullptr;  // bounds of the current block
    std::vector<std::size_t> leftBehind_;  // earlier blocks in which an element was held
    std::size_t releasedFrom_ = 0,
                releasedTo_ = 0;  // range of the document that has been read but not yet freed
};

/// An iteration over the children of an element, in document order. Iterations over the children's own
/// children may be nested in it, but must end before the next child is reached. If the document is read only
/// once, passed elements are freed: a child and its descendants must not be used after the next child has
/// been reached.
class ORVXmlChildWalk {
public:
    explicit ORVXmlChildWalk(const ORVXmlNode& element)
        : store_(element.texts ? element.texts->readOnce : nullptr),
          block_(store_ ? store_->Hold(element) : 0) {}
    ~ORVXmlChildWalk() {
        if (store_) store_->LetGo(block_);
    }
    ORVXmlChildWalk(const ORVXmlChildWalk&) = delete;
    ORVXmlChildWalk& operator=(const ORVXmlChildWalk&) = delete;

    /// Declares that a child has been reached; the previous one is no longer used.
    void Reach(const ORVXmlNode& child) {
        if (store_) store_->Reach(child);
    }

private:
    ORVXmlNodeStore* store_;
    std::size_t block_;
};
