// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

class PdfObjectPool;

/// Paint of a fill or a stroke.
struct PdfPaint {
    ORVPrintColour colour;     ///< with a pattern, only the opacity is used
    unsigned int pattern = 0;  ///< object, 0 for none
    unsigned int mask = 0;     ///< object of the required graphics state with a soft mask, 0 for none
};

/// Converts a gradient to a paint: a shading pattern, with a second shading as soft mask if opacities vary.
/// Gradients share objects: functions depend only on the stops, shadings only on the geometry, and the
/// position is in the pattern's matrix.
///
/// A gradient that repeats too finely to be visible is replaced by its mean colour.
/// @param painted    area to paint, in the content's coordinates; neither empty nor infinite
/// @param toDefault  from the content's coordinates to default space, before any matrix
PdfPaint MakePdfGradientPaint(const ORVPrintGradient& gradient, const ORVMathBox2D& painted,
                              const ORVMathAffine2D& toDefault, PdfObjectPool& pool);

/// Appends a box as "[left bottom right top]", rounded to `places` decimal places.
void AppendPdfBox(std::string& text, const ORVMathBox2D& box, int places);
