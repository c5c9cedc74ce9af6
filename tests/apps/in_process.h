// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

/// Returns errno if the call returned a negative result, else 0.
inline int ErrorOf(long result) { return result < 0 ? errno : 0; }

/// Runs an action in a child process and returns its result, at most 255.
inline int InProcess(const std::function<int()>& action) {
    const pid_t process = fork();
    if (process == 0) _exit(action());
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}
