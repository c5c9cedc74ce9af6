// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

/// What may be done with a file, or with all files in a folder and its subfolders.
enum class FileUse {
    kRead,     ///< read files, list folders
    kRewrite,  ///< write to an existing device, pipe or file
    kMake,     ///< create, read, replace and remove files
};

struct FileRule {
    std::string path;  ///< symbolic links are followed; a missing path needs no rule
    FileUse use = FileUse::kRead;
};

/// Makes the kernel refuse access to all other files, for this thread and threads that it starts. Open files
/// stay usable. Programs can no longer be executed and, if the kernel supports it, neither can signals be
/// sent, connections be made or devices be controlled.
/// @return why the kernel does not support it; empty on success
std::string RestrictFiles(std::span<const FileRule> rules);
