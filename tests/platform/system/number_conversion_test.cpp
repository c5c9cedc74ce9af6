// SPDX-License-Identifier: Apache-2.0
#include "platform/system/number_conversion.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "tests/support/named_rows.h"
#include "tests/support/scratch_folder.h"

namespace {

using namespace std::string_view_literals;

constexpr double kPreset = -7.0;  // unchanged if nothing is converted

struct DoubleCase {
    const char* name;
    std::string_view text;
    int status;
    double expected;
};
class ConvertToDoubleTest : public testing::TestWithParam<DoubleCase> {};
TEST_P(ConvertToDoubleTest, GivesStatusAndNumber) {
    double out = kPreset;
    EXPECT_EQ(ORVConvertToDouble(GetParam().text, out), GetParam().status);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(out), std::bit_cast<std::uint64_t>(GetParam().expected)) << out;
}
constexpr double kInfinity = std::numeric_limits<double>::infinity();
INSTANTIATE_TEST_SUITE_P(
    Number, ConvertToDoubleTest,
    testing::Values(
        DoubleCase{"Integer", "12", 1, 12.0}, DoubleCase{"Fraction", "0.1", 1, 0.1},
        DoubleCase{"LeadingPeriod", ".5", 1, 0.5}, DoubleCase{"TrailingPeriod", "5.", 1, 5.0},
        DoubleCase{"Plus", "+3", 1, 3.0}, DoubleCase{"Minus", "-3.5", 1, -3.5},
        DoubleCase{"MinusZero", "-0", 1, -0.0}, DoubleCase{"SignAndPeriod", "-.5", 1, -0.5},
        DoubleCase{"Exponent", "1e3", 1, 1000.0}, DoubleCase{"CapitalExponent", "1E-2", 1, 0.01},
        DoubleCase{"PlusInExponent", "2.5e+1", 1, 25.0}, DoubleCase{"ExponentAfterPeriod", "1.e2", 1, 100.0},
        DoubleCase{"ExponentWithoutDigit", "1E", 1, 1.0}, DoubleCase{"ExponentWithSignOnly", "1e+", 1, 1.0},
        DoubleCase{"ExponentWithoutDigitBeforeUnit", "2em", 1, 2.0}, DoubleCase{"Unit", "12px", 1, 12.0},
        DoubleCase{"SecondPeriodEndsIt", "1.2.3", 1, 1.2}, DoubleCase{"SecondSignEndsIt", "1-2", 1, 1.0},
        DoubleCase{"CommaEndsIt", "1,5", 1, 1.0},
        DoubleCase{"AllWhiteSpaceIsSkipped", " \t\n\r\v\f7", 1, 7.0},
        DoubleCase{"HexadecimalIsZero", "0x1F", 1, 0.0},
        DoubleCase{"NulEndsIt",
                   "4\0"
                   "5"sv,
                   1, 4.0},
        DoubleCase{"Overflow", "1e999", 1, kInfinity},
        DoubleCase{"NegativeOverflow", "-1e999", 1, -kInfinity}, DoubleCase{"Underflow", "1e-999", 1, 0.0},
        DoubleCase{"NegativeUnderflow", "-1e-999", 1, -0.0},
        DoubleCase{"Subnormal", "4.9e-324", 1, std::numeric_limits<double>::denorm_min()},
        DoubleCase{"Largest", "1.7976931348623157e308", 1, std::numeric_limits<double>::max()},
        DoubleCase{"HugeExponent", "1e99999999999999999999", 1, kInfinity},
        DoubleCase{"HugeNegativeExponent", "1e-99999999999999999999", 1, 0.0},
        DoubleCase{"ZeroWithHugeExponent", "0e99999999999999999999", 1, 0.0},
        DoubleCase{"ManyDigits", "0.1000000000000000055511151231257827021181583404541015625", 1, 0.1},
        DoubleCase{"HalfwayRoundsToEven", "9007199254740993", 1, 9007199254740992.0},
        DoubleCase{"Word", "auto", 0, kPreset}, DoubleCase{"Infinity", "inf", 0, kPreset},
        DoubleCase{"SignedInfinity", "-Infinity", 0, kPreset}, DoubleCase{"NotANumber", "nan", 0, kPreset},
        DoubleCase{"SignOnly", "-", 0, kPreset}, DoubleCase{"TwoSigns", "+-5", 0, kPreset},
        DoubleCase{"MinusPlus", "-+5", 0, kPreset}, DoubleCase{"TwoMinus", "--5", 0, kPreset},
        DoubleCase{"BlankAfterSign", "- 5", 0, kPreset}, DoubleCase{"PeriodOnly", ".", 0, kPreset},
        DoubleCase{"PeriodAndExponent", ".e5", 0, kPreset}, DoubleCase{"ExponentOnly", "e5", 0, kPreset},
        DoubleCase{"NoBreakSpace",
                   "\xC2\xA0"
                   "5",
                   0, kPreset},
        DoubleCase{"Nul",
                   "\0"
                   "5"sv,
                   0, kPreset},
        DoubleCase{"Empty", "", -1, kPreset}, DoubleCase{"WhiteSpaceOnly", " \t\n\r\v\f", -1, kPreset}),
    kNameOfRow);

