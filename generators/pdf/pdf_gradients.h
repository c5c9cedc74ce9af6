// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

class PdfObjectPool;

/// What an inside or a line is painted with.
struct PdfPaint {
    ORVPrintColour colour;     ///< its opacity counts in any case, the rest of it without a pattern
    unsigned int pattern = 0;  ///< object, 0 for none
    unsigned int mask = 0;     ///< object of a graphics state that must be in force, 0 for none
};

/// Makes a paint of a gradient: a shading pattern, opacities that differ as a soft mask with a second
/// shading. Gradients share what they have in common: functions depend on the stops only, shadings on the
/// form of the gradient, and where it lies is left to the pattern.
///
/// A gradient that repeats so often that nobody could tell its colours apart becomes their mean.
/// @param painted    what the paint must cover, in the content's coordinates; neither empty nor infinite
/// @param toDefault  from the content's coordinates to those before any map of the content
PdfPaint MakePdfGradientPaint(const ORVPrintGradient& gradient, const ORVMathBox2D& painted,
                              const ORVMathAffine2D& toDefault, PdfObjectPool& pool);

/// Appends a box as "[left bottom right top]", rounded to `places`.
void AppendPdfBox(std::string& text, const ORVMathBox2D& box, int places);
