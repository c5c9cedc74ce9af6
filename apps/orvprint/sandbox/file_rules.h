// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

/// What may be done with a file, or with all files in a folder and below.
enum class FileUse {
    kRead,     ///< read files, list folders
    kRewrite,  ///< write to a device, pipe or file that is there
    kMake,     ///< make, read, replace and remove files
};

struct FileRule {
    std::string path;  ///< symbolic links are followed; what is not there needs no rule
    FileUse use = FileUse::kRead;
};

/// Has the kernel refuse all files but those of the rules, for this thread and those that it will start;
/// files that are open stay open. Programs cannot be run, and where the kernel knows how, no signals be sent,
/// no connections made and no devices be given orders either.
/// @return why it does not, empty when it does
std::string RestrictFiles(std::span<const FileRule> rules);