struct IntegerCase {
    const char* name;
    std::string_view text;
    int status;
    unsigned int natural;
    int integer;
};
class ConvertToIntegerTest : public testing::TestWithParam<IntegerCase> {};
TEST_P(ConvertToIntegerTest, GivesStatusAndNumber) {
    unsigned int natural = 77;
    int integer = 77;
    EXPECT_EQ(ORVConvertToUnsigned(GetParam().text, natural), GetParam().status);
    EXPECT_EQ(natural, GetParam().natural);
    EXPECT_EQ(ORVConvertToInt(GetParam().text, integer), GetParam().status);
    EXPECT_EQ(integer, GetParam().integer);
}
INSTANTIATE_TEST_SUITE_P(
    Number, ConvertToIntegerTest,
    testing::Values(IntegerCase{"Zero", "0", 1, 0, 0}, IntegerCase{"Digits", "255,", 1, 255, 255},
                    IntegerCase{"Minus", "-1", 1, 4294967295U, -1}, IntegerCase{"Plus", "+5", 1, 5, 5},
                    IntegerCase{"LeadingZeros", "007", 1, 7, 7}, IntegerCase{"PeriodEndsIt", "3.9", 1, 3, 3},
                    IntegerCase{"WhiteSpace", "\v\f 8", 1, 8, 8},
                    IntegerCase{"SignBit", "2147483648", 1, 2147483648U, std::numeric_limits<int>::min()},
                    IntegerCase{"Wraps", "4294967298", 1, 2, 2},
                    IntegerCase{"WrapsNegative", "-4294967298", 1, 4294967294U, -2},
                    IntegerCase{"WrapsAgainAndAgain", "18446744073709551617", 1, 1, 1},
                    IntegerCase{"Word", "x1", 0, 77, 77}, IntegerCase{"SignOnly", "+", 0, 77, 77},
                    IntegerCase{"TwoSigns", "--1", 0, 77, 77}, IntegerCase{"Empty", "", -1, 77, 77},
                    IntegerCase{"WhiteSpaceOnly", " \t", -1, 77, 77}),
    kNameOfRow);

// Reference implementation: converts the longest prefix that is a number, found by trying every prefix,
// longest first.
int ConvertNaively(const std::string& text, double& out) {
    std::size_t start = 0;
    while (start < text.size() && (text[start] == ' ' || (text[start] >= '\t' && text[start] <= '\r')))
        ++start;
    if (start == text.size()) return -1;
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    const auto isNumber = [&](const std::string& s) {
        std::size_t i = 0, digits = 0;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
        for (; i < s.size() && digit(s[i]); ++i) ++digits;
        if (i < s.size() && s[i] == '.')
            for (++i; i < s.size() && digit(s[i]); ++i) ++digits;
        if (digits == 0) return false;
        if (i == s.size()) return true;
        if (s[i] != 'e' && s[i] != 'E') return false;
        ++i;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
        if (i == s.size()) return false;
        for (; i < s.size(); ++i)
            if (!digit(s[i])) return false;
        return true;
    };
    for (std::size_t end = text.size(); end > start; --end) {
        const std::string prefix = text.substr(start, end - start);
        if (!isNumber(prefix)) continue;
        out = std::strtod(prefix.c_str(), nullptr);
        return 1;
    }
    return 0;
}

TEST(NumberConversion, ReadsTheLongestPrefixThatIsANumber) {
    constexpr std::string_view kAlphabet = "0123456789012345..++--eeE x\t,naif";
    std::mt19937 random(2024);
    for (int round = 0; round < 200000; ++round) {
        std::string text(random() % 12, ' ');
        for (char& c : text) c = kAlphabet[random() % kAlphabet.size()];
        double expected = kPreset, out = kPreset;
        const int status = ConvertNaively(text, expected);
        ASSERT_EQ(ORVConvertToDouble(text, out), status) << '"' << text << '"';
        ASSERT_EQ(std::bit_cast<std::uint64_t>(out), std::bit_cast<std::uint64_t>(expected))
            << '"' << text << '"';
    }
}

