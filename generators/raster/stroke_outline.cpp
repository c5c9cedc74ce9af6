// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/stroke_outline.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "platform/mathematics/constants.h"

namespace {

// Work, in pixels filled with one colour.
constexpr std::uint64_t kArcPointWork = 50, kSegmentWork = 400, kStraightWork = 100;

FixedPoint Fixed(const ORVMathPoint2D& p) { return CoverageBuffer::ToFixed(p.x, p.y); }

FixedPoint Choose(bool first, FixedPoint a, FixedPoint b) {
    // Chooses both coordinates as one number: two choices would become branches.
    return std::bit_cast<FixedPoint>(first ? std::bit_cast<std::uint64_t>(a)
                                           : std::bit_cast<std::uint64_t>(b));
}

bool HasMiters(ORVPrintStroke::Join join) {
    return join == ORVPrintStroke::Join::kMiter || join == ORVPrintStroke::Join::kMiterClip;
}

}  // namespace

void StrokeOutliner::SetPen(const StrokePen& pen, bool reversed) {
    pen_ = &pen;
    reversed_ = reversed;
}

void StrokeOutliner::MakeSegments(const StrokeCourse& course, std::size_t first, std::size_t last) {
    segments_.resize(last - first);
    const double top = coverage_.GetFirstRow() - pen_->reach, bottom = coverage_.GetEndRow() + pen_->reach;
    const double right = coverage_.GetPageWidth() + pen_->reach;
    const ORVMathAffine2D& inverse = pen_->fromDevice;
    for (std::size_t i = first; i < last; ++i) {
        const ORVMathPoint2D &a = course.points[i], &b = course.points[i + 1];
        segments_[i - first].visible =
            std::max(a.y, b.y) > top && std::min(a.y, b.y) < bottom && std::min(a.x, b.x) < right;
    }
    for (std::size_t i = first; i < last; ++i) {
        const std::size_t k = i - first;
        Segment& segment = segments_[k];
        // Invisible segments are only needed next to visible ones.
        if (!segment.visible && !(k > 0 && segments_[k - 1].visible) &&
            !(i + 1 < last && segments_[k + 1].visible))
            continue;
        const ORVMathPoint2D &a = course.points[i], &b = course.points[i + 1];
        const ORVMathVector2D v = Turned(inverse, {b.x - a.x, b.y - a.y});
        segment.length = std::sqrt(Dot(v, v));
        // The transformation may reduce a segment's length to zero.
        segment.direction = segment.length > 0.0 ? v * (1.0 / segment.length) : ORVMathVector2D{1.0, 0.0};
        segment.offset = ToDevice(LeftOf(segment.direction) * pen_->halfWidth);
    }
}

