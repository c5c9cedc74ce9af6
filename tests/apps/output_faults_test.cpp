// SPDX-License-Identifier: Apache-2.0

// Outputs that cannot be written completely: one error line, an exit code, and no incomplete files.

#include <gmock/gmock.h>

#include "tests/apps/faults_run.h"

namespace fs = std::filesystem;

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;

class OutputFaultsTest : public FaultsTest {};

TEST_F(OutputFaultsTest, FullDisk) {
    for (const char* format : kFormats) {
        const ToolRun run = Run({"large.svg", "-f", format, "-o", "/dev/full"});
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, "/dev/full", "No space left on device");
        const ToolRun stream = Shell(std::string("\"$0\" large.svg -o - -f ") + format + " > /dev/full");
        EXPECT_EQ(stream.exitCode, 8) << format;
        ExpectLine(stream, "standard output", "No space left on device");
    }
}

TEST_F(OutputFaultsTest, FilesThatMayNotBecomeLarger) {
    WriteFile("out/keep.txt", "kept");
    for (const char* format : kFormats) {
        const std::string output = std::string("out/x.") + format;
        WriteFile(output, "old");
        const ToolRun run = Shell("ulimit -f 32; exec \"$0\" large.svg -o " + output);
        // These formats first write to temporary files of the system.
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

TEST_F(OutputFaultsTest, SmallDiskIsFull) {
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

TEST_F(OutputFaultsTest, ReadersThatGoAway) {
    for (const char* format : kFormats) {
        const ToolRun run = Shell(std::string("\"$0\" large.svg -o - -f ") + format +
                                  " | head -c 10 > /dev/null; exit ${PIPESTATUS[0]}");
        EXPECT_EQ(run.exitCode, 8) << format;
        ExpectLine(run, "standard output", "Broken pipe");
    }
}

TEST_F(OutputFaultsTest, OutputsThatHaveNoPlace) {
    for (const char* output : {"missing/x.pdf", "/proc/x.pdf", "a.svg/x.pdf"}) {
        const ToolRun run = Run({"a.svg", "-o", output});
        EXPECT_EQ(run.exitCode, 8) << output;
        ExpectLine(run, output, ": ");
    }
}

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

}  // namespace
