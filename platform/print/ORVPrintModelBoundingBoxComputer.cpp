// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "platform/mathematics/constants.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/model/visit_primitive.h"
#include "platform/print/ellipse_frame.h"
#include "platform/print/text_placement.h"

namespace {

using Points = std::vector<ORVMathPoint2D>;

bool IsFinite(const ORVMathPoint2D& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// Adds the transformed points of a primitive without children to a box. One overload for each class with
/// geometry.
class LeafBox {
public:
    /// @param isSet  set to false at a text that cannot be set correctly
    LeafBox(ORVMathBox2D& box, const ORVMathAffine2D& map, bool& isSet)
        : box_(box), map_(map), isSet_(isSet) {}

    void operator()(const ORVPrtRectangleElt& rectangle) {
        AddBox(rectangle.GetFirstPoint(), rectangle.GetSecondPoint());
    }
    void operator()(const ORVPrtCircleElt& circle) {
        AddEllipse(
            ORVEllipseFrame::FromRadii(circle.GetCenter(), circle.GetRadius(), circle.GetRadius(), 0.0));
    }
    void operator()(const ORVPrtEllipseElt& ellipse) {
        AddEllipse(ORVEllipseFrame::FromRadii(ellipse.GetCenter(), ellipse.GetHorzRadius(),
                                              ellipse.GetVertRadius(),
                                              static_cast<double>(ellipse.GetSlope())));
    }
    void operator()(const ORVPrtEllipticalArcElt& arc) {
        AddArc(ORVEllipseFrame::FromRadii(arc.GetCenter(), arc.GetHorzRadius(), arc.GetVertRadius(),
                                          static_cast<double>(arc.GetSlope())),
               static_cast<double>(arc.GetStartAngle()), static_cast<double>(arc.GetEndAngle()));
    }
    void operator()(const ORVPrtLineElt& line) {
        Add(line.GetStartPoint());
        Add(line.GetEndPoint());
    }
    void operator()(const ORVPrtPolylineElt& polyline) { AddAll(polyline.GetPoints()); }
    void operator()(const ORVPrtPolygonElt& polygon) { AddAll(polygon.GetPoints()); }
    void operator()(const ORVPrtPolyCubicBezierElt& curve) {
        const Points& points = curve.GetPoints();
        if (!points.empty()) Add(points.front());
        for (std::size_t i = 0; i + 3 < points.size(); i += 3) {
            const std::array mapped{map_(points[i]), map_(points[i + 1]), map_(points[i + 2]),
                                    map_(points[i + 3])};
            AddCubic(mapped);
        }
    }
    void operator()(const ORVPrtPolyQuadraticBezierElt& curve) {
        const Points& points = curve.GetPoints();
        if (!points.empty()) Add(points.front());
        for (std::size_t i = 0; i + 2 < points.size(); i += 2)
            AddQuadratic({map_(points[i]), map_(points[i + 1]), map_(points[i + 2])});
    }
    void operator()(const ORVPrtTextElt& text) {
        const ORVTextExtent extent = ORVMeasureText(text.GetText(), ORVTextStyleOf(text));
        isSet_ = extent.isSet;
        if (!isSet_) return;
        const ORVTextPlacement placement = ORVPlaceText(text, extent);
        box_.Unite(placement.box.MappedBy(map_ * placement.toModel));
    }
    void operator()(const ORVPrtBitmapImageElt& bitmap) {
        double width = 0.0, height = 0.0;
        bitmap.GetSize(width, height);
        const ORVMathPoint2D& origin = bitmap.GetOrigin();
        const ORVEllipseFrame axes =
            ORVEllipseFrame::FromRadii(origin, width, height, static_cast<double>(bitmap.GetOrientation()));
        Add(origin);
        Add({origin.x + axes.first.x, origin.y + axes.first.y});
        Add({origin.x + axes.second.x, origin.y + axes.second.y});
        Add({origin.x + axes.first.x + axes.second.x, origin.y + axes.first.y + axes.second.y});
    }
    // Containers have no geometry of their own; the walk handles their children.
    void operator()(const ORVPrtContainerElt& /*container*/) {}

private:
    void Add(const ORVMathPoint2D& p) { box_.Add(map_(p)); }
    void AddAll(const Points& points) {
        for (const ORVMathPoint2D& p : points) Add(p);
    }
    void AddBox(const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
        Add(a);
        Add({b.x, a.y});
        Add({a.x, b.y});
        Add(b);
    }

    void AddEllipse(const ORVEllipseFrame& ellipse) {
        const ORVEllipseFrame mapped = ellipse.MappedBy(map_);
        const double halfWidth = std::hypot(mapped.first.x, mapped.second.x);
        const double halfHeight = std::hypot(mapped.first.y, mapped.second.y);
        box_.Add({mapped.center.x - halfWidth, mapped.center.y - halfHeight});
        box_.Add({mapped.center.x + halfWidth, mapped.center.y + halfHeight});
    }

    void AddArc(const ORVEllipseFrame& ellipse, double start, double end) {
        const ORVEllipseFrame mapped = ellipse.MappedBy(map_);
        if (!std::isfinite(start) || !std::isfinite(end)) return;
        // Both directions sweep the same points.
        if (start > end) std::swap(start, end);
        if (end - start >= ORV2PI) return AddEllipse(ellipse);
        box_.Add(mapped.At(start));
        box_.Add(mapped.At(end));
        // A coordinate c + a cos t + b sin t is extreme where tan t = b / a, twice per turn.
        for (const double extreme :
             {std::atan2(mapped.second.x, mapped.first.x), std::atan2(mapped.second.y, mapped.first.y)}) {
            const double first = extreme + std::ceil((start - extreme) / ORVPI) * ORVPI;
            for (const double angle : {first, first + ORVPI})
                if (angle <= end) box_.Add(mapped.At(angle));
        }
    }

    static ORVMathPoint2D Mix(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double t) {
        return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
    }

    void AddQuadratic(const std::array<ORVMathPoint2D, 3>& p) {
        box_.Add(p[2]);
        if (!IsFinite(p[0]) || !IsFinite(p[1]) || !IsFinite(p[2])) return;
        const auto addAt = [&](double a, double b, double c) {
            const double divisor = a - 2.0 * b + c;
            if (divisor == 0.0) return;
            const double t = (a - b) / divisor;
            if (t > 0.0 && t < 1.0) box_.Add(Mix(Mix(p[0], p[1], t), Mix(p[1], p[2], t), t));
        };
        addAt(p[0].x, p[1].x, p[2].x);
        addAt(p[0].y, p[1].y, p[2].y);
    }

    void AddCubic(const std::array<ORVMathPoint2D, 4>& p) {
        box_.Add(p[3]);
        for (const ORVMathPoint2D& point : p)
            if (!IsFinite(point)) return;
        const auto addAt = [&](double dividend, double divisor) {
            if (divisor == 0.0) return;
            const double t = dividend / divisor;
            if (!(t > 0.0 && t < 1.0)) return;
            const ORVMathPoint2D middle = Mix(p[1], p[2], t);
            box_.Add(Mix(Mix(Mix(p[0], p[1], t), middle, t), Mix(middle, Mix(p[2], p[3], t), t), t));
        };
        const auto addExtrema = [&](double p0, double p1, double p2, double p3) {
            // One third of the derivative: a t^2 + b t + c.
            const double a = p3 - p0 + 3.0 * (p1 - p2), b = 2.0 * (p0 - 2.0 * p1 + p2), c = p1 - p0;
            const double discriminant = b * b - 4.0 * a * c;
            if (discriminant < 0.0) return;
            // One root adds numbers of the same sign and the other follows from their product, so that no
            // digits cancel; a = 0 gives the root of the linear equation.
            const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
            addAt(q, a);
            addAt(c, q);
        };
        addExtrema(p[0].x, p[1].x, p[2].x, p[3].x);
        addExtrema(p[0].y, p[1].y, p[2].y, p[3].y);
    }

    ORVMathBox2D& box_;
    const ORVMathAffine2D& map_;
    bool& isSet_;
};

/// A container being walked.
struct Frame {
    const ORVPrtChildList* children;
    std::size_t next;
    ORVMathAffine2D map;
};

ORVMathAffine2D OwnMap(const ORVPrtGraphicPrimitiveElt& primitive) {
    ORVMathAffine2D map;
    VisitPrimitive(primitive, [&map]<class Primitive>(const Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>)
            if (!one.GetTransformAttributes().IsEmpty()) map = one.GetTransformAttributes().GetAffine();
    });
    return map;
}

bool HasNoBox(ORVPrtKind kind) { return kind == ORVPrtKind::kPattern || kind == ORVPrtKind::kOther; }

/// Number of visits that a primitive counts as: long point lists take longer, and text must be laid out.
std::uint64_t VisitsOf(const ORVPrtGraphicPrimitiveElt& primitive) {
    constexpr std::uint64_t kVisitsPerByteOfText = 2;
    const std::uint64_t bytes = primitive.GetPayloadBytes();
    return 1 +
           (primitive.GetKind() == ORVPrtKind::kText ? bytes * kVisitsPerByteOfText : bytes / kPayloadUnit);
}

/// Adds everything in the open frames to the box. @return false when the limit was reached or a text cannot
/// be set
bool WalkFrames(std::vector<Frame>& open, ORVMathBox2D& box, std::uint64_t& visitsLeft, bool& isSet) {
    while (!open.empty()) {
        Frame& frame = open.back();
        if (frame.next == frame.children->size()) {
            open.pop_back();
            continue;
        }
        const ORVPrtGraphicPrimitiveElt& child = *(*frame.children)[frame.next++];
        const std::uint64_t visits = VisitsOf(child);
        if (visits > visitsLeft) {
            visitsLeft = 0;
            return false;
        }
        visitsLeft -= visits;
        if (HasNoBox(child.GetKind())) continue;
        const ORVMathAffine2D map = frame.map * OwnMap(child);
        if (const ORVPrtChildList* children = child.GetChildList())
            open.push_back({children, 0, map});
        else
            VisitPrimitive(child, LeafBox(box, map, isSet));
        if (!isSet) return false;
    }
    return true;
}

}  // namespace

