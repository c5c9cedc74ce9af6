// SPDX-License-Identifier: Apache-2.0

// Signals that end the command leave complete files or none.

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <map>
#include <thread>

#include "tests/apps/faults_run.h"

namespace {

using testing::IsEmpty;

/// For any signal at any time, the output folder then holds only files that are the same as after an
/// undisturbed run.
class SignalTest : public WaitingTest {
protected:
    using Files = std::map<std::string, std::string>;

    // The workers of a killed batch end soon after it. The test becomes their parent to wait for them: none
    // may write into the output folder of the next run.
    SignalTest() { EXPECT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0); }
    ~SignalTest() override { prctl(PR_SET_CHILD_SUBREAPER, 0); }

    static void WaitForWorkers() {
        while (waitpid(-1, nullptr, 0) > 0 || errno == EINTR) {
        }
    }
    /// Sends the signal while the command waits for its last input, with work done and a file begun.
    void SendWhileItWaits(const std::vector<std::string>& arguments, int signal, const Files& whole) {
        ClearOutputs();
        const RunningTool running = Start(arguments);
        const int pipe = Open(running);
        EXPECT_GE(pipe, 0);
        kill(running.pid, signal);
        const ToolRun run = WaitFor(running);
        close(pipe);
        WaitForWorkers();
        EXPECT_EQ(run.signal, signal) << run.exitCode << " " << run.errors;
        ExpectWholeFiles(whole, signal, "while it waited");
    }

    /// Sends the signal at several times, spread evenly over the command's running time.
    void SendAtManyTimes(const std::vector<std::string>& arguments, int signal) {
        ClearOutputs();
        const auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(Run(arguments).exitCode, 0);
        const auto duration = std::chrono::steady_clock::now() - start;
        const Files whole = FilesIn("out");
        ASSERT_FALSE(whole.empty());
        constexpr int kTimes = 10;
        for (int time = 0; time < kTimes; ++time) {
            ClearOutputs();
            const RunningTool running = Start(arguments);
            std::this_thread::sleep_for(duration * time / kTimes);
            kill(running.pid, signal);
            const ToolRun run = WaitFor(running);
            WaitForWorkers();
            EXPECT_TRUE(run.signal == signal || run.exitCode == 0) << run.signal << " " << run.exitCode;
            ExpectWholeFiles(whole, signal,
                             "after " + std::to_string(time) + " of " + std::to_string(kTimes) + " parts");
        }
    }

private:
    void ExpectWholeFiles(const Files& whole, int signal, const std::string& when) const {
        for (const auto& [name, bytes] : FilesIn("out")) {
            // A killed process cannot clean up its temporary files.
            if (signal == SIGKILL && name.front() == '.') continue;
            const auto found = whole.find(name);
            ASSERT_NE(found, whole.end()) << name << " is left, signal " << signal << " " << when;
            EXPECT_TRUE(bytes == found->second) << name << " is not whole, signal " << signal << " " << when;
        }
    }
};

constexpr std::array kEndSignals{SIGTERM, SIGINT, SIGHUP, SIGKILL};
// Sent by users, timers and limits.
const std::vector<int> kRareSignals{SIGQUIT, SIGUSR1, SIGUSR2, SIGALRM,  SIGVTALRM, SIGPROF,
                                    SIGXCPU, SIGPOLL, SIGPWR,  SIGRTMIN, SIGRTMAX};
#if !defined(ORV_SANITIZED)  // sanitizers handle these
constexpr std::array kCrashes{SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};
#endif

TEST_F(SignalTest, LeaveWholeFilesOfABatch) {
    std::vector<std::string> arguments;
    for (int i = 0; i < 12; ++i) {
        const std::string name = "in" + std::to_string(i) + ".svg";
        WriteFile(name, ReadFile(i % 3 == 0 ? "large.svg" : "b.svg"));
        arguments.push_back(name);
    }
    arguments.insert(arguments.end(), {"--out-dir", "out", "-f", "pdf", "-j", "2", "--quiet"});
    for (const int signal : kEndSignals) SendAtManyTimes(arguments, signal);
}

