// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/structure/element_attributes.h"
#include "library/check/check_context.h"

/// Checks all attributes of an element for unknown names, attributes without effect, and values that the
/// interpreter does not read as written. Path data are excluded: CheckPainting checks those.
/// @param state  the drawing state around the element
void CheckAttributes(CheckContext& check, const NumberedElement& element, SvgPlace place,
                     const SvgDrawState& state);
