// SPDX-License-Identifier: Apache-2.0
#include "platform/print/primitive_count.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/walk_prefetch.h"
#include "platform/system/ORVPrintLimits.h"

std::uint64_t ORVDrawingWork(const ORVPrtGraphicPrimitiveElt& primitive) {
    // A character is counted as half a shape; a point as much less.
    constexpr std::uint64_t kTextUnit = 2, kPointsUnit = 32;
    return 1 +
           primitive.GetPayloadBytes() / (primitive.GetKind() == ORVPrtKind::kText ? kTextUnit : kPointsUnit);
}

std::uint64_t ORVCountPrimitives(const ORVPrtGraphicPrimitiveElt& root, std::uint64_t limit,
                                 std::uint64_t& distinct) {
    struct Frame {
        const ORVPrtGraphicPrimitiveElt* container;
        std::size_t next;
        std::uint64_t count;
    };
    std::unordered_map<const ORVPrtGraphicPrimitiveElt*, std::uint64_t> shared;
    const auto add = [limit](std::uint64_t a, std::uint64_t b) {
        return a >= limit - std::min(b, limit) ? limit : a + b;
    };

    std::vector<Frame> open{{&root, 0, 0}};
    for (;;) {
        Frame& frame = open.back();
        const ORVPrtChildList* children = frame.container->GetChildList();
        if (children && frame.next < children->size()) {
            ORVPrefetchForWalk(*children, frame.next);
            const ORVPrtGraphicPrimitiveElt* child = (*children)[frame.next++];
            frame.count = add(frame.count, 1);
            distinct += ORVDrawingWork(*child);
            // A pattern in the tree is not drawn, nor are its descendants.
            if (!child->GetChildList() || child->GetKind() == ORVPrtKind::kPattern) continue;
            const auto known = child->GetReferenceCount() > 1 ? shared.find(child) : shared.end();
            if (known != shared.end()) {
                frame.count = add(frame.count, known->second);
            } else {
                open.push_back({child, 0, 0});
            }
            continue;
        }
        const Frame done = frame;
        open.pop_back();
        if (open.empty()) return done.count;
        if (done.container->GetReferenceCount() > 1) shared.emplace(done.container, done.count);
        open.back().count = add(open.back().count, done.count);
    }
}
