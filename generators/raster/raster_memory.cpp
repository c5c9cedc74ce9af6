// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/raster_memory.h"

#include <utility>

namespace {

constexpr std::size_t kArenaBlock = std::size_t{1} << 18U;
// Larger blocks are allocated with their exact size, so that they can reuse the memory freed by the model's
// points.
constexpr std::size_t kLargeInArena = std::size_t{1} << 12U;

}  // namespace

void* RasterArena::Take(std::size_t bytes) {
    bytes = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (bytes > left_ || bytes >= kLargeInArena) {
        const std::size_t size = bytes >= kLargeInArena ? bytes : kArenaBlock;
        std::unique_ptr<std::byte[]> block(new std::byte[size]);
        blocks_.push_back(std::move(block));
        if (size == bytes) return blocks_.back().get();  // the current block remains in use
        next_ = blocks_.back().get();
        left_ = size;
    }
    std::byte* taken = next_;
    next_ += bytes;
    left_ -= bytes;
    return taken;
}

void RasterArena::Clear() {
    blocks_.clear();
    left_ = 0;
    next_ = nullptr;
}
