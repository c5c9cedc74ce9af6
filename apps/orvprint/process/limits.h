// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/system/ORVPrintLimits.h"

/// Sets the limits of this process: those for untrusted files, as changed by the user.
/// @param settings  "NAME=VALUE" each
/// @return an exit code; a failure was reported
int ApplyLimits(const std::vector<std::string>& settings);

/// Describes a limit reached by an input and what to do about it, as text to follow the input's name.
std::string LimitReached(ORVPrintLimit limit);
