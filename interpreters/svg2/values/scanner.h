// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace svg2 {

/// White space of CSS and XML.
constexpr bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
/// Characters of CSS identifiers; includes all non-ASCII characters.
constexpr bool IsNameCharacter(char c) {
    return IsDigit(c) || (ToLower(c) >= 'a' && ToLower(c) <= 'z') || c == '-' || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

std::string_view Trim(std::string_view text);
/// Compares ignoring ASCII case.
/// @param lower  in lower case
bool EqualsIgnoringCase(std::string_view text, std::string_view lower);

/// Reads values from left to right. Invalid input is not consumed.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    bool AtEnd() const { return position_ == text_.size(); }
    /// The next character; 0 at the end.
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
    /// Skips white space with at most one comma in it.
    /// @return true if there was a comma
    bool SkipCommaSpace();
    /// Skips `c` if it comes next.
    bool Take(char c) {
        if (Peek() != c || AtEnd()) return false;
        ++position_;
        return true;
    }
    /// Skips white space, then `c` if it comes next.
    bool TakeAfterSpace(char c) {
        SkipSpace();
        return Take(c);
    }
    /// A number in the syntax of SVG and CSS: sign, digits, decimal point, exponent.
    bool TakeNumber(double& value);
    /// A name; empty if none comes next. Escapes of a backslash and one character are not decoded.
    std::string_view TakeName();
    /// The content of parentheses, which must come next; strings and nested parentheses are respected.
    /// @return false if there are none or they are not closed
    bool TakeParentheses(std::string_view& inside);
    /// Like TakeParentheses(), but the end of the text closes open parentheses, as in CSS values.
    bool TakeParenthesesOrRest(std::string_view& inside);
    /// Everything up to the first of `ends` outside strings, escapes, parentheses and blocks, or up to the
    /// end. Brackets match their own kind only; a line break also ends a string.
    std::string_view TakeUntil(std::string_view ends);
    /// The content of a quoted string; escapes are not decoded.
    /// @return false if none comes next
    bool TakeString(std::string_view& inside);
    /// The same, but the end of the text closes what is open, as that of a sheet does.
    bool TakeStringOrRest(std::string_view& inside);

private:
    void SkipString();

    std::string_view text_;
    std::size_t position_ = 0;
};

/// Reads a text that consists of one number; surrounding white space is ignored.
bool ReadNumber(std::string_view text, double& value);

}  // namespace svg2
