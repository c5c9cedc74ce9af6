#include "generators/pdf/pdf_syntax.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

namespace {

struct NumberCase {
    double number;
    int places;
    const char* text;
};
class PdfNumberTest : public testing::TestWithParam<NumberCase> {};
TEST_P(PdfNumberTest, IsAsShortAsItCanBe) {
    std::string text;
    AppendPdfNumber(text, GetParam().number, GetParam().places);
    EXPECT_EQ(text, GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Numbers, PdfNumberTest,
    testing::Values(NumberCase{0.0, 3, "0"}, NumberCase{-0.0, 3, "0"}, NumberCase{1.0, 3, "1"},
                    NumberCase{-12.5, 3, "-12.5"}, NumberCase{0.5, 3, ".5"}, NumberCase{-0.25, 3, "-.25"},
                    NumberCase{0.0004, 3, "0"}, NumberCase{-0.0004, 3, "0"}, NumberCase{0.0005, 3, ".001"},
                    NumberCase{0.9996, 3, "1"}, NumberCase{100.0, 3, "100"}, NumberCase{1200.05, 1, "1200.1"},
                    NumberCase{10.0, 0, "10"}, NumberCase{0.4, 0, "0"}, NumberCase{1.0203, 4, "1.0203"},
                    NumberCase{999999999.0, 4, "999999999"}, NumberCase{1e300, 4, "0"},
                    NumberCase{std::numeric_limits<double>::quiet_NaN(), 4, "0"}));

TEST(PdfNumberTest, KeepsTheValueToItsPlaces) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> values(-50'000.0, 50'000.0);
    for (int i = 0; i < 20'000; ++i) {
        const int places = i % 7;
        const double value = values(random) / (1 + i % 1000);
        std::string text;
        AppendPdfNumber(text, value, places);
        EXPECT_NEAR(std::strtod(text.c_str(), nullptr), value, 0.5000001 * std::pow(10.0, -places)) << text;
        EXPECT_EQ(text.find_first_not_of("-.0123456789"), text.npos);
    }
}

struct FactorCase {
    double number;
    const char* text;
};
class PdfFactorTest : public testing::TestWithParam<FactorCase> {};
TEST_P(PdfFactorTest, HasNineDigitsAndNoExponent) {
    std::string text;
    AppendPdfFactor(text, GetParam().number);
    EXPECT_EQ(text, GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(Factors, PdfFactorTest,
                         testing::Values(FactorCase{0.0, "0"}, FactorCase{1.0, "1"}, FactorCase{-1.0, "-1"},
                                         FactorCase{0.8, ".8"}, FactorCase{-0.8, "-.8"},
                                         FactorCase{1.0 / 3.0, ".333333333"}, FactorCase{-10.25, "-10.25"},
                                         FactorCase{1e-7, ".0000001"},
                                         FactorCase{123456789012.0, "123456789012"},
                                         FactorCase{std::numeric_limits<double>::infinity(), "0"}));

TEST(PdfTextTest, PlainTextIsBracketedOtherIsUtf16) {
    std::string text;
    AppendPdfText(text, "a (b) \\");
    AppendPdfText(text, "\xC3\xA9\xF0\x9F\x98\x80\xFF");
    EXPECT_EQ(text, "(a \\(b\\) \\\\)<FEFF00E9D83DDE00FFFD>");
}

TEST(PdfTextTest, BytesKeepLineEnds) {
    std::string text;
    AppendPdfBytes(text, "a\r\nb");
    EXPECT_EQ(text, "(a\\r\nb)");
}

}  // namespace
