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

/// Font of a part of a text.
struct ShapingFont {
    const FileFace* face = nullptr;
    bool isVertical = false;  ///< vertical text
    std::span<const hb_feature_t> features;
    std::span<const FileFace* const> order = {};  ///< see ORVShapingFont
};

/// A part of a text in one font, up to `end`. Ligatures and kerning apply within a part only.
struct ShapingPart {
    std::size_t end = 0;  ///< index after its last character
    const ShapingFont* font = nullptr;
};

/// A part of a text, up to `end`, that is bidirectionally reordered and shaped separately from others.
struct ShapingParagraph {
    std::size_t end = 0;  ///< index after its last character
    bool isRightToLeft = false;
};

/// A range of text with one part, face, script and direction.
struct ShapedItem {
    std::size_t first = 0, end = 0;  ///< range of characters
    const FileFace* face = nullptr;
    const ShapingFont* font = nullptr;  ///< valid during the call that shaped it
    hb_script_t script = HB_SCRIPT_COMMON;
    FriBidiLevel level = 0;
    bool continues = false;   ///< starts with marks that belong to the letter before the item
    bool isVertical = false;  ///< copied from its font
    std::size_t part = 0, paragraph = 0;
    std::size_t firstGlyph = 0, endGlyph = 0;
    bool IsRightToLeft() const { return level % 2 == 1; }
    /// Whether the first cluster continues the marks of the item before.
    bool Continues(std::size_t cluster) const { return continues && cluster == first; }
};

/// A shaped glyph, in em of its face.
struct ShapedGlyph {
    std::uint32_t index, cluster;  ///< `cluster` is the index of a character
    double dx, dy, step;
};

/// Shapes text into items. Reuses its buffers from text to text. For one thread at a time.
class Shaper {
public:
    /// The shaper of the process. The caller must hold its lock.
    static Shaper& Get();
    static std::mutex& GetLock();

    /// Sets the text. Invalid UTF-8 is replaced by U+FFFD byte by byte.
    void Take(std::string_view utf8);
    void Take(std::u32string_view text);
    std::size_t CountCharacters() const { return text_.characters.size(); }
    /// How fonts are chosen for characters that the text's own font lacks.
    struct Fallback {
        bool takesColours = false;  ///< fonts of colour images may be used
        bool composes = false;  ///< a letter and a mark need no other font if the font has their composition
    };
    /// Shapes the text. Parts and paragraphs must cover it.
    void Shape(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs,
               const Fallback& fallback);
    /// Reorders the items of each paragraph to visual order.
    void OrderVisually();
    /// Frees buffers that an unusually long text has enlarged.
    void Trim();

    const std::vector<ShapedItem>& GetItems() const { return items_; }
    const std::vector<ShapedGlyph>& GetGlyphs() const { return glyphs_; }
    /// Number of clusters in all items.
    std::size_t CountClusters() const { return clusterCount_; }
    /// Offset of a character in the bytes of the text; also valid for the end.
    std::uint32_t OffsetOf(std::size_t character) const { return text_.offsets[character]; }
    /// Index of the character after the cluster that starts with glyph `i`.
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

    /// Properties of each character.
    struct Text {
        std::vector<std::uint32_t> characters;
        std::vector<std::uint32_t> offsets;  // offset in the bytes; one more for the end
        std::vector<FriBidiLevel> levels;
        std::vector<FriBidiCharType> bidiTypes;
        std::vector<FriBidiBracketType> bracketTypes;
        std::vector<hb_script_t> scripts;
        std::vector<const FileFace*> faces;
        std::vector<std::uint32_t> marksBefore;  // position in its run of marks; kNoMark for other characters
    };
    Text text_;
    std::vector<ShapedItem> items_;
    std::vector<ShapedGlyph> glyphs_;
    std::size_t clusterCount_ = 0;
    Fallback rules_;
    hb_buffer_t* buffer_ = nullptr;  // created with the first text
    FallbackFonts fallback_;
};

/// Whether a character combines with or joins the one before it.
bool IsPartOfCluster(char32_t before, char32_t c);
/// The face for a style, checked to be usable for shaping. Throws FontFailure when it is damaged.
const FileFace& UsableFace(const ORVFontFace* face);
