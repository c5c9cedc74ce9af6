// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

/// Arena allocator: memory is released all at once. Destructors are not run.
class RasterArena {
public:
    template <class T>
    T* Make(std::size_t count) {
        static_assert(alignof(T) <= kAlignment && std::is_trivially_destructible_v<T>);
        return static_cast<T*>(Take(count * sizeof(T)));
    }
    void Clear();

private:
    static constexpr std::size_t kAlignment = 8;
    void* Take(std::size_t bytes);

    std::vector<std::unique_ptr<std::byte[]>> blocks_;
    std::size_t left_ = 0;
    std::byte* next_ = nullptr;
};

/// A sequence that grows in blocks. Elements never move, so nothing is copied and little memory is wasted.
template <class T>
class RasterSequence {
public:
    void Append(const T& item) {
        if (size_ == blocks_.size() << kBlockShift) blocks_.push_back(std::make_unique<T[]>(kBlock));
        (*this)[size_++] = item;
    }
    /// Removes the elements from this index on.
    void Truncate(std::size_t size) { size_ = size; }
    T& operator[](std::size_t i) { return blocks_[i >> kBlockShift][i & (kBlock - 1)]; }
    const T& operator[](std::size_t i) const { return blocks_[i >> kBlockShift][i & (kBlock - 1)]; }
    const T& Last() const { return (*this)[size_ - 1]; }
    std::size_t GetSize() const { return size_; }
    bool IsEmpty() const { return size_ == 0; }

private:
    static constexpr unsigned int kBlockShift = 8;
    static constexpr std::size_t kBlock = std::size_t{1} << kBlockShift;
    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t size_ = 0;
};
