// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/tree/shapes.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "interpreters/svg2/values/path_data.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr double kQuarterReach = 0.5522847498307936;  // distance of control points, in radii

/// Reads the sizes of one shape.
struct ShapeReader {
    const Scene& scene;
    ElementIndex element;
    const Style& style;
    const Viewport& viewport;

    std::optional<double> Find(Name name, Axis axis) const {
        return scene.FindLength(element, name, style, viewport, axis);
    }
    double Get(Name name, Axis axis) const { return Find(name, axis).value_or(0.0); }
    /// A radius; empty if absent, "auto" or negative.
    std::optional<double> FindRadius(Name name, Axis axis) const {
        const std::optional<double> radius = Find(name, axis);
        return radius && *radius >= 0.0 ? radius : std::nullopt;
    }
};

bool AddRect(const ShapeReader& reader, ORVPrintPath& path) {
    const Rectangle rectangle{reader.Get(Name::kX, Axis::kX), reader.Get(Name::kY, Axis::kY),
                              reader.Get(Name::kWidth, Axis::kX), reader.Get(Name::kHeight, Axis::kY)};
    if (!(rectangle.width > 0.0) || !(rectangle.height > 0.0)) return false;
    const std::optional<double> rx = reader.FindRadius(Name::kRx, Axis::kX);
    const std::optional<double> ry = reader.FindRadius(Name::kRy, Axis::kY);
    AddRectangle(path, rectangle, std::min(rx ? *rx : ry.value_or(0.0), rectangle.width / 2.0),
                 std::min(ry ? *ry : rx.value_or(0.0), rectangle.height / 2.0));
    return true;
}

bool AddCircle(const ShapeReader& reader, ORVPrintPath& path) {
    const double radius = reader.Get(Name::kR, Axis::kNone);
    if (!(radius > 0.0)) return false;
    AddEllipse(path, {reader.Get(Name::kCx, Axis::kX), reader.Get(Name::kCy, Axis::kY)}, radius, radius);
    return true;
}

bool AddEllipseElement(const ShapeReader& reader, ORVPrintPath& path) {
    const std::optional<double> rx = reader.FindRadius(Name::kRx, Axis::kX);
    const std::optional<double> ry = reader.FindRadius(Name::kRy, Axis::kY);
    const double radiusX = rx ? *rx : ry.value_or(0.0), radiusY = ry ? *ry : rx.value_or(0.0);
    if (!(radiusX > 0.0) || !(radiusY > 0.0)) return false;
    AddEllipse(path, {reader.Get(Name::kCx, Axis::kX), reader.Get(Name::kCy, Axis::kY)}, radiusX, radiusY);
    return true;
}

bool AddLine(const ShapeReader& reader, ORVPrintPath& path) {
    path.MoveTo({reader.Get(Name::kX1, Axis::kX), reader.Get(Name::kY1, Axis::kY)});
    path.LineTo({reader.Get(Name::kX2, Axis::kX), reader.Get(Name::kY2, Axis::kY)});
    return true;
}

bool AddPolygon(const ShapeReader& reader, bool closes, ORVPrintPath& path) {
    std::vector<ORVMathPoint2D> points;
    ReadPoints(reader.scene.GetDocument().ValueOf(reader.element, Name::kPoints), points);
    if (points.size() < 2) return false;
    path.MoveTo(points.front());
    for (std::size_t i = 1; i < points.size(); ++i) path.LineTo(points[i]);
    if (closes) path.Close();
    return true;
}

bool AddPath(const ShapeReader& reader, ORVPrintPath& path, std::vector<std::size_t>* segmentEnds) {
    std::string_view data =
        reader.scene.GetCascade().FindGeometry(reader.element, Name::kD, reader.style).value_or("");
    if (data.starts_with("path(")) {
        Scanner scanner(data);
        scanner.Advance(4);
        std::string_view inside;
        if (!scanner.TakeParentheses(inside)) return false;
        Scanner text(Trim(inside));
        if (!text.TakeString(data)) return false;
    }
    ReadPathData(data, path, segmentEnds);
    return path.verbs.size() > 1;
}

/// Adds segment ends for paths without curves: each verb is one segment.
void AddSegmentEnds(const ORVPrintPath& path, std::size_t first, std::vector<std::size_t>& segmentEnds) {
    for (std::size_t i = first; i < path.verbs.size(); ++i) segmentEnds.push_back(i + 1);
}

/// Extends a range by the extrema of one coordinate of a cubic curve.
void AddExtremes(const std::array<double, 4>& c, double& least, double& greatest) {
    const double a = c[3] - 3.0 * c[2] + 3.0 * c[1] - c[0];
    const double b = 2.0 * (c[2] - 2.0 * c[1] + c[0]);
    const double d = c[1] - c[0];
    const auto addAt = [&](double t) {
        if (!(t > 0.0 && t < 1.0)) return;
        const double s = 1.0 - t;
        const double value =
            s * s * s * c[0] + 3.0 * s * s * t * c[1] + 3.0 * s * t * t * c[2] + t * t * t * c[3];
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    };
    constexpr double kFlat = 1e-12;
    if (std::fabs(a) <= kFlat * (std::fabs(b) + std::fabs(d))) {
        if (b != 0.0) addAt(-d / b);
        return;
    }
    const double discriminant = b * b - 4.0 * a * d;
    if (discriminant < 0.0) return;
    const double root = std::sqrt(discriminant);
    addAt((-b + root) / (2.0 * a));
    addAt((-b - root) / (2.0 * a));
}

