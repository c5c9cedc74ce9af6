// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// Returns the whole pages within a block to the system, for blocks whose content is not needed again. The
/// caller keeps the block; its pages take no memory until they are written again, and their content is
/// undefined. Does nothing for small blocks, which are not worth a system call.
/// @param start  may be null
/// @param size   bytes
ORV_PLATFORM_EXPORT void ORVReleasePages(const void* start, std::size_t size);