// The numbers have fewer and more digits than a double can represent exactly.
TEST(NumberConversion, RoundsDecimalsOfAnyLength) {
    std::mt19937_64 random(5);
    for (int round = 0; round < 200000; ++round) {
        std::string text(random() % 24 + 1, '0');
        for (char& c : text) c = static_cast<char>('0' + random() % 10);
        if (random() % 4 != 0) text.insert(random() % text.size(), 1, '.');
        if (random() % 8 == 0) text.insert(0, random() % 6, '0');
        if (text.back() == '.') text += '5';
        double out = kPreset;
        ASSERT_EQ(ORVConvertToDouble(text, out), 1) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(out),
                  std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)))
            << text;
    }
    double out = kPreset;
    for (const char* text :
         {"9007199254740991", "9007199254740992", "9007199254740993", "900719925474099.3"}) {
        EXPECT_EQ(ORVConvertToDouble(text, out), 1);
        EXPECT_EQ(out, std::strtod(text, nullptr)) << text;
    }
}

TEST(NumberConversion, RoundsEveryDoubleBackToItself) {
    std::mt19937_64 random(99);
    for (int round = 0; round < 100000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        char text[64];
        std::snprintf(text, sizeof text, "%.17g", value);
        double out = kPreset;
        ASSERT_EQ(ORVConvertToDouble(text, out), 1) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(out), std::bit_cast<std::uint64_t>(value)) << text;
    }
}

TEST(NumberConversion, TakesAMillionDigits) {
    double out = kPreset;
    EXPECT_EQ(ORVConvertToDouble(std::string(1000000, '9'), out), 1);
    EXPECT_EQ(out, kInfinity);
    EXPECT_EQ(ORVConvertToDouble("0." + std::string(1000000, '0') + "1", out), 1);
    EXPECT_EQ(out, 0.0);
    EXPECT_EQ(ORVConvertToDouble(std::string(1000000, '0') + "1.5", out), 1);
    EXPECT_EQ(out, 1.5);
    unsigned int natural = 0;
    EXPECT_EQ(ORVConvertToUnsigned(std::string(1000000, '0') + "15", natural), 1);
    EXPECT_EQ(natural, 15U);
}

// Sets a locale with a decimal comma for its lifetime. If none is installed, localedef compiles one.
class CommaLocale {
public:
    CommaLocale() {
        Use("de_DE.UTF-8");
        if (!active_) Use("fr_FR.UTF-8");
        if (active_) return;
        folder_.emplace();
        const std::string command = "localedef --no-archive -i de_DE -f UTF-8 '" +
                                    folder_->PathOf("de_DE.UTF-8") + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) return;
        setenv("LOCPATH", folder_->Path().c_str(), 1);
        Use("de_DE.UTF-8");
    }
    ~CommaLocale() {
        std::setlocale(LC_ALL, "C");
        if (folder_) unsetenv("LOCPATH");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    bool IsActive() const { return active_; }

private:
    void Use(const char* name) {
        active_ = std::setlocale(LC_ALL, name) && localeconv()->decimal_point == std::string_view(",");
    }

    bool active_ = false;
    std::optional<ScratchFolder> folder_;
};

TEST(NumberConversion, ReadsAPeriodWhateverTheLocale) {
    const CommaLocale locale;
    if (!locale.IsActive()) GTEST_SKIP() << "no locale with a decimal comma, and none can be made";
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);  // the locale is in effect

    double out = kPreset;
    EXPECT_EQ(ORVConvertToDouble("1.5", out), 1);
    EXPECT_EQ(out, 1.5);
    EXPECT_EQ(ORVConvertToDouble("1,5", out), 1);
    EXPECT_EQ(out, 1.0);
    EXPECT_EQ(ORVConvertToDouble("0.00001e-999", out), 1);
    EXPECT_EQ(out, 0.0);
    EXPECT_EQ(ORVConvertToDouble("4.9e-324", out), 1);
    EXPECT_EQ(out, std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(ORVConvertToDouble("1234.5e306", out), 1);
    EXPECT_EQ(out, kInfinity);
}

TEST(NumberLengthTest, EndsBehindTheNumber) {
    const struct {
        std::string text;
        int status;
        std::size_t length;  // 77: unchanged
    } cases[] = {{"12", 1, 2},     {"  12px", 1, 4}, {"-1.5e3mm", 1, 6}, {"+.5.5", 1, 3}, {"1e", 1, 1},
                 {"1e400x", 1, 5}, {"x", 0, 77},     {"", -1, 77},       {"inf", 0, 77}};
    for (const auto& row : cases) {
        double number = 0.0;
        std::size_t length = 77;
        EXPECT_EQ(ORVConvertToDouble(row.text, number, &length), row.status) << row.text;
        EXPECT_EQ(length, row.length) << row.text;
    }
}

}  // namespace
