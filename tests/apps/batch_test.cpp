// SPDX-License-Identifier: Apache-2.0

// Many inputs, each with its own output: names, failures, dying workers, signals.

#include <unistd.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>

#include "tests/apps/batch_run.h"

namespace fs = std::filesystem;

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

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

TEST_F(BatchTest, WritesPdfUnlessAFormatIsGiven) {
    EXPECT_EQ(Run({"a.svg", "--out-dir", "out"}).exitCode, 0);
    EXPECT_THAT(ReadFile("out/a.pdf"), StartsWith("%PDF"));
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

    // Input and output have the same format.
    const ToolRun same = Run({"a.svg", "b.svg", "--out-dir", ".", "-f", "svg"});
    EXPECT_EQ(same.exitCode, 8);
    EXPECT_EQ(same.errors, "orvprint: ./a.svg: is an input; choose another folder\n");

    // A name that is known only after the pages have been counted.
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
    EXPECT_EQ(run.errors.rfind("bad.svg:2:"), run.errors.find("bad.svg:2:")) << "told once";
    EXPECT_THAT(run.errors, HasSubstr("\norvprint: 1 of 4 converted, 1 failed, 2 not done, "));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf"));
    EXPECT_EQ(Run({"two.svg", "a.svg", "--out-dir", "out", "-f", "pdf", "-j", "1", "--pages", "2"}).exitCode,
              6);
}

// An earlier input may fail later and with a different code.
TEST_F(BatchTest, TheFirstInputThatFailedGivesTheCodeWhicheverFailedBefore) {
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
    EXPECT_EQ(run.exitCode, 5);
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
            EXPECT_EQ(run.errors.rfind(name), run.errors.find(name)) << "told once";
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
    EXPECT_THAT(run.errors, HasSubstr("orvprint: set.svg: page 2 has no area"));
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
    EXPECT_THAT(run.errors, HasSubstr("orvprint: waits.svg: its worker process"));
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

// As under nohup, and in shells for background jobs.
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
        // The pipe has no reader if the signal has ended the program.
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

}  // namespace
