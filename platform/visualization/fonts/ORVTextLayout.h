// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVFont;
class ORVFontFace;

/// A glyph in its place.
struct ORVGlyph {
    std::uint32_t index = 0;       ///< number in the run's face
    double x = 0.0;                ///< where the glyph's own origin lies in text space, user units
    double y = 0.0;                ///< the same, y up
    double advance = 0.0;          ///< step along the writing direction
    std::uint32_t textOffset = 0;  ///< first byte of the cluster in the text
    std::uint32_t textLength = 0;  ///< bytes of the cluster; 0 for all but the cluster's first glyph
};

/// Glyphs of one face, from left to right or, vertical, from top to bottom.
struct ORVGlyphRun {
    const ORVFontFace* face = nullptr;  ///< never null
    double size = 0.0;                  ///< user units an em
    double expansion = 1.0;             ///< factor on the glyphs' widths; positions have it already
    bool rightToLeft = false;           ///< the text's own direction; clusters then descend
    bool syntheticBold = false;         ///< the family has no bold: thicken, see ORVFontFace
    bool vertical = false;              ///< glyphs stand one below the other
    std::vector<ORVGlyph> glyphs;       ///< in their places
};

/// A line of shaped text. Its pen starts at (0, 0). Horizontal text spans 0 to `advance` from left to right,
/// whichever direction it is read in; vertical text goes down from 0 to -`advance`, glyphs centred on x = 0.
struct ORVTextLayout {
    std::vector<ORVGlyphRun> runs;  ///< in the order in which they are drawn
    double advance = 0.0;           ///< along the writing direction, not negative for usual fonts
    double ascent = 0.0;            ///< of the chosen font: up from the baseline
    double descent = 0.0;           ///< of the chosen font: down from the baseline
    bool isSet = true;              ///< false: there is no layout, see below
};

/// How a line of text is set.
struct ORVTextStyle {
    const ORVFont* font = nullptr;  ///< null: the catalogue's sans-serif
    int weight = 25;                ///< 24 light, 25 normal, 26 bold, 27 heaviest
    double height = 12.0;           ///< user units an em
    int writingMode = 0;            ///< 0 left to right, 1 right to left, 2 top to bottom
    double extraSpacing = 0.0;      ///< user units between two neighbouring characters; not after the last
    double expansion = 1.0;         ///< factor on widths
};

/// Shapes one line of text: bidirectional order, scripts, fonts for characters that the chosen one has not,
/// kerning and ligatures (none with extra spacing). Text past 2^22 bytes is cut off. Bytes that are not UTF-8
/// count as U+FFFD. Of a run of combining marks, 30 are set with their letter, and the others 30 by 30.
/// A height that is not greater than 0, or past 1e30, gives an empty layout. Extra spacing that is no number
/// or past 1e30 counts as 0, such an expansion, or one not greater than 0, as 1.
/// Where text cannot be set as it should, because there is no font, or a font or a library cannot be loaded,
/// the layout is empty, its `isSet` is false, and ORVGetTextFailure() tells why (text_failure.h). Where
/// out of memory, std::bad_alloc is thrown. May be called from any thread.
ORV_PLATFORM_EXPORT ORVTextLayout ORVLayoutText(std::string_view utf8, const ORVTextStyle& style);

/// Extents of a layout, see there.
struct ORVTextExtent {
    double advance = 0.0, ascent = 0.0, descent = 0.0;  ///< user units
    bool isSet = true;                                  ///< false: the text cannot be set
};
/// The same numbers as ORVLayoutText, without the glyphs.
ORV_PLATFORM_EXPORT ORVTextExtent ORVMeasureText(std::string_view utf8, const ORVTextStyle& style);
