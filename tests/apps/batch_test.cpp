// SPDX-License-Identifier: Apache-2.0

// Many inputs, each to a file of its own: names, failures, workers that die, signals, what a terminal shows.

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "apps/orvprint/commands/batch_names.h"
#include "apps/orvprint/commands/progress.h"
#include "tests/apps/tool_run.h"
#include "tests/support/sample_images.h"

namespace fs = std::filesystem;

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Clock = std::chrono::steady_clock;

// Only there to end a test that would wait for ever.
Clock::time_point Deadline() { return Clock::now() + std::chrono::seconds(60); }
void Breathe() { std::this_thread::sleep_for(std::chrono::milliseconds(2)); }

class BatchTest : public ToolTest {
protected:
    BatchTest() {
        WriteFile("a.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
        WriteFile("b.svg", SmallDrawing("<rect width='9' height='9' fill='blue'/>"));
        WriteFile("two.svg", "<svg><svg width='9' height='9'/><svg width='18' height='9'/></svg>");
        WriteFile("bad.svg", "<svg width='9' height='9'>\n <g></svg>");
    }

    /// Names in a folder, hidden ones too, sorted.
    std::vector<std::string> FilesIn(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(Folder() / folder))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    RunningTool Start(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), ORV_TOOL_PATH);
        return StartProgram(arguments);
    }

    /// Opens a named pipe for writing as soon as the command reads it.
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
        for (const auto& entry : fs::directory_iterator("/proc")) {
            const std::string name = entry.path().filename();
            if (!std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; })) continue;
            std::ifstream stream(entry.path() / "stat");
            std::string text((std::istreambuf_iterator<char>(stream)), {});
            // "PID (NAME) STATE PARENT ..."
            const std::size_t end = text.rfind(") ");
            if (end != std::string::npos && std::stol(text.substr(end + 4)) == parent)
                children.push_back(static_cast<pid_t>(std::stol(name)));
        }
        return children;
    }
};

