// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtPointList.h"
#include "platform/model/carried_attributes.h"

/// Straight segments through a list of points.
class ORV_PLATFORM_EXPORT ORVPrtPolylineElt final : public ORVPrtGraphicPrimitiveElt,
                                                    public ORVPrtStroked,
                                                    public ORVPrtTransformed,
                                                    public ORVPrtPointList {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtPolylineElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kPolyline) {}

    std::size_t GetPayloadBytes() const override { return GetPoints().size() * sizeof(ORVMathPoint2D); }

private:
    ORVPrtPolylineElt(const ORVPrtPolylineElt&) = default;
    ~ORVPrtPolylineElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
