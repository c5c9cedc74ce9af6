// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/input/inputs.h"

/// Writes a self-contained HTML page that shows a drawing beside its primitives, or beside the calls that
/// draw it, with the findings of the check.
/// @param output  a file, or "-" for standard output
/// @return an exit code; a failure has been reported
int RunHtmlInspection(const std::string& input, const ReadOptions& options, const std::string& output);
