// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

class ORVPrtGroupElt;
struct SvgDrawState;

/// The path readers once more, as a plain transcription of what they have to do: the data are rewritten by
/// replacements and cut up again and again, which is slow and easy to follow.
namespace naive {

/// The commands of path data, each followed by its arguments in brackets, such as "M[1][2]z".
std::string SplitPath(std::string_view data);

/// Draws path data into `group`. @return the end points of all commands, x and y alternating
std::vector<double> InterpretPath(const SvgDrawState& state, std::string_view data, ORVPrtGroupElt& group);

}  // namespace naive
