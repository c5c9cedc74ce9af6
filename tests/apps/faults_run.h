// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <string>
#include <thread>

#include "tests/apps/tool_run.h"
#include "tests/support/scoped_environment.h"

// Shared helpers of the tests of system failures.

inline constexpr std::array kFormats{"pdf", "ps", "eps", "svg", "png", "tiff", "pwg", "urf"};

/// A drawing whose output exceeds a hundred kilobytes in every format, more than a pipe can buffer.
inline std::string LargeDrawing() {
    std::string points;
    for (unsigned int i = 0; i < 20'000; ++i)
        points += std::to_string(i % 150 * 5) + "." + std::to_string(i * 7919 % 97) + "," +
                  std::to_string(i / 150 * 4 + i * 104'729 % 31) + "." + std::to_string(i * 15'485'863 % 89) +
                  " ";
    return "<svg width='780' height='600'><polyline fill='none' stroke='#125' stroke-width='0.4' points='" +
           points + "'/></svg>";
}

class FaultsTest : public ToolTest {
protected:
    FaultsTest() {
        WriteFile("a.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
        WriteFile("b.svg",
                  SmallDrawing("<text x='9' y='20' fill='black' font-family='Liberation Sans'>text</text>"));
        WriteFile("large.svg", LargeDrawing());
        std::filesystem::create_directories(Folder() / "out");
    }

    /// Names and contents of all files in a folder and its subfolders, including hidden ones.
    std::map<std::string, std::string> FilesIn(const std::string& folder) const {
        std::map<std::string, std::string> files;
        if (!Exists(folder)) return files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder() / folder))
            if (entry.is_regular_file()) {
                const std::string name = std::filesystem::relative(entry.path(), Folder() / folder);
                files[name] = ReadFile(std::filesystem::path(folder) / name);
            }
        return files;
    }
    void ClearOutputs() const {
        std::filesystem::remove_all(Folder() / "out");
        std::filesystem::create_directories(Folder() / "out");
    }
    /// Runs a shell command line in which $0 is the orvprint command.
    ToolRun Shell(const std::string& line) const { return RunProgram({"bash", "-c", line, ORV_TOOL_PATH}); }

    RunningTool Start(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), ORV_TOOL_PATH);
        return StartProgram(arguments);
    }

private:
    const ScopedEnvironment day_{"SOURCE_DATE_EPOCH", "0"};  // makes output reproducible
};

/// Expects a single error line with this start and this part.
inline void ExpectLine(const ToolRun& run, const std::string& start, const std::string& part) {
    EXPECT_THAT(run.errors, testing::StartsWith("orvprint: " + start));
    EXPECT_THAT(run.errors, testing::HasSubstr(part));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
}

class WaitingTest : public FaultsTest {
protected:
    WaitingTest() { EXPECT_EQ(mkfifo((Folder() / "waits.svg").c_str(), 0600), 0); }

    /// Opens the input as soon as the command reads it.
    /// @return -1 if the command ended without reading it
    int Open(const RunningTool& running) const {
        const std::string path = Folder() / "waits.svg";
        while (!HasEnded(running)) {
            const int descriptor = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            if (descriptor >= 0) return descriptor;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return -1;
    }
    static void Feed(int descriptor) {
        const std::string text = SmallDrawing("");
        EXPECT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(descriptor);
    }

    /// Runs a shell command line with the shortest time limit that suffices for all drawings before the one
    /// that blocks. It depends on the machine's load.
    struct Bounded {
        ToolRun run;
        std::string limit;
    };
    Bounded ShellWithTime(const std::string& line) const {
        Bounded bounded;
        for (const char* limit : {"0.2", "2", "20", "200"}) {
            ClearOutputs();
            bounded = {Shell(line + " --time-limit " + limit), limit};
            if (bounded.run.errors.find("a.svg: takes") == std::string::npos &&
                bounded.run.errors.find("b.svg: takes") == std::string::npos)
                break;
        }
        return bounded;
    }

private:
    static bool HasEnded(const RunningTool& running) {
        siginfo_t ended{};
        const int result = waitid(P_PID, static_cast<id_t>(running.pid), &ended, WEXITED | WNOHANG | WNOWAIT);
        return result != 0 || ended.si_pid != 0;
    }
};
