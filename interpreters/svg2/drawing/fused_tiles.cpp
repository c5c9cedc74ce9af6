// SPDX-License-Identifier: Apache-2.0

// Patterns of plain shapes: each shape is drawn once for all tiles, as one path. Tiles drawn separately show
// seams, because antialiased edges that share a pixel do not add up; inside a single path there are none.

#include <algorithm>
#include <cmath>
#include <optional>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/drawing/stroke_pieces.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {

namespace {

bool IsPlain(const Paint& paint) {
    return paint.kind == Paint::Kind::kNone || paint.kind == Paint::Kind::kColour ||
           paint.kind == Paint::Kind::kCurrentColour;
}

bool HasEffects(const Style& style) {
    return !style.clipPath.empty() || !style.mask.empty() || !style.filter.empty() || style.isIsolated ||
           style.blend != ORVPrintBlendMode::kNormal;
}

bool Holds(const ORVMathBox2D& outer, const ORVMathBox2D& inner) {
    // Tolerance for rounding errors.
    const double margin = 1e-6 * std::max(outer.xMax - outer.xMin, outer.yMax - outer.yMin);
    return inner.xMin >= outer.xMin - margin && inner.xMax <= outer.xMax + margin &&
           inner.yMin >= outer.yMin - margin && inner.yMax <= outer.yMax + margin;
}

/// The bounding box of a path including its stroke.
ORVMathBox2D BoxWithPen(const ORVPrintPath& path, const ORVMathAffine2D& map, const ORVPrintStroke& pen) {
    ORVMathBox2D box = BoxOf(path, map);
    if (box.IsEmpty()) return box;
    double tip = pen.cap == ORVPrintStroke::Cap::kSquare ? 1.5 : 1.0;
    for (const Contour& contour : ContoursOf(path)) tip = std::max(tip, LongestTip(contour, pen));
    const double reach = tip * pen.width / 2.0;
    const double x = reach * std::hypot(map.m11, map.m12), y = reach * std::hypot(map.m21, map.m22);
    return {box.xMin - x, box.xMax + x, box.yMin - y, box.yMax + y};
}

/// About how many points the area and the line of a shape have.
/// @param isCut  the line is drawn as an area, in pieces
std::uint64_t PointsOf(const ORVPrintPath& path, bool hasPen, bool isCut) {
    constexpr std::uint64_t kPointsOfPieces = 100;  // of a verb; curves have many more than lines
    const std::uint64_t points = path.points.size();
    if (!hasPen) return points;
    return points + (isCut ? kPointsOfPieces * path.verbs.size() : points);
}

/// A path repeated for all tiles. `right` and `down` are the steps between tiles, in the path's coordinates.
ORVPrintPath Repeat(const ORVPrintPath& one, const TileRange& range, const ORVMathVector2D& right,
                    const ORVMathVector2D& down) {
    ORVPrintPath all;
    const auto count = static_cast<std::size_t>(range.Count());
    all.verbs.reserve(count * one.verbs.size());
    all.points.reserve(count * one.points.size());
    for (long y = range.yFirst; y <= range.yLast; ++y) {
        for (long x = range.xFirst; x <= range.xLast; ++x) {
            const double column = static_cast<double>(x), row = static_cast<double>(y);
            const double dx = column * right.x + row * down.x, dy = column * right.y + row * down.y;
            all.verbs.insert(all.verbs.end(), one.verbs.begin(), one.verbs.end());
            for (const ORVMathPoint2D& point : one.points) all.points.push_back({point.x + dx, point.y + dy});
        }
    }
    return all;
}

void Append(const ORVPrintPath& part, const ORVMathAffine2D& map, ORVPrintPath& path) {
    path.verbs.insert(path.verbs.end(), part.verbs.begin(), part.verbs.end());
    for (const ORVMathPoint2D& point : part.points) path.points.push_back(map(point));
}

/// Contours of a path, each as a path.
std::vector<ORVPrintPath> SplitContours(const ORVPrintPath& path) {
    using Verb = ORVPrintPath::Verb;
    std::vector<ORVPrintPath> contours;
    std::size_t point = 0;
    for (const Verb verb : path.verbs) {
        if (verb == Verb::kMove) {
            contours.emplace_back();
        } else if (contours.back().verbs.back() == Verb::kClose) {
            // What follows the end of a contour without a move begins where that one began.
            const ORVMathPoint2D start = contours.back().points.front();
            contours.emplace_back().MoveTo(start);
        }
        const std::size_t end = point + (verb == Verb::kClose ? 0U : verb == Verb::kCubic ? 3U : 1U);
        contours.back().verbs.push_back(verb);
        for (; point < end; ++point) contours.back().points.push_back(path.points[point]);
    }
    return contours;
}

/// Adds areas in the units of a shape, cut to the tile, to a path in the pattern's units.
void AppendCut(std::vector<Corners>&& areas, const ORVMathAffine2D& toPattern, const ORVMathBox2D& tile,
               ORVPrintPath& path) {
    for (Corners& area : areas) {
        for (ORVMathPoint2D& point : area) point = toPattern(point);
        const Corners cut = CutToBox(std::move(area), tile);
        if (cut.size() < 3) continue;
        path.MoveTo(cut.front());
        for (std::size_t i = 1; i < cut.size(); ++i) path.LineTo(cut[i]);
        path.Close();
    }
}

/// Repeats one shape over all tiles.
class TileFuser {
public:
    TileFuser(const PatternTiles& tiles, const FusedShape& shape)
        : tiles_(tiles), shape_(shape), tile_(tiles.first.Box()) {}

