// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/band_renderer.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "generators/common/lanes.h"
#include "generators/common/vector_power.h"
#include "generators/raster/curve_flattening.h"
#include "platform/mathematics/constants.h"

namespace {

// Work, in pixels filled with one colour.
constexpr std::uint64_t kOperationWork = 200, kGlyphWork = 100, kLineWork = 40;
// Work is added to the shared budget in amounts of this size.
constexpr std::uint64_t kWorkToTell = std::uint64_t{1} << 24U;

// Maximum memory of layers in bytes, beyond which fewer rows are painted at once.
constexpr std::size_t kLayerMemory = std::size_t{8} << 20U;

/// Order in which the pixels of a square turn black as it darkens: an 8 x 8 ordered dither matrix.
constexpr std::uint8_t kDitherOrder[8][8] = {
    {0, 32, 8, 40, 2, 34, 10, 42},    {48, 16, 56, 24, 50, 18, 58, 26}, {12, 44, 4, 36, 14, 46, 6, 38},
    {60, 28, 52, 20, 62, 30, 54, 22}, {3, 35, 11, 43, 1, 33, 9, 41},    {51, 19, 59, 27, 49, 17, 57, 25},
    {15, 47, 7, 39, 13, 45, 5, 37},   {63, 31, 55, 23, 61, 29, 53, 21}};

// Copies a row without every fourth byte.
void PackRow(const std::uint8_t* from, int width, std::uint8_t* to) {
    for (int x = 0; x < width; ++x, from += 4, to += 3) std::memcpy(to, from, 3);
}
#if ORV_HAS_WIDE_VECTORS
ORV_FOR_SSE41 void PackRowByFours(const std::uint8_t* from, int width, std::uint8_t* to) {
    int x = 0;
    // Sixteen bytes are written for twelve: not beyond the row, where the next one may stand already.
    for (; x + 6 <= width; x += 4, from += 16, to += 12) {
        const auto pixels = LoadLanes<ByteLanes>(from);
        StoreLanes(to, __builtin_shufflevector(pixels, pixels, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7,
                                               11, 15));
    }
    PackRow(from, width - x, to);
}
#else
void PackRowByFours(const std::uint8_t* from, int width, std::uint8_t* to) { PackRow(from, width, to); }
#endif

}  // namespace

BandRenderer::BandRenderer(const DisplayList& list, ImageStore& images, PaintBudget& budget,
                           RasterPixels pixels, int bandRows)
    : list_(list),
      images_(images),
      budget_(budget),
      pixels_(pixels),
      paper_(pixels == RasterPixels::kClear ? 0 : 255),
      width_(list.GetWidth()),
      // Layers are composited in colour.
      pixelBytes_(pixels == RasterPixels::kRGB || pixels == RasterPixels::kClear || list.HasLayers()
                      ? kColourBytes
                      : 1),
      stride_((static_cast<std::size_t>(width_) + kRowPadding) * pixelBytes_),
      maskStride_(static_cast<std::size_t>(width_) + kRowPadding),
      stripRows_(RowsOfStrip(list, bandRows)) {
    const auto rows = static_cast<std::size_t>(bandRows);
    coverage_.Resize(width_, bandRows);
    rows_ = std::make_unique_for_overwrite<std::uint8_t[]>(stride_ * rows);
    isDrawn_.resize(rows, 0);
    isWhite_.resize(rows, 0);
    if (pixels == RasterPixels::kRGB) {
        packed_ = std::make_unique_for_overwrite<std::uint8_t[]>(
            (static_cast<std::size_t>(width_) * 3 + 1) * rows + RasterBand::kTail);
        isPackedWhite_.resize(rows, 0);
    }
}

int BandRenderer::RowsOfStrip(const DisplayList& list, int bandRows) {
    if (list.GetLayerRowBytes() == 0) return bandRows;
    const std::size_t rows = kLayerMemory / list.GetLayerRowBytes();
    return static_cast<int>(std::clamp<std::size_t>(rows, 1, static_cast<std::size_t>(bandRows)));
}

