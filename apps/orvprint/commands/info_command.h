// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/input/drawings.h"

/// Tells the pages of an input on standard output: sizes and titles, as text or as JSON.
/// @return an exit code; a failure was reported
int RunInfo(const std::string& input, const ReadOptions& options, bool asJson);