void AddCurve(const std::array<ORVMathPoint2D, 4>& p, ORVMathBox2D& box) {
    double xMin = std::min(p[0].x, p[3].x), xMax = std::max(p[0].x, p[3].x);
    double yMin = std::min(p[0].y, p[3].y), yMax = std::max(p[0].y, p[3].y);
    AddExtremes({p[0].x, p[1].x, p[2].x, p[3].x}, xMin, xMax);
    AddExtremes({p[0].y, p[1].y, p[2].y, p[3].y}, yMin, yMax);
    box.Add({xMin, yMin});
    box.Add({xMax, yMax});
}

}  // namespace

bool IsShape(Tag tag) {
    switch (tag) {
        case Tag::kPath:
        case Tag::kRect:
        case Tag::kCircle:
        case Tag::kEllipse:
        case Tag::kLine:
        case Tag::kPolyline:
        case Tag::kPolygon: return true;
        default: return false;
    }
}

void AddRectangle(ORVPrintPath& path, const Rectangle& r, double rx, double ry) {
    const double right = r.x + r.width, bottom = r.y + r.height;
    if (!(rx > 0.0) || !(ry > 0.0)) {
        path.MoveTo({r.x, r.y});
        path.LineTo({right, r.y});
        path.LineTo({right, bottom});
        path.LineTo({r.x, bottom});
        path.Close();
        return;
    }
    const double cx = rx * (1.0 - kQuarterReach), cy = ry * (1.0 - kQuarterReach);
    path.MoveTo({r.x + rx, r.y});
    path.LineTo({right - rx, r.y});
    path.CubicTo({right - cx, r.y}, {right, r.y + cy}, {right, r.y + ry});
    path.LineTo({right, bottom - ry});
    path.CubicTo({right, bottom - cy}, {right - cx, bottom}, {right - rx, bottom});
    path.LineTo({r.x + rx, bottom});
    path.CubicTo({r.x + cx, bottom}, {r.x, bottom - cy}, {r.x, bottom - ry});
    path.LineTo({r.x, r.y + ry});
    path.CubicTo({r.x, r.y + cy}, {r.x + cx, r.y}, {r.x + rx, r.y});
    path.Close();
}

// Clockwise from 3 o'clock, where dashes start.
void AddEllipse(ORVPrintPath& path, const ORVMathPoint2D& c, double rx, double ry) {
    const double kx = rx * kQuarterReach, ky = ry * kQuarterReach;
    path.MoveTo({c.x + rx, c.y});
    path.CubicTo({c.x + rx, c.y + ky}, {c.x + kx, c.y + ry}, {c.x, c.y + ry});
    path.CubicTo({c.x - kx, c.y + ry}, {c.x - rx, c.y + ky}, {c.x - rx, c.y});
    path.CubicTo({c.x - rx, c.y - ky}, {c.x - kx, c.y - ry}, {c.x, c.y - ry});
    path.CubicTo({c.x + kx, c.y - ry}, {c.x + rx, c.y - ky}, {c.x + rx, c.y});
    path.Close();
}

bool AddOutline(const Scene& scene, ElementIndex element, const Style& style, const Viewport& viewport,
                ORVPrintPath& path, std::vector<std::size_t>* segmentEnds) {
    const ShapeReader reader{scene, element, style, viewport};
    const std::size_t first = path.verbs.size();
    bool isAdded = false;
    switch (scene.GetDocument()[element].tag) {
        case Tag::kPath: return AddPath(reader, path, segmentEnds);
        case Tag::kRect: isAdded = AddRect(reader, path); break;
        case Tag::kCircle: isAdded = AddCircle(reader, path); break;
        case Tag::kEllipse: isAdded = AddEllipseElement(reader, path); break;
        case Tag::kLine: isAdded = AddLine(reader, path); break;
        case Tag::kPolyline: isAdded = AddPolygon(reader, false, path); break;
        case Tag::kPolygon: isAdded = AddPolygon(reader, true, path); break;
        default: return false;
    }
    if (isAdded && segmentEnds) AddSegmentEnds(path, first, *segmentEnds);
    return isAdded;
}

ORVMathBox2D BoxOf(const ORVPrintPath& path, const ORVMathAffine2D& map) {
    using Verb = ORVPrintPath::Verb;
    ORVMathBox2D box;
    ORVMathPoint2D current;
    std::size_t point = 0;
    for (std::size_t i = 0; i < path.verbs.size(); ++i) {
        switch (path.verbs[i]) {
            case Verb::kMove:
                current = map(path.points[point++]);
                if (i + 1 < path.verbs.size() && path.verbs[i + 1] != Verb::kMove) box.Add(current);
                break;
            case Verb::kLine:
                current = map(path.points[point++]);
                box.Add(current);
                break;
            case Verb::kCubic: {
                const ORVMathPoint2D end = map(path.points[point + 2]);
                AddCurve({current, map(path.points[point]), map(path.points[point + 1]), end}, box);
                current = end;
                point += 3;
                break;
            }
            case Verb::kClose: break;
        }
    }
    return box;
}

}  // namespace svg2
