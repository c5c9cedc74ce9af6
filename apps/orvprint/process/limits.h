// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/system/ORVPrintLimits.h"

/// Sets the limits of this process: the defaults for unchecked files, overridden by the user's settings.
/// @param settings  each "NAME=VALUE"
/// @return an exit code; a failure has been reported
int ApplyLimits(const std::vector<std::string>& settings);

/// What is wrong with an input that exceeded a limit, and what to do about it. Worded to follow the input's
/// name.
std::string LimitReached(ORVPrintLimit limit);
