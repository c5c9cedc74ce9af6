// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

/// Makes signals that end the process available to poll(). There may be one object at a time.
class EndSignals {
public:
    EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// Readable after a signal was received.
    int GetDescriptor() const { return pipe_[0]; }
    /// Discards wake-ups, such as those from a new worker that still shared the pipe.
    void Drain() const;
    /// The signal received, 0 if none.
    static int GetCaught();

private:
    std::array<int, 2> pipe_{-1, -1};
};
