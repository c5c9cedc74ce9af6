// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/system/ORVBaseObject.h"

/// An unnamed temporary file in the folder given by the environment variable TMPDIR, or in /tmp. Its data
/// disappear with the object, and with the process however that ends. Its size is limited by
/// ORVPrintLimit::kOutputBytes. Must be used by one thread at a time. No function throws.
class ORV_PLATFORM_EXPORT ORVTemporaryData {
public:
    ORVTemporaryData() = default;
    ~ORVTemporaryData() { Close(); }
    ORVTemporaryData(const ORVTemporaryData&) = delete;
    ORVTemporaryData& operator=(const ORVTemporaryData&) = delete;

    /// The folder for temporary files.
    static const char* GetFolder();

    /// Creates an empty file; one that is open is discarded. @return false with errno set
    [[nodiscard]] bool Open();
    bool IsOpen() const { return descriptor_ >= 0; }
    /// Closes the file and discards its data.
    void Close();

    /// Writes at the current position. @return the number of bytes written; fewer than `size` on failure,
    /// with errno set. Nothing is written beyond the limit (EFBIG).
    [[nodiscard]] std::size_t Write(const void* bytes, std::size_t size);
    /// Reads from the current position. @return the number of bytes read, 0 at the end, -1 with errno set
    [[nodiscard]] std::ptrdiff_t Read(void* bytes, std::size_t size) const;
    /// Sets the position. @param origin  SEEK_SET, SEEK_CUR or SEEK_END @return the new position, -1 with
    /// errno set
    std::int64_t Seek(std::int64_t offset, int origin) const;
    /// Size of the file in bytes; -1 with errno set.
    [[nodiscard]] std::int64_t GetSize() const;

    /// True when a write was refused because of the limit.
    bool IsPastLimit() const { return isPastLimit_; }

    /// Why temporary data were lost. For code that goes through a library which does not report write errors:
    /// the callback that the library writes through notes the loss, and the library's caller queries it. The
    /// value is that of the latest note in the process.
    enum class Loss : std::uint8_t { kNone, kPastLimit, kNotWritten };
    static void NoteLoss(Loss loss);
    static Loss GetLoss();

private:
    int descriptor_ = -1;
    bool isPastLimit_ = false;
};
