// SPDX-License-Identifier: Apache-2.0
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
    /// The children in drawing order, the first at the bottom.
    const ORVPrtChildList& GetChildren() const { return children_; }
    const ORVPrtChildList* GetChildList() const override { return &children_; }

protected:
    /// @param kind  of the derived class
    explicit ORVPrtContainerElt(ORVPrtKind kind) : ORVPrtGraphicPrimitiveElt(kind) {}
    /// A copy starts without children.
    ORVPrtContainerElt(const ORVPrtContainerElt& other) : ORVPrtGraphicPrimitiveElt(other) {}
    ~ORVPrtContainerElt() override;
    void AppendDuplicatedChild(ORVPrtGraphicPrimitiveElt& child) override { AddChild(&child); }

private:
    ORVPrtChildList children_;
};
