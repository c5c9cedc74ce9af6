// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

#include "platform/system/ORVSmallObjects.h"

class ORVPrtGraphicPrimitiveElt;

/// Children of a primitive in drawing order. The owner of the list holds a reference to each; the list itself
/// counts no references. A single child needs no allocation, because most containers have only one.
class ORVPrtChildList {
public:
    /// Type of the list's elements.
    using value_type = ORVPrtGraphicPrimitiveElt*;
    /// Iterator; valid until the list changes.
    using const_iterator = const value_type*;

    ORVPrtChildList() = default;
    /// Throws std::bad_alloc.
    ORVPrtChildList(std::initializer_list<value_type> children) {
        for (const value_type child : children) push_back(child);
    }
    ORVPrtChildList(const ORVPrtChildList&) = delete;
    ORVPrtChildList& operator=(const ORVPrtChildList&) = delete;
    ~ORVPrtChildList() { Drop(); }

    /// Number of children.
    std::size_t size() const { return size_; }
    /// Whether there are no children.
    bool empty() const { return size_ == 0; }
    /// Iterator to the first child.
    const_iterator begin() const { return capacity_ > 1 ? place_.many : &place_.one; }
    /// Iterator behind the last child.
    const_iterator end() const { return begin() + size_; }
    /// The child at `index`, which must be less than size().
    value_type operator[](std::size_t index) const { return begin()[index]; }
    /// The first child. The list must not be empty.
    value_type front() const { return *begin(); }
    /// The last child. The list must not be empty.
    value_type back() const { return end()[-1]; }
    /// The child at `index`. Throws std::out_of_range.
    value_type at(std::size_t index) const {
        if (index >= size_) throw std::out_of_range("no such child");
        return begin()[index];
    }

    /// Prefetches a child some positions after `index`, because walks over large models are limited by memory
    /// latency.
    void Prefetch(std::size_t index) const {
        constexpr std::size_t kAhead = 8;
        if (index + kAhead >= size_) return;
        const char* const child = reinterpret_cast<const char*>(begin()[index + kAhead]);
        constexpr std::size_t kCacheLine = 64;  // a primitive with its children spans two lines
        __builtin_prefetch(child);
        __builtin_prefetch(child + kCacheLine);
    }

    /// Appends a child. The caller adds the reference. Throws std::bad_alloc.
    void push_back(value_type child) {
        if (size_ == capacity_) Grow();
        Begin()[size_++] = child;
    }
    /// Removes a child. The caller releases the reference.
    /// @param place  iterator to a child
    void erase(const_iterator place) {
        std::copy(place + 1, end(), Begin() + (place - begin()));
        --size_;
    }

    /// Compares pointers, not the children themselves.
    friend bool operator==(const ORVPrtChildList& a, const ORVPrtChildList& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

private:
    static constexpr std::size_t SizeOf(std::size_t count) { return count * sizeof(void*); }

    value_type* Begin() { return capacity_ > 1 ? place_.many : &place_.one; }
    void Drop() {
        if (capacity_ > 1) ORVSmallObjects::Give(place_.many, SizeOf(capacity_));
    }
    void Grow() {
        if (capacity_ > std::numeric_limits<std::uint32_t>::max() / 2) throw std::bad_alloc();
        auto* const larger = static_cast<value_type*>(ORVSmallObjects::Take(2 * SizeOf(capacity_)));
        std::uninitialized_copy(begin(), end(), larger);
        Drop();
        place_.many = larger;
        capacity_ *= 2;
    }

    union {
        value_type one = nullptr;
        value_type* many;
    } place_;
    std::uint32_t size_ = 0, capacity_ = 1;
};