void StrokeOutliner::MakeCorner(const ORVMathPoint2D& center, const Segment& before, const Segment& after,
                                CoursePoint kind, Corner& corner) const {
    const bool isSmooth = kind != CoursePoint::kCorner;
    corner.center = center;
    corner.from = LeftOf(before.direction);
    corner.to = LeftOf(after.direction);
    corner.turn = Cross(before.direction, after.direction);
    const double cosine = Dot(before.direction, after.direction);
    const double openness = 1.0 + cosine;  // twice the square of the cosine of half the angle
    const bool leftIsInner = corner.turn > 0.0;

    // Where the two borders cross, if they do: on the left, and symmetrically on the right.
    constexpr double kTurnedBack = 1e-9;
    const bool turnsOn = openness > kTurnedBack;  // otherwise straight back
    const double share = 1.0 / (turnsOn ? openness : 1.0);
    const DoubleLanes middle = LoadLanes<DoubleLanes>(&center);
    const DoubleLanes in = LoadLanes<DoubleLanes>(&before.offset),
                      out = LoadLanes<DoubleLanes>(&after.offset);
    const DoubleLanes crossing = (in + out) * share;
    // On the inner side the borders cross, unless a segment is too short for that at both of its ends.
    const bool innerCrosses = turnsOn & (pen_->halfWidth * std::fabs(corner.turn) * share * 2.0 <=
                                         std::min(before.length, after.length));
    const bool outerCrosses =
        turnsOn & (isSmooth ? openness > pen_->gentleTurn
                            : HasMiters(pen_->join) &
                                  (2.0 <= pen_->miterLimit * pen_->miterLimit * openness * (1.0 + 1e-9)));

    // All positions are computed and then selected: the choice is unpredictable.
    const bool leftCrosses = leftIsInner ? innerCrosses : outerCrosses;
    const bool rightCrosses = leftIsInner ? outerCrosses : innerCrosses;
    const FixedPoint pivot = CoverageBuffer::ToFixed(middle);
    const FixedPoint leftCrossing = CoverageBuffer::ToFixed(middle + crossing);
    const FixedPoint rightCrossing = CoverageBuffer::ToFixed(middle - crossing);
    corner.leftIn = Choose(leftCrosses, leftCrossing, CoverageBuffer::ToFixed(middle + in));
    corner.leftOut = Choose(leftCrosses, leftCrossing, CoverageBuffer::ToFixed(middle + out));
    corner.rightIn = Choose(rightCrosses, rightCrossing, CoverageBuffer::ToFixed(middle - in));
    corner.rightOut = Choose(rightCrosses, rightCrossing, CoverageBuffer::ToFixed(middle - out));
    // Where the inner borders do not cross, they pass through the line's own corner.
    corner.leftPivot = Choose(leftIsInner & !innerCrosses, pivot, corner.leftIn);
    corner.rightPivot = Choose(!leftIsInner & !innerCrosses, pivot, corner.rightIn);
    corner.round = !outerCrosses && (isSmooth || pen_->join == ORVPrintStroke::Join::kRound);
    corner.isCut = false;
    if (kind == CoursePoint::kTurn) {
        // The borders begin and end where the short piece has them.
        const DoubleLanes offset = before.length < after.length ? in : out;
        corner.leftIn = corner.leftOut = corner.leftPivot = CoverageBuffer::ToFixed(middle + offset);
        corner.rightIn = corner.rightOut = corner.rightPivot = CoverageBuffer::ToFixed(middle - offset);
        corner.round = false;
        return;
    }
    if (!outerCrosses && !isSmooth && pen_->join == ORVPrintStroke::Join::kMiterClip && turnsOn)
        CutMiter(before, after, corner);
}

// A clipped miter ends on a line perpendicular to its axis, at the distance of the limit.
void StrokeOutliner::CutMiter(const Segment& before, const Segment& after, Corner& corner) const {
    const double side = corner.turn > 0.0 ? -1.0 : 1.0;  // the outer one
    const double cosine = std::sqrt(std::max(0.0, (1.0 + Dot(before.direction, after.direction)) / 2.0));
    const double sine = std::sqrt(std::max(0.0, 1.0 - cosine * cosine));
    const double beyond = pen_->halfWidth * (pen_->miterLimit - cosine) / sine;
    const auto edgeAt = [&](const ORVMathVector2D& normal, const ORVMathVector2D& direction, double along) {
        const double across = side * pen_->halfWidth;
        return Fixed(corner.center + ToDevice({normal.x * across + direction.x * along,
                                               normal.y * across + direction.y * along}));
    };
    corner.cutBefore = edgeAt(corner.from, before.direction, beyond);
    corner.cutAfter = edgeAt(corner.to, after.direction, -beyond);
    corner.isCut = true;
}

void StrokeOutliner::AddArc(const ORVMathPoint2D& center, const ORVMathVector2D& from, double angle,
                            FixedPoint start, FixedPoint end) {
    if (center.y + pen_->radius < coverage_.GetFirstRow() - 1.0 ||
        center.y - pen_->radius > coverage_.GetEndRow() + 1.0) {
        AddEdge(start, end);  // entirely outside the band
        return;
    }
    const int steps = std::max(1, static_cast<int>(std::ceil(std::fabs(angle) / pen_->roundStep)));
    coverage_.AddWork(static_cast<std::uint64_t>(steps) * kArcPointWork);
    const double cosine = std::cos(angle / steps), sine = std::sin(angle / steps);
    ORVMathVector2D spoke = from * pen_->halfWidth;
    FixedPoint last = start;
    for (int i = 1; i < steps; ++i) {
        spoke = {spoke.x * cosine - spoke.y * sine, spoke.x * sine + spoke.y * cosine};
        const FixedPoint next = Fixed(center + ToDevice(spoke));
        AddEdge(last, next);
        last = next;
    }
    AddEdge(last, end);
}

