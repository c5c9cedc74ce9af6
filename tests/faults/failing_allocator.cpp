// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/failing_allocator.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

// Initialised at compile time, since libraries allocate before dynamic initialisation.
constinit std::atomic<std::uint64_t> requests = 0, refused = 0;
constinit std::atomic<std::uint64_t> firstRefused = std::numeric_limits<std::uint64_t>::max();
constinit std::atomic<std::uint64_t> lastRefused = 0;
constinit std::atomic<std::int64_t> liveBlocks = 0;
constinit thread_local int granted = 0;

bool IsGranted() {
    if (granted > 0) return true;
    const std::uint64_t number = requests.fetch_add(1) + 1;
    if (number < firstRefused || number > lastRefused) return true;
    ++refused;
    return false;
}

void* Allocate(std::size_t size, std::size_t alignment) {
    if (!IsGranted()) return nullptr;
    if (size == 0) size = 1;
    void* block = alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__
                      ? std::malloc(size)
                      : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
    if (block) ++liveBlocks;
    return block;
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
    void* block = Allocate(size, alignment);
    if (!block) throw std::bad_alloc();
    return block;
}

void Free(void* block) {
    if (!block) return;
    --liveBlocks;
    std::free(block);
}

constexpr std::size_t kUsual = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

}  // namespace

void FailingAllocator::Begin(std::uint64_t request, Refuses refuses) {
    constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
    requests = 0;
    refused = 0;
    lastRefused = refuses == Refuses::kOne ? request : kNever;
    firstRefused = request == 0 ? kNever : request;
}

void FailingAllocator::End() { firstRefused = std::numeric_limits<std::uint64_t>::max(); }

bool FailingAllocator::MayTake() { return IsGranted(); }

std::uint64_t FailingAllocator::GetRequests() { return requests; }
std::uint64_t FailingAllocator::GetRefused() { return refused; }
std::int64_t FailingAllocator::GetLiveBlocks() { return liveBlocks; }

FailingAllocator::Granted::Granted() { ++granted; }
FailingAllocator::Granted::~Granted() { --granted; }

void* operator new(std::size_t size) { return AllocateOrThrow(size, kUsual); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size, kUsual); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size, kUsual); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size, kUsual); }
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return Allocate(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { Free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { Free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept { Free(block); }
