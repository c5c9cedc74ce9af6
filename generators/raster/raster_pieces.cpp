#include "generators/raster/raster_pieces.h"

#include <algorithm>
#include <cstddef>

namespace {

// An operation of more verbs is looked at in pieces of so many.
constexpr std::uint32_t kVerbsOfPiece = 64;
constexpr std::uint32_t kGlyphsOfPiece = 32;

/// Verbs of a geometry, its contours counting as one each; counted no farther than it takes.
std::size_t CountVerbs(const RasterGeometry& geometry) {
    std::size_t verbs = 0;
    for (std::uint32_t i = 0; i < geometry.contourCount && verbs <= kVerbsOfPiece; ++i)
        verbs += geometry.contours[i].verbCount + 1;
    return verbs;
}

std::uint32_t CountPoints(const RasterContour::Verb* verbs, std::uint32_t count) {
    std::uint32_t points = 0;
    for (std::uint32_t i = 0; i < count; ++i) points += verbs[i] == RasterContour::Verb::kCubic ? 3U : 1U;
    return points;
}

}  // namespace

PieceCutter::PieceCutter(const RasterOperation& operation, std::uint32_t number, int firstRow, int lastRow,
                         RasterSequence<RasterPiece>& pieces)
    : operation_(operation),
      reach_(operation.GetReach()),
      firstRow_(firstRow),
      lastRow_(lastRow),
      pieces_(pieces) {
    piece_.operation = number;
}

void PieceCutter::Add(double top, double bottom) {
    piece_.firstRow = std::max(PixelOf(top - reach_), firstRow_);
    piece_.lastRow = std::min(PixelOf(bottom + reach_), lastRow_);
    if (piece_.firstRow <= piece_.lastRow) pieces_.Append(piece_);
}

void PieceCutter::CutOutlines(const RasterExtent& extent) {
    const RasterGeometry& geometry = operation_.geometry;
    // The dashes of a contour depend on all of it.
    const bool isDashed = operation_.pen && operation_.pen->IsDashed();
    if (CountVerbs(geometry) <= kVerbsOfPiece || (isDashed && geometry.contourCount == 1)) {
        Add(extent.top, extent.bottom);
        return;
    }
    for (piece_.contour = 0; piece_.contour < geometry.contourCount; ++piece_.contour)
        CutContour(geometry.contours[piece_.contour], isDashed ? RasterPiece::kAll : kVerbsOfPiece);
}

void PieceCutter::CutContour(const RasterContour& contour, std::uint32_t mostVerbs) {
    piece_.firstVerb = piece_.firstPoint = 0;
    do {
        piece_.verbCount = std::min(mostVerbs, contour.verbCount - piece_.firstVerb);
        const std::uint32_t pointCount = CountPoints(contour.verbs + piece_.firstVerb, piece_.verbCount);
        const RasterPoint* point = contour.points + piece_.firstPoint;
        float top = point->y, bottom = point->y;
        const auto include = [&](const RasterPoint& p) {
            top = std::min(top, p.y);
            bottom = std::max(bottom, p.y);
        };
        std::for_each_n(point + 1, pointCount, include);
        const bool isLast = piece_.firstVerb + piece_.verbCount == contour.verbCount;
        // An inside is closed by a last edge.
        if (isLast && operation_.fills) include(*contour.points);
        const int originY = operation_.geometry.originY;
        Add(originY + static_cast<double>(top), originY + static_cast<double>(bottom));
        piece_.firstVerb += piece_.verbCount;
        piece_.firstPoint += pointCount;
    } while (piece_.firstVerb < contour.verbCount);
}

RasterExtent PieceCutter::CutGlyphs(std::span<const RasterGlyphPlace> places) {
    constexpr RasterExtent kNothing{1e30, 1e30, -1e30, -1e30};
    RasterExtent all = kNothing;
    for (std::size_t i = 0; i < places.size(); i += kGlyphsOfPiece) {
        const auto some = places.subspan(i, std::min<std::size_t>(kGlyphsOfPiece, places.size() - i));
        piece_.firstPoint = static_cast<std::uint32_t>(i);
        piece_.verbCount = static_cast<std::uint32_t>(some.size());
        RasterExtent extent = kNothing;
        for (const RasterGlyphPlace& place : some) {
            const RasterGlyph& glyph = *place.glyph;
            const double x = operation_.geometry.originX + static_cast<double>(place.x);
            const double y = operation_.geometry.originY + static_cast<double>(place.y);
            extent.top = std::min(extent.top, y + static_cast<double>(glyph.top));
            extent.bottom = std::max(extent.bottom, y + static_cast<double>(glyph.bottom));
            extent.left = std::min(extent.left, x + static_cast<double>(glyph.left));
            extent.right = std::max(extent.right, x + static_cast<double>(glyph.right));
        }
        all = {std::min(all.left, extent.left), std::min(all.top, extent.top),
               std::max(all.right, extent.right), std::max(all.bottom, extent.bottom)};
        Add(extent.top, extent.bottom);
    }
    return all;
}