// For a clipped miter.
void StrokeOutliner::AddOuterEdges(const Corner& corner, FixedPoint in, FixedPoint out) {
    const bool runsBack = corner.turn > 0.0;  // as the right border does
    const FixedPoint first = runsBack ? corner.cutAfter : corner.cutBefore;
    const FixedPoint second = runsBack ? corner.cutBefore : corner.cutAfter;
    AddEdge(in, first);
    AddEdge(first, second);
    AddEdge(second, out);
}

void StrokeOutliner::AddCorner(const Corner& corner) {
    // The left border runs in the direction of the line, the right one backwards. Most of these edges have
    // zero length, which costs less than a test.
    if (!corner.round && !corner.isCut) {
        AddEdge(corner.leftIn, corner.leftPivot);
        AddEdge(corner.leftPivot, corner.leftOut);
        AddEdge(corner.rightOut, corner.rightPivot);
        AddEdge(corner.rightPivot, corner.rightIn);
        return;
    }
    if (corner.turn > 0.0) {
        AddEdge(corner.leftIn, corner.leftPivot);
        AddEdge(corner.leftPivot, corner.leftOut);
        if (corner.round)
            AddArc(corner.center, corner.to * -1.0, -std::atan2(corner.turn, Dot(corner.from, corner.to)),
                   corner.rightOut, corner.rightIn);
        else
            AddOuterEdges(corner, corner.rightOut, corner.rightIn);
        return;
    }
    AddEdge(corner.rightOut, corner.rightPivot);
    AddEdge(corner.rightPivot, corner.rightIn);
    if (corner.round) {
        // A turn straight back is rounded on the left.
        const double cosine = Dot(corner.from, corner.to);
        const double angle = corner.turn < 0.0 || cosine > 0.0 ? std::atan2(corner.turn, cosine) : -ORVPI;
        AddArc(corner.center, corner.from, angle, corner.leftIn, corner.leftOut);
    } else {
        AddOuterEdges(corner, corner.leftIn, corner.leftOut);
    }
}

void StrokeOutliner::AddCap(const ORVMathPoint2D& center, const ORVMathVector2D& direction) {
    const ORVMathVector2D normal = LeftOf(direction);
    const ORVMathVector2D offset = ToDevice(normal * pen_->halfWidth);
    const FixedPoint left = Fixed(center + offset), right = Fixed(center - offset);
    switch (pen_->cap) {
        case ORVPrintStroke::Cap::kButt: AddEdge(left, right); break;
        case ORVPrintStroke::Cap::kSquare: {
            const ORVMathVector2D ahead = ToDevice(direction * pen_->halfWidth);
            const FixedPoint leftEnd = Fixed(center + offset + ahead),
                             rightEnd = Fixed(center - offset + ahead);
            AddEdge(left, leftEnd);
            AddEdge(leftEnd, rightEnd);
            AddEdge(rightEnd, right);
            break;
        }
        case ORVPrintStroke::Cap::kRound: AddArc(center, normal, -ORVPI, left, right); break;
    }
}

void StrokeOutliner::AddDot(const ORVMathPoint2D& center, const ORVMathVector2D& direction) {
    if (pen_->cap == ORVPrintStroke::Cap::kButt) return;
    AddCap(center, direction);
    AddCap(center, direction * -1.0);
}

