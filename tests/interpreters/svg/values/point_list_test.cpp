// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/point_list.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"

namespace {

struct NumbersCase {
    const char* name;
    const char* text;
    std::vector<double> expected;  // on a page of 200 x 100, y not mirrored
};
void PrintTo(const NumbersCase& row, std::ostream* out) { *out << row.text; }

class ReadCoordinateNumbersTest : public testing::TestWithParam<NumbersCase> {};
TEST_P(ReadCoordinateNumbersTest, GivesTheNumbers) {
    std::vector<double> numbers{99.0};
    ReadCoordinateNumbers(PageState(200.0, 100.0, 0), GetParam().text, numbers);
    EXPECT_EQ(numbers, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Numbers, ReadCoordinateNumbersTest,
                         testing::Values(NumbersCase{"Commas", "10,20 30,40", {10.0, 20.0, 30.0, 40.0}},
                                         NumbersCase{"OddCount", "10 20 30", {10.0, 20.0, 30.0}},
                                         NumbersCase{"ExtraBlanks", "  10   20  ", {10.0, 20.0}},
                                         NumbersCase{"Units", "1cm 1cm", {10.0 * 3.543307, 10.0 * 3.543307}},
                                         NumbersCase{"PercentOfEachSide", "50% 50%", {100.0, 50.0}},
                                         NumbersCase{"UnreadableXMovesTheRestUp", "x 1 2 3", {1.0, 2.0, 3.0}},
                                         NumbersCase{"UnreadableYMovesTheRestUp", "1 y 2 3", {1.0, 2.0, 3.0}},
                                         NumbersCase{"LastTokenIsAYWhereverItStands", "50%", {50.0}},
                                         NumbersCase{"XWithABlankBehindIsAnX", "50% ", {100.0}},
                                         NumbersCase{"MinusDoesNotSeparate", "1-2 3", {1.0, 3.0}},
                                         NumbersCase{"CommasInARow", ",,1,,2,,", {1.0, 2.0}},
                                         NumbersCase{"TabDoesNotSeparate", "1\t2 3 4", {1.0, 3.0, 4.0}},
                                         NumbersCase{"FailedPercentIsReadAsALength",
                                                     "p%t72 1",
                                                     {72.0 / 72.0 * 25.4 * 3.543307, 1.0}},
                                         NumbersCase{"EveryPercentGoes", "%5%0 5%0%", {100.0, 50.0}},
                                         NumbersCase{"OtherSeparatorsEndTheNumber", "1;2 3", {1.0, 3.0}},
                                         NumbersCase{"OneNumber", "5", {5.0}},
                                         NumbersCase{"NothingReadable", "a b c", {}},
                                         NumbersCase{"Nothing", " , ", {}}, NumbersCase{"Empty", "", {}}),
                         kNameOfRow);

TEST(ReadCoordinateNumbersMirroredTest, MirrorsYOnly) {
    std::vector<double> numbers;
    ReadCoordinateNumbers(PageState(200.0, 100.0), "1cm 1cm 10 25% x y 7", numbers);
    EXPECT_EQ(numbers, (std::vector<double>{35.43307, 100.0 - 35.43307, 10.0, 75.0, 93.0}));
}

}  // namespace
