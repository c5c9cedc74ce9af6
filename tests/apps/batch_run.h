// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/apps/tool_run.h"
#include "tests/support/test_texts.h"

// Shared helpers of the batch tests.

using Clock = std::chrono::steady_clock;

// Only ends tests that would otherwise wait forever.
inline Clock::time_point Deadline() { return Clock::now() + std::chrono::seconds(60); }
inline void Breathe() { std::this_thread::sleep_for(std::chrono::milliseconds(2)); }

class BatchTest : public ToolTest {
protected:
    BatchTest() {
        WriteFile("a.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
        WriteFile("b.svg", SmallDrawing("<rect width='9' height='9' fill='blue'/>"));
        WriteFile("two.svg", "<svg><svg width='9' height='9'/><svg width='18' height='9'/></svg>");
        WriteFile("bad.svg", "<svg width='9' height='9'>\n <g></svg>");
    }

    /// Returns the sorted names of the files in a folder, including hidden ones.
    std::vector<std::string> FilesIn(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Folder() / folder))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    RunningTool Start(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), ORV_TOOL_PATH);
        return StartProgram(arguments);
    }

    /// Opens a named pipe for writing as soon as the command reads from it.
    int OpenForTool(const std::string& name) const {
        const std::string path = Folder() / name;
        for (const auto deadline = Deadline(); Clock::now() < deadline; Breathe())
            if (const int descriptor = open(path.c_str(), O_WRONLY | O_NONBLOCK); descriptor >= 0)
                return descriptor;
        return -1;
    }
    void MakePipe(const std::string& name) const { ASSERT_EQ(mkfifo((Folder() / name).c_str(), 0600), 0); }
    static void Feed(int descriptor, const std::string& text) {
        ASSERT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(descriptor);
    }

    static std::vector<pid_t> ChildrenOf(pid_t parent) {
        std::vector<pid_t> children;
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const std::string name = entry.path().filename();
            if (!std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; })) continue;
            const std::string text = ReadAll(entry.path() / "stat");
            // "PID (NAME) STATE PARENT ..."
            const std::size_t end = text.rfind(") ");
            if (end != std::string::npos && std::stol(text.substr(end + 4)) == parent)
                children.push_back(static_cast<pid_t>(std::stol(name)));
        }
        return children;
    }
};
