// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fribidi.h>
#include <hb.h>

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

#include "platform/visualization/fonts/module/fallback_fonts.h"
#include "platform/visualization/fonts/module/file_face.h"

/// What a part of a text is set in.
struct ShapingFont {
    const FileFace* face = nullptr;
    bool isVertical = false;  ///< glyphs stand one below the other
    std::span<const hb_feature_t> features;
    std::span<const FileFace* const> order = {};  ///< see ORVShapingFont
};

/// Text up to a place, set in one font. Letters join and are kerned within a part only.
struct ShapingPart {
    std::size_t end = 0;  ///< behind its last character
    const ShapingFont* font = nullptr;
};

/// Text up to a place whose characters are ordered, and whose glyphs are made, apart from those of others.
struct ShapingParagraph {
    std::size_t end = 0;  ///< behind its last character
    bool isRightToLeft = false;
};

/// A stretch of text of one part, face, script and direction.
struct ShapedItem {
    std::size_t first = 0, end = 0;  ///< characters
    const FileFace* face = nullptr;
    const ShapingFont* font = nullptr;  ///< of the call that shaped it
    hb_script_t script = HB_SCRIPT_COMMON;
    FriBidiLevel level = 0;
    bool continues = false;   ///< begins with marks of a letter that stands before
    bool isVertical = false;  ///< as its font is
    std::size_t part = 0, paragraph = 0;
    std::size_t firstGlyph = 0, endGlyph = 0;
    bool IsRightToLeft() const { return level % 2 == 1; }
    /// Whether a cluster goes on with the marks of the one before.
    bool Continues(std::size_t cluster) const { return continues && cluster == first; }
};

/// A glyph as it comes from shaping, in em of its face.
struct ShapedGlyph {
    std::uint32_t index, cluster;  ///< the cluster is a character
    double dx, dy, step;
};

/// Turns text into shaped items. Keeps its arrays from one text to the next; for one thread at a time.
class Shaper {
public:
    /// The one of the process, for those who hold its lock.
    static Shaper& Get();
    static std::mutex& GetLock();

    /// Takes a text, decoded or not. Bytes that are not UTF-8 give one U+FFFD each.
    void Take(std::string_view utf8);
    void Take(std::u32string_view text);
    std::size_t CountCharacters() const { return text_.characters.size(); }
    /// Shapes the text that was taken. Parts and paragraphs cover it.
    /// @param takesColours  whether characters that no chosen font has may be images of several colours
    void Shape(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs,
               bool takesColours = false);
    /// Puts the items of each paragraph into the order in which they are seen.
    void OrderVisually();
    /// Drops what an unusually long text has left behind.
    void Trim();

    const std::vector<ShapedItem>& GetItems() const { return items_; }
    const std::vector<ShapedGlyph>& GetGlyphs() const { return glyphs_; }
    /// Clusters of all items.
    std::size_t CountClusters() const { return clusterCount_; }
    /// Where a character begins in the bytes that were taken, or where they end.
    std::uint32_t OffsetOf(std::size_t character) const { return text_.offsets[character]; }
    /// The character after the cluster that starts with glyph `i`.
    std::size_t ClusterEnd(const ShapedItem& item, std::size_t i) const;

private:
    void FindLevels(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs);
    void FindLevels(std::size_t first, std::size_t end, bool isRightToLeft);
    void FindScripts();
    const FileFace& FaceFor(const ShapingFont& font, char32_t c);
    const FileFace& InstalledFaceFor(const FileFace& base, char32_t c);
    void FindFaces(std::span<const ShapingPart> parts);
    void TakeMarksFace(std::size_t clusterStart, std::size_t mark, const ShapingFont& font);
    bool IsLongRun(std::size_t i) const;
    void MakeItems(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs);
    void ShapeItem(ShapedItem& item);
    void CollectGlyphs(ShapedItem& item, hb_font_t* font);

    /// What is known of each character.
    struct Text {
        std::vector<std::uint32_t> characters;
        std::vector<std::uint32_t> offsets;  // where it begins in the bytes; one more for the end
        std::vector<FriBidiLevel> levels;
        std::vector<FriBidiCharType> bidiTypes;
        std::vector<FriBidiBracketType> bracketTypes;
        std::vector<hb_script_t> scripts;
        std::vector<const FileFace*> faces;
        std::vector<std::uint32_t> marksBefore;  // of its run of marks; kNoMark for other characters
    };
    Text text_;
    std::vector<ShapedItem> items_;
    std::vector<ShapedGlyph> glyphs_;
    std::size_t clusterCount_ = 0;
    bool takesColours_ = false;
    hb_buffer_t* buffer_ = nullptr;  // made for the first text
    FallbackFonts fallback_;
};

/// Whether a character is set on, or joins, the one before it.
bool IsPartOfCluster(char32_t before, char32_t c);
/// The face of a font in a style, ready to be shaped with; throws FontFailure where it is damaged.
const FileFace& UsableFace(const ORVFontFace* face);
