// SPDX-License-Identifier: Apache-2.0
#include "platform/print/link_targets.h"

#include <vector>

#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"

namespace {

/// Calls `visit` once for every page, group and symbol, and `visitLeaf` for their other children.
template <class Visitor, class LeafVisitor>
void ForEachContainer(std::span<const ORVPrtImageElt* const> pages, Visitor visit, LeafVisitor visitLeaf) {
    std::unordered_set<const ORVPrtGraphicPrimitiveElt*> visited;
    std::vector<const ORVPrtGraphicPrimitiveElt*> open(pages.begin(), pages.end());
    while (!open.empty()) {
        const ORVPrtGraphicPrimitiveElt& container = *open.back();
        open.pop_back();
        // An object with one reference is reached only once.
        if (container.GetReferenceCount() > 1 && !visited.insert(&container).second) continue;
        visit(container);
        const ORVPrtChildList& children = *container.GetChildList();
        for (std::size_t i = 0; i < children.size(); ++i) {
            children.Prefetch(i);
            const ORVPrtKind kind = children[i]->GetKind();
            if (kind == ORVPrtKind::kGroup || kind == ORVPrtKind::kSymbol)
                open.push_back(children[i]);
            else if (kind != ORVPrtKind::kPattern)  // which is not drawn
                visitLeaf(*children[i]);
        }
    }
}

std::string_view LinkedId(const ORVPrtGraphicPrimitiveElt& container) {
    if (container.GetKind() != ORVPrtKind::kGroup) return {};
    return static_cast<const ORVPrtGroupElt&>(container).GetGroupAttributes().GetLinkURI().GetElementId();
}

}  // namespace

ORVPrintLinkTargets::ORVPrintLinkTargets(std::span<const ORVPrtImageElt* const> pages,
                                         std::string_view reported) {
    std::unordered_set<std::string_view> wanted;
    if (!reported.empty()) wanted.insert(reported);
    ForEachContainer(
        pages,
        [&](const ORVPrtGraphicPrimitiveElt& container) {
            if (const std::string_view id = LinkedId(container); !id.empty()) wanted.insert(id);
        },
        [](const ORVPrtGraphicPrimitiveElt& /*leaf*/) {});
    if (wanted.empty()) return;
    const auto findTarget = [&](const ORVPrtGraphicPrimitiveElt& primitive) {
        const std::string_view id = primitive.GetID();
        if (!id.empty() && wanted.contains(id)) targets_.insert(id);
    };
    ForEachContainer(pages, findTarget, findTarget);
}
