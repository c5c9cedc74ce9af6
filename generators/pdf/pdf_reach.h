// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

struct ORVGlyphRun;

// Conservative bounding boxes, in the coordinates of the content that is drawn on.

/// Intersection of two boxes; empty if it has no area.
ORVMathBox2D PdfCommonBox(const ORVMathBox2D& a, const ORVMathBox2D& b);
/// Bounding box of the points of a path.
ORVMathBox2D PdfPathBox(const ORVPrintPath& path, const ORVMathAffine2D& map);
/// Bounding box of a line of text, before its transformation.
ORVMathBox2D PdfLineBox(const ORVTextLayout& layout);
/// Half of the line width; 0 for no stroke. @param scale  factor for lengths
double PdfHalfWidth(const ORVPrintStroke* stroke, double scale);
/// Maximum reach of a stroke at corners and ends, in half widths.
double PdfCornerReach(const ORVPrintStroke& stroke);
/// How far glyphs and their strokes may extend beyond the line's box.
double PdfGlyphReach(const ORVGlyphRun& run, double scale);
/// A box that contains all that is painted, with a small margin.
ORVMathBox2D PdfPaintedBox(const ORVPrintShape& shape);
ORVMathBox2D PdfPaintedBox(const ORVPrintText& text);
