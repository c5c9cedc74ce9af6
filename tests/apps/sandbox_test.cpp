// SPDX-License-Identifier: Apache-2.0

// What the sandbox refuses, and that everything that prints without it prints the same within it.

#include "apps/orvprint/sandbox/sandbox.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fstream>
#include <functional>
#include <thread>

#include "apps/orvprint/sandbox/call_filter.h"
#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

int ErrorOf(long result) { return result < 0 ? errno : 0; }

/// The result of an action, at most 255, in a process of its own.
int InProcess(const std::function<int()>& action) {
    const pid_t process = fork();
    if (process == 0) _exit(action());
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

int InSandbox(const std::vector<FileRule>& rules, const std::function<int()>& action) {
    return InProcess([&] {
        EnterSandbox(rules);
        return action();
    });
}

// ---- system calls ----

struct CallRow {
    const char* name;
    int (*call)();  ///< returns the error, 0 for none
    int outside;    ///< the error where nothing refuses it, -1 where the machine decides
};

int Kill() { return ErrorOf(kill(getpid(), 0)); }

constexpr std::array kRefusedCalls{
    CallRow{"socket", [] { return ErrorOf(socket(AF_INET, SOCK_STREAM, 0)); }, 0},
    CallRow{"local socket", [] { return ErrorOf(socket(AF_UNIX, SOCK_DGRAM, 0)); }, 0},
    CallRow{"pair of sockets",
            [] {
                std::array<int, 2> pair{};
                return ErrorOf(socketpair(AF_UNIX, SOCK_DGRAM, 0, pair.data()));
            },
            0},
    CallRow{"program",
            [] {
                std::array<char*, 1> none{nullptr};
                return ErrorOf(execve("/no/program", none.data(), none.data()));
            },
            ENOENT},
    CallRow{"process",
            [] {
                const pid_t child = fork();
                if (child == 0) _exit(0);
                return ErrorOf(child);
            },
            0},
    CallRow{"namespace", [] { return ErrorOf(unshare(0)); }, 0},
    CallRow{"process in a namespace",
            [] {
                constexpr unsigned long kFlags = CLONE_NEWUSER | CLONE_THREAD | CLONE_SIGHAND | CLONE_VM;
                return ErrorOf(syscall(SYS_clone, kFlags, 0UL, 0UL, 0UL, 0UL));
            },
            EINVAL},
    CallRow{"another's memory", [] { return ErrorOf(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr)); }, 0},
    CallRow{"reading memory",
            // There are no flags. (Arguments are words: of an int the kernel sees more than was given.)
            [] { return ErrorOf(syscall(SYS_process_vm_readv, getpid(), nullptr, 0UL, nullptr, 0UL, 1UL)); },
            EINVAL},
    CallRow{"signal", Kill, 0},
    CallRow{"mode by path", [] { return ErrorOf(chmod("/no/file", 0600)); }, ENOENT},
    CallRow{"length by path", [] { return ErrorOf(truncate("/no/file", 0)); }, ENOENT},
    CallRow{"session", [] { return ErrorOf(setsid()); }, 0},
    CallRow{"mount", [] { return ErrorOf(syscall(SYS_mount, nullptr, nullptr, nullptr, 0, nullptr)); }, -1},
    CallRow{"tree of mounts", [] { return ErrorOf(syscall(SYS_open_tree, -1, "", 0)); }, -1},
    CallRow{"requests in a ring", [] { return ErrorOf(syscall(SYS_io_uring_setup, 1, nullptr)); }, -1},
    CallRow{"program for the kernel", [] { return ErrorOf(syscall(SYS_bpf, 0, nullptr, 0)); }, -1},
    CallRow{"keys", [] { return ErrorOf(syscall(SYS_keyctl, 0, 0, 0, 0, 0)); }, -1},
    CallRow{"words into a terminal", [] { return ErrorOf(ioctl(STDIN_FILENO, TIOCSTI, "x")); }, -1},
};

TEST(SandboxTest, CallsThatPrintingNeverNeedsAreRefused) {
    for (const CallRow& row : kRefusedCalls) {
        if (row.outside >= 0) EXPECT_EQ(InProcess(row.call), row.outside) << row.name;
        EXPECT_EQ(InProcess([&] {
                      prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
                      if (!RefuseCalls().empty()) return 200;
                      return row.call();
                  }),
                  EPERM)
            << row.name;
    }
}

TEST(SandboxTest, NewThreadsAreNotTakenForProcesses) {
    EXPECT_EQ(InSandbox({{"/", FileUse::kRead}},
                        [] {
                            int value = 0;
                            std::thread([&value] { value = 7; }).join();
                            return value;
                        }),
              7);
    EXPECT_EQ(InSandbox({}, [] { return ErrorOf(syscall(SYS_clone3, nullptr, 0)); }), ENOSYS);
}

