// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

#include <new>
#include <vector>

#include "platform/model/ORVPrtPrimitiveBudget.h"

const ORVMetaClass& ORVPrtGraphicPrimitiveElt::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtGraphicPrimitiveElt", &ORVBaseObject::MetaClass());
    return metaClass;
}

ORVPrtIdentity::ORVPrtIdentity(const ORVPrtIdentity& other)
    : id(other.id), description(other.description), title(other.title), budget(other.budget) {
    if (budget) budget->AddRef();
}

ORVPrtIdentity::~ORVPrtIdentity() { SetBudget(nullptr); }

void ORVPrtIdentity::SetBudget(ORVPrtPrimitiveBudget* newBudget) {
    if (newBudget) newBudget->AddRef();
    if (budget) budget->Release();
    budget = newBudget;
}

void ORVPrtGraphicPrimitiveElt::AppendDuplicatedChild(ORVPrtGraphicPrimitiveElt& /*child*/) {}

ORVPrtGraphicPrimitiveElt* ORVPrtGraphicPrimitiveElt::CopyNode() const {
    ORVPrtPrimitiveBudget* const budget = GetBudget();
    if (budget && !budget->TakeDuplicate(GetPayloadBytes())) return nullptr;
    ORVPrtGraphicPrimitiveElt* copy = CopyWithoutChildren();
    if (copy)
        copy->identity_ = identity_;
    else if (budget)
        budget->NoteOutOfMemory();
    return copy;
}

ORVPrtGraphicPrimitiveElt* ORVPrtGraphicPrimitiveElt::Duplicate() const {
    try {
        return CopyTree();
    } catch (const std::bad_alloc&) {
        if (ORVPrtPrimitiveBudget* const budget = GetBudget()) budget->NoteOutOfMemory();
        return nullptr;
    }
}

ORVPrtGraphicPrimitiveElt* ORVPrtGraphicPrimitiveElt::CopyTree() const {
    ORVRef<ORVPrtGraphicPrimitiveElt> root(CopyNode());
    if (!root) return nullptr;

    // Stack frame of an open container: the original, its copy, and the next child to copy.
    struct Frame {
        const ORVPrtGraphicPrimitiveElt* original;
        ORVPrtGraphicPrimitiveElt* copy;
        std::size_t next;
    };
    std::vector<Frame> open{{this, root.get(), 0}};
    while (!open.empty()) {
        Frame& frame = open.back();
        const ORVPrtChildList* children = frame.original->GetChildList();
        if (!children || frame.next == children->size()) {
            open.pop_back();
            continue;
        }
        const ORVPrtGraphicPrimitiveElt* child = (*children)[frame.next++];
        const ORVRef<ORVPrtGraphicPrimitiveElt> copy(child->CopyNode());
        if (!copy) return nullptr;
        frame.copy->AppendDuplicatedChild(*copy);
        if (child->GetChildList()) open.push_back({child, copy.get(), 0});
    }
    return root.Detach();
}
