// SPDX-License-Identifier: Apache-2.0

// What the sandbox refuses: system calls and files.

#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <functional>
#include <thread>

#include "apps/orvprint/sandbox/call_filter.h"
#include "apps/orvprint/sandbox/sandbox.h"
#include "tests/apps/in_process.h"
#include "tests/support/scratch_folder.h"

namespace fs = std::filesystem;

namespace {

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
    int outside;    ///< the error without the sandbox; -1 if it depends on the machine
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
            // No flags are defined, so 1 is an error. (Arguments are words: an int would leave half of its
            // word undefined.)
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

// Not every processor offers the calls of another architecture, so only the size of the filter is tested.
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

}  // namespace
