// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

/// Signals that end the process, as something to poll for. There is one object of this kind at a time.
class EndSignals {
public:
    EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// Can be read when a signal has come.
    int GetDescriptor() const { return pipe_[0]; }
    /// A worker that was not yet its own may have passed a signal on: it is none of this process.
    void Drain() const;
    /// The signal that came, 0 when none did.
    static int GetCaught();

private:
    std::array<int, 2> pipe_{-1, -1};
};
