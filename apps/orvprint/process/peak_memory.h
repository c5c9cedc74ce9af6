// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The largest resident size of this process over a stretch of time, as Linux counts it.
class PeakMemory {
public:
    PeakMemory() = default;
    ~PeakMemory();
    PeakMemory(const PeakMemory&) = delete;
    PeakMemory& operator=(const PeakMemory&) = delete;

    /// Opens what is asked later on, when the process may open nothing any more.
    void Open();
    /// The stretch begins.
    void Begin() const;
    /// Bytes since it began; 0 where the system does not tell.
    std::uint64_t Get() const;

private:
    int reset_ = -1;
};
