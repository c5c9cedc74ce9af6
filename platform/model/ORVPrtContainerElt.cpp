// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtContainerElt.h"

#include <algorithm>
#include <iterator>

const ORVMetaClass& ORVPrtContainerElt::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtContainerElt", &ORVPrtGraphicPrimitiveElt::MetaClass());
    return metaClass;
}

ORVPrtContainerElt::~ORVPrtContainerElt() {
    for (const ORVPrtGraphicPrimitiveElt* child : children_) child->Release();
}

void ORVPrtContainerElt::AddChild(ORVPrtGraphicPrimitiveElt* child) {
    if (!child || child == this) return;
    children_.push_back(child);
    child->AddRef();
}

void ORVPrtContainerElt::RemoveChild(ORVPrtGraphicPrimitiveElt* child) {
    // Search backwards, because the child removed is usually the one added last.
    const auto begin = std::make_reverse_iterator(children_.end());
    const auto end = std::make_reverse_iterator(children_.begin());
    const auto found = std::find(begin, end, child);
    if (found == end) return;
    children_.erase(std::prev(found.base()));
    child->Release();
}
