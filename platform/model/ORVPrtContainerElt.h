#pragma once

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

/// A primitive that holds other primitives. It keeps a reference to each child.
class ORV_PLATFORM_EXPORT ORVPrtContainerElt : public ORVPrtGraphicPrimitiveElt {
public:
    static const ORVMetaClass& MetaClass();

    /// Appends a child and references it. Null and the container itself are ignored.
    void AddChild(ORVPrtGraphicPrimitiveElt* child);
    /// Takes the last place where `child` stands out of the list and releases it.
    void RemoveChild(ORVPrtGraphicPrimitiveElt* child);
    const ORVPrtChildList& GetChildren() const { return children_; }
    const ORVPrtChildList* GetChildList() const override { return &children_; }

protected:
    explicit ORVPrtContainerElt(ORVPrtKind kind) : ORVPrtGraphicPrimitiveElt(kind) {}
    // A copy starts without children.
    ORVPrtContainerElt(const ORVPrtContainerElt& other) : ORVPrtGraphicPrimitiveElt(other) {}
    ~ORVPrtContainerElt() override;
    void AppendDuplicatedChild(ORVPrtGraphicPrimitiveElt& child) override { AddChild(&child); }

private:
    ORVPrtChildList children_;
};

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
