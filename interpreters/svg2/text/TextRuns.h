// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interpreters/svg2/text/TextContent.h"
#include "platform/visualization/fonts/ORVShapedText.h"

namespace svg2 {

/// Glyphs that stand for characters which cannot be told apart: what is placed as one.
struct TextCluster {
    std::uint32_t run = 0;                       ///< of the shaped text
    std::uint32_t firstGlyph = 0, endGlyph = 0;  ///< likewise
    std::uint32_t first = 0, end = 0;            ///< characters of the content
    double advance = 0.0;                        ///< along the line, as the font has it
    double after = 0.0;                          ///< what is set between it and the next one
    double scale = 1.0;                          ///< of its length
    std::uint32_t fittedSpan = 0;                ///< span whose length has been fitted, from 1; 0 for none
    bool isUpright = false;                      ///< stands below others
    bool continues = false;                      ///< more marks of the cluster before it
    double Length() const { return advance * scale; }
};

/// Clusters that are placed from one point, in the order in which they are seen.
struct TextChunk {
    std::size_t first = 0, end = 0;   ///< clusters
    std::size_t start = 0, stop = 0;  ///< characters
    bool isRightToLeft = false;
};

/// The glyphs of a text, not placed yet.
class TextRuns {
public:
    explicit TextRuns(const TextContent& content) : content_(content) {}

    /// @return false when the text cannot be set as it should: ORVGetTextFailure() tells why
    [[nodiscard]] bool Shape();

    /// Shapes a part of a plain text, see TextContent::IsPlain.
    [[nodiscard]] bool ShapePlain(std::u32string_view text, ORVShapedText& shaped);

    const std::vector<TextChunk>& GetChunks() const { return chunks_; }
    std::vector<TextCluster>& GetClusters() { return clusters_; }
    const std::vector<TextCluster>& GetClusters() const { return clusters_; }
    const ORVShapedRun& RunOf(const TextCluster& cluster) const { return shaped_.runs[cluster.run]; }
    const ORVShapedGlyph& GetGlyph(std::size_t number) const { return shaped_.glyphs[number]; }
    /// Units an em of a run's glyphs.
    double SizeOf(const ORVShapedRun& run) const { return parts_[run.part].font->size; }

private:
    enum FontKind : std::uint8_t { kAcross, kUpright, kSmallCapital, kKindCount };
    /// Fonts that a span's characters are shaped in; made when they are needed.
    struct SpanFonts {
        const ORVShapingFont* fonts[kKindCount] = {};
    };

    bool StartsChunk(std::size_t character, std::size_t last) const;
    void AddCharacters();
    void AddCharacter(std::size_t character);
    void AddControl(char32_t control);
    void EndParagraph();
    void FollowEmbeddings(std::size_t span);
    void CloseEmbeddings(std::size_t kept);
    const ORVShapingFont* FontFor(std::size_t character, char32_t& code);
    const ORVShapingFont* MakeFont(const TextSpan& span, FontKind kind);
    bool SynthesizesSmallCaps(const TextSpan& span) const;
    void MakeClusters();
    void AddClusters(std::size_t run);
    void SetApart();
    void SetApart(const TextChunk& chunk);

    const TextContent& content_;
    std::u32string text_;                    // that is shaped
    std::vector<std::uint32_t> characters_;  // of the content; empty when they have the same numbers
    std::vector<ORVShapingPart> parts_;
    std::vector<ORVShapingParagraph> paragraphs_;
    std::vector<SpanFonts> spanFonts_;
    struct OwnFont : ORVShapingFont {
        std::vector<ORVFontFeature> own;  // features
    };
    std::vector<std::unique_ptr<OwnFont>> fonts_;
    /// An embedding of text that runs in a certain direction.
    struct Embedding {
        std::size_t span;
        int controls;  // that close it
        char32_t last[2];
    };
    std::vector<Embedding> embeddings_;  // that are open
    bool hasEmbeddings_ = false;
    ORVShapedText shaped_;
    std::vector<TextCluster> clusters_;
    std::vector<TextChunk> chunks_;
};

}  // namespace svg2
