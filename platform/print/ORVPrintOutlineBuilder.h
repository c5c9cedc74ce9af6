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

/// Turns primitives into outlines: curves stay curves, circles and arcs become cubic ones. Open primitives
/// that are added one after the other continue each other in one contour; closed ones are contours of their
/// own. Points that are not finite are left out.
class ORVPrintOutlineBuilder {
public:
    /// @param path  receives the outlines after what it holds; must outlive the builder
    explicit ORVPrintOutlineBuilder(ORVPrintPath& path) : path_(path) {}

    /// The map that points go through from now on.
    void SetMap(const ORVMathAffine2D& map) { map_ = map; }
    /// Scale at which outlines will be seen; circles and arcs get as many curves as that needs.
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

    /// Ends the open contour, if there is one. It is closed when it has come back to its start, so that a
    /// stroke gets a join there.
    void EndContour();

    /// True when a contour is open and the next primitive could continue it at `start` (before the map).
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
    std::size_t firstVerb_ = 0;  // of the open contour
    double reach_ = 0.0;         // largest radius in the contour: arcs end where floats say
};
