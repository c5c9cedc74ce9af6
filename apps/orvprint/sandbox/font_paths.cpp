// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/sandbox/font_paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostFiles = 1000;       // configuration files and folders
constexpr std::size_t kMostBytes = 1U << 16U;  // from one configuration file
constexpr std::size_t kMostEntries = 10'000;   // searched for links
constexpr const char* kStandardFolder = "/etc/fonts";
// Prefixes of links that point to configuration files of packages.
constexpr std::array<std::string_view, 2> kPackages{"/usr/share/", "../conf.avail/"};

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

std::vector<std::string> Split(const std::string& list) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(':', at), list.size());
        if (end > at) parts.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// The value of prefix= among the attributes; empty if it is missing.
std::string_view PrefixOf(std::string_view attributes) {
    const std::size_t name = attributes.find("prefix");
    if (name == attributes.npos) return {};
    const std::size_t start = attributes.find_first_of("\"'", name);
    if (start == attributes.npos) return {};
    const std::size_t end = attributes.find(attributes[start], start + 1);
    return end == attributes.npos ? std::string_view() : attributes.substr(start + 1, end - start - 1);
}

class Walk {
public:
    explicit Walk(bool (*isKnown)(const std::string&)) : isKnown_(isKnown) {}

    std::optional<FontPaths> Run() {
        // With a sysroot, no path is where it says.
        if (!Variable("FONTCONFIG_SYSROOT").empty()) return std::nullopt;
        for (std::string& path : StandardFiles()) Follow(std::move(path));
        FollowUsual();
        while (!open_.empty() && isClear_) {
            const std::string path = std::move(open_.back());
            open_.pop_back();
            ReadConfiguration(path);
        }
        for (std::size_t i = 0; i < folders_.size() && isClear_; ++i) AddLinksIn(folders_[i]);
        if (!isClear_) return std::nullopt;
        return std::move(paths_);
    }

private:
    /// Where fontconfig looks for the first file. If FONTCONFIG_PATH names another folder, that file is added
    /// too.
    static std::vector<std::string> StandardFiles() {
        std::vector<std::string> folders = Split(Variable("FONTCONFIG_PATH"));
        folders.emplace_back(kStandardFolder);
        std::vector<std::string> files;
        std::string name = Variable("FONTCONFIG_FILE");
        if (name.empty()) name = "fonts.conf";
        if (name.front() == '~') name = Variable("HOME") + name.substr(1);
        if (name.front() == '/') return {name};
        files.reserve(folders.size());
        for (std::string& folder : folders) files.push_back(folder.append("/").append(name));
        return files;
    }

    /// Adds a configuration file or folder. Each is read once.
    void Follow(std::string path) {
        if (!seen_.insert(path).second) return;
        if (seen_.size() > kMostFiles) isClear_ = false;
        if (!isKnown_(path)) paths_.read.push_back(path);
        open_.push_back(std::move(path));
    }

    void ReadConfiguration(const std::string& path) {
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (file < 0) return;
        const ssize_t size = read(file, text_.get(), kMostBytes);
        if (size < 0 && errno == EISDIR)
            ReadFolder(path, file);
        else
            close(file);
        if (size == static_cast<ssize_t>(kMostBytes)) isClear_ = false;
        if (size > 0) ReadElements(path, {text_.get(), static_cast<std::size_t>(size)});
    }

    /// @param file  descriptor of a file in the folder; is closed
    void ReadFolder(const std::string& path, int file) {
        DIR* const folder = fdopendir(file);
        if (!folder) {
            close(file);
            return;
        }
        while (const dirent* entry = readdir(folder))
            if (entry->d_name[0] >= '0' && entry->d_name[0] <= '9' && !IsOfPackage(file, *entry))
                Follow(path + "/" + entry->d_name);
        closedir(folder);
    }

    /// Nearly all of them are links to files of packages. Those name system folders only and include no files
    /// but those of FollowUsual; reading them all would take half of the sandbox's setup time.
    static bool IsOfPackage(int folder, const dirent& entry) {
        std::array<char, 256> target{};
        if (entry.d_type != DT_LNK || readlinkat(folder, entry.d_name, target.data(), target.size() - 1) <= 0)
            return false;
        const std::string_view path(target.data());
        return std::any_of(kPackages.begin(), kPackages.end(),
                           [&](std::string_view start) { return path.starts_with(start); });
    }

    /// Files that the configuration of packages includes.
    void FollowUsual() {
        Follow("/etc/fonts/local.conf");
        const std::string home = Variable("HOME"), named = Variable("XDG_CONFIG_HOME");
        const std::string folder = (named.empty() ? home + "/.config" : named) + "/fontconfig/";
        for (const char* name : {"conf.d", "fonts.conf"}) Follow(folder + name);
        for (const char* name : {"/.fonts.conf.d", "/.fonts.conf"}) Follow(home + name);
    }

