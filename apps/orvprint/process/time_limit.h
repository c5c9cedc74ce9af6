// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Lets no drawing of this process, or of those that it forks, take longer. Past it, the process ends with
/// kExitFailed, whatever its threads do or wait for: one line on standard error names the drawing, and no
/// half file stays.
/// @param seconds  0 for as long as it takes
void SetTimeLimit(double seconds);

/// The time of the drawing at work, of which there is one at a time. It ends with the object.
class DrawingTime {
public:
    DrawingTime() = default;
    ~DrawingTime() { End(); }
    DrawingTime(const DrawingTime&) = delete;
    DrawingTime& operator=(const DrawingTime&) = delete;

    /// A drawing begins, and the one before it has ended.
    /// @param name  what messages call it
    void Begin(const std::string& name);
    /// What follows may take as long as it takes.
    void End();

private:
    bool isRunning_ = false;
};
