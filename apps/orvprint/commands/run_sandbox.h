// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "apps/orvprint/input/inputs.h"
#include "apps/orvprint/sandbox/needs.h"

/// Whether the command has to put parts of an output of this format into files of its own on the way.
bool KeepsTemporaryFiles(std::string_view format);

/// Enters the sandbox for a run, unless the options say otherwise. To be called before a document is read,
/// and while there is one thread.
/// @param files  without the allowed folders, which stand in the options
/// @return an exit code; that the options ask for more than the system gives was reported
int EnterSandboxFor(const ReadOptions& options, RunFiles files);
