// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtPointList.h"
#include "platform/model/carried_attributes.h"

/// Joined quadratic Bezier curves: the start point, then the control point and the end point of each curve.
class ORV_PLATFORM_EXPORT ORVPrtPolyQuadraticBezierElt final : public ORVPrtGraphicPrimitiveElt,
                                                               public ORVPrtStroked,
                                                               public ORVPrtTransformed,
                                                               public ORVPrtPointList {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtPolyQuadraticBezierElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kPolyQuadraticBezier) {}

    std::size_t GetPayloadBytes() const override { return GetPoints().size() * sizeof(ORVMathPoint2D); }

private:
    ORVPrtPolyQuadraticBezierElt(const ORVPrtPolyQuadraticBezierElt&) = default;
    ~ORVPrtPolyQuadraticBezierElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
