// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// In all lists and styles, the only blank is the space character.
inline std::string_view SkipBlanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    return start == text.npos ? std::string_view() : text.substr(start);
}

/// Removes blanks from both ends of `text`.
inline std::string_view TrimBlanks(std::string_view text) {
    text = SkipBlanks(text);
    const std::size_t last = text.find_last_not_of(' ');
    return last == text.npos ? std::string_view() : text.substr(0, last + 1);
}

/// Removes and returns the part of `text` before `separator`, removing the separator as well; returns all of
/// it if there is none.
inline std::string_view CutUpTo(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view piece = text.substr(0, end);
    text = end == text.npos ? std::string_view() : text.substr(end + 1);
    return piece;
}
