// SPDX-License-Identifier: Apache-2.0

// What the command does when the system fails it: inputs that cannot be read to their end, outputs that
// cannot be written to theirs, no memory, signals. It says so in a line, with an exit code, and leaves whole
// files or none.

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <map>
#include <thread>

#include "tests/apps/tool_run.h"
#include "tests/support/scoped_environment.h"

namespace fs = std::filesystem;

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::array kFormats{"pdf", "ps", "eps", "svg", "png", "tiff", "pwg"};

/// A drawing whose output has more than a hundred kilobytes in every format, so that no pipe takes it whole.
std::string LargeDrawing() {
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
        fs::create_directories(Folder() / "out");
    }

    /// Names and contents of all files in a folder and below, hidden ones too.
    std::map<std::string, std::string> FilesIn(const std::string& folder) const {
        std::map<std::string, std::string> files;
        if (!Exists(folder)) return files;
        for (const auto& entry : fs::recursive_directory_iterator(Folder() / folder))
            if (entry.is_regular_file()) {
                const std::string name = fs::relative(entry.path(), Folder() / folder);
                files[name] = ReadFile(fs::path(folder) / name);
            }
        return files;
    }
    void ClearOutputs() const {
        fs::remove_all(Folder() / "out");
        fs::create_directories(Folder() / "out");
    }
    /// Runs a line of the shell; $0 in it is the command.
    ToolRun Shell(const std::string& line) const { return RunProgram({"bash", "-c", line, ORV_TOOL_PATH}); }

    RunningTool Start(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), ORV_TOOL_PATH);
        return StartProgram(arguments);
    }

private:
    const ScopedEnvironment day_{"SOURCE_DATE_EPOCH", "0"};  // two runs give the same bytes
};

/// One line that begins so and holds that.
void ExpectLine(const ToolRun& run, const std::string& start, const std::string& part) {
    EXPECT_THAT(run.errors, StartsWith("orvprint: " + start));
    EXPECT_THAT(run.errors, HasSubstr(part));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
}

// ---- inputs ----

TEST_F(FaultsTest, InputsThatCannotBeRead) {
    struct Row {
        const char *input, *reason;
    };
    // "Is a directory", or "is a folder". The start of a process's memory gives an error of the device.
    for (const Row& row : {Row{"out", "s a "}, Row{"/proc/self/mem", "Input/output error"},
                           Row{"missing.svg", "No such file or directory"}}) {
        for (const char* command : {"info", "check", "inspect"}) {
            const ToolRun run = Run({command, row.input});
            EXPECT_EQ(run.exitCode, 3) << command << " " << row.input;
            ExpectLine(run, row.input, row.reason);
        }
        const ToolRun run = Run({row.input, "-o", "out/x.pdf"});
        EXPECT_EQ(run.exitCode, 3) << row.input;
        ExpectLine(run, row.input, row.reason);
        EXPECT_THAT(FilesIn("out"), IsEmpty());
    }
}

/// The command as a user who may do less; skipped where that user cannot run it at all.
class OtherUserTest : public FaultsTest {
protected:
    void SetUp() override {
        if (geteuid() != 0) return;
        fs::permissions(Folder(), fs::perms::all);
        prefix_ = {"setpriv", "--reuid=65534", "--clear-groups"};
        if (RunAsUser({"--version"}).exitCode != 0)
            GTEST_SKIP() << "another user cannot run the command here";
    }
    ToolRun RunAsUser(const std::vector<std::string>& arguments) const {
        std::vector<std::string> command = prefix_;
        command.emplace_back(ORV_TOOL_PATH);
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProgram(command);
    }

private:
    std::vector<std::string> prefix_;
};

TEST_F(OtherUserTest, FilesThatMayNotBeRead) {
    fs::permissions(Folder() / "a.svg", fs::perms::none);
    const ToolRun run = RunAsUser({"a.svg", "-o", "x.pdf"});
    EXPECT_EQ(run.exitCode, 3);
    ExpectLine(run, "a.svg", "Permission denied");
    EXPECT_FALSE(Exists("x.pdf"));
}

