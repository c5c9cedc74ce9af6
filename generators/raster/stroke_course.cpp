// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/stroke_course.h"

#include <algorithm>
#include <cmath>

#include "generators/raster/curve_flattening.h"

namespace {

// Pens up to this radius in pixels do not reveal the corners of a flattened curve.
constexpr double kFinePen = 0.5;

int PiecesOf(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
             const ORVMathPoint2D& p3, double penRadius) {
    const int pieces = ORVPiecesOfCubic(p0, p1, p2, p3);
    if (penRadius <= kFinePen) return pieces;
    // The border of a wide line turns at the corners of its centre line, which must be gentle for that.
    const auto turn = [](const ORVMathPoint2D& a, const ORVMathPoint2D& b, const ORVMathPoint2D& c) {
        const double ux = b.x - a.x, uy = b.y - a.y, vx = c.x - b.x, vy = c.y - b.y;
        return std::fabs(std::atan2(ux * vy - uy * vx, ux * vx + uy * vy));
    };
    const double step = 2.0 * std::acos(std::max(0.0, 1.0 - kFlatness / penRadius));
    const double needed = (turn(p0, p1, p2) + turn(p1, p2, p3)) * 1.5 / std::max(step, 1e-3);
    return std::max(pieces, static_cast<int>(std::min(needed, 1000.0)) + 1);
}

}  // namespace

std::uint32_t ORVCountPoints(const RasterContour& contour, std::uint32_t firstVerb, std::uint32_t count) {
    std::uint32_t points = 0;
    for (std::uint32_t i = firstVerb; i < firstVerb + count; ++i)
        points += contour.verbs[i] == RasterContour::Verb::kCubic ? 3U : 1U;
    return points;
}

void ORVAppendVerbs(const RasterGeometry& geometry, const RasterContour& contour, const VerbRange& verbs,
                    double penRadius, StrokeCourse& course) {
    const RasterPoint* point = contour.points + verbs.firstPoint;
    ORVMathPoint2D current = geometry.PlaceOf(*point++);
    course.Add(current, false);
    for (std::uint32_t i = 0; i < verbs.count; ++i) {
        if (contour.verbs[verbs.first + i] == RasterContour::Verb::kLine) {
            current = geometry.PlaceOf(*point++);
            course.Add(current, false);
            continue;
        }
        const ORVMathPoint2D control1 = geometry.PlaceOf(point[0]), control2 = geometry.PlaceOf(point[1]),
                             end = geometry.PlaceOf(point[2]);
        point += 3;
        const int pieces = PiecesOf(current, control1, control2, end, penRadius);
        int done = 0;
        ORVFlattenCubic(current, control1, control2, end, pieces,
                        [&](const ORVMathPoint2D& p) { course.Add(p, ++done < pieces); });
        current = end;
    }
}

void ORVAppendVerbsInContext(const RasterGeometry& geometry, const RasterContour& contour,
                             const VerbRange& verbs, double penRadius, StrokeCourse& course,
                             std::size_t& first, std::size_t& last) {
    const auto append = [&](const VerbRange& range) {
        ORVAppendVerbs(geometry, contour, range, penRadius, course);
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
