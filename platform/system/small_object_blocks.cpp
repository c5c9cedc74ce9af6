// SPDX-License-Identifier: Apache-2.0
#include "platform/system/small_object_blocks.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace orv_small_object_blocks {
namespace {

/// Header of each block. Found from an object by rounding down its address.
struct Block {
    /// Number of objects in the block, plus kFilled while a thread is filling it. That thread counts its own
    /// objects separately and adds their number when it leaves the block.
    std::atomic<std::uint32_t> holders;
};
constexpr std::uint32_t kFilled = std::uint32_t{1} << 31U;

constexpr std::size_t kUnit = alignof(double);
// Space left for the allocator's own header, so that blocks are adjacent without gaps.
constexpr std::size_t kAllocatorsOwn = 16;
constexpr std::size_t kHead = kAllocatorsOwn;
// Larger objects get a block of their own size.
constexpr std::size_t kLargestShared = 1024;
// Freed space of larger objects is not reused, because there are few of them.
constexpr std::size_t kLargestReused = 128;

/// Freed space that can be reused.
struct Hole {
    Hole* next;
};

/// The block that a thread is filling.
struct Filling {
    Block* block;
    char* free;
    std::size_t left;
    std::uint32_t given;                                  // objects allocated by this thread
    std::array<Hole*, kLargestReused / kUnit + 1> holes;  // free lists, indexed by size in units
};
constinit thread_local Filling filling{};

char* BytesOf(Block* block) { return reinterpret_cast<char*>(block); }

Block* BlockOf(void* object) {
    auto* const place = static_cast<char*>(object);
    return reinterpret_cast<Block*>(place - reinterpret_cast<std::uintptr_t>(place) % kBlockSize);
}

/// Decrements the object count of a block and frees the block with its last object.
void LetGo(Block* block, std::uint32_t count) {
    // Acquire: accesses of other threads to their objects in the block happen before it is freed.
    if (block->holders.fetch_sub(count, std::memory_order_acq_rel) != count) return;
    block->~Block();
    std::free(block);
}

/// Stops filling the thread's current block.
void Leave() {
    if (filling.block) LetGo(filling.block, kFilled - filling.given);
    filling = {};
}

/// Runs Leave when the thread ends.
struct ThreadEnd {
    ThreadEnd() = default;
    ThreadEnd(const ThreadEnd&) = delete;
    ThreadEnd& operator=(const ThreadEnd&) = delete;
    ~ThreadEnd() { Leave(); }
};

/// Calls the new handler, as operator new does when memory is exhausted. @return false when there is none or
/// it gives up
bool HasMadeRoom() {
    const std::new_handler handler = std::get_new_handler();
    if (!handler) return false;
    try {
        handler();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

Block* NewBlock(std::size_t size, std::uint32_t holders) {
    void* memory = nullptr;
    while (posix_memalign(&memory, kBlockSize, size) != 0)
        if (!HasMadeRoom()) return nullptr;
    return new (memory) Block{holders};
}

void* TakeAlone(std::size_t size) {
    // Allocators refuse such sizes, and those of sanitizers abort the process.
    if (size >= PTRDIFF_MAX - kHead) return nullptr;
    Block* const block = NewBlock(kHead + size, 1);
    return block ? BytesOf(block) + kHead : nullptr;
}

/// Starts a new block with a first object.
void* TakeOfNext(std::size_t size) {
    static const thread_local ThreadEnd end;
    Block* const block = NewBlock(kBlockSize - kAllocatorsOwn, kFilled);
    if (!block) return nullptr;
    Leave();
    filling.block = block;
    filling.free = BytesOf(block) + kHead + size;
    filling.left = kBlockSize - kAllocatorsOwn - kHead - size;
    filling.given = 1;
    return BytesOf(block) + kHead;
}

std::size_t InUnits(std::size_t size) { return (size + kUnit - 1) / kUnit; }

}  // namespace

void* Take(std::size_t size) noexcept {
    if (size > kLargestShared) return TakeAlone(size);
    const std::size_t units = size == 0 ? 1 : InUnits(size);
    if (units < filling.holes.size()) {
        if (Hole* const hole = filling.holes[units]) {
            filling.holes[units] = hole->next;
            ++filling.given;
            return hole;
        }
    }
    const std::size_t needed = units * kUnit;
    if (filling.left < needed) return TakeOfNext(needed);
    char* const place = filling.free;
    filling.free += needed;
    filling.left -= needed;
    ++filling.given;
    return place;
}

void Give(void* object, std::size_t size) noexcept {
    if (!object) return;
    Block* const block = BlockOf(object);
    if (block != filling.block) {
        LetGo(block, 1);
        return;
    }
    --filling.given;
    const std::size_t units = InUnits(size);
    if (units == 0 || units >= filling.holes.size()) return;
    filling.holes[units] = new (object) Hole{filling.holes[units]};
}

}  // namespace orv_small_object_blocks
