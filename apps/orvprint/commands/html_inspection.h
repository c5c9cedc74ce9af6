// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/input/inputs.h"

/// Writes a page for a browser that shows a drawing beside the primitives it consists of, or the calls that
/// draw it, and what the check says about it. The page holds everything it needs.
/// @param output  a file, or "-" for standard output
/// @return an exit code; a failure was reported
int RunHtmlInspection(const std::string& input, const ReadOptions& options, const std::string& output);
