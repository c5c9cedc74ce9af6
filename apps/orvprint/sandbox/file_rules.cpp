// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/sandbox/file_rules.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace {

// Rights of newer kernel interfaces, which the installed headers may not define.
constexpr std::uint64_t kTruncate = std::uint64_t{1} << 14U, kOrderDevices = std::uint64_t{1} << 15U;

struct RightRow {
    std::uint64_t right;
    int since;       ///< first version of the kernel interface that has it
    bool isOfFiles;  ///< applies to folders only
    bool isOfReading, isOfRewriting, isOfMaking;
};

// All rights there are. A right that is not granted for any access is denied everywhere.
constexpr std::array kRights{
    RightRow{LANDLOCK_ACCESS_FS_READ_FILE, 1, true, true, false, true},
    RightRow{LANDLOCK_ACCESS_FS_READ_DIR, 1, false, true, false, true},
    RightRow{LANDLOCK_ACCESS_FS_WRITE_FILE, 1, true, false, true, true},
    RightRow{kTruncate, 3, true, false, true, true},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_REG, 1, false, false, false, true},
    RightRow{LANDLOCK_ACCESS_FS_REMOVE_FILE, 1, false, false, false, true},
    RightRow{LANDLOCK_ACCESS_FS_EXECUTE, 1, true, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_REMOVE_DIR, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_CHAR, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_DIR, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_SOCK, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_FIFO, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_BLOCK, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_MAKE_SYM, 1, false, false, false, false},
    RightRow{LANDLOCK_ACCESS_FS_REFER, 2, false, false, false, false},
    RightRow{kOrderDevices, 5, true, false, false, false},
};

/// The kernel's structure in the latest version used here. Older kernels read its first part.
struct Refused {
    std::uint64_t files = 0;
    std::uint64_t connections = 0;  ///< since version 4: binding and connecting TCP sockets
    std::uint64_t scopes = 0;       ///< since version 6: abstract sockets and signals to other processes
};

std::size_t SizeOfRefused(int version) {
    if (version < 4) return sizeof(std::uint64_t);
    return version < 6 ? 2 * sizeof(std::uint64_t) : 3 * sizeof(std::uint64_t);
}

std::uint64_t RightsOf(FileUse use, bool isFolder, int version) {
    std::uint64_t rights = 0;
    for (const RightRow& row : kRights) {
        const bool isGranted = use == FileUse::kRead      ? row.isOfReading
                               : use == FileUse::kRewrite ? row.isOfRewriting
                                                          : row.isOfMaking;
        if (isGranted && row.since <= version && (isFolder || row.isOfFiles)) rights |= row.right;
    }
    return rights;
}

Refused AllOf(int version) {
    Refused refused;
    for (const RightRow& row : kRights)
        if (row.since <= version) refused.files |= row.right;
    refused.connections = 3;
    refused.scopes = 3;
    return refused;
}

/// A path that cannot be opened cannot be used by the process either.
void Allow(int ruleset, const FileRule& rule, int version) {
    const int file = open(rule.path.c_str(), O_PATH | O_CLOEXEC);
    if (file < 0) return;
    struct stat facts {};
    if (fstat(file, &facts) == 0) {
        landlock_path_beneath_attr beneath{};
        beneath.allowed_access = RightsOf(rule.use, S_ISDIR(facts.st_mode), version);
        beneath.parent_fd = file;
        syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0);
    }
    close(file);
}

std::string Failure() { return std::string("the rules for files: ") + std::strerror(errno); }

}  // namespace

std::string RestrictFiles(std::span<const FileRule> rules) {
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) return Failure();
    const int known = static_cast<int>(version);
    const Refused refused = AllOf(known);
    const auto ruleset =
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &refused, SizeOfRefused(known), 0));
    if (ruleset < 0) return Failure();
    for (const FileRule& rule : rules) Allow(ruleset, rule, known);
    const bool done = syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    std::string failure = done ? std::string() : Failure();
    close(ruleset);
    return failure;
}
