// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

/// Makes the signals that terminate the process pollable. Only one object of this class may exist at a time.
class EndSignals {
public:
    EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// A descriptor that becomes readable when a signal has arrived.
    int GetDescriptor() const { return pipe_[0]; }
    /// Discards a signal that a worker forwarded before it had set up its own handlers; it was not sent to
    /// this process.
    void Drain() const;
    /// The signal that arrived, or 0.
    static int GetCaught();

private:
    std::array<int, 2> pipe_{-1, -1};
};
