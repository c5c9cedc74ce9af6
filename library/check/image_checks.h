// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks an "image" element: whether its file can be read, and whether its aspect ratio matches its area.
/// @param state  the state that the element is drawn in
void CheckImage(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);

/// Whether "x", "y", "width" or "height" of a pattern matches the actual tile. The attributes have no effect:
/// a tile is always as large as its images.
/// @param state  provides the document's path
bool IsSizeOfTile(ResourceChecks& resources, const ORVXmlNode& pattern, AttributeName name,
                  const SvgDrawState& state);
