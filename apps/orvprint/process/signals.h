// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

/// All signals that a user or a resource limit may send and that terminate a process by default, except
/// SIGKILL, which cannot be handled.
const std::vector<int>& EndingSignals();

/// From now on, these signals terminate the process as they would by default, but leave no partial file.
/// Signals that were ignored at the start, as under nohup, stay ignored.
void EndCleanlyOnSignals();

/// Installs a handler for all these signals, except for those that are ignored.
void HandleEndingSignals(void (*handler)(int signal));

/// For workers: leaves signals that a terminal sends to the whole process group to the parent; all others
/// terminate the worker.
void LeaveTerminalSignalsToParent();
