// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/TextRuns.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "interpreters/svg2/text/capitals.h"
#include "interpreters/svg2/text/features.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

// Corresponds to no character of the content.
constexpr std::uint32_t kControl = 0xFFFFFFFF;
// Size of synthesised small capitals, relative to the font size.
constexpr double kSmallCapitalSize = 0.8;

/// Control characters that open and close the embedding requested by unicode-bidi.
struct Embeddings {
    std::u32string_view open, close;
};

Embeddings EmbeddingsOf(const Style& style) {
    const std::string_view text = style.unicodeBidi;
    const bool isLeft = style.isRightToLeft;
    if (EqualsIgnoringCase(text, "embed")) return {isLeft ? U"\u202B" : U"\u202A", U"\u202C"};
    if (EqualsIgnoringCase(text, "bidi-override")) return {isLeft ? U"\u202E" : U"\u202D", U"\u202C"};
    if (EqualsIgnoringCase(text, "isolate")) return {isLeft ? U"\u2067" : U"\u2066", U"\u2069"};
    if (EqualsIgnoringCase(text, "plaintext")) return {U"\u2068", U"\u2069"};
    if (EqualsIgnoringCase(text, "isolate-override"))
        return {isLeft ? U"\u2067\u202E" : U"\u2066\u202D", U"\u202C\u2069"};
    return {};
}

/// Spaces that separate words.
bool SeparatesWords(char32_t c) {
    constexpr char32_t kSeparators[] = {' ', 0xA0, 0x1361, 0x10100, 0x10101, 0x1039F, 0x1091F};
    return std::find(std::begin(kSeparators), std::end(kSeparators), c) != std::end(kSeparators);
}

}  // namespace

bool TextRuns::Shape() {
    for (const TextSpan& span : content_.GetSpans())
        hasEmbeddings_ = hasEmbeddings_ || !EmbeddingsOf(*span.style).open.empty();
    spanFonts_.resize(content_.GetSpans().size());
    AddCharacters();
    if (text_.empty()) return true;
    if (!ORVShapeText(text_, parts_, paragraphs_, shaped_)) return false;
    MakeClusters();
    SetApart();
    return true;
}

bool TextRuns::ShapePlain(std::u32string_view text, ORVShapedText& shaped) {
    const TextSpan& span = content_.GetSpans()[0];
    spanFonts_.resize(1);
    const ORVShapingFont*& font = spanFonts_[0].fonts[kAcross];
    if (!font) font = MakeFont(span, kAcross);
    const ORVShapingPart part{text.size(), font};
    const ORVShapingParagraph paragraph{text.size(), span.style->isRightToLeft};
    return ORVShapeText(text, {&part, 1}, {&paragraph, 1}, shaped);
}

// ---- shaping ----

bool TextRuns::StartsChunk(std::size_t character, std::size_t last) const {
    const TextPlace place = content_.PlaceOf(character);
    const std::size_t path = content_.SpanOf(character).path;
    if (path != content_.SpanOf(last).path) return true;
    // Text on a path has a single direction.
    return path == TextSpan::kNoPath ? place.IsAbsolute() : place.hasX;
}

void TextRuns::AddCharacters() {
    const std::vector<TextCharacter>& characters = content_.GetCharacters();
    const bool keepsNumbers =
        !hasEmbeddings_ && std::none_of(characters.begin(), characters.end(),
                                        [](const TextCharacter& one) { return one.isHidden; });
    text_.reserve(characters.size());
    if (!keepsNumbers) characters_.reserve(characters.size());
    bool isFirst = true;
    std::size_t last = 0;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        if (characters[i].isHidden) continue;
        if (isFirst || (!characters[i].isPart && StartsChunk(i, last))) {
            if (!isFirst) EndParagraph();
            chunks_.push_back({0, 0, i, i});
        }
        isFirst = false;
        last = i;
        if (hasEmbeddings_) FollowEmbeddings(characters[i].span);
        AddCharacter(i);
        if (!keepsNumbers) characters_.push_back(static_cast<std::uint32_t>(i));
        chunks_.back().stop = i + 1;
    }
    if (!isFirst) EndParagraph();
}

