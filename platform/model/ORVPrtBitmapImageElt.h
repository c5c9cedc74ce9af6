// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/carried_attributes.h"

/// A raster image in a rectangle whose lower left corner is the origin.
class ORV_PLATFORM_EXPORT ORVPrtBitmapImageElt final : public ORVPrtGraphicPrimitiveElt,
                                                       public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtBitmapImageElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kBitmapImage) {}

    /// Lower left corner of the rectangle, page units.
    void SetOrigin(const ORVMathPoint2D& origin) { origin_ = origin; }
    const ORVMathPoint2D& GetOrigin() const { return origin_; }
    /// Size of the rectangle, page units.
    void SetSize(double width, double height) { width_ = width, height_ = height; }
    void GetSize(double& width, double& height) const { width = width_, height = height_; }
    /// Rotation of the rectangle about its origin, radians.
    void SetOrientation(float orientation) { orientation_ = orientation; }
    float GetOrientation() const { return orientation_; }
    /// Stores a reference to the image; null removes it.
    void SetPixelImage(ORVPixelImage* image) { image_ = ORVRef<ORVPixelImage>::Share(image); }
    ORVPixelImage* GetPixelImage() const { return image_.get(); }

private:
    ORVPrtBitmapImageElt(const ORVPrtBitmapImageElt&) = default;
    ~ORVPrtBitmapImageElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D origin_;
    double width_ = 0.0, height_ = 0.0;
    float orientation_ = 0.0F;
    ORVRef<ORVPixelImage> image_;
};
