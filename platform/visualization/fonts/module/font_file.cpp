// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/font_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/visualization/fonts/module/font_failure.h"

FontFile::FontFile(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) FailForFile(path, errno);
    struct stat status = {};
    int error = 0;
    if (fstat(file, &status) != 0) {
        error = errno;
    } else if (!S_ISREG(status.st_mode)) {
        error = EINVAL;
    } else if (status.st_size > 0) {
        size_ = static_cast<std::size_t>(status.st_size);
        address_ = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file, 0);
        if (address_ == MAP_FAILED) error = errno;
    }
    close(file);
    if (error != 0) FailForFile(path, error);
}

FontFile::~FontFile() {
    if (address_) munmap(address_, size_);
}