void TextRuns::AddCharacter(std::size_t character) {
    char32_t code = content_.GetCodePoints()[character];
    const ORVShapingFont* const font = FontFor(character, code);
    text_.push_back(code);
    if (parts_.empty() || parts_.back().font != font) parts_.push_back({0, font});
    parts_.back().end = text_.size();
}

void TextRuns::AddControl(char32_t control) {
    text_.push_back(control);
    characters_.push_back(kControl);
    if (parts_.empty()) {
        char32_t code = ' ';
        parts_.push_back({0, FontFor(chunks_.back().start, code)});
    }
    parts_.back().end = text_.size();
}

void TextRuns::EndParagraph() {
    if (hasEmbeddings_) CloseEmbeddings(0);
    const Style& style = *content_.SpanOf(chunks_.back().start).style;
    // The base direction is that of the whole text; a span's own direction applies to its embedding.
    const Style& base = *content_.GetSpans()[0].style;
    chunks_.back().isRightToLeft = hasEmbeddings_ ? base.isRightToLeft : style.isRightToLeft;
    paragraphs_.push_back({text_.size(), chunks_.back().isRightToLeft});
}

/// Opens the embeddings of the spans around a character, and closes those it is not in.
void TextRuns::FollowEmbeddings(std::size_t span) {
    const std::vector<TextSpan>& spans = content_.GetSpans();
    if (!embeddings_.empty() && embeddings_.back().span == span) return;
    std::vector<std::size_t> around;
    for (std::size_t i = span;; i = spans[i].parent) {
        if (!EmbeddingsOf(*spans[i].style).open.empty()) around.push_back(i);
        if (spans[i].parent == i) break;
    }
    std::reverse(around.begin(), around.end());
    std::size_t kept = 0;
    while (kept < around.size() && kept < embeddings_.size() && embeddings_[kept].span == around[kept])
        ++kept;
    CloseEmbeddings(kept);
    for (; kept < around.size(); ++kept) {
        const Embeddings controls = EmbeddingsOf(*spans[around[kept]].style);
        for (const char32_t control : controls.open) AddControl(control);
        Embedding& embedding = embeddings_.emplace_back();
        embedding.span = around[kept];
        embedding.controls = static_cast<int>(controls.close.size());
        std::copy(controls.close.begin(), controls.close.end(), embedding.last);
    }
}

void TextRuns::CloseEmbeddings(std::size_t kept) {
    for (; embeddings_.size() > kept; embeddings_.pop_back())
        for (int i = 0; i < embeddings_.back().controls; ++i) AddControl(embeddings_.back().last[i]);
}

const ORVShapingFont* TextRuns::FontFor(std::size_t character, char32_t& code) {
    const TextCharacter& one = content_.GetCharacters()[character];
    const TextSpan& span = content_.GetSpans()[one.span];
    FontKind kind = kAcross;
    if (one.isUpright) kind = kUpright;
    if ((span.style->fontVariants & kSmallCaps) != 0 && kind == kAcross) {
        const char32_t capital = CapitalOf(code);
        if (capital != code && SynthesizesSmallCaps(span)) {
            code = capital;
            kind = kSmallCapital;
        }
    }
    const ORVShapingFont*& font = spanFonts_[one.span].fonts[kind];
    if (!font) font = MakeFont(span, kind);
    return font;
}

bool TextRuns::SynthesizesSmallCaps(const TextSpan& span) const {
    constexpr std::uint32_t kSmallCapitals = FeatureTag("smcp");
    const ORVFontFace* const face = span.font.choice.face;
    return face && !ORVHasFontFeature(*face, kSmallCapitals);
}