TEST_F(OtherUserTest, FoldersThatMayNotBeWritten) {
    fs::permissions(Folder() / "out",
                    fs::perms::owner_read | fs::perms::others_read | fs::perms::others_exec);
    for (const char* format : kFormats) {
        const std::string output = std::string("out/x.") + format;
        const ToolRun run = RunAsUser({"a.svg", "-o", output});
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, output, "Permission denied");
    }
    const ToolRun run = RunAsUser({"a.svg", "--out-dir", "out", "-f", "pdf"});
    EXPECT_EQ(run.exitCode, 8);
    ExpectLine(run, "out", "Permission denied");
    fs::permissions(Folder() / "out", fs::perms::all);
    EXPECT_THAT(FilesIn("out"), IsEmpty());
}

#ifdef ORV_SHIM_PATH
/// The command with a system that fails it.
class FailingSystemTest : public FaultsTest {
protected:
    ToolRun RunWith(const std::string& environment, const std::string& arguments) const {
        return Shell("export " + environment + "; LD_PRELOAD=" + ORV_SHIM_PATH + " exec \"$0\" " + arguments);
    }
};

TEST_F(FailingSystemTest, ReadErrorsAnywhereInAnInput) {
    const std::size_t size = ReadFile("a.svg").size();
    for (const char* parser : {"light", "dom"})
        for (std::size_t at = 0; at < size; at += 11) {
            const std::string environment = "ORV_FAIL_READ_OF=a.svg ORV_FAIL_READ_AT=" + std::to_string(at);
            const ToolRun run =
                RunWith(environment, std::string("b.svg a.svg -o out/x.pdf --parser ") + parser);
            EXPECT_EQ(run.exitCode, 3) << at;
            ExpectLine(run, "a.svg", "Input/output error");
            EXPECT_THAT(FilesIn("out"), IsEmpty());
            EXPECT_EQ(RunWith(environment, "check a.svg").exitCode, 3);
        }
}

TEST_F(FailingSystemTest, InputsThatBecomeShorterMeanwhile) {
    const std::size_t size = ReadFile("a.svg").size();
    for (const char* parser : {"light", "dom"})
        for (std::size_t at = 0; at < size; at += 11) {
            const ToolRun run = RunWith("ORV_FAIL_READ_OF=a.svg ORV_END_READ_AT=" + std::to_string(at),
                                        std::string("a.svg -o out/x.pdf --parser ") + parser);
            EXPECT_EQ(run.exitCode, at == 0 ? 3 : 4) << at;
            ExpectLine(run, "a.svg", "");
            EXPECT_THAT(FilesIn("out"), IsEmpty());
        }
}

// A picture that cannot be read is passed over, as one that is not there; what is printed is whole.
TEST_F(FailingSystemTest, PicturesThatCannotBeReadToTheirEnd) {
    WriteFile("p.bmp", "BM" + std::string(200, 'x'));
    WriteFile("p.svg",
              SmallDrawing("<image width='9' height='9' xlink:href='p.bmp'/><rect width='5' height='5'/>"));
    for (const char* fault : {"ORV_FAIL_READ_AT=", "ORV_END_READ_AT="})
        for (const char* at : {"0", "1", "2", "60", "201"}) {
            const ToolRun run =
                RunWith(std::string("ORV_FAIL_READ_OF=p.bmp ") + fault + at, "p.svg -o out/p.svg");
            EXPECT_EQ(run.exitCode, 0) << run.errors;
            EXPECT_THAT(ReadFile("out/p.svg"), HasSubstr("</svg>"));
        }
}

