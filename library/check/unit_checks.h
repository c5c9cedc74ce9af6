// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks whether a length is as large beside the page and other lengths as in programs to which a number is
/// 1/96 inch.
/// @param attribute  empty for what stands for many numbers without a unit, such as path data
void CheckUnit(CheckContext& check, const NumberedElement& element, std::string_view attribute,
               std::string_view value);
