// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVFontFace;

/// An OpenType feature setting, such as small capitals.
struct ORVFontFeature {
    std::uint32_t tag = 0;    ///< four-letter tag, the first letter in the highest byte
    std::uint32_t value = 1;  ///< 0 off, 1 on, other values select alternates
    friend bool operator==(const ORVFontFeature&, const ORVFontFeature&) = default;
};

/// Font of a part of a text.
struct ORVShapingFont {
    const ORVFontFace* face = nullptr;  ///< null when no font is usable
    double size = 0.0;                  ///< font size: user units per em, not negative
    bool isVertical = false;            ///< vertical text
    bool isToBeThickened = false;       ///< embolden, because the face is not bold
    std::span<const ORVFontFeature> features;
    /// With document fonts: all faces in the order in which characters are looked up, including `face`. The
    /// last one is used for characters that none contains. Otherwise empty.
    std::span<const ORVFontFace* const> order = {};
};

/// A part of a text in one font. Ligatures and kerning apply within a part.
struct ORVShapingPart {
    std::size_t end = 0;  ///< index after its last character
    const ORVShapingFont* font = nullptr;
};

/// A part of a text that is positioned separately and whose characters are bidirectionally reordered on their
/// own. Paragraphs must not separate a letter from its marks; see ORVFindClusterParts.
struct ORVShapingParagraph {
    std::size_t end = 0;  ///< index after its last character
    bool isRightToLeft = false;
};

/// A shaped glyph, in user units, y up.
struct ORVShapedGlyph {
    std::uint32_t index = 0;    ///< glyph index in the run's face
    std::uint32_t cluster = 0;  ///< index of the first character of its cluster
    double x = 0.0, y = 0.0;    ///< offset of its origin from the pen
    double advance = 0.0;       ///< advance of the pen; downwards in vertical runs
};

/// A sequence of glyphs of one face in visual order.
struct ORVShapedRun {
    const ORVFontFace* face = nullptr;           ///< never null
    std::uint32_t firstGlyph = 0, endGlyph = 0;  ///< range in the glyphs of the text
    std::uint32_t first = 0, end = 0;            ///< range of characters
    std::uint32_t part = 0, paragraph = 0;       ///< indices of its part and paragraph
    bool isRightToLeft = false;                  ///< clusters are in descending order
    bool isCursive = false;                      ///< the script joins its letters, so letter spacing must not
                                                 ///< be applied
    bool isToBeThickened = false;
    bool continues = false;  ///< starts with marks that belong to the cluster before it
};

/// A shaped text.
struct ORVShapedText {
    std::vector<ORVShapedRun> runs;  ///< by paragraph, and from left to right within each
    std::vector<ORVShapedGlyph> glyphs;
};

/// Shapes a text in several fonts: bidirectional reordering, script itemisation, font fallback, kerning and
/// ligatures.
/// @param parts, paragraphs  each must cover the whole text
/// @return false when the text cannot be set correctly: ORVGetTextFailure() returns the reason
/// (text_failure.h)
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVShapeText(std::u32string_view text,
                                                    std::span<const ORVShapingPart> parts,
                                                    std::span<const ORVShapingParagraph> paragraphs,
                                                    ORVShapedText& shaped);

/// Finds the characters that belong to the cluster of the one before: marks, and characters after a joiner.
/// @param isPart  out: one element per character; the first is always false
/// @return false when the font libraries cannot be loaded
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVFindClusterParts(std::u32string_view text,
                                                           std::vector<bool>& isPart);

/// Whether a face has an OpenType feature in any script.
ORV_PLATFORM_EXPORT bool ORVHasFontFeature(const ORVFontFace& face, std::uint32_t tag);
