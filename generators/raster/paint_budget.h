// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

/// How much may be painted for all pages of an output, in pixels of one colour. May be used by several
/// threads. What a page takes does not depend on bands or threads, and so neither does whether it is too
/// much.
class PaintBudget {
public:
    /// More for every pixel of a page: its pixels are read from an image once, painted over and compressed.
    static constexpr std::uint64_t kPerPagePixel = 100;

    void Allow(std::uint64_t pixels) { limit_ += pixels; }
    /// @return false when that is more than there was left
    bool Spend(std::uint64_t pixels) {
        return spent_.fetch_add(pixels, std::memory_order_relaxed) + pixels <= limit_;
    }
    bool IsSpent() const { return spent_.load(std::memory_order_relaxed) > limit_; }
    void Reset(std::uint64_t limit) {
        limit_ = limit;
        spent_ = 0;
    }

private:
    std::uint64_t limit_ = 0;
    std::atomic<std::uint64_t> spent_ = 0;
};
