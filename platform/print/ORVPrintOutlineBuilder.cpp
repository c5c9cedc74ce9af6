// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintOutlineBuilder.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/mathematics/constants.h"
#include "platform/model/visit_primitive.h"
#include "platform/print/ellipse_frame.h"

namespace {

bool IsFinite(const ORVMathPoint2D& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

ORVMathPoint2D Mix(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

double Reach(const ORVEllipseFrame& ellipse) {
    return std::max(std::hypot(ellipse.first.x, ellipse.first.y),
                    std::hypot(ellipse.second.x, ellipse.second.y));
}

/// Whether the coordinates of an ellipse, including the control points of its curves, are small enough to
/// compute with.
bool IsCountable(const ORVEllipseFrame& ellipse) {
    constexpr double kFarthest = std::numeric_limits<double>::max() / 16.0;
    return ellipse.IsFinite() && Reach(ellipse) < kFarthest && std::fabs(ellipse.center.x) < kFarthest &&
           std::fabs(ellipse.center.y) < kFarthest;
}

// A cubic curve deviates from a quarter circle by 0.027 % of the radius, from an eighth by 0.0004 %. Up to
// this radius (page units), a quarter per curve is accurate enough for any printer.
constexpr double kLargestQuarterRadius = 30.0;

}  // namespace

bool ORVPrintOutlineBuilder::IsNear(const ORVMathPoint2D& a, const ORVMathPoint2D& b) const {
    // Angles of arcs are floats, so the end of an arc may differ by this much from the start of the next
    // primitive.
    const double tolerance = 2e-6 * (std::fabs(a.x) + std::fabs(a.y) + reach_) + 1e-9;
    return std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance;
}

bool ORVPrintOutlineBuilder::ContinuesAt(const ORVMathPoint2D& start) const {
    return open_ && IsNear(path_.points.back(), map_(start));
}

void ORVPrintOutlineBuilder::Start(const ORVMathPoint2D& mapped) {
    if (!open_) {
        open_ = true;
        reach_ = 0.0;
        contourStart_ = mapped;
        firstVerb_ = path_.verbs.size();
        path_.MoveTo(mapped);
    } else if (IsNear(path_.points.back(), mapped)) {
        path_.points.back() = mapped;  // use the exact start of the next primitive, to avoid a tiny edge
    } else {
        path_.LineTo(mapped);
    }
}

void ORVPrintOutlineBuilder::LineTo(const ORVMathPoint2D& mapped) { path_.LineTo(mapped); }

void ORVPrintOutlineBuilder::EndContour() {
    if (!open_) return;
    open_ = false;
    const std::size_t verbs = path_.verbs.size() - firstVerb_;
    // A single edge encloses nothing, unless it is a curve.
    const bool hasInside = verbs > 2 || (verbs == 2 && path_.verbs.back() == ORVPrintPath::Verb::kCubic);
    if (hasInside && IsNear(path_.points.back(), contourStart_)) path_.Close();
}

void ORVPrintOutlineBuilder::AddClosed(const std::vector<ORVMathPoint2D>& points) {
    EndContour();
    bool first = true;
    for (const ORVMathPoint2D& p : points) {
        const ORVMathPoint2D mapped = map_(p);
        if (!IsFinite(mapped)) continue;
        if (first)
            path_.MoveTo(mapped);
        else
            path_.LineTo(mapped);
        first = false;
    }
    if (!first) path_.Close();
}

void ORVPrintOutlineBuilder::AppendArc(const ORVEllipseFrame& mapped, double start, double sweep) {
    const double stepLimit = Reach(mapped) * scale_ > kLargestQuarterRadius ? ORVPI / 4.0 : ORVPI / 2.0;
    // Tolerates rounding, so that a whole number of steps is not increased.
    const int steps = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / stepLimit - 1e-6)));
    const double step = sweep / steps;
    const double handle = 4.0 / 3.0 * std::tan(step / 4.0);
    const auto tangent = [&mapped](double angle) {
        const double c = std::cos(angle), s = std::sin(angle);
        return ORVMathVector2D{mapped.second.x * c - mapped.first.x * s,
                               mapped.second.y * c - mapped.first.y * s};
    };
    ORVMathPoint2D from = path_.points.back();
    ORVMathVector2D fromTangent = tangent(start);
    for (int i = 1; i <= steps; ++i) {
        const double angle = start + step * i;
        const ORVMathPoint2D to = mapped.At(angle);
        const ORVMathVector2D toTangent = tangent(angle);
        path_.CubicTo({from.x + handle * fromTangent.x, from.y + handle * fromTangent.y},
                      {to.x - handle * toTangent.x, to.y - handle * toTangent.y}, to);
        from = to;
        fromTangent = toTangent;
    }
}

