// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/poster_marks.h"

#include <algorithm>

#include "generators/common/generator_status.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

constexpr double kLineWidth = 0.25 * kPaperInch / 72.0;
constexpr double kGap = 1.0 * kPaperMillimetre;  // between the drawing and its marks
constexpr double kLongestMark = 5.0 * kPaperMillimetre;
constexpr double kShortestMark = 1.0 * kPaperMillimetre;
constexpr double kCircle = 1.2 * kPaperMillimetre;  // radius
constexpr double kCross = 2.0 * kPaperMillimetre;   // half its height
constexpr double kTextHeight = 3.5 * kPaperMillimetre;
// Minimum overlap for circles, so that they do not touch the corner marks.
constexpr double kLeastOverlap = 2.0 * kCross + kGap;

void AddLine(ORVPrintPath& path, const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
    path.MoveTo(from);
    path.LineTo(to);
}

void AddCircle(ORVPrintPath& path, const ORVMathPoint2D& centre) {
    constexpr double r = kCircle, k = 0.5522847498 * kCircle;
    const auto [x, y] = centre;
    path.MoveTo({x + r, y});
    path.CubicTo({x + r, y + k}, {x + k, y + r}, {x, y + r});
    path.CubicTo({x - k, y + r}, {x - r, y + k}, {x - r, y});
    path.CubicTo({x - r, y - k}, {x - k, y - r}, {x, y - r});
    path.CubicTo({x + k, y - r}, {x + r, y - k}, {x + r, y});
    path.Close();
    AddLine(path, {x - kCross, y}, {x + kCross, y});
    AddLine(path, {x, y - kCross}, {x, y + kCross});
}

/// Coordinates from an edge of the drawing outwards: `sign` is the direction, `room` the space on the sheet.
struct Outwards {
    double edge, sign, room;

    double MarkLength() const { return std::min(kLongestMark, room - kGap); }
    bool HasMark() const { return MarkLength() >= kShortestMark; }
    double MarkStart() const { return edge + sign * kGap; }
    double MarkEnd() const { return edge + sign * (kGap + MarkLength()); }
    bool HasCircle() const { return room >= kGap + 2.0 * kCross; }
    double Circle() const { return edge + sign * (kGap + kCross); }
};

}  // namespace

int ORVDrawPosterMarks(ORVPrintGenerator& generator, const ORVPoster& poster, unsigned int row,
                       unsigned int column, const std::string& label) {
    const ORVMathBox2D place = poster.Sheet(row, column).place;
    const Outwards sides[]{{place.xMin, -1.0, place.xMin}, {place.xMax, 1.0, poster.width - place.xMax}};
    const Outwards ends[]{{place.yMin, -1.0, place.yMin}, {place.yMax, 1.0, poster.height - place.yMax}};

    ORVPrintPath path;
    for (const Outwards& side : sides)
        for (const Outwards& end : ends) {
            if (side.HasMark()) AddLine(path, {side.MarkStart(), end.edge}, {side.MarkEnd(), end.edge});
            if (end.HasMark()) AddLine(path, {side.edge, end.MarkStart()}, {side.edge, end.MarkEnd()});
        }
    if (poster.overlap >= kLeastOverlap) {
        // In the middle of the area shared with adjacent sheets.
        const double half = poster.overlap / 2.0;
        std::vector<double> xs, ys;
        if (column > 0) xs.push_back(poster.room.xMin + half);
        if (column + 1.0 < poster.columns) xs.push_back(poster.room.xMax - half);
        if (row > 0) ys.push_back(poster.room.yMin + half);
        if (row + 1.0 < poster.rows) ys.push_back(poster.room.yMax - half);
        for (const double x : xs)
            for (const Outwards& end : ends)
                if (end.HasCircle()) AddCircle(path, {x, end.Circle()});
        for (const double y : ys)
            for (const Outwards& side : sides)
                if (side.HasCircle()) AddCircle(path, {side.Circle(), y});
    }
    if (!path.IsEmpty()) {
        ORVPrintStroke stroke;
        stroke.width = kLineWidth;
        if (const int result = generator.DrawShape({path, {}, nullptr, &stroke}); result != kGeneratorDone)
            return result;
    }

    const Outwards& bottom = ends[1];
    if (bottom.room < kGap + kTextHeight * 1.25) return kGeneratorDone;
    ORVTextStyle style;
    style.height = kTextHeight;
    const ORVTextLayout layout = ORVLayoutText(label, style);
    if (!layout.isSet) return ORVPrintModelRender::kTextNotSet;
    if (layout.runs.empty()) return kGeneratorDone;
    const ORVPrintFill fill;
    const double x = (place.xMin + place.xMax - layout.advance) / 2.0;
    const double y = bottom.edge + kGap + kTextHeight;
    return generator.DrawText({layout, label, {1.0, 0.0, 0.0, -1.0, x, y}, &fill, nullptr, nullptr});
}
