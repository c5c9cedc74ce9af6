// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVSharedValue.h"

/// One elementary step of a transform.
struct ORVPrtTransformOperation {
    /// What the step does.
    enum Kind { kTranslate, kScaleX, kScaleY, kRotate, kSkewX, kSkewY, kMatrix };
    /// kTranslate: `a` and `b` are x and y in user units; scales: `a` is the factor; rotation and skews: `a`
    /// is the angle in radians; kMatrix: m11, m12, m21, m22.
    Kind kind = kTranslate;
    double a = 0.0, b = 0.0, c = 0.0, d = 0.0;  ///< as the kind says
    bool operator==(const ORVPrtTransformOperation&) const = default;
};

/// A list of elementary transforms, composed like calls on a canvas: each one added acts inside the ones
/// before it. A value: copies share their content until one changes.
class ORV_PLATFORM_EXPORT ORVPrtTransformAttributes {
public:
    /// A movement, user units.
    void AddTranslation(const ORVMathVector2D& by) {
        Add({ORVPrtTransformOperation::kTranslate, by.x, by.y});
    }
    /// A scaling along the x axis.
    void AddScaleX(double factor) { Add({ORVPrtTransformOperation::kScaleX, factor}); }
    /// A scaling along the y axis.
    void AddScaleY(double factor) { Add({ORVPrtTransformOperation::kScaleY, factor}); }
    /// Radians, from the x axis towards the y axis.
    void AddRotation(float angle) { Add({ORVPrtTransformOperation::kRotate, static_cast<double>(angle)}); }
    /// A skew along the x axis, radians.
    void AddSkewX(float angle) { Add({ORVPrtTransformOperation::kSkewX, static_cast<double>(angle)}); }
    /// A skew along the y axis, radians.
    void AddSkewY(float angle) { Add({ORVPrtTransformOperation::kSkewY, static_cast<double>(angle)}); }
    /// Any linear map.
    void AddMatrix(const ORVMath2x2Matrix& m) {
        Add({ORVPrtTransformOperation::kMatrix, m.m11, m.m12, m.m21, m.m22});
    }

    /// The steps, outermost first.
    const std::vector<ORVPrtTransformOperation>& GetOperations() const { return operations_.Get(); }
    /// Whether there is no step.
    bool IsEmpty() const { return operations_.Get().empty(); }
    /// The product of all operations.
    ORVMathAffine2D GetAffine() const;

    bool operator==(const ORVPrtTransformAttributes&) const = default;

private:
    void Add(const ORVPrtTransformOperation& operation) { operations_.Edit().push_back(operation); }

    ORVSharedValue<std::vector<ORVPrtTransformOperation>> operations_;
};
