// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "library/input/results.h"
#include "platform/system/ORVFailure.h"

/// The caller of the library, which receives its messages. The library writes to no standard stream and does
/// not terminate the process: it reports each failure once to the host and returns the result.
class PrintHost {
public:
    PrintHost() = default;
    virtual ~PrintHost() = default;
    PrintHost(const PrintHost&) = delete;
    PrintHost& operator=(const PrintHost&) = delete;

    /// Receives an error, or, with kResultDone, a message about something that does not end the call.
    /// @param subject  what it is about, such as "plan.svg:3:7"; may be empty
    /// @param reason   worded to follow the subject
    /// @return `result`
    virtual int Report(PrintResult result, const std::string& subject, const std::string& reason) = 0;
    /// Receives a failure and words the message itself.
    /// @return its result
    virtual int Report(const std::string& subject, const ORVFailure& failure) = 0;

    /// Called before room for input is allocated, with the number of further bytes of input.
    virtual void CountInput(std::uint64_t /*bytes*/) {}
    /// Called before a memory block is written from start to end.
    virtual void PrepareMemory(void* /*start*/, std::size_t /*size*/) {}

    /// Reports that memory ran out.
    /// @return the result
    int ReportOutOfMemory(const std::string& subject) { return Report(subject, ORVFailure::OutOfMemory()); }
};
