// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/TextPath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace svg2 {
namespace {

// Number of chords that approximate a curve for measuring; a quarter circle is then too short by 0.0025 %.
constexpr int kChords = 64;

double Distance(const ORVMathPoint2D& a, const ORVMathPoint2D& b) { return std::hypot(b.x - a.x, b.y - a.y); }

}  // namespace

ORVMathPoint2D TextPath::Piece::PointAt(double t) const {
    const double s = 1.0 - t;
    if (isStraight) return {points[0].x * s + points[3].x * t, points[0].y * s + points[3].y * t};
    const double a = s * s * s, b = 3.0 * s * s * t, c = 3.0 * s * t * t, d = t * t * t;
    return {a * points[0].x + b * points[1].x + c * points[2].x + d * points[3].x,
            a * points[0].y + b * points[1].y + c * points[2].y + d * points[3].y};
}

ORVMathPoint2D TextPath::Piece::DirectionAt(double t) const {
    const ORVMathPoint2D along{points[3].x - points[0].x, points[3].y - points[0].y};
    if (isStraight) return along;
    const double s = 1.0 - t, a = s * s, b = 2.0 * s * t, c = t * t;
    const ORVMathPoint2D direction{
        a * (points[1].x - points[0].x) + b * (points[2].x - points[1].x) + c * (points[3].x - points[2].x),
        a * (points[1].y - points[0].y) + b * (points[2].y - points[1].y) + c * (points[3].y - points[2].y)};
    // Where control points coincide, the derivative vanishes.
    return direction.x != 0.0 || direction.y != 0.0 ? direction : along;
}

double TextPath::Piece::Length() const {
    if (isStraight) return Distance(points[0], points[3]);
    double length = 0.0;
    ORVMathPoint2D from = points[0];
    for (int i = 1; i <= kChords; ++i) {
        const ORVMathPoint2D to = PointAt(static_cast<double>(i) / kChords);
        length += Distance(from, to);
        from = to;
    }
    return length;
}

double TextPath::Piece::FindParameter(double distance) const {
    if (isStraight) return distance / Length();
    ORVMathPoint2D from = points[0];
    for (int i = 1; i <= kChords; ++i) {
        const ORVMathPoint2D to = PointAt(static_cast<double>(i) / kChords);
        const double chord = Distance(from, to);
        if (distance <= chord && chord > 0.0) return (i - 1 + distance / chord) / kChords;
        distance -= chord;
        from = to;
    }
    return 1.0;
}

void TextPath::Add(const ORVPrintPath& outline, const ORVMathAffine2D& transform) {
    using Verb = ORVPrintPath::Verb;
    ORVMathPoint2D start, at;
    std::size_t next = 0;
    const auto take = [&] { return transform(outline.points[next++]); };
    for (const Verb verb : outline.verbs) {
        switch (verb) {
            case Verb::kMove: start = at = take(); break;
            case Verb::kLine: {
                const ORVMathPoint2D to = take();
                AddLine(at, to);
                at = to;
                break;
            }
            case Verb::kCubic: {
                Piece curve;
                curve.isStraight = false;
                curve.points = {at, take(), take(), take()};
                AddPiece(curve);
                at = curve.points[3];
                break;
            }
            case Verb::kClose:
                AddLine(at, start);
                at = start;
                break;
        }
    }
    isClosed_ = !outline.verbs.empty() && outline.verbs.back() == Verb::kClose &&
                std::count(outline.verbs.begin(), outline.verbs.end(), Verb::kMove) == 1;
}

void TextPath::AddLine(const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
    Piece line;
    line.points = {from, from, to, to};
    AddPiece(line);
}

// Segments of zero length have no direction.
void TextPath::AddPiece(const Piece& piece) {
    const double length = piece.Length();
    if (!(length > 0.0)) return;
    lengths_.push_back(GetLength() + length);
    pieces_.push_back(piece);
}

void TextPath::Reverse() {
    std::vector<Piece> pieces;
    pieces.swap(pieces_);
    lengths_.clear();
    std::reverse(pieces.begin(), pieces.end());
    for (Piece& piece : pieces) {
        std::reverse(piece.points.begin(), piece.points.end());
        AddPiece(piece);
    }
}

TextPath::Place TextPath::At(double distance) const {
    const auto end = std::lower_bound(lengths_.begin(), lengths_.end() - 1, distance);
    const auto i = static_cast<std::size_t>(end - lengths_.begin());
    const double t = pieces_[i].FindParameter(distance - (i > 0 ? lengths_[i - 1] : 0.0));
    const ORVMathPoint2D direction = pieces_[i].DirectionAt(t);
    return {pieces_[i].PointAt(t), std::atan2(direction.y, direction.x) * 180.0 / std::numbers::pi};
}

}  // namespace svg2
