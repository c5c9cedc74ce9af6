// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

/// Base class of primitives with children. Holds a reference to each child.
class ORV_PLATFORM_EXPORT ORVPrtContainerElt : public ORVPrtGraphicPrimitiveElt {
public:
    static const ORVMetaClass& MetaClass();

    /// Appends a child and adds a reference. Null and the container itself are ignored.
    void AddChild(ORVPrtGraphicPrimitiveElt* child);
    /// Removes the last occurrence of `child` and releases its reference.
    void RemoveChild(ORVPrtGraphicPrimitiveElt* child);
    /// The children in drawing order, bottom first.
    const ORVPrtChildList& GetChildren() const { return children_; }
    const ORVPrtChildList* GetChildList() const override { return &children_; }

protected:
    /// @param kind  kind of the derived class
    explicit ORVPrtContainerElt(ORVPrtKind kind) : ORVPrtGraphicPrimitiveElt(kind) {}
    /// The copy has no children.
    ORVPrtContainerElt(const ORVPrtContainerElt& other) : ORVPrtGraphicPrimitiveElt(other) {}
    ~ORVPrtContainerElt() override;
    void AppendDuplicatedChild(ORVPrtGraphicPrimitiveElt& child) override { AddChild(&child); }

private:
    ORVPrtChildList children_;
};
