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
           y = 0.0;        ///< where the text starts, in the layout's space: right-to-left text at its right
    double length = 0.0;   ///< textLength, including the spacing after the last letter; 0 to leave it out
    double spacing = 0.0;  ///< letter spacing
};

/// Splits a line of text. All lengths are in the layout's coordinates. Vertical text is split into single
/// letters, which all readers place alike; horizontal text where the spacing changes.
std::vector<SvgTextPiece> SplitSvgText(const ORVPrintText& text);
