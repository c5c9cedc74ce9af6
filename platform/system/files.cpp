// SPDX-License-Identifier: Apache-2.0
#include "platform/system/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

thread_local const ORVFileAccessPolicy* currentPolicy = nullptr;

// Names longer than any file system allows, such as data references, are rejected without looking them up.
constexpr std::size_t kLongestPath = 4096;

/// Whether a real path is a folder or is inside it.
bool IsAtOrBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return true;
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool PolicyAllows(const ORVUnicodeString& path) {
    const std::string_view view = path;
    if (view.empty() || view.size() > kLongestPath || view.find('\0') != view.npos) return false;
    return currentPolicy && currentPolicy->MayRead(path);
}

}  // namespace

const char* ORVGetEnv(const char* name) { return std::getenv(name); }

void ORVFileAccessPolicy::SetCurrent(const ORVFileAccessPolicy* policy) { currentPolicy = policy; }

const ORVFileAccessPolicy* ORVFileAccessPolicy::GetCurrent() { return currentPolicy; }

struct ORVFolderAccessPolicy::Folders {
    struct Folder {
        std::string given;  // as passed by the host, without trailing slashes
        std::string real;
    };
    std::vector<Folder> allowed;

    bool IsAllowed(std::string_view path) const {
        return std::any_of(allowed.begin(), allowed.end(),
                           [&](const Folder& folder) { return IsAtOrBelow(path, folder.real); });
    }
    /// True for ancestors of the allowed folders, whose names are known to be real.
    bool IsOnTheWay(std::string_view path) const {
        return std::any_of(allowed.begin(), allowed.end(),
                           [&](const Folder& folder) { return IsAtOrBelow(folder.real, path); });
    }
    bool LeadsInside(std::string at, std::string way) const;
};

// Resolves symbolic links here, because the system would access whatever they lead to.
bool ORVFolderAccessPolicy::Folders::LeadsInside(std::string at, std::string way) const {
    constexpr int kMostLinks = 40;  // as in the Linux kernel
    int links = 0;
    for (std::size_t start = 0; start < way.size();) {
        const std::size_t end = std::min(way.find('/', start), way.size());
        const std::string name = way.substr(start, end - start);
        start = end + 1;
        if (name.empty() || name == ".") continue;
        if (name == "..") {
            at.erase(std::max<std::size_t>(at.rfind('/'), 1));
            continue;
        }
        std::string next = at == "/" ? "/" + name : at + "/" + name;
        if (!IsOnTheWay(next)) {
            if (!IsAllowed(next)) return false;
            struct stat status {};
            if (::lstat(next.c_str(), &status) != 0) return true;  // nothing there to read
            if (S_ISLNK(status.st_mode)) {
                std::array<char, kLongestPath + 1> target{};
                const ssize_t length = ::readlink(next.c_str(), target.data(), target.size());
                if (length <= 0 || static_cast<std::size_t>(length) > kLongestPath || ++links > kMostLinks)
                    return false;
                const std::string rest = start < way.size() ? "/" + way.substr(start) : std::string();
                way.assign(target.data(), static_cast<std::size_t>(length));
                if (way.front() == '/') at = "/";
                way += rest;
                start = 0;
                continue;
            }
        }
        at = std::move(next);
    }
    return IsAllowed(at);
}

ORVFolderAccessPolicy::ORVFolderAccessPolicy() : folders_(new Folders) {}

ORVFolderAccessPolicy::~ORVFolderAccessPolicy() { delete folders_; }

bool ORVFolderAccessPolicy::AllowFolder(const ORVUnicodeString& folder) {
    std::error_code error;
    std::string given(folder.IsEmpty() ? "." : folder.GetView());
    const auto real = std::filesystem::canonical(given, error);
    if (error || !std::filesystem::is_directory(real, error)) return false;
    while (given.ends_with('/')) given.pop_back();
    folders_->allowed.push_back({std::move(given), real.string()});
    return true;
}

bool ORVFolderAccessPolicy::MayRead(const ORVUnicodeString& path) const {
    const std::string_view view = path;
    for (const Folders::Folder& folder : folders_->allowed)
        if (view.starts_with(folder.given) && view.substr(folder.given.size()).starts_with('/'))
            return folders_->LeadsInside(folder.real, std::string(view.substr(folder.given.size())));
    if (view.starts_with('/')) return folders_->LeadsInside("/", std::string(view));
    std::error_code error;
    const auto here = std::filesystem::current_path(error);
    return !error && folders_->LeadsInside(here.string(), std::string(view));
}

int ORVFileStat(const ORVUnicodeString& path) {
    if (!PolicyAllows(path)) return 0;
    struct stat status {};
    return ::stat(path.ConvertToChar(), &status) == 0 && S_ISREG(status.st_mode) ? 1 : 0;
}

int ORVFileAccess(const ORVUnicodeString& path, int mode) {
    if (mode != 0 || !PolicyAllows(path)) return 0;
    return ::access(path.ConvertToChar(), R_OK) == 0 ? 1 : 0;
}

bool ORVMayReadOpenFile(int descriptor) {
    if (!currentPolicy) return true;
    constexpr const char* kOpenFiles = "/proc/self/fd";
    const std::string link = std::string(kOpenFiles) + '/' + std::to_string(descriptor);
    std::array<char, kLongestPath + 1> name{};
    const ssize_t length = ::readlink(link.c_str(), name.data(), name.size());
    if (length < 0 && ::access(kOpenFiles, F_OK) != 0) return ::fcntl(descriptor, F_GETFD) != -1;
    if (length <= 0 || static_cast<std::size_t>(length) > kLongestPath) return false;
    return PolicyAllows(ORVUnicodeString(std::string_view(name.data(), static_cast<std::size_t>(length))));
}

void ORVSplitPath(const ORVUnicodeString& path, ORVUnicodeString& folder, ORVUnicodeString& name) {
    const std::string text(path.GetView());
    const std::size_t slash = text.rfind('/');
    if (slash == std::string::npos) {
        folder = ORVUnicodeString();
        name = text;
        return;
    }
    folder = std::string_view(text).substr(0, slash == 0 ? 1 : slash);
    name = std::string_view(text).substr(slash + 1);
}

ORVUnicodeString ORVMakePath(const ORVUnicodeString& folder, const ORVUnicodeString& name) {
    if (folder.IsEmpty()) return name;
    std::string path(folder.GetView());
    if (path.back() != '/') path += '/';
    path += name.GetView();
    return path;
}
