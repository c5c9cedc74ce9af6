#include "plugin/geometry/path_scanner.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/support/sketch_case.h"

namespace {

// Every command letter, its arguments each in brackets.
std::string Scan(std::string_view text) {
    std::string result;
    PathScanner scanner(text);
    char letter = 0;
    while (scanner.NextCommand(letter)) {
        result += letter;
        std::string_view argument;
        while (scanner.NextArgument(argument)) result.append("[").append(argument).append("]");
    }
    return result;
}

struct ScanCase {
    const char* name;
    const char* text;
    const char* expected;

    friend std::ostream& operator<<(std::ostream& out, const ScanCase& row) { return out << row.text; }
};

class PathScannerTest : public testing::TestWithParam<ScanCase> {};

TEST_P(PathScannerTest, SplitsCommandsAndArguments) { EXPECT_EQ(Scan(GetParam().text), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Commands, PathScannerTest,
    testing::Values(ScanCase{"Empty", "", ""}, ScanCase{"NoCommand", "1 2 3", ""},
                    ScanCase{"EveryLetterBeginsACommand", "MmZzLlCcSsHhVvQqTtAa", "MmZzLlCcSsHhVvQqTtAa"},
                    ScanCase{"OtherLettersDoNot", "M1B2b3E4e5X6", "M[1B2b3E4e5X6]"},
                    ScanCase{"ArgumentsNeedNoBlank", "M1L2", "M[1]L[2]"},
                    ScanCase{"TextBeforeTheFirstCommand", "5 5 M1", "M[1]"},
                    ScanCase{"CommandInsideAWord", "M1L2x", "M[1]L[2x]"},
                    ScanCase{"LettersOfWordsAreCommands", "Mclose", "Mcl[o]s[e]"},
                    ScanCase{"SemicolonEndsTheArguments", "M1 2;3 4L5", "M[1][2]L[5]"},
                    ScanCase{"CommandBehindASemicolon", "M1;L2", "M[1]L[2]"},
                    ScanCase{"UnknownLetterBehindASemicolonIsSkipped", "M1;B2;L3", "M[1]L[3]"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Separators, PathScannerTest,
    testing::Values(ScanCase{"Blanks", "M 1  2 ", "M[1][2]"}, ScanCase{"Commas", "M,1,,2,", "M[1][2]"},
                    ScanCase{"BlanksAndCommas", "M , 1 , 2", "M[1][2]"},
                    ScanCase{"MinusBeginsANumber", "M1-2-3", "M[1][-2][-3]"},
                    ScanCase{"MinusFirst", "M-1", "M[-1]"}, ScanCase{"LoneMinus", "M--1", "M[-][-1]"},
                    ScanCase{"MinusAlone", "M-", "M[-]"}, ScanCase{"PlusDoesNot", "M1+2", "M[1+2]"},
                    ScanCase{"PeriodDoesNot", "M1.5.5", "M[1.5.5]"},
                    ScanCase{"TabIsNoSeparator", "M1\t2", "M[1\t2]"},
                    ScanCase{"LineBreakIsNoSeparator", "M1\n2", "M[1\n2]"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Exponents, PathScannerTest,
    testing::Values(
        ScanCase{"LowerCaseIsProtected", "M1e-3 0", "M[1e-3][0]"},
        ScanCase{"UpperCaseIsSplit", "M1E-3 0", "M[1E][-3][0]"},
        ScanCase{"SecondMinusIsNot", "M1e-3-4", "M[1e-3][-4]"},
        ScanCase{"TwoMinusesBehindE", "M1e--3", "M[1e-][-3]"}, ScanCase{"EMinusFirst", "Me-5", "M[e-5]"},
        ScanCase{"ThreeEReadAsEMinus", "M1eee5", "M[1e-5]"}, ScanCase{"TwoEStay", "M1ee5", "M[1ee5]"},
        ScanCase{"FourE", "M1eeee5", "M[1e-e5]"}, ScanCase{"SixE", "M1eeeeee5", "M[1e-e-5]"},
        ScanCase{"EBeforeEMinus", "M1ee-5", "M[1e-e5]"}, ScanCase{"TwoEBeforeEMinus", "M1eee-5", "M[1e-ee5]"},
        ScanCase{"EMinusTwice", "M1e-e-5", "M[1e-e-5]"}, ScanCase{"EMinusThenE", "M1e-e5", "M[1e-e5]"},
        ScanCase{"EAtTheEnd", "M1e L2", "M[1e]L[2]"}, ScanCase{"EBeforeACommand", "M1eL2", "M[1e]L[2]"}),
    kNameOfRow);

TEST(PathScannerTest, SkipsArgumentsNobodyAskedFor) {
    PathScanner scanner("M 1 2 L 3 4 Z");
    char letter = 0;
    std::string_view argument;
    ASSERT_TRUE(scanner.NextCommand(letter));
    ASSERT_TRUE(scanner.NextArgument(argument));
    ASSERT_TRUE(scanner.NextCommand(letter));
    EXPECT_EQ(letter, 'L');
    ASSERT_TRUE(scanner.NextCommand(letter));
    EXPECT_EQ(letter, 'Z');
    EXPECT_FALSE(scanner.NextCommand(letter));
    EXPECT_FALSE(scanner.NextArgument(argument));
}

TEST(PathScannerTest, ArgumentsEndWithTheirCommand) {
    PathScanner scanner("M1L2");
    char letter = 0;
    std::string_view argument;
    ASSERT_TRUE(scanner.NextCommand(letter));
    EXPECT_TRUE(scanner.NextArgument(argument));
    EXPECT_FALSE(scanner.NextArgument(argument));
    EXPECT_FALSE(scanner.NextArgument(argument));
}

}  // namespace
