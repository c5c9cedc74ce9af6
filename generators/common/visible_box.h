// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"

/// Bounding box of what a call paints, in page coordinates; empty if it paints nothing. Unlike the
/// conservative boxes of recordings, it follows caps, joins and curves. Curves are sampled, accurately enough
/// for the edge of a page.
ORVMathBox2D ORVVisibleBox(const ORVPrintShape& shape);
/// Bounding box of the outlines of a line of text. For fonts with bitmap glyphs, the em squares count.
ORVMathBox2D ORVVisibleBox(const ORVPrintText& text);
/// Bounding box of an image, including transparent edges.
ORVMathBox2D ORVVisibleBox(const ORVPrintImage& image);
