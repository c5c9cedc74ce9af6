// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

struct ORVGlyphRun;

/// A part of a line of text that becomes one element: glyphs of one face in one direction.
struct SvgTextPiece {
    const ORVGlyphRun* run = nullptr;
    std::string text;  ///< UTF-8 without control characters, in logical order
    double x = 0.0,
           y = 0.0;       ///< where the text starts, in the layout's space: right-to-left text at its right
    double length = 0.0;  ///< textLength, including the spacing after the last letter; 0 for one letter
};

/// A line of text in pieces. Vertical text is split into single letters, which all readers place alike.
struct SvgTextLine {
    std::vector<SvgTextPiece> pieces;
    double spacing = 0.0;  ///< letter spacing, in the layout's coordinates
};
SvgTextLine SplitSvgText(const ORVPrintText& text);
