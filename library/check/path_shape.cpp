// SPDX-License-Identifier: Apache-2.0
#include "library/check/path_shape.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg/geometry/elliptical_arc.h"
#include "library/check/svg_grammar.h"
#include "platform/mathematics/constants.h"
#include "platform/mathematics/geometry.h"

namespace {

double Distance(const ORVMathPoint2D& a, const ORVMathPoint2D& b) { return std::hypot(a.x - b.x, a.y - b.y); }

// An ellipse and the range of an arc along it.
struct ArcWay {
    ORVMathPoint2D center;
    double rx = 0.0, ry = 0.0, slope = 0.0, start = 0.0, end = 0.0;

    ORVMathPoint2D At(double part) const {
        const double t = start + part * (end - start), x = rx * std::cos(t), y = ry * std::sin(t);
        return {center.x + x * std::cos(slope) - y * std::sin(slope),
                center.y + x * std::sin(slope) + y * std::cos(slope)};
    }
};

// The arc through two points according to SVG: too small radii are scaled up, signs are ignored. Radii must
// not both be 0.
ArcWay StandardArc(const EndpointArc& arc) {
    ArcWay way;
    way.rx = std::abs(arc.rx);
    way.ry = std::abs(arc.ry);
    way.slope = arc.rotation * ORVPI / 180.0;
    const double c = std::cos(way.slope), s = std::sin(way.slope);
    const double dx = (arc.start.x - arc.end.x) / 2.0, dy = (arc.start.y - arc.end.y) / 2.0;
    const double x = c * dx + s * dy, y = c * dy - s * dx;
    const double reach = std::hypot(x / way.rx, y / way.ry);
    if (reach > 1.0) {
        way.rx *= reach;
        way.ry *= reach;
    }
    const double share = (x * x) / (way.rx * way.rx) + (y * y) / (way.ry * way.ry);
    const double side = arc.largeArcFlag == arc.sweepFlag ? -1.0 : 1.0;
    const double factor = side * std::sqrt(std::max(0.0, 1.0 / share - 1.0));
    const double cx = factor * way.rx * y / way.ry, cy = -factor * way.ry * x / way.rx;
    way.center = {c * cx - s * cy + (arc.start.x + arc.end.x) / 2.0,
                  s * cx + c * cy + (arc.start.y + arc.end.y) / 2.0};
    way.start = std::atan2((y - cy) / way.ry, (x - cx) / way.rx);
    way.end = std::atan2((-y - cy) / way.ry, (-x - cx) / way.rx);
    if (arc.sweepFlag != 0.0 && way.end < way.start) way.end += ORV2PI;
    if (arc.sweepFlag == 0.0 && way.end > way.start) way.end -= ORV2PI;
    return way;
}

// Whether the interpreter, which computes with y up, draws a different arc than SVG.
bool IsDrawnElsewhere(const EndpointArc& arc) {
    if (arc.start == arc.end) return false;
    const EndpointArc mirrored{{arc.start.x, -arc.start.y},
                               arc.rx,
                               arc.ry,
                               arc.rotation,
                               arc.largeArcFlag,
                               arc.sweepFlag != 0.0 ? 0.0 : 1.0,
                               {arc.end.x, -arc.end.y}};
    CenterArc drawn;
    const ArcShape shape = ConvertArc(mirrored, drawn);
    const bool isStraight = arc.rx == 0.0 || arc.ry == 0.0;
    if (isStraight || shape != ArcShape::kArc) return !(isStraight && shape == ArcShape::kStraight);

    const ArcWay meant = StandardArc(arc);
    const ArcWay got{drawn.center, drawn.horzRadius, drawn.vertRadius,
                     drawn.slope,  drawn.startAngle, drawn.endAngle};
    constexpr int kSamples = 16;
    const double tolerance = 0.01 * std::max(meant.rx, meant.ry) + 1e-9;
    bool runsAlong = true, runsBack = true;
    for (int i = 0; i <= kSamples; ++i) {
        const double part = static_cast<double>(i) / kSamples;
        const ORVMathPoint2D at = meant.At(part), mirrorImage{at.x, -at.y};
        runsAlong = runsAlong && Distance(mirrorImage, got.At(part)) <= tolerance;
        runsBack = runsBack && Distance(mirrorImage, got.At(1.0 - part)) <= tolerance;
    }
    return !runsAlong && !runsBack;
}

// Tracks the points of path data.
class PathWalk {
public:
    explicit PathWalk(PathShape& shape) : shape_(shape) {}

    void Visit(const PathSegment& segment) {
        const bool isRelative = segment.letter >= 'a';
        const char kind = isRelative ? static_cast<char>(segment.letter - 'a' + 'A') : segment.letter;
        base_ = isRelative ? current_ : ORVMathPoint2D{0.0, 0.0};
        const auto& n = segment.numbers;
        switch (kind) {
            case 'M':
                EndSubpath();
                current_ = start_ = Point(n[0], n[1]);
                break;
            case 'Z':
                shape_.hasLooseArc |= beginsWithArc_ && !(current_ == start_);
                DrawTo(start_);
                if (hasLength_) shape_.corners.Add(direction_, first_);
                isClosed_ = true;
                break;
            case 'H': DrawTo({base_.x + n[0], current_.y}); break;
            case 'V': DrawTo({current_.x, base_.y + n[0]}); break;
            case 'C': Curve({Point(n[0], n[1]), Point(n[2], n[3])}, Point(n[4], n[5])); break;
            case 'S': Curve({Reflected(kind), Point(n[0], n[1])}, Point(n[2], n[3])); break;
            case 'Q': Curve({Point(n[0], n[1]), Point(n[0], n[1])}, Point(n[2], n[3])); break;
            case 'T': {
                const ORVMathPoint2D control = Reflected(kind);
                Curve({control, control}, Point(n[0], n[1]));
                break;
            }
            case 'A': Arc(n, Point(n[5], n[6])); break;
            default: DrawTo(Point(n[0], n[1])); break;
        }
        previous_ = kind;
    }

