#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "generators/raster/coverage_buffer.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// What a line is drawn with. In pen space the pen is round and dashes are measured; the linear part of the
/// shape's map takes pen space to the device, and may squeeze or slant the pen.
struct StrokePen {
    double halfWidth = 0.5;  ///< pen space
    ORVPrintStroke::Cap cap = ORVPrintStroke::Cap::kButt;
    ORVPrintStroke::Join join = ORVPrintStroke::Join::kMiter;
    double miterLimit = 4.0;
    ORVMathAffine2D toDevice, fromDevice;  ///< linear
    double reach = 0.5;                    ///< pixels that the line may extend from its course
    double radius = 0.5;                   ///< pixels, of the pen where it is widest
    double gentleTurn = 1.9;               ///< 1 + the cosine of the turns in curves whose borders just meet
    double roundStep = 1.0;                ///< radians between the points of a round cap or join
    double dashPeriod = 0.0;               ///< pen space, 0 for a solid line
    bool isFine = false;                   ///< the dashes are finer than pixels
    bool hidesGaps = false;                ///< caps cover the gaps of dashes, as far as pixels can show
    std::span<const double> dashEnds;      ///< where dashes and gaps end, counted from the period's start

    bool IsDashed() const { return dashPeriod > 0.0; }
};

/// Makes a pen. Lines thinner than `thinnest` pixels get that width.
/// @param dashEnds  receives the ends of dashes; must outlive the pen
StrokePen ORVMakePen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest,
                     std::vector<double>& dashEnds);

/// The course of a line, flattened: device points, none equal to its predecessor.
struct StrokeCourse {
    std::vector<ORVMathPoint2D> points;
    std::vector<std::uint8_t> smooth;  ///< for each point, whether it is inside a curve

    void Clear() {
        points.clear();
        smooth.clear();
    }
    void Add(const ORVMathPoint2D& point, bool isSmooth) {
        if (!points.empty() && points.back() == point) return;
        points.push_back(point);
        smooth.push_back(isSmooth ? 1 : 0);
    }
};

/// Puts the outlines of lines into a coverage buffer. All outlines wind in the same sense, whichever way a
/// line runs. Edges that cannot touch the buffer's band are left out, wherever they belong.
class StrokeOutliner {
public:
    explicit StrokeOutliner(CoverageBuffer& coverage) : coverage_(coverage) {}

    /// @param reversed  lets outlines wind in the opposite sense
    void SetPen(const StrokePen& pen, bool reversed = false);

    /// Strokes a whole contour, dashed if the pen says so. One without length gives a dot with round or
    /// square caps.
    void AddContour(StrokeCourse& course, bool closed);
    /// Strokes a part of a solid line.
    /// @param first, last  the part's segments [first, last). What comes before and after stands in the
    /// course
    ///                     for the joins; where nothing does, the line has a cap.
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
        ORVMathPoint2D center;
        ORVMathVector2D from, to;  // left normals in pen space
        bool pivotLeft = false, pivotRight = false, round = false;
        double turn = 0.0;  // sine of the angle, pen space
    };

    void MakeSegments(const StrokeCourse& course, std::size_t first, std::size_t last);
    Corner MakeCorner(const ORVMathPoint2D& center, const Segment& before, const Segment& after,
                      bool isSmooth) const;
    void AddCorner(const Corner& corner);
    void AddCap(const ORVMathPoint2D& center, const ORVMathVector2D& direction);
    void AddArc(const ORVMathPoint2D& center, const ORVMathVector2D& from, double angle, FixedPoint start,
                FixedPoint end);
    void AddDot(const ORVMathPoint2D& center, const ORVMathVector2D& direction);
    void AddDashes(StrokeCourse& course, bool closed);
    void AddDash(const ORVMathVector2D& direction);
    bool ShowsAsSolid(const StrokeCourse& course) const;
    void EndWithLastDash(StrokeCourse& course) const;
    bool VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to, const ORVMathVector2D& reach,
                     double& begin, double& end) const;
    ORVMathVector2D ReachOfDash(const ORVMathVector2D& direction) const;
    void FindInPattern(double at, double& period, std::size_t& entry) const;

    void AddEdge(FixedPoint from, FixedPoint to) {
        if (reversed_)
            coverage_.AddLine(to, from);
        else
            coverage_.AddLine(from, to);
    }
    ORVMathVector2D ToDevice(const ORVMathVector2D& v) const {
        return {pen_->toDevice.m11 * v.x + pen_->toDevice.m12 * v.y,
                pen_->toDevice.m21 * v.x + pen_->toDevice.m22 * v.y};
    }

    CoverageBuffer& coverage_;
    const StrokePen* pen_ = nullptr;
    bool reversed_ = false;
    std::vector<Segment> segments_;
    StrokeCourse dash_, firstDash_;
};
