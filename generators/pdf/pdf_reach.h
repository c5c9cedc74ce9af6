// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

struct ORVGlyphRun;

// How far what is drawn can reach, in the coordinates of the content that it is drawn on.

/// What two boxes both cover; empty when that has no area.
ORVMathBox2D PdfCommonBox(const ORVMathBox2D& a, const ORVMathBox2D& b);
/// The box of a path's points.
ORVMathBox2D PdfPathBox(const ORVPrintPath& path, const ORVMathAffine2D& map);
/// The box of a line of text before its map.
ORVMathBox2D PdfLineBox(const ORVTextLayout& layout);
/// How far a line reaches to its sides; 0 for none. @param scale  of lengths
double PdfHalfWidth(const ORVPrintStroke* stroke, double scale);
/// How many half widths a line reaches at corners and ends, at most.
double PdfCornerReach(const ORVPrintStroke& stroke);
/// How far glyphs, and lines around them, may reach beyond the line's box.
double PdfGlyphReach(const ORVGlyphRun& run, double scale);
/// A box that holds all that is painted, and a little more.
ORVMathBox2D PdfPaintedBox(const ORVPrintShape& shape);
ORVMathBox2D PdfPaintedBox(const ORVPrintText& text);
