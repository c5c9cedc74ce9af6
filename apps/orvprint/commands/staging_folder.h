// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

/// A hidden folder inside the output folder, on the same file system, in which the outputs of a batch are
/// created: a subfolder for each worker, and one for each job whose files wait. It is removed with the
/// object, with everything left in it, even by killed workers.
class StagingFolder {
public:
    ~StagingFolder() { Remove(); }
    StagingFolder() = default;
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    /// Creates the output folder, if it is missing, and this folder in it.
    /// @return an exit code; a failure has been reported
    int Make(const std::string& folder);
    void Remove();

    const std::string& GetPath() const { return path_; }
    /// The subfolder of a worker.
    std::filesystem::path PathOf(std::size_t slot) const;
    /// Creates it, empty.
    /// @return an error; empty on success
    std::string Clear(std::size_t slot) const;
    /// The subfolder of a job whose files wait.
    std::filesystem::path PathOfKept(std::uint32_t job) const;
    /// Moves the contents of a worker's subfolder there.
    /// @return an error; empty on success
    std::string Keep(std::size_t slot, std::uint32_t job) const;

private:
    std::string path_;
};
