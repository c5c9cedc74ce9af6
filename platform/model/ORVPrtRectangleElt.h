// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// A rectangle given by two opposite corners.
class ORV_PLATFORM_EXPORT ORVPrtRectangleElt final : public ORVPrtGraphicPrimitiveElt,
                                                     public ORVPrtDrawStyled,
                                                     public ORVPrtFilled,
                                                     public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtRectangleElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kRectangle) {}

    /// Sets two opposite corners, page units.
    void SetPoints(const ORVMathPoint2D& first, const ORVMathPoint2D& second) {
        first_ = first, second_ = second;
    }
    /// One corner.
    const ORVMathPoint2D& GetFirstPoint() const { return first_; }
    /// The opposite corner.
    const ORVMathPoint2D& GetSecondPoint() const { return second_; }

private:
    ORVPrtRectangleElt(const ORVPrtRectangleElt&) = default;
    ~ORVPrtRectangleElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D first_, second_;
};