void ORVPrintOutlineBuilder::AddFullEllipse(const ORVEllipseFrame& ellipse) {
    EndContour();
    const ORVEllipseFrame mapped = ellipse.MappedBy(map_);
    if (!IsCountable(mapped)) return;
    // Dashes start at the end of the first axis and run clockwise on the page, where y points down.
    const ORVMathPoint2D start = mapped.At(0.0);
    path_.MoveTo(start);
    AppendArc(mapped, 0.0, -ORV2PI);
    path_.points.back() = start;
    path_.Close();
}

void ORVPrintOutlineBuilder::Add(const ORVPrtRectangleElt& rectangle) {
    const ORVMathPoint2D& a = rectangle.GetFirstPoint();
    const ORVMathPoint2D& b = rectangle.GetSecondPoint();
    if (!IsFinite(a) || !IsFinite(b)) return;
    AddClosed({a, {b.x, a.y}, b, {a.x, b.y}});
}

void ORVPrintOutlineBuilder::Add(const ORVPrtCircleElt& circle) {
    if (!(circle.GetRadius() > 0.0)) return;
    AddFullEllipse(
        ORVEllipseFrame::FromRadii(circle.GetCenter(), circle.GetRadius(), circle.GetRadius(), 0.0));
}

void ORVPrintOutlineBuilder::Add(const ORVPrtEllipseElt& ellipse) {
    if (!(ellipse.GetHorzRadius() > 0.0) || !(ellipse.GetVertRadius() > 0.0)) return;
    AddFullEllipse(ORVEllipseFrame::FromRadii(ellipse.GetCenter(), ellipse.GetHorzRadius(),
                                              ellipse.GetVertRadius(),
                                              static_cast<double>(ellipse.GetSlope())));
}

void ORVPrintOutlineBuilder::Add(const ORVPrtEllipticalArcElt& arc) {
    const ORVEllipseFrame mapped =
        ORVEllipseFrame::FromRadii(arc.GetCenter(), arc.GetHorzRadius(), arc.GetVertRadius(),
                                   static_cast<double>(arc.GetSlope()))
            .MappedBy(map_);
    const double start = static_cast<double>(arc.GetStartAngle());
    double sweep = static_cast<double>(arc.GetEndAngle()) - start;
    if (!IsCountable(mapped) || !std::isfinite(start) || !std::isfinite(sweep)) return;
    // Turns beyond two would not be visible; limits the number of curves.
    if (std::fabs(sweep) > 2.0 * ORV2PI) sweep = std::fmod(sweep, ORV2PI) + std::copysign(ORV2PI, sweep);
    if (open_) reach_ = std::max(reach_, Reach(mapped));
    Start(mapped.At(start));
    reach_ = std::max(reach_, Reach(mapped));
    AppendArc(mapped, start, sweep);
}

void ORVPrintOutlineBuilder::Add(const ORVPrtLineElt& line) {
    const ORVMathPoint2D start = map_(line.GetStartPoint()), end = map_(line.GetEndPoint());
    if (!IsFinite(start) || !IsFinite(end)) return;
    Start(start);
    LineTo(end);
}

void ORVPrintOutlineBuilder::Add(const ORVPrtPolylineElt& polyline) {
    bool first = true;
    for (const ORVMathPoint2D& p : polyline.GetPoints()) {
        const ORVMathPoint2D mapped = map_(p);
        if (!IsFinite(mapped)) continue;
        if (first)
            Start(mapped);
        else
            LineTo(mapped);
        first = false;
    }
}

void ORVPrintOutlineBuilder::Add(const ORVPrtPolygonElt& polygon) { AddClosed(polygon.GetPoints()); }

void ORVPrintOutlineBuilder::Add(const ORVPrtPolyCubicBezierElt& curve) {
    const std::vector<ORVMathPoint2D>& points = curve.GetPoints();
    for (std::size_t i = 0; i + 3 < points.size(); i += 3) {
        const ORVMathPoint2D start = map_(points[i]), control1 = map_(points[i + 1]),
                             control2 = map_(points[i + 2]), end = map_(points[i + 3]);
        if (!IsFinite(start) || !IsFinite(control1) || !IsFinite(control2) || !IsFinite(end)) continue;
        Start(start);
        path_.CubicTo(control1, control2, end);
    }
}

void ORVPrintOutlineBuilder::Add(const ORVPrtPolyQuadraticBezierElt& curve) {
    const std::vector<ORVMathPoint2D>& points = curve.GetPoints();
    for (std::size_t i = 0; i + 2 < points.size(); i += 2) {
        const ORVMathPoint2D start = map_(points[i]), control = map_(points[i + 1]),
                             end = map_(points[i + 2]);
        // The same curve as a cubic one.
        const ORVMathPoint2D control1 = Mix(start, control, 2.0 / 3.0),
                             control2 = Mix(end, control, 2.0 / 3.0);
        if (!IsFinite(start) || !IsFinite(control1) || !IsFinite(control2) || !IsFinite(end)) continue;
        Start(start);
        path_.CubicTo(control1, control2, end);
    }
}