bool ORVPrintModelBoundingBoxComputer::Walk(const ORVPrtChildList& children, ORVMathBox2D& box) {
    std::vector<Frame> open{{&children, 0, {}}};
    bool isSet = true;
    if (!budget_) return WalkFrames(open, box, visitsLeft_, isSet);
    const std::uint64_t before = budget_->GetVisitsLeft();
    std::uint64_t left = before;
    const bool complete = WalkFrames(open, box, left, isSet);
    if (!isSet) budget_->NoteUnsetText();
    budget_->NoteVisits(before - left);
    return complete;
}

int ORVPrintModelBoundingBoxComputer::Compute(const ORVPrtGraphicPrimitiveElt& primitive, double& xMin,
                                              double& xMax, double& yMin, double& yMax) {
    ORVMathBox2D box;
    // A list of one, so that the primitive is walked like a child.
    const ORVPrtChildList list{const_cast<ORVPrtGraphicPrimitiveElt*>(&primitive)};
    const bool complete = Walk(list, box);
    return Finish(box, complete, xMin, xMax, yMin, yMax);
}

int ORVPrintModelBoundingBoxComputer::ComputeChildren(const ORVPrtGraphicPrimitiveElt& container,
                                                      double& xMin, double& xMax, double& yMin,
                                                      double& yMax) {
    ORVMathBox2D box;
    bool complete = true;
    if (const ORVPrtChildList* children = container.GetChildList()) complete = Walk(*children, box);
    return Finish(box, complete, xMin, xMax, yMin, yMax);
}

int ORVPrintModelBoundingBoxComputer::Finish(const ORVMathBox2D& box, bool complete, double& xMin,
                                             double& xMax, double& yMin, double& yMax) const {
    const bool present = complete && !box.IsEmpty();
    xMin = present ? box.xMin : 0.0;
    xMax = present ? box.xMax : 0.0;
    yMin = present ? box.yMin : 0.0;
    yMax = present ? box.yMax : 0.0;
    return present ? 1 : 0;
}
