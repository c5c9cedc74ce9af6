// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// A straight line between two points.
class ORV_PLATFORM_EXPORT ORVPrtLineElt final : public ORVPrtGraphicPrimitiveElt,
                                                public ORVPrtStroked,
                                                public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtLineElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kLine) {}

    /// Start point, page units.
    void SetStartPoint(const ORVMathPoint2D& start) { start_ = start; }
    const ORVMathPoint2D& GetStartPoint() const { return start_; }
    /// End point, page units.
    void SetEndPoint(const ORVMathPoint2D& end) { end_ = end; }
    const ORVMathPoint2D& GetEndPoint() const { return end_; }

private:
    ORVPrtLineElt(const ORVPrtLineElt&) = default;
    ~ORVPrtLineElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D start_, end_;
};
