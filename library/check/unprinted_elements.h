// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Reports an element without a handler, which is not printed with all that it holds.
/// @param isInLeaf  whether it stands inside a shape, text, picture or reference
void CheckUnprinted(CheckContext& check, const NumberedElement& element, bool isInLeaf);
