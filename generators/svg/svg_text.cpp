// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

double AdvanceOf(const ORVGlyphRun& run) {
    double sum = 0.0;
    for (const ORVGlyph& glyph : run.glyphs) sum += glyph.advance;
    return sum;
}

std::size_t CountClusters(const ORVGlyphRun& run) {
    return static_cast<std::size_t>(std::count_if(
        run.glyphs.begin(), run.glyphs.end(), [](const ORVGlyph& glyph) { return glyph.textLength > 0; }));
}

/// Letter spacing that the layout adds to the advances of glyphs.
double SpacingOf(const ORVTextLayout& layout) {
    double advances = 0.0, size = 0.0;
    std::size_t clusters = 0;
    for (const ORVGlyphRun& run : layout.runs) {
        advances += AdvanceOf(run);
        clusters += CountClusters(run);
        size = std::max(size, run.size);
    }
    if (clusters < 2) return 0.0;
    const double spacing = (layout.advance - advances) / static_cast<double>(clusters - 1);
    return std::fabs(spacing) > 1e-6 * size ? spacing : 0.0;
}

/// Removes control characters, which have no width and are not allowed in XML.
std::string WithoutControls(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F) continue;
        const bool isSecondSet = byte == 0xC2 && i + 1 < text.size() &&
                                 static_cast<unsigned char>(text[i + 1]) >= 0x80 &&
                                 static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (isSecondSet)
            ++i;
        else
            result += text[i];
    }
    return result;
}

std::string TextBetween(std::string_view text, std::size_t first, std::size_t end) {
    if (first >= text.size() || end <= first) return {};
    return WithoutControls(text.substr(first, end - first));
}

bool IsSeen(const std::string& text) { return text.find_first_not_of(' ') != text.npos; }

void AddLetters(const ORVGlyphRun& run, std::string_view text, std::vector<SvgTextPiece>& pieces) {
    for (const ORVGlyph& glyph : run.glyphs) {
        SvgTextPiece piece{&run, TextBetween(text, glyph.textOffset, glyph.textOffset + glyph.textLength),
                           glyph.x, glyph.y, 0.0};
        if (IsSeen(piece.text)) pieces.push_back(std::move(piece));
    }
}

}  // namespace

SvgTextLine SplitSvgText(const ORVPrintText& text) {
    SvgTextLine line;
    line.spacing = SpacingOf(text.layout);
    double pen = 0.0;
    for (const ORVGlyphRun& run : text.layout.runs) {
        if (run.vertical) {
            AddLetters(run, text.text, line.pieces);
            continue;
        }
        std::size_t first = text.text.size(), end = 0;
        for (const ORVGlyph& glyph : run.glyphs) {
            if (glyph.textLength == 0) continue;
            first = std::min<std::size_t>(first, glyph.textOffset);
            end = std::max<std::size_t>(end, std::size_t{glyph.textOffset} + glyph.textLength);
        }
        const std::size_t clusters = CountClusters(run);
        const double length = AdvanceOf(run) + line.spacing * static_cast<double>(clusters);
        SvgTextPiece piece{&run, TextBetween(text.text, first, end), pen, 0.0, clusters > 1 ? length : 0.0};
        // In right-to-left runs, the trailing spacing is before the next run.
        if (run.rightToLeft) piece.x += length - line.spacing;
        if (IsSeen(piece.text)) line.pieces.push_back(std::move(piece));
        pen += length;
    }
    return line;
}
