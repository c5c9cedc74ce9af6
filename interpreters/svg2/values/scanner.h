// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace svg2 {

/// True for the white space of CSS and XML.
constexpr bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
/// True for characters that identifiers of CSS consist of; all that is not ASCII is among them.
constexpr bool IsNameCharacter(char c) {
    return IsDigit(c) || (ToLower(c) >= 'a' && ToLower(c) <= 'z') || c == '-' || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

std::string_view Trim(std::string_view text);
/// Equality without regard to the case of ASCII letters.
/// @param lower  in lower case
bool EqualsIgnoringCase(std::string_view text, std::string_view lower);

/// Reads values from left to right. What cannot be read is left where it is.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    bool AtEnd() const { return position_ == text_.size(); }
    /// The next character, 0 at the end.
    char Peek(std::size_t ahead = 0) const {
        return position_ + ahead < text_.size() ? text_[position_ + ahead] : '\0';
    }
    std::string_view Rest() const { return text_.substr(position_); }
    std::size_t GetPosition() const { return position_; }
    void SetPosition(std::size_t position) { position_ = position; }
    void Advance(std::size_t count = 1) { position_ += count; }

    void SkipSpace() {
        while (position_ < text_.size() && IsSpace(text_[position_])) ++position_;
    }
    /// Skips white space with at most one comma in it. @return true when there was a comma
    bool SkipCommaSpace();
    /// Skips `c` if it comes next.
    bool Take(char c) {
        if (Peek() != c || AtEnd()) return false;
        ++position_;
        return true;
    }
    /// Skips white space, and then `c` if it comes next.
    bool TakeAfterSpace(char c) {
        SkipSpace();
        return Take(c);
    }
    /// A number as SVG and CSS write it: sign, digits, point, exponent.
    bool TakeNumber(double& value);
    /// A name; empty when none comes next. Escapes, of a backslash and one character, stay.
    std::string_view TakeName();
    /// What stands between an opening parenthesis that comes next and the one that closes it, strings and
    /// inner parentheses respected. @return false when none comes next, or it is not closed
    bool TakeParentheses(std::string_view& inside);
    /// The same, but the end of the text closes what is open, as that of a value does.
    bool TakeParenthesesOrRest(std::string_view& inside);
    /// All up to the first of `ends` that stands outside of strings, escapes, parentheses and blocks, or to
    /// the end. A bracket is closed by its like only, a string by the end of its line, too.
    std::string_view TakeUntil(std::string_view ends);
    /// A text in quotes, without them; escapes stay. @return false when none comes next
    bool TakeString(std::string_view& inside);
    /// The same, but the end of the text closes what is open, as that of a sheet does.
    bool TakeStringOrRest(std::string_view& inside);

private:
    void SkipString();

    std::string_view text_;
    std::size_t position_ = 0;
};

/// Reads a text that is one number and nothing else but white space around it.
bool ReadNumber(std::string_view text, double& value);

}  // namespace svg2
