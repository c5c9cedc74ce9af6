// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks whether a length has the same size, relative to the page and other lengths, as in programs where
/// one user unit is 1/96 inch.
/// @param attribute  empty for a value with many unitless numbers, such as path data
void CheckUnit(CheckContext& check, const NumberedElement& element, std::string_view attribute,
               std::string_view value);
