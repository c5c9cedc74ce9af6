// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/path_scanner.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <sstream>
#include <string>

#include "tests/support/sketch_case.h"

namespace {

// Every command letter, with each of its arguments in brackets.
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

// The pairs of the first command in batches of at most three, and what follows each batch.
std::string ScanPairs(std::string_view text) {
    std::string result;
    PathScanner scanner(text);
    char letter = 0;
    if (!scanner.NextCommand(letter)) return "nothing";
    std::array<ORVMathPoint2D, 3> pairs;
    for (;;) {
        std::size_t count = 0;
        const PathScanner::Behind behind = scanner.NextPlainPairs(letter, pairs.data(), pairs.size(), count);
        std::ostringstream batch;
        for (std::size_t i = 0; i < count; ++i) batch << "(" << pairs[i].x << " " << pairs[i].y << ")";
        result += batch.str();
        if (behind == PathScanner::Behind::kMore) {
            result += " more ";
            continue;
        }
        std::string_view argument;
        result += behind == PathScanner::Behind::kOther ? " other" : " none";
        while (scanner.NextArgument(argument)) result.append("[").append(argument).append("]");
        if (scanner.NextCommand(letter)) result.append(" ").append(1, letter);
        return result;
    }
}

class PathPairsTest : public testing::TestWithParam<ScanCase> {};

TEST_P(PathPairsTest, AreTakenInBatches) { EXPECT_EQ(ScanPairs(GetParam().text), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Pairs, PathPairsTest,
    testing::Values(ScanCase{"One", "L1 2", "(1 2) none"}, ScanCase{"None", "L", " none"},
                    ScanCase{"AsManyAsThereIsRoomFor", "L1 2 3 4 5 6", "(1 2)(3 4)(5 6) more  none"},
                    ScanCase{"OneMore", "L1 2 3 4 5 6 7 8", "(1 2)(3 4)(5 6) more (7 8) none"},
                    ScanCase{"SameLetterGoesOn", "L1 2L3 4 , L5 6", "(1 2)(3 4)(5 6) more  none"},
                    ScanCase{"SameLetterWithoutPairs", "L1 2LLZ", "(1 2) none Z"},
                    ScanCase{"OtherCaseDoesNot", "L1 2l3 4", "(1 2) none l"},
                    ScanCase{"OtherLetterDoesNot", "L1 2M3 4", "(1 2) none M"},
                    ScanCase{"SemicolonDoesNot", "L1 2;L3 4", "(1 2) none L"},
                    ScanCase{"OddNumberIsLeft", "L1 2 3L4 5", "(1 2) other[3] L"},
                    ScanCase{"OtherNumbersAreLeft", "L1 2 3 4in 5", "(1 2) other[3][4in][5]"},
                    ScanCase{"OtherNumbersOfTheNext", "L1 2L50% 4", "(1 2) other[50%][4]"}),
    kNameOfRow);

}  // namespace
