// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// A progress line for batches at the bottom of a terminal. It is redrawn at most ten times per second and
/// erased at the end. Nothing is drawn if standard error is not a terminal.
class ProgressBar {
public:
    /// @param isWanted  false: never draws
    ProgressBar(std::size_t total, bool isWanted);
    ~ProgressBar() { Erase(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Updates the progress. Draws now or, if that was done very recently, a little later.
    /// @param name  current drawing, in UTF-8
    void Update(std::size_t done, std::size_t failed, const std::string& name);
    /// Erases the line, for other output; the next drawing restores it.
    void Erase();
    /// Draws a postponed update when it is due.
    void DrawIfDue();
    /// Milliseconds until then, as for poll(); -1 if nothing is postponed.
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
/// @param columns  width of the terminal; the text is at least one column shorter, to keep the cursor on its
///                 line
std::string ProgressLine(std::size_t done, std::size_t total, std::size_t failed, const std::string& name,
                         std::size_t columns);
