// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/system/ORVBaseObject.h"

/// Bytes that wait in a file without a name, in the folder that the environment names as TMPDIR, else in
/// /tmp. They go away with the object, and with the process however it ends. There are no more of them than
/// the limit of output bytes allows. Belongs to one thread at a time. Nothing is thrown.
class ORV_PLATFORM_EXPORT ORVTemporaryData {
public:
    ORVTemporaryData() = default;
    ~ORVTemporaryData() { Close(); }
    ORVTemporaryData(const ORVTemporaryData&) = delete;
    ORVTemporaryData& operator=(const ORVTemporaryData&) = delete;

    /// The folder where such files are made.
    static const char* GetFolder();

    /// Makes the file, empty, in place of one that is there. @return false with errno
    [[nodiscard]] bool Open();
    bool IsOpen() const { return descriptor_ >= 0; }
    /// Forgets the bytes.
    void Close();

    /// Writes at the present place. @return how many bytes were taken; fewer than `size` with errno, or past
    /// the limit
    [[nodiscard]] std::size_t Write(const void* bytes, std::size_t size);
    /// Reads from the present place. @return how many bytes there were, 0 at the end; -1 with errno
    [[nodiscard]] std::ptrdiff_t Read(void* bytes, std::size_t size) const;
    /// Moves. @param origin  SEEK_SET, SEEK_CUR or SEEK_END @return the new place, -1 with errno
    std::int64_t Seek(std::int64_t offset, int origin) const;
    /// Where the bytes end; -1 with errno.
    [[nodiscard]] std::int64_t GetSize() const;

    /// True when bytes were refused because there would have been more than the limit allows.
    bool IsPastLimit() const { return isPastLimit_; }

    /// Data that a library keeps without telling what became of them: who stands between notes here what was
    /// lost, and who uses the library asks. Of the latest of the process.
    enum class Loss : std::uint8_t { kNone, kPastLimit, kNotWritten };
    static void NoteLoss(Loss loss);
    static Loss GetLoss();

private:
    int descriptor_ = -1;
    bool isPastLimit_ = false;
};
