// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/sandbox/file_rules.h"

/// Permanently drops everything that printing does not need: files other than those of the rules,
/// connections, other programs and processes, other users' rights, and parts of the kernel. Call it while the
/// process has a single thread.
/// @return the restrictions that the system does not support, such as "the rules for files: Function not
///         implemented"; empty if all are in force. The others are applied in any case.
std::string EnterSandbox(const std::vector<FileRule>& rules);