    /// The filled path for all tiles, and its transformation to the page.
    ORVPrintPath Inside(ORVMathAffine2D& toPage) const {
        if (Holds(tile_, BoxOf(shape_.path, shape_.toPattern))) return RepeatWhole(shape_.path, toPage);
        ORVPrintPath path;
        for (const ORVPrintPath& contour : SplitContours(shape_.path)) {
            if (Holds(tile_, BoxOf(contour, shape_.toPattern))) {
                Append(contour, shape_.toPattern, path);
                continue;
            }
            std::vector<Corners> areas;
            for (Contour& lines : ContoursOf(contour)) areas.push_back(std::move(lines.points));
            AppendCut(std::move(areas), shape_.toPattern, tile_, path);
        }
        return RepeatAsPattern(path, toPage);
    }
    /// Whether the stroke stays inside the tile, so that it can be drawn as a stroke.
    bool HoldsLine(const ORVPrintStroke& pen) const {
        return Holds(tile_, BoxWithPen(shape_.path, shape_.toPattern, pen));
    }
    ORVPrintPath RepeatWhole(const ORVPrintPath& path, ORVMathAffine2D& toPage) const {
        toPage = tiles_.patternToPage * shape_.toPattern;
        const ORVMathAffine2D back = Inverse(shape_.toPattern);
        return Repeat(path, tiles_.range, {back.m11 * tiles_.first.width, back.m21 * tiles_.first.width},
                      {back.m12 * tiles_.first.height, back.m22 * tiles_.first.height});
    }
    /// Contours whose line stays within the tile, to be drawn as lines, or all others.
    ORVPrintPath Contours(const ORVPrintStroke& pen, bool areHeld) const {
        ORVPrintPath path;
        for (const ORVPrintPath& contour : SplitContours(shape_.path))
            if (Holds(tile_, BoxWithPen(contour, shape_.toPattern, pen)) == areHeld)
                Append(contour, ORVMathAffine2D(), path);
        return path;
    }
    /// The area of a line along contours that reach out of the tile.
    ORVPrintPath Line(const ORVPrintPath& contours, const ORVPrintStroke& pen,
                      ORVMathAffine2D& toPage) const {
        std::vector<Corners> areas;
        for (const Contour& contour : ContoursOf(contours)) {
            const bool isDrawn = contour.points.size() > 1 || contour.isClosed;
            if (isDrawn) AddStrokePieces(contour, pen, areas);
        }
        ORVPrintPath path;
        AppendCut(std::move(areas), shape_.toPattern, tile_, path);
        return RepeatAsPattern(path, toPage);
    }

private:
    /// @param path  in the pattern's units
    ORVPrintPath RepeatAsPattern(const ORVPrintPath& path, ORVMathAffine2D& toPage) const {
        toPage = tiles_.patternToPage;
        return Repeat(path, tiles_.range, {tiles_.first.width, 0.0}, {0.0, tiles_.first.height});
    }

