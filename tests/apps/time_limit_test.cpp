// SPDX-License-Identifier: Apache-2.0

// Drawings that take too long, and whatever else the command may wait for.

#include <sys/stat.h>

#include <gmock/gmock.h>

#include "tests/apps/faults_run.h"

namespace fs = std::filesystem;

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

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
    // Results for earlier inputs are still printed.
    EXPECT_THAT(ShellWithTime("exec \"$0\" check a.svg waits.svg").run.output,
                HasSubstr("a.svg: nothing found"));
    // The parent process may ignore the timer's signal.
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
    // The error message cannot be written either.
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

// The limit passes while several threads compute and files grow.
TEST_F(FaultsTest, APageThatTakesTooLongIsGivenUp) {
    std::string pages = "<svg>";
    for (int i = 0; i < 40; ++i) pages += LargeDrawing();
    WriteFile("pages.svg", pages + "</svg>");
    for (const char* format : kFormats)
        for (const char* time : {"0.02", "0.06", "0.15", "0.3"}) {
            const ToolRun run = Run(
                {"pages.svg", "-o", std::string("out/x.") + format, "--dpi", "1200", "--time-limit", time});
            // A fast machine may finish in time.
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

}  // namespace
