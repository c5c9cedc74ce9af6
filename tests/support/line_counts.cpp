// SPDX-License-Identifier: Apache-2.0

// Adds the coverage counters of this program or library to its file in the folder ORV_COUNTS_FOLDER when it
// exits.
//
// Replaces the compiler's own routine, which writes errors to standard error where it cannot write: as
// another user, with few file descriptors, or in a sandbox. Here such a process is simply not counted.
// Nothing is allocated, and system calls are made directly, since tests may intercept functions of the C
// library.

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#pragma clang diagnostic ignored "-Wreserved-identifier"

extern "C" {
std::uint64_t __llvm_profile_get_size_for_buffer();
const void* __llvm_profile_begin_counters();
const void* __llvm_profile_end_counters();
int __llvm_profile_write_buffer(char* buffer);
int __llvm_profile_check_compatibility(const char* buffer, std::uint64_t size);
int __llvm_profile_merge_from_buffer(const char* buffer, std::uint64_t size);

/// Defining it disables the compiler's own routine.
extern int __llvm_profile_runtime;
int __llvm_profile_runtime = 0;
}

namespace {

/// High enough not to disturb tests that count file descriptors.
constexpr int kLowestHandle = 900;

int file = -1;
std::array<char, 4096> path{};

void Open() {
    const long low = syscall(SYS_openat, AT_FDCWD, path.data(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (low < 0) return;
    file = static_cast<int>(syscall(SYS_fcntl, low, F_DUPFD_CLOEXEC, kLowestHandle));
    syscall(SYS_close, low);
}

/// Reopens the file: a lock on a file description shared with the parent process would not exclude the
/// parent.
void Reopen() {
    if (file < 0) return;
    syscall(SYS_close, file);
    file = -1;
    Open();
}

/// Opened at program start, and again after a fork, because the process may be forbidden to open files later.
__attribute__((constructor)) void OpenCounts() {
    // Test programs also link this, but have no counters themselves.
    if (__llvm_profile_begin_counters() == __llvm_profile_end_counters()) return;
    const char* folder = std::getenv("ORV_COUNTS_FOLDER");
    Dl_info image{};
    if (!folder || !*folder || dladdr(&file, &image) == 0 || !image.dli_fname) return;
    const char* slash = std::strrchr(image.dli_fname, '/');
    const int length =
        std::snprintf(path.data(), path.size(), "%s/%s.profraw", folder, slash ? slash + 1 : image.dli_fname);
    if (length <= 0 || length >= static_cast<int>(path.size())) return;
    Open();
    pthread_atfork(nullptr, nullptr, Reopen);
}

/// Waits for exclusive access to the file.
bool Hold() {
    if (syscall(SYS_flock, file, LOCK_EX) == 0) return true;
    // Batch workers close all descriptors they did not open themselves.
    Open();
    return syscall(SYS_flock, file, LOCK_EX) == 0;
}

/// Adds the counters to those of other processes in the file, under a lock.
__attribute__((destructor)) void AddCounts() {
    rlimit sizes{};
    // A write beyond the file size limit would terminate the process by a signal.
    if (file < 0 || getrlimit(RLIMIT_FSIZE, &sizes) != 0 || sizes.rlim_cur != RLIM_INFINITY) return;
    if (!Hold()) return;
    const std::uint64_t size = __llvm_profile_get_size_for_buffer();
    struct stat status {};
    const bool isFirst = fstat(file, &status) != 0 || static_cast<std::uint64_t>(status.st_size) != size;
    if (!isFirst || syscall(SYS_ftruncate, file, size) == 0) {
        void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (mapped != MAP_FAILED) {
            char* bytes = static_cast<char*>(mapped);
            if (!isFirst && __llvm_profile_check_compatibility(bytes, size) == 0)
                __llvm_profile_merge_from_buffer(bytes, size);
            __llvm_profile_write_buffer(bytes);
            munmap(mapped, size);
        }
    }
    syscall(SYS_close, file);
    file = -1;
}

}  // namespace
