// SPDX-License-Identifier: Apache-2.0

// Everything that prints without the sandbox prints the same inside it.

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fstream>
#include <thread>

#include "apps/orvprint/sandbox/sandbox.h"
#include "tests/apps/in_process.h"
#include "tests/apps/tool_run.h"

namespace fs = std::filesystem;

namespace {

using testing::HasSubstr;

// ---- the command ----

#if !defined(ORV_SANITIZED)  // sanitizers need what the sandbox takes away

class SandboxRunTest : public ToolTest {
protected:
    SandboxRunTest() {
        // A drawing with a shape, text in several scripts, and an image in a file. Its output is
        // reproducible.
        WriteFile("page.svg",
                  SmallDrawing("<title>T</title><rect width='40' height='20' fill='red'/><text x='2' y='30' "
                               "font-size='9'>Text \u00e4\u05d0\u0e01\u6f22</text><image x='50' width='20' "
                               "height='20' xlink:href='images/dot.png'/>"));
        WriteFile("images/dot.png", Picture());
        fs::create_directories(Folder() / "home");
    }

    /// Returns a PNG of 8 x 8 black pixels, which the command makes.
    std::string Picture() const {
        WriteFile("dot.svg", "<svg width='8' height='8'><rect width='8' height='8'/></svg>");
        EXPECT_EQ(Run({"dot.svg", "-o", "dot.png", "--no-sandbox"}).exitCode, 0);
        return ReadFile("dot.png");
    }

    ToolRun RunIn(const std::vector<std::string>& variables, std::vector<std::string> arguments) const {
        std::vector<std::string> command{"env", "HOME=" + (Folder() / "home").string(),
                                         "SOURCE_DATE_EPOCH=0"};
        command.insert(command.end(), variables.begin(), variables.end());
        command.emplace_back(ORV_TOOL_PATH);
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProgram(command);
    }

    /// Prints without and with the sandbox, each time with an empty home folder, and expects the same output.
    void ExpectTheSame(const std::vector<std::string>& variables, const std::vector<std::string>& arguments,
                       const std::string& output) const {
        std::array<std::string, 2> bytes;
        const std::array<const char*, 2> ways{"--no-sandbox", RequiredOption()};
        for (std::size_t i = 0; i < ways.size(); ++i) {
            fs::remove_all(Folder() / "home");
            fs::create_directory(Folder() / "home");
            std::vector<std::string> all = arguments;
            all.emplace_back(ways[i]);
            const ToolRun run = RunIn(variables, all);
            EXPECT_EQ(run.exitCode, 0) << run.errors;
            EXPECT_EQ(run.errors, "") << output;
            bytes[i] = output.empty() ? run.output : ReadFile(output);
            EXPECT_FALSE(bytes[i].empty());
            if (!output.empty()) fs::remove(Folder() / output);
        }
        EXPECT_TRUE(bytes[0] == bytes[1]) << testing::PrintToString(arguments);
    }

