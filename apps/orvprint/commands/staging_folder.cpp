// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/staging_folder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>

#include "apps/orvprint/process/report.h"

namespace fs = std::filesystem;

int StagingFolder::Make(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) return Report(kExitUnwritable, folder, error.message());
    std::string path = folder + "/.orvprint-XXXXXX";
    if (!mkdtemp(path.data())) return Report(kExitUnwritable, folder, std::strerror(errno));
    path_ = path;
    return kExitDone;
}

void StagingFolder::Remove() {
    try {
        std::error_code ignored;
        if (!path_.empty()) fs::remove_all(path_, ignored);
    } catch (const std::bad_alloc&) {  // the folder stays
    }
    path_.clear();
}

fs::path StagingFolder::PathOf(std::size_t slot) const { return fs::path(path_) / std::to_string(slot); }

std::string StagingFolder::Clear(std::size_t slot) const {
    std::error_code error;
    fs::remove_all(PathOf(slot), error);
    if (!error) fs::create_directory(PathOf(slot), error);
    return error ? error.message() : std::string();
}

fs::path StagingFolder::PathOfKept(std::uint32_t job) const {
    return fs::path(path_) / ("kept-" + std::to_string(job));
}

std::string StagingFolder::Keep(std::size_t slot, std::uint32_t job) const {
    std::error_code error;
    fs::rename(PathOf(slot), PathOfKept(job), error);
    return error ? error.message() : std::string();
}
