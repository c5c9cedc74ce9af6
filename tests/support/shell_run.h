// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Runs a shell command line and keeps its combined output and exit status.
struct ShellRun {
    std::string text;
    int status = -1;  ///< wait status: 0 for success; -1 if the shell could not be started

    explicit ShellRun(const std::string& line);
};
