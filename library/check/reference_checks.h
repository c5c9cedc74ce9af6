// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

// References to other elements: whether the target exists, can be resolved from the referring element, and is
// used unchanged.

/// Checks the "xlink:href" of a link.
void CheckLink(CheckContext& check, const NumberedElement& element, std::string_view value);

/// Checks that the target of a marker attribute exists in the document.
void CheckMarkerReference(CheckContext& check, const NumberedElement& element,
                          const ORVXmlAttribute& attribute);

/// Checks the markers drawn on an element with vertices.
/// @param state  the state that the element is drawn in
void CheckMarkers(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);

/// Checks a "fill" or "stroke" value that contains "url".
/// @param state  the drawing state around the element
MaybeProblem CheckPaintReference(CheckContext& check, const NumberedElement& element, bool isFill,
                                 std::string_view value, const SvgDrawState& state);

/// Checks a "use" element.
/// @param state  the state that the element is drawn in
void CheckUse(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);