RasterBand BandRenderer::Render(int firstRow, int rowCount, std::span<const std::uint32_t> pieces) {
    firstRow_ = firstRow;
    std::fill(isDrawn_.begin(), isDrawn_.end(), std::uint8_t{0});
    const int end = firstRow + rowCount;
    for (int row = firstRow; row < end; row += stripRows_)
        if (!PaintRows(row, std::min(row + stripRows_, end), pieces)) break;
    TellWork();
    return Finish(firstRow, rowCount);
}

bool BandRenderer::PaintRows(int top, int bottom, std::span<const std::uint32_t> pieces) {
    stripTop_ = top;
    stripBottom_ = bottom;
    coverage_.SetBand(top, bottom - top);
    for (MaskPlane& plane : planes_) plane.mask = 0;
    surfaces_.assign(1, {});
    surfaces_.back().bounds = {0, top, width_, bottom};
    layerMemoryUsed_ = 0;
    const RasterSequence<RasterPiece>& all = list_.GetPieces();
    for (std::size_t i = 0; i < pieces.size();) {
        const RasterPiece& piece = all[pieces[i]];
        FetchAhead(pieces, i);
        const std::uint32_t index = piece.operation;
        const RasterOperation& operation = list_.GetOperations()[index];
        // Pieces of one operation may be anywhere; rows are only known for a single piece.
        const bool isSingle = i + 1 == pieces.size() || all[pieces[i + 1]].operation != index;
        const bool isSeen = operation.step == RasterStep::kPaint &&
                            operation.layer == surfaces_.back().layer &&
                            SetWindow(operation, isSingle ? &piece : nullptr);
        if (isSeen) {
            if (isSingle) FetchPixels();
            coverage_.SampleCentres(operation.isCrisp);
            if (operation.overlaps) coverage_.KeepOverlaps();
            for (; i < pieces.size() && all[pieces[i]].operation == index; ++i)
                AddPiece(operation, all[pieces[i]]);
            operation.overlaps ? coverage_.ResolveOverlaps(operation.evenOdd) : coverage_.TakeEdges();
            Paint(operation);
        } else {
            if (operation.step != RasterStep::kPaint) TakeStep(operation);
            while (i < pieces.size() && all[pieces[i]].operation == index) ++i;
        }
        coverage_.AddWork(kOperationWork);
        if (coverage_.GetWork() > kWorkToTell && !TellWork()) return false;
    }
    return true;
}

// A page has more operations than fit the processor's caches, and each band uses a scattered subset. Data of
// later operations is prefetched while others are painted.
void BandRenderer::FetchAhead(std::span<const std::uint32_t> pieces, std::size_t i) const {
    constexpr std::size_t kPieceAhead = 12, kOperationAhead = 8, kOutlineAhead = 4, kLine = 64;
    if (i + kPieceAhead >= pieces.size()) return;
    const RasterSequence<RasterPiece>& all = list_.GetPieces();
    const auto operationOf = [&](std::size_t at) -> const RasterOperation& {
        return list_.GetOperations()[all[pieces[at]].operation];
    };
    __builtin_prefetch(&all[pieces[i + kPieceAhead]]);
    const auto* operation = reinterpret_cast<const char*>(&operationOf(i + kOperationAhead));
    __builtin_prefetch(operation);
    __builtin_prefetch(operation + kLine);
    // Points and verbs are stored before their contours.
    const auto contours = reinterpret_cast<std::uintptr_t>(operationOf(i + kOutlineAhead).geometry.contours);
    for (std::size_t line = 0; line < 3; ++line)
        __builtin_prefetch(reinterpret_cast<const char*>(contours - line * kLine));
}

