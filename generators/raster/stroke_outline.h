// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "generators/raster/coverage_buffer.h"
#include "generators/raster/plane_vectors.h"
#include "generators/raster/stroke_course.h"
#include "generators/raster/stroke_pen.h"
#include "platform/mathematics/geometry.h"

/// Adds the outlines of strokes to a coverage buffer. All outlines wind in the same direction, regardless of
/// the direction of the line. Edges that cannot touch the buffer's band are dropped.
class StrokeOutliner {
public:
    explicit StrokeOutliner(CoverageBuffer& coverage) : coverage_(coverage) {}

    /// @param reversed  makes outlines wind in the opposite direction
    void SetPen(const StrokePen& pen, bool reversed = false);

    const StrokePen& GetPen() const { return *pen_; }
    const CoverageBuffer& GetCoverage() const { return coverage_; }
    void AddWork(std::uint64_t pixels) { coverage_.AddWork(pixels); }

    /// Strokes a whole contour as a solid line. A contour of zero length yields a dot. Of exact pens, a
    /// closed contour of one straight line, there and back, yields it once.
    void AddContour(StrokeCourse& course, bool closed);
    /// Adds the dot of a zero-length line, if the caps are round or square.
    void AddDot(const ORVMathPoint2D& center, const ORVMathVector2D& direction);
    /// Strokes a straight line with its caps, which must not be round.
    /// @param direction  unit vector of the line, in pen space
    void AddStraight(const ORVMathPoint2D& from, const ORVMathPoint2D& to, const ORVMathVector2D& direction);
    /// Strokes a part of a solid line.
    /// @param first, last  the part's segments [first, last). Adjacent segments in `course` determine the
    ///                     joins; at an end without one, the line has a cap.
    void AddPart(const StrokeCourse& course, std::size_t first, std::size_t last);

private:
    /// A straight segment of a line.
    struct Segment {
        ORVMathVector2D direction;  // unit vector in pen space
        ORVMathVector2D offset;     // to the left border, in device space
        double length = 0.0;        // in pen space
        bool visible = false;
    };
    /// Where the borders of two segments meet at a point of the line.
    struct Corner {
        FixedPoint leftIn, leftOut, rightIn, rightOut;
        FixedPoint leftPivot, rightPivot;  // points that the borders pass through
        ORVMathPoint2D center;
        ORVMathVector2D from, to;  // left normals in pen space
        bool round = false;
        bool isCut = false;              // the miter on the outer side is cut off
        FixedPoint cutBefore, cutAfter;  // ends of the cut
        double turn = 0.0;               // sine of the angle, in pen space
    };

    void MakeSegments(const StrokeCourse& course, std::size_t first, std::size_t last);
    void MakeCorner(const ORVMathPoint2D& center, const Segment& before, const Segment& after,
                    CoursePoint kind, Corner& corner) const;
    void CutMiter(const Segment& before, const Segment& after, Corner& corner) const;
    void AddCorner(const Corner& corner);
    void AddOuterEdges(const Corner& corner, FixedPoint in, FixedPoint out);
    void AddCap(const ORVMathPoint2D& center, const ORVMathVector2D& direction);
    void AddThereAndBack(const StrokeCourse& course);
    void AddArc(const ORVMathPoint2D& center, const ORVMathVector2D& from, double angle, FixedPoint start,
                FixedPoint end);

    void AddEdge(FixedPoint from, FixedPoint to) {
        if (reversed_)
            coverage_.AddLine(to, from);
        else
            coverage_.AddLine(from, to);
    }
    ORVMathVector2D ToDevice(const ORVMathVector2D& v) const { return Turned(pen_->toDevice, v); }

    CoverageBuffer& coverage_;
    const StrokePen* pen_ = nullptr;
    bool reversed_ = false;
    std::vector<Segment> segments_;
};
