// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The peak resident size of this process over a period, as Linux counts it.
class PeakMemory {
public:
    PeakMemory() = default;
    ~PeakMemory();
    PeakMemory(const PeakMemory&) = delete;
    PeakMemory& operator=(const PeakMemory&) = delete;

    /// Opens the file that is read later, when the sandbox no longer allows opening files.
    void Open();
    /// Starts the period.
    void Begin() const;
    /// Peak since Start, in bytes; 0 if the system does not report it.
    std::uint64_t Get() const;

private:
    int status_ = -1, reset_ = -1;
};
