// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// Returns the whole pages within a block that is not read again to the system. The block stays the caller's;
/// its pages take no memory until they are written, and their content is undefined. Does nothing for a few
/// pages, which are not worth the call.
/// @param start  may be null for none
/// @param size   bytes
ORV_PLATFORM_EXPORT void ORVReleasePages(const void* start, std::size_t size);
