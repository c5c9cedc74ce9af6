// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "apps/orvprint/input/inputs.h"
#include "apps/orvprint/sandbox/needs.h"

/// True if writing the format requires temporary files.
bool KeepsTemporaryFiles(std::string_view format);

/// Enters the sandbox for a run, unless the options disable it. Must be called before a document is read,
/// while the process has one thread.
/// @param files  without the permitted folders, which are in the options
/// @return an exit code; it was reported if the options require more than the system supports
int EnterSandboxFor(const ReadOptions& options, RunFiles files);
