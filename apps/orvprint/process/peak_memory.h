// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// Peak resident size of this process during an interval, as measured by Linux.
class PeakMemory {
public:
    PeakMemory() = default;
    ~PeakMemory();
    PeakMemory(const PeakMemory&) = delete;
    PeakMemory& operator=(const PeakMemory&) = delete;

    /// Opens the required files, before the sandbox denies that.
    void Open();
    /// Begins an interval.
    void Begin() const;
    /// Peak in bytes since Begin; 0 if the system does not provide it.
    std::uint64_t Get() const;

private:
    int status_ = -1, reset_ = -1;
};
