#pragma once

#include "apps/orvprint/check/check_context.h"

/// Checks whether a shape or text is filled and stroked as its author has asked for. Notes with the
/// definition that it belongs to what it is drawn with.
/// @param state  that the element is drawn in
void CheckPainting(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);
