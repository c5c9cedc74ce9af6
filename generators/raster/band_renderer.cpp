#include "generators/raster/band_renderer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "generators/raster/curve_flattening.h"
#include "platform/mathematics/constants.h"

namespace {

// Pixels that painting may touch beyond the end of a row.
constexpr std::size_t kRowPadding = 16;
// Of a pixel while it is painted. One is of no use but that four pixels are painted at a time.
constexpr std::size_t kColourBytes = 4;

/// Exact for all that two bytes multiply to.
unsigned int DivideBy255(unsigned int value) { return (value + 128 + ((value + 128) >> 8U)) >> 8U; }

void Blend(std::uint8_t& pixel, unsigned int value, unsigned int alpha) {
    pixel = static_cast<std::uint8_t>(DivideBy255(pixel * (255 - alpha) + value * alpha));
}

/// Luminance as it is perceived; white stays white, greys stay what they are.
std::uint8_t GreyOf(unsigned int red, unsigned int green, unsigned int blue) {
    return static_cast<std::uint8_t>((red * 77 + green * 150 + blue * 29 + 128) >> 8U);
}

ORVMathPoint2D PlaceOf(const RasterGeometry& geometry, const RasterPoint& p) {
    return {geometry.originX + static_cast<double>(p.x), geometry.originY + static_cast<double>(p.y)};
}

// Pens up to this radius (pixels) do not show the corners of a course that is flat itself.
constexpr double kFinePen = 0.5;

/// The order in which the pixels of a square become black as it gets darker, spread evenly.
constexpr std::uint8_t kDitherOrder[8][8] = {
    {0, 32, 8, 40, 2, 34, 10, 42},    {48, 16, 56, 24, 50, 18, 58, 26}, {12, 44, 4, 36, 14, 46, 6, 38},
    {60, 28, 52, 20, 62, 30, 54, 22}, {3, 35, 11, 43, 1, 33, 9, 41},    {51, 19, 59, 27, 49, 17, 57, 25},
    {15, 47, 7, 39, 13, 45, 5, 37},   {63, 31, 55, 23, 61, 29, 53, 21}};

}  // namespace

/// Paints with one colour on red, green and blue.
class BandRenderer::SolidColourPaint {
public:
    /// Paints on one row.
    struct Brush {
        std::uint8_t* row;
        PixelColour colour;
        unsigned int opacity;

        void Block(int x, const Lanes& alphas) const {
            ShortLanes share = InBothHalves(alphas);
            if (opacity != 255) share = DivideBy255(share * static_cast<std::uint16_t>(opacity));
            Blend(row + static_cast<std::size_t>(x) * kColourBytes, share);
        }
        void Span(int begin, int end, unsigned int alpha) const {
            std::uint8_t* to = row + static_cast<std::size_t>(begin) * kColourBytes;
            const std::uint8_t* const last = row + static_cast<std::size_t>(end) * kColourBytes;
            alpha = DivideBy255(alpha * opacity);
            if (alpha == 255) {
                const ShortLanes opaque = colour.Opaque();
                for (; to < last; to += sizeof opaque) StoreLanes(to, opaque);
            } else {
                const ShortLanes share = ShortLanes{} + static_cast<std::uint16_t>(alpha);
                for (; to < last; to += sizeof share) Blend(to, share);
            }
        }

    private:
        void Blend(std::uint8_t* to, const ShortLanes& share) const {
            StoreLanes(to, BlendPixels(LoadLanes<ShortLanes>(to), colour, share));
        }
    };

    SolidColourPaint(BandRenderer& renderer, const ORVPrintColour& colour)
        : renderer_(renderer), colour_(colour.red, colour.green, colour.blue), opacity_(colour.opacity) {}
    Brush BeginRow(int row) { return {renderer_.BeginRow(row), colour_, opacity_}; }
    void EndRow() {}

private:
    BandRenderer& renderer_;
    const PixelColour colour_;
    const unsigned int opacity_;
};

/// Paints with one grey.
class BandRenderer::SolidGreyPaint {
public:
    /// Paints on one row.
    struct Brush {
        std::uint8_t* row;
        unsigned int grey, opacity;

        void Block(int x, const Lanes& alphas) const {
            for (int i = 0; i < 4; ++i) Pixel(x + i, alphas[i]);
        }
        void Span(int begin, int end, unsigned int alpha) const {
            if (alpha == 255 && opacity == 255)
                std::memset(row + begin, static_cast<int>(grey), static_cast<std::size_t>(end - begin));
            else
                for (int x = begin; x < end; ++x) Pixel(x, alpha);
        }

