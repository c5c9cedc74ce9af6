// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

/// The result of running the command.
struct ToolRun {
    int exitCode = -1;  ///< -1 if it was ended by a signal
    int signal = 0;     ///< the signal that ended it, else 0
    std::string output, errors;
};

/// A command that runs in parallel with the test.
struct RunningTool {
    pid_t pid = -1;
    std::filesystem::path in, out, err;  ///< files with its standard streams
};

/// Runs the command in a temporary folder.
class ToolTest : public testing::Test {
protected:
    /// Runs the command with arguments and standard input.
    ToolRun Run(const std::vector<std::string>& arguments, const std::string& input = {}) const;
    /// Runs another program.
    ToolRun RunProgram(const std::vector<std::string>& command, const std::string& input = {}) const;

    /// Starts a program without waiting. Every started program must be passed to WaitFor().
    RunningTool StartProgram(const std::vector<std::string>& command, const std::string& input = {}) const;
    static ToolRun WaitFor(const RunningTool& running);
    /// Resets signal handling in a child before exec: nohup and background jobs of shells ignore signals, the
    /// program would inherit that, and a test that sends one would wait forever.
    static void TakeDefaultSignals();

    void WriteFile(const std::string& name, const std::string& content) const;
    std::string ReadFile(const std::string& name) const;
    bool Exists(const std::string& name) const { return std::filesystem::exists(Folder() / name); }
    /// Sorted names of all files in the folder.
    std::vector<std::string> Files() const;
    static std::string Example(const std::string& name);

    const std::filesystem::path& Folder() const { return folder_.Path(); }

private:
    ScratchFolder folder_;
};

/// A drawing of 90 x 45 user units with the given content.
std::string SmallDrawing(const std::string& content);