void StrokeOutliner::AddStraight(const ORVMathPoint2D& from, const ORVMathPoint2D& to,
                                 const ORVMathVector2D& direction) {
    coverage_.AddWork(kStraightWork);
    const ORVMathVector2D offset = ToDevice(LeftOf(direction) * pen_->halfWidth);
    const bool isSquare = pen_->cap == ORVPrintStroke::Cap::kSquare;
    const ORVMathVector2D ahead = isSquare ? ToDevice(direction * pen_->halfWidth) : ORVMathVector2D{};
    const FixedPoint corners[] = {Fixed(from + offset - ahead), Fixed(to + offset + ahead),
                                  Fixed(to - offset + ahead), Fixed(from - offset - ahead)};
    for (std::size_t i = 0; i < 4; ++i) AddEdge(corners[i], corners[(i + 1) % 4]);
}

void StrokeOutliner::AddPart(const StrokeCourse& course, std::size_t first, std::size_t last) {
    if (first >= last) return;
    coverage_.AddWork((last - first) * kSegmentWork);
    const std::size_t segmentCount = course.points.size() - 1;
    const std::size_t begin = first > 0 ? first - 1 : 0, end = std::min(last + 1, segmentCount);
    MakeSegments(course, begin, end);
    const auto segmentAt = [&](std::size_t i) -> const Segment& { return segments_[i - begin]; };

    Corner corner;
    if (first > 0) {
        if (segmentAt(first).visible || segmentAt(first - 1).visible) {
            MakeCorner(course.points[first], segmentAt(first - 1), segmentAt(first), course.kinds[first],
                       corner);
            AddCorner(corner);
        }
    } else if (const Segment& segment = segmentAt(0); segment.visible) {
        corner.leftOut = Fixed(course.points[0] + segment.offset);
        corner.rightOut = Fixed(course.points[0] - segment.offset);
        AddCap(course.points[0], segment.direction * -1.0);
    }
    for (std::size_t i = first; i < last; ++i) {
        const Segment& segment = segmentAt(i);
        const FixedPoint leftStart = corner.leftOut, rightStart = corner.rightOut;
        if (i + 1 < end) {
            if (!segment.visible && !segmentAt(i + 1).visible) continue;
            MakeCorner(course.points[i + 1], segment, segmentAt(i + 1), course.kinds[i + 1], corner);
            // The last corner belongs to the next part.
            if (i + 1 < last) AddCorner(corner);
        } else if (segment.visible) {
            corner.leftIn = Fixed(course.points[i + 1] + segment.offset);
            corner.rightIn = Fixed(course.points[i + 1] - segment.offset);
            AddCap(course.points[i + 1], segment.direction);
        }
        if (!segment.visible) continue;
        AddEdge(leftStart, corner.leftIn);
        AddEdge(corner.rightIn, rightStart);
    }
}

// The joins at both ends look like caps.
void StrokeOutliner::AddThereAndBack(const StrokeCourse& course) {
    const StrokePen& pen = *pen_;
    StrokePen once = pen;
    once.cap =
        pen.join == ORVPrintStroke::Join::kRound ? ORVPrintStroke::Cap::kRound : ORVPrintStroke::Cap::kButt;
    pen_ = &once;
    AddPart(course, 0, 1);
    pen_ = &pen;
}

void StrokeOutliner::AddContour(StrokeCourse& course, bool closed) {
    std::vector<ORVMathPoint2D>& points = course.points;
    if (closed) course.DropClosingPoint();
    if (points.empty()) return;
    if (points.size() == 1) {
        AddDot(points.front(), {1.0, 0.0});
        return;
    }
    const std::size_t count = points.size();
    if (!closed) {
        AddPart(course, 0, count - 1);
        return;
    }
    if (pen_->DrawsOnce(count)) {
        AddThereAndBack(course);
        return;
    }
    // A full turn, with the last segment before it and the first one again after it for the closing join.
    course.Add(points[0], CoursePoint::kCorner);
    course.Add(ORVMathPoint2D(points[1]), CoursePoint::kCorner);
    points.insert(points.begin(), points[count - 1]);
    course.kinds.insert(course.kinds.begin(), CoursePoint::kCorner);
    AddPart(course, 1, count + 1);
}