    const PatternTiles& tiles_;
    const FusedShape& shape_;
    const ORVMathBox2D tile_;
};

}  // namespace

// All shapes are examined before anything is drawn, since some cannot be fused.
bool Drawing::CollectFused(ElementIndex parent, const Style& style, const PatternTiles& tiles,
                           const ORVMathAffine2D& toPattern, int depth, std::vector<FusedShape>& shapes) {
    constexpr int kDeepest = 8;
    constexpr std::size_t kMostShapes = 256;
    const Document& document = scene_.GetDocument();
    for (ElementIndex child = document[parent].firstChild; child != kNoElement;
         child = document[child].nextSibling) {
        const Tag tag = document[child].tag;
        if (tag == Tag::kA || tag == Tag::kSvg || tag == Tag::kSwitch || tag == Tag::kUse ||
            tag == Tag::kImage || tag == Tag::kText)
            return false;
        if (tag != Tag::kG && !IsShape(tag)) continue;
        FusedShape shape{child, {}, {}, {}, 1.0, {}};
        scene_.GetCascade().Compute(child, style, shape.style);
        const Style& own = shape.style;
        if (!own.isDisplayed || !PassesConditions(document, child)) continue;
        if (HasEffects(own) || shapes.size() >= kMostShapes || !budget_.TakeElement()) return false;
        ORVMathAffine2D transform;
        if (!scene_.TransformOf(child, own, tiles.viewport, transform)) continue;
        shape.toPattern = toPattern * transform;
        if (tag == Tag::kG) {
            if (own.opacity < 1.0 || depth >= kDeepest ||
                !CollectFused(child, own, tiles, shape.toPattern, depth + 1, shapes))
                return false;
            continue;
        }
        if (own.visibility != Visibility::kVisible) continue;
        if (!AddOutline(scene_, child, own, tiles.viewport, shape.path)) continue;
        if (!IsPlain(own.fill) || !IsPlain(own.stroke) || HasMarkers(child, own) || NeedsLayer(child, own) ||
            own.hasNonScalingStroke || own.paintOrder[0] != PaintPart::kFill ||
            !IsInvertible(shape.toPattern))
            return false;
        const TileFuser fuser(tiles, shape);
        MadePen made;
        const ORVPrintStroke& pen = made.stroke;
        const bool hasPen =
            own.stroke.kind != Paint::Kind::kNone && paints_.MakePen(own, tiles.viewport, 1.0, made);
        const bool isCut = hasPen && !fuser.HoldsLine(pen);
        if (isCut && (!pen.dashes.empty() || pen.join == ORVPrintStroke::Join::kMiterClip)) return false;
        shape.opacity = PaintOpacity(child, own);
        shape.points = PointsOf(shape.path, hasPen, isCut);
        const ORVMathBox2D reach =
            hasPen ? BoxWithPen(shape.path, shape.toPattern, pen) : BoxOf(shape.path, shape.toPattern);
        shape.box = reach.Intersection(tiles.first.Box());
        shapes.push_back(std::move(shape));
    }
    return true;
}

bool Drawing::TakePoints(const std::vector<FusedShape>& shapes, const TileRange& range) {
    std::uint64_t points = 0;
    for (const FusedShape& shape : shapes) points += shape.points;
    return budget_.TakeTilePoints(points * range.Count());
}

