// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks whether a shape or text is filled and stroked as its author has asked for. Notes with the
/// definition that it belongs to what it is drawn with.
/// @param state  that the element is drawn in
void CheckPainting(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);

struct PaintedParts {
    bool fills = false, strokes = false;
};

/// Checks colours and opacities that SVG hands down otherwise, of what is painted in `parts`.
/// @param state  that the element is drawn in
void CheckMeantPaint(CheckContext& check, const NumberedElement& element, PaintedParts parts,
                     const SvgDrawState& state);
