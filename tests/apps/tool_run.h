// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

/// One run of the command.
struct ToolRun {
    int exitCode = -1;  ///< -1 when a signal ended it
    int signal = 0;     ///< that signal
    std::string output, errors;
};

/// A command that runs beside the test.
struct RunningTool {
    pid_t pid = -1;
    std::filesystem::path in, out, err;  ///< its standard streams
};

/// A folder of the test's own, in which the command runs.
class ToolTest : public testing::Test {
protected:
    /// Runs the command with these arguments.
    ToolRun Run(const std::vector<std::string>& arguments, const std::string& input = {}) const;
    /// Runs another program of the system.
    ToolRun RunProgram(const std::vector<std::string>& command, const std::string& input = {}) const;

    /// The same in two steps. What was started must be waited for.
    RunningTool StartProgram(const std::vector<std::string>& command, const std::string& input = {}) const;
    static ToolRun WaitFor(const RunningTool& running);
    /// For a child before it becomes a program: nohup and shells' background jobs ignore signals, which the
    /// program would inherit, and a test that sends one wait for ever.
    static void TakeDefaultSignals();

    void WriteFile(const std::string& name, const std::string& content) const;
    std::string ReadFile(const std::string& name) const;
    bool Exists(const std::string& name) const { return std::filesystem::exists(Folder() / name); }
    /// Names of all files in the folder, sorted.
    std::vector<std::string> Files() const;
    static std::string Example(const std::string& name);

    const std::filesystem::path& Folder() const { return folder_.Path(); }

private:
    ScratchFolder folder_;
};

/// A drawing of 90 x 45 user units around `content`.
std::string SmallDrawing(const std::string& content);