TEST_F(SignalTest, LeaveWholeFilesOfABatchThatWaits) {
    const std::vector<std::string> options{"--out-dir", "out", "-f", "pdf", "-j", "2", "--quiet"};
    std::vector<std::string> arguments{"a.svg", "large.svg", "b.svg"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ASSERT_EQ(Run(arguments).exitCode, 0);
    const Files whole = FilesIn("out");
    ASSERT_THAT(whole, testing::SizeIs(3));
    arguments.insert(arguments.begin() + 3, "waits.svg");
    for (const int signal : kEndSignals) SendWhileItWaits(arguments, signal, whole);
}

TEST_F(SignalTest, LeaveAWholeFileOrNone) {
    for (const char* output : {"out/x.pdf", "out/x.png"})
        for (const int signal : kEndSignals)
            SendAtManyTimes({"large.svg", "b.svg", "large.svg", "-o", output, "--dpi", "200"}, signal);
}

TEST_F(SignalTest, LeaveNothingOfAFileThatWaits) {
    for (const char* format : kFormats)
        for (const int signal : kEndSignals)
            SendWhileItWaits({"large.svg", "waits.svg", "-o", std::string("out/x.") + format}, signal, {});
}

TEST_F(SignalTest, RareOnesLeaveNothingOfAFileThatWaits) {
    for (const int signal : kRareSignals)
        SendWhileItWaits({"large.svg", "waits.svg", "-o", "out/x.pdf"}, signal, {});
}

#if !defined(ORV_SANITIZED)
TEST_F(SignalTest, CrashesLeaveNothingOfAFileThatWaits) {
    for (const int signal : kCrashes)
        SendWhileItWaits({"large.svg", "waits.svg", "-o", "out/x.pdf"}, signal, {});
}
#endif

TEST_F(SignalTest, RareOnesLeaveWholeFilesOfABatchThatWaits) {
    const std::vector<std::string> options{"--out-dir", "out", "-f", "pdf", "-j", "2", "--quiet"};
    std::vector<std::string> arguments{"a.svg", "b.svg"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ASSERT_EQ(Run(arguments).exitCode, 0);
    const Files whole = FilesIn("out");
    arguments.insert(arguments.begin() + 2, "waits.svg");
    for (const int signal : kRareSignals) SendWhileItWaits(arguments, signal, whole);
}

TEST_F(SignalTest, TheLimitOfProcessorTimeLeavesNothing) {
    ClearOutputs();
    std::string pages = "<svg>";
    for (int i = 0; i < 40; ++i) pages += LargeDrawing();
    WriteFile("pages.svg", pages + "</svg>");
    const ToolRun run = RunProgram({"bash", "-c", "ulimit -S -t 1; exec \"$@\"", "bash", ORV_TOOL_PATH,
                                    "pages.svg", "-o", "out/x.png", "--dpi", "1200"});
    EXPECT_EQ(run.signal, SIGXCPU);
    EXPECT_THAT(FilesIn("out"), testing::IsEmpty());
}

// Workers must not outlive a killed main process. This one would wait forever.
TEST_F(SignalTest, WorkersEndWithTheProcessThatWasKilled) {
    ClearOutputs();
    const RunningTool running =
        Start({"a.svg", "waits.svg", "--out-dir", "out", "-f", "pdf", "-j", "1", "--quiet"});
    const int pipe = Open(running);
    ASSERT_GE(pipe, 0);
    kill(running.pid, SIGKILL);
    EXPECT_EQ(WaitFor(running).signal, SIGKILL);
    int status = 0;
    pid_t worker = 0;
    constexpr int kTries = 1000;
    for (int i = 0; i < kTries && worker == 0; ++i) {
        worker = waitpid(-1, &status, WNOHANG);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    close(pipe);
    ASSERT_GT(worker, 0) << "it goes on";
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
}

}  // namespace
