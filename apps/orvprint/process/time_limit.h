// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Limits the time of each drawing in this process and in its children. When it runs out, the process exits
/// with kExitFailed, whatever its threads are doing or waiting for: one line on standard error names the
/// drawing, and no partial file is left.
/// @param seconds  0: no limit
void SetTimeLimit(double seconds);

/// The time limit for the current drawing, of which there is one at a time. Stops with the object.
class DrawingTime {
public:
    DrawingTime() = default;
    ~DrawingTime() { End(); }
    DrawingTime(const DrawingTime&) = delete;
    DrawingTime& operator=(const DrawingTime&) = delete;

    /// Ends the time of the previous drawing and starts that of the next one.
    /// @param name  what messages call it
    void Begin(const std::string& name);
    /// Stops the clock: what follows is not limited.
    void End();

private:
    bool isRunning_ = false;
};
