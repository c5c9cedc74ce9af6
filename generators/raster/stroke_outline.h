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

/// Puts the outlines of lines into a coverage buffer. All outlines wind in the same sense, whichever way a
/// line runs. Edges that cannot touch the buffer's band are left out, wherever they belong.
class StrokeOutliner {
public:
    explicit StrokeOutliner(CoverageBuffer& coverage) : coverage_(coverage) {}

    /// @param reversed  lets outlines wind in the opposite sense
    void SetPen(const StrokePen& pen, bool reversed = false);

    const StrokePen& GetPen() const { return *pen_; }
    const CoverageBuffer& GetCoverage() const { return coverage_; }
    void AddWork(std::uint64_t pixels) { coverage_.AddWork(pixels); }

    /// Strokes a whole contour as a solid line. One without length gives a dot.
    void AddContour(StrokeCourse& course, bool closed);
    /// Round and square caps make a dot of a line without length.
    void AddDot(const ORVMathPoint2D& center, const ORVMathVector2D& direction);
    /// Strokes a straight line with its caps, which are not round.
    /// @param direction  of the line: a unit vector in pen space
    void AddStraight(const ORVMathPoint2D& from, const ORVMathPoint2D& to, const ORVMathVector2D& direction);
    /// Strokes a part of a solid line.
    /// @param first, last  the part's segments [first, last). Those before and after stand in the course for
    ///                     the joins; where there is none, the line has a cap.
    void AddPart(const StrokeCourse& course, std::size_t first, std::size_t last);

private:
    /// A straight piece of a line, with unit vectors in pen space.
    struct Segment {
        ORVMathVector2D direction;  // pen space, unit
        ORVMathVector2D offset;     // device, to the left border
        double length = 0.0;        // pen space
        bool visible = false;
    };
    /// Where the borders of two segments meet at a point of the line.
    struct Corner {
        FixedPoint leftIn, leftOut, rightIn, rightOut;
        FixedPoint leftPivot, rightPivot;  // that a border goes by
        ORVMathPoint2D center;
        ORVMathVector2D from, to;  // left normals in pen space
        bool round = false;
        bool isCut = false;              // a miter that is cut off, on the outer side
        FixedPoint cutBefore, cutAfter;  // where
        double turn = 0.0;               // sine of the angle, pen space
    };

    void MakeSegments(const StrokeCourse& course, std::size_t first, std::size_t last);
    void MakeCorner(const ORVMathPoint2D& center, const Segment& before, const Segment& after, bool isSmooth,
                    Corner& corner) const;
    void CutMiter(const Segment& before, const Segment& after, Corner& corner) const;
    void AddCorner(const Corner& corner);
    void AddOuterEdges(const Corner& corner, FixedPoint in, FixedPoint out);
    void AddCap(const ORVMathPoint2D& center, const ORVMathVector2D& direction);
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
