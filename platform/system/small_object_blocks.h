// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// The blocks behind ORVSmallObjects. Each thread fills a block of its own.
namespace orv_small_object_blocks {

/// Bytes from one block to the next; a block is aligned to as much.
inline constexpr std::size_t kBlockSize = std::size_t{32} << 10U;

/// Memory for an object, aligned like a double; null when there is none.
ORV_PLATFORM_EXPORT void* Take(std::size_t size) noexcept;
/// Gives back what Take returned.
/// @param size  as it was taken; 0 when it is not known
ORV_PLATFORM_EXPORT void Give(void* object, std::size_t size) noexcept;

}  // namespace orv_small_object_blocks
