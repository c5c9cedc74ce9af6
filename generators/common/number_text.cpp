#include "generators/common/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

constexpr std::array<std::int64_t, 10> kPowers{1,       10,        100,        1'000,       10'000,
                                               100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};

}  // namespace

std::int64_t ToFixed(double number, int places) {
    constexpr double kGreatest = 9e18;  // within 63 bits
    const double fixed = number * static_cast<double>(kPowers[static_cast<std::size_t>(places)]);
    return std::fabs(fixed) < kGreatest ? static_cast<std::int64_t>(fixed + std::copysign(0.5, fixed)) : 0;
}

void AppendFixed(std::string& text, std::int64_t fixed, int places) {
    const bool isNegative = fixed < 0;
    auto rest = static_cast<std::uint64_t>(isNegative ? -fixed : fixed);
    // Digits from the last to the first; noughts at the end of the fraction go unwritten.
    std::array<char, 24> digits;
    char* const end = digits.data() + digits.size();
    char* start = end;
    for (; places > 0 && rest % 10 == 0; --places) rest /= 10;
    if (places > 0) {
        for (; places > 0; --places, rest /= 10) *--start = static_cast<char>('0' + rest % 10);
        *--start = '.';
    } else if (rest == 0) {
        *--start = '0';
    }
    for (; rest != 0; rest /= 10) *--start = static_cast<char>('0' + rest % 10);
    if (isNegative) *--start = '-';
    text.append(start, end);
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
    // No zero before the period.
    if (result.starts_with('-')) {
        text += '-';
        result.remove_prefix(1);
    }
    if (result.size() > 1 && result.starts_with("0.")) result.remove_prefix(1);
    text += result;
}
