// SPDX-License-Identifier: Apache-2.0
#include "apps/cups/messages.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

std::string_view PrefixOf(LineKind kind) {
    switch (kind) {
        case LineKind::kError: return "ERROR: ";
        case LineKind::kWarning: return "WARNING: ";
        case LineKind::kState: return "STATE: ";
        case LineKind::kDebug: break;
    }
    return "DEBUG: ";
}

/// Longest line that the print system accepts, in bytes, including the line break.
std::size_t LongestLine() {
    constexpr std::size_t kUsual = 1024, kLeast = 80;
    const char* const text = std::getenv("CUPS_MAX_MESSAGE");
    std::size_t size = kUsual;
    if (text) std::from_chars(text, text + std::strlen(text), size);
    return std::max(size, kLeast);
}

void CutBetweenCharacters(std::string& text, std::size_t size) {
    if (text.size() <= size) return;
    while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
    text.resize(size);
}

bool Remove(std::string_view& text, std::string_view start) {
    if (!text.starts_with(start)) return false;
    text.remove_prefix(start.size());
    return true;
}

/// Removes ":NUMBER" from the front of the text.
bool RemoveNumber(std::string_view& text, unsigned int& number) {
    if (!text.starts_with(':')) return false;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + 1, last, number);
    if (error != std::errc()) return false;
    text = std::string_view(end, static_cast<std::size_t>(last - end));
    return true;
}

/// The text's statement about the drawing, as a sentence.
std::string WithSubject(std::string_view reason) {
    constexpr std::array<std::string_view, 5> kVerbs{"is ", "has ", "takes ", "contains ", "could "};
    const bool isOfDrawing = std::any_of(kVerbs.begin(), kVerbs.end(),
                                         [&](std::string_view verb) { return reason.starts_with(verb); });
    return (isOfDrawing ? "it " : "") + std::string(reason);
}

/// Translates "use --limit pages=N": users of the print system do not type the command's options.
void TranslateAdvice(std::string& text) {
    if (text.ends_with("out of memory")) {
        text += "; to allow more, the administrator can set ORVPRINT_CUPS_MEMORY_LIMIT";
        return;
    }
    struct Advice {
        std::string_view option, variable;
    };
    constexpr std::array<Advice, 3> kAdvice{
        Advice{"use --time-limit N", "the administrator can set ORVPRINT_CUPS_TIME_LIMIT"},
        Advice{"use --limit memory=N", "the administrator can set ORVPRINT_CUPS_MEMORY_LIMIT"},
        Advice{"use --limit ", "the administrator can set ORVPRINT_CUPS_LIMITS to "}};
    for (const Advice& advice : kAdvice)
        if (const std::size_t at = text.find(advice.option); at != text.npos) {
            text.replace(at, advice.option.size(), advice.variable);
            return;
        }
}

}  // namespace

void Say(LineKind kind, std::string_view text) {
    std::string line(PrefixOf(kind));
    line += text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    CutBetweenCharacters(line, LongestLine() - 1);
    line += '\n';
    // A single write, so that lines of other filters of the job cannot come in between.
    const ssize_t ignored = write(STDERR_FILENO, line.data(), line.size());
    static_cast<void>(ignored);
}

void WaitUntilLinesAreRead() {
    constexpr int kTries = 1000;
    constexpr int kPause = 10;  // milliseconds
    struct stat information {};
    if (fstat(STDERR_FILENO, &information) != 0 || !S_ISFIFO(information.st_mode)) return;
    int unread = 0;
    for (int i = 0; i < kTries && ioctl(STDERR_FILENO, FIONREAD, &unread) == 0 && unread > 0; ++i)
        poll(nullptr, 0, kPause);
}

bool TranslateLine(std::string_view line, std::string& text) {
    if (!Remove(line, "orvprint: ")) return false;
    text.clear();
    unsigned int row = 0, column = 0;
    if (Remove(line, "standard input")) {
        if (RemoveNumber(line, row) && RemoveNumber(line, column))
            text = "line " + std::to_string(row) + ", column " + std::to_string(column) + ": ";
        Remove(line, ": ");
    } else {
        Remove(line, "standard output: ");
    }
    text += WithSubject(line);
    TranslateAdvice(text);
    return true;
}