    private:
        void Pixel(int x, unsigned int alpha) const { Blend(row[x], grey, DivideBy255(alpha * opacity)); }
    };

    SolidGreyPaint(BandRenderer& renderer, const ORVPrintColour& colour)
        : renderer_(renderer),
          grey_(GreyOf(colour.red, colour.green, colour.blue)),
          opacity_(colour.opacity) {}
    Brush BeginRow(int row) { return {renderer_.BeginRow(row), grey_, opacity_}; }
    void EndRow() {}

private:
    BandRenderer& renderer_;
    const std::uint8_t grey_;
    const unsigned int opacity_;
};

/// Collects a row's coverage before it is painted: for pictures and for what is cut off.
class BandRenderer::AlphaPaint {
public:
    AlphaPaint(BandRenderer& renderer, const RasterOperation& operation)
        : renderer_(renderer), operation_(operation), clip_(renderer.list_.GetClips()[operation.clip]) {
        renderer.alphas_.resize(static_cast<std::size_t>(renderer.width_) + kRowPadding, 0);
        alphas_ = renderer.alphas_.data();
    }
    AlphaPaint& BeginRow(int row) {
        row_ = row;
        begin_ = renderer_.width_;
        end_ = 0;
        return *this;
    }
    void Block(int x, const Lanes& alphas) {
        for (int i = 0; i < 4; ++i) alphas_[x + i] = static_cast<std::uint8_t>(alphas[i]);
        begin_ = std::min(begin_, x);
        end_ = std::max(end_, x + 4);
    }
    void Span(int begin, int end, unsigned int alpha) {
        std::memset(alphas_ + begin, static_cast<int>(alpha), static_cast<std::size_t>(end - begin));
        begin_ = std::min(begin_, begin);
        end_ = std::max(end_, end);
    }
    void EndRow() {
        const int begin = std::max(begin_, operation_.left);
        const int end = std::min({end_, operation_.right, renderer_.width_});
        if (begin < end && (!operation_.clipped || CutOff(begin, end)))
            renderer_.BlendRow(operation_, row_, begin, end, alphas_);
        if (begin_ < end_) std::memset(alphas_ + begin_, 0, static_cast<std::size_t>(end_ - begin_));
    }

private:
    /// @return false when nothing is left of the row
    bool CutOff(int begin, int end) {
        const double rowShare = std::min(clip_.bottom, row_ + 1.0) - std::max(clip_.top, 1.0 * row_);
        if (!(rowShare > 0.0)) return false;
        const auto scale = [&](int x, double share) {
            const double kept = std::clamp(share * std::min(rowShare, 1.0), 0.0, 1.0);
            const double wanted = operation_.smooths ? kept : (kept >= 0.5 ? 1.0 : 0.0);
            alphas_[x] = static_cast<std::uint8_t>(alphas_[x] * wanted + 0.5);
        };
        const auto share = [&](int x) {
            return std::min(clip_.right, x + 1.0) - std::max(clip_.left, 1.0 * x);
        };
        if (rowShare < 1.0) {
            for (int x = begin; x < end; ++x) scale(x, share(x));
        } else {
            // Only pixels on the borders are cut into: the operation's columns end with the clip's.
            scale(begin, share(begin));
            if (end - 1 > begin) scale(end - 1, share(end - 1));
        }
        if (clip_.outline) {
            const std::uint8_t* mask =
                renderer_.mask_.data() +
                static_cast<std::size_t>(row_ - renderer_.firstRow_) * renderer_.maskStride_;
            for (int x = begin; x < end; ++x)
                alphas_[x] =
                    static_cast<std::uint8_t>(DivideBy255(static_cast<unsigned int>(alphas_[x]) * mask[x]));
        }
        return true;
    }

    BandRenderer& renderer_;
    const RasterOperation& operation_;
    const RasterClip& clip_;
    std::uint8_t* alphas_ = nullptr;
    int row_ = 0, begin_ = 0, end_ = 0;
};

