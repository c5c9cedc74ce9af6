// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks whether a shape or text is filled and stroked as its author intends, and records the attribute sets
/// it is drawn with in the enclosing definition.
/// @param state  the state that the element is drawn in
void CheckPainting(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);

struct PaintedParts {
    bool fills = false, strokes = false;
};

/// Checks inherited colours and opacities that SVG treats differently, for the painted `parts`.
/// @param state  the state that the element is drawn in
void CheckMeantPaint(CheckContext& check, const NumberedElement& element, PaintedParts parts,
                     const SvgDrawState& state);
