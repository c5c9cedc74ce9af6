// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"

/// Tells the pages of inputs on standard output: sizes and titles, as text or as JSON: an object for one
/// input, a list of them for several. What cannot be read is reported, and the others are told of all the
/// same.
/// @return the exit code of the first failure
int RunInfo(const std::vector<std::string>& inputs, const ReadOptions& options, bool asJson);
