// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks what a "text" element says and the font it is set in: words that run together where a line ends,
/// characters that no font has, families that are not installed.
/// @param state  that the element is drawn in
void CheckText(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);
