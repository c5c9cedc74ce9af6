// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

/// Permitted use of a file, or of all files in a folder and its subfolders.
enum class FileUse {
    kRead,     ///< read files, list folders
    kRewrite,  ///< write to an existing device, pipe or file
    kMake,     ///< create, read, replace and remove files
};

struct FileRule {
    std::string path;  ///< symbolic links are followed; a path that does not exist is ignored
    FileUse use = FileUse::kRead;
};

/// Makes the kernel deny access to all files except by the rules, for this thread and the ones it starts
/// later; open files stay open. Running programs is denied and, where the kernel supports it, so are sending
/// signals, connecting, and device ioctls.
/// @return an error, empty on success
std::string RestrictFiles(std::span<const FileRule> rules);
