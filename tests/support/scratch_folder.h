// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

/// An empty temporary folder of one test, also when tests run in parallel. The destructor deletes it.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    /// Path of a file in the folder.
    std::string PathOf(const std::string& relative) const { return (path_ / relative).string(); }

private:
    std::filesystem::path path_;
};