TEST(SandboxTest, WhatPrintingNeedsGoesOn) {
    const ScratchFolder folder;
    const std::string file = folder.Path() / "x";
    EXPECT_EQ(InSandbox({{folder.Path(), FileUse::kMake}},
                        [&] {
                            std::array<int, 2> pipe{};
                            if (::pipe(pipe.data()) != 0) return 1;
                            if (memfd_create("x", 0) < 0) return 2;
                            const int made = open(file.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
                            if (made < 0 || fchmod(made, 0644) != 0 || ftruncate(made, 100) != 0) return 3;
                            if (rename(file.c_str(), (file + "2").c_str()) != 0) return 4;
                            if (unlink((file + "2").c_str()) != 0) return 5;
                            const rlimit limit{1U << 30U, 1U << 30U};
                            if (setrlimit(RLIMIT_DATA, &limit) != 0) return 6;
                            std::signal(SIGTERM, SIG_IGN);
                            return std::raise(SIGTERM) == 0 ? 0 : 7;
                        }),
              0);
}

// Where the processor does not know its calls by the numbers of another kind, there is nothing to try.
TEST(SandboxTest, TheFilterIsAProgram) { EXPECT_GT(CallFilterProgram().size(), 50U); }

// ---- files ----

class SandboxFilesTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"read", "made", "other"}) {
            fs::create_directory(folder_.Path() / name);
            const int file = open(Path(std::string(name) + "/x").c_str(), O_WRONLY | O_CREAT, 0666);
            ASSERT_GE(file, 0);
            close(file);
        }
        if (InProcess([] { return RestrictFiles({}).empty() ? 0 : 1; }) != 0)
            GTEST_SKIP() << "this kernel cannot restrict files";
    }
    std::string Path(const std::string& name) const { return folder_.Path() / name; }

    int Try(const std::function<int()>& action) const {
        return InSandbox({{Path("read"), FileUse::kRead}, {Path("made"), FileUse::kMake}}, action);
    }
    int Open(const std::string& name, int flags) const {
        return Try([&] { return ErrorOf(open(Path(name).c_str(), flags, 0600)); });
    }

private:
    ScratchFolder folder_;
};

TEST_F(SandboxFilesTest, AreThoseOfTheRulesOnly) {
    struct OpenRow {
        const char* name;
        int flags, error;
    };
    constexpr std::array kRows{
        OpenRow{"read/x", O_RDONLY, 0},
        OpenRow{"read", O_RDONLY | O_DIRECTORY, 0},
        OpenRow{"read/x", O_WRONLY, EACCES},
        OpenRow{"read/x", O_RDWR, EACCES},
        OpenRow{"read/new", O_WRONLY | O_CREAT, EACCES},
        OpenRow{"made/x", O_RDWR, 0},
        OpenRow{"made/x", O_WRONLY | O_TRUNC, 0},
        OpenRow{"made/new", O_RDWR | O_CREAT | O_EXCL, 0},
        OpenRow{"made", O_RDWR | O_TMPFILE, 0},
        OpenRow{"other/x", O_RDONLY, EACCES},
        OpenRow{"other", O_RDONLY | O_DIRECTORY, EACCES},
        OpenRow{"other/x", O_WRONLY, EACCES},
        OpenRow{"other/new", O_WRONLY | O_CREAT, EACCES},
        OpenRow{"read/../other/x", O_RDONLY, EACCES},
    };
    for (const OpenRow& row : kRows) EXPECT_EQ(Open(row.name, row.flags), row.error) << row.name << row.flags;
    EXPECT_EQ(Try([] { return ErrorOf(open("/etc/passwd", O_RDONLY)); }), EACCES);
    EXPECT_EQ(Try([] { return ErrorOf(open("/proc/1/environ", O_RDONLY)); }), EACCES);
}

TEST_F(SandboxFilesTest, LinksLeadNowhereElse) {
    fs::create_symlink(Path("other/x"), Path("read/link"));
    EXPECT_EQ(Open("read/link", O_RDONLY), EACCES);
    EXPECT_EQ(Try([&] { return ErrorOf(symlink("/", Path("made/link").c_str())); }), EACCES);
    EXPECT_NE(Try([&] { return ErrorOf(link(Path("other/x").c_str(), Path("made/hard").c_str())); }), 0);
}

