// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtContainerElt.h"
#include "platform/system/ORVRef.h"

class ORVPrtColourTable;

/// A page. Its rectangle is origin (lower left corner) and size, in page units with y pointing up.
class ORV_PLATFORM_EXPORT ORVPrtImageElt final : public ORVPrtContainerElt {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtImageElt();

    /// Lower left corner of the page, page units.
    void SetOrigin(const ORVMathPoint2D& origin) { origin_ = origin; }
    const ORVMathPoint2D& GetOrigin() const { return origin_; }
    /// Width and height of the page, page units.
    void SetSize(double width, double height) { width_ = width, height_ = height; }
    void GetSize(double& width, double& height) const { width = width_, height = height_; }
    /// Whether the page can be printed: width and height are positive, and all of its rectangle is finite.
    bool HasArea() const {
        return width_ > 0.0 && height_ > 0.0 && std::isfinite(width_) && std::isfinite(height_) &&
               std::isfinite(origin_.x) && std::isfinite(origin_.y);
    }
    /// The height that the drawing's own y axis, which points down, is mirrored against: a point there lies
    /// at this height less y in page units. What keeps the drawing's own coordinates, such as the clipping
    /// boxes of texts, is placed by it. 0 when never set.
    void SetMirrorHeight(double height) { mirrorHeight_ = height; }
    double GetMirrorHeight() const { return mirrorHeight_; }
    /// Unit code of the page's coordinates: kUnitNinetiethInch.
    void SetUnits(int units) { units_ = units; }
    int GetUnits() const { return units_; }
    /// Acts on all of the page, about the origin of page units; the identity by default.
    void SetMatrix(const ORVMath2x2Matrix& matrix) { matrix_ = matrix; }
    const ORVMath2x2Matrix& GetMatrix() const { return matrix_; }
    /// Keeps a reference of its own.
    void SetColourTable(ORVPrtColourTable* table);
    /// Null when never set.
    ORVPrtColourTable* GetColourTable() const { return colours_.get(); }

private:
    ORVPrtImageElt(const ORVPrtImageElt&) = default;
    ~ORVPrtImageElt() override;
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVMathPoint2D origin_;
    double width_ = 0.0, height_ = 0.0;
    double mirrorHeight_ = 0.0;
    int units_ = 0;
    ORVMath2x2Matrix matrix_;
    ORVRef<ORVPrtColourTable> colours_;
};
