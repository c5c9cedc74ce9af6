// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlTree.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "platform/xml/ORVXmlNodeStore.h"

namespace {

constexpr std::size_t kFirstChunk = std::size_t{4} << 10U;
constexpr std::size_t kLargestChunk = std::size_t{256} << 10U;

// Drawings repeat short texts ("red", "0", "#text") far more often than long ones.
constexpr std::size_t kLongestShared = 24;
constexpr std::size_t kRecentTexts = 1024;

std::size_t RecentSlot(std::string_view text) {
    std::uint32_t hash = 0x811C9DC5U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x01000193U;
    return (hash ^ (hash >> 15U)) % kRecentTexts;
}

}  // namespace

ORVXmlTree::ORVXmlTree() : nodes_(std::make_unique<ORVXmlNodeStore>()), nextChunk_(kFirstChunk) {}

ORVXmlTree::~ORVXmlTree() = default;

std::size_t ORVXmlTree::GetMemoryInUse() const { return memoryInUse_ + nodes_->GetMemoryInUse(); }

void ORVXmlTree::Release() const {
    if (--references_ == 0) delete this;
}

void* ORVXmlTree::Allocate(std::size_t size, std::size_t alignment) {
    const std::size_t gap = (0 - reinterpret_cast<std::uintptr_t>(free_)) & (alignment - 1);
    if (free_ && left_ >= gap && left_ - gap >= size) {
        char* const place = free_ + gap;
        free_ = place + size;
        left_ -= gap + size;
        return place;
    }

    // A large request gets a chunk of its own, and the current chunk stays in use.
    const bool alone = size > nextChunk_ / 4;
    const std::size_t chunkSize = alone ? size : nextChunk_;
    std::unique_ptr<char[]> chunk(new char[chunkSize]);
    chunks_.push_back(std::move(chunk));
    memoryInUse_ += chunkSize;
    char* const place = chunks_.back().get();
    if (!alone) {
        free_ = place + size;
        left_ = chunkSize - size;
        nextChunk_ = std::min(nextChunk_ * 2, kLargestChunk);
    }
    return place;
}

std::string_view ORVXmlTree::Keep(std::string_view text) {
    if (text.empty()) return {};
    if (IsStable(text)) return text;
    Recent* recent = nullptr;
    if (text.size() <= kLongestShared) {
        if (!recent_) recent_ = std::make_unique<Recent[]>(kRecentTexts);
        recent = &recent_[RecentSlot(text)];
        if (recent->text == text) return recent->text;
    }
    char* const copy = static_cast<char*>(Allocate(text.size(), 1));
    std::memcpy(copy, text.data(), text.size());
    const std::string_view kept(copy, text.size());
    if (recent) *recent = {kept, {}};
    return kept;
}

ORVXmlTextPlace ORVXmlTree::KeepPlace(std::string_view text) {
    if (text.empty()) return {};
    if (IsStable(text)) {
        const auto start = static_cast<std::size_t>(text.data() - stable_.data());
        keptTo_ = start + text.size();
        if (keptTo_ < ORVXmlTextPlace::kShared)
            return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(text.size())};
    }
    const std::string_view kept = Keep(text);
    Recent* recent = recent_ && text.size() <= kLongestShared ? &recent_[RecentSlot(text)] : nullptr;
    if (recent && recent->text.data() != kept.data()) recent = nullptr;
    if (recent && recent->place.length == ORVXmlTextPlace::kOther) return recent->place;

    if (texts_.others.size() >= ORVXmlTextPlace::kOther) throw std::bad_alloc();
    const ORVXmlTextPlace place{static_cast<std::uint32_t>(texts_.others.size()), ORVXmlTextPlace::kOther};
    texts_.others.push_back(kept);
    if (recent) recent->place = place;
    return place;
}