// In a small shape, each row is on a different cache line.
void BandRenderer::FetchPixels() const {
    constexpr int kFewColumns = 64, kFewRows = 64;
    const int top = coverage_.GetFirstRow(), bottom = coverage_.GetEndRow();
    if (right_ - left_ > kFewColumns || bottom - top > kFewRows || surfaces_.size() > 1) return;
    const std::uint8_t* row = rows_.get() + static_cast<std::size_t>(top - firstRow_) * stride_;
    const auto left = static_cast<std::size_t>(left_) * pixelBytes_,
               right = static_cast<std::size_t>(right_) * pixelBytes_;
    for (int y = top; y < bottom; ++y, row += stride_) {
        __builtin_prefetch(row + left, 1);
        __builtin_prefetch(row + right, 1);
    }
}

bool BandRenderer::SetWindow(const RasterOperation& operation, const RasterPiece* onlyPiece) {
    const RasterBounds& bounds = surfaces_.back().bounds;
    left_ = std::max(operation.left, bounds.left);
    right_ = std::min(operation.right, bounds.right);
    const int top = onlyPiece ? std::max(onlyPiece->firstRow, bounds.top) : bounds.top;
    const int bottom = onlyPiece ? std::min(onlyPiece->lastRow + 1, bounds.bottom) : bounds.bottom;
    if (left_ >= right_ || top >= bottom) return false;
    // Includes edges that rounding has put on the right border.
    coverage_.SetWindow(left_, top, right_ + 1, bottom);
    return true;
}

bool BandRenderer::TellWork() {
    const std::uint64_t work = coverage_.GetWork() + maskCoverage_.GetWork();
    coverage_.ForgetWork();
    maskCoverage_.ForgetWork();
    return budget_.Spend(work);
}

void BandRenderer::ClearUndrawnRows(int rowCount) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(rowCount); ++i) {
        if (isDrawn_[i] != 0 || isWhite_[i] != 0) continue;
        std::memset(rows_.get() + i * stride_, paper_, stride_);
        isWhite_[i] = 1;
    }
}

RasterBand BandRenderer::Finish(int firstRow, int rowCount) {
    RasterBand band;
    band.firstRow = firstRow;
    band.rowCount = rowCount;
    band.isDrawn = isDrawn_.data();
    band.isBlank = std::find(isDrawn_.begin(), isDrawn_.end(), std::uint8_t{1}) == isDrawn_.end();
    if (pixels_ == RasterPixels::kRGB) {
        PackColours(band);
        return band;
    }
    ClearUndrawnRows(rowCount);
    if (pixels_ == RasterPixels::kClear) {
        band.rowBytes = static_cast<std::size_t>(width_) * kColourBytes;
        band.stride = stride_;
        band.pixels = rows_.get();
        return band;
    }
    if (pixelBytes_ == kColourBytes && !band.isBlank) MakeGrey(rowCount);
    if (pixels_ == RasterPixels::kBlack) {
        band.rowBytes = band.stride = (static_cast<std::size_t>(width_) + 7) / 8;
        bits_.assign(band.stride * static_cast<std::size_t>(rowCount), 0);
        if (!band.isBlank) Dither(firstRow, rowCount);
        band.pixels = bits_.data();
    } else {
        band.rowBytes = static_cast<std::size_t>(width_);
        band.stride = stride_;
        band.pixels = rows_.get();
    }
    return band;
}

void BandRenderer::PackColours(RasterBand& band) {
    constexpr std::size_t kFront = 1;
    band.rowFront = kFront;
    band.rowBytes = static_cast<std::size_t>(width_) * 3;
    band.stride = band.rowBytes + kFront;
    band.pixels = packed_.get() + kFront;
    const bool hasShuffles = UsedVectorPower() >= VectorPower::kSse41;
    std::uint8_t* to = packed_.get();
    for (std::size_t i = 0; i < static_cast<std::size_t>(band.rowCount); ++i, to += band.stride) {
        const bool isPaper = isDrawn_[i] == 0;
        if (isPaper && isPackedWhite_[i] != 0) continue;
        isPackedWhite_[i] = isPaper ? 1 : 0;
        *to = 0;
        const std::uint8_t* from = rows_.get() + i * stride_;
        if (isPaper)
            std::memset(to + kFront, paper_, band.rowBytes);
        else
            hasShuffles ? PackRowByFours(from, width_, to + kFront) : PackRow(from, width_, to + kFront);
    }
}

