#pragma once

#include <cstdint>

class ORVPrtGraphicPrimitiveElt;

/// Counts what is drawn below a primitive, what it shares each time it is shared; stops counting at `limit`.
/// Takes time in proportion to the distinct primitives, however often they are shared.
std::uint64_t ORVCountPrimitives(const ORVPrtGraphicPrimitiveElt& root, std::uint64_t limit);
