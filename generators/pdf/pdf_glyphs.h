// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/print/ORVPrintGenerator.h"

class PdfFile;
class PdfFontTable;
class PdfOperators;
struct ORVGlyphRun;

/// Shows the glyphs of a run inside an open text object: chooses fonts, positions glyphs, and records the
/// text that each glyph or cluster represents.
/// @param text  the line that the run belongs to
/// @param room  buffer for glyphs, reused between calls to save allocations
void ShowPdfGlyphs(PdfOperators& out, PdfFontTable& fonts, PdfFile& file, const ORVPrintText& text,
                   const ORVGlyphRun& run, std::string& room);
