// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks the content and font of a "text" element: words that are joined at line ends, characters missing
/// from all fonts, families that are not installed.
/// @param state  the state that the element is drawn in
void CheckText(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);
