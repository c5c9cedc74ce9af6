// SPDX-License-Identifier: Apache-2.0
#include "generators/common/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

namespace {

constexpr std::array<std::int64_t, 10> kPowers{1,       10,        100,        1'000,       10'000,
                                               100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};

// The two digits of each number below 100.
constexpr std::array<char, 200> MakePairs() {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}
constexpr std::array<char, 200> kPairs = MakePairs();

/// Writes two digits before `end`. @return pointer to the first of them
char* PutPair(char* end, std::uint64_t pair) {
    std::memcpy(end - 2, &kPairs[2 * pair], 2);
    return end - 2;
}

/// The three digits of a number below 1000, with the numbers of leading and trailing zeros.
struct Triple {
    std::array<char, 3> digits;
    std::uint8_t zeros;  // leading in the low half, trailing in the high half
};

// One extra entry, because four characters are copied from any of them.
constexpr std::array<Triple, 1001> MakeTriples() {
    std::array<Triple, 1001> triples{};
    for (unsigned int i = 0; i < 1000; ++i) {
        const unsigned int before = i < 10 ? 2 : i < 100 ? 1 : 0;
        const unsigned int behind = i == 0 ? 3 : i % 100 == 0 ? 2 : i % 10 == 0 ? 1 : 0;
        triples[i] = {{static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                       static_cast<char>('0' + i % 10)},
                      static_cast<std::uint8_t>(before | behind << 4U)};
    }
    return triples;
}
constexpr std::array<Triple, 1001> kTriples = MakeTriples();
static_assert(sizeof(Triple) == 4);

/// Writes a number below 1000. Needs room for one extra character.
char* WriteTriple(char* out, std::uint64_t number) {
    const std::size_t before = kTriples[number].zeros & 0xFU;
    std::memcpy(out, reinterpret_cast<const char*>(&kTriples[number]) + before, 4);
    return out + 3 - before;
}

/// The same for thousandths after a decimal point, without trailing zeros.
char* WriteThousandths(char* out, std::uint64_t number) {
    std::memcpy(out, &kTriples[number], 4);
    return out + 3 - (kTriples[number].zeros >> 4U);
}

char* WriteWhole(char* out, std::uint64_t number) {
    if (number < 1000) return WriteTriple(out, number);
    int digits = 2;
    for (std::uint64_t rest = number / 100; rest != 0; rest /= 10) ++digits;
    char* const end = out + digits;
    char* p = end;
    for (; number >= 10; number /= 100) p = PutPair(p, number % 100);
    if (p != out) *out = static_cast<char>('0' + number);
    return end;
}

}  // namespace

std::int64_t ToFixed(double number, int places) {
    constexpr double kGreatest = 9e18;  // fits 63 bits
    const double fixed = number * static_cast<double>(kPowers[static_cast<std::size_t>(places)]);
    return std::fabs(fixed) < kGreatest ? static_cast<std::int64_t>(fixed + std::copysign(0.5, fixed)) : 0;
}

char* WriteFixed(char* out, std::int64_t fixed, int places) {
    auto rest = static_cast<std::uint64_t>(fixed);
    if (fixed < 0) {
        *out++ = '-';
        rest = 0 - rest;
    }
    const auto power = static_cast<std::uint64_t>(kPowers[static_cast<std::size_t>(places)]);
    // Most numbers fit 32 bits, which are faster to divide.
    const bool isShort = rest <= std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t whole =
        isShort ? static_cast<std::uint32_t>(rest) / static_cast<std::uint32_t>(power) : rest / power;
    auto fraction = static_cast<std::uint32_t>(rest - whole * power);
    if (whole != 0 || fraction == 0) out = WriteWhole(out, whole);
    if (fraction == 0) return out;

    *out++ = '.';
    if (places == 3) return WriteThousandths(out, fraction);
    char* const end = out + places;
    char* p = end;
    for (; p - out >= 2; fraction /= 100) p = PutPair(p, fraction % 100);
    if (p != out) *out = static_cast<char>('0' + fraction);
    // Omit trailing zeros of the fraction.
    for (p = end; p[-1] == '0';) --p;
    return p;
}

char* WriteDecimal(char* out, double number, int places) {
    return WriteFixed(out, ToFixed(number, places), places);
}

void AppendFixed(std::string& text, std::int64_t fixed, int places) {
    std::array<char, kNumberRoom> room;
    text.append(room.data(), WriteFixed(room.data(), fixed, places));
}

void AppendDecimal(std::string& text, double number, int places) {
    AppendFixed(text, ToFixed(number, places), places);
}

void AppendSignificant(std::string& text, double number, int digits) {
    if (number == 0.0 || !std::isfinite(number)) {
        text += '0';
        return;
    }
    if (number == 1.0 || number == -1.0) {
        text += number < 0.0 ? "-1" : "1";
        return;
    }
    const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(number))));
    const int places = std::clamp(digits - 1 - magnitude, 0, 330);
    std::array<char, 700> buffer;
    const char* end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, places)
            .ptr;
    std::string_view result(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    if (places > 0) {
        result = result.substr(0, result.find_last_not_of('0') + 1);
        if (result.ends_with('.')) result.remove_suffix(1);
    }
    // Omit the zero before the period.
    if (result.starts_with('-')) {
        text += '-';
        result.remove_prefix(1);
    }
    if (result.size() > 1 && result.starts_with("0.")) result.remove_prefix(1);
    text += result;
}