// The first requests for memory refused one by one, and every so many of the others, in the whole command,
// the library that reads its command line included.
TEST_F(FailingSystemTest, RefusedMemoryIsTold) {
    std::map<std::string, std::string> outputs;
    for (const char* arguments : {"check a.svg", "info a.svg", "inspect a.svg", "formats"})
        outputs[arguments] = Shell(std::string("\"$0\" ") + arguments).output;
    const auto expectEnd = [&](const std::string& arguments, const std::string& environment) {
        const ToolRun run = RunWith(environment, arguments);
        EXPECT_EQ(run.signal, 0) << environment << " " << arguments << "\n" << run.errors;
        EXPECT_THAT(run.exitCode, AnyOf(0, 1, 8, 9, 10)) << environment << " " << arguments << "\n"
                                                         << run.errors;
        EXPECT_TRUE(run.exitCode < 8 || run.errors.starts_with("orvprint: "))
            << environment << " " << arguments;
        EXPECT_TRUE(run.exitCode != 0 || run.output == outputs[arguments])
            << environment << " " << arguments << "\n"
            << run.output;
        return run.exitCode;
    };
    ASSERT_EQ(Run({"a.svg", "b.svg", "-o", "whole.pdf"}).exitCode, 0);
    const std::string expected = ReadFile("whole.pdf");
    int failures = 0;
    for (const char* all : {"", " ORV_FAIL_NEW_ALL=1"})
        for (unsigned int request = 1; request < 12'000; request += request < 300 ? 1 : 611) {
            const std::string environment = "ORV_FAIL_NEW_AT=" + std::to_string(request) + all;
            if (expectEnd("a.svg b.svg -o out/x.pdf", environment) == 0)
                EXPECT_EQ(ReadFile("out/x.pdf"), expected) << environment;
            else
                ++failures;
            for (const auto& [name, bytes] : FilesIn("out")) EXPECT_EQ(name, "x.pdf") << environment;
            fs::remove(Folder() / "out/x.pdf");
        }
    EXPECT_GT(failures, 10);
    for (const char* arguments : {"check a.svg", "info a.svg", "inspect a.svg", "formats",
                                  "a.svg --out-dir out -f png -j 1", "a.svg -o out/x.svg --paper A4 --nup 2"})
        for (const char* all : {"", " ORV_FAIL_NEW_ALL=1"})
            // A dump that lacks something would look like one.
            for (unsigned int request = 1; request < 4'000;
                 request += arguments == std::string("inspect a.svg") ? 61 : 397) {
                expectEnd(arguments, "ORV_FAIL_NEW_AT=" + std::to_string(request) + all);
                fs::remove_all(Folder() / "out");
                fs::create_directories(Folder() / "out");
            }
}

// Libraries that are not ours ask for memory, too, and files are mapped into it.
TEST_F(FailingSystemTest, LittleAddressSpaceIsTold) {
    // Faces and a cache of its own: where memory is short, the library notes folders as empty for all
    // programs.
    WriteFile("fonts.conf", "<fontconfig><dir>/usr/share/fonts</dir><cachedir>" +
                                (Folder() / "faces").string() + "</cachedir></fontconfig>");
    const auto within = [&](unsigned int kibibytes, const std::string& arguments) {
        return Shell("export FONTCONFIG_FILE='" + (Folder() / "fonts.conf").string() + "'; ulimit -v " +
                     std::to_string(kibibytes) + "; exec \"$0\" " + arguments);
    };
    const auto expectEnd = [&](const char* format, unsigned int kibibytes) {
        const ToolRun run = within(kibibytes, std::string("b.svg large.svg -o out/x.") + format);
        const std::string trial = format + (" within " + std::to_string(kibibytes)) + "\n" + run.errors;
        EXPECT_EQ(run.signal, 0) << trial;
        // 127: the command's own libraries do not fit.
        EXPECT_THAT(run.exitCode, AnyOf(0, 8, 9, 10, 127)) << trial;
        EXPECT_TRUE(run.exitCode == 0 || !run.errors.empty()) << trial;
        EXPECT_TRUE(run.exitCode == 0 || FilesIn("out").empty()) << trial;
        fs::remove_all(Folder() / "out");
        fs::create_directories(Folder() / "out");
        return run.exitCode;
    };
    // With less, the system ends the process before a line of the command runs. How much that is differs
    // from build to build.
    constexpr unsigned int kStep = 531;
    unsigned int lowest = 5'000;
    while (lowest < 100'000 && within(lowest, "--version").exitCode != 0) lowest += kStep;
    ASSERT_LT(lowest, 100'000U);
    lowest += kStep;
    for (const char* format : kFormats)
        for (const unsigned int mebibytes : {16U, 24U, 32U, 48U, 64U, 96U, 192U})
            expectEnd(format, std::max(lowest, mebibytes * 1024));
    int failures = 0;
    for (unsigned int kibibytes = lowest; kibibytes < lowest + 20'000; kibibytes += kStep)
        if (expectEnd("png", kibibytes) == 9) ++failures;
    EXPECT_GT(failures, 0);
}
#endif

// ---- outputs ----

TEST_F(FaultsTest, FullDisk) {
    for (const char* format : kFormats) {
        const ToolRun run = Run({"large.svg", "-f", format, "-o", "/dev/full"});
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, "/dev/full", "No space left on device");
        const ToolRun stream = Shell(std::string("\"$0\" large.svg -o - -f ") + format + " > /dev/full");
        EXPECT_EQ(stream.exitCode, 8) << format;
        ExpectLine(stream, "standard output", "No space left on device");
    }
}

TEST_F(FaultsTest, FilesThatMayNotBecomeLarger) {
    WriteFile("out/keep.txt", "kept");
    for (const char* format : kFormats) {
        const std::string output = std::string("out/x.") + format;
        WriteFile(output, "old");
        const ToolRun run = Shell("ulimit -f 32; exec \"$0\" large.svg -o " + output);
        // These grow in temporary files of the system first.
        const bool isElsewhere = std::string("ps eps tiff").find(format) != std::string::npos;
        EXPECT_EQ(run.exitCode, isElsewhere ? 9 : 8) << format << run.signal;
        ExpectLine(run, isElsewhere ? "large.svg" : output,
                   isElsewhere ? "temporary file cannot be written; is the disk full?" : "File too large");
        EXPECT_THAT(FilesIn("out"), testing::SizeIs(2)) << format;
        EXPECT_EQ(ReadFile(output), "old");
        fs::remove(Folder() / output);

        const ToolRun batch = Shell(
            "ulimit -f 32; exec \"$0\" large.svg a.svg --out-dir out --keep-going -f " + std::string(format));
        EXPECT_THAT(batch.exitCode, AnyOf(11, 0)) << format;
        fs::remove(Folder() / (std::string("out/a.") + format));
        EXPECT_THAT(FilesIn("out"), testing::SizeIs(1)) << format << " " << batch.errors;
    }
}

TEST_F(FaultsTest, SmallDiskIsFull) {
    const std::string line =
        "mount -t tmpfs -o size=64k none out && { \"$0\" large.svg -o out/x.FORMAT; code=$?; ls -A out; "
        "umount out; exit $code; }";
    if (Shell("mount -t tmpfs -o size=64k none out && umount out").exitCode != 0)
        GTEST_SKIP() << "no file system can be mounted here";
    for (const char* format : kFormats) {
        std::string one = line;
        one.replace(one.find("FORMAT"), 6, format);
        const ToolRun run = Shell(one);
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, std::string("out/x.") + format, "No space left on device");
        EXPECT_EQ(run.output, "") << "something is left";
    }
}

TEST_F(FaultsTest, ReadersThatGoAway) {
    for (const char* format : kFormats) {
        const ToolRun run = Shell(std::string("\"$0\" large.svg -o - -f ") + format +
                                  " | head -c 10 > /dev/null; exit ${PIPESTATUS[0]}");
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, "standard output", "Broken pipe");
    }
}

