// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/stroke_dashes.h"

#include <algorithm>
#include <cmath>

#include "generators/raster/dash_cursor.h"

namespace {

// Work, in pixels filled with one colour.
constexpr std::uint64_t kPointWork = 100, kSkippedWork = 10;

double LengthOf(const StrokePen& pen, const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
    const ORVMathVector2D v = Turned(pen.fromDevice, {b.x - a.x, b.y - a.y});
    return std::sqrt(Dot(v, v));
}

/// The fraction part / length, clamped to 0..1; 0 for a length of zero.
double ShareOf(double part, double length) {
    return length > 0.0 ? std::clamp(part / length, 0.0, 1.0) : 0.0;
}

/// Extends a closed course, whose last point equals its first, at both ends: the last segment is repeated
/// before the first, and the first after the last.
void CloseCourse(StrokeCourse& course) {
    std::vector<ORVMathPoint2D>& points = course.points;
    const ORVMathPoint2D before = points[points.size() - 2];
    course.Add(ORVMathPoint2D(points[1]), CoursePoint::kCorner);
    points.insert(points.begin(), before);
    course.kinds.insert(course.kinds.begin(), CoursePoint::kCorner);
}

}  // namespace

DashedLineMeasure::DashedLineMeasure(const StrokePen& pen, bool closed)
    : pen_(pen), closed_(closed), length_(pen.dashStart) {
    double begin = 0.0;
    startsInDash_ = ORVFindLastDash(pen, length_, begin, firstEnd_);
}

DashedPart DashedLineMeasure::Add(const StrokeCourse& course) {
    DashedPart part;
    part.closed = closed_;
    // A part that begins with a gap has its first dash later.
    part.isSolid = pen_.ShowsAsSolid() && (startsInDash_ || pen_.isFine);
    part.startsLine = !isBegun_;
    isBegun_ = true;
    part.begin = length_;
    part.before = lastBegin_;
    // The same sums, bit for bit, as when the part is drawn.
    for (std::size_t i = 0; i + 1 < course.points.size(); ++i) {
        lastLength_ = LengthOf(pen_, course.points[i], course.points[i + 1]);
        lastBegin_ = length_;
        length_ += lastLength_;
    }
    return part;
}

void DashedLineMeasure::Finish(DashedPart& first, DashedPart& last) const {
    last.endsLine = true;
    double begin = 0.0, end = 0.0;
    const bool endsInDash = ORVFindLastDash(pen_, length_, begin, end);
    if (closed_) {
        first.isSolid = last.isSolid = first.isSolid || (startsInDash_ && firstEnd_ > length_);
        if (endsInDash && startsInDash_) {
            first.joined = ShareOf(begin - lastBegin_, lastLength_);
            last.firstEnd = firstEnd_;
        }
    } else if (!endsInDash && length_ - end < lastLength_) {
        last.keptOfLast = 1.0 - ShareOf(length_ - end, lastLength_);
    }
}

void StrokeDasher::AddContour(StrokeCourse& course, bool closed) {
    if (closed) course.DropClosingPoint();
    if (!GetPen().IsDashed() || course.points.size() < 2) {
        outliner_.AddContour(course, closed);
        return;
    }
    std::size_t first = 0, last = course.points.size() - 1;
    if (closed) course.Add(ORVMathPoint2D(course.points[0]), CoursePoint::kCorner);
    DashedLineMeasure measure(GetPen(), closed);
    DashedPart part = measure.Add(course);
    // Without a corner, no join inside a gap could be missing.
    if (GetPen().hidesGaps && last == 1 && !closed) part.isSolid = measure.MayHideGaps();
    measure.Finish(part, part);
    if (closed) {
        CloseCourse(course);
        first = 1;
        last = course.points.size() - 2;
    }
    AddPart(course, first, last, part);
}

void StrokeDasher::AddPart(StrokeCourse& course, std::size_t first, std::size_t last,
                           const DashedPart& part) {
    if (first >= last) return;
    if (part.isSolid) {
        if (part.endsLine && !part.closed)
            course.points[last] = Mix(course.points[last - 1], course.points[last], part.keptOfLast);
        outliner_.AddPart(course, first, last);
        return;
    }
    Measure(course, first, last, part);
    AddDashes(course, first, last, part);
}

