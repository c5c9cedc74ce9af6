// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "platform/mathematics/geometry.h"

/// The points of a primitive, in page units.
struct ORVPrtPointList {
    /// @param points  `count` pairs x, y; copied
    void SetPoints(const double* points, std::size_t count) {
        points_.resize(count);
        for (std::size_t i = 0; i < count; ++i) points_[i] = {points[2 * i], points[2 * i + 1]};
    }
    /// Sets the points without copying.
    void SetPoints(std::vector<ORVMathPoint2D> points) { points_ = std::move(points); }
    /// Empty if never set.
    const std::vector<ORVMathPoint2D>& GetPoints() const { return points_; }
    /// Removes all points and frees their memory.
    void ForgetPoints() { std::vector<ORVMathPoint2D>().swap(points_); }

private:
    std::vector<ORVMathPoint2D> points_;
};
