// SPDX-License-Identifier: Apache-2.0
#include "tests/support/scratch_folder.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    // Links are resolved, so that paths equal those reported by programs.
    std::string pattern = (fs::canonical(fs::temp_directory_path()) / "orv-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for the test: " + pattern);
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}