TEST_F(FaultsTest, OutputsThatHaveNoPlace) {
    for (const char* output : {"missing/x.pdf", "/proc/x.pdf", "a.svg/x.pdf"}) {
        const ToolRun run = Run({"a.svg", "-o", output});
        EXPECT_EQ(run.exitCode, 8) << output;
        ExpectLine(run, output, ": ");
    }
}

/// Commands that wait for an input.
class WaitingTest : public FaultsTest {
protected:
    WaitingTest() { EXPECT_EQ(mkfifo((Folder() / "waits.svg").c_str(), 0600), 0); }

    /// Opens the input as soon as the command reads it. @return -1 when it ended and never did
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

    /// Runs a line of the shell with the shortest limit of time in which all is done that stands before the
    /// drawing that waits: how much that takes depends on what else the machine does.
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

TEST_F(WaitingTest, FolderThatIsRemovedMeanwhile) {
    for (const char* format : kFormats) {
        const std::string output = std::string("out/x.") + format;
        const RunningTool running = Start({"a.svg", "waits.svg", "-o", output});
        const int pipe = Open(running);
        fs::remove_all(Folder() / "out");
        Feed(pipe);
        const ToolRun run = WaitFor(running);
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, output, "No such file or directory");
        EXPECT_FALSE(Exists("out"));
        fs::create_directories(Folder() / "out");
    }
}

TEST_F(WaitingTest, FolderOfABatchThatIsRemovedMeanwhile) {
    const RunningTool running =
        Start({"a.svg", "waits.svg", "b.svg", "--out-dir", "out", "-f", "pdf", "-j", "1", "--keep-going"});
    const int pipe = Open(running);
    fs::remove_all(Folder() / "out");
    Feed(pipe);
    const ToolRun run = WaitFor(running);
    EXPECT_EQ(run.exitCode, 11);
    EXPECT_THAT(run.errors, HasSubstr("No such file or directory"));
    EXPECT_THAT(FilesIn("out"), IsEmpty());
}