void StrokeDasher::Measure(const StrokeCourse& course, std::size_t first, std::size_t last,
                           const DashedPart& part) {
    const std::size_t count = course.points.size();
    outliner_.AddWork(count * kPointWork);
    distances_.resize(count);
    lengths_.resize(count);
    // Only the last segment before the part and the first one after it matter.
    const std::size_t end = std::min(last + 1, count - 1);
    if (first > 0) {
        distances_[first - 1] = part.before;
        lengths_[first - 1] = LengthOf(GetPen(), course.points[first - 1], course.points[first]);
    }
    distances_[first] = part.begin;
    for (std::size_t i = first; i < end; ++i) {
        lengths_[i] = LengthOf(GetPen(), course.points[i], course.points[i + 1]);
        distances_[i + 1] = distances_[i] + lengths_[i];
    }
}

StrokeDasher::Segment StrokeDasher::SegmentAt(const StrokeCourse& course, std::size_t index) const {
    Segment segment;
    segment.index = index;
    const ORVMathPoint2D &a = course.points[index], &b = course.points[index + 1];
    const double begin = distances_[index], length = lengths_[index];
    if (!(length > 0.0)) return segment;
    segment.direction = Turned(GetPen().fromDevice, {b.x - a.x, b.y - a.y}) * (1.0 / length);
    double from = 0.0, to = 0.0;
    if (!VisiblePart(a, b, ReachOfDash(segment.direction), from, to)) return segment;
    segment.visibleBegin = begin + from * length;
    segment.visibleEnd = begin + to * length;
    return segment;
}

void StrokeDasher::AddDashes(const StrokeCourse& course, std::size_t first, std::size_t last,
                             const DashedPart& part) {
    const double start = distances_[first], end = distances_[last];
    const bool isBent = GetPen().cap == ORVPrintStroke::Cap::kRound;
    Segment segment = SegmentAt(course, first);
    DashCursor cursor(GetPen(), start);
    while (!cursor.IsLost()) {
        double dashBegin = cursor.GetBegin(), dashEnd = cursor.GetEnd();
        // A dash that begins exactly at the end of the line counts.
        if (dashBegin > end || (dashBegin == end && !part.endsLine)) return;
        // A dash that ends with the previous segment was drawn with that.
        if (dashEnd <= start && dashBegin < start) {
            cursor.Advance();
            continue;
        }
        if (part.startsLine && dashBegin < start) dashBegin = start;
        if (part.joined <= 1.0 && dashBegin == start) dashBegin -= lengths_[first - 1] * (1.0 - part.joined);
        if (dashEnd > end && part.endsLine && part.firstEnd == 0.0) dashEnd = end;
        while (segment.index + 1 < last && distances_[segment.index + 1] <= dashBegin &&
               distances_[segment.index + 1] < dashEnd)
            segment = SegmentAt(course, segment.index + 1);
        const double segmentEnd = distances_[segment.index + 1];
        const bool isInside = dashBegin >= distances_[segment.index] && dashEnd <= segmentEnd;
        if (isInside && (dashEnd < segment.visibleBegin || dashBegin > segment.visibleEnd)) {
            outliner_.AddWork(kSkippedWork);
            if (!cursor.JumpTowards(dashBegin < segment.visibleBegin ? segment.visibleBegin : segmentEnd))
                cursor.Advance();
            continue;
        }
        if (isInside && !isBent && dashBegin < dashEnd)
            AddStraightDash(course, segment, dashBegin, dashEnd);
        else
            AddBentDash(course, segment, dashBegin, dashEnd, first, last, part);
        cursor.Advance();
    }
}

ORVMathPoint2D StrokeDasher::PointAt(const StrokeCourse& course, std::size_t segment, double distance) const {
    const ORVMathPoint2D &a = course.points[segment], &b = course.points[segment + 1];
    if (distance <= distances_[segment]) return a;
    if (distance >= distances_[segment + 1]) return b;
    return Mix(a, b, ShareOf(distance - distances_[segment], lengths_[segment]));
}