    /// Scans all tags, but parses only those that name paths; most files contain none.
    void ReadElements(const std::string& file, std::string_view text) {
        for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1)) {
            const std::string_view tag = text.substr(at + 1, kLongestName + 1);
            for (const ElementRow& row : kElements)
                if (tag.size() > row.name.size() && tag.starts_with(row.name) &&
                    (tag[row.name.size()] == '>' || IsBlank(tag[row.name.size()])))
                    ReadElement(file, text.substr(at + 1 + row.name.size()), row.use);
        }
    }

    /// @param rest  what follows the element's name
    void ReadElement(const std::string& file, std::string_view rest,
                     void (Walk::*use)(std::string_view, const std::string&, const std::string&)) {
        const std::size_t end = rest.find('>');
        if (end == rest.npos) return;
        const std::string_view value = WithoutBlanks(rest.substr(end + 1, rest.find("</", end) - end - 1));
        // Entities, comments and the like would need a real XML parser.
        if (value.find_first_of("&<") != value.npos) isClear_ = false;
        if (!value.empty()) (this->*use)(rest.substr(0, end), std::string(value), file);
    }

    void UseInclude(std::string_view attributes, const std::string& value, const std::string& file) {
        for (std::string& place : PlacesOf(attributes, value, file, Variable("XDG_CONFIG_HOME"), "/.config"))
            Follow(std::move(place));
        if (value.front() != '/' && value.front() != '~') Follow(kStandardFolder + ("/" + value));
    }

    void UseFolder(std::string_view attributes, const std::string& value, const std::string& file) {
        for (std::string& place :
             PlacesOf(attributes, value, file, Variable("XDG_DATA_HOME"), "/.local/share"))
            AddFolder(std::move(place));
        if (PrefixOf(attributes) == "xdg")
            for (std::string& shared : Split(Variable("XDG_DATA_DIRS")))
                AddFolder(shared.append("/").append(value));
    }

    void UseCache(std::string_view attributes, const std::string& value, const std::string& file) {
        for (std::string& place : PlacesOf(attributes, value, file, Variable("XDG_CACHE_HOME"), "/.cache"))
            paths_.caches.push_back(std::move(place));
    }

    struct ElementRow {
        std::string_view name;
        void (Walk::*use)(std::string_view attributes, const std::string& value, const std::string& file);
    };
    static constexpr std::size_t kLongestName = 8;
    static constexpr std::array<ElementRow, 3> kElements{{
        {"include", &Walk::UseInclude},
        {"dir", &Walk::UseFolder},
        {"cachedir", &Walk::UseCache},
    }};

    static std::vector<std::string> PlacesOf(std::string_view attributes, const std::string& value,
                                             const std::string& file, const std::string& folderOfUser,
                                             const char* usualFolder) {
        const std::string_view prefix = PrefixOf(attributes);
        if (prefix == "xdg")
            return {(folderOfUser.empty() ? Variable("HOME") + usualFolder : folderOfUser) + "/" + value};
        if (value.front() == '~') return {Variable("HOME") + value.substr(1)};
        if (value.front() == '/') return {value};
        // Relative to the file's folder or to the working directory.
        return {file.substr(0, file.rfind('/') + 1) + value, value};
    }

    void AddFolder(std::string path) {
        if (isKnown_(path)) return;
        paths_.read.push_back(path);
        folders_.push_back(std::move(path));
    }

    /// A font in a user's folder may be a link to a file anywhere.
    void AddLinksIn(const std::string& folder) {
        if (access(folder.c_str(), F_OK) != 0) return;  // as most do; the general case needs much more code
        std::error_code error;
        const auto options = fs::directory_options::skip_permission_denied;
        for (auto entry = fs::recursive_directory_iterator(folder, options, error);
             !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            if (++entries_ > kMostEntries) isClear_ = false;
            if (!isClear_) return;
            std::error_code ignored;
            if (!entry->is_symlink(ignored)) continue;
            paths_.read.push_back(entry->path());
            if (entry->is_directory(ignored)) folders_.push_back(entry->path().string() + "/.");
        }
    }

    bool (*isKnown_)(const std::string&);
    FontPaths paths_;
    std::vector<std::string> open_;  // configuration to read
    // Buffer for the file being read.
    std::unique_ptr<char[]> text_ = std::make_unique_for_overwrite<char[]>(kMostBytes);
    std::vector<std::string> folders_;  // font folders to scan
    std::set<std::string> seen_;
    std::size_t entries_ = 0;
    bool isClear_ = true;
};

}  // namespace

std::optional<FontPaths> FindFontPaths(bool (*isKnown)(const std::string& path)) {
    return Walk(isKnown).Run();
}
