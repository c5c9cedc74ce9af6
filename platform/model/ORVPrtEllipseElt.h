// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// An ellipse whose first axis has the angle GetSlope(). A radius of 0 or less draws nothing.
class ORV_PLATFORM_EXPORT ORVPrtEllipseElt final : public ORVPrtGraphicPrimitiveElt,
                                                   public ORVPrtDrawStyled,
                                                   public ORVPrtFilled,
                                                   public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtEllipseElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kEllipse) {}

    /// Centre, page units.
    void SetCenter(const ORVMathPoint2D& center) { center_ = center; }
    const ORVMathPoint2D& GetCenter() const { return center_; }
    /// Radius along the first axis, page units.
    void SetHorzRadius(double radius) { horzRadius_ = radius; }
    double GetHorzRadius() const { return horzRadius_; }
    /// Radius along the second axis, page units.
    void SetVertRadius(double radius) { vertRadius_ = radius; }
    double GetVertRadius() const { return vertRadius_; }
    /// Angle of the first axis, radians, counter-clockwise from the x axis.
    void SetSlope(float slope) { slope_ = slope; }
    float GetSlope() const { return slope_; }

private:
    ORVPrtEllipseElt(const ORVPrtEllipseElt&) = default;
    ~ORVPrtEllipseElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D center_;
    double horzRadius_ = 0.0, vertRadius_ = 0.0;
    float slope_ = 0.0F;
};
