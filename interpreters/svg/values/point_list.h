// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

struct SvgDrawState;

/// Reads the numbers of a "points" value, alternately x and y, into `numbers` (which is emptied first), in
/// page coordinates: units and percentages resolved, y mirrored where the state flips it. Commas and blanks
/// separate. A token that is no number drops out without a placeholder, so that the numbers after it move up
/// one place; the last token of the text counts as a y wherever it stands. Both are kept on purpose.
/// @return false when there are more numbers than a primitive may have points; they are left out
bool ReadCoordinateNumbers(const SvgDrawState& state, std::string_view value, std::vector<double>& numbers);
