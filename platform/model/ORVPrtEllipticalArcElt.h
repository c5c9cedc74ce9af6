// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// An arc of an ellipse, from the start angle to the end angle; backwards when the start is larger. Both are
/// in radians and measured from the first axis of the ellipse, whose own angle is the slope.
class ORV_PLATFORM_EXPORT ORVPrtEllipticalArcElt final : public ORVPrtGraphicPrimitiveElt,
                                                         public ORVPrtDrawStyled,
                                                         public ORVPrtFilled,
                                                         public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtEllipticalArcElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kEllipticalArc) {}

    /// Centre, page units.
    void SetCenter(const ORVMathPoint2D& center) { center_ = center; }
    const ORVMathPoint2D& GetCenter() const { return center_; }
    /// Radius along the first axis, page units.
    void SetHorzRadius(double radius) { horzRadius_ = radius; }
    double GetHorzRadius() const { return horzRadius_; }
    /// Radius along the second axis, page units.
    void SetVertRadius(double radius) { vertRadius_ = radius; }
    double GetVertRadius() const { return vertRadius_; }
    /// Start angle, radians.
    void SetStartAngle(float angle) { startAngle_ = angle; }
    float GetStartAngle() const { return startAngle_; }
    /// End angle, radians.
    void SetEndAngle(float angle) { endAngle_ = angle; }
    float GetEndAngle() const { return endAngle_; }
    /// Angle of the first axis, radians, counter-clockwise from the x axis.
    void SetSlope(float slope) { slope_ = slope; }
    float GetSlope() const { return slope_; }

private:
    ORVPrtEllipticalArcElt(const ORVPrtEllipticalArcElt&) = default;
    ~ORVPrtEllipticalArcElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D center_;
    double horzRadius_ = 0.0, vertRadius_ = 0.0;
    float startAngle_ = 0.0F, endAngle_ = 0.0F, slope_ = 0.0F;
};
