// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"

/// Writes the pages of inputs to standard output, with sizes and titles, as text or as JSON: an object for
/// one input, a list for several. Unreadable inputs are reported, and the others are still processed.
/// @return the exit code of the first failure
int RunInfo(const std::vector<std::string>& inputs, const ReadOptions& options, bool asJson);
