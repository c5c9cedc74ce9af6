// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <optional>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/paint/pattern_definition.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {
namespace {

/// The range of tiles that intersect a box.
std::optional<TileRange> FindTiles(const ORVMathBox2D& box, const Rectangle& tile) {
    constexpr double kFarthest = 1e9;
    const double values[] = {
        std::floor((box.xMin - tile.x) / tile.width), std::ceil((box.xMax - tile.x) / tile.width) - 1.0,
        std::floor((box.yMin - tile.y) / tile.height), std::ceil((box.yMax - tile.y) / tile.height) - 1.0};
    for (const double value : values)
        if (!(std::fabs(value) < kFarthest)) return std::nullopt;
    return TileRange{static_cast<long>(values[0]), static_cast<long>(values[1]), static_cast<long>(values[2]),
                     static_cast<long>(values[3])};
}

/// Whether content continues across tile borders, so that gaps between tiles would be visible.
bool HasSeams(const std::vector<FusedShape>& shapes, const ORVMathBox2D& tile) {
    ORVMathBox2D box;
    for (const FusedShape& shape : shapes) box.Unite(shape.box);
    constexpr double kGap = 0.01;  // as a fraction of the tile's side
    const double x = kGap * (tile.xMax - tile.xMin), y = kGap * (tile.yMax - tile.yMin);
    return (box.xMin <= tile.xMin + x && box.xMax >= tile.xMax - x) ||
           (box.yMin <= tile.yMin + y && box.yMax >= tile.yMax - y);
}

}  // namespace

// Tiles are drawn one by one inside the outline, as vector graphics.
void Drawing::DrawPattern(const ORVPrintPath& path, const ORVMathAffine2D& toPage, bool isEvenOdd,
                          const MadePaint& paint, const DrawState& state) {
    if (std::find(active_.begin(), active_.end(), paint.pattern) != active_.end() ||
        state.depth + 1 >= DrawingBudget::kGreatestDepth)
        return;
    const PatternDefinition pattern = ResolvePattern(scene_, paint.pattern);
    if (pattern.isSingular || paint.opacity <= 0.0) return;

    const double boxWidth = paint.box.xMax - paint.box.xMin, boxHeight = paint.box.yMax - paint.box.yMin;
    const bool needsBox = pattern.units == Units::kBoundingBox ||
                          (pattern.contentUnits == Units::kBoundingBox && !pattern.viewBox);
    if (needsBox && !(boxWidth > 0.0 && boxHeight > 0.0)) return;
    const Rectangle tile = pattern.TileOf(scene_, paint.box, paint.viewport);
    if (!pattern.HasTiles(tile)) return;

    const Style& contentStyle = scene_.StyleInPlace(pattern.content);
    DrawState inner = state;
    ++inner.depth;
    inner.context = nullptr;
    ORVMathAffine2D toTile = ORVMathAffine2D::Translation(tile.x, tile.y);
    inner.viewport = paint.viewport;
    // A view box scales the content but is not the reference of its percentages.
    if (pattern.viewBox) {
        toTile = FitViewBox(*pattern.viewBox, pattern.ratio, tile);
    } else if (pattern.contentUnits == Units::kBoundingBox) {
        toTile = toTile * ORVMathAffine2D::Scaling(boxWidth, boxHeight);
    }
    // Content in user space is relative to the tile's corner, at the pattern's x and y.
    const ORVMathAffine2D patternToPage = paint.toPage * pattern.transform;
    if (!IsInvertible(patternToPage) || !IsInvertible(toTile)) return;

    // The part of the outline on the page, in pattern units.
    ORVMathBox2D shown = BoxOf(path, toPage);
    shown.xMin = std::max(shown.xMin, page_.xMin);
    shown.xMax = std::min(shown.xMax, page_.xMax);
    shown.yMin = std::max(shown.yMin, page_.yMin);
    shown.yMax = std::min(shown.yMax, page_.yMax);
    if (shown.IsEmpty() || !(shown.yMin <= shown.yMax)) return;
    const auto tiles = FindTiles(MapBox(Inverse(patternToPage), shown), tile);
    if (!tiles) {
        Do(ORVPrintModelRender::kTooManyRepeats);
        return;
    }

    if (!Enter(paint.pattern)) return;
    const std::size_t mark = ends_.size();
    if (paint.opacity < 1.0) {
        ORVPrintLayer layer;
        layer.opacity = paint.opacity;
        layer.box = shown;
        if (Do(generator_.BeginLayer(layer))) ends_.push_back(End::kLayer);
    }
    BeginOutline(path, toPage, isEvenOdd);
    const PatternTiles all{tile, *tiles, toTile, patternToPage, inner.viewport};
    DrawTiles(pattern.content, contentStyle, all, shown, inner);
    EndBack(mark);
    Leave();
}

