// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "apps/orvprint/input/inputs.h"
#include "apps/orvprint/sandbox/needs.h"

/// True if the command needs temporary files to write this format.
bool KeepsTemporaryFiles(std::string_view format);

/// Enters the sandbox for a run, unless the options turn it off. Call it before reading a document, while
/// there is one thread.
/// @param files  without the allowed folders, which are in the options
/// @return an exit code; the failure has been reported if the options require more than the system supports
int EnterSandboxFor(const ReadOptions& options, RunFiles files);