void Drawing::DrawFusedTiles(const std::vector<FusedShape>& shapes, const PatternTiles& tiles) {
    for (const FusedShape& shape : shapes) {
        // Rows are drawn in batches to limit memory use.
        constexpr long kMostPoints = 1'000'000, kPointsOfCurve = 24;
        const long columns = tiles.range.xLast - tiles.range.xFirst + 1;
        const auto points = kPointsOfCurve * static_cast<long>(shape.path.verbs.size());
        const long rows = std::max(kMostPoints / (columns * points), 1L);
        PatternTiles part = tiles;
        for (long y = tiles.range.yFirst; y <= tiles.range.yLast && !IsStopped(); y += rows) {
            part.range.yFirst = y;
            part.range.yLast = std::min(y + rows - 1, tiles.range.yLast);
            for (std::uint64_t i = part.range.Count(); i > 0 && !IsStopped(); --i)
                if (!budget_.TakeElement()) Do(ORVPrintModelRender::kTooManyRepeats);
            if (!IsStopped()) DrawFused(shape, part);
        }
    }
}

void Drawing::DrawFused(const FusedShape& shape, const PatternTiles& tiles) {
    const ORVMathAffine2D nowhere;
    const PaintPlace place{shape.style, tiles.viewport, nowhere, nullptr, [] { return ORVMathBox2D(); }};
    const TileFuser fuser(tiles, shape);
    MadePaint paint;
    ORVMathAffine2D toPage;
    paints_.MakeFill(place, shape.opacity, paint);
    if (paint.kind == MadePaint::Kind::kColour) {
        const ORVPrintFill fill{.colour = paint.colour,
                                .evenOdd = shape.style.fillIsEvenOdd,
                                .isCrisp = shape.style.hasCrispEdges};
        const ORVPrintPath path = fuser.Inside(toPage);
        if (!path.IsEmpty()) Do(generator_.DrawShape({path, toPage, &fill, nullptr}));
    }
    if (shape.style.stroke.kind == Paint::Kind::kNone) return;
    double dashScale = 1.0;
    const double stated = shape.style.dashes ? scene_.NumberOf(shape.element, Name::kPathLength, 0.0) : 0.0;
    if (stated > 0.0) dashScale = LengthOf(shape.path) / stated;
    MadePen pen;
    MadePaint line;
    paints_.MakeStroke(place, shape.opacity, line);
    if (line.kind != MadePaint::Kind::kColour ||
        !paints_.MakePen(shape.style, tiles.viewport, dashScale, pen))
        return;
    pen.stroke.colour = line.colour;
    DrawFusedLine(shape, tiles, pen.stroke);
}

// Lines stay lines where they can: areas of theirs have many times as many points. Where lines are
// translucent, all are one area, or they would show where they overlap.
void Drawing::DrawFusedLine(const FusedShape& shape, const PatternTiles& tiles, const ORVPrintStroke& pen) {
    const TileFuser fuser(tiles, shape);
    ORVMathAffine2D toPage;
    const bool isWhole = fuser.HoldsLine(pen), isOpaque = pen.colour.opacity == 255;
    ORVPrintPath held;
    if (!isWhole && isOpaque) held = fuser.Contours(pen, true);
    if (isWhole || !held.IsEmpty()) {
        const ORVPrintPath path = fuser.RepeatWhole(isWhole ? shape.path : held, toPage);
        Do(generator_.DrawShape({path, toPage, nullptr, &pen}));
    }
    if (isWhole) return;
    const ORVPrintFill fill{.colour = pen.colour, .isCrisp = pen.isCrisp};
    const ORVPrintPath path = fuser.Line(isOpaque ? fuser.Contours(pen, false) : shape.path, pen, toPage);
    if (!path.IsEmpty()) Do(generator_.DrawShape({path, toPage, &fill, nullptr}));
}

}  // namespace svg2
