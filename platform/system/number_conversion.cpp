// SPDX-License-Identifier: Apache-2.0
#include "platform/system/number_conversion.h"

#include <locale.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/system/short_number.h"

namespace {

bool IsWhiteSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view SkipWhiteSpace(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && IsWhiteSpace(text[start])) ++start;
    return text.substr(start);
}

// from_chars gives no value for numbers out of range; strtod rounds them to infinity or 0.
double ConvertOutOfRange(const char* begin, const char* end) {
    static const locale_t plainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string copy(begin, end);
    return strtod_l(copy.c_str(), nullptr, plainLocale);
}

}  // namespace

int ORVCompareText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return kTextDiffers;
    if (a == b) return kTextIdentical;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (LowerCase(a[i]) != LowerCase(b[i])) return kTextDiffers;
    return kTextEqualsIgnoringCase;
}

int ORVConvertToDouble(std::string_view text, double& out, std::size_t* length) {
    const char* const start = text.data();
    text = SkipWhiteSpace(text);
    if (text.empty()) return -1;

    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    const bool number =
        !text.empty() && (IsDigit(text[0]) || (text[0] == '.' && text.size() > 1 && IsDigit(text[1])));
    if (!number) return 0;  // rejects "inf" and "nan", which from_chars would accept

    double value = 0.0;
    if (const char* behind = ORVReadShortNumber(text.data(), text.data() + text.size(), value)) {
        out = negative ? -value : value;
        if (length) *length = static_cast<std::size_t>(behind - start);
        return 1;
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) value = ConvertOutOfRange(text.data(), end);
    out = negative ? -value : value;
    if (length) *length = static_cast<std::size_t>(end - start);
    return 1;
}

int ORVConvertToUnsigned(std::string_view text, unsigned int& out) {
    text = SkipWhiteSpace(text);
    if (text.empty()) return -1;

    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    if (text.empty() || !IsDigit(text.front())) return 0;

    std::uint32_t value = 0;
    for (const char c : text) {
        if (!IsDigit(c)) break;
        value = value * 10U + static_cast<std::uint32_t>(c - '0');
    }
    out = negative ? 0U - value : value;
    return 1;
}

int ORVConvertToInt(std::string_view text, int& out) {
    unsigned int bits = 0;
    const int status = ORVConvertToUnsigned(text, bits);
    if (status == 1) out = static_cast<int>(bits);
    return status;
}
