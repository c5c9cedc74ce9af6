// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtPointList.h"
#include "platform/model/carried_attributes.h"

/// A closed outline of straight segments.
class ORV_PLATFORM_EXPORT ORVPrtPolygonElt final : public ORVPrtGraphicPrimitiveElt,
                                                   public ORVPrtDrawStyled,
                                                   public ORVPrtFilled,
                                                   public ORVPrtTransformed,
                                                   public ORVPrtPointList {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtPolygonElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kPolygon) {}

    std::size_t GetPayloadBytes() const override { return GetPoints().size() * sizeof(ORVMathPoint2D); }

private:
    ORVPrtPolygonElt(const ORVPrtPolygonElt&) = default;
    ~ORVPrtPolygonElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
