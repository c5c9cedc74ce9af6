// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// Allocator for the small objects of which models contain millions: primitives, attribute sets and lists of
/// children. Uses operator new, unless the host has called UseBlocks().
///
/// With UseBlocks(), objects are packed into blocks without a per-object header. A block is freed with its
/// last object, whichever thread releases that; space freed in a block that is still being filled is reused
/// at once. Blocks therefore suit objects that are freed together, as those of a model are. Thread-safe.
class ORV_PLATFORM_EXPORT ORVSmallObjects {
public:
    /// Alignment of what Take returns, in bytes.
    static constexpr std::size_t kAlignment = alignof(double);

    /// Turns on allocation from blocks for the whole process. Must be called while there is only one thread.
    /// @return true when blocks are in use; false when an object has been allocated before, or when the
    /// program
    ///         runs with an address sanitizer, which tracks only objects from operator new
    static bool UseBlocks();

    /// Allocates `size` bytes. Throws std::bad_alloc.
    static void* Take(std::size_t size);
    /// Like Take, but returns null when there is no memory.
    static void* TryTake(std::size_t size) noexcept;
    /// Frees memory that Take returned for this size; null is ignored.
    static void Give(void* object, std::size_t size) noexcept;
    /// Frees memory of unknown size. With blocks, the space is not reused before the whole block is freed.
    static void Give(void* object) noexcept;
};
