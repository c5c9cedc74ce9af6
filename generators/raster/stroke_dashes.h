// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "generators/raster/stroke_outline.h"
#include "platform/mathematics/geometry.h"

/// Position of a part of a dashed line within the line. Distances are along the line, in pen space.
struct DashedPart {
    double begin = 0.0;   ///< start of the part's first segment
    double before = 0.0;  ///< start of the segment before that
    /// Where the last dash of a closed line continues into its first one: the fraction of the last segment
    /// before that dash. Greater than 1 for other parts.
    double joined = 2.0;
    /// Where the last part of a closed line continues into a dash: the end of that dash.
    double firstEnd = 0.0;
    bool startsLine = false;  ///< nothing precedes the part, unless the line is closed
    bool endsLine = false;    ///< nothing follows the part, unless the line is closed
    bool closed = false;
    bool isSolid = false;  ///< the line has no visible gaps
    /// For a solid part that ends an open line: the visible fraction of its last segment.
    double keptOfLast = 1.0;
};

/// Measures a dashed line part by part, so that each part can be drawn independently.
class DashedLineMeasure {
public:
    DashedLineMeasure(const StrokePen& pen, bool closed);

    /// @param course  the next part, including both end points
    DashedPart Add(const StrokeCourse& course);
    /// False for lines that begin with a visible gap.
    bool MayHideGaps() const { return startsInDash_ || pen_.isFine; }
    /// Completes the data of the first and last parts.
    void Finish(DashedPart& first, DashedPart& last) const;

private:
    const StrokePen& pen_;
    const bool closed_;
    bool isBegun_ = false;
    bool startsInDash_ = false;
    double firstEnd_ = 0.0;                      // of the dash at the start of the line
    double length_ = 0.0;                        // end of the parts measured so far
    double lastLength_ = 0.0, lastBegin_ = 0.0;  // of the last segment
};

/// Splits lines into dashes and strokes those that may be visible.
class StrokeDasher {
public:
    /// @param outliner  strokes the dashes with its pen; must outlive the dasher
    explicit StrokeDasher(StrokeOutliner& outliner) : outliner_(outliner) {}

    /// Strokes a whole contour, dashed if the pen is. A contour of zero length yields a dot.
    void AddContour(StrokeCourse& course, bool closed);
    /// Strokes a part of a dashed line.
    /// @param first, last  the part's segments [first, last); `course` also holds the adjacent segments
    void AddPart(StrokeCourse& course, std::size_t first, std::size_t last, const DashedPart& part);

private:
    /// The current segment.
    struct Segment {
        std::size_t index = 0;
        ORVMathVector2D direction;                      // unit vector in pen space
        double visibleBegin = -1.0, visibleEnd = -1.0;  // distances
    };

    const StrokePen& GetPen() const { return outliner_.GetPen(); }
    void Measure(const StrokeCourse& course, std::size_t first, std::size_t last, const DashedPart& part);
    void AddDashes(const StrokeCourse& course, std::size_t first, std::size_t last, const DashedPart& part);
    Segment SegmentAt(const StrokeCourse& course, std::size_t index) const;
    /// Adds a dash within one segment, with straight ends.
    void AddStraightDash(const StrokeCourse& course, const Segment& segment, double begin, double end);
    /// Adds any dash, as far as it lies in the segments [first, last).
    void AddBentDash(const StrokeCourse& course, const Segment& segment, double begin, double end,
                     std::size_t first, std::size_t last, const DashedPart& part);
    /// Where the first dash of a closed line leaves the segment that it begins on.
    ORVMathPoint2D FirstDashFrom(const StrokeCourse& course, std::size_t segment, double end) const;
    ORVMathPoint2D PointAt(const StrokeCourse& course, std::size_t segment, double distance) const;
    /// Finds the visible part of a segment, as fractions of its length. @return false if there is none
    bool VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to, const ORVMathVector2D& reach,
                     double& begin, double& end) const;
    ORVMathVector2D ReachOfDash(const ORVMathVector2D& direction) const;

    StrokeOutliner& outliner_;
    // Distances of the course's points, and lengths of the segments that start there.
    std::vector<double> distances_, lengths_;
    StrokeCourse dash_;
};
