// SPDX-License-Identifier: Apache-2.0
#include "library/check/svg_grammar.h"

#include <algorithm>
#include <iterator>

#include "interpreters/svg/state/statuses.h"
#include "platform/system/number_conversion.h"

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

void SkipWhiteSpace(std::string_view& text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

bool Take(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) return false;
    text.remove_prefix(1);
    return true;
}

// Skips blanks with at most one comma.
// @return whether there was a comma
bool SkipSeparator(std::string_view& text) {
    SkipWhiteSpace(text);
    const bool hasComma = Take(text, ',');
    if (hasComma) SkipWhiteSpace(text);
    return hasComma;
}

std::size_t DigitsAt(std::string_view text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && IsDigit(text[end])) ++end;
    return end - at;
}

// Length of the number at the start of `text`; 0 if there is none.
std::size_t NumberLength(std::string_view text) {
    std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const std::size_t whole = DigitsAt(text, at);
    at += whole;
    std::size_t fraction = 0;
    if (at < text.size() && text[at] == '.') {
        fraction = DigitsAt(text, at + 1);
        at += 1 + fraction;
    }
    if (whole + fraction == 0) return 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '-' || text[exponent] == '+')) ++exponent;
        const std::size_t digits = DigitsAt(text, exponent);
        if (digits > 0) at = exponent + digits;
    }
    return at;
}

bool TakeNumber(std::string_view& text, double& number) {
    const std::size_t length = NumberLength(text);
    if (length == 0 || ORVConvertToDouble(text.substr(0, length), number) != kRead) return false;
    text.remove_prefix(length);
    return true;
}

// ---- colours

bool IsHexadecimal(std::string_view digits) {
    return (digits.size() == 3 || digits.size() == 6) &&
           std::all_of(digits.begin(), digits.end(), IsHexDigit);
}

bool AreComponents(std::string_view text) {
    bool arePercentages = false;
    double number = 0.0;
    for (int i = 0; i < 3; ++i) {
        SkipWhiteSpace(text);
        if (i > 0 && !Take(text, ',')) return false;
        SkipWhiteSpace(text);
        if (!TakeNumber(text, number)) return false;
        const bool isPercentage = Take(text, '%');
        if (i == 0) arePercentages = isPercentage;
        if (isPercentage != arePercentages) return false;
    }
    SkipWhiteSpace(text);
    return text == ")";
}

// ---- transforms

struct TransformSyntax {
    std::string_view name;
    std::size_t counts;  // bit mask of the allowed numbers of arguments
};
constexpr TransformSyntax kTransforms[] = {{"matrix", 1U << 6U},
                                           {"translate", 1U << 1U | 1U << 2U},
                                           {"scale", 1U << 1U | 1U << 2U},
                                           {"rotate", 1U << 1U | 1U << 3U},
                                           {"skewX", 1U << 1U},
                                           {"skewY", 1U << 1U}};

bool TakeTransform(std::string_view& text) {
    const auto* const found =
        std::find_if(std::begin(kTransforms), std::end(kTransforms),
                     [&](const TransformSyntax& row) { return text.starts_with(row.name); });
    if (found == std::end(kTransforms)) return false;
    text.remove_prefix(found->name.size());
    SkipWhiteSpace(text);
    if (!Take(text, '(')) return false;
    SkipWhiteSpace(text);
    std::size_t count = 0;
    double number = 0.0;
    while (count < 7 && TakeNumber(text, number)) {
        ++count;
        std::string_view behind = text;
        if (SkipSeparator(behind) && NumberLength(behind) == 0) return false;
        text = behind;
    }
    return Take(text, ')') && (found->counts >> count & 1U) != 0;
}

// ---- path data

std::size_t NumbersOf(char letter) {
    switch (LowerCase(letter)) {
        case 'h':
        case 'v': return 1;
        case 's':
        case 'q': return 4;
        case 'c': return 6;
        case 'a': return 7;
        case 'z': return 0;
        default: return 2;
    }
}

bool TakeFlag(std::string_view& text, double& flag) {
    if (text.empty() || (text.front() != '0' && text.front() != '1')) return false;
    flag = text.front() - '0';
    text.remove_prefix(1);
    return true;
}

// Reads the numbers of one segment and the separators between them.
bool TakeNumbers(std::string_view& text, PathSegment& segment) {
    const bool isArc = LowerCase(segment.letter) == 'a';
    for (std::size_t i = 0; i < NumbersOf(segment.letter); ++i) {
        if (i > 0) SkipSeparator(text);
        const bool isFlag = isArc && (i == 3 || i == 4);
        if (!(isFlag ? TakeFlag(text, segment.numbers[i]) : TakeNumber(text, segment.numbers[i])))
            return false;
    }
    return true;
}

}  // namespace

bool IsPathNumber(std::string_view text) { return !text.empty() && NumberLength(text) == text.size(); }

bool IsSvgNumber(std::string_view text) {
    const std::size_t point = text.find('.');
    return IsPathNumber(text) && (point == text.npos || DigitsAt(text, point + 1) > 0);
}

bool IsSvgColour(std::string_view text) {
    SkipWhiteSpace(text);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    if (text.starts_with('#')) return IsHexadecimal(text.substr(1));
    constexpr std::string_view kFunction = "rgb(";
    if (text.starts_with(kFunction)) return AreComponents(text.substr(kFunction.size()));
    return !text.empty() && !text.starts_with("rgb") && std::all_of(text.begin(), text.end(), IsLetter);
}

bool IsSvgTransformList(std::string_view text) {
    SkipWhiteSpace(text);
    while (!text.empty()) {
        if (!TakeTransform(text)) return false;
        if (SkipSeparator(text) && text.empty()) return false;
    }
    return true;
}

bool SvgPathReader::Next(PathSegment& segment) {
    std::string_view text = rest_;
    SkipWhiteSpace(text);
    constexpr std::string_view kLetters = "MmZzLlHhVvCcSsQqTtAa";
    if (!text.empty() && kLetters.find(text.front()) != kLetters.npos) {
        if (letter_ == 0 && LowerCase(text.front()) != 'm') return false;
        segment.letter = text.front();
        text.remove_prefix(1);
        SkipWhiteSpace(text);
    } else {
        // Further numbers of the same command.
        if (letter_ == 0 || NumbersOf(letter_) == 0) return false;
        if (LowerCase(letter_) == 'm')
            segment.letter = letter_ == 'm' ? 'l' : 'L';
        else
            segment.letter = letter_;
        SkipSeparator(text);
    }
    if (!TakeNumbers(text, segment)) return false;
    letter_ = segment.letter;
    rest_ = text;
    return true;
}

bool SvgPathReader::IsAtEnd() const {
    return std::all_of(rest_.begin(), rest_.end(), [](char c) { return IsBlank(c) || c == ','; });
}
