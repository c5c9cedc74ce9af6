// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

class ORVPrtGroupElt;
struct SvgDrawState;

/// Reference implementation of the path parsers: it repeatedly replaces and splits text, which is slow but
/// easy to follow.
namespace naive {

/// Splits path data into commands, each followed by its arguments in brackets, such as "M[1][2]z".
std::string SplitPath(std::string_view data);

/// Draws path data into `group`.
/// @return the end points of all commands, alternately x and y
std::vector<double> InterpretPath(const SvgDrawState& state, std::string_view data, ORVPrtGroupElt& group);

}  // namespace naive
