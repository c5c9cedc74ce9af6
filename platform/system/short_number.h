// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Powers of ten that a short number may be divided by. Its digits and these powers are small enough that the
// quotient is rounded only once.
inline constexpr double kShortNumberPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                                1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

/// Portable version of ORVReadShortNumber, one character at a time.
inline const char* ORVReadShortNumberByCharacters(const char* text, const char* end, double& value) {
    constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53U;
    constexpr std::ptrdiff_t kMostCharacters = 19;  // more could overflow `digits`
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };

    const char* const last = end - text < kMostCharacters ? end : text + kMostCharacters;
    const char* p = text;
    std::uint64_t digits = 0;
    std::size_t places = 0;
    for (; p != last && isDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
    std::ptrdiff_t count = p - text;
    if (p != last && *p == '.') {
        const char* const point = p;
        for (++p; p != last && isDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
        places = static_cast<std::size_t>(p - point - 1);
        count += p - point - 1;
    }
    const bool goesOn = p != end && (isDigit(*p) || *p == '.' || *p == 'e' || *p == 'E');
    if (count == 0 || goesOn || digits > kLargestExact) return nullptr;
    value = static_cast<double>(digits) / kShortNumberPowers[places];
    return p;
}

/// Combines decimal digits into a number.
/// @param digits  digit values, the first in the lowest byte; bytes beyond `count` are ignored
/// @param count   number of digits, 1 to 8
/// @return the number
inline std::uint64_t ORVJoinDigits(std::uint64_t digits, unsigned int count) {
    digits <<= 64U - 8U * count;  // leading zeros
    digits = (digits * 10 + (digits >> 8U)) & 0x00ff00ff00ff00ffU;
    digits = (digits * 100 + (digits >> 16U)) & 0x0000ffff0000ffffU;
    return (digits * 10000 + (digits >> 32U)) & 0xffffffffU;
}

/// Reads an unsigned number without an exponent, such as "12", "3.25" or ".5": the most common form. The
/// digits (without the point) and the power of ten are exact as doubles, so their quotient is correctly
/// rounded.
/// @param end  end of the readable text
/// @return end of the number; null when there is none or ORVConvertToDouble must read it: too many digits, a
/// second point or an exponent
[[gnu::always_inline]] inline const char* ORVReadShortNumber(const char* text, const char* end,
                                                             double& value) {
    // Up to seven characters and their terminator are examined as one word, without a branch per character.
    std::uint64_t word = 0;
    if (std::endian::native != std::endian::little || end - text < static_cast<std::ptrdiff_t>(sizeof word))
        return ORVReadShortNumberByCharacters(text, end, value);
    std::memcpy(&word, text, sizeof word);
    word ^= 0x3030303030303030U;  // digits become their values
    std::uint64_t others =
        (((word & 0x7f7f7f7f7f7f7f7fU) + 0x7676767676767676U) | word) & 0x8080808080808080U;
    unsigned int length = static_cast<unsigned int>(std::countr_zero(others)) / 8U;
    unsigned int count = length, places = 0;
    if (others != 0 && text[length] == '.') {
        const std::uint64_t whole = (std::uint64_t{1} << (8U * length)) - 1;
        word = (word & whole) | (word >> 8U & ~whole);  // removes the point
        others &= others - 1;
        length = static_cast<unsigned int>(std::countr_zero(others)) / 8U;
        places = length - count - 1;
        count = length - 1;
    }
    if (others == 0) return ORVReadShortNumberByCharacters(text, end, value);
    const char behind = text[length];
    if (count == 0 || behind == '.' || behind == 'e' || behind == 'E') return nullptr;
    value = static_cast<double>(ORVJoinDigits(word, count)) / kShortNumberPowers[places];
    return text + length;
}

/// Reads a text that consists of such a number only, with an optional minus sign.
/// @return false for any other text; `value` is unchanged
inline bool ORVReadWholeNumber(std::string_view text, double& value) {
    const char* const end = text.data() + text.size();
    const bool isNegative = !text.empty() && text.front() == '-';
    double number = 0.0;
    // By characters, because most attribute values are shorter than a word.
    if (ORVReadShortNumberByCharacters(text.data() + (isNegative ? 1 : 0), end, number) != end ||
        text.empty())
        return false;
    value = isNegative ? -number : number;
    return true;
}