ORVMathPoint2D StrokeDasher::FirstDashFrom(const StrokeCourse& course, std::size_t segment,
                                           double end) const {
    const ORVMathPoint2D &a = course.points[segment], &b = course.points[segment + 1];
    const double start = GetPen().dashStart, length = lengths_[segment];
    return end < start + length ? Mix(a, b, ShareOf(end - start, length)) : b;
}

void StrokeDasher::AddStraightDash(const StrokeCourse& course, const Segment& segment, double begin,
                                   double end) {
    const ORVMathPoint2D from = PointAt(course, segment.index, begin),
                         to = PointAt(course, segment.index, end);
    if (from == to)
        outliner_.AddDot(from, segment.direction);
    else
        outliner_.AddStraight(from, to, segment.direction);
}

void StrokeDasher::AddBentDash(const StrokeCourse& course, const Segment& segment, double begin, double end,
                               std::size_t first, std::size_t last, const DashedPart& part) {
    dash_.Clear();
    // Segments before and after the part are only there for the joins.
    const bool goesOn = begin < distances_[first];
    std::size_t dashFirst = 0, index = segment.index;
    if (goesOn) {
        const ORVMathPoint2D &a = course.points[first - 1], &b = course.points[first];
        dash_.Add(part.joined <= 1.0 ? Mix(a, b, part.joined) : PointAt(course, first - 1, begin),
                  CoursePoint::kCorner);
        dash_.Add(b, course.kinds[first]);
        dashFirst = dash_.points.size() - 1;
        index = first;
    } else {
        const bool isCorner = begin <= distances_[index];
        dash_.Add(PointAt(course, index, begin), isCorner ? course.kinds[index] : CoursePoint::kCorner);
    }
    while (index < last && distances_[index + 1] < end) {
        ++index;
        dash_.Add(course.points[index], course.kinds[index]);
    }
    std::size_t dashLast = 0;
    if (index < last) {
        dash_.Add(PointAt(course, index, end), CoursePoint::kCorner);
        dashLast = dash_.points.size() - 1;
    } else {
        // The dash continues after the part; in a closed line it continues as the first dash.
        dashLast = dash_.points.size() - 1;
        dash_.Add(part.endsLine ? FirstDashFrom(course, last, part.firstEnd) : PointAt(course, last, end),
                  CoursePoint::kCorner);
    }
    if (dash_.points.size() > 1)
        outliner_.AddPart(dash_, dashFirst, dashLast);
    else if (!goesOn)
        outliner_.AddDot(dash_.points.front(), segment.direction);
}

ORVMathVector2D StrokeDasher::ReachOfDash(const ORVMathVector2D& direction) const {
    const StrokePen& pen = GetPen();
    if (pen.cap == ORVPrintStroke::Cap::kRound) return {pen.radius + 1.0, pen.radius + 1.0};
    const ORVMathVector2D offset = Turned(pen.toDevice, LeftOf(direction) * pen.halfWidth);
    const double isSquare = pen.cap == ORVPrintStroke::Cap::kSquare ? 1.0 : 0.0;
    const ORVMathVector2D ahead = Turned(pen.toDevice, direction * (pen.halfWidth * isSquare));
    return {std::fabs(offset.x) + std::fabs(ahead.x) + 1.0, std::fabs(offset.y) + std::fabs(ahead.y) + 1.0};
}

bool StrokeDasher::VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to,
                               const ORVMathVector2D& reach, double& begin, double& end) const {
    const CoverageBuffer& coverage = outliner_.GetCoverage();
    begin = 0.0;
    end = 1.0;
    const auto cut = [&](double start, double step, double least, double most) {
        if (step == 0.0) return start >= least && start <= most;
        const double a = (least - start) / step, b = (most - start) / step;
        begin = std::max(begin, std::min(a, b));
        end = std::min(end, std::max(a, b));
        return begin <= end;
    };
    return cut(from.y, to.y - from.y, coverage.GetFirstRow() - reach.y, coverage.GetEndRow() + reach.y) &&
           cut(from.x, to.x - from.x, -reach.x, coverage.GetPageWidth() + reach.x);
}
