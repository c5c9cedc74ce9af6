#include "platform/model/ORVPrtContainerElt.h"

#include <algorithm>

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
    // What is removed is mostly what was added last.
    const auto found = std::find(children_.rbegin(), children_.rend(), child);
    if (found == children_.rend()) return;
    children_.erase(std::next(found).base());
    child->Release();
}
