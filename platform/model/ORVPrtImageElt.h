// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtContainerElt.h"
#include "platform/system/ORVRef.h"

class ORVPrtColourTable;

/// A page. Its origin is the lower left corner; coordinates are page units with y pointing up.
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
    /// Whether the page can be printed: width and height are positive, and origin and size are finite.
    bool HasArea() const {
        return width_ > 0.0 && height_ > 0.0 && std::isfinite(width_) && std::isfinite(height_) &&
               std::isfinite(origin_.x) && std::isfinite(origin_.y);
    }
    /// Height by which the drawing's y axis, which points down, is mirrored: y in the drawing corresponds to
    /// the page coordinate mirror height - y. Used to position what is stored in the drawing's coordinates,
    /// such as clipping boxes of texts. 0 if never set.
    void SetMirrorHeight(double height) { mirrorHeight_ = height; }
    double GetMirrorHeight() const { return mirrorHeight_; }
    /// Unit code of the coordinates: kUnitNinetiethInch.
    void SetUnits(int units) { units_ = units; }
    int GetUnits() const { return units_; }
    /// Linear transformation of the whole page about the origin of page units; the identity by default.
    void SetMatrix(const ORVMath2x2Matrix& matrix) { matrix_ = matrix; }
    const ORVMath2x2Matrix& GetMatrix() const { return matrix_; }
    /// Sets the colour table and adds a reference to it.
    void SetColourTable(ORVPrtColourTable* table);
    /// The colour table; null if never set.
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
