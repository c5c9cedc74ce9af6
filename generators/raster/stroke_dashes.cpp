#include "generators/raster/stroke_dashes.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Work in pixels of one colour.
constexpr std::uint64_t kPointWork = 100;

}  // namespace

void StrokeDasher::AddContour(StrokeCourse& course, bool closed) {
    if (closed) course.DropClosingPoint();
    if (!GetPen().IsDashed() || course.points.size() < 2) {
        outliner_.AddContour(course, closed);
    } else if (ShowsAsSolid(course)) {
        if (!closed) EndWithLastDash(course);
        outliner_.AddContour(course, closed);
    } else {
        AddDashes(course, closed);
    }
}

bool StrokeDasher::ShowsAsSolid(const StrokeCourse& course) const {
    if (!GetPen().hidesGaps) return false;
    // What begins with a gap begins later.
    if (!StartsInDash() && !GetPen().isFine) return false;
    // A corner in a gap has no join, which shows unless the join is like the caps.
    const bool joinsAreCaps =
        GetPen().cap == ORVPrintStroke::Cap::kRound && GetPen().join == ORVPrintStroke::Join::kRound;
    return GetPen().isFine || joinsAreCaps || course.points.size() == 2;
}

void StrokeDasher::EndWithLastDash(StrokeCourse& course) const {
    const ORVMathPoint2D from = course.points[course.points.size() - 2];
    ORVMathPoint2D& to = course.points.back();
    double length = GetPen().dashStart, last = 0.0;
    for (std::size_t i = 0; i + 1 < course.points.size(); ++i) {
        const ORVMathPoint2D &a = course.points[i], &b = course.points[i + 1];
        const ORVMathVector2D v = Turned(GetPen().fromDevice, {b.x - a.x, b.y - a.y});
        last = std::hypot(v.x, v.y);
        length += last;
    }
    double period = 0.0;
    std::size_t entry = 0;
    FindInPattern(length, period, entry);
    if (entry % 2 == 0) return;
    const double gap = length - (period * GetPen().dashPeriod + GetPen().dashEnds[entry - 1]);
    if (gap > 0.0 && gap < last) to = Mix(from, to, 1.0 - gap / last);
}

bool StrokeDasher::StartsInDash() const {
    double period = 0.0;
    std::size_t entry = 0;
    FindInPattern(GetPen().dashStart, period, entry);
    return entry % 2 == 0;
}

void StrokeDasher::FindInPattern(double at, double& period, std::size_t& entry) const {
    const std::span<const double> ends = GetPen().dashEnds;
    period = std::floor(at / GetPen().dashPeriod);
    const double rest = at - period * GetPen().dashPeriod;
    entry = 0;
    // A first dash without length is one, too.
    while (at > 0.0 && entry + 1 < ends.size() && ends[entry] <= rest) ++entry;
}

ORVMathVector2D StrokeDasher::ReachOfDash(const ORVMathVector2D& direction) const {
    if (GetPen().cap == ORVPrintStroke::Cap::kRound) return {GetPen().radius + 1.0, GetPen().radius + 1.0};
    const ORVMathVector2D offset = Turned(GetPen().toDevice, LeftOf(direction) * GetPen().halfWidth);
    const double isSquare = GetPen().cap == ORVPrintStroke::Cap::kSquare ? 1.0 : 0.0;
    const ORVMathVector2D ahead = Turned(GetPen().toDevice, direction * (GetPen().halfWidth * isSquare));
    return {std::fabs(offset.x) + std::fabs(ahead.x) + 1.0, std::fabs(offset.y) + std::fabs(ahead.y) + 1.0};
}

bool StrokeDasher::VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to,
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
    return cut(from.y, to.y - from.y, outliner_.GetCoverage().GetFirstRow() - reach.y,
               outliner_.GetCoverage().GetEndRow() + reach.y) &&
           cut(from.x, to.x - from.x, -reach.x, outliner_.GetCoverage().GetPageWidth() + reach.x);
}

void StrokeDasher::AddDash(const ORVMathVector2D& direction) {
    if (dash_.points.size() > 1)
        outliner_.AddPart(dash_, 0, dash_.points.size() - 1);
    else if (!dash_.points.empty())
        outliner_.AddDot(dash_.points.front(), direction);
    dash_.Clear();
}

void StrokeDasher::AddDashes(StrokeCourse& course, bool closed) {
    if (closed) course.Add(ORVMathPoint2D(course.points.front()), false);
    const std::span<const double> ends = GetPen().dashEnds;
    const ORVMathAffine2D& inverse = GetPen().fromDevice;
    outliner_.AddWork(course.points.size() * kPointWork);
    dash_.Clear();
    firstDash_.Clear();

    bool isOpen = false;  // a dash has begun and not ended
    // The first dash of a closed line may continue its last one.
    bool collectsFirst = closed && StartsInDash();
    double distance = GetPen().dashStart;  // along the line so far, pen space
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
        const ORVMathVector2D v = Turned(inverse, {b.x - a.x, b.y - a.y});
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
            const double entryEnd = period * GetPen().dashPeriod + ends[entry];
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
                const double jump = std::floor(target / GetPen().dashPeriod) - 1.0;
                if (jump > period) {
                    period = jump;
                    at = period * GetPen().dashPeriod;
                }
            }
            // What is too small to be counted at this distance cannot be walked.
            if (at + GetPen().dashPeriod == at) break;
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
            outliner_.AddContour(dash_, true);
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
