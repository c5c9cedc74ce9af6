#include "generators/raster/stroke_outline.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "generators/common/path_range.h"
#include "platform/mathematics/constants.h"

namespace {

// Farthest that a round cap or join may stray from a circle (pixels). They are small, and it shows.
constexpr double kRoundness = 0.015;
// Where two borders may cross beyond the border of a curve (pixels), unless the turn is gentle anyway.
constexpr double kOvershoot = 0.05;
constexpr double kGentleTurn = 1.9;
// Dashes of a shorter period (pixels) look like a solid line.
constexpr double kShortestDashPeriod = 0.1;
// Dashes of a period below this (pixels) are not told apart.
constexpr double kFineDashPeriod = 1.0;
// What round caps leave of a gap, at the border of a line, cannot be seen when it is no deeper than this
// (pixels).
constexpr double kShallowest = 1.0 / 256.0;
// Work in pixels of one colour.
constexpr std::uint64_t kArcPointWork = 50, kPointWork = 100, kSegmentWork = 400;
// No pen is wider (pixels); coordinates beyond are of no page.
constexpr double kWidestPen = 2'000'000.0;
// Lines thinner than this part of the thinnest one were asked for as the thinnest there are.
constexpr double kNoWidth = 1.0 / 64.0;

ORVMathPoint2D operator+(const ORVMathPoint2D& p, const ORVMathVector2D& v) { return {p.x + v.x, p.y + v.y}; }
ORVMathPoint2D operator-(const ORVMathPoint2D& p, const ORVMathVector2D& v) { return {p.x - v.x, p.y - v.y}; }
ORVMathVector2D operator*(const ORVMathVector2D& v, double factor) { return {v.x * factor, v.y * factor}; }
FixedPoint Fixed(const ORVMathPoint2D& p) { return CoverageBuffer::ToFixed(p.x, p.y); }
ORVMathVector2D LeftOf(const ORVMathVector2D& v) { return {-v.y, v.x}; }
double Dot(const ORVMathVector2D& a, const ORVMathVector2D& b) { return a.x * b.x + a.y * b.y; }
double Cross(const ORVMathVector2D& a, const ORVMathVector2D& b) { return a.x * b.y - a.y * b.x; }
ORVMathPoint2D Mix(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

/// The longer and the shorter half-axis of the ellipse that a map makes of the unit circle.
void FindAxes(const ORVMathAffine2D& map, double& longer, double& shorter) {
    const double sum = std::hypot(map.m11 + map.m22, map.m21 - map.m12);
    const double difference = std::hypot(map.m11 - map.m22, map.m21 + map.m12);
    longer = (sum + difference) / 2.0;
    shorter = std::fabs(sum - difference) / 2.0;
}

/// True when the caps of dashes cover the gaps between them.
/// @param scale  pixels in a unit of the dashes, at most
bool CapsCoverGaps(const StrokePen& pen, std::span<const double> dashes, double scale) {
    double longest = 0.0;
    for (std::size_t i = 1; i < dashes.size(); i += 2) longest = std::max(longest, dashes[i]);
    switch (pen.cap) {
        case ORVPrintStroke::Cap::kButt: return false;
        case ORVPrintStroke::Cap::kSquare: return longest <= 2.0 * pen.halfWidth;
        // Two circles that far apart meet that much inside of the border.
        case ORVPrintStroke::Cap::kRound:
            return longest * longest * scale <= 8.0 * kShallowest * pen.halfWidth;
    }
    return false;
}

bool HasGaps(std::span<const double> dashes) {
    for (std::size_t i = 1; i < dashes.size(); i += 2)
        if (dashes[i] > 0.0) return true;
    return false;
}

}  // namespace

StrokePen ORVMakePen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest,
                     std::vector<double>& dashEnds) {
    StrokePen pen;
    pen.cap = stroke.cap;
    pen.join = stroke.join;
    pen.miterLimit = stroke.miterLimit >= 1.0 ? std::min(stroke.miterLimit, 1e6) : 1.0;
    pen.toDevice = {toDevice.m11, toDevice.m12, toDevice.m21, toDevice.m22, 0.0, 0.0};
    double longer = 1.0, shorter = 1.0;
    FindAxes(pen.toDevice, longer, shorter);
    // Of a line's width, the map's shorter axis decides where it is thinnest; a pen that would vanish there
    // is a round one of the thinnest width.
    double halfWidth = std::min(stroke.width, 2.0 * kWidestPen / longer) / 2.0;
    if (!(halfWidth > 0.0)) halfWidth = 0.0;
    const double least = thinnest / 2.0;
    const double dashScale = longer;
    if (longer * halfWidth < least) {
        // As wide as it takes for the thinnest line.
        const double wanted = longer * halfWidth < least * kNoWidth ? std::max(least, 0.5) : least;
        halfWidth = wanted / longer;
    }
    if (shorter * halfWidth < least * 1e-3 || !InvertMap(pen.toDevice, pen.fromDevice)) {
        // The map has flattened the pen.
        halfWidth = std::max(longer * halfWidth, least);
        pen.toDevice = pen.fromDevice = {};
        pen.halfWidth = halfWidth;
        longer = 1.0;
    }
    pen.halfWidth = halfWidth;
    const double radius = halfWidth * longer;
    double extent = pen.join == ORVPrintStroke::Join::kMiter ? pen.miterLimit : 1.0;
    if (pen.cap == ORVPrintStroke::Cap::kSquare) extent = std::max(extent, 1.5);
    pen.reach = std::min(radius * extent + 1.0, CoverageBuffer::kFarthest);
    pen.radius = radius;
    // Borders cross at 1 / cosine of half the turn from the line's course; 1 + cosine is twice its square.
    const double farthest = 1.0 + kOvershoot / std::max(radius, kOvershoot);
    pen.gentleTurn = std::min(kGentleTurn, 2.0 / (farthest * farthest));
    pen.roundStep = 2.0 * std::acos(std::max(0.0, 1.0 - kRoundness / std::max(radius, kRoundness)));
    pen.roundStep = std::clamp(pen.roundStep, 1e-3, ORVPI / 4.0);

    dashEnds.clear();
    double period = 0.0;
    for (const double length : stroke.dashes) dashEnds.push_back(period += std::max(length, 0.0));
    if (std::isfinite(period) && period * dashScale > kShortestDashPeriod && HasGaps(stroke.dashes)) {
        // Dashes are measured in pen space, which is the device when the pen was flattened.
        const double scale = dashScale / longer;
        for (double& end : dashEnds) end *= scale;
        pen.dashPeriod = period * scale;
        pen.dashEnds = dashEnds;
        pen.isFine = period * dashScale < kFineDashPeriod;
        pen.hidesGaps =
            scale == 1.0 && stroke.dashes.size() % 2 == 0 && CapsCoverGaps(pen, stroke.dashes, longer);
    }
    return pen;
}

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
        // What cannot be seen is needed where it meets what can.
        if (!segment.visible && !(k > 0 && segments_[k - 1].visible) &&
            !(i + 1 < last && segments_[k + 1].visible))
            continue;
        const ORVMathPoint2D &a = course.points[i], &b = course.points[i + 1];
        const double dx = b.x - a.x, dy = b.y - a.y;
        const ORVMathVector2D v{inverse.m11 * dx + inverse.m12 * dy, inverse.m21 * dx + inverse.m22 * dy};
        segment.length = std::sqrt(Dot(v, v));
        // A map may take away all length of what has some.
        segment.direction = segment.length > 0.0 ? v * (1.0 / segment.length) : ORVMathVector2D{1.0, 0.0};
        segment.offset = ToDevice(LeftOf(segment.direction) * pen_->halfWidth);
    }
}

