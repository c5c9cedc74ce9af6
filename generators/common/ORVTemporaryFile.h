// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A hidden file beside the place where it will stand. Unless it was moved there it goes away with the
/// object, and with the process when that is ended by a signal whose handler calls RemoveAll.
class ORVTemporaryFile {
public:
    ORVTemporaryFile() = default;
    ~ORVTemporaryFile() { Remove(); }
    ORVTemporaryFile(const ORVTemporaryFile&) = delete;
    ORVTemporaryFile& operator=(const ORVTemporaryFile&) = delete;

    /// Creates the file. @return its descriptor, the caller's, or -1 with errno
    [[nodiscard]] int Create(const std::string& finalPath);
    /// Moves it to its place. @return false with errno
    [[nodiscard]] bool MoveTo(const std::string& finalPath);

    /// Removes the files of all objects. For handlers of signals that end the process: nothing but that may
    /// follow.
    static void RemoveAll();

private:
    struct Entry;
    void Remove();

    Entry* entry_ = nullptr;
};