// ---- time ----

TEST_F(WaitingTest, ADrawingThatTakesTooLongIsGivenUp) {
    const auto lineAt = [](const std::string& limit) {
        return "orvprint: waits.svg: takes longer than " + limit +
               " seconds, the limit; to allow more, use --time-limit N\n";
    };
    for (const std::string arguments :
         {"info waits.svg", "info --json waits.svg", "inspect waits.svg", "check waits.svg",
          "check --json waits.svg", "waits.svg -o out/x.pdf", "waits.svg --strict -o out/x.pdf",
          "waits.svg a.svg -o out/x.pdf", "a.svg b.svg waits.svg -o out/x.pdf",
          "a.svg b.svg waits.svg -o out/x.png", "a.svg b.svg waits.svg -o out/x.tiff"}) {
        const auto [run, limit] = ShellWithTime("exec \"$0\" " + arguments);
        EXPECT_EQ(run.exitCode, 9) << arguments << " " << run.signal;
        EXPECT_EQ(run.errors, lineAt(limit)) << arguments;
        EXPECT_THAT(FilesIn("out"), IsEmpty()) << arguments;
    }
    EXPECT_EQ(
        Shell("exec \"$0\" info waits.svg --time-limit 1").errors,
        "orvprint: waits.svg: takes longer than 1 second, the limit; to allow more, use --time-limit N\n");
    // What was found before stands.
    EXPECT_THAT(ShellWithTime("exec \"$0\" check a.svg waits.svg").run.output,
                HasSubstr("a.svg: nothing found"));
    // Signals that whoever starts the command ignores.
    EXPECT_EQ(Shell("trap '' ALRM; exec \"$0\" info waits.svg --time-limit 0.2").errors, lineAt("0.2"));
}

TEST_F(WaitingTest, StandardInputThatNeverComesOrNeverEnds) {
    for (const char* text : {"", "printf '<svg><g>' >&3; "})
        for (const char* arguments : {"- -o out/x.pdf", "info -", "check -", "inspect -"}) {
            const ToolRun run = Shell(std::string("exec 3<>waits.svg; ") + text + "exec \"$0\" " + arguments +
                                      " --time-limit 0.2 <&3");
            EXPECT_EQ(run.exitCode, 9) << arguments;
            ExpectLine(run, "standard input: takes longer than 0.2 seconds", "--time-limit");
            EXPECT_THAT(FilesIn("out"), IsEmpty());
        }
}

TEST_F(WaitingTest, OutputThatNobodyTakes) {
    const ToolRun run = Shell("exec 3<>waits.svg; exec \"$0\" large.svg -f pdf -o - --time-limit 0.5 >&3");
    EXPECT_EQ(run.exitCode, 9);
    ExpectLine(run, "large.svg: takes longer than 0.5 seconds", "");
    // Nor can the words be got rid of.
    const ToolRun mute = Shell(
        "exec 3<>waits.svg; head -c 65536 /dev/zero >&3; mkfifo other; exec \"$0\" info other --time-limit "
        "0.2 2>&3");
    EXPECT_EQ(mute.exitCode, 9);
}

TEST_F(WaitingTest, NamesOfAnyLengthMakeOneLine) {
    std::string name = "waits.svg";
    while (name.size() < 4080) name.insert(0, "./");
    ExpectLine(Run({"info", name, "--time-limit", "0.1"}), "./././", "the limit");
    fs::rename(Folder() / "waits.svg", Folder() / "waits\n.svg");
    ExpectLine(Run({"info", "waits\n.svg", "--time-limit", "0.1"}), "waits\\n.svg: takes", "the limit");
}

