// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/sandbox/file_rules.h"

/// What a run of the command is about.
struct RunFiles {
    std::vector<std::string> inputs{};          ///< drawings; "-" for standard input
    std::vector<std::string> allowedFolders{};  ///< of images
    std::string output{};                       ///< a file, "-" for standard output; empty without
    std::string outputFolder{};                 ///< where files are made, instead of `output`
    bool keepsTemporaryFiles = false;           ///< the output's format cannot be written from front to end
};

/// The files that it will need: its own, fonts, libraries that are loaded late, what tells of the machine,
/// and caches. Missing folders for the caches of the command and of fonts are made, as they could not be made
/// later.
std::vector<FileRule> FileRulesFor(const RunFiles& files);
