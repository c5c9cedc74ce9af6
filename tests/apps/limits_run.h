// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tests/apps/tool_run.h"

// Shared helpers of the tests of limits.

inline const std::string kLeaf = "<rect width='1' height='1' fill='red'/>";

/// Runs the command under system limits, so that a failure cannot affect the machine.
class BoundedToolTest : public ToolTest {
protected:
    /// Runs the command with a limited stack, in KiB.
    ToolRun RunWithStack(const std::string& kibibytes, const std::string& arguments) const {
        return RunProgram({"bash", "-c", "ulimit -s " + kibibytes + "; '" ORV_TOOL_PATH "' " + arguments});
    }
    /// Runs the command with limited memory.
    ToolRun RunBounded(const std::string& arguments) const {
#if defined(ORV_SANITIZED)
        return RunProgram({"bash", "-c", "'" ORV_TOOL_PATH "' " + arguments});
#else
        return RunProgram({"bash", "-c", "ulimit -v 2500000; '" ORV_TOOL_PATH "' " + arguments});
#endif
    }
};
