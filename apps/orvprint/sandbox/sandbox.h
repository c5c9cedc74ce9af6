// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/sandbox/file_rules.h"

/// Gives up, for this process and for good, what printing does not need: all files but those of the rules,
/// connections, other programs, other processes, other users' rights, and parts of the kernel. To be called
/// while there is one thread.
/// @return what of it the system refuses, as "the rules for files: Function not implemented"; empty when all
///         is given up. The rest is given up all the same.
std::string EnterSandbox(const std::vector<FileRule>& rules);
