// SPDX-License-Identifier: Apache-2.0
#include "platform/system/small_object_blocks.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace orv_small_object_blocks {
namespace {

/// Stands at the start of each block, which is found from an object by its address.
struct Block {
    /// Objects in the block, and kFilled while a thread fills it. That thread counts what it puts there by
    /// itself, and adds it at the end.
    std::atomic<std::uint32_t> holders;
};
constexpr std::uint32_t kFilled = std::uint32_t{1} << 31U;

constexpr std::size_t kUnit = alignof(double);
// Of what the system's allocator keeps before each block, so that one follows the other without a gap.
constexpr std::size_t kAllocatorsOwn = 16;
constexpr std::size_t kHead = kAllocatorsOwn;
// Larger objects have a block each, which is as large as they need.
constexpr std::size_t kLargestShared = 1024;
// Of larger ones there are few.
constexpr std::size_t kLargestReused = 128;

/// An object's place that can be used again.
struct Hole {
    Hole* next;
};

/// The block that a thread fills.
struct Filling {
    Block* block;
    char* free;
    std::size_t left;
    std::uint32_t given;                                  // objects of this thread's that are in it
    std::array<Hole*, kLargestReused / kUnit + 1> holes;  // by size, in units
};
constinit thread_local Filling filling{};

char* BytesOf(Block* block) { return reinterpret_cast<char*>(block); }

Block* BlockOf(void* object) {
    auto* const place = static_cast<char*>(object);
    return reinterpret_cast<Block*>(place - reinterpret_cast<std::uintptr_t>(place) % kBlockSize);
}

/// Counts some objects of a block down; it goes with the last one.
void LetGo(Block* block, std::uint32_t count) {
    // What other threads did to their objects in it comes first.
    if (block->holders.fetch_sub(count, std::memory_order_acq_rel) != count) return;
    block->~Block();
    std::free(block);
}

/// Ends the filling of the thread's block.
void Leave() {
    if (filling.block) LetGo(filling.block, kFilled - filling.given);
    filling = {};
}

/// What a thread does at its end.
struct ThreadEnd {
    ThreadEnd() = default;
    ThreadEnd(const ThreadEnd&) = delete;
    ThreadEnd& operator=(const ThreadEnd&) = delete;
    ~ThreadEnd() { Leave(); }
};

/// What operator new does when there is no memory. @return false when there is nobody to ask
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
    // Allocators refuse as much, and checking ones end the process over it.
    if (size >= PTRDIFF_MAX - kHead) return nullptr;
    Block* const block = NewBlock(kHead + size, 1);
    return block ? BytesOf(block) + kHead : nullptr;
}

/// Takes the first object of a new block.
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
