// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/sandbox/file_rules.h"

/// The files of a run of the command.
struct RunFiles {
    std::vector<std::string> inputs{};          ///< drawings; "-" is standard input
    std::vector<std::string> allowedFolders{};  ///< folders of images
    std::string output{};                       ///< a file, or "-" for standard output; empty: none
    std::string outputFolder{};                 ///< folder in which files are created, instead of `output`
    bool keepsTemporaryFiles = false;           ///< the format needs a seekable file
};

/// The rules for a run: its own files, fonts, libraries that are loaded late, information on the machine, and
/// caches. Creates the cache folders of the command and of fonts if they are missing, since that would not be
/// allowed later.
std::vector<FileRule> FileRulesFor(const RunFiles& files);
