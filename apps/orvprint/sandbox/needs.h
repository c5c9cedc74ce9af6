// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/sandbox/file_rules.h"

/// The files that a run of the command works on.
struct RunFiles {
    std::vector<std::string> inputs{};          ///< drawings; "-" for standard input
    std::vector<std::string> allowedFolders{};  ///< folders that images may be read from
    std::string output{};              ///< a file, or "-" for standard output; empty if there is none
    std::string outputFolder{};        ///< folder for output files, instead of `output`
    bool keepsTemporaryFiles = false;  ///< the output's format cannot be written sequentially
};

/// Rules for the files that a run needs: its own files, fonts, libraries loaded later, system information and
/// caches. Missing cache folders of the command and of fonts are created now, because they cannot be later.
std::vector<FileRule> FileRulesFor(const RunFiles& files);
