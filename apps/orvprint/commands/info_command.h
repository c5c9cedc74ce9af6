// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"

/// Lists the pages of inputs on standard output: sizes and titles, as text or JSON (an object for one input,
/// an array for several). An input that cannot be read is reported, and the others are listed nevertheless.
/// @return the exit code of the first failure
int RunInfo(const std::vector<std::string>& inputs, const ReadOptions& options, bool asJson);
