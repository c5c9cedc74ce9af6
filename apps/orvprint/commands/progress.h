// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// A line at the bottom of the terminal that shows the progress of a batch. It is redrawn at most ten times a
/// second and erased at the end. Draws nothing if standard error is not a terminal.
class ProgressBar {
public:
    /// @param isWanted  false: never draws
    ProgressBar(std::size_t total, bool isWanted);
    ~ProgressBar() { Erase(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Updates the progress; draws now or, if that happened just before, a little later.
    /// @param name  UTF-8; the current input
    void Update(std::size_t done, std::size_t failed, const std::string& name);
    /// Erases the line for other output; the next update draws it again.
    void Erase();
    /// Draws a postponed update once its time has come.
    void DrawIfDue();
    /// Milliseconds until then, or -1 if nothing is postponed: a timeout for poll().
    int GetWait() const;

private:
    using Clock = std::chrono::steady_clock;
    void Draw();

    const std::size_t total_;
    const bool isShown_;
    std::size_t done_ = 0, failed_ = 0;
    std::string name_;
    bool isDrawn_ = false, isHeldBack_ = false;
    Clock::time_point nextDrawing_ = Clock::time_point::min();
};

/// The text of the line.
/// @param columns  of the terminal; the text is shorter by at least one, so that the cursor stays in the line
std::string ProgressLine(std::size_t done, std::size_t total, std::size_t failed, const std::string& name,
                         std::size_t columns);
