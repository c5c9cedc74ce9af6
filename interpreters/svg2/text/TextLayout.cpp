// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/TextLayout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "interpreters/svg2/values/transform.h"

namespace svg2 {
namespace {

constexpr double kQuarter = 90.0;
constexpr double kSlant = 0.2126;  // tangent of the 12-degree slant of synthesised italics

/// Flips the y axis, and slants the glyphs if an italic face is missing.
ORVMathAffine2D GlyphsUp(const TextSpan& span) {
    return {1.0, span.font.choice.isToBeSlanted ? kSlant : 0.0, 0.0, -1.0, 0.0, 0.0};
}

ORVMathAffine2D LineUp() { return {1.0, 0.0, 0.0, -1.0, 0.0, 0.0}; }

/// Height of the middle of the em box above the baseline.
double MiddleOf(const TextSpan& span) {
    const FontMetrics& metrics = span.font.metrics;
    return (metrics.ascent - metrics.descent) / 2.0 * span.FontSize();
}

/// Distance of the alphabetic baseline below the dominant baseline of a style.
double BaselineDrop(const Style& style, const TextFont& font) {
    const FontMetrics& metrics = font.metrics;
    const bool isAligned = style.alignmentBaseline != Baseline::kAuto;
    double em = 0.0;
    switch (isAligned ? style.alignmentBaseline : style.dominantBaseline) {
        case Baseline::kHanging: em = 0.8 * metrics.ascent; break;
        case Baseline::kTextBeforeEdge: em = metrics.ascent; break;
        case Baseline::kCentral: em = (metrics.ascent - metrics.descent) / 2.0; break;
        case Baseline::kMiddle: em = metrics.xHeight / 2.0; break;
        case Baseline::kMathematical: em = metrics.ascent / 2.0; break;
        case Baseline::kIdeographic:
        case Baseline::kTextAfterEdge: em = -metrics.descent; break;
        default: break;
    }
    return em * style.fontSize * font.enlargement;
}

}  // namespace

bool TextLayout::LayOut(ElementIndex element, const Style& style, const Viewport& viewport) {
    if (!content_.Collect(element, style, viewport)) return false;
    if (content_.IsEmpty()) return true;
    if (content_.IsPlain()) return LayOutPlain();
    if (!runs_.Shape()) return false;
    FitLengths();
    PlaceChunks();
    return true;
}

// ---- places ----

void TextLayout::PlaceChunks() {
    ORVMathPoint2D pen;
    const auto movePen = [&](std::size_t character) {
        const TextPlace place = content_.PlaceOf(character);
        if (place.hasX) pen.x = place.x;
        if (place.hasY) pen.y = place.y;
    };
    // If the first characters are not displayed, the next one takes the start of the text from them.
    for (std::size_t i = 0; i < content_.GetCharacters().size() && content_.GetCharacters()[i].isHidden; ++i)
        movePen(i);
    for (const TextChunk& chunk : runs_.GetChunks()) {
        movePen(chunk.start);
        FindMoves(chunk);
        const std::size_t path = content_.SpanOf(chunk.start).path;
        if (path == TextSpan::kNoPath)
            PlaceChunk(chunk, pen);
        else
            PlaceOnRail(chunk, content_.GetRail(path), pen);
        EndSegment();
    }
}

/// Accumulates the displacement of each character of a chunk, in logical order.
void TextLayout::FindMoves(const TextChunk& chunk) {
    moves_.clear();
    if (!content_.HasMoves()) return;
    ORVMathPoint2D sum;
    moves_.reserve(chunk.stop - chunk.start);
    for (std::size_t i = chunk.start; i < chunk.stop; ++i) {
        const TextPlace place = content_.PlaceOf(i);
        // Characters that are not displayed move nothing.
        if (!content_.GetCharacters()[i].isHidden) {
            sum.x += place.dx;
            sum.y += place.dy;
        }
        moves_.push_back(sum);
    }
}

ORVMathPoint2D TextLayout::MoveOf(const TextChunk& chunk, const TextCluster& cluster) const {
    return moves_.empty() ? ORVMathPoint2D() : moves_[cluster.end - 1 - chunk.start];
}

/// The part of a chunk's length that lies before its anchor point.
double TextLayout::AnchorShare(const TextChunk& chunk) const {
    const Style& style = *content_.SpanOf(chunk.start).style;
    const double share = style.textAnchor == TextAnchor::kStart    ? 0.0
                         : style.textAnchor == TextAnchor::kMiddle ? 0.5
                                                                   : 1.0;
    return chunk.isRightToLeft ? 1.0 - share : share;
}

double TextLayout::LengthOf(const TextChunk& chunk) const {
    double length = 0.0;
    for (std::size_t i = chunk.first; i < chunk.end; ++i)
        length += runs_.GetClusters()[i].Length() + runs_.GetClusters()[i].after;
    // Displacements stretch left-to-right text, but only move right-to-left text. The first one moves the
    // whole chunk.
    if (!moves_.empty() && !chunk.isRightToLeft)
        length +=
            content_.IsVertical() ? moves_.back().y - moves_.front().y : moves_.back().x - moves_.front().x;
    return length;
}

void TextLayout::PlaceChunk(const TextChunk& chunk, ORVMathPoint2D& pen) {
    const bool isVertical = content_.IsVertical();
    const double before = AnchorShare(chunk) * LengthOf(chunk);
    double along = -before;
    for (std::size_t i = chunk.first; i < chunk.end; ++i) {
        const TextCluster& cluster = runs_.GetClusters()[i];
        const ORVMathPoint2D move = MoveOf(chunk, cluster);
        Spot spot;
        spot.at = {pen.x + move.x, pen.y + move.y};
        (isVertical ? spot.at.y : spot.at.x) += along;
        spot.rotation = content_.RotationOf(cluster.first);
        PutCluster(cluster, spot);
        along += cluster.Length() + cluster.after;
    }
    const double end = chunk.isRightToLeft && !isVertical ? -before : along;
    const ORVMathPoint2D move = moves_.empty() ? ORVMathPoint2D() : moves_.back();
    pen = {pen.x + move.x, pen.y + move.y};
    (isVertical ? pen.y : pen.x) += end;
}

void TextLayout::PlaceOnRail(const TextChunk& chunk, const TextRail& rail, ORVMathPoint2D& pen) {
    const TextPlace start = content_.PlaceOf(chunk.start);
    const double whole = rail.path.GetLength(), share = AnchorShare(chunk);
    const double begin = rail.offset + (start.hasX ? start.x : 0.0);
    // On a closed path, text goes around once.
    const double first = rail.path.IsClosed() ? begin - share * whole : 0.0;
    double along = begin - share * LengthOf(chunk);
    for (std::size_t i = chunk.first; i < chunk.end; ++i) {
        const TextCluster& cluster = runs_.GetClusters()[i];
        const ORVMathPoint2D move = MoveOf(chunk, cluster);
        const double middle = along + move.x + cluster.Length() / 2.0;
        along += cluster.Length() + cluster.after;
        if (!(middle >= first && middle <= first + whole)) continue;
        const double turn = std::floor(middle / whole) * whole;
        const TextPath::Place place = rail.path.At(rail.path.IsClosed() ? middle - turn : middle);
        PutOnRail(cluster, place, move.y, content_.RotationOf(cluster.first));
        pen = segments_.back().line({cluster.Length(), 0.0});
    }
}

// ---- segments ----

double TextLayout::DropOf(const TextSpan& span) const {
    return BaselineDrop(*span.style, span.font) - span.shift;
}

bool TextLayout::ContinuesSegment(const TextCluster& cluster, const Spot& spot) const {
    constexpr double kTolerance = 1e-9;
    return isOpen_ && spot.rotation == 0.0 && lastSpot_.rotation == 0.0 && cluster.scale == lastScale_ &&
           content_.GetCharacters()[cluster.first].span == segments_.back().span &&
           cluster.isUpright == segments_.back().isUpright &&
           std::abs(spot.at.x - lastEnd_.x) + std::abs(spot.at.y - lastEnd_.y) <=
               kTolerance * (1.0 + std::abs(spot.at.x) + std::abs(spot.at.y));
}

void TextLayout::BeginSegment(const TextCluster& cluster) {
    EndSegment();
    TextSegment& segment = segments_.emplace_back();
    segment.span = content_.GetCharacters()[cluster.first].span;
    segment.isUpright = cluster.isUpright;
    isOpen_ = true;
    firstCharacter_ = cluster.first;
    endCharacter_ = cluster.end;
}

// A glyph is shifted across the line, whatever its rotation.
void TextLayout::PlaceAcross(TextSegment& segment, const Spot& spot) const {
    const TextSpan& span = content_.GetSpans()[segment.span];
    const ORVMathAffine2D dropped =
        ORVMathAffine2D::Translation(spot.at.x, spot.at.y + DropOf(span)) * Rotation(spot.rotation);
    segment.line = dropped * LineUp();
    segment.toUser = dropped * GlyphsUp(span);
}

void TextLayout::PutCluster(const TextCluster& cluster, const Spot& spot) {
    const bool isVertical = content_.IsVertical();
    if (!ContinuesSegment(cluster, spot)) {
        BeginSegment(cluster);
        TextSegment& segment = segments_.back();
        const TextSpan& span = content_.GetSpans()[segment.span];
        if (isVertical) {
            // In vertical lines, the middle of the em box is on the line.
            const ORVMathAffine2D shifted =
                ORVMathAffine2D::Translation(spot.at.x + span.shift, spot.at.y) * Rotation(spot.rotation);
            segment.line =
                shifted * Rotation(kQuarter) * ORVMathAffine2D::Translation(0.0, MiddleOf(span)) * LineUp();
            segment.toUser = segment.isUpright
                                 ? shifted * ORVMathAffine2D::Scaling(1.0, cluster.scale) * GlyphsUp(span)
                                 : segment.line * LineUp() * GlyphsUp(span);
        } else {
            PlaceAcross(segment, spot);
        }
    }
    TextSegment& segment = segments_.back();
    AddGlyphs(cluster, segment.advance);
    segment.advance += cluster.Length();
    lastSpot_ = spot;
    lastScale_ = cluster.scale;
    lastEnd_ = spot.at;
    (isVertical ? lastEnd_.y : lastEnd_.x) += cluster.Length();
    // Letter spacing continues on the same line.
    (isVertical ? lastEnd_.y : lastEnd_.x) += cluster.after;
    segment.advance += cluster.after;
    if (cluster.after != 0.0) segment.layout.isEvenlySpaced = false;
}

void TextLayout::PutOnRail(const TextCluster& cluster, const TextPath::Place& place, double across,
                           double rotation) {
    BeginSegment(cluster);
    TextSegment& segment = segments_.back();
    const TextSpan& span = content_.GetSpans()[segment.span];
    // Vertical text has the middle of the em box on its path, as on a line.
    const bool isVertical = content_.IsVertical();
    const ORVMathAffine2D there =
        ORVMathAffine2D::Translation(place.point.x, place.point.y) * Rotation(place.degrees) *
        ORVMathAffine2D::Translation(-cluster.Length() / 2.0,
                                     across + (isVertical ? -span.shift : DropOf(span))) *
        Rotation(rotation);
    segment.line = there * ORVMathAffine2D::Translation(0.0, isVertical ? MiddleOf(span) : 0.0) * LineUp();
    segment.toUser = segment.isUpright ? there * Rotation(-kQuarter) *
                                             ORVMathAffine2D::Scaling(1.0, cluster.scale) * GlyphsUp(span)
                                       : segment.line * LineUp() * GlyphsUp(span);
    AddGlyphs(cluster, 0.0);
    segment.advance = cluster.Length();
}

void TextLayout::AddGlyphs(const TextCluster& cluster, double pen) {
    TextSegment& segment = segments_.back();
    const ORVShapedRun& from = runs_.RunOf(cluster);
    std::vector<ORVGlyphRun>& runs = segment.layout.runs;
    firstCharacter_ = std::min(firstCharacter_, cluster.first);
    endCharacter_ = std::max(endCharacter_, cluster.end);
    const double size = runs_.SizeOf(from);
    if (!(size > 0.0)) return;
    if (runs.empty() || lastRun_ != cluster.run) {
        ORVGlyphRun& run = runs.emplace_back();
        run.face = from.face;
        run.size = size;
        run.expansion = segment.isUpright ? 1.0 : cluster.scale;
        run.rightToLeft = from.isRightToLeft;
        run.syntheticBold = from.isToBeThickened;
        run.vertical = segment.isUpright;
        lastRun_ = cluster.run;
    }
    ORVGlyphRun& run = runs.back();
    // A segment whose glyphs are stacked is stretched as a whole.
    if (segment.isUpright) pen /= cluster.scale;
    for (std::size_t i = cluster.firstGlyph; i < cluster.endGlyph; ++i) {
        const ORVShapedGlyph& shaped = runs_.GetGlyph(i);
        ORVGlyph& glyph = run.glyphs.emplace_back();
        glyph.index = shaped.index;
        glyph.x = (segment.isUpright ? 0.0 : pen) + shaped.x * run.expansion;
        glyph.y = (segment.isUpright ? -pen : 0.0) + shaped.y;
        glyph.advance = shaped.advance * run.expansion;
        // The character, until the text of the segment is known.
        glyph.textOffset = cluster.first;
        glyph.textLength = i == cluster.firstGlyph ? cluster.end : 0;
        pen += glyph.advance;
    }
}

void TextLayout::EndSegment() {
    if (!isOpen_) return;
    isOpen_ = false;
    TextSegment& segment = segments_.back();
    const TextSpan& span = content_.GetSpans()[segment.span];
    segment.text = content_.GetBytes(firstCharacter_, endCharacter_);
    segment.layout.advance = segment.advance;
    segment.layout.ascent = span.font.metrics.ascent * span.FontSize();
    segment.layout.descent = span.font.metrics.descent * span.FontSize();
    const auto offsetOf = [&](std::size_t character) {
        return static_cast<std::uint32_t>(content_.GetBytes(firstCharacter_, character).size());
    };
    for (ORVGlyphRun& run : segment.layout.runs) {
        for (ORVGlyph& glyph : run.glyphs) {
            const std::uint32_t first = offsetOf(glyph.textOffset);
            if (glyph.textLength > 0) glyph.textLength = offsetOf(glyph.textLength) - first;
            glyph.textOffset = first;
        }
    }
}

// ---- boxes ----

ORVMathBox2D TextLayout::BoxOf(const TextSegment& segment) const {
    const TextSpan& span = content_.GetSpans()[segment.span];
    const double size = span.FontSize();
    const FontMetrics& metrics = span.font.metrics;
    return MapBox(segment.line, {0.0, segment.advance, -metrics.descent * size, metrics.ascent * size});
}

ORVMathBox2D TextLayout::GetBox() const {
    ORVMathBox2D box;
    for (const TextSegment& segment : segments_)
        if (segment.isShown) Unite(box, BoxOf(segment));
    return box;
}

}  // namespace svg2
