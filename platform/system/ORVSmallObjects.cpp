// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVSmallObjects.h"

#include <atomic>
#include <new>

#include "platform/system/small_object_blocks.h"

#if defined(__SANITIZE_ADDRESS__)
#define ORV_SEES_OBJECTS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORV_SEES_OBJECTS 1
#endif
#endif

namespace {

// Objects do not record where they were allocated, so the source must not change once there is one.
enum class Source : unsigned char { kUndecided, kOperatorNew, kBlocks };
constinit std::atomic<Source> source{Source::kUndecided};

bool IsOfBlocks() { return source.load(std::memory_order_relaxed) == Source::kBlocks; }

void* TakeOfOperatorNew(std::size_t size) {
    if (source.load(std::memory_order_relaxed) == Source::kUndecided)
        source.store(Source::kOperatorNew, std::memory_order_relaxed);
    return ::operator new(size, std::nothrow);
}

}  // namespace

bool ORVSmallObjects::UseBlocks() {
#if !defined(ORV_SEES_OBJECTS)
    if (source.load(std::memory_order_relaxed) == Source::kUndecided)
        source.store(Source::kBlocks, std::memory_order_relaxed);
#endif
    return IsOfBlocks();
}

void* ORVSmallObjects::TryTake(std::size_t size) noexcept {
    return IsOfBlocks() ? orv_small_object_blocks::Take(size) : TakeOfOperatorNew(size);
}

void* ORVSmallObjects::Take(std::size_t size) {
    void* const object = TryTake(size);
    if (!object) throw std::bad_alloc();
    return object;
}

void ORVSmallObjects::Give(void* object, std::size_t size) noexcept {
    if (IsOfBlocks())
        orv_small_object_blocks::Give(object, size);
    else
        ::operator delete(object);
}

void ORVSmallObjects::Give(void* object) noexcept { Give(object, 0); }
