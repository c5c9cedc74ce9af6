#include "platform/system/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace {

thread_local const ORVFileAccessPolicy* currentPolicy = nullptr;

// Names longer than any file system takes (data references, for one) are turned down unseen.
constexpr std::size_t kLongestPath = 4096;

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
    std::vector<std::filesystem::path> allowed;  // canonical
};

ORVFolderAccessPolicy::ORVFolderAccessPolicy() : folders_(new Folders) {}

ORVFolderAccessPolicy::~ORVFolderAccessPolicy() { delete folders_; }

bool ORVFolderAccessPolicy::AllowFolder(const ORVUnicodeString& folder) {
    std::error_code error;
    const auto canonical =
        std::filesystem::canonical(std::string(folder.IsEmpty() ? "." : folder.GetView()), error);
    if (error || !std::filesystem::is_directory(canonical, error)) return false;
    folders_->allowed.push_back(canonical);
    return true;
}

bool ORVFolderAccessPolicy::MayRead(const ORVUnicodeString& path) const {
    std::error_code error;
    const auto canonical = std::filesystem::canonical(std::string(path.GetView()), error);
    if (error) return false;
    for (const auto& folder : folders_->allowed) {
        auto part = canonical.begin();
        auto wanted = folder.begin();
        while (wanted != folder.end() && part != canonical.end() && *part == *wanted) ++part, ++wanted;
        if (wanted == folder.end()) return true;
    }
    return false;
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
