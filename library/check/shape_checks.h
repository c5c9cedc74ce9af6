// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// Checks sizes that SVG treats differently: negative sizes, ellipses with one radius, and zero-length lines
/// with caps.
/// @param state    the state that the element is drawn in
/// @param path     result of reading the path data; empty for other elements
/// @param strokes  whether its outline is stroked
/// @return bounding box of what is drawn in the element's own coordinates, including strokes; empty if
///         nothing is
ORVMathBox2D CheckShape(CheckContext& check, const NumberedElement& element, const SvgDrawState& state,
                        const PathShape& path, bool strokes);
