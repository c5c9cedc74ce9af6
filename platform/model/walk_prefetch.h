// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/model/ORVPrtContainerElt.h"

/// Asks the processor for what a walk over `children` that stands at `index` comes to soon: a child some
/// places on and, where a nearer one is a group, the first of its own, which may be anywhere.
inline void ORVPrefetchForWalk(const ORVPrtChildList& children, std::size_t index) {
    constexpr std::size_t kAhead = 4;  // fetched itself by then
    children.Prefetch(index);
    if (index + kAhead >= children.size()) return;
    const ORVPrtGraphicPrimitiveElt& child = *children[index + kAhead];
    if (child.GetKind() != ORVPrtKind::kGroup) return;
    const ORVPrtChildList& own = static_cast<const ORVPrtContainerElt&>(child).GetChildren();
    if (!own.empty()) __builtin_prefetch(own.front());
}
