// SPDX-License-Identifier: Apache-2.0

// Inputs that cannot be read completely, or that memory does not suffice for: one error line and an exit
// code.

#include <unistd.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

#include "tests/apps/faults_run.h"

namespace fs = std::filesystem;

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;

class InputFaultsTest : public FaultsTest {};

TEST_F(InputFaultsTest, InputsThatCannotBeRead) {
    struct Row {
        const char *input, *reason;
    };
    // "Is a directory" or "is a folder". Reading a process's memory at address 0 is an I/O error.
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

/// Runs the command as a user without privileges; skipped if that user cannot run it at all.
class OtherUserTest : public InputFaultsTest {
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
/// Runs the command on a system whose reads and allocations fail.
class FailingSystemTest : public InputFaultsTest {
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

// An image that cannot be read is skipped like a missing one; the output is complete.
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

// Refuses allocations in the whole command, including the library that reads its command line: the first ones
// one by one, then one in every few hundred.
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
            // Refuses more for `inspect`: an incomplete dump would look like a valid one.
            for (unsigned int request = 1; request < 4'000;
                 request += arguments == std::string("inspect a.svg") ? 61 : 397) {
                expectEnd(arguments, "ORV_FAIL_NEW_AT=" + std::to_string(request) + all);
                fs::remove_all(Folder() / "out");
                fs::create_directories(Folder() / "out");
            }
}

// Third-party libraries allocate memory, too, and files are mapped into the address space.
TEST_F(FailingSystemTest, LittleAddressSpaceIsTold) {
    // Its own fonts and cache: when memory is short, fontconfig records folders as empty in a cache that all
    // programs share.
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
        // 127: the dynamic linker could not load the command's libraries.
        EXPECT_THAT(run.exitCode, AnyOf(0, 8, 9, 10, 127)) << trial;
        EXPECT_TRUE(run.exitCode == 0 || !run.errors.empty()) << trial;
        EXPECT_TRUE(run.exitCode == 0 || FilesIn("out").empty()) << trial;
        fs::remove_all(Folder() / "out");
        fs::create_directories(Folder() / "out");
        return run.exitCode;
    };
    // With less, the process ends before any code of the command runs. How much that is depends on the build.
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

}  // namespace
