// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// Implementation of ORVSmallObjects with blocks. Each thread fills a block of its own.
namespace orv_small_object_blocks {

/// Size and alignment of a block, in bytes.
inline constexpr std::size_t kBlockSize = std::size_t{32} << 10U;

/// Allocates memory aligned for a double; null when there is none.
ORV_PLATFORM_EXPORT void* Take(std::size_t size) noexcept;
/// Frees memory that Take returned.
/// @param size  as passed to Take; 0 when unknown
ORV_PLATFORM_EXPORT void Give(void* object, std::size_t size) noexcept;

}  // namespace orv_small_object_blocks
