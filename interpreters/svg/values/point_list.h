// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

struct SvgDrawState;

/// Reads the numbers of a "points" value, alternately x and y, into `numbers` (which is cleared first), in
/// page coordinates: units and percentages resolved, y mirrored if the state flips it. Commas and blanks
/// separate. An invalid token is dropped without a placeholder, so the following numbers move up one place;
/// the last token of the text counts as a y at any position. Both are kept on purpose.
/// @return false if there are more numbers than a primitive may have points; the excess is dropped
bool ReadCoordinateNumbers(const SvgDrawState& state, std::string_view value, std::vector<double>& numbers);
