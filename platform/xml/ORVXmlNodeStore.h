// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/xml/ORVXmlNode.h"

/// Where the nodes of a tree lie, each with the places of its attributes: in blocks that follow the order of
/// the document. Where a document is read once, blocks that the reader has left behind are freed while it
/// reads on, and with them the part of the document that their texts lie in.
class ORV_PLATFORM_EXPORT ORVXmlNodeStore {
public:
    /// Room for a node and what belongs to it, aligned for nodes; throws std::bad_alloc.
    /// @param source  offset in the document, which only grows: what is kept of this node and of later ones
    ///                lies behind it
    void* Allocate(std::size_t size, std::size_t source) {
        if (size > left_) Grow(size, source);
        char* const place = free_;
        free_ += size;
        left_ -= size;
        return place;
    }
    /// The most that Allocate gives at once.
    static constexpr std::size_t kLargest = 2048;

    /// Bytes that the blocks take at this moment.
    std::size_t GetMemoryInUse() const { return memoryInUse_; }
    /// What the texts of nodes lie in, so that the parts that have been read can be given back; null when it
    /// has to stay.
    void SetSource(const char* source) { source_ = source; }

    /// Keeps the block of an element, until LetGo, whatever is read meanwhile. The first element that is held
    /// begins a reading: nothing in its block or before is ever freed.
    /// @return the block's number
    std::size_t Hold(const ORVXmlNode& element);
    /// Ends a Hold; the last one ends the reading.
    void LetGo(std::size_t block);
    /// The reader has come to a node: it asks for no node before it any more, except those that are held.
    void Reach(const ORVXmlNode& node) {
        const char* const place = reinterpret_cast<const char*>(&node);
        if (std::less<>()(place, currentBegin_) || !std::less<>()(place, currentEnd_)) Advance(node);
    }

private:
    struct Block {
        std::unique_ptr<char[]> bytes;  // null once it has been freed
        std::size_t size = 0;
        std::size_t source = 0;     // where the texts of its nodes begin in the document
        std::uint32_t holders = 0;  // elements that are held
    };

    void Grow(std::size_t size, std::size_t source);
    bool IsIn(std::size_t block, const ORVXmlNode& node) const;
    /// The first block from that one on in which the node lies; their number when there is none.
    std::size_t Find(std::size_t from, const ORVXmlNode& node) const;
    void GoTo(std::size_t block);
    void Advance(const ORVXmlNode& node);
    void Free(std::size_t block);
    void ReleaseSource();

    std::vector<Block> blocks_;
    char* free_ = nullptr;  // the unused part of the last block
    std::size_t left_ = 0;
    std::size_t memoryInUse_ = 0;

    const char* source_ = nullptr;
    std::size_t depth_ = 0;                                       // of elements that are held
    std::size_t current_ = 0;                                     // the block that the reader has come to
    const char *currentBegin_ = nullptr, *currentEnd_ = nullptr;  // its bytes
    std::vector<std::size_t> leftBehind_;  // blocks before it in which an element was held
    std::size_t releasedFrom_ = 0,
                releasedTo_ = 0;  // a part of the document that has not been given back yet
};

/// A walk over the children of an element, in document order. Walks over their own children may take place
/// within it, each before it goes on to the next child. Where the document is read once, what the walk leaves
/// behind is freed: an element that has been passed, and all that is below it, is gone when the element
/// behind it has been reached.
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

    /// Goes on to a child; the one before it is not looked at any more.
    void Reach(const ORVXmlNode& child) {
        if (store_) store_->Reach(child);
    }

private:
    ORVXmlNodeStore* store_;
    std::size_t block_;
};