TEST_F(SandboxFilesTest, AreMovedAndRemovedWithinTheirFolderOnly) {
    const auto move = [&](const char* from, const char* to) {
        return Try([&] { return ErrorOf(rename(Path(from).c_str(), Path(to).c_str())); });
    };
    EXPECT_EQ(move("made/x", "made/y"), 0);
    EXPECT_NE(move("made/y", "other/y"), 0);
    EXPECT_NE(move("other/x", "made/x"), 0);
    EXPECT_EQ(Try([&] { return ErrorOf(unlink(Path("other/x").c_str())); }), EACCES);
    EXPECT_EQ(Try([&] { return ErrorOf(unlink(Path("made/y").c_str())); }), 0);
    EXPECT_EQ(Try([&] { return ErrorOf(mkdir(Path("made/folder").c_str(), 0700)); }), EACCES);
}

TEST_F(SandboxFilesTest, ThatAreOpenStayOpen) {
    const int file = open(Path("other/x").c_str(), O_RDWR);
    EXPECT_EQ(Try([&] { return write(file, "x", 1) == 1 ? 0 : errno; }), 0);
    close(file);
}

// ---- the command ----

#if !defined(ORV_SANITIZED)  // sanitizers need what the sandbox gives up

class SandboxRunTest : public ToolTest {
protected:
    SandboxRunTest() {
        // The same output whenever the same is printed.
        WriteFile("page.svg",
                  SmallDrawing("<title>T</title><rect width='40' height='20' fill='red'/><text x='2' y='30' "
                               "font-size='9'>Text \u00e4\u05d0\u0e01\u6f22</text><image x='50' width='20' "
                               "height='20' xlink:href='images/dot.png'/>"));
        WriteFile("images/dot.png", Picture());
        fs::create_directories(Folder() / "home");
    }

    /// Eight by eight black pixels, by the command itself.
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

    /// Prints within and without, with nothing kept from one to the other.
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

    /// Fails where part of the sandbox is missing, on machines that have all of it.
    static const char* RequiredOption() {
        static const bool isWhole = InProcess([] { return EnterSandbox({}).empty() ? 0 : 1; }) == 0;
        return isWhole ? "--require-sandbox" : "--parser=light";
    }
};

TEST_F(SandboxRunTest, EveryFormatPrintsTheSame) {
    for (const char* format : {"pdf", "ps", "eps", "svg", "png", "tiff", "pwg"}) {
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
    // Beside the drawing and the output everything may be read anyway.
    fs::create_directories(Folder() / "in");
    fs::rename(Folder() / "page.svg", Folder() / "in/page.svg");
    fs::rename(Folder() / "images", Folder() / "in/images");
    for (const char* folder : {"out", "fonts", "elsewhere", "data/fonts/deep", "config/fontconfig/conf.d"})
        fs::create_directories(Folder() / folder);
    const std::string root = Folder();
    const std::string list =
        "<?xml version='1.0'?><!DOCTYPE fontconfig SYSTEM 'urn:fontconfig:fonts.dtd'><fontconfig>";
    const std::string cache = "<cachedir>" + root + "/fccache</cachedir>";
    // The only font is a file of a folder that the configuration names.
    fs::copy_file(installed, Folder() / "fonts/only.ttf");
    WriteFile("own.conf", list + "<dir>" + root + "/fonts</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    ASSERT_EQ(RunIn({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/y.pdf"}).exitCode,
              0);
    EXPECT_THAT(ReadFile("out/y.pdf"), HasSubstr("/Length1 ")) << "a font is in it";
    // The way there begins in a folder of the system's.
    WriteFile("own.conf", list + "<dir>/usr/.." + root + "/fonts</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    // It is named by a file that the first includes.
    WriteFile("more.conf", list + "<dir>" + root + "/fonts</dir></fontconfig>");
    WriteFile("own.conf", list + "<include>" + root + "/more.conf</include>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf"}, {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    // It is a link in the user's folder to a file elsewhere.
    fs::rename(Folder() / "fonts/only.ttf", Folder() / "elsewhere/only.ttf");
    fs::create_symlink(Folder() / "elsewhere/only.ttf", Folder() / "data/fonts/deep/link.ttf");
    WriteFile("own.conf", list + "<dir prefix='xdg'>fonts</dir>" + cache + "</fontconfig>");
    ExpectTheSame({"FONTCONFIG_FILE=" + root + "/own.conf", "XDG_DATA_HOME=" + root + "/data"},
                  {"in/page.svg", "-o", "out/x.pdf"}, "out/x.pdf");
    // The folder's name has to be unescaped to be found.
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
    for (const char* format : {"pdf", "ps", "svg", "png", "tiff", "pwg"}) {
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

/// "2" in /proc: a filter of system calls is on.
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
        // Reading begins when all is set up.
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

/// As in a container whose own filter knows a call not, from now on.
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
