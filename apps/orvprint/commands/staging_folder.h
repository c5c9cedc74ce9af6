// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

/// A hidden folder within the outputs' one, on the same disk, where the outputs of a batch grow: a part for
/// each worker, and one for each job whose files wait. Whatever is left in it, also by workers that were
/// killed, goes away with the object.
class StagingFolder {
public:
    ~StagingFolder() { Remove(); }
    StagingFolder() = default;
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    /// Makes the outputs' folder, when it is missing, and this one in it.
    /// @return an exit code; a failure was reported
    int Make(const std::string& folder);
    void Remove();

    const std::string& GetPath() const { return path_; }
    /// A worker's part.
    std::filesystem::path PathOf(std::size_t slot) const;
    /// Makes it, empty. @return an error, empty when there is none
    std::string Clear(std::size_t slot) const;
    /// What is kept of a job.
    std::filesystem::path PathOfKept(std::uint32_t job) const;
    /// Keeps what is in a worker's part. @return an error, empty when there is none
    std::string Keep(std::size_t slot, std::uint32_t job) const;

private:
    std::string path_;
};
