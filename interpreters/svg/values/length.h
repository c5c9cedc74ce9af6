// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// User units in one millimetre: 90 / 25.4 cut to seven decimals. The exact quotient would move points.
inline constexpr double kUserUnitsPerMillimetre = 3.543307;

/// Reads a length such as "12", "10mm" or "50%".
/// @param state  gives the page size that a percentage refers to
/// @param value  attribute text; looked at in place
/// @param out    in: the caller's default; out: the length in user units (1/90 inch)
/// @return kRead when `out` was written, kEmpty when there is nothing but white space, 0 when no number
///         could be read. `out` keeps the default unless kRead.
///
/// A percentage is taken of the page's mean diagonal. What follows the number is ignored unless it is a
/// unit ("5px" is 5); a unit counts wherever it stands. Negative lengths are lengths.
int ParseLength(const SvgDrawState& state, std::string_view value, double& out);

/// As ParseLength; a percentage is taken of the page width.
int ParseHorizontalLength(const SvgDrawState& state, std::string_view value, double& out);

/// As ParseLength; a percentage is taken of the page height. The result is not mirrored.
int ParseVerticalLength(const SvgDrawState& state, std::string_view value, double& out);

/// As ParseVerticalLength, mirrored against the page height where the state flips y: on every path, so
/// that a default of 0 becomes the page height when nothing could be read.
int ParseVerticalCoordinate(const SvgDrawState& state, std::string_view value, double& out);

/// The parsers above on the text of an attribute; kEmpty when it is absent or empty.
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
