// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/structure/element_attributes.h"
#include "library/check/check_context.h"

/// Checks all attributes of an element: names that are not known, attributes without effect, values that are
/// read as something else than is written. Path data are not among them: CheckPainting looks at those.
/// @param state  in force around the element
void CheckAttributes(CheckContext& check, const NumberedElement& element, SvgPlace place,
                     const SvgDrawState& state);
