// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "library/text/printable_text.h"

namespace {

constexpr std::chrono::milliseconds kBetweenDrawings{100};
constexpr std::size_t kBarColumns = 24;
constexpr const char* kEraseLine = "\r\033[K";

bool IsTerminal() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) != 0 && (!kind || std::string_view(kind) != "dumb");
}

std::size_t TerminalColumns() {
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

/// Columns of a character, overestimated: a line that wraps could not be erased.
std::size_t ColumnsOf(unsigned char lead) { return lead >= 0xE1 ? 2 : 1; }

/// As much of a name as fits, without anything that would move the cursor.
std::string FittingName(const std::string& name, std::size_t columns) {
    std::string fitting;
    std::size_t taken = 0;
    PrintablePieces pieces(name);
    for (std::string_view piece; pieces.Next(piece);) {
        while (!piece.empty()) {
            char32_t character = 0;
            std::size_t length = 0;
            FirstCharacter(piece, character, length);
            taken += ColumnsOf(static_cast<unsigned char>(piece.front()));
            if (taken > columns) return fitting;
            fitting += piece.substr(0, length);
            piece.remove_prefix(length);
        }
    }
    return fitting;
}

}  // namespace

std::string ProgressLine(std::size_t done, std::size_t total, std::size_t failed, const std::string& name,
                         std::size_t columns) {
    const std::size_t room = columns > 0 ? columns - 1 : 0;
    std::string counts = std::to_string(done) + "/" + std::to_string(total);
    if (failed > 0) counts += ", " + std::to_string(failed) + " failed";
    std::string line;
    if (room >= kBarColumns + 3 + counts.size()) {
        const std::size_t filled = total > 0 ? kBarColumns * done / total : 0;
        line = "[" + std::string(filled, '#') + std::string(kBarColumns - filled, '.') + "] ";
    }
    line += counts.substr(0, room);
    if (!name.empty() && room > line.size() + 2) line += "  " + FittingName(name, room - line.size() - 2);
    return line;
}

ProgressBar::ProgressBar(std::size_t total, bool isWanted)
    : total_(total), isShown_(isWanted && IsTerminal()) {}

void ProgressBar::Update(std::size_t done, std::size_t failed, const std::string& name) {
    done_ = done;
    failed_ = failed;
    name_ = name;
    isHeldBack_ = isShown_;
    DrawIfDue();
}

void ProgressBar::Erase() {
    if (!isDrawn_) return;
    std::fputs(kEraseLine, stderr);
    isDrawn_ = false;
    isHeldBack_ = true;
}

void ProgressBar::DrawIfDue() {
    if (isHeldBack_ && Clock::now() >= nextDrawing_) Draw();
}

int ProgressBar::GetWait() const {
    if (!isHeldBack_) return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(nextDrawing_ - Clock::now());
    return static_cast<int>(std::clamp<long long>(wait.count(), 0, kBetweenDrawings.count()));
}

void ProgressBar::Draw() {
    // A single write, so that the terminal never shows a partial line.
    const std::string line = "\r" + ProgressLine(done_, total_, failed_, name_, TerminalColumns()) + "\033[K";
    std::fwrite(line.data(), 1, line.size(), stderr);
    isDrawn_ = true;
    isHeldBack_ = false;
    nextDrawing_ = Clock::now() + kBetweenDrawings;
}
