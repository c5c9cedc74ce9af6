// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/sandbox/sandbox.h"

#include <sys/prctl.h>

#include <cerrno>
#include <cstring>

#include "apps/orvprint/sandbox/call_filter.h"

std::string EnterSandbox(const std::vector<FileRule>& rules) {
    // Without no_new_privs, a setuid program started later would escape the restrictions.
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return std::string("giving up rights: ") + std::strerror(errno);
    std::string missing = RestrictFiles(rules);
    if (const std::string calls = RefuseCalls(); !calls.empty())
        missing += (missing.empty() ? "" : "; ") + calls;
    return missing;
}
