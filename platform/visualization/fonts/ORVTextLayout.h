// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVFont;
class ORVFontFace;

/// A positioned glyph.
struct ORVGlyph {
    std::uint32_t index = 0;       ///< glyph index in the run's face
    double x = 0.0;                ///< position of the glyph's origin in text space, user units
    double y = 0.0;                ///< as `x`, with y up
    double advance = 0.0;          ///< advance along the writing direction
    std::uint32_t textOffset = 0;  ///< offset of the cluster in the text, bytes
    std::uint32_t textLength = 0;  ///< length of the cluster in bytes; 0 for all but its first glyph
};

/// A sequence of glyphs of one face, from left to right or, if vertical, from top to bottom.
struct ORVGlyphRun {
    const ORVFontFace* face = nullptr;  ///< never null
    double size = 0.0;                  ///< font size: user units per em
    double expansion = 1.0;             ///< horizontal scale of the glyphs; already included in positions
    bool rightToLeft = false;           ///< direction of the text; if true, clusters are in descending order
    bool syntheticBold = false;         ///< embolden (kSyntheticBoldStroke): the family has no bold face
    bool vertical = false;              ///< vertical text
    std::vector<ORVGlyph> glyphs;       ///< positioned glyphs
};

/// A line of shaped text. The pen starts at (0, 0). Horizontal text extends from 0 to `advance`, whatever its
/// direction; vertical text extends down from 0 to -`advance`, with glyphs centred on x = 0.
struct ORVTextLayout {
    std::vector<ORVGlyphRun> runs;  ///< in drawing order
    double advance = 0.0;           ///< total along the writing direction; usually not negative
    double ascent = 0.0;            ///< of the chosen font, above the baseline
    double descent = 0.0;           ///< of the chosen font, below the baseline
    bool isSet = true;              ///< false when the text could not be set; see ORVLayoutText
    /// Whether the same spacing lies between all clusters and none after the last one; otherwise, it is known
    /// from the positions of the glyphs only.
    bool isEvenlySpaced = true;
};

/// Style of a line of text.
struct ORVTextStyle {
    const ORVFont* font = nullptr;  ///< null for the catalogue's sans-serif font
    int weight = 25;                ///< 24 light, 25 normal, 26 bold, 27 heaviest
    double height = 12.0;           ///< font size: user units per em
    int writingMode = 0;            ///< 0 left to right, 1 right to left, 2 top to bottom
    double extraSpacing = 0.0;      ///< added between neighbouring characters, user units; not after the last
    double expansion = 1.0;         ///< horizontal scale of glyphs
};

/// Shapes one line of text: bidirectional reordering, script itemisation, font fallback, kerning and
/// ligatures (no ligatures or kerning with extra spacing). Text beyond 2^22 bytes is dropped. Invalid UTF-8
/// is replaced by U+FFFD. Of a run of combining marks, 30 are shaped with their base letter and the rest in
/// groups of 30. A height that is not positive or exceeds 1e30 gives an empty layout. Extra spacing that is
/// NaN or exceeds 1e30 counts as 0; an expansion that is NaN, exceeds 1e30 or is not positive counts as 1.
/// If the text cannot be set correctly, because there is no font, or a font or library cannot be loaded, the
/// layout is empty, `isSet` is false, and ORVGetTextFailure() returns the reason (text_failure.h). Throws
/// std::bad_alloc when out of memory. Thread-safe.
ORV_PLATFORM_EXPORT ORVTextLayout ORVLayoutText(std::string_view utf8, const ORVTextStyle& style);

/// Extents of a line of text; see ORVTextLayout.
struct ORVTextExtent {
    double advance = 0.0, ascent = 0.0, descent = 0.0;  ///< user units
    bool isSet = true;                                  ///< false: the text cannot be set
};
/// Like ORVLayoutText, but returns the extents only.
ORV_PLATFORM_EXPORT ORVTextExtent ORVMeasureText(std::string_view utf8, const ORVTextStyle& style);
