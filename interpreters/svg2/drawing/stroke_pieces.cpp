// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/stroke_pieces.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svg2 {
namespace {

constexpr int kCurveSteps = 24, kDiscCorners = 32;

void AddPoint(Contour& contour, const ORVMathPoint2D& point) {
    if (contour.points.empty() || !(contour.points.back() == point)) contour.points.push_back(point);
}

ORVMathPoint2D PointOfCurve(const ORVMathPoint2D& from, const ORVMathPoint2D* p, double t) {
    const double s = 1.0 - t, a = s * s * s, b = 3.0 * s * s * t, c = 3.0 * s * t * t, d = t * t * t;
    return {a * from.x + b * p[0].x + c * p[1].x + d * p[2].x,
            a * from.y + b * p[0].y + c * p[1].y + d * p[2].y};
}

double SignedArea(const Corners& area) {
    double sum = 0.0;
    for (std::size_t i = 0; i < area.size(); ++i) {
        const ORVMathPoint2D &a = area[i], &b = area[(i + 1) % area.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return sum;
}

/// Appends a polygon. All get the same orientation, so that overlapping ones form one area.
void AddPiece(Corners piece, std::vector<Corners>& pieces) {
    if (SignedArea(piece) < 0.0) std::reverse(piece.begin(), piece.end());
    pieces.push_back(std::move(piece));
}

/// A line segment of a contour with its unit direction vector.
struct Line {
    ORVMathPoint2D from, to;
    double x = 1.0, y = 0.0;
};

Line LineOf(const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return {from, to, (to.x - from.x) / length, (to.y - from.y) / length};
}

/// 2 where the contour goes straight on, 0 where it turns back.
double OpennessOf(const Line& before, const Line& after) {
    return 1.0 + before.x * after.x + before.y * after.y;
}

bool HasTip(double openness, const ORVPrintStroke& pen) {
    return pen.join != ORVPrintStroke::Join::kBevel && openness > 1e-9 &&
           2.0 <= pen.miterLimit * pen.miterLimit * openness;
}

std::vector<Line> LinesOf(const Contour& contour) {
    const Corners& points = contour.points;
    const std::size_t count = contour.isClosed ? points.size() : points.size() - 1;
    std::vector<Line> lines;
    for (std::size_t i = 0; i < count; ++i)
        lines.push_back(LineOf(points[i], points[(i + 1) % points.size()]));
    return lines;
}

void AddDisc(const ORVMathPoint2D& centre, double radius, std::vector<Corners>& pieces) {
    Corners disc;
    for (int i = 0; i < kDiscCorners; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / kDiscCorners;
        disc.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
    }
    AddPiece(std::move(disc), pieces);
}

void AddJoin(const Line& before, const Line& after, const ORVPrintStroke& pen, std::vector<Corners>& pieces) {
    const double half = pen.width / 2.0;
    const ORVMathPoint2D& corner = after.from;
    if (pen.join == ORVPrintStroke::Join::kRound) {
        AddDisc(corner, half, pieces);
        return;
    }
    const double turn = before.x * after.y - before.y * after.x;
    const double openness = OpennessOf(before, after);
    const double side = turn > 0.0 ? half : -half;  // on the outer side
    const ORVMathPoint2D first{corner.x + before.y * side, corner.y - before.x * side};
    const ORVMathPoint2D last{corner.x + after.y * side, corner.y - after.x * side};
    Corners piece{corner, first};
    if (HasTip(openness, pen))
        piece.push_back({corner.x + (before.y + after.y) * side / openness,
                         corner.y - (before.x + after.x) * side / openness});
    piece.push_back(last);
    AddPiece(std::move(piece), pieces);
}

/// @param before, after  lengths by which the line is extended at its ends
void AddLine(const Line& line, double half, double before, double after, std::vector<Corners>& pieces) {
    const ORVMathPoint2D from{line.from.x - line.x * before, line.from.y - line.y * before};
    const ORVMathPoint2D to{line.to.x + line.x * after, line.to.y + line.y * after};
    AddPiece({{from.x + line.y * half, from.y - line.x * half},
              {to.x + line.y * half, to.y - line.x * half},
              {to.x - line.y * half, to.y + line.x * half},
              {from.x - line.y * half, from.y + line.x * half}},
             pieces);
}

/// Clips a polygon at one side of a box.
template <class Inside, class Cut>
Corners CutOff(const Corners& area, Inside inside, Cut cut) {
    Corners kept;
    for (std::size_t i = 0; i < area.size(); ++i) {
        const ORVMathPoint2D &a = area[i], &b = area[(i + 1) % area.size()];
        if (inside(a)) kept.push_back(a);
        if (inside(a) != inside(b)) kept.push_back(cut(a, b));
    }
    return kept;
}

}  // namespace

std::vector<Contour> ContoursOf(const ORVPrintPath& path) {
    using Verb = ORVPrintPath::Verb;
    std::vector<Contour> contours;
    ORVMathPoint2D current;
    std::size_t point = 0;
    const auto contour = [&]() -> Contour& {
        if (contours.empty() || contours.back().isClosed) {
            contours.emplace_back();
            contours.back().points.push_back(current);
        }
        return contours.back();
    };
    for (const Verb verb : path.verbs) {
        switch (verb) {
            case Verb::kMove:
                current = path.points[point++];
                contours.emplace_back();
                contours.back().points.push_back(current);
                break;
            case Verb::kLine:
                AddPoint(contour(), path.points[point]);
                current = path.points[point++];
                break;
            case Verb::kCubic:
                for (int i = 1; i <= kCurveSteps; ++i)
                    AddPoint(contour(), PointOfCurve(current, &path.points[point],
                                                     static_cast<double>(i) / kCurveSteps));
                current = path.points[point + 2];
                point += 3;
                break;
            case Verb::kClose: {
                Contour& closed = contour();
                closed.isClosed = true;
                current = closed.points.front();
                if (closed.points.size() > 1 && closed.points.back() == current) closed.points.pop_back();
                break;
            }
        }
    }
    return contours;
}

void AddStrokePieces(const Contour& contour, const ORVPrintStroke& pen, std::vector<Corners>& pieces) {
    using Cap = ORVPrintStroke::Cap;
    const Corners& points = contour.points;
    const double half = pen.width / 2.0;
    const double longer = pen.cap == Cap::kSquare ? half : 0.0;
    if (points.size() < 2) {
        // A zero-length subpath has only caps.
        if (pen.cap == Cap::kRound) AddDisc(points.front(), half, pieces);
        if (pen.cap == Cap::kSquare)
            AddLine({points.front(), points.front(), 1.0, 0.0}, half, half, half, pieces);
        return;
    }
    const std::vector<Line> lines = LinesOf(contour);
    const std::size_t count = lines.size();
    for (std::size_t i = 0; i < count; ++i) {
        const bool isFirst = i == 0 && !contour.isClosed, isLast = i + 1 == count && !contour.isClosed;
        AddLine(lines[i], half, isFirst ? longer : 0.0, isLast ? longer : 0.0, pieces);
        if (!isFirst) AddJoin(lines[(i + count - 1) % count], lines[i], pen, pieces);
    }
    if (pen.cap == Cap::kRound && !contour.isClosed) {
        AddDisc(points.front(), half, pieces);
        AddDisc(points.back(), half, pieces);
    }
}

double LongestTip(const Contour& contour, const ORVPrintStroke& pen) {
    using Join = ORVPrintStroke::Join;
    double longest = 1.0;
    const bool hasTips = pen.join == Join::kMiter || pen.join == Join::kMiterClip;
    if (!hasTips || contour.points.size() < 2) return longest;
    const std::vector<Line> lines = LinesOf(contour);
    for (std::size_t i = contour.isClosed ? 0 : 1; i < lines.size(); ++i) {
        const double openness = OpennessOf(i > 0 ? lines[i - 1] : lines.back(), lines[i]);
        if (HasTip(openness, pen))
            longest = std::max(longest, std::sqrt(2.0 / openness));
        else if (pen.join == Join::kMiterClip)
            longest = std::max(longest, pen.miterLimit);
    }
    return longest;
}

Corners CutToBox(Corners area, const ORVMathBox2D& box) {
    const auto atX = [](double x) {
        return [x](const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
            return ORVMathPoint2D{x, a.y + (b.y - a.y) * ((x - a.x) / (b.x - a.x))};
        };
    };
    const auto atY = [](double y) {
        return [y](const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
            return ORVMathPoint2D{a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y)), y};
        };
    };
    area = CutOff(
        area, [&](const ORVMathPoint2D& p) { return p.x >= box.xMin; }, atX(box.xMin));
    area = CutOff(
        area, [&](const ORVMathPoint2D& p) { return p.x <= box.xMax; }, atX(box.xMax));
    area = CutOff(
        area, [&](const ORVMathPoint2D& p) { return p.y >= box.yMin; }, atY(box.yMin));
    area = CutOff(
        area, [&](const ORVMathPoint2D& p) { return p.y <= box.yMax; }, atY(box.yMax));
    return area;
}

}  // namespace svg2