void BandRenderer::MakeGrey(int rowCount) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(rowCount); ++i) {
        if (isDrawn_[i] == 0) continue;
        std::uint8_t* to = rows_.get() + i * stride_;
        const std::uint8_t* from = to;
        for (int x = 0; x < width_; ++x, from += kColourBytes) *to++ = ORVGreyOf(from[0], from[1], from[2]);
    }
}

void BandRenderer::Dither(int firstRow, int rowCount) {
    std::uint8_t* to = bits_.data();
    for (int i = 0; i < rowCount; ++i) {
        const std::uint8_t* from = rows_.get() + static_cast<std::size_t>(i) * stride_;
        const std::uint8_t* order = kDitherOrder[(firstRow + i) & 7];
        // White is never below a threshold; black always is.
        std::uint8_t thresholds[8];
        for (int k = 0; k < 8; ++k) thresholds[k] = static_cast<std::uint8_t>(order[k] * 4 + 2);
        for (int x = 0; x < width_; x += 8, ++to) {
            unsigned int bits = 0;
            const int count = std::min(8, width_ - x);
            for (int k = 0; k < count; ++k)
                bits |= static_cast<unsigned int>(from[x + k] < thresholds[k]) << (7 - k);
            *to = static_cast<std::uint8_t>(bits);
        }
    }
}

// ---- Outlines ---------------------------------------------------------------------------------------------

void BandRenderer::AddContourFill(const RasterGeometry& geometry, const RasterContour& contour,
                                  std::uint32_t firstVerb, std::uint32_t verbCount,
                                  std::uint32_t firstPoint) {
    const RasterPoint* point = contour.points + firstPoint;
    const int top = coverage_.GetFirstRow() - geometry.originY - 1,
              bottom = coverage_.GetEndRow() - geometry.originY + 1;
    FixedPoint from = CoverageBuffer::ToFixed(geometry.LanesOf(*point));
    std::uint64_t lines = verbCount;
    const auto lineTo = [&](const DoubleLanes& p) {
        const FixedPoint to = CoverageBuffer::ToFixed(p);
        coverage_.AddLine(from, to);
        from = to;
    };
    for (std::uint32_t i = 0; i < verbCount; ++i) {
        if (contour.verbs[firstVerb + i] == RasterContour::Verb::kLine) {
            lineTo(geometry.LanesOf(*++point));
            continue;
        }
        const auto [least, most] = std::minmax({point[0].y, point[1].y, point[2].y, point[3].y});
        const ORVMathPoint2D start = geometry.PlaceOf(point[0]), control1 = geometry.PlaceOf(point[1]),
                             control2 = geometry.PlaceOf(point[2]), end = geometry.PlaceOf(point[3]);
        point += 3;
        if (most <= static_cast<float>(top) || least >= static_cast<float>(bottom)) {
            from = CoverageBuffer::ToFixed(end.x, end.y);
        } else {
            const int pieces = ORVPiecesOfCubic(start, control1, control2, end);
            ORVFlattenCubic(start, control1, control2, end, pieces, [&](const ORVMathPoint2D& p) {
                lineTo(DoubleLanes{p.x, p.y});
            });
            lines += static_cast<std::uint64_t>(pieces);
        }
    }
    coverage_.AddWork(lines * kLineWork);
    if (firstVerb + verbCount == contour.verbCount) lineTo(geometry.LanesOf(contour.points[0]));
}

void BandRenderer::AddContourStroke(const RasterOperation& operation, const RasterContour& contour) {
    course_.Clear();
    ORVAppendVerbs(operation.geometry, contour, {0, contour.verbCount, 0}, *operation.pen, course_);
    dasher_.AddContour(course_, contour.closed);
}

