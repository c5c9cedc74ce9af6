// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/finding_writer.h"

struct SvgDrawState;

/// Checks the page size that results from "width", "height" and "viewBox".
/// @param state  with the page's presentation attributes applied and its size not yet set; sets the page's
///         size
void CheckPageSize(FindingWriter& findings, const NumberedElement& svg, SvgDrawState state);
