// SPDX-License-Identifier: Apache-2.0

// Generates the seccomp filter as a C++ source of the command.

#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::array kNetwork{
    SCMP_SYS(socket),   SCMP_SYS(socketpair), SCMP_SYS(connect),  SCMP_SYS(bind),    SCMP_SYS(listen),
    SCMP_SYS(accept),   SCMP_SYS(accept4),    SCMP_SYS(sendto),   SCMP_SYS(sendmsg), SCMP_SYS(sendmmsg),
    SCMP_SYS(recvfrom), SCMP_SYS(recvmsg),    SCMP_SYS(recvmmsg),
};
constexpr std::array kPrograms{
    SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork), SCMP_SYS(uselib),
};
constexpr std::array kOtherProcesses{
    SCMP_SYS(ptrace),
    SCMP_SYS(process_vm_readv),
    SCMP_SYS(process_vm_writev),
    SCMP_SYS(process_madvise),
    SCMP_SYS(pidfd_open),
    SCMP_SYS(pidfd_getfd),
    SCMP_SYS(pidfd_send_signal),
    SCMP_SYS(kcmp),
    SCMP_SYS(kill),
    SCMP_SYS(tkill),
    SCMP_SYS(rt_sigqueueinfo),
    SCMP_SYS(rt_tgsigqueueinfo),
    SCMP_SYS(setpriority),
    SCMP_SYS(sched_setscheduler),
    SCMP_SYS(sched_setattr),
    SCMP_SYS(move_pages),
    SCMP_SYS(migrate_pages),
    SCMP_SYS(shmget),
    SCMP_SYS(shmat),
    SCMP_SYS(msgget),
    SCMP_SYS(semget),
    SCMP_SYS(mq_open),
};
constexpr std::array kNamespacesAndMounts{
    SCMP_SYS(unshare),       SCMP_SYS(setns),    SCMP_SYS(mount),       SCMP_SYS(umount2),
    SCMP_SYS(pivot_root),    SCMP_SYS(chroot),   SCMP_SYS(fsopen),      SCMP_SYS(fsconfig),
    SCMP_SYS(fsmount),       SCMP_SYS(fspick),   SCMP_SYS(open_tree),   SCMP_SYS(move_mount),
    SCMP_SYS(mount_setattr), SCMP_SYS(quotactl), SCMP_SYS(quotactl_fd), SCMP_SYS(swapon),
    SCMP_SYS(swapoff),
};
// Calls that the file rules do not cover, or that bypass them.
constexpr std::array kFiles{
    SCMP_SYS(chmod),
    SCMP_SYS(fchmodat),
    SCMP_SYS(chown),
    SCMP_SYS(lchown),
    SCMP_SYS(fchownat),
    SCMP_SYS(truncate),
    SCMP_SYS(setxattr),
    SCMP_SYS(lsetxattr),
    SCMP_SYS(removexattr),
    SCMP_SYS(lremovexattr),
    SCMP_SYS(mknod),
    SCMP_SYS(mknodat),
    SCMP_SYS(utime),
    SCMP_SYS(utimes),
    SCMP_SYS(futimesat),
    SCMP_SYS(open_by_handle_at),
    SCMP_SYS(name_to_handle_at),
    SCMP_SYS(fanotify_init),
    SCMP_SYS(acct),
};
constexpr std::array kIdentity{
    SCMP_SYS(setuid),    SCMP_SYS(setgid),      SCMP_SYS(setreuid), SCMP_SYS(setregid), SCMP_SYS(setresuid),
    SCMP_SYS(setresgid), SCMP_SYS(setgroups),   SCMP_SYS(setfsuid), SCMP_SYS(setfsgid), SCMP_SYS(capset),
    SCMP_SYS(setsid),    SCMP_SYS(personality), SCMP_SYS(keyctl),   SCMP_SYS(add_key),  SCMP_SYS(request_key),
};
// Large, rarely used parts of the kernel in which vulnerabilities turn up, and calls for administrators only.
// A seccomp filter does not see the requests of io_uring at all.
constexpr std::array kKernel{
    SCMP_SYS(io_uring_setup),
    SCMP_SYS(io_uring_enter),
    SCMP_SYS(io_uring_register),
    SCMP_SYS(bpf),
    SCMP_SYS(perf_event_open),
    SCMP_SYS(userfaultfd),
    SCMP_SYS(modify_ldt),
    SCMP_SYS(init_module),
    SCMP_SYS(finit_module),
    SCMP_SYS(delete_module),
    SCMP_SYS(kexec_load),
    SCMP_SYS(kexec_file_load),
    SCMP_SYS(reboot),
    SCMP_SYS(syslog),
    SCMP_SYS(iopl),
    SCMP_SYS(ioperm),
    SCMP_SYS(settimeofday),
    SCMP_SYS(clock_settime),
    SCMP_SYS(adjtimex),
    SCMP_SYS(clock_adjtime),
    SCMP_SYS(sethostname),
    SCMP_SYS(setdomainname),
    SCMP_SYS(vhangup),
    SCMP_SYS(lookup_dcookie),
    SCMP_SYS(memfd_secret),
    SCMP_SYS(nfsservctl),
    SCMP_SYS(vmsplice),
};

