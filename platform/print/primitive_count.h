// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/system/ORVBaseObject.h"

class ORVPrtGraphicPrimitiveElt;

/// Counts what is drawn below a primitive, what it shares each time it is shared; stops counting at `limit`.
/// Takes time in proportion to the distinct primitives, however often they are shared.
/// @param distinct  the work of drawing each primitive once is added to it
ORV_PLATFORM_EXPORT std::uint64_t ORVCountPrimitives(const ORVPrtGraphicPrimitiveElt& root,
                                                     std::uint64_t limit, std::uint64_t& distinct);

/// The work of drawing a primitive itself: one, and more for many points or much text.
ORV_PLATFORM_EXPORT std::uint64_t ORVDrawingWork(const ORVPrtGraphicPrimitiveElt& primitive);
