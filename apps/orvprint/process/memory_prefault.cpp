// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/memory_prefault.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <system_error>

namespace {

constexpr std::size_t kLeastBytes = std::size_t{1} << 20U;
// How far the heap grows at a time, and so how far ahead the thread may be.
constexpr int kHeapStep = 1 << 20;
// Bytes requested at a time, so that the lock on the process's address space is released in between.
constexpr std::size_t kPiece = std::size_t{256} << 10U;
// How long the thread sleeps while the heap does not grow.
constexpr std::chrono::microseconds kShortestPause{100}, kLongestPause{2000};

/// @return false if the system does not support it
bool GivePages(char* from, char* to) {
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    // The pages entirely within the range.
    auto* const first = from + (pageSize - reinterpret_cast<std::uintptr_t>(from) % pageSize) % pageSize;
    auto* const last = to - reinterpret_cast<std::uintptr_t>(to) % pageSize;
    for (char* piece = first; piece < last; piece += kPiece)
        if (madvise(piece, std::min(kPiece, static_cast<std::size_t>(last - piece)), MADV_POPULATE_WRITE) !=
            0)
            return false;
    return true;
}

}  // namespace

void PrefaultMemory(void* start, std::size_t size) {
    if (size < kLeastBytes) return;
    auto* const bytes = static_cast<char*>(start);
    GivePages(bytes, bytes + size);
}

MemoryPrefault::MemoryPrefault(std::size_t inputBytes) {
    if (inputBytes < kLeastBytes || std::thread::hardware_concurrency() < 2) return;
    mallopt(M_TOP_PAD, kHeapStep);
    try {
        thread_ = std::thread([this, heapEnd = static_cast<char*>(sbrk(0))] { Run(heapEnd); });
    } catch (const std::system_error&) {
        // Prefaulting is optional.
    }
}

MemoryPrefault::~MemoryPrefault() {
    isAtEnd_.store(true, std::memory_order_relaxed);
    if (thread_.joinable()) thread_.join();
}

void MemoryPrefault::Run(char* heapEnd) {
    auto pause = kShortestPause;
    while (!isAtEnd_.load(std::memory_order_relaxed)) {
        auto* const end = static_cast<char*>(sbrk(0));
        if (end > heapEnd) {
            if (!GivePages(heapEnd, end)) return;
            heapEnd = end;
            pause = kShortestPause;
        } else {
            std::this_thread::sleep_for(pause);
            pause = std::min(2 * pause, kLongestPause);
        }
    }
}
