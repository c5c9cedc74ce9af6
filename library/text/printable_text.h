// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

/// The character at the start of `text`, which is not empty, and its length in bytes.
/// @return false when the first byte begins no character of UTF-8; `length` is then 1
bool FirstCharacter(std::string_view text, char32_t& character, std::size_t& length);

/// False for characters that a terminal obeys instead of showing them, or that make text look like other
/// text: controls, marks and overrides of direction, separators of lines, characters without a shape of their
/// own.
bool IsPrintable(char32_t character);

/// A text in pieces as a person may see it: what is not printable is escaped, as "\n", "\x1b" or "\u202e",
/// and bytes that are no UTF-8 as "\xff". One line comes out whatever goes in, and escaping it once more
/// changes nothing. Needs no memory and takes no lock: signal handlers may use it.
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

/// The one way of text to people: lines on standard output or standard error, escaped. Needs no memory, of
/// which there may be none left.
class TextLine {
public:
    explicit TextLine(std::FILE* file) : file_(file) {}
    ~TextLine() { Flush(); }
    TextLine(const TextLine&) = delete;
    TextLine& operator=(const TextLine&) = delete;

    /// Any text, such as names of files and what stands in documents.
    TextLine& Put(std::string_view text);
    /// The end of this line, as the only line break that is written; another may follow.
    TextLine& End();

private:
    void PutBytes(std::string_view bytes);
    void Flush();

    std::FILE* file_;
    std::size_t size_ = 0;
    std::array<char, 4096> bytes_;
};