StrokeOutliner::Corner StrokeOutliner::MakeCorner(const ORVMathPoint2D& center, const Segment& before,
                                                  const Segment& after, bool isSmooth) const {
    Corner corner;
    corner.center = center;
    corner.from = LeftOf(before.direction);
    corner.to = LeftOf(after.direction);
    corner.turn = Cross(before.direction, after.direction);
    const double cosine = Dot(before.direction, after.direction);
    const double openness = 1.0 + cosine;  // twice the square of the cosine of half the angle
    const bool leftIsInner = corner.turn > 0.0;

    // Where the two borders cross, if they do: on the left, and as far on the right.
    constexpr double kTurnedBack = 1e-9;
    FixedPoint crossingLeft, crossingRight;
    bool innerCrosses = false, outerCrosses = false;
    if (openness > kTurnedBack) {
        const double share = 1.0 / openness;
        const ORVMathVector2D crossing =
            ORVMathVector2D{before.offset.x + after.offset.x, before.offset.y + after.offset.y} * share;
        crossingLeft = Fixed(center + crossing);
        crossingRight = Fixed(center - crossing);
        // On the inner side the borders cross, unless a segment is too short for that at both of its ends.
        innerCrosses =
            pen_->halfWidth * std::fabs(corner.turn) * share * 2.0 <= std::min(before.length, after.length);
        outerCrosses = isSmooth ? openness > pen_->gentleTurn
                                : pen_->join == ORVPrintStroke::Join::kMiter &&
                                      2.0 <= pen_->miterLimit * pen_->miterLimit * openness * (1.0 + 1e-9);
    }
    if (leftIsInner ? innerCrosses : outerCrosses) {
        corner.leftIn = corner.leftOut = crossingLeft;
    } else {
        corner.leftIn = Fixed(center + before.offset);
        corner.leftOut = Fixed(center + after.offset);
    }
    if (leftIsInner ? outerCrosses : innerCrosses) {
        corner.rightIn = corner.rightOut = crossingRight;
    } else {
        corner.rightIn = Fixed(center - before.offset);
        corner.rightOut = Fixed(center - after.offset);
    }
    if (!innerCrosses) (leftIsInner ? corner.pivotLeft : corner.pivotRight) = true;
    if (!outerCrosses) corner.round = isSmooth || pen_->join == ORVPrintStroke::Join::kRound;
    return corner;
}

