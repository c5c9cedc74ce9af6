// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/model/ORVPrtContainerElt.h"

/// Prefetches what a walk over `children` at position `index` will visit soon: a child some positions ahead
/// and, if a nearer one is a group, its first child, which may be anywhere in memory.
inline void ORVPrefetchForWalk(const ORVPrtChildList& children, std::size_t index) {
    constexpr std::size_t kAhead = 4;  // far enough for that child to have been prefetched itself
    children.Prefetch(index);
    if (index + kAhead >= children.size()) return;
    const ORVPrtGraphicPrimitiveElt& child = *children[index + kAhead];
    if (child.GetKind() != ORVPrtKind::kGroup) return;
    const ORVPrtChildList& own = static_cast<const ORVPrtContainerElt&>(child).GetChildren();
    if (!own.empty()) __builtin_prefetch(own.front());
}
