// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interpreters/svg2/text/TextContent.h"
#include "platform/visualization/fonts/ORVShapedText.h"

namespace svg2 {

/// A cluster: glyphs and the characters they stand for, positioned together.
struct TextCluster {
    std::uint32_t run = 0;                       ///< of the shaped text
    std::uint32_t firstGlyph = 0, endGlyph = 0;  ///< the same
    std::uint32_t first = 0, end = 0;            ///< range of characters of the content
    double advance = 0.0;                        ///< advance along the line, from the font
    double after = 0.0;                          ///< spacing between it and the next cluster
    double scale = 1.0;                          ///< factor on its length
    std::uint32_t fittedSpan = 0;  ///< the span whose length has been adjusted, counted from 1; 0: none
    bool isUpright = false;        ///< stacked vertically
    bool continues = false;        ///< further marks of the preceding cluster
    double Length() const { return advance * scale; }
};

/// A chunk: clusters positioned from one anchor point, in visual order.
struct TextChunk {
    std::size_t first = 0, end = 0;   ///< range of clusters
    std::size_t start = 0, stop = 0;  ///< range of characters
    bool isRightToLeft = false;
};

/// The shaped glyphs of a text element, not yet positioned.
class TextRuns {
public:
    explicit TextRuns(const TextContent& content) : content_(content) {}

    /// @return false if the text cannot be set correctly; ORVGetTextFailure() has the reason
    [[nodiscard]] bool Shape();

    /// Shapes part of a plain text, see TextContent::IsPlain.
    [[nodiscard]] bool ShapePlain(std::u32string_view text, ORVShapedText& shaped);

    const std::vector<TextChunk>& GetChunks() const { return chunks_; }
    std::vector<TextCluster>& GetClusters() { return clusters_; }
    const std::vector<TextCluster>& GetClusters() const { return clusters_; }
    const ORVShapedRun& RunOf(const TextCluster& cluster) const { return shaped_.runs[cluster.run]; }
    const ORVShapedGlyph& GetGlyph(std::size_t number) const { return shaped_.glyphs[number]; }
    /// Units per em of a run's glyphs.
    double SizeOf(const ORVShapedRun& run) const { return parts_[run.part].font->size; }

private:
    enum FontKind : std::uint8_t { kAcross, kUpright, kSmallCapital, kKindCount };
    /// Fonts of a span's characters, created on demand.
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
    std::u32string text_;                    // the text to shape
    std::vector<std::uint32_t> characters_;  // index in the content; empty if the numbering is the same
    std::vector<ORVShapingPart> parts_;
    std::vector<ORVShapingParagraph> paragraphs_;
    std::vector<SpanFonts> spanFonts_;
    struct OwnFont : ORVShapingFont {
        std::vector<ORVFontFeature> own;  // font features
    };
    std::vector<std::unique_ptr<OwnFont>> fonts_;
    /// A bidirectional embedding.
    struct Embedding {
        std::size_t span;
        int controls;  // control characters that close it
        char32_t last[2];
    };
    std::vector<Embedding> embeddings_;  // open embeddings
    bool hasEmbeddings_ = false;
    ORVShapedText shaped_;
    std::vector<TextCluster> clusters_;
    std::vector<TextChunk> chunks_;
};

}  // namespace svg2
