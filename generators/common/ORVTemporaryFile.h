// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A hidden file in the directory of its final path. It is removed by the destructor unless it was moved to
/// that path, and also when the process is ended by a signal whose handler calls RemoveAll.
class ORVTemporaryFile {
public:
    ORVTemporaryFile() = default;
    ~ORVTemporaryFile() { Remove(); }
    ORVTemporaryFile(const ORVTemporaryFile&) = delete;
    ORVTemporaryFile& operator=(const ORVTemporaryFile&) = delete;

    /// Creates the file. @return its descriptor, owned by the caller, or -1 with errno set
    [[nodiscard]] int Create(const std::string& finalPath);
    /// Renames the file to its final path. @return false with errno set on failure
    [[nodiscard]] bool MoveTo(const std::string& finalPath);

    /// Removes the files of all objects. For handlers of signals that end the process: no object may be used
    /// afterwards.
    static void RemoveAll();

private:
    struct Entry;
    void Remove();

    Entry* entry_ = nullptr;
};
