// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/stroke_course.h"

#include <algorithm>
#include <cmath>

#include "generators/raster/curve_flattening.h"
#include "generators/raster/plane_vectors.h"

namespace {

// Pens up to this radius in pixels do not reveal the corners of a flattened curve.
constexpr double kFinePen = 0.5;

// With exact ends: maximum displacement of a corner of a cap or join from its place by the tangent, in
// pixels.
constexpr double kLeastTilt = 0.25;
// Length of the piece that turns such an end, in pixels.
constexpr double kStub = 1.0 / 64.0;

int PiecesOf(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
             const ORVMathPoint2D& p3, const StrokePen& pen) {
    const int pieces = ORVPiecesOfCubic(p0, p1, p2, p3);
    if (pen.radius <= kFinePen) return pieces;
    // The border of a wide line turns at the corners of its centre line, which must be gentle for that.
    const auto turn = [](const ORVMathPoint2D& a, const ORVMathPoint2D& b, const ORVMathPoint2D& c) {
        const double ux = b.x - a.x, uy = b.y - a.y, vx = c.x - b.x, vy = c.y - b.y;
        return std::fabs(std::atan2(ux * vy - uy * vx, ux * vx + uy * vy));
    };
    double step = 2.0 * std::acos(std::max(0.0, 1.0 - kFlatness / pen.radius));
    // Dashes end within curves.
    if (pen.isExact && pen.IsDashed()) step = std::min(step, 2.0 * kLeastTilt / pen.radius);
    const double needed = (turn(p0, p1, p2) + turn(p1, p2, p3)) * 1.5 / std::max(step, 1e-3);
    return std::max(pieces, static_cast<int>(std::min(needed, 1000.0)) + 1);
}

/// A point next to the end `at` of a curve, in the direction of its tangent there.
/// @param controls  the curve's other control points, nearest first
/// @param chord     the next point of the flattened curve
/// @return false when the chord has that direction, to the accuracy that the pen reveals
bool FindStub(const ORVMathPoint2D& at, const ORVMathPoint2D (&controls)[3], const ORVMathPoint2D& chord,
              double penRadius, ORVMathPoint2D& stub) {
    for (const ORVMathPoint2D& control : controls) {
        const ORVMathVector2D tangent{control.x - at.x, control.y - at.y};
        const double length = std::hypot(tangent.x, tangent.y);
        if (!(length > kStub)) continue;
        const ORVMathVector2D piece{chord.x - at.x, chord.y - at.y};
        const double pieceLength = std::hypot(piece.x, piece.y);
        if (pieceLength < 4.0 * kStub ||
            std::fabs(Cross(tangent, piece)) * penRadius <= kLeastTilt * length * pieceLength)
            return false;
        stub = at + tangent * (kStub / length);
        return true;
    }
    return false;
}

void AppendCurve(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                 const ORVMathPoint2D& p3, int pieces, StrokeCourse& course) {
    int done = 0;
    ORVFlattenCubic(p0, p1, p2, p3, pieces, [&](const ORVMathPoint2D& p) {
        course.Add(p, ++done < pieces ? CoursePoint::kSmooth : CoursePoint::kCorner);
    });
}

void AppendCurveWithExactEnds(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                              const ORVMathPoint2D& p3, int pieces, double penRadius, StrokeCourse& course) {
    int done = 0;
    ORVMathPoint2D before = p0, stub;
    ORVFlattenCubic(p0, p1, p2, p3, pieces, [&](const ORVMathPoint2D& p) {
        if (++done == 1 && FindStub(p0, {p1, p2, p3}, p, penRadius, stub))
            course.Add(stub, CoursePoint::kTurn);
        if (done == pieces && FindStub(p3, {p2, p1, p0}, before, penRadius, stub))
            course.Add(stub, CoursePoint::kTurn);
        course.Add(p, done < pieces ? CoursePoint::kSmooth : CoursePoint::kCorner);
        before = p;
    });
}

}  // namespace

std::uint32_t ORVCountPoints(const RasterContour& contour, std::uint32_t firstVerb, std::uint32_t count) {
    std::uint32_t points = 0;
    for (std::uint32_t i = firstVerb; i < firstVerb + count; ++i)
        points += contour.verbs[i] == RasterContour::Verb::kCubic ? 3U : 1U;
    return points;
}

void ORVAppendVerbs(const RasterGeometry& geometry, const RasterContour& contour, const VerbRange& verbs,
                    const StrokePen& pen, StrokeCourse& course) {
    const bool isExact = pen.isExact && pen.radius > kFinePen;
    const RasterPoint* point = contour.points + verbs.firstPoint;
    ORVMathPoint2D current = geometry.PlaceOf(*point++);
    course.Add(current, CoursePoint::kCorner);
    for (std::uint32_t i = 0; i < verbs.count; ++i) {
        if (contour.verbs[verbs.first + i] == RasterContour::Verb::kLine) {
            current = geometry.PlaceOf(*point++);
            course.Add(current, CoursePoint::kCorner);
            continue;
        }
        const ORVMathPoint2D control1 = geometry.PlaceOf(point[0]), control2 = geometry.PlaceOf(point[1]),
                             end = geometry.PlaceOf(point[2]);
        point += 3;
        const int pieces = PiecesOf(current, control1, control2, end, pen);
        if (isExact)
            AppendCurveWithExactEnds(current, control1, control2, end, pieces, pen.radius, course);
        else
            AppendCurve(current, control1, control2, end, pieces, course);
        current = end;
    }
}

void ORVAppendVerbsInContext(const RasterGeometry& geometry, const RasterContour& contour,
                             const VerbRange& verbs, const StrokePen& pen, StrokeCourse& course,
                             std::size_t& first, std::size_t& last) {
    const auto append = [&](const VerbRange& range) {
        ORVAppendVerbs(geometry, contour, range, pen, course);
        return course.points.size() - 1;
    };
    const std::uint32_t end = verbs.first + verbs.count;
    first = 0;
    if (verbs.first > 0) {
        const std::uint32_t before = verbs.first - 1;
        first = append({before, 1, verbs.firstPoint - ORVCountPoints(contour, before, 1)});
    } else if (contour.closed) {
        const std::uint32_t before = contour.verbCount - 1;
        first = append({before, 1, ORVCountPoints(contour, 0, before)});
    }
    last = append(verbs);
    if (end < contour.verbCount)
        append({end, 1, verbs.firstPoint + ORVCountPoints(contour, verbs.first, verbs.count)});
    else if (contour.closed)
        append({0, 1, 0});
}
