// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "generators/common/export.h"
#include "platform/system/ORVFailure.h"
#include "platform/system/ORVPrintLimits.h"

/// Where the bytes of a format go. An output consists of parts, one after the other: a single one for formats
/// that hold a whole document, one a page for others. Nothing shows under its final name before Commit;
/// what was not committed goes away with the object. All parts together have no more bytes than the limit of
/// output bytes that was in force when the object was made. Nothing is thrown.
class ORV_GENERATORS_EXPORT ORVOutput {
public:
    ORVOutput() = default;
    ORVOutput(const ORVOutput&) = delete;
    ORVOutput& operator=(const ORVOutput&) = delete;
    virtual ~ORVOutput();

    /// Begins a part. @return 1, or 0 with an error
    [[nodiscard]] virtual int BeginPart() = 0;
    /// Appends to the part. @return 1, or 0 with an error
    [[nodiscard]] int Write(const void* bytes, std::size_t size);
    /// Ends the part: all its bytes are on their way. @return 1, or 0 with an error
    [[nodiscard]] virtual int EndPart() = 0;
    /// Puts all parts in place. @return 1, or 0 with an error
    [[nodiscard]] virtual int Commit() = 0;

    /// What went wrong first; nothing when nothing did.
    const ORVFailure& GetFailure() const { return failure_; }
    /// The same in words; empty when nothing did.
    const std::string& GetError() const { return failure_.text; }

    /// True when there were more bytes than the limit allows; the error says so, too.
    bool IsPastLimit() const { return isPastLimit_; }
    /// Ends the output as one write too many does: for those that keep its bytes elsewhere first. @return 0
    int EndPastLimit();

protected:
    /// Takes what Write was given. @return 1, or 0 with an error
    [[nodiscard]] virtual int Append(const void* bytes, std::size_t size) = 0;

    /// Notes a failure unless there is one already. @return 0
    int Fail(const ORVFailure& failure);
    /// The same of one that keeps the output from being written, in words.
    int Fail(const std::string& error) { return Fail(ORVFailure::Of(ORVFailureReason::kUnwritable, error)); }

    /// Does what may need memory. @return what it returns, or 0 with an error
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

/// An output that stays in memory.
class ORV_GENERATORS_EXPORT ORVMemoryOutput final : public ORVOutput {
public:
    int BeginPart() override;
    int EndPart() override { return 1; }
    int Commit() override { return 1; }

    /// Parts begun so far.
    std::size_t GetPartCount() const { return count_; }
    /// The bytes of all parts, one after the other.
    const std::string& GetBytes() const { return bytes_; }

private:
    int Append(const void* bytes, std::size_t size) override;

    std::string bytes_;
    std::size_t count_ = 0;
};
