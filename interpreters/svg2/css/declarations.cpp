// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/declarations.h"

#include <algorithm>
#include <utility>

namespace svg2 {
namespace {

/// Takes the text before the next ";" and skips the ";".
std::string_view TakeValue(Scanner& scanner) {
    const std::string_view value = scanner.TakeUntil(";");
    scanner.Take(';');
    return value;
}

/// Removes a trailing "!important".
/// @return true if it was there
bool CutImportance(std::string_view& value) {
    constexpr std::string_view kWord = "important";
    const std::size_t mark = value.rfind('!');
    if (mark == std::string_view::npos || !EqualsIgnoringCase(Trim(value.substr(mark + 1)), kWord))
        return false;
    value = Trim(value.substr(0, mark));
    return true;
}

}  // namespace

bool TakeDeclaration(Scanner& scanner, Declaration& declaration) {
    for (;;) {
        scanner.SkipSpace();
        if (scanner.AtEnd()) return false;
        const std::string_view name = scanner.TakeName();
        scanner.SkipSpace();
        if (name.empty() || !scanner.Take(':')) {
            TakeValue(scanner);
            continue;
        }
        declaration.name = name;
        declaration.value = Trim(TakeValue(scanner));
        declaration.isImportant = CutImportance(declaration.value);
        return true;
    }
}

namespace {

constexpr char32_t kReplacement = 0xFFFD, kLastCodePoint = 0x10FFFF;

void AppendUtf8(char32_t c, std::string& text) {
    const auto append = [&text](char32_t byte) {
        text += static_cast<char>(static_cast<unsigned char>(byte));
    };
    const auto appendRest = [&](unsigned int shift) { append(0x80U | (c >> shift & 0x3FU)); };
    if (c < 0x80) return append(c);
    if (c < 0x800) {
        append(0xC0U | c >> 6U);
        return appendRest(0);
    }
    if (c < 0x10000) {
        append(0xE0U | c >> 12U);
    } else {
        append(0xF0U | c >> 18U);
        appendRest(12);
    }
    appendRest(6);
    appendRest(0);
}

int HexValue(char c) {
    if (IsDigit(c)) return c - '0';
    const char lower = ToLower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Decodes an escape to UTF-8.
/// @param place  in: after the backslash, not at the end of the text; out: after the escape
std::string TakeEscaped(std::string_view text, std::size_t& place) {
    constexpr std::size_t kMostDigits = 6;
    std::string result;
    if (HexValue(text[place]) < 0) {
        result = text[place++];
        return result;
    }
    char32_t c = 0;
    for (const std::size_t end = place + kMostDigits; place < std::min(end, text.size()); ++place) {
        const int digit = HexValue(text[place]);
        if (digit < 0) break;
        c = c * 16 + static_cast<char32_t>(digit);
    }
    if (text.substr(place, 2) == "\r\n")
        place += 2;
    else if (place < text.size() && IsSpace(text[place]))
        ++place;
    const bool isSurrogate = c >= 0xD800 && c <= 0xDFFF;
    AppendUtf8(c == 0 || c > kLastCodePoint || isSurrogate ? kReplacement : c, result);
    return result;
}

/// Removes comments and normalises escapes.
class SheetCleaner {
public:
    explicit SheetCleaner(std::string_view text) : text_(text) { result_.reserve(text.size()); }

    std::string Clean() {
        while (place_ < text_.size()) Step();
        return std::move(result_);
    }

private:
    void Step() {
        const char c = text_[place_];
        if (c == '\\' && place_ + 1 < text_.size()) return TakeEscape();
        if (quote_ != '\0') {
            if (c == quote_ || c == '\n') quote_ = '\0';
        } else if (c == '"' || c == '\'') {
            quote_ = c;
        } else if (c == '/' && text_.substr(place_, 2) == "/*") {
            return SkipComment();
        } else if (c == '(' && IsAddressNext()) {
            return CopyUntil(')');
        }
        result_ += c;
        ++place_;
    }

    /// A comment between two tokens must not join them.
    void SkipComment() {
        const std::size_t end = text_.find("*/", place_ + 2);
        place_ = end == std::string_view::npos ? text_.size() : end + 2;
        const bool joins = !result_.empty() && IsNameCharacter(result_.back()) && place_ < text_.size() &&
                           (IsNameCharacter(text_[place_]) || text_[place_] == '(');
        if (joins) result_ += ' ';
    }

    void TakeEscape() {
        const bool continuesLine = quote_ != '\0' && (text_[place_ + 1] == '\n' || text_[place_ + 1] == '\r');
        if (continuesLine) {
            place_ += text_.substr(place_ + 1, 2) == "\r\n" ? 3 : 2;
            return;
        }
        ++place_;
        const std::string character = TakeEscaped(text_, place_);
        const char first = character.front();
        const bool isPlainInString = quote_ != '\0' && first != '"' && first != '\'' && first != '\\' &&
                                     first != '\n' && first != '\r' && first != '\f';
        if (!IsNameCharacter(first) && !isPlainInString) result_ += '\\';
        result_ += character;
    }

    /// True if an unquoted URL follows, in which "/*" does not begin a comment.
    bool IsAddressNext() const {
        constexpr std::string_view kFunction = "url";
        if (place_ < kFunction.size() ||
            !EqualsIgnoringCase(text_.substr(place_ - kFunction.size(), kFunction.size()), kFunction))
            return false;
        const std::size_t first = text_.find_first_not_of(" \t\r\n\f", place_ + 1);
        return first != std::string_view::npos && text_[first] != '"' && text_[first] != '\'';
    }

    void CopyUntil(char end) {
        const std::size_t found = text_.find(end, place_);
        const std::size_t behind = found == std::string_view::npos ? text_.size() : found + 1;
        result_ += text_.substr(place_, behind - place_);
        place_ = behind;
    }

    std::string_view text_;
    std::size_t place_ = 0;
    char quote_ = '\0';
    std::string result_;
};

}  // namespace

std::string WithoutComments(std::string_view text) { return SheetCleaner(text).Clean(); }

std::string Unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t place = 0; place < text.size();) {
        const char c = text[place++];
        if (c == '\\' && place < text.size())
            result += TakeEscaped(text, place);
        else
            result += c;
    }
    return result;
}

}  // namespace svg2
