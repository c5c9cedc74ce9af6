// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

/// Decodes the character at the start of `text`, which must not be empty, and its length in bytes.
/// @return false if the text does not start with a valid UTF-8 character; `length` is then 1
bool FirstCharacter(std::string_view text, char32_t& character, std::size_t& length);

/// False for characters that control a terminal or can disguise text: control characters, bidirectional marks
/// and overrides, line separators, and characters without a visible shape.
bool IsPrintable(char32_t character);

/// Escapes a text for display, in pieces: unprintable characters become "\n", "\x1b" or "\u202e", and bytes
/// that are not valid UTF-8 become "\xff". The result is always one line, and escaping it again changes
/// nothing. Allocates no memory and takes no lock, so signal handlers may use it.
class PrintablePieces {
public:
    explicit PrintablePieces(std::string_view text) : rest_(text) {}
    /// @param piece  valid until the next call
    /// @return false at the end
    bool Next(std::string_view& piece);

private:
    std::string_view rest_;
    std::array<char, 12> escape_{};
};

/// Writes escaped lines to standard output or standard error; all text for people goes through it. Allocates
/// no memory, since there may be none left.
class TextLine {
public:
    explicit TextLine(std::FILE* file) : file_(file) {}
    ~TextLine() { Flush(); }
    TextLine(const TextLine&) = delete;
    TextLine& operator=(const TextLine&) = delete;

    /// Appends any text, such as file names and document content.
    TextLine& Put(std::string_view text);
    /// Ends the line with the only line break that is written; another line may follow.
    TextLine& End();

private:
    void PutBytes(std::string_view bytes);
    void Flush();

    std::FILE* file_;
    std::size_t size_ = 0;
    std::array<char, 4096> bytes_;
};
