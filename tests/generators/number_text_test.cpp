// SPDX-License-Identifier: Apache-2.0
#include "generators/common/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <ostream>
#include <random>
#include <string>

#include "tests/support/named_rows.h"

namespace {

struct DecimalCase {
    const char* name;
    double number;
    int places;
    const char* expected;
};
class AppendDecimalTest : public testing::TestWithParam<DecimalCase> {};
TEST_P(AppendDecimalTest, WritesNoDigitTooMany) {
    std::string text = "=";
    AppendDecimal(text, GetParam().number, GetParam().places);
    EXPECT_EQ(text, std::string("=") + GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Decimal, AppendDecimalTest,
    testing::Values(DecimalCase{"Zero", 0.0, 3, "0"}, DecimalCase{"Whole", 12.0, 3, "12"},
                    DecimalCase{"Half", 0.5, 3, ".5"}, DecimalCase{"MinusHalf", -0.5, 3, "-.5"},
                    DecimalCase{"Rounded", 2.0 / 3.0, 3, ".667"},
                    DecimalCase{"InnerZeros", 1.001, 3, "1.001"},
                    DecimalCase{"RoundedToZero", -0.0004, 3, "0"}, DecimalCase{"NoPlaces", 2.5, 0, "3"},
                    DecimalCase{"NinePlaces", -1e-9, 9, "-.000000001"},
                    DecimalCase{"Large", 1e12, 3, "1000000000000"}, DecimalCase{"TooLarge", 1e300, 3, "0"},
                    DecimalCase{"NotANumber", std::nan(""), 3, "0"},
                    DecimalCase{"Infinite", -std::numeric_limits<double>::infinity(), 9, "0"}),
    kNameOfRow);

struct FactorCase {
    const char* name;
    double number;
    int digits;
    const char* expected;
};
class AppendSignificantTest : public testing::TestWithParam<FactorCase> {};
TEST_P(AppendSignificantTest, KeepsTheDigitsThatCount) {
    std::string text;
    AppendSignificant(text, GetParam().number, GetParam().digits);
    EXPECT_EQ(text, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Significant, AppendSignificantTest,
    testing::Values(FactorCase{"Zero", 0.0, 6, "0"}, FactorCase{"One", 1.0, 6, "1"},
                    FactorCase{"Third", -1.0 / 3.0, 6, "-.333333"},
                    FactorCase{"Small", 1.25e-7, 6, ".000000125"}, FactorCase{"Hundred", 100.0, 9, "100"},
                    FactorCase{"MorePlacesThanDigits", 123456.789, 4, "123457"},
                    FactorCase{"NotANumber", std::nan(""), 6, "0"},
                    FactorCase{"Infinite", std::numeric_limits<double>::infinity(), 6, "0"}),
    kNameOfRow);

TEST(AppendSignificantTest, WritesTheGreatestNumbers) {
    std::string text;
    AppendSignificant(text, -std::numeric_limits<double>::max(), 6);
    EXPECT_EQ(text.size(), 310U);
    EXPECT_EQ(text.substr(0, 6), "-17976");
}

struct NumberCase {
    double number;
    int places;
    const char* text;

    friend std::ostream& operator<<(std::ostream& out, const NumberCase& row) { return out << row.text; }
};
class ShortNumberTest : public testing::TestWithParam<NumberCase> {};
TEST_P(ShortNumberTest, IsAsShortAsItCanBe) {
    std::string text;
    AppendDecimal(text, GetParam().number, GetParam().places);
    EXPECT_EQ(text, GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Numbers, ShortNumberTest,
    testing::Values(NumberCase{0.0, 3, "0"}, NumberCase{-0.0, 3, "0"}, NumberCase{1.0, 3, "1"},
                    NumberCase{-12.5, 3, "-12.5"}, NumberCase{0.5, 3, ".5"}, NumberCase{-0.25, 3, "-.25"},
                    NumberCase{0.0004, 3, "0"}, NumberCase{-0.0004, 3, "0"}, NumberCase{0.0005, 3, ".001"},
                    NumberCase{0.9996, 3, "1"}, NumberCase{100.0, 3, "100"}, NumberCase{1200.05, 1, "1200.1"},
                    NumberCase{10.0, 0, "10"}, NumberCase{0.4, 0, "0"}, NumberCase{1.0203, 4, "1.0203"},
                    NumberCase{999999999.0, 4, "999999999"}, NumberCase{1e300, 4, "0"},
                    NumberCase{std::numeric_limits<double>::quiet_NaN(), 4, "0"}));

/// Reference implementation: divides by 10 for each digit.
std::string NaiveFixed(std::int64_t fixed, int places) {
    std::string digits;
    auto rest = static_cast<std::uint64_t>(fixed < 0 ? -fixed : fixed);
    for (int i = 0; i < places || rest != 0; ++i, rest /= 10) {
        if (i == places && places > 0) digits.insert(0, 1, '.');
        digits.insert(0, 1, static_cast<char>('0' + rest % 10));
    }
    if (places > 0) {
        if (digits.find('.') == digits.npos) digits.insert(0, 1, '.');
        while (digits.back() == '0') digits.pop_back();
        if (digits.back() == '.') digits.pop_back();
    }
    return digits.empty() ? "0" : (fixed < 0 ? "-" : "") + digits;
}

TEST(ShortNumberTest, AgreesWithPlainDivision) {
    std::mt19937_64 random(3);
    for (int places = 0; places <= 9; ++places) {
        for (int i = 0; i < 20'000; ++i) {
            const auto number = i < 10'000 ? std::int64_t{i - 5'000}
                                           : static_cast<std::int64_t>(random()) >> (random() % 62 + 1);
            std::string text;
            AppendFixed(text, number, places);
            ASSERT_EQ(text, NaiveFixed(number, places)) << number << " with " << places;
        }
    }
}

TEST(ShortNumberTest, KeepsTheValueToItsPlaces) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> values(-50'000.0, 50'000.0);
    for (int i = 0; i < 20'000; ++i) {
        const int places = i % 7;
        const double value = values(random) / (1 + i % 1000);
        std::string text;
        AppendDecimal(text, value, places);
        EXPECT_NEAR(std::strtod(text.c_str(), nullptr), value, 0.5000001 * std::pow(10.0, -places)) << text;
        EXPECT_EQ(text.find_first_not_of("-.0123456789"), text.npos);
    }
}

}  // namespace
