#pragma once

#include <cstddef>

#include "generators/raster/stroke_outline.h"
#include "platform/mathematics/geometry.h"

/// Cuts lines into dashes and strokes those that can be seen.
class StrokeDasher {
public:
    /// @param outliner  strokes the dashes with its pen; must outlive the dasher
    explicit StrokeDasher(StrokeOutliner& outliner) : outliner_(outliner) {}

    /// Strokes a whole contour, dashed if the pen says so. One without length gives a dot.
    void AddContour(StrokeCourse& course, bool closed);

private:
    const StrokePen& GetPen() const { return outliner_.GetPen(); }
    void AddDashes(StrokeCourse& course, bool closed);
    void AddDash(const ORVMathVector2D& direction);
    /// True when caps cover the gaps of all of the line, so that it need not be cut.
    bool ShowsAsSolid(const StrokeCourse& course) const;
    bool StartsInDash() const;
    /// Takes away the gap that an open line ends with.
    void EndWithLastDash(StrokeCourse& course) const;
    /// Finds the part of a segment that may show, as shares of its length. @return false when there is none
    bool VisiblePart(const ORVMathPoint2D& from, const ORVMathPoint2D& to, const ORVMathVector2D& reach,
                     double& begin, double& end) const;
    ORVMathVector2D ReachOfDash(const ORVMathVector2D& direction) const;
    /// Finds the dash or gap at a distance from a contour's start, in pen space.
    void FindInPattern(double at, double& period, std::size_t& entry) const;

    StrokeOutliner& outliner_;
    StrokeCourse dash_, firstDash_;
};
