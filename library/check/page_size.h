// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/finding_writer.h"

struct SvgDrawState;

/// Checks what a page's "width", "height" and "viewBox" come to.
/// @param state  with the page's presentation applied, and the page not yet sized. The page gets its size.
void CheckPageSize(FindingWriter& findings, const NumberedElement& svg, SvgDrawState state);
