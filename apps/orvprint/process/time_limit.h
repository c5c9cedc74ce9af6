// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Sets the time limit per drawing, for this process and those it forks. When it expires, the process ends
/// with kExitFailed, whatever its threads do: a line on standard error names the drawing, and no partial file
/// is left.
/// @param seconds  0 for no limit
void SetTimeLimit(double seconds);

/// Times the current drawing. There may be one object at a time; its destructor stops the timer.
class DrawingTime {
public:
    DrawingTime() = default;
    ~DrawingTime() { End(); }
    DrawingTime(const DrawingTime&) = delete;
    DrawingTime& operator=(const DrawingTime&) = delete;

    /// Starts the time of a drawing, and stops that of the previous one.
    /// @param name  name of the drawing in messages
    void Begin(const std::string& name);
    /// Stops the timer: the following work is not limited.
    void End();

private:
    bool isRunning_ = false;
};
