// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/sandbox/call_filter.h"

#include <linux/seccomp.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

std::string RefuseCalls() {
    const std::span<const sock_filter> code = CallFilterProgram();
    sock_fprog program{};
    program.len = static_cast<unsigned short>(code.size());
    // The kernel only reads it.
    program.filter = const_cast<sock_filter*>(code.data());
    // Without this flag, some kernels enable speculation mitigations that slow down the whole process.
    const long status =
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_SPEC_ALLOW, &program);
    return status == 0 ? std::string() : std::string("the filter of system calls: ") + std::strerror(errno);
}
