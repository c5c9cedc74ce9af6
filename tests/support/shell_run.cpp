// SPDX-License-Identifier: Apache-2.0
#include "tests/support/shell_run.h"

#include <array>
#include <cstdio>

ShellRun::ShellRun(const std::string& line) {
    std::FILE* pipe = popen(("{ " + line + "; } 2>&1").c_str(), "r");
    if (!pipe) return;
    std::array<char, 4096> buffer;
    for (std::size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        text.append(buffer.data(), got);
    status = pclose(pipe);
}
