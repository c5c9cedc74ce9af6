// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtTransformAttributes.h"

#include <cmath>

namespace {

ORVMathAffine2D ToAffine(const ORVPrtTransformOperation& operation) {
    const double a = operation.a;
    switch (operation.kind) {
        case ORVPrtTransformOperation::kTranslate: return ORVMathAffine2D::Translation(a, operation.b);
        case ORVPrtTransformOperation::kScaleX: return ORVMathAffine2D::Scaling(a, 1.0);
        case ORVPrtTransformOperation::kScaleY: return ORVMathAffine2D::Scaling(1.0, a);
        case ORVPrtTransformOperation::kRotate:
            return {std::cos(a), -std::sin(a), std::sin(a), std::cos(a), 0.0, 0.0};
        case ORVPrtTransformOperation::kSkewX: return {1.0, std::tan(a), 0.0, 1.0, 0.0, 0.0};
        case ORVPrtTransformOperation::kSkewY: return {1.0, 0.0, std::tan(a), 1.0, 0.0, 0.0};
        case ORVPrtTransformOperation::kMatrix: break;
    }
    return {a, operation.b, operation.c, operation.d, 0.0, 0.0};
}

}  // namespace

ORVMathAffine2D ORVPrtTransformAttributes::GetAffine() const {
    ORVMathAffine2D product;
    for (const ORVPrtTransformOperation& operation : GetOperations()) product = product * ToAffine(operation);
    return product;
}
