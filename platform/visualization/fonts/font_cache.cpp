// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/font_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr off_t kLargestFile = off_t{64} << 20;

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_;
};

bool IsForUserAlone(const struct stat& status) {
    return status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

int OpenFolder(const std::string& path) {
    return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
}

bool IsFolderOfUser(const Descriptor& folder) {
    struct stat status = {};
    return folder && fstat(folder.Get(), &status) == 0 && IsForUserAlone(status);
}

/// Creates a folder if its parent belongs to the user. Someone who prints with another user's home leaves
/// nothing there.
void MakeFolder(const std::string& path) {
    const std::string above = path.substr(0, path.rfind('/'));
    struct stat status = {};
    if (!above.empty() && stat(above.c_str(), &status) == 0 && status.st_uid == geteuid())
        mkdir(path.c_str(), S_IRWXU);
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::string FontCacheFolder() {
    if (std::getenv("FONTCONFIG_SYSROOT")) return {};
    std::string folder;
    if (std::getenv("ORVPRINT_CACHE_DIR")) {
        folder = Variable("ORVPRINT_CACHE_DIR");
    } else if (folder = Variable("XDG_CACHE_HOME"); folder.starts_with('/')) {
        folder += "/orvprint";
    } else {
        folder = Variable("HOME") + "/.cache/orvprint";
    }
    while (folder.ends_with('/')) folder.pop_back();
    return folder.starts_with('/') && folder != "/.cache/orvprint" ? folder : std::string();
}

bool ReadFontCache(const std::string& folder, const char* name, std::string& bytes) {
    const Descriptor opened(OpenFolder(folder));
    if (!IsFolderOfUser(opened)) return false;
    const Descriptor file(openat(opened.Get(), name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status = {};
    if (!file || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) || !IsForUserAlone(status) ||
        status.st_size > kLargestFile)
        return false;
    bytes.resize(static_cast<std::size_t>(status.st_size));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = read(file.Get(), bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool WriteFontCache(const std::string& folder, const char* name, std::string_view bytes) {
    if (access(folder.c_str(), F_OK) != 0) {
        // A new home may have no cache folder yet.
        MakeFolder(folder.substr(0, folder.rfind('/')));
        MakeFolder(folder);
    }
    const Descriptor opened(OpenFolder(folder));
    if (!IsFolderOfUser(opened)) return false;

    static std::atomic<unsigned int> number{0};
    const std::string draft =
        std::string(".") + name + "." + std::to_string(getpid()) + "." + std::to_string(number++);
    unlinkat(opened.Get(), draft.c_str(), 0);  // left by a crashed process with the same id
    bool isDone = false;
    {
        const Descriptor file(openat(opened.Get(), draft.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                     S_IRUSR | S_IWUSR));
        if (!file) return false;
        isDone = WriteAll(file.Get(), bytes);
    }
    isDone = isDone && renameat(opened.Get(), draft.c_str(), opened.Get(), name) == 0;
    if (!isDone) unlinkat(opened.Get(), draft.c_str(), 0);
    return isDone;
}
