// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

/// All signals sent by users, processes or system limits whose default action ends the process, except
/// SIGKILL.
const std::vector<int>& EndingSignals();

/// Makes signals that end the process remove its unfinished files first. Signals ignored at the start, as
/// with nohup, stay ignored.
void EndCleanlyOnSignals();

/// Installs a handler for all those signals, except ignored ones.
void HandleEndingSignals(void (*handler)(int signal));

/// For workers: ignores signals that a terminal sends to all processes, which the parent handles. Other
/// signals end the worker.
void LeaveTerminalSignalsToParent();
