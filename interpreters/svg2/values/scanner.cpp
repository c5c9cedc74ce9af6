// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/scanner.h"

#include <cmath>
#include <cstdint>

#include "platform/system/number_conversion.h"
#include "platform/system/short_number.h"

namespace svg2 {

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
    return text;
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
    if (text.size() != lower.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (ToLower(text[i]) != lower[i]) return false;
    return true;
}

bool Scanner::SkipCommaSpace() {
    SkipSpace();
    if (!Take(',')) return false;
    SkipSpace();
    return true;
}

bool Scanner::TakeNumber(double& value) {
    const char* const start = text_.data() + position_;
    const char* const end = text_.data() + text_.size();
    if (start == end) return false;
    const bool hasSign = *start == '-' || *start == '+';
    double number = 0.0;
    if (const char* behind = ORVReadShortNumber(start + (hasSign ? 1 : 0), end, number)) {
        // In "1.", the number ends before the point, which may belong to what follows.
        value = *start == '-' ? -number : number;
        position_ = static_cast<std::size_t>(behind - text_.data());
        return true;
    }
    const bool canStart = IsDigit(*start) || *start == '.' || hasSign;
    std::size_t length = 0;
    if (!canStart || ORVConvertToDouble(Rest(), number, &length) != 1 || !std::isfinite(number)) return false;
    value = number;
    position_ += length;
    return true;
}

std::string_view Scanner::TakeName() {
    const std::size_t start = position_;
    for (; position_ < text_.size(); ++position_) {
        if (IsNameCharacter(text_[position_])) continue;
        if (text_[position_] != '\\' || position_ + 1 == text_.size()) break;
        ++position_;  // an escape: whatever comes next is of the name
    }
    return text_.substr(start, position_ - start);
}

bool Scanner::TakeParentheses(std::string_view& inside) {
    const std::size_t start = position_;
    if (!Take('(')) return false;
    std::size_t depth = 1;
    while (!AtEnd()) {
        const char c = Peek();
        std::string_view skipped;
        if ((c == '"' || c == '\'') && TakeString(skipped)) continue;
        Advance();
        if (c == '\\' && !AtEnd()) Advance();
        if (c == '(') ++depth;
        if (c == ')' && --depth == 0) {
            inside = text_.substr(start + 1, position_ - start - 2);
            return true;
        }
    }
    position_ = start;
    return false;
}

bool Scanner::TakeParenthesesOrRest(std::string_view& inside) {
    if (TakeParentheses(inside)) return true;
    if (!Take('(')) return false;
    inside = Rest();
    position_ = text_.size();
    return true;
}

namespace {

/// Which brackets are open. What closes none of them is a character like any other.
class OpenBrackets {
public:
    bool IsEmpty() const { return depth_ == 0; }
    void Note(char c) {
        if (const std::size_t kind = kOpening.find(c); kind != std::string_view::npos) {
            kinds_ = kinds_ << kBits | kind;
            ++depth_;
        } else if (const std::size_t closed = kClosing.find(c);
                   closed != std::string_view::npos && depth_ > 0 && closed == (kinds_ & kMask)) {
            kinds_ >>= kBits;
            --depth_;
        }
    }

private:
    // A stack within a number: of brackets deeper than it holds, the outer ones are taken for the first kind.
    static constexpr std::string_view kOpening = "{([", kClosing = "})]";
    static constexpr unsigned int kBits = 2;
    static constexpr std::uint64_t kMask = 3;
    std::uint64_t kinds_ = 0;
    std::size_t depth_ = 0;
};

}  // namespace

std::string_view Scanner::TakeUntil(std::string_view ends) {
    const std::size_t start = position_;
    OpenBrackets open;
    while (!AtEnd()) {
        const char c = Peek();
        if (open.IsEmpty() && ends.find(c) != std::string_view::npos) break;
        if (c == '"' || c == '\'') {
            SkipString();
            continue;
        }
        open.Note(c);
        Advance(c == '\\' && Peek(1) != '\0' ? 2 : 1);
    }
    return text_.substr(start, position_ - start);
}

// A string that its line does not end is broken: what follows the line is outside of it.
void Scanner::SkipString() {
    const char quote = Peek();
    Advance();
    while (!AtEnd() && Peek() != quote && Peek() != '\n')
        Advance(Peek() == '\\' && position_ + 1 < text_.size() ? 2 : 1);
    Take(quote);
}

bool Scanner::TakeString(std::string_view& inside) {
    const char quote = Peek();
    if (quote != '"' && quote != '\'') return false;
    std::size_t end = position_ + 1;
    while (end < text_.size() && text_[end] != quote) end += text_[end] == '\\' ? 2U : 1U;
    if (end >= text_.size()) return false;
    inside = text_.substr(position_ + 1, end - position_ - 1);
    position_ = end + 1;
    return true;
}

bool Scanner::TakeStringOrRest(std::string_view& inside) {
    if (TakeString(inside)) return true;
    if (Peek() != '"' && Peek() != '\'') return false;
    inside = text_.substr(position_ + 1);
    position_ = text_.size();
    return true;
}

bool ReadNumber(std::string_view text, double& value) {
    Scanner scanner(Trim(text));
    double number = 0.0;
    if (!scanner.TakeNumber(number) || !scanner.AtEnd()) return false;
    value = number;
    return true;
}

}  // namespace svg2
