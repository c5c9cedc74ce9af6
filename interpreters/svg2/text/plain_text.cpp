// SPDX-License-Identifier: Apache-2.0

// Text elements with one span and one position, as most are: their glyphs are positioned without clusters.

#include <algorithm>
#include <cstddef>

#include "interpreters/svg2/text/TextLayout.h"

namespace svg2 {
namespace {

// Number of characters shaped at once; longer text is split at spaces, which limits memory.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 16U;
// There is no right-to-left text below this code point.
constexpr char32_t kFirstRightToLeft = 0x590;

/// The end of the part that begins at `first`.
std::size_t EndOfPart(std::u32string_view text, std::size_t first) {
    if (text.size() - first <= kMostAtOnce) return text.size();
    const std::size_t space = text.rfind(U' ', first + kMostAtOnce - 1);
    return space == std::u32string_view::npos || space <= first ? text.size() : space + 1;
}

bool MayBeCut(std::u32string_view text, bool isRightToLeft) {
    return text.size() > kMostAtOnce && !isRightToLeft &&
           std::all_of(text.begin(), text.end(), [](char32_t c) { return c < kFirstRightToLeft; });
}

}  // namespace

bool TextLayout::LayOutPlain() {
    const std::u32string_view text = content_.GetCodePoints();
    const bool isCut = MayBeCut(text, content_.GetSpans()[0].style->isRightToLeft);
    double advance = 0.0;
    ORVShapedText shaped;
    for (std::size_t first = 0; first < text.size();) {
        const std::size_t end = isCut ? EndOfPart(text, first) : text.size();
        if (!runs_.ShapePlain(text.substr(first, end - first), shaped)) return false;
        AddPlain(shaped, first, end);
        advance += segments_.back().advance;
        first = end;
    }
    PlacePlain(advance);
    return true;
}

void TextLayout::AddPlain(const ORVShapedText& shaped, std::size_t first, std::size_t end) {
    TextSegment& segment = segments_.emplace_back();
    segment.text = content_.GetBytes(first, end);
    const TextSpan& span = content_.GetSpans()[0];
    const std::vector<TextCharacter>& characters = content_.GetCharacters();
    const std::uint32_t start = characters[first].offset;
    const auto offsetOf = [&](std::size_t i) {
        return first + i < end ? characters[first + i].offset - start
                               : static_cast<std::uint32_t>(segment.text.size());
    };
    const double size = span.FontSize();
    for (const ORVShapedRun& from : shaped.runs) {
        if (!(size > 0.0)) break;
        ORVGlyphRun& run = segment.layout.runs.emplace_back();
        run.face = from.face;
        run.size = size;
        run.rightToLeft = from.isRightToLeft;
        run.syntheticBold = from.isToBeThickened;
        run.glyphs.reserve(from.endGlyph - from.firstGlyph);
        std::uint32_t before = from.end;  // position of the next cluster, or the end of the run
        for (std::uint32_t i = from.firstGlyph; i < from.endGlyph; ++i) {
            const ORVShapedGlyph& shape = shaped.glyphs[i];
            ORVGlyph& glyph = run.glyphs.emplace_back();
            glyph.index = shape.index;
            glyph.x = segment.advance + shape.x;
            glyph.y = shape.y;
            glyph.advance = shape.advance;
            glyph.textOffset = offsetOf(shape.cluster);
            segment.advance += shape.advance;
            const bool isNew = i == from.firstGlyph || shaped.glyphs[i - 1].cluster != shape.cluster;
            if (!isNew) continue;
            if (from.isRightToLeft) {
                glyph.textLength = offsetOf(before) - glyph.textOffset;
                before = shape.cluster;
                continue;
            }
            std::uint32_t next = i + 1;
            while (next < from.endGlyph && shaped.glyphs[next].cluster == shape.cluster) ++next;
            glyph.textLength =
                offsetOf(next < from.endGlyph ? shaped.glyphs[next].cluster : from.end) - glyph.textOffset;
        }
    }
    segment.layout.advance = segment.advance;
    segment.layout.ascent = span.font.metrics.ascent * span.FontSize();
    segment.layout.descent = span.font.metrics.descent * span.FontSize();
}

void TextLayout::PlacePlain(double advance) {
    const TextPlace place = content_.PlaceOf(0);
    const TextSpan& span = content_.GetSpans()[0];
    TextChunk chunk;
    chunk.isRightToLeft = span.style->isRightToLeft;
    double x = place.x + place.dx - AnchorShare(chunk) * advance;
    const double y = place.y + place.dy;
    for (TextSegment& segment : segments_) {
        PlaceAcross(segment, {.at = {x, y}});
        x += segment.advance;
    }
}

}  // namespace svg2
