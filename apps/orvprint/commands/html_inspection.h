// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/input/inputs.h"

/// Writes a self-contained HTML page that shows a drawing next to its primitives or drawing calls, with the
/// findings of the check.
/// @param output  a file, or "-" for standard output
/// @return an exit code; a failure was reported
int RunHtmlInspection(const std::string& input, const ReadOptions& options, const std::string& output);
