// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtPointList.h"
#include "platform/model/carried_attributes.h"

/// Joined cubic Bezier curves: the start point, then two control points and the end point of each curve.
class ORV_PLATFORM_EXPORT ORVPrtPolyCubicBezierElt final : public ORVPrtGraphicPrimitiveElt,
                                                           public ORVPrtStroked,
                                                           public ORVPrtTransformed,
                                                           public ORVPrtPointList {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtPolyCubicBezierElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kPolyCubicBezier) {}

    std::size_t GetPayloadBytes() const override { return GetPoints().size() * sizeof(ORVMathPoint2D); }

private:
    ORVPrtPolyCubicBezierElt(const ORVPrtPolyCubicBezierElt&) = default;
    ~ORVPrtPolyCubicBezierElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
