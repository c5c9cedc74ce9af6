// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "platform/print/ORVPrintPath.h"

class ORVPrtBitmapImageElt;
class ORVPrtCircleElt;
class ORVPrtContainerElt;
class ORVPrtEllipseElt;
class ORVPrtEllipticalArcElt;
class ORVPrtLineElt;
class ORVPrtPolyCubicBezierElt;
class ORVPrtPolyQuadraticBezierElt;
class ORVPrtPolygonElt;
class ORVPrtPolylineElt;
class ORVPrtRectangleElt;
class ORVPrtTextElt;
struct ORVEllipseFrame;

/// Converts primitives to outlines. Curves are kept; circles and arcs become cubic Bézier curves. Consecutive
/// open primitives are joined into one contour; closed primitives are separate contours. Points that are not
/// finite are ignored.
class ORVPrintOutlineBuilder {
public:
    /// @param path  the outlines are appended to it; must outlive the builder
    explicit ORVPrintOutlineBuilder(ORVPrintPath& path) : path_(path) {}

    /// Sets the transformation applied to subsequent points.
    void SetMap(const ORVMathAffine2D& map) { map_ = map; }
    /// Sets the scale at which outlines will be displayed; it determines how many curves approximate circles
    /// and arcs.
    void SetScale(double scale) { scale_ = scale; }

    void Add(const ORVPrtRectangleElt& rectangle);
    void Add(const ORVPrtCircleElt& circle);
    void Add(const ORVPrtEllipseElt& ellipse);
    void Add(const ORVPrtEllipticalArcElt& arc);
    void Add(const ORVPrtLineElt& line);
    void Add(const ORVPrtPolylineElt& polyline);
    void Add(const ORVPrtPolygonElt& polygon);
    void Add(const ORVPrtPolyCubicBezierElt& curve);
    void Add(const ORVPrtPolyQuadraticBezierElt& curve);
    // Containers, texts and images have no outline.
    void Add(const ORVPrtContainerElt& /*container*/) {}
    void Add(const ORVPrtTextElt& /*text*/) {}
    void Add(const ORVPrtBitmapImageElt& /*image*/) {}

    /// Ends the open contour, if any. If it has returned to its start, it is closed, so that its stroke gets
    /// a join there.
    void EndContour();

    /// True when a contour is open and ends at `start` (before the transformation), so that the next
    /// primitive can continue it.
    bool ContinuesAt(const ORVMathPoint2D& start) const;

private:
    void Start(const ORVMathPoint2D& mapped);
    void LineTo(const ORVMathPoint2D& mapped);
    void AddClosed(const std::vector<ORVMathPoint2D>& points);
    void AddFullEllipse(const ORVEllipseFrame& ellipse);
    /// Appends the curves of an arc that starts at the current point.
    void AppendArc(const ORVEllipseFrame& mapped, double start, double sweep);
    bool IsNear(const ORVMathPoint2D& a, const ORVMathPoint2D& b) const;

    ORVPrintPath& path_;
    ORVMathAffine2D map_;
    double scale_ = 1.0;
    bool open_ = false;
    ORVMathPoint2D contourStart_;
    std::size_t firstVerb_ = 0;  // index of the first verb of the open contour
    double reach_ = 0.0;         // largest radius in the contour; tolerance for arc ends computed in single
                                 // precision
};
