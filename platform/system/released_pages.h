#pragma once

#include <cstddef>

#include "platform/system/ORVBaseObject.h"

/// Gives the system back what nobody is going to read again: the whole pages of memory that lie within. They
/// stay the caller's, take no room until they are written, and hold nothing that can be counted on. Nothing
/// happens for less than some pages, which would not be worth the call.
/// @param start  may be null for none
/// @param size   bytes
ORV_PLATFORM_EXPORT void ORVForgetBytes(const void* start, std::size_t size);
