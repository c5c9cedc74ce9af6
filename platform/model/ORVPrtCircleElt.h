// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// A circle. A radius of 0 or less draws nothing.
class ORV_PLATFORM_EXPORT ORVPrtCircleElt final : public ORVPrtGraphicPrimitiveElt,
                                                  public ORVPrtDrawStyled,
                                                  public ORVPrtFilled,
                                                  public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtCircleElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kCircle) {}

    /// Centre, page units.
    void SetCenter(const ORVMathPoint2D& center) { center_ = center; }
    const ORVMathPoint2D& GetCenter() const { return center_; }
    /// Radius, page units.
    void SetRadius(double radius) { radius_ = radius; }
    double GetRadius() const { return radius_; }

private:
    ORVPrtCircleElt(const ORVPrtCircleElt&) = default;
    ~ORVPrtCircleElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D center_;
    double radius_ = 0.0;
};
