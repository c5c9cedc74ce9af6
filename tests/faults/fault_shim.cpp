// SPDX-License-Identifier: Apache-2.0

// Preloaded into a program: refuses memory, lets reading fail, or reports path lookups, as set by environment
// variables.
//
//   ORV_FAIL_NEW_AT=N    refuses the N-th memory request since the start of main: operator new in the
//                        program and in libraries, malloc in the program only
//   ORV_FAIL_NEW_ALL=1   with ORV_FAIL_NEW_AT, refuses all later requests as well
//   ORV_FAIL_READ_OF=END selects files whose names end like this, for the next two variables
//   ORV_FAIL_READ_AT=N   reading these files fails after N bytes, as with a broken disk
//   ORV_END_READ_AT=N    reading these files ends after N bytes, as if they had been truncated
//   ORV_WATCH_PATH=END   reports each lookup of a path that ends like this on standard error

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/faults/failing_allocator.h"

namespace {

std::uint64_t NumberOf(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? std::strtoull(value, nullptr, 10) : 0;
}

using Main = int (*)(int, char**, char**);
Main programMain = nullptr;

// The program's own code. An operator new that is linked into it cannot be replaced, so calls of malloc from
// there are counted instead.
std::uintptr_t programBegin = 0, programEnd = 0;

/// Called for the first loaded object, which is the program; skips the others.
int NoteProgram(dl_phdr_info* object, std::size_t /*size*/, void* /*data*/) {
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const auto& part = object->dlpi_phdr[i];
        if (part.p_type != PT_LOAD || (part.p_flags & PF_X) == 0) continue;
        programBegin = object->dlpi_addr + part.p_vaddr;
        programEnd = programBegin + part.p_memsz;
    }
    return 1;
}

bool IsRefused(const void* caller) {
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    return address >= programBegin && address < programEnd && !FailingAllocator::MayTake();
}

/// Starts counting in main, so that allocations during static initialisation do not count.
int FailingMain(int argc, char** argv, char** environment) {
    if (const std::uint64_t request = NumberOf("ORV_FAIL_NEW_AT"); request != 0) {
        dl_iterate_phdr(NoteProgram, nullptr);
        FailingAllocator::Begin(request, std::getenv("ORV_FAIL_NEW_ALL") ? FailingAllocator::Refuses::kAllFrom
                                                                         : FailingAllocator::Refuses::kOne);
    }
    return programMain(argc, argv, environment);
}

/// Whether this is a descriptor of a file whose name ends with ORV_FAIL_READ_OF.
bool IsMeant(int descriptor) {
    const char* ending = std::getenv("ORV_FAIL_READ_OF");
    if (!ending) return false;
    std::array<char, 64> link{};
    std::array<char, 4096> path{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const ssize_t size = readlink(link.data(), path.data(), path.size());
    return size > 0 && std::string_view(path.data(), static_cast<std::size_t>(size)).ends_with(ending);
}

}  // namespace

// Names of the C library.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_memalign(std::size_t alignment, std::size_t size);

extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept {
    if (!IsRefused(__builtin_return_address(0))) return __libc_malloc(size);
    errno = ENOMEM;
    return nullptr;
}

extern "C" __attribute__((visibility("default"))) void* aligned_alloc(std::size_t alignment,
                                                                      std::size_t size) noexcept {
    if (!IsRefused(__builtin_return_address(0))) return __libc_memalign(alignment, size);
    errno = ENOMEM;
    return nullptr;
}

extern "C" __attribute__((visibility("default"))) int posix_memalign(void** memory, std::size_t alignment,
                                                                     std::size_t size) noexcept {
    if (IsRefused(__builtin_return_address(0))) return ENOMEM;
    *memory = __libc_memalign(alignment, size);
    return *memory ? 0 : ENOMEM;
}

extern "C" __attribute__((visibility("default"))) int __libc_start_main(Main main, int argc, char** argv,
                                                                        void (*init)(), void (*fini)(),
                                                                        void (*unload)(), void* stackEnd) {
    static const auto original =
        reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
    programMain = main;
    return original(FailingMain, argc, argv, init, fini, unload, stackEnd);
}

extern "C" __attribute__((visibility("default"))) ssize_t read(int descriptor, void* buffer, size_t count) {
    static const auto original = reinterpret_cast<decltype(&read)>(dlsym(RTLD_NEXT, "read"));
    if (!IsMeant(descriptor)) return original(descriptor, buffer, count);
    const bool ends = std::getenv("ORV_END_READ_AT") != nullptr;
    const auto limit = static_cast<off_t>(NumberOf(ends ? "ORV_END_READ_AT" : "ORV_FAIL_READ_AT"));
    const off_t place = lseek(descriptor, 0, SEEK_CUR);
    if (place >= limit) {
        if (ends) return 0;
        errno = EIO;
        return -1;
    }
    if (place + static_cast<off_t>(count) > limit) count = static_cast<size_t>(limit - place);
    return original(descriptor, buffer, count);
}

// ---- path lookups ----

namespace {

void Watch(const char* path) {
    const char* const ending = std::getenv("ORV_WATCH_PATH");
    if (!ending || !path || !std::string_view(path).ends_with(ending)) return;
    const int before = errno;
    std::array<char, 4096> line{};
    const int size = std::snprintf(line.data(), line.size(), "looked up: %s\n", path);
    const ssize_t ignored = write(STDERR_FILENO, line.data(), static_cast<std::size_t>(size));
    static_cast<void>(ignored);
    errno = before;
}

template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define ORV_EXPORTED extern "C" __attribute__((visibility("default")))

ORV_EXPORTED int stat(const char* path, struct stat* status) noexcept {
    Watch(path);
    return Next<int(const char*, struct stat*)>("stat")(path, status);
}
ORV_EXPORTED int lstat(const char* path, struct stat* status) noexcept {
    Watch(path);
    return Next<int(const char*, struct stat*)>("lstat")(path, status);
}
ORV_EXPORTED int access(const char* path, int mode) noexcept {
    Watch(path);
    return Next<int(const char*, int)>("access")(path, mode);
}
ORV_EXPORTED ssize_t readlink(const char* path, char* target, size_t size) noexcept {
    Watch(path);
    return Next<ssize_t(const char*, char*, size_t)>("readlink")(path, target, size);
}
ORV_EXPORTED char* realpath(const char* path, char* target) noexcept {
    Watch(path);
    return Next<char*(const char*, char*)>("realpath")(path, target);
}
ORV_EXPORTED FILE* fopen(const char* path, const char* mode) {
    Watch(path);
    return Next<FILE*(const char*, const char*)>("fopen")(path, mode);
}
ORV_EXPORTED int open(const char* path, int flags, ...) {
    Watch(path);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Next<int(const char*, int, ...)>("open")(path, flags, mode);
}
