// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/input/inputs.h"

/// Writes the print model of an input to standard output as JSON. A document that cannot be read as a drawing
/// has a dump, too, which says so.
/// @return an exit code; a failure has been reported
int RunInspect(const std::string& input, const ReadOptions& options);
