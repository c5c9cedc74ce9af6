// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/system/ORVBaseObject.h"

class ORVPrtGraphicPrimitiveElt;

/// Counts the primitives drawn below a primitive, shared ones each time, and stops at `limit`. Takes time
/// proportional to the number of distinct primitives.
/// @param distinct  increased by the work of drawing each primitive once
ORV_PLATFORM_EXPORT std::uint64_t ORVCountPrimitives(const ORVPrtGraphicPrimitiveElt& root,
                                                     std::uint64_t limit, std::uint64_t& distinct);

/// The work of drawing a primitive, without its children: 1, and more for many points or long text.
ORV_PLATFORM_EXPORT std::uint64_t ORVDrawingWork(const ORVPrtGraphicPrimitiveElt& primitive);