BandRenderer::BandRenderer(const DisplayList& list, PictureStore& pictures, RasterPixels pixels, int bandRows)
    : list_(list),
      pictures_(pictures),
      pixels_(pixels),
      width_(list.GetWidth()),
      pixelBytes_(pixels == RasterPixels::kRGB ? kColourBytes : 1),
      stride_((static_cast<std::size_t>(width_) + kRowPadding) * pixelBytes_),
      maskStride_(static_cast<std::size_t>(width_) + kRowPadding) {
    const auto rows = static_cast<std::size_t>(bandRows);
    coverage_.Resize(width_, bandRows);
    rows_.resize(stride_ * rows, 255);
    isDrawn_.resize(rows, 0);
    isWhite_.resize(rows, 1);
}

std::uint8_t* BandRenderer::BeginRow(int row) {
    const auto index = static_cast<std::size_t>(row - firstRow_);
    std::uint8_t* pixels = rows_.data() + index * stride_;
    if (isDrawn_[index] == 0) {
        if (isWhite_[index] == 0) std::memset(pixels, 255, stride_);
        isDrawn_[index] = 1;
        isWhite_[index] = 0;
    }
    return pixels;
}

RasterBand BandRenderer::Render(int firstRow, int rowCount, std::span<const std::uint32_t> pieces) {
    firstRow_ = firstRow;
    rowCount_ = rowCount;
    coverage_.SetBand(firstRow, rowCount);
    std::fill(isDrawn_.begin(), isDrawn_.end(), std::uint8_t{0});
    for (std::size_t i = 0; i < pieces.size();) {
        const std::uint32_t index = list_.GetPieces()[pieces[i]].operation;
        const RasterOperation& operation = list_.GetOperations()[index];
        // Pieces of one operation lie anywhere: only of a single one the rows are known.
        const RasterPiece& piece = list_.GetPieces()[pieces[i]];
        const bool isSingle = i + 1 == pieces.size() || list_.GetPieces()[pieces[i + 1]].operation != index;
        // An edge that rounding has put on the right border is needed, too.
        coverage_.SetWindow(operation.left, isSingle ? piece.firstRow : firstRow, operation.right + 1,
                            isSingle ? piece.lastRow + 1 : firstRow + rowCount);
        for (; i < pieces.size() && list_.GetPieces()[pieces[i]].operation == index; ++i)
            AddPiece(operation, list_.GetPieces()[pieces[i]]);
        Paint(operation);
    }
    return Finish(firstRow, rowCount);
}

RasterBand BandRenderer::Finish(int firstRow, int rowCount) {
    RasterBand band;
    band.firstRow = firstRow;
    band.rowCount = rowCount;
    band.isBlank = true;
    for (std::size_t i = 0; i < static_cast<std::size_t>(rowCount); ++i) {
        if (isDrawn_[i] != 0) {
            band.isBlank = false;
        } else if (isWhite_[i] == 0) {
            std::memset(rows_.data() + i * stride_, 255, stride_);
            isWhite_[i] = 1;
        }
    }
    if (pixels_ == RasterPixels::kBlack) {
        band.rowBytes = band.stride = (static_cast<std::size_t>(width_) + 7) / 8;
        bits_.assign(band.stride * static_cast<std::size_t>(rowCount), 0);
        if (!band.isBlank) Dither(firstRow, rowCount);
        band.pixels = bits_.data();
    } else {
        if (pixels_ == RasterPixels::kRGB && !band.isBlank) PackColours(rowCount);
        band.rowBytes = static_cast<std::size_t>(width_) * (pixels_ == RasterPixels::kRGB ? 3 : 1);
        band.stride = stride_;
        band.pixels = rows_.data();
    }
    return band;
}

void BandRenderer::PackColours(int rowCount) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(rowCount); ++i) {
        if (isDrawn_[i] == 0) continue;
        std::uint8_t* to = rows_.data() + i * stride_;
        const std::uint8_t* from = to;
        // The fourth byte is overwritten by the next pixel, which was read before.
        for (int x = 0; x < width_; ++x, from += kColourBytes, to += 3) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, from, sizeof pixel);
            std::memcpy(to, &pixel, sizeof pixel);
        }
    }
}

