// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/sandbox/file_rules.h"

/// Permanently drops what printing does not need: all files except by the rules, connections, other programs,
/// other processes, other users' rights, and parts of the kernel. Must be called while the process has one
/// thread.
/// @return the restrictions that the system refuses, such as "the rules for files: Function not implemented";
///         empty if all are in force. The others apply in any case.
std::string EnterSandbox(const std::vector<FileRule>& rules);
