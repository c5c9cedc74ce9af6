// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/mathematics/geometry.h"

/// An outline as passed to generators: a list of verbs with their points. Can be cleared and refilled without
/// reallocating.
struct ORVPrintPath {
    /// Determines how the next points are used.
    enum class Verb : std::uint8_t {
        kMove,   ///< one point
        kLine,   ///< one point
        kCubic,  ///< two control points and the end point
        kClose,  ///< no points
    };
    std::vector<Verb> verbs;             ///< starts with kMove
    std::vector<ORVMathPoint2D> points;  ///< points of all verbs, concatenated

    /// Whether the outline is empty.
    bool IsEmpty() const { return verbs.empty(); }
    /// Removes all verbs and points but keeps the memory.
    void Clear() {
        verbs.clear();
        points.clear();
    }
    /// Starts a contour.
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
    /// Closes the contour with a straight segment to its start.
    void Close() { verbs.push_back(Verb::kClose); }
};