void BandRenderer::AddVerbsStroke(const RasterOperation& operation, const RasterContour& contour,
                                  const VerbRange& verbs, const DashedPart* dashes) {
    std::size_t first = 0, last = 0;
    course_.Clear();
    ORVAppendVerbsInContext(operation.geometry, contour, verbs, *operation.pen, course_, first, last);
    if (dashes)
        dasher_.AddPart(course_, first, last, *dashes);
    else
        outliner_.AddPart(course_, first, last);
}

void BandRenderer::AddGlyph(const RasterOperation& operation, const RasterGlyphPlace& place) {
    const RasterGlyph& glyph = *place.glyph;
    const double x = operation.geometry.originX + static_cast<double>(place.x);
    const double y = operation.geometry.originY + static_cast<double>(place.y);
    const double reach = operation.GetReach();
    if (y + static_cast<double>(glyph.bottom) + reach < coverage_.GetFirstRow() ||
        y + static_cast<double>(glyph.top) - reach > coverage_.GetEndRow())
        return;
    const auto placeOf = [&](const RasterPoint& p) {
        return ORVMathPoint2D{x + static_cast<double>(p.x), y + static_cast<double>(p.y)};
    };
    coverage_.AddWork(kGlyphWork);
    if (operation.fills) {
        coverage_.AddWork(glyph.points.size() * kLineWork);
        for (const RasterGlyph::Contour& contour : glyph.contours) {
            const RasterPoint* points = glyph.points.data() + contour.first;
            const ORVMathPoint2D last = placeOf(points[contour.count - 1]);
            FixedPoint from = CoverageBuffer::ToFixed(last.x, last.y);
            for (std::uint32_t i = 0; i < contour.count; ++i) {
                const ORVMathPoint2D p = placeOf(points[i]);
                const FixedPoint to = CoverageBuffer::ToFixed(p.x, p.y);
                coverage_.AddLine(from, to);
                from = to;
            }
        }
    }
    if (!operation.pen) return;
    // Where the fill and the stroke of a glyph overlap, their windings must add up instead of cancelling out.
    const bool penIsClockwise = operation.pen->toDevice.Determinant() < 0.0;
    outliner_.SetPen(*operation.pen, penIsClockwise != glyph.clockwise);
    for (const RasterGlyph::Contour& contour : glyph.contours) {
        course_.Clear();
        for (std::uint32_t i = contour.first; i < contour.first + contour.count; ++i)
            course_.Add(placeOf(glyph.points[i]),
                        glyph.smooth[i] != 0 ? CoursePoint::kSmooth : CoursePoint::kCorner);
        dasher_.AddContour(course_, true);
    }
}

void BandRenderer::AddPiece(const RasterOperation& operation, const RasterPiece& piece) {
    if (operation.glyphs) {
        for (std::uint32_t i = 0; i < piece.verbCount; ++i)
            AddGlyph(operation, operation.glyphs[piece.firstPoint + i]);
        return;
    }
    const RasterGeometry& geometry = operation.geometry;
    if (operation.pen) outliner_.SetPen(*operation.pen);
    if (piece.contour == RasterPiece::kAll) {
        for (std::uint32_t i = 0; i < geometry.contourCount; ++i) {
            const RasterContour& contour = geometry.contours[i];
            if (operation.fills) AddContourFill(geometry, contour, 0, contour.verbCount, 0);
            if (operation.pen) AddContourStroke(operation, contour);
        }
        return;
    }
    if (piece.contour == RasterPiece::kDashes) {
        const RasterDashes& dashes = list_.GetDashes()[piece.firstPoint];
        AddVerbsStroke(operation, geometry.contours[dashes.contour], dashes.verbs, &dashes.part);
        return;
    }
    const RasterContour& contour = geometry.contours[piece.contour];
    if (operation.fills)
        AddContourFill(geometry, contour, piece.firstVerb, piece.verbCount, piece.firstPoint);
    if (!operation.pen) return;
    if (piece.verbCount == contour.verbCount)
        AddContourStroke(operation, contour);
    else
        AddVerbsStroke(operation, contour, {piece.firstVerb, piece.verbCount, piece.firstPoint}, nullptr);
}
