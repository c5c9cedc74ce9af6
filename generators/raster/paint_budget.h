// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

/// Limit of painting for all pages of an output, measured in pixels filled with one colour. Spend and IsSpent
/// may be called from several threads. The work for a page, and so whether it exceeds the limit, does not
/// depend on bands or threads.
class PaintBudget {
public:
    /// Added to the limit for every pixel of a page: each is read from an image once, painted over and
    /// compressed.
    static constexpr std::uint64_t kPerPagePixel = 100;

    void Allow(std::uint64_t pixels) { limit_ += pixels; }
    /// @return false if the budget is exceeded
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
