// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/print/ORVPrintGenerator.h"

class PdfFile;
class PdfFontTable;
class PdfOperators;
struct ORVGlyphRun;

/// Shows a run's glyphs with the text operators, within a text object that is open: chooses the fonts, places
/// the glyphs, and says what each of them, or a cluster of them, stands for.
/// @param text  the line that the run belongs to
/// @param room  holds the glyphs that are being shown; kept between calls to save allocations
void ShowPdfGlyphs(PdfOperators& out, PdfFontTable& fonts, PdfFile& file, const ORVPrintText& text,
                   const ORVGlyphRun& run, std::string& room);
