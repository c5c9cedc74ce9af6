// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/sandbox/needs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <optional>
#include <set>
#include <string_view>

#include "apps/orvprint/sandbox/font_paths.h"

namespace {

// Files of system packages: fonts, shared libraries, character set converters.
constexpr std::array<std::string_view, 10> kSystemFolders{
    "/usr",       "/lib",       "/lib32",     "/lib64",      "/opt",
    "/nix/store", "/gnu/store", "/etc/fonts", "/etc/gnutls", "/etc/crypto-policies"};

constexpr std::array kSystemFiles{"/etc/ld.so.cache",
                                  "/etc/localtime",
                                  "/etc/ssl/openssl.cnf",  // for libraries
                                  "/proc/self",
                                  "/proc/meminfo",
                                  "/proc/cpuinfo",
                                  "/sys/fs/cgroup",
                                  "/sys/devices/system/cpu",  // memory and processors
                                  "/dev/null",
                                  "/dev/urandom",
                                  "/dev/random"};

// Environment variables whose folders libraries search.
constexpr std::array kFolderVariables{"LD_LIBRARY_PATH", "GCONV_PATH", "LOCPATH", "FONTCONFIG_PATH"};

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool IsInSystemFolder(const std::string& path) {
    return path.find("/..") == path.npos &&
           std::any_of(kSystemFolders.begin(), kSystemFolders.end(), [&](std::string_view folder) {
               return path.starts_with(folder) &&
                      (path.size() == folder.size() || path[folder.size()] == '/');
           });
}

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

class Rules {
public:
    void Add(std::string path, FileUse use) { rules_.push_back({std::move(path), use}); }

    void AddSystem() {
        for (const std::string_view path : kSystemFolders) Add(std::string(path), FileUse::kRead);
        for (const char* path : kSystemFiles) Add(path, FileUse::kRead);
        for (const char* name : kFolderVariables) AddList(Variable(name));
    }

    void AddFonts() {
        const std::optional<FontPaths> fonts = FindFontPaths(IsInSystemFolder);
        if (!fonts) {
            // Better readable files than a page without its fonts.
            Add("/", FileUse::kRead);
            return;
        }
        for (const std::string& path : fonts->read) Add(path, FileUse::kRead);
        // The font index is written to the first folder that exists or can be created.
        bool hasCache = false;
        for (const std::string& path : fonts->caches) {
            if (!hasCache) hasCache = MakeFolders(path);
            Add(path, FileUse::kMake);
        }
    }

    /// The same search and creation as in the font catalogue.
    void AddCache() {
        std::string folder = Variable("ORVPRINT_CACHE_DIR");
        if (!std::getenv("ORVPRINT_CACHE_DIR")) {
            std::string caches = Variable("XDG_CACHE_HOME");
            if (!caches.starts_with('/')) caches = Variable("HOME") + "/.cache";
            folder = caches + "/orvprint";
        }
        while (folder.ends_with('/')) folder.pop_back();
        if (!folder.starts_with('/') || folder == "/.cache/orvprint") return;
        MakeFolders(folder);
        Add(folder, FileUse::kMake);
    }

    void AddInput(const std::string& path) {
        if (path == "-") return;
        const std::string folder = FolderOf(path);
        if (inputFolders_.insert(folder).second) Add(folder, FileUse::kRead);  // images need them, too
        struct stat facts {};
        if (lstat(path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode)) Add(path, FileUse::kRead);
    }

    void AddOutput(const std::string& path) {
        if (path.empty() || path == "-") return;
        struct stat facts {};
        if (stat(path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode) && !S_ISDIR(facts.st_mode)) {
            Add(path, FileUse::kRewrite);
            return;
        }
        AddFolderOfOutput(path);
        // One file for each page, and each may be an existing link.
        const std::size_t name = path.rfind('/') == path.npos ? 0 : path.rfind('/') + 1;
        std::size_t dot = path.rfind('.');
        if (dot == path.npos || dot <= name) dot = path.size();
        for (unsigned int number = 1;; ++number) {
            const std::string part = path.substr(0, dot) + "-" + std::to_string(number) + path.substr(dot);
            if (lstat(part.c_str(), &facts) != 0) break;
            if (S_ISLNK(facts.st_mode)) AddFolderOfOutput(part);
        }
    }

    void AddTemporaryFolders() {
        for (const std::string& folder : {Variable("TMPDIR"), std::string(P_tmpdir)})
            if (!folder.empty()) Add(folder, FileUse::kMake);
    }

    std::vector<FileRule> Take() { return std::move(rules_); }

private:
    void AddList(const std::string& list) {
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t end = std::min(list.find(':', at), list.size());
            if (end > at) Add(list.substr(at, end - at), FileUse::kRead);
            at = end + 1;
        }
    }

    /// A new file is written beside its final name, or beside the target of the link.
    void AddFolderOfOutput(const std::string& path) {
        struct stat facts {};
        std::array<char, PATH_MAX> target;
        const bool isLink = lstat(path.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode) &&
                            realpath(path.c_str(), target.data());
        Add(FolderOf(isLink ? target.data() : path), FileUse::kMake);
    }

    /// A cache folder and its parent.
    /// @return whether it exists and is writable
    static bool MakeFolders(const std::string& path) {
        if (access(path.c_str(), F_OK) != 0) {
            MakeFolder(FolderOf(path));
            MakeFolder(path);
        }
        return access(path.c_str(), W_OK) == 0;
    }

    /// Someone who prints with another user's HOME must not leave files there.
    static void MakeFolder(const std::string& path) {
        struct stat facts {};
        if (stat(FolderOf(path).c_str(), &facts) == 0 && facts.st_uid == geteuid())
            mkdir(path.c_str(), S_IRWXU);
    }

    std::vector<FileRule> rules_;
    std::set<std::string> inputFolders_;
};

}  // namespace

std::vector<FileRule> FileRulesFor(const RunFiles& files) {
    Rules rules;
    rules.AddSystem();
    rules.AddFonts();
    rules.AddCache();
    for (const std::string& input : files.inputs) rules.AddInput(input);
    for (const std::string& folder : files.allowedFolders) rules.Add(folder, FileUse::kRead);
    rules.AddOutput(files.output);
    if (!files.outputFolder.empty()) rules.Add(files.outputFolder, FileUse::kMake);
    if (files.keepsTemporaryFiles) rules.AddTemporaryFolders();
    return rules.Take();
}