    /// Returns the option that requires the sandbox, or one without effect if the machine does not support
    /// all of it.
    static const char* RequiredOption() {
        static const bool isWhole = InProcess([] { return EnterSandbox({}).empty() ? 0 : 1; }) == 0;
        return isWhole ? "--require-sandbox" : "--parser=light";
    }
};

TEST_F(SandboxRunTest, EveryFormatPrintsTheSame) {
    for (const char* format : {"pdf", "ps", "eps", "svg", "png", "tiff", "pwg", "urf"}) {
        const std::string output = std::string("x.") + format;
        ExpectTheSame({}, {"page.svg", "-o", output}, output);
        ExpectTheSame({}, {"page.svg", "-f", format, "-o", "-"}, "");
    }
}

TEST_F(SandboxRunTest, EveryCommandSaysTheSame) {
    for (const char* command : {"info", "inspect"}) ExpectTheSame({}, {command, "page.svg"}, "");
    WriteFile("plain.svg", SmallDrawing("<rect width='4' height='4' fill='red'/>"));
    ExpectTheSame({}, {"check", "plain.svg"}, "");
}

TEST_F(SandboxRunTest, FontsAreFoundWhereverTheyLie) {
    const fs::path font = "/usr/share/fonts/truetype/dejavu/DejaVuSans-BoldOblique.ttf";
    fs::path installed = font;
    if (!fs::exists(installed))
        installed = "/usr/share/fonts/truetype/liberation/LiberationSans-BoldItalic.ttf";
    ASSERT_TRUE(fs::exists(installed));
    // Files beside the drawing and the output may be read anyway, so the fonts are elsewhere.
    fs::create_directories(Folder() / "in");
    fs::rename(Folder() / "page.svg", Folder() / "in/page.svg");
    fs::rename(Folder() / "images", Folder() / "in/images");
    for (const char* folder : {"out", "fonts", "elsewhere", "data/fonts/deep", "config/fontconfig/conf.d"})
        fs::create_directories(Folder() / folder);
    const std::string root = Folder();
    const std::string list =
        "<?xml version='1.0'?><!DOCTYPE fontconfig SYSTEM 'urn:fontconfig:fonts.dtd'><fontconfig>";
    const std::string cache = "<cachedir>" + root + "/fccache</cachedir>";
    // The only font is a file in a folder that the configuration names.
    fs::copy_file(installed, Folder() / "fonts/only.ttf");
    WriteFile("own.conf", list + "<dir>" + root + "/fonts</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    ASSERT_EQ(RunIn({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/y.pdf"}).exitCode,
              0);
    EXPECT_THAT(ReadFile("out/y.pdf"), HasSubstr("/Length1 ")) << "a font is in it";
    // The path begins in a system folder.
    WriteFile("own.conf", list + "<dir>/usr/.." + root + "/fonts</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    // The folder is named by an included file.
    WriteFile("more.conf", list + "<dir>" + root + "/fonts</dir></fontconfig>");
    WriteFile("own.conf", list + "<include>" + root + "/more.conf</include>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    // The font is a link in the user's folder to a file elsewhere.
    fs::rename(Folder() / "fonts/only.ttf", Folder() / "elsewhere/only.ttf");
    fs::create_symlink(Folder() / "elsewhere/only.ttf", Folder() / "data/fonts/deep/link.ttf");
    WriteFile("own.conf", list + "<dir prefix='xdg'>fonts</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf", "XDG_DATA_HOME=" + root + "/data"},
                  {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    // The folder's name must be unescaped.
    fs::create_directories(Folder() / "a&b");
    fs::copy_file(installed, Folder() / "a&b/only.ttf");
    WriteFile("own.conf", list + "<dir>" + root + "/a&amp;b</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
}

TEST_F(SandboxRunTest, TheIndexOfFontsIsKept) {
    const std::string root = Folder();
    ASSERT_EQ(RunIn({"ORVPRINT_CACHE_DIR=" + root + "/index"}, {"page.svg", "-o", "x.pdf"}).exitCode, 0);
    EXPECT_TRUE(Exists("index/faces"));
    ASSERT_EQ(RunProgram({"env", "-u", "ORVPRINT_CACHE_DIR", "-u", "XDG_CACHE_HOME", "HOME=" + root + "/home",
                          ORV_TOOL_PATH, "page.svg", "-o", "x.pdf"})
                  .exitCode,
              0);
    EXPECT_TRUE(Exists("home/.cache/orvprint/faces"));
}

TEST_F(SandboxRunTest, ImagesOfAllowedFoldersPrint) {
    fs::create_directories(Folder() / "drawings");
    fs::rename(Folder() / "page.svg", Folder() / "drawings/page.svg");
    fs::create_directories(Folder() / "shared");
    fs::rename(Folder() / "images/dot.png", Folder() / "shared/dot.png");
    std::string text = ReadFile("drawings/page.svg");
    text.replace(text.find("images/dot.png"), 14, "../shared/dot.png");
    WriteFile("drawings/page.svg", text);
    ExpectTheSame({}, {"drawings/page.svg", "-o", "x.png", "--allow-dir", "shared"}, "x.png");
    EXPECT_EQ(Run({"drawings/page.svg", "-o", "with.png", "--allow-dir", "shared"}).exitCode, 0);
    EXPECT_EQ(Run({"drawings/page.svg", "-o", "without.png"}).exitCode, 0);
    EXPECT_NE(ReadFile("with.png"), ReadFile("without.png"));
}

TEST_F(SandboxRunTest, OutputsThatAreLinksAndInputsThatAre) {
    for (const char* folder : {"far", "links", "pages"}) fs::create_directories(Folder() / folder);
    fs::create_symlink(Folder() / "far/x.pdf", Folder() / "links/x.pdf");
    WriteFile("far/x.pdf", "old");
    WriteFile("far/page.svg", SmallDrawing("<rect width='9' height='9'/>"));
    fs::create_symlink(Folder() / "far/page.svg", Folder() / "links/page.svg");
    const ToolRun run = Run({"links/page.svg", "-o", "links/x.pdf"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_TRUE(fs::is_symlink(Folder() / "links/x.pdf"));
    EXPECT_TRUE(ReadFile("far/x.pdf").starts_with("%PDF"));

    WriteFile("two.svg", "<svg><svg width='9' height='9'/><svg width='18' height='9'/></svg>");
    WriteFile("far/second.png", "old");
    fs::create_symlink(Folder() / "far/second.png", Folder() / "pages/p-2.png");
    WriteFile("pages/p-1.png", "old");
    const ToolRun pages = Run({"two.svg", "-o", "pages/p.png"});
    EXPECT_EQ(pages.exitCode, 0) << pages.errors;
    EXPECT_TRUE(ReadFile("far/second.png").starts_with("\x89PNG"));
}

TEST_F(SandboxRunTest, OutputsThatAreNoFiles) {
    EXPECT_EQ(Run({"page.svg", "-f", "pdf", "-o", "/dev/null"}).exitCode, 0);
    const ToolRun run = Run({"page.svg", "-f", "pdf", "-o", "/dev/stdout"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
}

TEST_F(SandboxRunTest, OtherEncodingsAreRead) {
    WriteFile("latin.svg",
              "<?xml version='1.0' encoding='ISO-8859-2'?>" + SmallDrawing("<title>\xb1</title>"));
    const ToolRun run = Run({"info", "latin.svg"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("\u0105"));
}

TEST_F(SandboxRunTest, TemporaryFilesLieWhereTheVariableSays) {
    fs::create_directories(Folder() / "tmp");
    for (const char* output : {"x.ps", "x.eps", "x.tiff"})
        ExpectTheSame({"TMPDIR=" + (Folder() / "tmp").string()}, {"page.svg", "-o", output}, output);
}

TEST_F(SandboxRunTest, BatchesPrintTheSame) {
    fs::create_directories(Folder() / "more");
    WriteFile("more/b.svg", SmallDrawing("<rect width='9' height='9'/><text x='9' y='20'>b</text>"));
    for (const char* format : {"pdf", "ps", "svg", "png", "tiff", "pwg", "urf"}) {
        for (const char* option : {"--no-sandbox", RequiredOption()}) {
            const ToolRun run = RunIn({}, {"page.svg", "more/b.svg", "--out-dir", std::string("out") + option,
                                           "-f", format, option, "-j", "2"});
            EXPECT_EQ(run.exitCode, 0) << run.errors;
        }
        for (const char* name : {"page.", "b."}) {
            const std::string within = ReadFile(std::string("out") + RequiredOption() + "/" + name + format);
            EXPECT_TRUE(within == ReadFile(std::string("out--no-sandbox/") + name + format))
                << name << format;
            EXPECT_FALSE(within.empty());
        }
    }
}

/// Returns the Seccomp state in /proc; "2" if a filter of system calls is active.
std::string SeccompOf(const std::string& process) {
    std::ifstream stream("/proc/" + process + "/status");
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with("Seccomp:\t")) return line.substr(9);
    return {};
}

TEST_F(SandboxRunTest, IsOnUnlessItIsTurnedOff) {
    ASSERT_EQ(mkfifo((Folder() / "waits.svg").c_str(), 0600), 0);
    struct RunRow {
        std::vector<std::string> arguments;
        bool isOfWorker;
        const char* state;
    };
    const std::vector<RunRow> rows{
        {{"waits.svg", "-o", "x.pdf"}, false, "2"},
        {{"info", "waits.svg"}, false, "2"},
        {{"check", "waits.svg"}, false, "2"},
        {{"inspect", "waits.svg"}, false, "2"},
        {{"waits.svg", "--out-dir", "out", "-f", "pdf"}, true, "2"},
        {{"waits.svg", "-o", "x.pdf", "--no-sandbox"}, false, "0"},
        {{"waits.svg", "--out-dir", "out", "-f", "pdf", "--no-sandbox"}, true, "0"},
    };
    for (const RunRow& row : rows) {
        std::vector<std::string> command{ORV_TOOL_PATH};
        command.insert(command.end(), row.arguments.begin(), row.arguments.end());
        const RunningTool running = StartProgram(command);
        // Reading begins after the setup is complete.
        int pipe = -1;
        for (int i = 0; i < 10'000 && pipe < 0; ++i) {
            pipe = open((Folder() / "waits.svg").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        EXPECT_GE(pipe, 0);
        std::string process = std::to_string(running.pid);
        if (row.isOfWorker) std::ifstream("/proc/" + process + "/task/" + process + "/children") >> process;
        EXPECT_EQ(SeccompOf(process), row.state) << testing::PrintToString(row.arguments);
        kill(running.pid, SIGTERM);
        WaitFor(running);
        close(pipe);
    }
}

TEST_F(SandboxRunTest, OptionsExcludeEachOther) {
    EXPECT_EQ(Run({"page.svg", "-o", "x.pdf", "--no-sandbox", "--require-sandbox"}).exitCode, 2);
}

/// Makes a system call fail from now on, as in a container whose filter does not know it.
void RefuseCall(unsigned int call) {
    std::array program{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, call},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EPERM},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog filter{program.size(), program.data()};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &filter);
}

TEST_F(SandboxRunTest, WhereTheSystemRefusesItPagesPrintUnlessItIsRequired) {
    struct RefusalRow {
        unsigned int call;
        const char* words;
    };
    constexpr std::array kRows{
        RefusalRow{444, "the rules for files: Operation not permitted"},
        RefusalRow{SYS_seccomp, "the filter of system calls: Operation not permitted"},
    };
    for (const RefusalRow& row : kRows) {
        EXPECT_EQ(InProcess([&] {
                      RefuseCall(row.call);
                      const ToolRun run = Run({"page.svg", "-o", "x.pdf"});
                      return run.exitCode == 0 && run.errors.empty() ? 0 : 1;
                  }),
                  0)
            << row.words;
        EXPECT_EQ(InProcess([&] {
                      RefuseCall(row.call);
                      const ToolRun run = Run({"page.svg", "-o", "y.pdf", "--require-sandbox"});
                      const bool isTold = run.errors.starts_with("orvprint: --require-sandbox: ") &&
                                          run.errors.find(row.words) != std::string::npos;
                      return run.exitCode == 9 && isTold ? 0 : 1;
                  }),
                  0)
            << row.words;
        EXPECT_FALSE(Exists("y.pdf"));
    }
}

#endif

}  // namespace