    void EndSubpath() {
        shape_.hasDot |= hasSegments_ && !hasLength_;
        shape_.hasJoinedEnds |= hasLength_ && !isClosed_ && current_ == start_;
        hasSegments_ = hasLength_ = isClosed_ = beginsWithArc_ = false;
    }

private:
    struct Controls {
        ORVMathPoint2D first, second;
    };

    ORVMathPoint2D Point(double x, double y) const { return {base_.x + x, base_.y + y}; }

    void TakeIn(const ORVMathPoint2D& point) {
        hasLength_ |= !(point == current_);
        shape_.box.Add(point);
    }

    void DrawTo(const ORVMathPoint2D& end) {
        Turn(end);
        hasSegments_ = true;
        shape_.box.Add(current_);
        TakeIn(end);
        current_ = end;
    }

    // Records a straight turn towards a point, unless a curve has already set the direction.
    void Turn(const ORVMathPoint2D& to) {
        const bool isTold = hasTurned_;
        hasTurned_ = false;
        if (isTold || to == current_) return;
        const ORVMathVector2D out{to.x - current_.x, to.y - current_.y};
        if (hasLength_)
            shape_.corners.Add(direction_, out);
        else
            first_ = out;
        direction_ = out;
    }

    void Curve(const Controls& controls, const ORVMathPoint2D& end) {
        Turn(controls.first);
        const ORVMathPoint2D last = controls.second == end ? controls.first : controls.second;
        TakeIn(controls.first);
        TakeIn(controls.second);
        hasTurned_ = true;
        direction_ = {end.x - last.x, end.y - last.y};
        DrawTo(end);
        control_ = controls.second;
    }

    // The control point of S and T according to SVG: the reflection after a curve of the same kind, otherwise
    // the current point. The interpreter reflects that of any curve.
    ORVMathPoint2D Reflected(char kind) {
        const bool wasCubic = previous_ == 'C' || previous_ == 'S',
                   wasQuadratic = previous_ == 'Q' || previous_ == 'T';
        if (kind == 'S' ? wasCubic : wasQuadratic)
            return {2.0 * current_.x - control_.x, 2.0 * current_.y - control_.y};
        if ((wasCubic || wasQuadratic) && !(control_ == current_)) shape_.hasOtherSmooth = true;
        return current_;
    }

    void Arc(const std::array<double, 7>& n, const ORVMathPoint2D& end) {
        beginsWithArc_ |= !hasSegments_;
        const EndpointArc arc{current_, n[0], n[1], n[2], n[3], n[4], end};
        shape_.hasOtherArc = shape_.hasOtherArc || IsDrawnElsewhere(arc);
        if (n[0] != 0.0 && n[1] != 0.0 && !(current_ == end)) {
            const ArcWay way = StandardArc(arc);
            constexpr int kSamples = 32;
            Turn(way.At(1.0 / kSamples));
            for (int i = 1; i < kSamples; ++i) TakeIn(way.At(static_cast<double>(i) / kSamples));
            const ORVMathPoint2D last = way.At(1.0 - 1.0 / kSamples);
            hasTurned_ = true;
            direction_ = {end.x - last.x, end.y - last.y};
        }
        DrawTo(end);
    }

    PathShape& shape_;
    ORVMathVector2D direction_, first_;  // at the end of what is drawn, and at its start
    bool hasTurned_ = false;
    ORVMathPoint2D base_, current_, start_, control_;
    char previous_ = 0;
    bool hasSegments_ = false, hasLength_ = false, isClosed_ = false, beginsWithArc_ = false;
};

}  // namespace

void Corners::Add(const ORVMathVector2D& in, const ORVMathVector2D& out) {
    const double lengths = std::hypot(in.x, in.y) * std::hypot(out.x, out.y);
    if (!(lengths > 0.0)) return;
    // Sine of half the interior angle; the miter length is its reciprocal.
    const double sine = std::sqrt(std::max(0.0, (1.0 + (in.x * out.x + in.y * out.y) / lengths) / 2.0));
    constexpr double kTurnsBack = 1e-6;  // a reversal, whose edges never meet
    if (sine < kTurnsBack) return;
    const double reach = 1.0 / sine;
    if (reach > kLimit)
        leastBeyond = std::min(leastBeyond, reach);
    else
        mostWithin = std::max(mostWithin, reach);
}

PathShape ReadPathShape(std::string_view data) {
    PathShape shape;
    PathWalk walk(shape);
    SvgPathReader reader(data);
    for (PathSegment segment; reader.Next(segment);) walk.Visit(segment);
    walk.EndSubpath();
    shape.readable = reader.GetPosition();
    shape.isReadable = reader.IsAtEnd();
    return shape;
}
