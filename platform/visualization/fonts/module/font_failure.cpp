// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/font_failure.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

void FailForFile(std::string_view path, int error) {
    if (error == ENOMEM) throw std::bad_alloc();
    const char* advice = "; install the font anew, or run fc-cache";
    if (error == EMFILE || error == ENFILE) advice = "; allow more open files (ulimit -n)";
    if (error == EACCES || error == EPERM) advice = "; whoever prints must be able to read it";
    throw FontFailure({"the font ", path, " cannot be read: ", std::strerror(error), advice});
}

void MakeSureOfMemory() {
    constexpr std::size_t kPlenty = std::size_t{8} << 20U;
    void* volatile room = std::malloc(kPlenty);
    if (!room) throw std::bad_alloc();
    std::free(room);
}

void MakeSureOfHandles() {
    // Largest number of files that fontconfig has open at once: a folder, a cache, a font, and their locks.
    constexpr std::size_t kHandles = 6;
    std::array<int, kHandles> handles{};
    std::size_t count = 0;
    int error = 0;
    for (; count < kHandles; count += 2)
        if (pipe2(&handles[count], O_CLOEXEC) != 0) {
            error = errno;
            break;
        }
    for (std::size_t i = 0; i < count; ++i) close(handles[i]);
    if (error == EMFILE || error == ENFILE)
        throw FontFailure(
            {"fonts cannot be looked for: ", std::strerror(error), "; allow more open files (ulimit -n)"});
}
