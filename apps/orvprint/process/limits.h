// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/system/ORVPrintLimits.h"

/// Sets the limits of this process: those for unchecked files, but for what the user says.
/// @param settings  as "NAME=VALUE" each
/// @return an exit code; a failure was reported
int ApplyLimits(const std::vector<std::string>& settings);

/// What is wrong with an input that a limit stopped, and what to do, worded to follow the input's name.
std::string LimitReached(ORVPrintLimit limit);
