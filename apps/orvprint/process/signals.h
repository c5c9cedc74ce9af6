// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

/// All signals that somebody may send, or a limit of the system, and that end a process that does nothing
/// about them; SIGKILL, which nobody can do anything about, is not among them.
const std::vector<int>& EndingSignals();

/// From now on signals that end the process do so as they would have, but leave no half file. What the
/// process was told to ignore, as nohup does, stays ignored.
void EndCleanlyOnSignals();

/// Has a handler take all those signals, but for those that are ignored.
void HandleEndingSignals(void (*handler)(int signal));

/// In a worker: what is sent to all processes of a terminal is left to the one that was started; others end
/// it.
void LeaveTerminalSignalsToParent();
