// SPDX-License-Identifier: Apache-2.0

// Adjusts text to the lengths given by textLength.

#include <algorithm>
#include <cstddef>

#include "interpreters/svg2/text/TextLayout.h"

namespace svg2 {
namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr double kLeastScale = 1e-6;

}  // namespace

// Inner lengths are applied first, and are part of what the outer ones measure.
void TextLayout::FitLengths() {
    const std::vector<TextSpan>& spans = content_.GetSpans();
    double length = 0.0;
    const bool isStated = std::any_of(spans.begin(), spans.end(),
                                      [&](const TextSpan& span) { return ReadTextLength(span, length); });
    if (!isStated) return;
    clusterOf_.assign(content_.GetCharacters().size(), kNone);
    const std::vector<TextCluster>& clusters = runs_.GetClusters();
    for (std::size_t i = 0; i < clusters.size(); ++i)
        clusterOf_[clusters[i].first] = static_cast<std::uint32_t>(i);
    for (std::size_t i = spans.size(); i-- > 0;) FitLength(spans[i], static_cast<std::uint32_t>(i + 1));
}

bool TextLayout::ReadTextLength(const TextSpan& span, double& length) const {
    const Scene& scene = content_.GetScene();
    const std::string_view text = scene.GetDocument().ValueOf(span.element, Name::kTextLength);
    Length stated;
    if (text.empty() || !ReadLength(text, scene.GetCascade().SizesOf(*span.style), stated)) return false;
    length =
        stated.Resolve(content_.IsVertical() ? content_.GetViewport().height : content_.GetViewport().width);
    return length >= 0.0;
}

/// The clusters of a span's characters, in visual order.
std::vector<std::uint32_t> TextLayout::ClustersOf(const TextSpan& span) const {
    std::vector<std::uint32_t> clusters;
    for (std::size_t i = span.first; i < span.end; ++i)
        if (clusterOf_[i] != kNone) clusters.push_back(clusterOf_[i]);
    std::sort(clusters.begin(), clusters.end());
    return clusters;
}

double TextLayout::NaturalLength(const std::vector<std::uint32_t>& clusters) const {
    double length = 0.0;
    for (const std::uint32_t number : clusters) {
        const TextCluster& cluster = runs_.GetClusters()[number];
        length += cluster.Length() + (number == clusters.back() ? 0.0 : cluster.after);
        if (number == clusters.front() || !content_.HasMoves()) continue;
        for (std::size_t i = cluster.first; i < cluster.end; ++i) {
            const TextPlace place = content_.PlaceOf(i);
            length += content_.IsVertical() ? place.dy : place.dx;
        }
    }
    return length;
}

/// True if another cluster follows in a left-to-right chunk.
bool TextLayout::IsInsideChunk(std::uint32_t cluster) const {
    const std::vector<TextChunk>& chunks = runs_.GetChunks();
    const auto chunk = std::partition_point(chunks.begin(), chunks.end(),
                                            [cluster](const TextChunk& one) { return one.end <= cluster; });
    return chunk != chunks.end() && !chunk->isRightToLeft && cluster + 1 < chunk->end;
}

/// Distributes a difference between clusters; those adjusted by an inner length stay together.
void TextLayout::SpreadOut(const std::vector<std::uint32_t>& numbers, double difference) {
    std::vector<TextCluster>& clusters = runs_.GetClusters();
    const auto endsUnit = [&](std::size_t i) {
        if (i + 1 == numbers.size()) return false;
        const TextCluster &one = clusters[numbers[i]], &next = clusters[numbers[i + 1]];
        return !next.continues && (one.fittedSpan == 0 || one.fittedSpan != next.fittedSpan);
    };
    std::size_t gaps = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) gaps += endsUnit(i) ? 1U : 0U;
    if (gaps == 0) return;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (endsUnit(i)) clusters[numbers[i]].after += difference / static_cast<double>(gaps);
    // The same space follows the last cluster, inside the chunk.
    if (IsInsideChunk(numbers.back()))
        clusters[numbers.back()].after += difference / static_cast<double>(gaps);
}

void TextLayout::FitLength(const TextSpan& span, std::uint32_t number) {
    double wanted = 0.0;
    if (!ReadTextLength(span, wanted)) return;
    const std::vector<std::uint32_t> numbers = ClustersOf(span);
    const double natural = NaturalLength(numbers);
    if (numbers.empty() || !(natural > 0.0)) return;
    std::vector<TextCluster>& clusters = runs_.GetClusters();
    const std::string_view adjust =
        content_.GetScene().GetDocument().ValueOf(span.element, Name::kLengthAdjust);
    if (adjust == "spacingAndGlyphs") {
        // Scaling by zero would make the glyphs disappear: other renderers do not scale them.
        if (!(wanted > 0.0)) return;
        const double scale = std::max(wanted / natural, kLeastScale);
        for (const std::uint32_t i : numbers) {
            clusters[i].scale *= scale;
            if (i != numbers.back()) clusters[i].after *= scale;
        }
    } else {
        SpreadOut(numbers, wanted - natural);
    }
    for (const std::uint32_t i : numbers) clusters[i].fittedSpan = number;
}

}  // namespace svg2
