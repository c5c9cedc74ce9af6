#pragma once

#include <cstdint>
#include <vector>

#include "platform/mathematics/geometry.h"

/// An outline as generators take it: verbs and their points. Meant to be cleared and filled again, so that
/// drawing many shapes allocates once.
struct ORVPrintPath {
    enum class Verb : std::uint8_t {
        kMove,   ///< one point
        kLine,   ///< one point
        kCubic,  ///< two control points and the end point
        kClose,  ///< no point
    };
    std::vector<Verb> verbs;
    std::vector<ORVMathPoint2D> points;

    bool IsEmpty() const { return verbs.empty(); }
    void Clear() {
        verbs.clear();
        points.clear();
    }
    void MoveTo(const ORVMathPoint2D& p) {
        verbs.push_back(Verb::kMove);
        points.push_back(p);
    }
    void LineTo(const ORVMathPoint2D& p) {
        verbs.push_back(Verb::kLine);
        points.push_back(p);
    }
    void CubicTo(const ORVMathPoint2D& control1, const ORVMathPoint2D& control2, const ORVMathPoint2D& end) {
        verbs.push_back(Verb::kCubic);
        points.insert(points.end(), {control1, control2, end});
    }
    void Close() { verbs.push_back(Verb::kClose); }
};
