// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// One line at the bottom of a terminal that tells how far a batch is. It is redrawn at most ten times a
/// second, and gone in the end. Where standard error is no terminal, nothing is ever drawn.
class ProgressBar {
public:
    /// @param isWanted  false: never draws
    ProgressBar(std::size_t total, bool isWanted);
    ~ProgressBar() { Erase(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Notes how far things are; draws now or, when that was done just before, a little later.
    /// @param name  UTF-8; of what is being worked on
    void Update(std::size_t done, std::size_t failed, const std::string& name);
    /// Takes the line away, for other output; it comes back with the next drawing.
    void Erase();
    /// Draws what was held back, once its time has come.
    void DrawIfDue();
    /// Milliseconds until then; -1 when nothing is held back. As poll() takes it.
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

/// The line's text.
/// @param columns  of the terminal; the text is at least one shorter, so that the cursor stays in its line
std::string ProgressLine(std::size_t done, std::size_t total, std::size_t failed, const std::string& name,
                         std::size_t columns);
