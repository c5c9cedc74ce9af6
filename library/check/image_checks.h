// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks an "image" element: whether its picture is there, and has the shape of the place it is shown in.
/// @param state  that the element is drawn in
void CheckImage(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);

/// Whether "x", "y", "width" or "height" of a pattern, which have no effect, say of its tile what is true
/// anyway: it repeats as large as its pictures are.
/// @param state  gives the document's path
bool IsSizeOfTile(ResourceChecks& resources, const ORVXmlNode& pattern, AttributeName name,
                  const SvgDrawState& state);
