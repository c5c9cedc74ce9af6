// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The word that a misspelt one was probably meant to be; empty if none is close. Allows one missing, extra,
/// wrong or swapped letter in a short word, two or three in a long one.
std::string FindNearest(std::string_view word, const std::vector<std::string>& known);
