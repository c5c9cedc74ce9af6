// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "generators/common/export.h"
#include "platform/system/ORVFailure.h"
#include "platform/system/ORVPrintLimits.h"

/// Destination of the bytes of a format. An output consists of consecutive parts: one for formats that hold a
/// whole document, one per page for the others. Nothing appears under its final name before Commit; whatever
/// is not committed is discarded by the destructor. The total size of all parts is limited to
/// ORVPrintLimit::kOutputBytes as it was when the object was created. Member functions do not throw.
class ORV_GENERATORS_EXPORT ORVOutput {
public:
    ORVOutput() = default;
    ORVOutput(const ORVOutput&) = delete;
    ORVOutput& operator=(const ORVOutput&) = delete;
    virtual ~ORVOutput();

    /// Begins a part. @return 1, or 0 with an error
    [[nodiscard]] virtual int BeginPart() = 0;
    /// Appends bytes to the open part. @return 1, or 0 with an error
    [[nodiscard]] int Write(const void* bytes, std::size_t size);
    /// Ends the part and flushes its bytes. @return 1, or 0 with an error
    [[nodiscard]] virtual int EndPart() = 0;
    /// Publishes all parts under their final names. @return 1, or 0 with an error
    [[nodiscard]] virtual int Commit() = 0;

    /// The first error; empty if there was none.
    const ORVFailure& GetFailure() const { return failure_; }
    /// Text of the first error; empty if there was none.
    const std::string& GetError() const { return failure_.text; }

    /// True if the limit of output bytes was exceeded. This is also reported as an error.
    bool IsPastLimit() const { return isPastLimit_; }
    /// Fails as a write past the limit does. For callers that buffer the bytes elsewhere first. @return 0
    int EndPastLimit();

protected:
    /// Stores the bytes passed to Write. @return 1, or 0 with an error
    [[nodiscard]] virtual int Append(const void* bytes, std::size_t size) = 0;

    /// Records an error unless there already is one. @return 0
    int Fail(const ORVFailure& failure);
    /// Records that the output cannot be written, with this text. @return 0
    int Fail(const std::string& error) { return Fail(ORVFailure::Of(ORVFailureReason::kUnwritable, error)); }

    /// Runs `work`, turning std::bad_alloc into an error. @return the result of `work`, or 0 with an error
    template <class Work>
    int Try(Work work) {
        try {
            return work();
        } catch (const std::bad_alloc&) {
            return Fail(ORVFailure::OutOfMemory());
        }
    }

private:
    ORVFailure failure_;
    std::uint64_t bytesLeft_ = ORVPrintLimits::Get(ORVPrintLimit::kOutputBytes);
    bool isPastLimit_ = false;
};

/// An output that is kept in memory.
class ORV_GENERATORS_EXPORT ORVMemoryOutput final : public ORVOutput {
public:
    int BeginPart() override;
    int EndPart() override { return 1; }
    int Commit() override { return 1; }

    /// Number of parts begun so far.
    std::size_t GetPartCount() const { return count_; }
    /// The bytes of all parts, concatenated.
    const std::string& GetBytes() const { return bytes_; }

private:
    int Append(const void* bytes, std::size_t size) override;

    std::string bytes_;
    std::size_t count_ = 0;
};