constexpr std::array<std::uint64_t, 8> kNewNamespaces{CLONE_NEWNS,     CLONE_NEWUTS, CLONE_NEWIPC,
                                                      CLONE_NEWUSER,   CLONE_NEWPID, CLONE_NEWNET,
                                                      CLONE_NEWCGROUP, 0x80 /* time */};
// Characters injected into a terminal would be executed by its shell.
constexpr std::array<std::uint64_t, 2> kTypingRequests{TIOCSTI, 0x541C /* TIOCLINUX, which pastes */};

void Check(int status) {
    if (status == 0) return;
    std::fprintf(stderr, "call_filter_compiler: error %d\n", -status);
    std::exit(1);
}

/// Refused calls fail with an error instead of killing the process, so a library that merely tries one
/// continues without it.
void Refuse(scmp_filter_ctx filter, int call) {
    // Not every architecture has every call.
    const int status = seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 0);
    if (status != -EDOM) Check(status);
}

template <class Calls>
void RefuseAll(scmp_filter_ctx filter, const Calls& calls) {
    for (const int call : calls) Refuse(filter, call);
}

void RefuseNewProcesses(scmp_filter_ctx filter) {
    const auto refuseFlags = [&](std::uint64_t mask, std::uint64_t value) {
        Check(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1,
                               scmp_arg_cmp{0, SCMP_CMP_MASKED_EQ, mask, value}));
    };
    refuseFlags(CLONE_THREAD, 0);
    for (const std::uint64_t flag : kNewNamespaces) refuseFlags(flag, flag);
    // The flags of clone3 are in memory, which filters cannot read. The C library falls back to clone if
    // clone3 is missing.
    Check(seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0));
}

void RefuseTyping(scmp_filter_ctx filter) {
    // The kernel uses the lower 32 bits only.
    for (const std::uint64_t request : kTypingRequests)
        Check(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(ioctl), 1,
                               scmp_arg_cmp{1, SCMP_CMP_MASKED_EQ, 0xFFFFFFFFU, request}));
}

/// The instructions as the kernel reads them: 8 bytes each.
struct Instruction {
    std::uint16_t code;
    std::uint8_t ifTrue, ifFalse;
    std::uint32_t value;
};

void Write(std::FILE* code, std::FILE* source) {
    std::fputs(
        "#include \"apps/orvprint/sandbox/call_filter.h\"\n\n#include <array>\n\nnamespace {\n\n"
        "constexpr auto kProgram = std::to_array<sock_filter>({\n",
        source);
    Instruction instruction{};
    while (std::fread(&instruction, sizeof instruction, 1, code) == 1)
        std::fprintf(source, "    {%u, %u, %u, %uU},\n", instruction.code, instruction.ifTrue,
                     instruction.ifFalse, instruction.value);
    std::fputs(
        "});\n\n}  // namespace\n\nstd::span<const sock_filter> CallFilterProgram() { return kProgram; }\n",
        source);
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    if (!filter) return 1;
    // The command never makes calls of another architecture, whose numbers mean something else.
    Check(seccomp_attr_set(filter, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS));
    // A binary tree instead of a list: the kernel evaluates it in a tenth of the time.
    Check(seccomp_attr_set(filter, SCMP_FLTATR_CTL_OPTIMIZE, 2));
    RefuseAll(filter, kNetwork);
    RefuseAll(filter, kPrograms);
    RefuseAll(filter, kOtherProcesses);
    RefuseAll(filter, kNamespacesAndMounts);
    RefuseAll(filter, kFiles);
    RefuseAll(filter, kIdentity);
    RefuseAll(filter, kKernel);
    RefuseNewProcesses(filter);
    RefuseTyping(filter);

    std::FILE* const code = std::tmpfile();
    std::FILE* const source = std::fopen(arguments[1], "w");
    if (!code || !source) return 1;
    Check(seccomp_export_bpf(filter, fileno(code)));
    std::rewind(code);
    Write(code, source);
    seccomp_release(filter);
    std::fclose(code);
    return std::fclose(source) == 0 ? 0 : 1;
}
