// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/filter_grid.h"

#include <algorithm>
#include <cmath>

namespace {

// Tolerance for rounding errors, in pixels.
constexpr double kUnseen = 1e-4;

/// Fractional part of a position.
double Fraction(double place) { return place - std::floor(place); }

/// The offset that aligns pixels with those of the device, for transformations that only mirror or swap axes.
/// @param factor  direction of the axis along the device's
double OriginOf(double factor, double place) { return factor < 0.0 ? Fraction(-place) : Fraction(place); }

}  // namespace

FilterGrid FilterGrid::Make(const ORVMathAffine2D& userToPage, double scale) {
    FilterGrid grid;
    const ORVMathAffine2D toDevice = ORVMathAffine2D::Scaling(scale, scale) * userToPage;
    const double tiny = 1e-9 * toDevice.Enlargement();
    const bool isParallel = std::fabs(toDevice.m12) <= tiny && std::fabs(toDevice.m21) <= tiny;
    const bool isSwapped = std::fabs(toDevice.m11) <= tiny && std::fabs(toDevice.m22) <= tiny;
    grid.xScale = std::hypot(toDevice.m11, toDevice.m21);
    grid.yScale = std::hypot(toDevice.m12, toDevice.m22);
    grid.fromUser = ORVMathAffine2D::Scaling(grid.xScale, grid.yScale);
    if (isParallel && toDevice.m11 > 0.0 && toDevice.m22 > 0.0) {
        grid.fromUser.dx = toDevice.dx;
        grid.fromUser.dy = toDevice.dy;
        grid.toPage = ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale);
        return grid;
    }
    if (isParallel) {
        grid.fromUser.dx = OriginOf(toDevice.m11, toDevice.dx);
        grid.fromUser.dy = OriginOf(toDevice.m22, toDevice.dy);
    } else if (isSwapped) {
        grid.fromUser.dx = OriginOf(toDevice.m21, toDevice.dy);
        grid.fromUser.dy = OriginOf(toDevice.m12, toDevice.dx);
    }
    grid.toPage = userToPage * ORVMathAffine2D::Scaling(1.0 / grid.xScale, 1.0 / grid.yScale) *
                  ORVMathAffine2D::Translation(-grid.fromUser.dx, -grid.fromUser.dy);
    return grid;
}

FilterBox FilterGrid::PixelsOf(const ORVMathBox2D& box) const {
    if (box.IsEmpty()) return {};
    constexpr double kFarthest = 1 << 28;
    const auto low = [&](double place) {
        return static_cast<int>(std::clamp(std::floor(place + kUnseen), -kFarthest, kFarthest));
    };
    const auto high = [&](double place) {
        return static_cast<int>(std::clamp(std::ceil(place - kUnseen), -kFarthest, kFarthest));
    };
    const int left = low(box.xMin * fromUser.m11 + fromUser.dx);
    const int top = low(box.yMin * fromUser.m22 + fromUser.dy);
    return {left, top, high(box.xMax * fromUser.m11 + fromUser.dx) - left,
            high(box.yMax * fromUser.m22 + fromUser.dy) - top};
}

ORVMathBox2D FilterGrid::FromPage(const ORVMathBox2D& box) const {
    const auto fromPage = toPage.Inverse();
    return fromPage ? box.MappedBy(*fromPage) : ORVMathBox2D();
}
