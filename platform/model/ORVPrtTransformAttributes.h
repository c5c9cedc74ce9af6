// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVSharedValue.h"

/// One step of a transformation.
struct ORVPrtTransformOperation {
    /// Type of the step.
    enum Kind { kTranslate, kScaleX, kScaleY, kRotate, kSkewX, kSkewY, kMatrix };
    /// kTranslate: `a` and `b` are x and y in user units; kScaleX, kScaleY: `a` is the factor; kRotate,
    /// kSkewX, kSkewY: `a` is the angle in radians; kMatrix: m11, m12, m21, m22.
    Kind kind = kTranslate;
    double a = 0.0, b = 0.0, c = 0.0, d = 0.0;  ///< parameters; see `kind`
    bool operator==(const ORVPrtTransformOperation&) const = default;
};

/// A transformation as a list of steps, composed like calls on a canvas: each step is applied before the ones
/// added earlier. Copy-on-write value.
class ORV_PLATFORM_EXPORT ORVPrtTransformAttributes {
public:
    /// Appends a translation, user units.
    void AddTranslation(const ORVMathVector2D& by) {
        Add({ORVPrtTransformOperation::kTranslate, by.x, by.y});
    }
    /// Appends a scaling along the x axis.
    void AddScaleX(double factor) { Add({ORVPrtTransformOperation::kScaleX, factor}); }
    /// Appends a scaling along the y axis.
    void AddScaleY(double factor) { Add({ORVPrtTransformOperation::kScaleY, factor}); }
    /// Appends a rotation, radians, from the x axis towards the y axis.
    void AddRotation(float angle) { Add({ORVPrtTransformOperation::kRotate, static_cast<double>(angle)}); }
    /// Appends a skew along the x axis, radians.
    void AddSkewX(float angle) { Add({ORVPrtTransformOperation::kSkewX, static_cast<double>(angle)}); }
    /// Appends a skew along the y axis, radians.
    void AddSkewY(float angle) { Add({ORVPrtTransformOperation::kSkewY, static_cast<double>(angle)}); }
    /// Appends a linear transformation.
    void AddMatrix(const ORVMath2x2Matrix& m) {
        Add({ORVPrtTransformOperation::kMatrix, m.m11, m.m12, m.m21, m.m22});
    }

    /// The steps, outermost first.
    const std::vector<ORVPrtTransformOperation>& GetOperations() const { return operations_.Get(); }
    /// Whether there are no steps.
    bool IsEmpty() const { return operations_.Get().empty(); }
    /// The product of all steps.
    ORVMathAffine2D GetAffine() const;

    bool operator==(const ORVPrtTransformAttributes&) const = default;

private:
    void Add(const ORVPrtTransformOperation& operation) { operations_.Edit().push_back(operation); }

    ORVSharedValue<std::vector<ORVPrtTransformOperation>> operations_;
};
