// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"

/// The box around what a call paints, in page coordinates; empty when that is nothing. Unlike what recordings
/// reserve for a call, it has no margin for what a pen or a glyph might reach at most: caps, joins and curves
/// are followed. Curves are measured at points, closely enough for a page's edge.
ORVMathBox2D ORVVisibleBox(const ORVPrintShape& shape);
/// The same for a line of text: around the outlines of its glyphs, or around their squares where a font has
/// images for glyphs.
ORVMathBox2D ORVVisibleBox(const ORVPrintText& text);
/// The same for an image: around all of it, transparent edges included.
ORVMathBox2D ORVVisibleBox(const ORVPrintImage& image);
