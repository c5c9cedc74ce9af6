// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/raster_pieces.h"

#include <algorithm>
#include <cstddef>

namespace {

// Operations with more verbs are divided into pieces of this many.
constexpr std::uint32_t kVerbsOfPiece = 64;
constexpr std::uint32_t kGlyphsOfPiece = 32;

/// Number of verbs of a geometry, counting each contour as one more. Stops once the number is large enough.
std::size_t CountVerbs(const RasterGeometry& geometry) {
    std::size_t verbs = 0;
    for (std::uint32_t i = 0; i < geometry.contourCount && verbs <= kVerbsOfPiece; ++i)
        verbs += geometry.contours[i].verbCount + 1;
    return verbs;
}

}  // namespace

PieceCutter::PieceCutter(const RasterOperation& operation, std::uint32_t number, int firstRow, int lastRow,
                         RasterSequence<RasterPiece>& pieces, RasterSequence<RasterDashes>& dashes)
    : operation_(operation),
      reach_(operation.GetReach()),
      firstRow_(firstRow),
      lastRow_(lastRow),
      pieces_(pieces),
      dashes_(dashes) {
    piece_.operation = number;
}

bool PieceCutter::Add(double top, double bottom) {
    piece_.firstRow = std::max(PixelOf(top - reach_), firstRow_);
    piece_.lastRow = std::min(PixelOf(bottom + reach_), lastRow_);
    if (piece_.firstRow > piece_.lastRow) return false;
    pieces_.Append(piece_);
    return true;
}

void PieceCutter::CutOutlines(const RasterExtent& extent) {
    const RasterGeometry& geometry = operation_.geometry;
    if (CountVerbs(geometry) <= kVerbsOfPiece) {
        Add(extent.top, extent.bottom);
        return;
    }
    const bool isDashed = operation_.pen && operation_.pen->IsDashed();
    for (std::uint32_t i = 0; i < geometry.contourCount; ++i) {
        if (isDashed && geometry.contours[i].verbCount > kVerbsOfPiece)
            CutDashedContour(i);
        else
            CutContour(i);
    }
}

bool PieceCutter::AddVerbs(const RasterContour& contour, const VerbRange& verbs, std::uint32_t pointCount) {
    const RasterPoint* point = contour.points + verbs.firstPoint;
    float top = point->y, bottom = point->y;
    const auto include = [&](const RasterPoint& p) {
        top = std::min(top, p.y);
        bottom = std::max(bottom, p.y);
    };
    std::for_each_n(point + 1, pointCount, include);
    // Fills are closed by an implicit last edge.
    if (verbs.first + verbs.count == contour.verbCount && operation_.fills) include(*contour.points);
    const int originY = operation_.geometry.originY;
    return Add(originY + static_cast<double>(top), originY + static_cast<double>(bottom));
}

void PieceCutter::CutContour(std::uint32_t number) {
    const RasterContour& contour = operation_.geometry.contours[number];
    piece_.contour = number;
    VerbRange verbs;
    do {
        verbs.count = std::min(kVerbsOfPiece, contour.verbCount - verbs.first);
        const std::uint32_t pointCount = ORVCountPoints(contour, verbs.first, verbs.count);
        piece_.firstVerb = verbs.first;
        piece_.verbCount = verbs.count;
        piece_.firstPoint = verbs.firstPoint;
        AddVerbs(contour, verbs, pointCount);
        verbs.first += verbs.count;
        verbs.firstPoint += pointCount;
    } while (verbs.first < contour.verbCount);
}

void PieceCutter::CutDashedContour(std::uint32_t number) {
    const RasterContour& contour = operation_.geometry.contours[number];
    DashedLineMeasure measure(*operation_.pen, contour.closed);
    StrokeCourse course;
    // Dashes depend on all that precedes them: parts are measured even if they touch no row.
    RasterDashes unseen;
    RasterDashes *first = nullptr, *last = nullptr;
    VerbRange verbs;
    do {
        // No part has a single verb: the end of a line may be shortened, but not the join before it.
        const std::uint32_t left = contour.verbCount - verbs.first;
        verbs.count = left <= kVerbsOfPiece + 1 ? left : kVerbsOfPiece;
        const std::uint32_t pointCount = ORVCountPoints(contour, verbs.first, verbs.count);
        course.Clear();
        ORVAppendVerbs(operation_.geometry, contour, verbs, *operation_.pen, course);
        const DashedPart part = measure.Add(course);
        piece_.contour = RasterPiece::kDashes;
        piece_.firstPoint = static_cast<std::uint32_t>(dashes_.GetSize());
        last = &unseen;
        if (AddVerbs(contour, verbs, pointCount)) {
            dashes_.Append({number, verbs, part});
            last = &dashes_[dashes_.GetSize() - 1];
        }
        if (verbs.first == 0) first = last;
        verbs.first += verbs.count;
        verbs.firstPoint += pointCount;
    } while (verbs.first < contour.verbCount);
    measure.Finish(first->part, last->part);
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