void StrokeOutliner::AddArc(const ORVMathPoint2D& center, const ORVMathVector2D& from, double angle,
                            FixedPoint start, FixedPoint end) {
    if (center.y + pen_->radius < coverage_.GetFirstRow() - 1.0 ||
        center.y - pen_->radius > coverage_.GetEndRow() + 1.0) {
        AddEdge(start, end);  // no part of it lies in the band
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

void StrokeOutliner::AddCorner(const Corner& corner) {
    // The left border runs along with the line, the right one back.
    if (corner.turn > 0.0) {
        if (corner.pivotLeft) {
            const FixedPoint center = Fixed(corner.center);
            AddEdge(corner.leftIn, center);
            AddEdge(center, corner.leftOut);
        }
        if (corner.round)
            AddArc(corner.center, corner.to * -1.0, -std::atan2(corner.turn, Dot(corner.from, corner.to)),
                   corner.rightOut, corner.rightIn);
        else
            AddEdge(corner.rightOut, corner.rightIn);
    } else {
        if (corner.pivotRight) {
            const FixedPoint center = Fixed(corner.center);
            AddEdge(corner.rightOut, center);
            AddEdge(center, corner.rightIn);
        }
        if (corner.round) {
            // A turn straight back goes round on the left.
            const double cosine = Dot(corner.from, corner.to);
            const double angle = corner.turn < 0.0 || cosine > 0.0 ? std::atan2(corner.turn, cosine) : -ORVPI;
            AddArc(corner.center, corner.from, angle, corner.leftIn, corner.leftOut);
        } else {
            AddEdge(corner.leftIn, corner.leftOut);
        }
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
            corner = MakeCorner(course.points[first], segmentAt(first - 1), segmentAt(first),
                                course.smooth[first] != 0);
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
            corner = MakeCorner(course.points[i + 1], segment, segmentAt(i + 1), course.smooth[i + 1] != 0);
            // The last corner belongs to the part that comes next.
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

void StrokeOutliner::AddContour(StrokeCourse& course, bool closed) {
    std::vector<ORVMathPoint2D>& points = course.points;
    if (closed && points.size() > 1 && points.front() == points.back()) {
        points.pop_back();
        course.smooth.pop_back();
    }
    if (points.empty()) return;
    if (points.size() == 1) {
        AddDot(points.front(), {1.0, 0.0});
        return;
    }
    if (pen_->IsDashed()) {
        if (!ShowsAsSolid(course)) {
            AddDashes(course, closed);
            return;
        }
        if (!closed) EndWithLastDash(course);
    }
    const std::size_t count = points.size();
    if (!closed) {
        AddPart(course, 0, count - 1);
        return;
    }
    // All around, with the first segment once more for the join where it closes, and the last one before.
    course.Add(points[0], false);
    course.Add(ORVMathPoint2D(points[1]), false);
    points.insert(points.begin(), points[count - 1]);
    course.smooth.insert(course.smooth.begin(), 0);
    AddPart(course, 1, count + 1);
}

bool StrokeOutliner::ShowsAsSolid(const StrokeCourse& course) const {
    if (!pen_->hidesGaps) return false;
    // A corner in a gap has no join, which shows unless the join is like the caps.
    const bool joinsAreCaps =
        pen_->cap == ORVPrintStroke::Cap::kRound && pen_->join == ORVPrintStroke::Join::kRound;
    return pen_->isFine || joinsAreCaps || course.points.size() == 2;
}

void StrokeOutliner::EndWithLastDash(StrokeCourse& course) const {
    const ORVMathPoint2D from = course.points[course.points.size() - 2];
    ORVMathPoint2D& to = course.points.back();
    double length = 0.0, last = 0.0;
    for (std::size_t i = 0; i + 1 < course.points.size(); ++i) {
        const ORVMathPoint2D &a = course.points[i], &b = course.points[i + 1];
        const ORVMathAffine2D& inverse = pen_->fromDevice;
        last = std::hypot(inverse.m11 * (b.x - a.x) + inverse.m12 * (b.y - a.y),
                          inverse.m21 * (b.x - a.x) + inverse.m22 * (b.y - a.y));
        length += last;
    }
    double period = 0.0;
    std::size_t entry = 0;
    FindInPattern(length, period, entry);
    if (entry % 2 == 0) return;
    const double gap = length - (period * pen_->dashPeriod + pen_->dashEnds[entry - 1]);
    if (gap > 0.0 && gap < last) to = Mix(from, to, 1.0 - gap / last);
}

void StrokeOutliner::FindInPattern(double at, double& period, std::size_t& entry) const {
    const std::span<const double> ends = pen_->dashEnds;
    period = std::floor(at / pen_->dashPeriod);
    const double rest = at - period * pen_->dashPeriod;
    entry = 0;
    // A first dash without length is one, too.
    while (at > 0.0 && entry + 1 < ends.size() && ends[entry] <= rest) ++entry;
}

ORVMathVector2D StrokeOutliner::ReachOfDash(const ORVMathVector2D& direction) const {
    if (pen_->cap == ORVPrintStroke::Cap::kRound) return {pen_->radius + 1.0, pen_->radius + 1.0};
    const ORVMathVector2D offset = ToDevice(LeftOf(direction) * pen_->halfWidth);
    const double isSquare = pen_->cap == ORVPrintStroke::Cap::kSquare ? 1.0 : 0.0;
    const ORVMathVector2D ahead = ToDevice(direction * (pen_->halfWidth * isSquare));
    return {std::fabs(offset.x) + std::fabs(ahead.x) + 1.0, std::fabs(offset.y) + std::fabs(ahead.y) + 1.0};
}

bool StrokeOutliner::VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to,
                                 const ORVMathVector2D& reach, double& begin, double& end) const {
    begin = 0.0;
    end = 1.0;
    const auto cut = [&](double start, double step, double least, double most) {
        if (step == 0.0) return start >= least && start <= most;
        const double a = (least - start) / step, b = (most - start) / step;
        begin = std::max(begin, std::min(a, b));
        end = std::min(end, std::max(a, b));
        return begin <= end;
    };
    return cut(from.y, to.y - from.y, coverage_.GetFirstRow() - reach.y, coverage_.GetEndRow() + reach.y) &&
           cut(from.x, to.x - from.x, -reach.x, coverage_.GetPageWidth() + reach.x);
}

void StrokeOutliner::AddDash(const ORVMathVector2D& direction) {
    if (dash_.points.size() > 1)
        AddPart(dash_, 0, dash_.points.size() - 1);
    else if (!dash_.points.empty())
        AddDot(dash_.points.front(), direction);
    dash_.Clear();
}

void StrokeOutliner::AddDashes(StrokeCourse& course, bool closed) {
    if (closed) course.Add(ORVMathPoint2D(course.points.front()), false);
    const std::span<const double> ends = pen_->dashEnds;
    const ORVMathAffine2D& inverse = pen_->fromDevice;
    coverage_.AddWork(course.points.size() * kPointWork);
    dash_.Clear();
    firstDash_.Clear();

    bool isOpen = false;          // a dash has begun and not ended
    bool collectsFirst = closed;  // the first dash of a closed line may continue its last one
    double distance = 0.0;        // along the line so far, pen space
    ORVMathVector2D direction{1.0, 0.0};
    const auto finish = [&] {
        if (collectsFirst) {
            std::swap(firstDash_, dash_);
            dash_.Clear();
            collectsFirst = false;
        } else {
            AddDash(direction);
        }
        isOpen = false;
    };
    for (std::size_t i = 0; i + 1 < course.points.size(); ++i) {
        const ORVMathPoint2D &a = course.points[i], &b = course.points[i + 1];
        const double dx = b.x - a.x, dy = b.y - a.y;
        const ORVMathVector2D v{inverse.m11 * dx + inverse.m12 * dy, inverse.m21 * dx + inverse.m22 * dy};
        const double length = std::sqrt(Dot(v, v));
        if (!(length > 0.0)) continue;
        direction = v * (1.0 / length);
        const double segmentEnd = distance + length;
        double visibleBegin = 0.0, visibleEnd = 0.0;
        const bool isVisible = VisiblePart(a, b, ReachOfDash(direction), visibleBegin, visibleEnd);
        if (isOpen) dash_.Add(a, course.smooth[i] != 0);

        double period = 0.0;
        std::size_t entry = 0;
        FindInPattern(distance, period, entry);
        if (isOpen && entry % 2 == 1) finish();  // it ended on the corner
        double at = distance;
        while (true) {
            const double entryEnd = period * pen_->dashPeriod + ends[entry];
            if (entry % 2 == 0) {
                // A dash of the pattern.
                if (!isOpen) {
                    const double begin = std::max(at, distance);
                    dash_.Add(Mix(a, b, std::clamp((begin - distance) / length, 0.0, 1.0)),
                              begin == distance && course.smooth[i] != 0);
                    isOpen = true;
                }
                if (entryEnd > segmentEnd) break;
                dash_.Add(Mix(a, b, std::clamp((entryEnd - distance) / length, 0.0, 1.0)), false);
                finish();
            } else if (entryEnd > segmentEnd) {
                break;
            }
            at = entryEnd;
            if (++entry == ends.size()) {
                entry = 0;
                period += 1.0;
            }
            // Dashes that cannot be seen need not be made: on to where the visible part begins, or to the end
            // of the segment, always from the start of a period.
            if (entry == 0 && !isOpen) {
                const double target = isVisible && at < distance + visibleEnd * length
                                          ? distance + visibleBegin * length
                                          : segmentEnd;
                const double jump = std::floor(target / pen_->dashPeriod) - 1.0;
                if (jump > period) {
                    period = jump;
                    at = period * pen_->dashPeriod;
                }
            }
            // What is too small to be counted at this distance cannot be walked.
            if (at + pen_->dashPeriod == at) break;
        }
        distance = segmentEnd;
    }
    if (isOpen) {
        dash_.Add(course.points.back(), false);
        if (closed && !firstDash_.points.empty() && !collectsFirst) {
            for (std::size_t i = 0; i < firstDash_.points.size(); ++i)
                dash_.Add(firstDash_.points[i], firstDash_.smooth[i] != 0);
            firstDash_.Clear();
        }
        if (collectsFirst) {
            // One dash goes all around.
            StrokePen solid = *pen_;
            solid.dashPeriod = 0.0;
            const StrokePen* dashed = std::exchange(pen_, &solid);
            AddContour(dash_, true);
            pen_ = dashed;
            dash_.Clear();
            return;
        }
        AddDash(direction);
    }
    if (!firstDash_.points.empty()) {
        std::swap(dash_, firstDash_);
        AddDash(direction);
    }
}
