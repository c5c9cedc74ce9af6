// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
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

/// Letter spacing that an evenly spaced layout adds to the advances of glyphs.
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
                           glyph.x, glyph.y};
        if (IsSeen(piece.text)) pieces.push_back(std::move(piece));
    }
}

/// A cluster of a horizontal run.
struct Cluster {
    double start = 0.0, end = 0.0;           // its left and right end
    std::size_t firstByte = 0, endByte = 0;  // in the text
};

/// @return in visual order
std::vector<Cluster> ClustersOf(const ORVGlyphRun& run) {
    std::vector<Cluster> clusters;
    for (const ORVGlyph& glyph : run.glyphs) {
        if (glyph.textLength > 0 || clusters.empty()) {
            const std::size_t first = glyph.textOffset;
            clusters.push_back({glyph.x, glyph.x, first, first + glyph.textLength});
        }
        clusters.back().end += glyph.advance;
    }
    return clusters;
}

/// Adds a piece for all clusters of a range. Readers disagree about the spacing after the last letter, so the
/// length is left out where there is spacing.
void AddClusters(const ORVGlyphRun& run, std::span<const Cluster> clusters, double spacing,
                 std::string_view text, std::vector<SvgTextPiece>& pieces) {
    std::size_t first = text.size(), end = 0;
    for (const Cluster& cluster : clusters) {
        first = std::min(first, cluster.firstByte);
        end = std::max(end, cluster.endByte);
    }
    const double left = clusters.front().start, right = clusters.back().end;
    SvgTextPiece piece{&run, TextBetween(text, first, end), run.rightToLeft ? right : left};
    if (clusters.size() > 1) {
        piece.spacing = spacing;
        if (spacing == 0.0) piece.length = right - left;
    }
    if (IsSeen(piece.text)) pieces.push_back(std::move(piece));
}

/// Splits a run where the space between clusters differs from the usual one, as it does between words set
/// apart.
void AddUnevenRun(const ORVGlyphRun& run, std::string_view text, std::vector<SvgTextPiece>& pieces) {
    const std::vector<Cluster> clusters = ClustersOf(run);
    if (clusters.empty()) return;
    std::vector<double> gaps;
    for (std::size_t i = 1; i < clusters.size(); ++i) gaps.push_back(clusters[i].start - clusters[i - 1].end);
    const double least = 1e-3 * run.size;
    double spacing = 0.0;
    if (!gaps.empty()) {
        std::vector<double> sorted = gaps;
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>((sorted.size() - 1) / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        if (std::fabs(*middle) > least) spacing = *middle;
    }
    const auto differenceAfter = [&](std::size_t i) { return i < gaps.size() ? gaps[i] - spacing : 0.0; };
    std::size_t first = 0;
    for (std::size_t i = 0; i < clusters.size(); ++i) {
        // A glyph beside its own place, such as a mark, differs on both sides, by opposite amounts.
        const double difference = differenceAfter(i);
        const bool isBesidePlace = std::fabs(difference + differenceAfter(i + 1)) <= least ||
                                   (i > 0 && std::fabs(difference + differenceAfter(i - 1)) <= least);
        if (i + 1 < clusters.size() && (std::fabs(difference) <= least || isBesidePlace)) continue;
        AddClusters(run, std::span(clusters).subspan(first, i + 1 - first), spacing, text, pieces);
        first = i + 1;
    }
}

}  // namespace

std::vector<SvgTextPiece> SplitSvgText(const ORVPrintText& text) {
    std::vector<SvgTextPiece> pieces;
    const double spacing = text.layout.isEvenlySpaced ? SpacingOf(text.layout) : 0.0;
    double pen = 0.0;
    for (const ORVGlyphRun& run : text.layout.runs) {
        if (run.vertical) {
            AddLetters(run, text.text, pieces);
            continue;
        }
        if (!text.layout.isEvenlySpaced) {
            AddUnevenRun(run, text.text, pieces);
            continue;
        }
        std::size_t first = text.text.size(), end = 0;
        for (const ORVGlyph& glyph : run.glyphs) {
            if (glyph.textLength == 0) continue;
            first = std::min<std::size_t>(first, glyph.textOffset);
            end = std::max<std::size_t>(end, std::size_t{glyph.textOffset} + glyph.textLength);
        }
        const std::size_t clusters = CountClusters(run);
        const double length = AdvanceOf(run) + spacing * static_cast<double>(clusters);
        SvgTextPiece piece{&run, TextBetween(text.text, first, end), pen};
        if (clusters > 1) piece.length = length;
        piece.spacing = spacing;
        // In right-to-left runs, the trailing spacing is before the next run.
        if (run.rightToLeft) piece.x += length - spacing;
        if (IsSeen(piece.text)) pieces.push_back(std::move(piece));
        pen += length;
    }
    return pieces;
}
