// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/mathematics/geometry.h"

/// An outline as generators take it: verbs and their points. Meant to be cleared and filled again, so that
/// drawing many shapes allocates once.
struct ORVPrintPath {
    /// What the next points are.
    enum class Verb : std::uint8_t {
        kMove,   ///< one point
        kLine,   ///< one point
        kCubic,  ///< two control points and the end point
        kClose,  ///< no point
    };
    std::vector<Verb> verbs;             ///< in order; the first is kMove
    std::vector<ORVMathPoint2D> points;  ///< of all verbs, in their order

    /// Whether there is nothing to draw.
    bool IsEmpty() const { return verbs.empty(); }
    /// Removes everything and keeps the memory.
    void Clear() {
        verbs.clear();
        points.clear();
    }
    /// Begins a contour.
    void MoveTo(const ORVMathPoint2D& p) {
        verbs.push_back(Verb::kMove);
        points.push_back(p);
    }
    /// Adds a straight segment.
    void LineTo(const ORVMathPoint2D& p) {
        verbs.push_back(Verb::kLine);
        points.push_back(p);
    }
    /// Adds a cubic Bézier segment.
    void CubicTo(const ORVMathPoint2D& control1, const ORVMathPoint2D& control2, const ORVMathPoint2D& end) {
        verbs.push_back(Verb::kCubic);
        points.insert(points.end(), {control1, control2, end});
    }
    /// Closes the contour by a straight segment to its start.
    void Close() { verbs.push_back(Verb::kClose); }
};
