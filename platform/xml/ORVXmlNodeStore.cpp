// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlNodeStore.h"

#include <algorithm>
#include <utility>

#include "platform/system/released_pages.h"

namespace {

constexpr std::size_t kFirstBlock = std::size_t{4} << 10U;
constexpr std::size_t kLargestBlock = std::size_t{256} << 10U;
// The document is freed in parts of this size, to save system calls; partial pages at the ends of a part are
// kept.
constexpr std::size_t kReleasedAtOnce = std::size_t{1} << 20U;

}  // namespace

void ORVXmlNodeStore::Grow(std::size_t size, std::size_t source) {
    const std::size_t last = blocks_.empty() ? 0 : blocks_.back().size;
    const std::size_t blockSize = std::max(std::clamp(2 * last, kFirstBlock, kLargestBlock), size);
    std::unique_ptr<char[]> bytes(new char[blockSize]);
    free_ = bytes.get();
    left_ = blockSize;
    blocks_.push_back({std::move(bytes), blockSize, source});
    memoryInUse_ += blockSize;
}

bool ORVXmlNodeStore::IsIn(std::size_t block, const ORVXmlNode& node) const {
    const char* const place = reinterpret_cast<const char*>(&node);
    const char* const bytes = blocks_[block].bytes.get();
    return std::less_equal<>()(bytes, place) && std::less<>()(place, bytes + blocks_[block].size);
}

std::size_t ORVXmlNodeStore::Find(std::size_t from, const ORVXmlNode& node) const {
    while (from < blocks_.size() && !IsIn(from, node)) ++from;
    return from;
}

std::size_t ORVXmlNodeStore::Hold(const ORVXmlNode& element) {
    std::size_t block = Find(current_, element);
    if (block == blocks_.size()) block = Find(0, element);
    if (depth_++ == 0) {
        GoTo(block);
        leftBehind_.clear();
    }
    ++blocks_[block].holders;
    return block;
}

void ORVXmlNodeStore::LetGo(std::size_t block) {
    --blocks_[block].holders;
    if (--depth_ == 0) ReleaseSource();
}

void ORVXmlNodeStore::GoTo(std::size_t block) {
    current_ = block;
    currentBegin_ = blocks_[block].bytes.get();
    currentEnd_ = currentBegin_ + blocks_[block].size;
}

void ORVXmlNodeStore::Advance(const ORVXmlNode& node) {
    const std::size_t next = Find(current_, node);
    if (next == blocks_.size()) return;  // read before; what remains of it is kept
    std::erase_if(leftBehind_, [this](std::size_t block) {
        if (blocks_[block].holders > 0) return false;
        Free(block);
        return true;
    });
    for (std::size_t block = current_; block < next; ++block) {
        if (blocks_[block].holders > 0)
            leftBehind_.push_back(block);
        else
            Free(block);
    }
    GoTo(next);
}

void ORVXmlNodeStore::Free(std::size_t block) {
    if (!blocks_[block].bytes) return;
    blocks_[block].bytes.reset();
    memoryInUse_ -= blocks_[block].size;
    if (!source_) return;
    const std::size_t begin = blocks_[block].source, end = blocks_[block + 1].source;
    if (begin != releasedTo_) {
        ReleaseSource();
        releasedFrom_ = begin;
    }
    releasedTo_ = end;
    if (releasedTo_ - releasedFrom_ >= kReleasedAtOnce) ReleaseSource();
}

void ORVXmlNodeStore::ReleaseSource() {
    if (source_) ORVReleasePages(source_ + releasedFrom_, releasedTo_ - releasedFrom_);
    releasedFrom_ = releasedTo_;
}
