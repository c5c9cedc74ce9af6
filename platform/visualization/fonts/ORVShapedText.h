// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVFontFace;

/// What a feature of OpenType, such as small capitals, is set to.
struct ORVFontFeature {
    std::uint32_t tag = 0;    ///< its four letters, the first in the highest byte
    std::uint32_t value = 1;  ///< 0 off, 1 on, others choose
    friend bool operator==(const ORVFontFeature&, const ORVFontFeature&) = default;
};

/// What a part of a text is set in.
struct ORVShapingFont {
    const ORVFontFace* face = nullptr;  ///< null: no font can be used
    double size = 0.0;                  ///< user units an em, not negative
    bool isVertical = false;            ///< glyphs stand one below the other
    bool isToBeThickened = false;       ///< where the face is not bold
    std::span<const ORVFontFeature> features;
    /// Where a document brings fonts: all faces, this one among them, in the order in which characters are
    /// looked for in them. The last one stands for those that none has. Otherwise none.
    std::span<const ORVFontFace* const> order = {};
};

/// A part of a text that has one font. Letters join and are kerned within a part.
struct ORVShapingPart {
    std::size_t end = 0;  ///< behind its last character
    const ORVShapingFont* font = nullptr;
};

/// A part of a text that is placed by itself: its characters are ordered apart from those of others.
/// Paragraphs are not those that cut a letter off from its marks: see ORVFindClusterParts.
struct ORVShapingParagraph {
    std::size_t end = 0;  ///< behind its last character
    bool isRightToLeft = false;
};

/// A glyph on its own, in user units, y up.
struct ORVShapedGlyph {
    std::uint32_t index = 0;    ///< number in the run's face
    std::uint32_t cluster = 0;  ///< first character of those that it stands for
    double x = 0.0, y = 0.0;    ///< of its origin, from the pen
    double advance = 0.0;       ///< what the pen goes on by; downwards in vertical runs
};

/// Glyphs of one face, in the order in which they are seen.
struct ORVShapedRun {
    const ORVFontFace* face = nullptr;           ///< never null
    std::uint32_t firstGlyph = 0, endGlyph = 0;  ///< of the text's
    std::uint32_t first = 0, end = 0;            ///< characters
    std::uint32_t part = 0, paragraph = 0;       ///< numbers of those that it lies in
    bool isRightToLeft = false;                  ///< clusters descend
    bool isCursive = false;                      ///< of a script whose letters join: they are never set apart
    bool isToBeThickened = false;
    bool continues = false;  ///< begins with marks of the cluster before it
};

/// A text that has been shaped.
struct ORVShapedText {
    std::vector<ORVShapedRun> runs;  ///< by paragraphs; within each from left to right
    std::vector<ORVShapedGlyph> glyphs;
};

/// Shapes a text of several fonts: bidirectional order, scripts, fonts for characters that the chosen one has
/// not, kerning and ligatures.
/// @param parts, paragraphs  each cover the text
/// @return false when the text cannot be set as it should: ORVGetTextFailure() tells why (text_failure.h)
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVShapeText(std::u32string_view text,
                                                    std::span<const ORVShapingPart> parts,
                                                    std::span<const ORVShapingParagraph> paragraphs,
                                                    ORVShapedText& shaped);

/// Tells which characters are set on, or join, the one before them: marks, what follows a joiner.
/// @param isPart  out: for each character; the first is never one
/// @return false when the font libraries cannot be loaded
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVFindClusterParts(std::u32string_view text,
                                                           std::vector<bool>& isPart);

/// Whether a face has a feature for some script.
ORV_PLATFORM_EXPORT bool ORVHasFontFeature(const ORVFontFace& face, std::uint32_t tag);
