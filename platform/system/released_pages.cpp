// SPDX-License-Identifier: Apache-2.0
#include "platform/system/released_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace {
constexpr std::size_t kLeastBytes = std::size_t{16} << 10U;
}

void ORVReleasePages(const void* start, std::size_t size) {
    if (size < kLeastBytes) return;
    static const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(start);
    const std::uintptr_t first = (begin + pageSize - 1) / pageSize * pageSize;
    const std::uintptr_t last = (begin + size) / pageSize * pageSize;
    // If the call fails, the memory merely stays in use.
    if (first < last)
        madvise(const_cast<char*>(static_cast<const char*>(start)) + (first - begin), last - first,
                MADV_DONTNEED);
}
