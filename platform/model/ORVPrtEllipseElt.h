#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// An ellipse; its first axis is turned by the slope. Radii of 0 or less draw nothing.
class ORV_PLATFORM_EXPORT ORVPrtEllipseElt final : public ORVPrtGraphicPrimitiveElt,
                                                   public ORVPrtFilled,
                                                   public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtEllipseElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kEllipse) {}

    void SetCenter(const ORVMathPoint2D& center) { center_ = center; }
    const ORVMathPoint2D& GetCenter() const { return center_; }
    void SetHorzRadius(double radius) { horzRadius_ = radius; }
    double GetHorzRadius() const { return horzRadius_; }
    void SetVertRadius(double radius) { vertRadius_ = radius; }
    double GetVertRadius() const { return vertRadius_; }
    /// Radians.
    void SetSlope(float slope) { slope_ = slope; }
    float GetSlope() const { return slope_; }

private:
    ORVPrtEllipseElt(const ORVPrtEllipseElt&) = default;
    ~ORVPrtEllipseElt() override = default;  // through Release() only
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D center_;
    double horzRadius_ = 0.0, vertRadius_ = 0.0;
    float slope_ = 0.0F;
};
