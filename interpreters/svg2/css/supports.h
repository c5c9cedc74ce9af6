// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg2/css/selectors.h"

namespace svg2 {

/// Evaluates the condition of an @supports rule: supported declarations, selectors, and combinations with
/// "not", "and" and "or". Conditions that cannot be parsed are false.
bool MatchesSupports(std::string_view condition, const SelectorContext& context);

}  // namespace svg2
