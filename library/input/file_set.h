// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <set>
#include <string>
#include <utility>

/// A set of regular files, identified by device and inode rather than by name.
class FileSet {
public:
    using Identity = std::pair<dev_t, ino_t>;

    /// Adds an existing file.
    /// @return false if it was in the set already or is not a regular file
    bool Add(const std::string& path) {
        struct stat information {};
        return stat(path.c_str(), &information) == 0 && S_ISREG(information.st_mode) &&
               files_.emplace(information.st_dev, information.st_ino).second;
    }
    void Add(const Identity& file) { files_.insert(file); }
    bool Contains(const std::string& path) const {
        struct stat information {};
        return stat(path.c_str(), &information) == 0 &&
               files_.contains({information.st_dev, information.st_ino});
    }
    const std::set<Identity>& GetFiles() const { return files_; }
    void Clear() { files_.clear(); }

private:
    std::set<Identity> files_;
};
