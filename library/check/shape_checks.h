// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks sizes that SVG draws otherwise: negative ones, ellipses of one radius, lines of no length with
/// caps.
/// @param state    that the element is drawn in
/// @param path     what the path data come to; of other elements nothing
/// @param strokes  whether its outline is painted
/// @return the box of what is drawn in the element's own coordinates, strokes included; empty for nothing
ORVMathBox2D CheckShape(CheckContext& check, const NumberedElement& element, const SvgDrawState& state,
                        const PathShape& path, bool strokes);
