// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/scanner.h"

#include <cmath>

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
    while (position_ < text_.size() && IsNameCharacter(text_[position_])) ++position_;
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

std::string_view Scanner::TakeUntil(std::string_view ends) {
    const std::size_t start = position_;
    int depth = 0;
    while (!AtEnd()) {
        const char c = Peek();
        std::string_view skipped;
        if (depth == 0 && ends.find(c) != std::string_view::npos) break;
        if ((c == '"' || c == '\'') && TakeString(skipped)) continue;
        if (c == '(' || c == '{' || c == '[') ++depth;
        if ((c == ')' || c == '}' || c == ']') && depth > 0) --depth;
        Advance(c == '\\' && Peek(1) != '\0' ? 2 : 1);
    }
    return text_.substr(start, position_ - start);
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

bool ReadNumber(std::string_view text, double& value) {
    Scanner scanner(Trim(text));
    double number = 0.0;
    if (!scanner.TakeNumber(number) || !scanner.AtEnd()) return false;
    value = number;
    return true;
}

}  // namespace svg2
