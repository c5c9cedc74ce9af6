// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// User units per millimetre: 90 / 25.4 rounded to six decimals. The exact quotient would move points.
inline constexpr double kUserUnitsPerMillimetre = 3.543307;

/// Reads a length such as "12", "10mm" or "50%".
/// @param state  provides the page size that percentages refer to
/// @param value  attribute text
/// @param out    in: the default; out: the length in user units (1/90 inch)
/// @return kRead if `out` was set, kEmpty if there is only white space, 0 if no number could be read. `out`
///         keeps the default unless kRead is returned
///
/// A percentage refers to the mean diagonal of the page. Text after the number is ignored unless it is a unit
/// ("5px" is 5); a unit is recognised at any position. Negative lengths are allowed.
int ParseLength(const SvgDrawState& state, std::string_view value, double& out);

/// Like ParseLength; a percentage refers to the page width.
int ParseHorizontalLength(const SvgDrawState& state, std::string_view value, double& out);

/// Like ParseLength; a percentage refers to the page height. The result is not mirrored.
int ParseVerticalLength(const SvgDrawState& state, std::string_view value, double& out);

/// Like ParseVerticalLength, but mirrored against the page height if the state flips y. This applies in every
/// case, so a default of 0 becomes the page height if no number could be read.
int ParseVerticalCoordinate(const SvgDrawState& state, std::string_view value, double& out);

/// Apply the parsers above to an attribute; kEmpty if it is absent or empty.
template <SvgElementAccess Element>
int ReadLengthAttribute(const SvgDrawState& state, const Element& element, AttributeName name, double& out) {
    return ParseLength(state, element.Attribute(name).text, out);
}

template <SvgElementAccess Element>
int ReadHorizontalAttribute(const SvgDrawState& state, const Element& element, AttributeName name,
                            double& out) {
    return ParseHorizontalLength(state, element.Attribute(name).text, out);
}

template <SvgElementAccess Element>
int ReadVerticalCoordinateAttribute(const SvgDrawState& state, const Element& element, AttributeName name,
                                    double& out) {
    return ParseVerticalCoordinate(state, element.Attribute(name).text, out);
}
