// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "generators/raster/stroke_outline.h"
#include "platform/mathematics/geometry.h"

/// Where a part of a dashed line stands in the line. Distances are measured along it, in pen space.
struct DashedPart {
    double begin = 0.0;   ///< of the part's first segment
    double before = 0.0;  ///< of the segment before that
    /// Where a closed line's last dash goes on into its first one: the share of the last segment that comes
    /// before the dash. Of other parts more than 1.
    double joined = 2.0;
    double firstEnd = 0.0;    ///< where a closed line's last part goes on into a dash: where that ends
    bool startsLine = false;  ///< nothing comes before the part, unless the line is closed
    bool endsLine = false;    ///< nothing comes after the part, unless the line is closed
    bool closed = false;
    bool isSolid = false;     ///< the line has no gap that shows
    double keptOfLast = 1.0;  ///< of a solid part that ends an open line: what its last segment shows
};

/// Measures a dashed line part by part, so that each can be drawn by itself.
class DashedLineMeasure {
public:
    DashedLineMeasure(const StrokePen& pen, bool closed);

    /// @param course  that of the next part, both of its ends included
    DashedPart Add(const StrokeCourse& course);
    /// False for lines that begin with a gap that would show.
    bool MayHideGaps() const { return startsInDash_ || pen_.isFine; }
    /// Completes what was said of the first and of the last part.
    void Finish(DashedPart& first, DashedPart& last) const;

private:
    const StrokePen& pen_;
    const bool closed_;
    bool isBegun_ = false;
    bool startsInDash_ = false;
    double firstEnd_ = 0.0;                      // of the dash that the line starts in
    double length_ = 0.0;                        // where what was measured so far ends
    double lastLength_ = 0.0, lastBegin_ = 0.0;  // of the last segment
};

/// Cuts lines into dashes and strokes those that can be seen.
class StrokeDasher {
public:
    /// @param outliner  strokes the dashes with its pen; must outlive the dasher
    explicit StrokeDasher(StrokeOutliner& outliner) : outliner_(outliner) {}

    /// Strokes a whole contour, dashed if the pen says so. One without length gives a dot.
    void AddContour(StrokeCourse& course, bool closed);
    /// Strokes a part of a dashed line.
    /// @param first, last  the part's segments [first, last); the course holds the ones before and after, too
    void AddPart(StrokeCourse& course, std::size_t first, std::size_t last, const DashedPart& part);

private:
    /// The segment that dashes are being made on.
    struct Segment {
        std::size_t index = 0;
        ORVMathVector2D direction;                      // pen space, unit
        double visibleBegin = -1.0, visibleEnd = -1.0;  // distances
    };

    const StrokePen& GetPen() const { return outliner_.GetPen(); }
    void Measure(const StrokeCourse& course, std::size_t first, std::size_t last, const DashedPart& part);
    void AddDashes(const StrokeCourse& course, std::size_t first, std::size_t last, const DashedPart& part);
    Segment SegmentAt(const StrokeCourse& course, std::size_t index) const;
    /// A dash on one segment, with ends that are straight.
    void AddStraightDash(const StrokeCourse& course, const Segment& segment, double begin, double end);
    /// Any dash, as far as it belongs to the segments [first, last).
    void AddBentDash(const StrokeCourse& course, const Segment& segment, double begin, double end,
                     std::size_t first, std::size_t last, const DashedPart& part);
    /// Where the first dash of a closed line, which the segment begins, leaves the segment.
    ORVMathPoint2D FirstDashFrom(const StrokeCourse& course, std::size_t segment, double end) const;
    ORVMathPoint2D PointAt(const StrokeCourse& course, std::size_t segment, double distance) const;
    /// Finds the part of a segment that may show, as shares of its length. @return false when there is none
    bool VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to, const ORVMathVector2D& reach,
                     double& begin, double& end) const;
    ORVMathVector2D ReachOfDash(const ORVMathVector2D& direction) const;

    StrokeOutliner& outliner_;
    std::vector<double> distances_, lengths_;  // of the course's points, and of the segments behind them
    StrokeCourse dash_;
};
