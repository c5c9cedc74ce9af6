// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What a line of the shell wrote, to both of its outputs, and how it ended.
struct ShellRun {
    std::string text;
    int status = -1;  ///< as wait has it: 0 for success; -1 when there was no shell

    explicit ShellRun(const std::string& line);
};