TEST_F(WaitingTest, ABatchGoesOnWithoutADrawingThatTakesTooLong) {
    const auto [run, limit] =
        ShellWithTime("exec \"$0\" a.svg waits.svg b.svg --out-dir out -f pdf -j 1 --keep-going");
    EXPECT_EQ(run.exitCode, 11);
    const std::string reason = "waits.svg: takes longer than " + limit + " seconds, the limit";
    EXPECT_THAT(run.errors, StartsWith("orvprint: " + reason));
    EXPECT_THAT(run.errors, HasSubstr("failed: " + reason));
    EXPECT_THAT(run.errors, HasSubstr("2 of 3 converted, 1 failed"));
    std::vector<std::string> names;
    for (const auto& [name, bytes] : FilesIn("out")) names.push_back(name);
    EXPECT_THAT(names, testing::ElementsAre("a.pdf", "b.pdf"));

    const ToolRun all = Run({"waits.svg", "a.svg", "--out-dir", "out2", "-f", "pdf", "-j", "1",
                             "--time-limit", "0.2", "--quiet"});
    EXPECT_EQ(all.exitCode, 9);
    ExpectLine(all, "waits.svg: takes longer than 0.2 seconds", "");
    EXPECT_THAT(FilesIn("out2"), IsEmpty());
}

// While it computes, in several threads, with files that grow.
TEST_F(FaultsTest, APageThatTakesTooLongIsGivenUp) {
    std::string pages = "<svg>";
    for (int i = 0; i < 40; ++i) pages += LargeDrawing();
    WriteFile("pages.svg", pages + "</svg>");
    for (const char* format : kFormats)
        for (const char* time : {"0.02", "0.06", "0.15", "0.3"}) {
            const ToolRun run = Run(
                {"pages.svg", "-o", std::string("out/x.") + format, "--dpi", "1200", "--time-limit", time});
            // A fast machine is done before.
            if (run.exitCode != 0) {
                EXPECT_EQ(run.exitCode, 9) << format << time << run.signal;
                ExpectLine(run, std::string("pages.svg: takes longer than ") + time, "");
                EXPECT_THAT(FilesIn("out"), IsEmpty()) << format << time;
            }
            ClearOutputs();
        }
    const ToolRun run = Run({"pages.svg", "-o", "out/x.png", "--dpi", "1200", "--time-limit", "0.3"});
    EXPECT_EQ(run.exitCode, 9) << "forty pages of 130 million pixels each cannot be done by then";
}

TEST_F(FaultsTest, TimeThatIsEnough) {
    EXPECT_EQ(Run({"a.svg", "b.svg", "-o", "out/x.pdf", "--strict", "--time-limit", "1000"}).exitCode, 0);
    EXPECT_EQ(Run({"check", "a.svg", "b.svg", "--time-limit", "1000"}).exitCode, 0);
    for (const char* value : {"0", "-1", "x", "1e10", "nan", ""})
        EXPECT_EQ(Run({"info", "a.svg", "--time-limit", value}).exitCode, 2) << value;
}

// ---- signals ----

/// Whatever the signal and whenever it comes: what stands in the folder of outputs then are files as they are
/// when nothing happens, or none.
class SignalTest : public WaitingTest {
protected:
    using Files = std::map<std::string, std::string>;

    // The workers of a batch that was killed end when they find that it is gone. As descendants of the test
    // they can be waited for: none must write into the folder of the next run.
    SignalTest() { EXPECT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0); }
    ~SignalTest() override { prctl(PR_SET_CHILD_SUBREAPER, 0); }

    static void WaitForWorkers() {
        while (waitpid(-1, nullptr, 0) > 0 || errno == EINTR) {
        }
    }
    /// Sends the signal while the command waits for its last input, with work behind it and a file begun.
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

    /// Sends the signal after each of some parts of the time that the command takes.
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
            // Who is killed cannot clear up.
            if (signal == SIGKILL && name.front() == '.') continue;
            const auto found = whole.find(name);
            ASSERT_NE(found, whole.end()) << name << " is left, signal " << signal << " " << when;
            EXPECT_TRUE(bytes == found->second) << name << " is not whole, signal " << signal << " " << when;
        }
    }
};

constexpr std::array kEndSignals{SIGTERM, SIGINT, SIGHUP, SIGKILL};
// Of people, timers and limits.
const std::vector<int> kRareSignals{SIGQUIT, SIGUSR1, SIGUSR2, SIGALRM,  SIGVTALRM, SIGPROF,
                                    SIGXCPU, SIGPOLL, SIGPWR,  SIGRTMIN, SIGRTMAX};
#if !defined(ORV_SANITIZED)  // sanitizers take these
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

// The workers of a process that was killed have nobody to work for. This one would wait for ever.
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
