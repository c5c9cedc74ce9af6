// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// Memory of the small objects that models consist of by the million: primitives, their sets of attributes,
/// and lists of children. It is that of operator new, unless the host has called UseBlocks().
///
/// Then objects lie side by side in blocks, without what an allocator keeps for each. A block goes when its
/// last object goes, in whichever thread that is; what is freed in a block that is still being filled is used
/// again at once. So blocks suit objects that go together, as those of a model do.
class ORV_PLATFORM_EXPORT ORVSmallObjects {
public:
    /// Alignment of what Take returns, in bytes.
    static constexpr std::size_t kAlignment = alignof(double);

    /// Has blocks used in this process from now on. To be called before there is a second thread.
    /// @return false when it comes too late, since there is an object already, or is not to be: address
    ///         sanitizers see each object only where operator new makes it
    static bool UseBlocks();

    /// Memory for an object of `size` bytes. Throws std::bad_alloc.
    static void* Take(std::size_t size);
    /// The same; null when there is no memory.
    static void* TryTake(std::size_t size) noexcept;
    /// Gives back what Take returned for this size; null is ignored.
    static void Give(void* object, std::size_t size) noexcept;
    /// The same where the size is not known: the place is not used again by itself.
    static void Give(void* object) noexcept;
};
