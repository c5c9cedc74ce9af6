// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg2/css/selectors.h"

namespace svg2 {

/// Whether the condition of a rule "@supports" holds: declarations that are read here, selectors, and what
/// "not", "and" and "or" make of them. What cannot be read does not hold.
bool MatchesSupports(std::string_view condition, const SelectorContext& context);

}  // namespace svg2