void BandRenderer::Dither(int firstRow, int rowCount) {
    std::uint8_t* to = bits_.data();
    for (int i = 0; i < rowCount; ++i) {
        const std::uint8_t* from = rows_.data() + static_cast<std::size_t>(i) * stride_;
        const std::uint8_t* order = kDitherOrder[(firstRow + i) & 7];
        // White is never below a threshold, black always.
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

int BandRenderer::PiecesOf(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                           const ORVMathPoint2D& p3) const {
    const int pieces = ORVPiecesOfCubic(p0, p1, p2, p3);
    if (penRadius_ <= kFinePen) return pieces;
    // The border of a wide line bends around corners of its course: they must be gentle, too.
    const auto turn = [](const ORVMathPoint2D& a, const ORVMathPoint2D& b, const ORVMathPoint2D& c) {
        const double ux = b.x - a.x, uy = b.y - a.y, vx = c.x - b.x, vy = c.y - b.y;
        return std::fabs(std::atan2(ux * vy - uy * vx, ux * vx + uy * vy));
    };
    const double step = 2.0 * std::acos(std::max(0.0, 1.0 - kFlatness / penRadius_));
    const double needed = (turn(p0, p1, p2) + turn(p1, p2, p3)) * 1.5 / std::max(step, 1e-3);
    return std::max(pieces, static_cast<int>(std::min(needed, 1000.0)) + 1);
}

void BandRenderer::CollectVerbs(const RasterGeometry& geometry, const RasterContour& contour,
                                std::uint32_t firstVerb, std::uint32_t verbCount, std::uint32_t firstPoint) {
    const RasterPoint* point = contour.points + firstPoint;
    ORVMathPoint2D current = PlaceOf(geometry, *point++);
    course_.Add(current, false);
    for (std::uint32_t i = 0; i < verbCount; ++i) {
        if (contour.verbs[firstVerb + i] == RasterContour::Verb::kLine) {
            current = PlaceOf(geometry, *point++);
            course_.Add(current, false);
            continue;
        }
        const ORVMathPoint2D control1 = PlaceOf(geometry, point[0]), control2 = PlaceOf(geometry, point[1]),
                             end = PlaceOf(geometry, point[2]);
        point += 3;
        const int pieces = PiecesOf(current, control1, control2, end);
        int done = 0;
        ORVFlattenCubic(current, control1, control2, end, pieces,
                        [&](const ORVMathPoint2D& p) { course_.Add(p, ++done < pieces); });
        current = end;
    }
}

void BandRenderer::AddContourFill(const RasterGeometry& geometry, const RasterContour& contour,
                                  std::uint32_t firstVerb, std::uint32_t verbCount,
                                  std::uint32_t firstPoint) {
    const RasterPoint* point = contour.points + firstPoint;
    const int top = coverage_.GetFirstRow() - geometry.originY - 1,
              bottom = coverage_.GetEndRow() - geometry.originY + 1;
    ORVMathPoint2D current = PlaceOf(geometry, *point);
    FixedPoint from = CoverageBuffer::ToFixed(current.x, current.y);
    const auto lineTo = [&](const ORVMathPoint2D& p) {
        const FixedPoint to = CoverageBuffer::ToFixed(p.x, p.y);
        coverage_.AddLine(from, to);
        from = to;
        current = p;
    };
    for (std::uint32_t i = 0; i < verbCount; ++i) {
        if (contour.verbs[firstVerb + i] == RasterContour::Verb::kLine) {
            lineTo(PlaceOf(geometry, *++point));
            continue;
        }
        const auto [least, most] = std::minmax({point[0].y, point[1].y, point[2].y, point[3].y});
        const ORVMathPoint2D control1 = PlaceOf(geometry, point[1]), control2 = PlaceOf(geometry, point[2]),
                             end = PlaceOf(geometry, point[3]);
        point += 3;
        if (most <= static_cast<float>(top) || least >= static_cast<float>(bottom)) {
            current = end;
            from = CoverageBuffer::ToFixed(end.x, end.y);
        } else {
            const ORVMathPoint2D start = current;
            ORVFlattenCubic(start, control1, control2, end, ORVPiecesOfCubic(start, control1, control2, end),
                            lineTo);
        }
    }
    if (firstVerb + verbCount == contour.verbCount) lineTo(PlaceOf(geometry, contour.points[0]));
}

void BandRenderer::AddContourStroke(const RasterOperation& operation, const RasterContour& contour) {
    course_.Clear();
    CollectVerbs(operation.geometry, contour, 0, contour.verbCount, 0);
    outliner_.AddContour(course_, contour.closed);
}

void BandRenderer::AddVerbsStroke(const RasterOperation& operation, const RasterContour& contour,
                                  const RasterPiece& piece) {
    const auto pointsOf = [&](std::uint32_t verb) {
        return contour.verbs[verb] == RasterContour::Verb::kCubic ? 3U : 1U;
    };
    const std::uint32_t end = piece.firstVerb + piece.verbCount;
    std::uint32_t pointCount = 0, endPoint = piece.firstPoint;
    for (std::uint32_t i = piece.firstVerb; i < end; ++i) endPoint += pointsOf(i);
    // The verbs before and after make the joins; a closed contour goes on at its other end.
    course_.Clear();
    if (piece.firstVerb > 0) {
        CollectVerbs(operation.geometry, contour, piece.firstVerb - 1, 1,
                     piece.firstPoint - pointsOf(piece.firstVerb - 1));
    } else if (contour.closed) {
        for (std::uint32_t i = 0; i + 1 < contour.verbCount; ++i) pointCount += pointsOf(i);
        CollectVerbs(operation.geometry, contour, contour.verbCount - 1, 1, pointCount);
    }
    const std::size_t first = course_.points.empty() ? 0 : course_.points.size() - 1;
    CollectVerbs(operation.geometry, contour, piece.firstVerb, piece.verbCount, piece.firstPoint);
    const std::size_t last = course_.points.size() - 1;
    if (end < contour.verbCount)
        CollectVerbs(operation.geometry, contour, end, 1, endPoint);
    else if (contour.closed)
        CollectVerbs(operation.geometry, contour, 0, 1, 0);
    outliner_.AddPart(course_, first, last);
}

void BandRenderer::AddGlyph(const RasterOperation& operation, const RasterGlyphPlace& place) {
    const RasterGlyph& glyph = *place.glyph;
    const double x = operation.geometry.originX + static_cast<double>(place.x);
    const double y = operation.geometry.originY + static_cast<double>(place.y);
    const double reach = operation.pen ? operation.pen->reach : 0.0;
    if (y + static_cast<double>(glyph.bottom) + reach < coverage_.GetFirstRow() ||
        y + static_cast<double>(glyph.top) - reach > coverage_.GetEndRow())
        return;
    const auto placeOf = [&](const RasterPoint& p) {
        return ORVMathPoint2D{x + static_cast<double>(p.x), y + static_cast<double>(p.y)};
    };
    if (operation.fills) {
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
    // Where a glyph's inside and its line overlap, their windings must add up and not cancel out.
    const bool penIsClockwise = operation.pen->toDevice.Determinant() < 0.0;
    outliner_.SetPen(*operation.pen, penIsClockwise != glyph.clockwise);
    for (const RasterGlyph::Contour& contour : glyph.contours) {
        course_.Clear();
        for (std::uint32_t i = contour.first; i < contour.first + contour.count; ++i)
            course_.Add(placeOf(glyph.points[i]), glyph.smooth[i] != 0);
        outliner_.AddContour(course_, true);
    }
}

void BandRenderer::AddPiece(const RasterOperation& operation, const RasterPiece& piece) {
    if (operation.glyphs) {
        for (std::uint32_t i = 0; i < piece.verbCount; ++i)
            AddGlyph(operation, operation.glyphs[piece.firstPoint + i]);
        return;
    }
    const RasterGeometry& geometry = operation.geometry;
    if (operation.pen) {
        outliner_.SetPen(*operation.pen);
        penRadius_ = operation.pen->radius;
    }
    if (piece.contour == RasterPiece::kAll) {
        for (std::uint32_t i = 0; i < geometry.contourCount; ++i) {
            const RasterContour& contour = geometry.contours[i];
            if (operation.fills) AddContourFill(geometry, contour, 0, contour.verbCount, 0);
            if (operation.pen) AddContourStroke(operation, contour);
        }
        return;
    }
    const RasterContour& contour = geometry.contours[piece.contour];
    if (operation.fills)
        AddContourFill(geometry, contour, piece.firstVerb, piece.verbCount, piece.firstPoint);
    if (!operation.pen) return;
    if (piece.verbCount == contour.verbCount)
        AddContourStroke(operation, contour);
    else
        AddVerbsStroke(operation, contour, piece);
}

// ---- Paint ------------------------------------------------------------------------------------------------

void BandRenderer::Paint(const RasterOperation& operation) {
    const RasterClip& clip = list_.GetClips()[operation.clip];
    if (operation.clipped && clip.outline) MakeMask(operation, *clip.outline);
    if (operation.picture && !pictures_.Find(*operation.picture, source_)) source_ = {};
    if (operation.smooths) {
        if (operation.evenOdd)
            PaintWith<CoverageRule::kEvenOdd>(operation);
        else
            PaintWith<CoverageRule::kNonZero>(operation);
    } else {
        if (operation.evenOdd)
            PaintWith<CoverageRule::kHardEvenOdd>(operation);
        else
            PaintWith<CoverageRule::kHardNonZero>(operation);
    }
    source_ = {};
}

template <CoverageRule kRule>
void BandRenderer::PaintWith(const RasterOperation& operation) {
    if (operation.picture || operation.clipped) {
        AlphaPaint paint(*this, operation);
        coverage_.Sweep<kRule>(paint);
    } else if (pixelBytes_ == kColourBytes) {
        SolidColourPaint paint(*this, operation.colour);
        coverage_.Sweep<kRule>(paint);
    } else {
        SolidGreyPaint paint(*this, operation.colour);
        coverage_.Sweep<kRule>(paint);
    }
}

void BandRenderer::MakeMask(const RasterOperation& operation, const RasterGeometry& outline) {
    /// Writes the coverage of a clip's outline.
    struct MaskPaint {
        BandRenderer& renderer;
        std::uint8_t* row = nullptr;
        MaskPaint& BeginRow(int y) {
            row = renderer.mask_.data() +
                  static_cast<std::size_t>(y - renderer.firstRow_) * renderer.maskStride_;
            return *this;
        }
        void EndRow() {}
        void Block(int x, const Lanes& alphas) {
            for (int i = 0; i < 4; ++i) row[x + i] = static_cast<std::uint8_t>(alphas[i]);
        }
        void Span(int begin, int end, unsigned int alpha) {
            std::memset(row + begin, static_cast<int>(alpha), static_cast<std::size_t>(end - begin));
        }
    };
    mask_.assign(static_cast<std::size_t>(rowCount_) * maskStride_, 0);
    CoverageBuffer inside;
    inside.Resize(width_, rowCount_);
    inside.SetBand(firstRow_, rowCount_);
    std::swap(coverage_, inside);
    for (std::uint32_t i = 0; i < outline.contourCount; ++i)
        AddContourFill(outline, outline.contours[i], 0, outline.contours[i].verbCount, 0);
    MaskPaint paint{*this};
    if (operation.smooths)
        coverage_.Sweep<CoverageRule::kNonZero>(paint);
    else
        coverage_.Sweep<CoverageRule::kHardNonZero>(paint);
    std::swap(coverage_, inside);
}

void BandRenderer::BlendRow(const RasterOperation& operation, int row, int begin, int end,
                            std::uint8_t* alphas) {
    std::uint8_t* pixels = BeginRow(row);
    const unsigned int opacity = operation.colour.opacity;
    if (!operation.picture) {
        const ORVPrintColour& colour = operation.colour;
        const std::uint8_t grey = GreyOf(colour.red, colour.green, colour.blue);
        for (int x = begin; x < end; ++x) {
            const unsigned int alpha = opacity == 255 ? alphas[x] : DivideBy255(alphas[x] * opacity);
            if (alpha == 0) continue;
            if (pixelBytes_ == 1) {
                Blend(pixels[x], grey, alpha);
                continue;
            }
            std::uint8_t* pixel = pixels + static_cast<std::size_t>(x) * kColourBytes;
            Blend(pixel[0], colour.red, alpha);
            Blend(pixel[1], colour.green, alpha);
            Blend(pixel[2], colour.blue, alpha);
        }
        return;
    }
    if (!source_.samples) return;
    colours_.resize(static_cast<std::size_t>(end - begin) * 4);
    source_.Read(row, begin, end, colours_.data());
    const std::uint8_t* from = colours_.data();
    for (int x = begin; x < end; ++x, from += 4) {
        const unsigned int alpha = opacity == 255 ? alphas[x] : DivideBy255(alphas[x] * opacity);
        if (alpha == 0) continue;
        const unsigned int left = 255 - DivideBy255(from[3] * alpha);
        const auto mix = [&](std::uint8_t& to, unsigned int value) {
            to = static_cast<std::uint8_t>(std::min(255U, DivideBy255(to * left + value * alpha)));
        };
        if (pixelBytes_ == 1) {
            mix(pixels[x], GreyOf(from[0], from[1], from[2]));
            continue;
        }
        std::uint8_t* pixel = pixels + static_cast<std::size_t>(x) * kColourBytes;
        for (int i = 0; i < 3; ++i) mix(pixel[i], from[i]);
    }
}
