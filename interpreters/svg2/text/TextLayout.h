// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "interpreters/svg2/text/TextContent.h"
#include "interpreters/svg2/text/TextRuns.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace svg2 {

/// Glyphs of one span on one line.
struct TextSegment {
    std::size_t span = 0;
    std::string text;
    ORVTextLayout layout;
    double advance = 0.0;    ///< along the line
    bool isUpright = false;  ///< glyphs are stacked
    bool isShown = true;     ///< false beyond the ends of a path
    ORVMathAffine2D toUser;  ///< from the coordinates of the layout, with y pointing up
    ORVMathAffine2D line;    ///< along the line (x) and across it (y, upwards from the alphabetic baseline)
};

/// A text element with positioned glyphs.
class TextLayout {
public:
    /// @param fonts  must outlive the layout
    TextLayout(Scene& scene, TextFonts& fonts) : content_(scene, fonts), runs_(content_) {}

    /// Lays out a `text` element.
    /// @return false if a text cannot be set correctly; ORVGetTextFailure() has the reason
    [[nodiscard]] bool LayOut(ElementIndex element, const Style& style, const Viewport& viewport);

    const std::vector<TextSegment>& GetSegments() const { return segments_; }
    const TextSpan& GetSpan(std::size_t number) const { return content_.GetSpans()[number]; }
    const TextSpan& SpanOf(const TextSegment& segment) const { return GetSpan(segment.span); }
    /// Bounding box of the em boxes of all glyphs, in user units.
    ORVMathBox2D GetBox() const;
    ORVMathBox2D BoxOf(const TextSegment& segment) const;

private:
    /// The position of a cluster.
    struct Spot {
        ORVMathPoint2D at;      // of its origin
        double rotation = 0.0;  // in degrees
    };

    [[nodiscard]] bool LayOutPlain();
    void AddPlain(const ORVShapedText& shaped, std::size_t first, std::size_t end);
    void PlacePlain(double advance);
    void PlaceAcross(TextSegment& segment, const Spot& spot) const;
    void FitLengths();
    void FitLength(const TextSpan& span, std::uint32_t number);
    bool ReadTextLength(const TextSpan& span, double& length) const;
    double NaturalLength(const std::vector<std::uint32_t>& clusters) const;
    bool IsInsideChunk(std::uint32_t cluster) const;
    void SpreadOut(const std::vector<std::uint32_t>& clusters, double difference);
    std::vector<std::uint32_t> ClustersOf(const TextSpan& span) const;
    void PlaceChunks();
    void FindMoves(const TextChunk& chunk);
    ORVMathPoint2D MoveOf(const TextChunk& chunk, const TextCluster& cluster) const;
    double AnchorShare(const TextChunk& chunk) const;
    double LengthOf(const TextChunk& chunk) const;
    void PlaceChunk(const TextChunk& chunk, ORVMathPoint2D& pen);
    void PlaceOnRail(const TextChunk& chunk, const TextRail& rail, ORVMathPoint2D& pen);
    bool ContinuesSegment(const TextCluster& cluster, const Spot& spot) const;
    void BeginSegment(const TextCluster& cluster);
    void PutCluster(const TextCluster& cluster, const Spot& spot);
    void PutOnRail(const TextCluster& cluster, const TextPath::Place& place, double across, double rotation);
    void AddGlyphs(const TextCluster& cluster, double pen);
    void EndSegment();
    double DropOf(const TextSpan& span) const;

    TextContent content_;
    TextRuns runs_;
    std::vector<TextSegment> segments_;
    std::vector<std::uint32_t> clusterOf_;  // of characters; only if lengths are specified
    std::vector<ORVMathPoint2D> moves_;  // accumulated for the characters of a chunk; empty if there are none
    // Of the segment that is being filled.
    bool isOpen_ = false;
    Spot lastSpot_;
    ORVMathPoint2D lastEnd_;
    double lastScale_ = 1.0;
    std::uint32_t lastRun_ = 0, firstCharacter_ = 0, endCharacter_ = 0;
};

}  // namespace svg2