void Drawing::DrawTiles(ElementIndex content, const Style& style, const PatternTiles& all,
                        const ORVMathBox2D& shown, DrawState& inner) {
    // Every program that renders the file would have to draw all tiles.
    constexpr std::uint64_t kMostTiles = 4'000'000;
    if (all.range.Count() > kMostTiles) {
        Do(ORVPrintModelRender::kTooManyRepeats);
        return;
    }
    std::vector<FusedShape> shapes;
    const bool isPlain = all.range.Count() > 1 && CollectFused(content, style, all, all.toTile, 0, shapes);
    // A few plain tiles are drawn as one shape: viewers may render pattern cells as images of whole pixels,
    // with gaps between them. Many tiles would make the file large, so the format's own pattern is used.
    constexpr std::uint64_t kFewTiles = 1000;
    if (isPlain && all.range.Count() > kFewTiles && !HasSeams(shapes, all.first.Box()) &&
        DrawOneTileForAll(content, style, all, shown, inner, TileKind::kPlain))
        return;
    const bool isHeavy =
        isPlain ? !TakePoints(shapes, all.range)
                : inner.isWithinTile && all.range.Count() > 1 && !budget_.TakeInnerTiles(all.range.Count());
    inner.isWithinTile = true;
    if (all.range.Count() > 1 && (!isPlain || isHeavy) &&
        DrawOneTileForAll(content, style, all, shown, inner, isHeavy ? TileKind::kHeavy : TileKind::kOther))
        return;
    if (isPlain) return DrawFusedTiles(shapes, all);
    for (long y = all.range.yFirst; y <= all.range.yLast && !IsStopped(); ++y) {
        for (long x = all.range.xFirst; x <= all.range.xLast && !IsStopped(); ++x) {
            if (!TakeElement(content)) break;
            const ORVMathAffine2D step =
                all.patternToPage * ORVMathAffine2D::Translation(static_cast<double>(x) * all.first.width,
                                                                 static_cast<double>(y) * all.first.height);
            const std::size_t tileMark = ends_.size();
            BeginRectangle(all.first, step);
            inner.toPage = step * all.toTile;
            DrawChildren(content, style, inner);
            EndBack(tileMark);
        }
    }
}

bool Drawing::DrawOneTileForAll(ElementIndex content, const Style& style, const PatternTiles& all,
                                const ORVMathBox2D& shown, DrawState& inner, TileKind kind) {
    const double scale = all.patternToPage.Enlargement();
    if (!(scale > 0.0)) return false;
    // Scaled to page units, because formats round coordinates.
    const auto toTiles = ORVMathAffine2D::Scaling(scale, scale);
    ORVPrintTiles tiles;
    tiles.tile = MapBox(toTiles, all.first.Box());
    tiles.xStep = all.first.width * scale;
    tiles.yStep = all.first.height * scale;
    tiles.toPage = all.patternToPage * ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale);
    tiles.shown = shown;
    tiles.isPlain = kind == TileKind::kPlain;
    tiles.isHeavy = kind == TileKind::kHeavy;
    tiles.key = KeyOf({content,
                       {tiles.tile.xMin, tiles.tile.yMin},
                       {tiles.tile.xMax, tiles.tile.yMax},
                       toTiles * all.toTile,
                       all.viewport.width,
                       all.viewport.height});
    const int answer = generator_.BeginTiles(tiles);
    if (answer == ORVPrintGenerator::kNoTiles) return false;
    if (answer == ORVPrintGenerator::kTilesKnown) return true;
    if (!Do(answer)) return true;
    pages_.push_back(page_);
    page_ = tiles.tile;
    inner.toPage = toTiles * all.toTile;
    if (TakeElement(content)) DrawChildren(content, style, inner);
    page_ = pages_.back();
    pages_.pop_back();
    Do(generator_.EndTiles());
    return true;
}

// Shapes with the same pattern often follow each other.
std::uint64_t Drawing::KeyOf(const TileContent& content) {
    for (const KnownTiles& known : knownTiles_)
        if (known.key != 0 && known.content == content) return known.key;
    knownTiles_[tilesSeen_ % knownTiles_.size()] = {content, tilesSeen_ + 1};
    return ++tilesSeen_;
}

}  // namespace svg2
