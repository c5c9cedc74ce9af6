// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

// References to other elements: whether what they name is there, can be found from where they stand, and
// is taken as it is.

/// Checks the "xlink:href" of a link.
void CheckLink(CheckContext& check, const NumberedElement& element, std::string_view value);

/// Checks that the document has what a marker attribute names.
void CheckMarkerReference(CheckContext& check, const NumberedElement& element,
                          const ORVXmlAttribute& attribute);

/// Checks the markers that an element with vertices is drawn with.
/// @param state  that the element is drawn in
void CheckMarkers(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);

/// Checks a value with "url" of the property "fill" or "stroke".
/// @param state  in force around the element
MaybeProblem CheckPaintReference(CheckContext& check, const NumberedElement& element, bool isFill,
                                 std::string_view value, const SvgDrawState& state);

/// Checks a "use" element.
/// @param state  that the element is drawn in
void CheckUse(CheckContext& check, const NumberedElement& element, const SvgDrawState& state);