/// If a font equals that of the preceding character or of the enclosing span, the same object is used, so
/// that letters join across spans of one font.
const ORVShapingFont* TextRuns::MakeFont(const TextSpan& span, FontKind kind) {
    constexpr int kThick = 26;  // flags of ORVTextStyle
    OwnFont font;
    AddFeatures(*span.style, font.own);
    font.face = span.font.choice.face;
    font.size = span.FontSize() * (kind == kSmallCapital ? kSmallCapitalSize : 1.0);
    font.isVertical = kind == kUpright;
    font.order = span.font.order;
    font.isToBeThickened = span.font.choice.weight == kThick;
    const auto isSame = [&](const ORVShapingFont* other) {
        return other && other->face == font.face && other->order.data() == font.order.data() &&
               other->size == font.size && other->isVertical == font.isVertical &&
               other->isToBeThickened == font.isToBeThickened &&
               std::equal(font.own.begin(), font.own.end(), other->features.begin(), other->features.end());
    };
    if (!parts_.empty() && isSame(parts_.back().font)) return parts_.back().font;
    if (const ORVShapingFont* around = spanFonts_[span.parent].fonts[kind]; isSame(around)) return around;
    OwnFont& made = *fonts_.emplace_back(std::make_unique<OwnFont>(std::move(font)));
    made.features = made.own;
    return &made;
}

// ---- clusters ----

void TextRuns::MakeClusters() {
    clusters_.reserve(shaped_.glyphs.size());
    std::size_t paragraph = 0;
    for (std::size_t run = 0; run < shaped_.runs.size(); ++run) {
        for (; paragraph < shaped_.runs[run].paragraph; ++paragraph)
            chunks_[paragraph].end = chunks_[paragraph + 1].first = clusters_.size();
        AddClusters(run);
    }
    for (; paragraph < chunks_.size(); ++paragraph) {
        chunks_[paragraph].end = clusters_.size();
        if (paragraph + 1 < chunks_.size()) chunks_[paragraph + 1].first = clusters_.size();
    }
}

void TextRuns::AddClusters(std::size_t number) {
    const ORVShapedRun& run = shaped_.runs[number];
    const std::vector<ORVShapedGlyph>& glyphs = shaped_.glyphs;
    const auto contentOf = [&](std::uint32_t i) { return characters_.empty() ? i : characters_[i]; };
    for (std::uint32_t i = run.firstGlyph; i < run.endGlyph;) {
        TextCluster cluster;
        cluster.run = static_cast<std::uint32_t>(number);
        cluster.firstGlyph = i;
        while (i < run.endGlyph && glyphs[i].cluster == glyphs[cluster.firstGlyph].cluster)
            cluster.advance += glyphs[i++].advance;
        cluster.endGlyph = i;
        const std::uint32_t first = glyphs[cluster.firstGlyph].cluster;
        cluster.first = contentOf(first);
        if (cluster.first == kControl) continue;
        // Clusters are in ascending or descending order, so each ends where a neighbour begins.
        std::uint32_t last = i < run.endGlyph ? glyphs[i].cluster : run.end;
        if (run.isRightToLeft)
            last = cluster.firstGlyph > run.firstGlyph ? glyphs[cluster.firstGlyph - 1].cluster : run.end;
        while (last > first + 1 && contentOf(last - 1) == kControl) --last;
        cluster.end = contentOf(last - 1) + 1;
        cluster.isUpright = parts_[run.part].font->isVertical;
        cluster.continues = run.continues && first == run.first;
        clusters_.push_back(cluster);
    }
}

// ---- spacing ----

void TextRuns::SetApart() {
    const auto& spans = content_.GetSpans();
    const bool isSpaced = std::any_of(spans.begin(), spans.end(), [](const TextSpan& span) {
        return span.style->letterSpacing != Length() || span.style->wordSpacing != Length();
    });
    if (!isSpaced) return;
    for (const TextChunk& chunk : chunks_) SetApart(chunk);
}

void TextRuns::SetApart(const TextChunk& chunk) {
    for (std::size_t i = chunk.first; i < chunk.end; ++i) {
        TextCluster& cluster = clusters_[i];
        const Style& style = *content_.SpanOf(cluster.first).style;
        const bool isLast = i + 1 == chunk.end;
        const bool goesOn = !isLast && clusters_[i + 1].continues;
        if (!isLast && !goesOn && !RunOf(cluster).isCursive) cluster.after += style.letterSpacing.px;
        if (SeparatesWords(content_.GetCodePoints()[cluster.first]))
            cluster.after += style.wordSpacing.Resolve(cluster.advance);
    }
}

}  // namespace svg2
