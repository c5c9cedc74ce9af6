// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/input/inputs.h"

/// Writes the print model that the interpreter makes of an input, as JSON, to standard output. A document
/// that cannot be read as a drawing has a dump, too: it says so.
/// @return an exit code; a failure was reported
int RunInspect(const std::string& input, const ReadOptions& options);
