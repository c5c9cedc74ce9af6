// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Reports an element without a handler, which is not printed, nor are its descendants.
/// @param isInLeaf  whether it is inside a shape, text, image or reference
void CheckUnprinted(CheckContext& check, const NumberedElement& element, bool isInLeaf);
