// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tests/apps/tool_run.h"

// What tests of limits run the command with.

inline const std::string kLeaf = "<rect width='1' height='1' fill='red'/>";

/// The command under limits of the system, so that a failure cannot take the machine with it.
class BoundedToolTest : public ToolTest {
protected:
    /// Prints to `output` under a limit of the stack.
    ToolRun RunWithStack(const std::string& kibibytes, const std::string& arguments) const {
        return RunProgram({"bash", "-c", "ulimit -s " + kibibytes + "; '" ORV_TOOL_PATH "' " + arguments});
    }
    /// Memory bounds what a failure could do to the machine.
    ToolRun RunBounded(const std::string& arguments) const {
#if defined(ORV_SANITIZED)
        return RunProgram({"bash", "-c", "'" ORV_TOOL_PATH "' " + arguments});
#else
        return RunProgram({"bash", "-c", "ulimit -v 2500000; '" ORV_TOOL_PATH "' " + arguments});
#endif
    }
};
