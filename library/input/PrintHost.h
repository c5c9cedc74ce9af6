// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "library/input/results.h"
#include "platform/system/ORVFailure.h"

/// Whoever has drawings read and printed. The library writes to no standard stream and ends no process: it
/// tells its host, once for each failure, and returns the result.
class PrintHost {
public:
    PrintHost() = default;
    virtual ~PrintHost() = default;
    PrintHost(const PrintHost&) = delete;
    PrintHost& operator=(const PrintHost&) = delete;

    /// Hears why something ended, or, with kResultDone, what is worth knowing though it goes on.
    /// @param subject  what it is about, such as "plan.svg:3:7"; may be empty
    /// @param reason   worded to follow the subject
    /// @return `result`
    virtual int Report(PrintResult result, const std::string& subject, const std::string& reason) = 0;
    /// Hears of a failure, which it words itself. @return its result
    virtual int Report(const std::string& subject, const ORVFailure& failure) = 0;

    /// Hears how many more bytes of inputs there are, before there is room for them.
    virtual void CountInput(std::uint64_t /*bytes*/) {}
    /// Hears of a block that is about to be written from its start to its end.
    virtual void PrepareMemory(void* /*start*/, std::size_t /*size*/) {}

    /// Reports that memory was refused. @return the result
    int ReportOutOfMemory(const std::string& subject) { return Report(subject, ORVFailure::OutOfMemory()); }
};