TEST_F(BatchTest, ConvertsEachInputToAFileOfItsOwn) {
    fs::create_directories(Folder() / "in");
    fs::rename(Folder() / "b.svg", Folder() / "in/B.SVG");
    WriteFile("r.qvxml", "<r>" + SmallDrawing("") + "</r>");
    const ToolRun run = Run(
        {"a.svg", "in/B.SVG", "r.qvxml", "--out-dir", "out/deep", "-f", "png", "-j", "2", "--dpi", "180"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, testing::MatchesRegex("orvprint: 3 of 3 converted, 0 failed, [0-9.]+ s\n"));
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(FilesIn("out/deep"), ElementsAre("B.png", "a.png", "r.png"));

    ASSERT_EQ(Run({"a.svg", "-o", "a.png", "--dpi", "180"}).exitCode, 0);
    ASSERT_EQ(Run({"in/B.SVG", "-o", "B.png", "--dpi", "180"}).exitCode, 0);
    EXPECT_EQ(ReadFile("out/deep/a.png"), ReadFile("a.png"));
    EXPECT_EQ(ReadFile("out/deep/B.png"), ReadFile("B.png"));
}

TEST_F(BatchTest, PagesOfPicturesAreNumbered) {
    const ToolRun run = Run({"a.svg", "two.svg", "--out-dir", "out/", "-f", "png"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.png", "two-1.png", "two-2.png"));
    EXPECT_EQ(Run({"two.svg", "--out-dir", "second", "-f", "png", "--pages", "2"}).exitCode, 0);
    EXPECT_THAT(FilesIn("second"), ElementsAre("two.png"));
}

TEST_F(BatchTest, ReplacesWhatWasThereBeforeAndKeepsItsMode) {
    WriteFile("out/a.pdf", "old");
    fs::permissions(Folder() / "out/a.pdf", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(Run({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf"}).exitCode, 0);
    EXPECT_THAT(ReadFile("out/a.pdf"), StartsWith("%PDF"));
    EXPECT_EQ(fs::status(Folder() / "out/a.pdf").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_EQ(Run({"b.svg", "-o", "single.pdf"}).exitCode, 0);
    EXPECT_EQ(fs::status(Folder() / "out/b.pdf").permissions(),
              fs::status(Folder() / "single.pdf").permissions());
}

TEST_F(BatchTest, ManyInputsAreSharedByFewWorkers) {
    std::vector<std::string> arguments{"--out-dir", "out", "-f", "pdf", "-j", "3"};
    for (int i = 0; i < 120; ++i) {
        const std::string name = "many/d" + std::to_string(i) + ".svg";
        WriteFile(name, SmallDrawing("<text y='20' fill='black'>number" + std::to_string(i) + "</text>"));
        arguments.push_back(name);
    }
    const ToolRun run = Run(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, StartsWith("orvprint: 120 of 120 converted, 0 failed"));
    EXPECT_EQ(FilesIn("out").size(), 120U);
    for (const char* number : {"0", "57", "119"})
        EXPECT_THAT(RunProgram({"pdftotext", std::string("out/d") + number + ".pdf", "-"}).output,
                    StartsWith(std::string("number") + number + "\n"));
}

TEST_F(BatchTest, TwoInputsOfOneNameAreRefusedBeforeAnythingIsDone) {
    WriteFile("in/a.svg", SmallDrawing(""));
    WriteFile("a.svgz", SmallDrawing(""));
    for (const char* second : {"in/a.svg", "a.svgz", "a.svg", "./a.svg"}) {
        const ToolRun run = Run({"b.svg", "a.svg", second, "--out-dir", "out", "-f", "pdf", "--keep-going"});
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.errors,
                  std::string("orvprint: --out-dir: both a.svg and ") + second + " would become out/a.pdf\n");
        EXPECT_FALSE(Exists("out"));
    }
}

TEST_F(BatchTest, NumbersThatMakeNamesAlikeFail) {
    fs::copy_file(Folder() / "a.svg", Folder() / "two-1.svg");
    for (const bool isFirst : {true, false}) {
        std::vector<std::string> arguments{"--out-dir", "out", "-f", "png", "-j", "1", "two-1.svg"};
        arguments.insert(isFirst ? arguments.end() : arguments.begin(), "two.svg");
        const ToolRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 8);
        EXPECT_THAT(run.errors, HasSubstr("out/two-1.png: would come from two"));
        EXPECT_EQ(FilesIn("out").size(), isFirst ? 1U : 2U);
        fs::remove_all(Folder() / "out");
    }
}

TEST_F(BatchTest, OutputsNeverReplaceInputs) {
    const std::string before = ReadFile("a.svg");
    fs::create_directories(Folder() / "out");
    fs::create_hard_link(Folder() / "a.svg", Folder() / "out/b.pdf");
    const ToolRun run = Run({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "--keep-going"});
    EXPECT_EQ(run.exitCode, 8);
    EXPECT_EQ(run.errors, "orvprint: out/b.pdf: is an input; choose another folder\n");
    EXPECT_THAT(FilesIn("out"), ElementsAre("b.pdf"));

    // Where input and output are of one format.
    const ToolRun same = Run({"a.svg", "b.svg", "--out-dir", ".", "-f", "svg"});
    EXPECT_EQ(same.exitCode, 8);
    EXPECT_EQ(same.errors, "orvprint: ./a.svg: is an input; choose another folder\n");

    // A name that shows only when the pages are counted.
    fs::create_hard_link(Folder() / "a.svg", Folder() / "out/two-2.png");
    const ToolRun numbered =
        Run({"two.svg", "b.svg", "a.svg", "--out-dir", "out", "-f", "png", "--keep-going"});
    EXPECT_EQ(numbered.exitCode, 11);
    EXPECT_THAT(numbered.errors, HasSubstr("out/two-2.png: is an input"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.png", "b.pdf", "b.png", "two-2.png"));
    EXPECT_EQ(ReadFile("a.svg"), before);
}

TEST_F(BatchTest, StopsAtTheFirstFailureWithItsCode) {
    const ToolRun run =
        Run({"a.svg", "bad.svg", "two.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "-j", "1"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, StartsWith("orvprint: bad.svg:2:"));
    EXPECT_THAT(run.errors, HasSubstr("\norvprint: failed: bad.svg:2:"));
    EXPECT_THAT(run.errors, HasSubstr("\norvprint: 1 of 4 converted, 1 failed, 2 not done, "));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
    EXPECT_EQ(Run({"two.svg", "a.svg", "--out-dir", "out", "-f", "pdf", "-j", "1", "--pages", "2"}).exitCode,
              6);
}

// What was under way when the first input failed may fail later, and otherwise.
TEST_F(BatchTest, TheFirstFailureGivesTheCodeWhateverFailsBesides) {
    MakePipe("late.svg");
    const RunningTool running =
        Start({"late.svg", "bad.svg", "a.svg", "--out-dir", "out", "-f", "pdf", "-j", "2", "--quiet"});
    const int pipe = OpenForTool("late.svg");
    ASSERT_GE(pipe, 0);
    const auto said = [&] {
        std::ifstream stream(running.err);
        return std::string((std::istreambuf_iterator<char>(stream)), {});
    };
    for (const auto deadline = Deadline(); said().empty() && Clock::now() < deadline;) Breathe();
    EXPECT_THAT(said(), HasSubstr("bad.svg:2:"));
    Feed(pipe, "<nothing/>");
    const ToolRun run = WaitFor(running);
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("late.svg: has no page"));
}

TEST_F(BatchTest, GoesOnWhenAsked) {
    WriteFile("flat.svg", "<svg width='0' height='9'><rect width='0' height='9'/></svg>");
    for (const char* jobs : {"1", "2", "7"}) {
        const ToolRun run = Run({"flat.svg", "a.svg", "missing.svg", "bad.svg", "b.svg", "--out-dir", "out",
                                 "-f", "pdf", "-j", jobs, "--keep-going"});
        EXPECT_EQ(run.exitCode, 11);
        for (const char* name : {"flat.svg: page 1 has no area", "missing.svg: ", "bad.svg:2:"}) {
            EXPECT_THAT(run.errors, HasSubstr(std::string("orvprint: ") + name));
            EXPECT_THAT(run.errors, HasSubstr(std::string("orvprint: failed: ") + name));
        }
        EXPECT_THAT(run.errors, HasSubstr("\norvprint: 2 of 5 converted, 3 failed, "));
        EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "b.pdf")) << "nothing of a broken document";
        fs::remove_all(Folder() / "out");
    }
}

TEST_F(BatchTest, PagesBesideOneWithoutAreaArePrinted) {
    WriteFile("set.svg", "<svg><svg width='90' height='90'/><svg width='0' height='9'/></svg>");
    const ToolRun run = Run({"set.svg", "a.svg", "--out-dir", "out", "-f", "pdf", "--keep-going"});
    EXPECT_EQ(run.exitCode, 11);
    EXPECT_THAT(run.errors, HasSubstr("orvprint: failed: set.svg: page 2 has no area"));
    EXPECT_THAT(run.errors, HasSubstr("\norvprint: 1 of 2 converted, 1 failed, "));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "set.pdf"));
}

TEST_F(BatchTest, StrictnessIsAFailureOfTheInputAtFault) {
    WriteFile("odd.svg", SmallDrawing("<rect width='9' height='9' fill='no-colour'/>"));
    const std::vector<std::string> arguments{"odd.svg", "a.svg", "--out-dir", "out", "-f", "pdf", "--strict"};
    EXPECT_EQ(Run(arguments).exitCode, 1);
    std::vector<std::string> goingOn = arguments;
    goingOn.push_back("--keep-going");
    const ToolRun run = Run(goingOn);
    EXPECT_EQ(run.exitCode, 11);
    EXPECT_THAT(run.errors, HasSubstr("1 of 2 converted, 1 failed"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
}

TEST_F(BatchTest, InputThatIsMissingIsToldBeforeAnythingIsDone) {
    const ToolRun run = Run({"a.svg", "missing.svg", "--out-dir", "out", "-f", "pdf"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, StartsWith("orvprint: missing.svg: "));
    EXPECT_FALSE(Exists("out"));
}

TEST_F(BatchTest, CommandLineThatMakesNoSense) {
    const auto expect = [&](std::vector<std::string> arguments, int code, const char* words) {
        const ToolRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, code) << words;
        EXPECT_THAT(run.errors, HasSubstr(words));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_FALSE(Exists("out"));
    };
    expect({"a.svg", "--out-dir", "out"}, 7, "give it with -f: pdf");
    expect({"a.svg", "--out-dir", "out", "-f", "xyz"}, 7, "xyz: unknown output format");
    expect({"a.svg", "-", "--out-dir", "out", "-f", "pdf"}, 2, "standard input: has no name");
    expect({"a.svg", "--out-dir", "out", "-f", "pdf", "-o", "x.pdf"}, 2, "cannot be combined");
    expect({"a.svg", "-o", "x.pdf", "-j", "2"}, 2, "--out-dir");
    expect({"a.svg", "--out-dir", "out", "-f", "pdf", "-j", "0"}, 2, "--jobs");
    expect({"a.svg", "--out-dir", "out", "-f", "pdf", "-j", "1025"}, 2, "--jobs");
    expect({"--out-dir", "out", "-f", "pdf"}, 2, "no input");
    expect({"..", "--out-dir", "out", "-f", "pdf"}, 2, ".. names no file");
    expect({"a.svg", "--out-dir", "b.svg", "-f", "pdf"}, 8, "b.svg: ");
}

TEST_F(BatchTest, FolderInTheWayOfAnOutputIsAFailure) {
    fs::create_directories(Folder() / "out/a.pdf");
    const ToolRun run = Run({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "--keep-going"});
    EXPECT_EQ(run.exitCode, 11);
    EXPECT_THAT(run.errors, StartsWith("orvprint: out/a.pdf: is a folder\n"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "b.pdf"));
}

TEST_F(BatchTest, MessagesNameTheOutputByItsPlace) {
    WriteFile("vast.svg", "<svg width='99999' height='99999'/>");
    const ToolRun run = Run({"vast.svg", "--out-dir", "out", "-f", "pdf"});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, AllOf(StartsWith("orvprint: vast.svg: "), Not(HasSubstr(".orvprint-"))));
    EXPECT_THAT(FilesIn("out"), IsEmpty());
}

TEST_F(BatchTest, QuietSaysOnlyWhatWentWrong) {
    EXPECT_THAT(Run({"a.svg", "--out-dir", "out", "-f", "pdf", "--quiet"}).errors, IsEmpty());
    const ToolRun run = Run({"bad.svg", "--out-dir", "out", "-f", "pdf", "--quiet"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
}

TEST_F(BatchTest, WorkerThatIsKilledIsAFailureOfItsInput) {
    MakePipe("waits.svg");
    const RunningTool running = Start({"a.svg", "waits.svg", "b.svg", "two.svg", "--out-dir", "out", "-f",
                                       "pdf", "-j", "1", "--keep-going"});
    const int pipe = OpenForTool("waits.svg");
    const std::vector<pid_t> workers = ChildrenOf(running.pid);
    EXPECT_EQ(workers.size(), 1U);
    for (const pid_t worker : workers) kill(worker, SIGKILL);
    const ToolRun run = WaitFor(running);
    close(pipe);
    EXPECT_EQ(run.exitCode, 11);
    EXPECT_THAT(run.errors, StartsWith("orvprint: waits.svg: its worker process was ended by signal 9 "));
    EXPECT_THAT(run.errors, HasSubstr("\norvprint: failed: waits.svg: its worker process"));
    EXPECT_THAT(run.errors, HasSubstr("3 of 4 converted, 1 failed"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "b.pdf", "two.pdf"));
}

TEST_F(BatchTest, WorkerThatIsKilledEndsABatchThatMayNotGoOn) {
    MakePipe("waits.svg");
    const RunningTool running =
        Start({"a.svg", "waits.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "-j", "1"});
    const int pipe = OpenForTool("waits.svg");
    for (const pid_t worker : ChildrenOf(running.pid)) kill(worker, SIGSEGV);
    const ToolRun run = WaitFor(running);
    close(pipe);
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, HasSubstr("1 of 3 converted, 1 failed, 1 not done"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
}

TEST_F(BatchTest, SignalsEndItWithWholeFilesOnly) {
    MakePipe("waits.svg");
    MakePipe("waits-too.svg");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const RunningTool running = Start(
            {"a.svg", "waits.svg", "waits-too.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "-j", "2"});
        const int first = OpenForTool("waits.svg"), second = OpenForTool("waits-too.svg");
        const std::vector<pid_t> workers = ChildrenOf(running.pid);
        EXPECT_EQ(workers.size(), 2U);
        kill(running.pid, signal);
        const ToolRun run = WaitFor(running);
        EXPECT_EQ(run.signal, signal);
        EXPECT_THAT(run.errors, StartsWith("orvprint: interrupted: 1 of 4 converted, 0 failed, 3 not done"));
        EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
        for (const pid_t worker : workers) EXPECT_NE(kill(worker, 0), 0) << "a worker goes on";
        close(first);
        close(second);
        fs::remove_all(Folder() / "out");
    }
}

// As nohup has it, and shells for what runs in the background.
TEST_F(BatchTest, SignalsThatAreIgnoredStayIgnored) {
    MakePipe("waits.svg");
    for (const char* name : {"HUP", "INT", "USR1"}) {
        const std::string command =
            std::string("trap '' ") + name + "; exec '" ORV_TOOL_PATH "' waits.svg -o out.pdf";
        const RunningTool running = StartProgram({"bash", "-c", command});
        const int pipe = OpenForTool("waits.svg");
        ASSERT_GE(pipe, 0);
        EXPECT_EQ(RunProgram({"bash", "-c", std::string("kill -") + name + " " + std::to_string(running.pid)})
                      .exitCode,
                  0);
        // Nobody reads if the signal has ended the program.
        const auto handler = std::signal(SIGPIPE, SIG_IGN);
        Feed(pipe, SmallDrawing(""));
        std::signal(SIGPIPE, handler);
        const ToolRun run = WaitFor(running);
        EXPECT_EQ(run.exitCode, 0) << name << run.errors;
        EXPECT_TRUE(Exists("out.pdf")) << name;
        fs::remove(Folder() / "out.pdf");
    }
}

TEST_F(BatchTest, SignalsLeaveNothingOfASingleOutputEither) {
    MakePipe("waits.svg");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        WriteFile("out/all.pdf", "old");
        const RunningTool running = Start({"a.svg", "waits.svg", "-o", "out/all.pdf"});
        const int pipe = OpenForTool("waits.svg");
        EXPECT_EQ(FilesIn("out").size(), 2U) << "the output has begun";
        kill(running.pid, signal);
        EXPECT_EQ(WaitFor(running).signal, signal);
        EXPECT_THAT(FilesIn("out"), ElementsAre("all.pdf"));
        EXPECT_EQ(ReadFile("out/all.pdf"), "old");
        close(pipe);
    }
}

// ---- a single output, and the inputs ----

class OutputOverInputTest : public BatchTest {
protected:
    void ExpectRefused(const std::vector<std::string>& arguments, const std::string& output) {
        const std::string before = ReadFile("a.svg");
        const ToolRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 8);
        EXPECT_EQ(run.errors, "orvprint: " + output + ": is an input; choose another name\n");
        EXPECT_EQ(ReadFile("a.svg"), before);
    }
};

/// Drawings that show p.png, and p.png itself.
class ImagesAreInputsTest : public BatchTest {
protected:
    ImagesAreInputsTest() {
        EXPECT_EQ(Run({"a.svg", "-o", "p.png"}).exitCode, 0);
        image_ = ReadFile("p.png");
        WriteFile("p.svg", ReadFile("b.svg"));
        WriteFile("shows.svg", SmallDrawing("<image width='9' height='9' xlink:href='p.png'/>"));
    }
    void ExpectRefused(const std::vector<std::string>& arguments, const std::string& output,
                       const std::string& what = "is an input; choose another name") {
        const std::vector<std::string> before = Files();
        const ToolRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 8);
        EXPECT_EQ(run.errors, "orvprint: " + output + ": " + what + "\n");
        EXPECT_EQ(ReadFile("p.png"), image_);
        EXPECT_EQ(Files(), before);
    }
    std::string image_;
};

TEST_F(ImagesAreInputsTest, ASingleOutputReplacesNone) {
    ExpectRefused({"shows.svg", "-o", "p.png"}, "p.png");
    ExpectRefused({"shows.svg", "-f", "pdf", "-o", "./p.png"}, "./p.png");
    // The image is read when the output has begun.
    ExpectRefused({"a.svg", "shows.svg", "-f", "pdf", "-o", "p.png"}, "p.png");
    ExpectRefused({"--strict", "--ignore", "image-stretched", "shows.svg", "-o", "p.png"}, "p.png");
    fs::create_symlink("p.png", Folder() / "link.png");
    fs::create_hard_link(Folder() / "p.png", Folder() / "pages-2.png");
    ExpectRefused({"shows.svg", "-o", "link.png"}, "link.png");
    // One of several files: none of them is made.
    ExpectRefused({"two.svg", "shows.svg", "-o", "pages.png"}, "pages.png");
    // Another drawing may.
    EXPECT_EQ(Run({"b.svg", "-o", "p.png"}).exitCode, 0);
    EXPECT_NE(ReadFile("p.png"), image_);
}

TEST_F(ImagesAreInputsTest, ABatchReplacesNoneInWhateverOrder) {
    for (const std::vector<std::string>& inputs : {std::vector<std::string>{"p.svg", "shows.svg"},
                                                   {"shows.svg", "p.svg"},
                                                   {"p.svg", "b.svg", "shows.svg"}})
        for (const char* jobs : {"1", "2"}) {
            std::vector<std::string> command = inputs;
            command.insert(command.end(),
                           {"--out-dir", ".", "-f", "png", "-j", jobs, "--keep-going", "--quiet"});
            const ToolRun run = Run(command);
            EXPECT_EQ(run.exitCode, 11);
            EXPECT_EQ(run.errors, "orvprint: ./p.png: is an input; choose another folder\n");
            EXPECT_EQ(ReadFile("p.png"), image_);
            EXPECT_TRUE(Exists("shows.png"));
            EXPECT_THAT(FilesIn("."), Not(testing::Contains(StartsWith(".orvprint"))));
        }
    WriteFile("own.svg", SmallDrawing("<image width='9' height='9' xlink:href='own.png'/>"));
    WriteFile("own.png", image_);
    EXPECT_EQ(Run({"own.svg", "--out-dir", ".", "-f", "png"}).exitCode, 8);
    EXPECT_EQ(ReadFile("own.png"), image_);
}

// What an output would replace is told by its first bytes, not by its name.
TEST_F(ImagesAreInputsTest, ABatchReplacesNoImageOfAnyKind) {
    const std::string bitmap =
        std::string("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30) +
        std::string(24, '\0') + std::string("\0\0\xFF\0", 4);
    for (const std::string& image : {image_, SampleJpeg(6, 4), bitmap}) {
        WriteFile("p.png", image);
        const ToolRun run = Run({"p.svg", "b.svg", "shows.svg", "--out-dir", ".", "-f", "png", "-j", "1",
                                 "--keep-going", "--quiet"});
        EXPECT_EQ(run.exitCode, 11);
        EXPECT_EQ(run.errors, "orvprint: ./p.png: is an input; choose another folder\n");
        EXPECT_EQ(ReadFile("p.png"), image);
    }
}

TEST_F(ImagesAreInputsTest, ABatchReplacesOldImagesThatNobodyShows) {
    for (const char* name : {"a.png", "b.png", "p.png"}) WriteFile(std::string("out/") + name, image_);
    const ToolRun run = Run({"a.svg", "b.svg", "p.svg", "shows.svg", "--out-dir", "out", "-f", "png"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("4 of 4 converted, 0 failed"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.png", "b.png", "p.png", "shows.png"));
    EXPECT_EQ(ReadFile("out/a.png"), image_);
    EXPECT_NE(ReadFile("out/b.png"), image_);
    EXPECT_EQ(ReadFile("out/p.png"), ReadFile("out/b.png"));
    // After a failure, what was converted before takes its place all the same.
    WriteFile("out/b.png", image_);
    EXPECT_EQ(Run({"b.svg", "bad.svg", "--out-dir", "out", "-f", "png", "-j", "1"}).exitCode, 4);
    EXPECT_NE(ReadFile("out/b.png"), image_);
}

TEST_F(ImagesAreInputsTest, FontsAreNoOutputs) {
    for (const std::string& start :
         {std::string("\0\1\0\0", 4), std::string("OTTO"), std::string("ttcf"), std::string("true"),
          std::string("wOFF"), std::string("wOF2"), std::string("\x80\1"), std::string("%!PS-AdobeFont-1.0"),
          std::string("%!FontType1"), std::string("\1fcp"), std::string("STARTFONT 2.1")}) {
        WriteFile("font.png", start + std::string(100, 'x'));
        ExpectRefused({"b.svg", "-o", "font.png"}, "font.png", "is a font; choose another name");
    }
    EXPECT_EQ(Run({"b.svg", "a.svg", "--out-dir", "out", "-f", "png"}).exitCode, 0);
    WriteFile("out/b.png", ReadFile("font.png"));
    EXPECT_THAT(Run({"b.svg", "--out-dir", "out", "-f", "png"}).errors, HasSubstr("out/b.png: is a font"));
    WriteFile("b.ps", "%!PS-Adobe-3.0\n");
    EXPECT_EQ(Run({"b.svg", "-o", "b.ps"}).exitCode, 0);
}

TEST_F(OutputOverInputTest, IsRefusedUnderEveryName) {
    ExpectRefused({"a.svg", "-f", "pdf", "-o", "a.svg"}, "a.svg");
    ExpectRefused({"b.svg", "a.svg", "-f", "pdf", "-o", "./a.svg"}, "./a.svg");
    fs::create_hard_link(Folder() / "a.svg", Folder() / "hard.pdf");
    ExpectRefused({"a.svg", "-o", "hard.pdf"}, "hard.pdf");
    fs::create_symlink("a.svg", Folder() / "soft.pdf");
    ExpectRefused({"a.svg", "-o", "soft.pdf"}, "soft.pdf");
    EXPECT_TRUE(fs::is_symlink(Folder() / "soft.pdf"));
}

TEST_F(OutputOverInputTest, IsRefusedForNumberedPagesAndStandardInput) {
    fs::create_hard_link(Folder() / "a.svg", Folder() / "p-3.png");
    ExpectRefused({"two.svg", "a.svg", "-o", "p.png"}, "p.png");
    EXPECT_FALSE(Exists("p-1.png"));

    const std::string before = ReadFile("a.svg");
    const ToolRun run =
        RunProgram({"bash", "-c", std::string("'") + ORV_TOOL_PATH + "' - -f pdf -o a.svg < a.svg"});
    EXPECT_EQ(run.exitCode, 8);
    EXPECT_EQ(ReadFile("a.svg"), before);
}

// ---- on a terminal ----

/// The command with standard error on a terminal.
class TerminalTest : public BatchTest {
protected:
    void SetUp() override {
        int terminal = -1, other = -1;
        if (openpty(&terminal, &other, nullptr, nullptr, nullptr) != 0)
            GTEST_SKIP() << "this system has no terminals to give";
        close(terminal);
        close(other);
    }
    ~TerminalTest() override {
        if (terminal_ >= 0) close(terminal_);
    }

    void StartOnTerminal(std::vector<std::string> arguments, const char* kind = "xterm") {
        arguments.insert(arguments.begin(), ORV_TOOL_PATH);
        if (terminal_ >= 0) close(terminal_);
        winsize size{24, 60, 0, 0};
        pid_ = forkpty(&terminal_, nullptr, nullptr, &size);
        if (pid_ == 0) {
            TakeDefaultSignals();
            setenv("TERM", kind, 1);
            if (chdir(Folder().c_str()) != 0) _exit(126);
            std::vector<char*> words;
            for (const std::string& argument : arguments)
                words.push_back(const_cast<char*>(argument.c_str()));
            words.push_back(nullptr);
            execv(words.front(), words.data());
            _exit(127);
        }
        ASSERT_GT(pid_, 0);
    }
    /// Reads until the terminal showed `text`; all there is, for an empty text.
    void ReadUntil(const std::string& text) {
        for (const auto deadline = Deadline(); Clock::now() < deadline;) {
            if (!text.empty() && shown_.find(text) != std::string::npos) return;
            pollfd wait{terminal_, POLLIN, 0};
            if (poll(&wait, 1, 100) <= 0) continue;
            std::array<char, 4096> block;
            const ssize_t got = read(terminal_, block.data(), block.size());
            if (got <= 0) return;  // the other side was closed
            shown_.append(block.data(), static_cast<std::size_t>(got));
        }
        FAIL() << "never shown: " << text << "\nbut: " << shown_;
    }
    int Wait() {
        ReadUntil("");
        int status = 0;
        waitpid(pid_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// What is seen once a terminal has carried out the erasures.
    std::string Visible() const {
        std::string text;
        for (std::size_t at = 0; at < shown_.size(); ++at) {
            if (shown_.compare(at, 4, "\r\033[K") == 0) {
                text.erase(text.rfind('\n') + 1);
                at += 3;
            } else if (shown_[at] == '\r' && shown_.compare(at, 2, "\r\n") != 0) {
                text.erase(text.rfind('\n') + 1);
            } else if (shown_.compare(at, 3, "\033[K") == 0) {
                at += 2;
            } else if (shown_[at] != '\r') {
                text += shown_[at];
            }
        }
        return text;
    }

    pid_t pid_ = -1;
    int terminal_ = -1;
    std::string shown_;
};

TEST_F(TerminalTest, ShowsHowFarItIsAndWipesThatInTheEnd) {
    MakePipe("waits.svg");
    StartOnTerminal({"a.svg", "bad.svg", "waits.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "-j", "1",
                     "--keep-going"});
    ReadUntil("2/4, 1 failed  waits.svg");
    EXPECT_THAT(Visible(), StartsWith("orvprint: bad.svg:2:"));
    EXPECT_THAT(Visible(), EndsWith("\n[############............] 2/4, 1 failed  waits.svg"));
    Feed(OpenForTool("waits.svg"), SmallDrawing(""));
    EXPECT_EQ(Wait(), 11);
    EXPECT_THAT(Visible(), testing::MatchesRegex("orvprint: bad.svg:2:[^\n]*\n"
                                                 "orvprint: failed: bad.svg:2:[^\n]*\n"
                                                 "orvprint: 3 of 4 converted, 1 failed, [0-9.]+ s\n"));
}

TEST_F(TerminalTest, IsWipedWhenInterruptedFromTheKeyboard) {
    MakePipe("waits.svg");
    StartOnTerminal({"a.svg", "waits.svg", "--out-dir", "out", "-f", "pdf", "-j", "1"});
    const int pipe = OpenForTool("waits.svg");
    ReadUntil("1/2  waits.svg");
    ASSERT_EQ(write(terminal_, "\x03", 1), 1);  // Ctrl-C: to the workers, too
    Wait();
    close(pipe);
    EXPECT_THAT(Visible(), HasSubstr("orvprint: interrupted: 1 of 2 converted, 0 failed, 1 not done"));
    EXPECT_THAT(Visible(), Not(HasSubstr("[###")));
    EXPECT_THAT(Visible(), Not(HasSubstr("worker")));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
}

TEST_F(TerminalTest, ShowsNothingWhenQuietOrUnableTo) {
    StartOnTerminal({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "--quiet"});
    EXPECT_EQ(Wait(), 0);
    EXPECT_EQ(shown_, "");
    StartOnTerminal({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf"}, "dumb");
    EXPECT_EQ(Wait(), 0);
    EXPECT_THAT(shown_, StartsWith("orvprint: 2 of 2 converted"));
}

TEST_F(BatchTest, ShowsNoProgressInAPipe) {
    const ToolRun run = Run({"a.svg", "b.svg", "--out-dir", "out", "-f", "pdf"});
    EXPECT_THAT(run.errors, AllOf(Not(HasSubstr("\r")), Not(HasSubstr("\033"))));
}

// ---- routines ----

TEST(ProgressLineTest, FitsTheTerminal) {
    EXPECT_EQ(ProgressLine(0, 8, 0, "a.svg", 60), "[........................] 0/8  a.svg");
    EXPECT_EQ(ProgressLine(7, 8, 2, "a.svg", 60), "[#####################...] 7/8, 2 failed  a.svg");
    EXPECT_EQ(ProgressLine(8, 8, 0, "", 60), "[########################] 8/8");
    EXPECT_EQ(ProgressLine(1, 8, 0, "a-long-name.svg", 40), "[###.....................] 1/8  a-long-");
    // The bar goes where it and the counts would fill the line.
    EXPECT_EQ(ProgressLine(1, 8, 0, "", 31), "[###.....................] 1/8");
    EXPECT_EQ(ProgressLine(1, 8, 0, "", 30), "1/8");
    EXPECT_EQ(ProgressLine(1, 8, 0, "a.svg", 20), "1/8  a.svg");
    EXPECT_EQ(ProgressLine(1, 8, 0, "\n\x1b[2J.svg", 20), "1/8  \\n\\x1b[2J.svg");
    EXPECT_EQ(ProgressLine(1, 8, 0, "\u00e4\u6f22\u6f22.svg", 11), "1/8  \u00e4\u6f22\u6f22");
    // A line that is full makes some terminals go on to the next.
    for (std::size_t columns = 1; columns < 80; ++columns)
        EXPECT_LT(ProgressLine(1234, 99999, 12, "some-drawing.svg", columns).size(), columns);
    EXPECT_EQ(ProgressLine(1, 8, 0, "a.svg", 0), "");
}

TEST(BatchNamesTest, NamesComeWithoutFolderAndEndingOfDrawings) {
    for (const auto& [input, name] : std::vector<std::pair<const char*, const char*>>{{"a.svg", "a"},
                                                                                      {"dir.d/a.svgz", "a"},
                                                                                      {"/x/A.SVG", "A"},
                                                                                      {"a.b.qvxml", "a.b"},
                                                                                      {"a.svg.gz", "a"},
                                                                                      {"a.qvxml.GZ", "a"},
                                                                                      {"a.xml", "a.xml"},
                                                                                      {"a.gz", "a.gz"},
                                                                                      {"a", "a"},
                                                                                      {".svg", ".svg"},
                                                                                      {"-", "-"},
                                                                                      {"svg", "svg"}})
        EXPECT_EQ(BaseName(input), name) << input;
}

TEST(BatchNamesTest, PlansOneOutputForEachInput) {
    std::string error;
    EXPECT_THAT(PlanOutputs({"a.svg", "x/b.svgz"}, "out/", "pdf", error),
                ElementsAre("out/a.pdf", "out/b.pdf"));
    EXPECT_THAT(error, IsEmpty());
    EXPECT_THAT(PlanOutputs({"a.svg"}, "/", "pdf", error), ElementsAre("/a.pdf"));
    EXPECT_THAT(PlanOutputs({"a.svg", "x/"}, "out", "pdf", error), IsEmpty());
    EXPECT_EQ(error, "x/ names no file");
}

}  // namespace
