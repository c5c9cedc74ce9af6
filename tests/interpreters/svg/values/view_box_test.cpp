// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/view_box.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtViewBox.h"
#include "tests/support/named_rows.h"

namespace {

struct ViewBoxCase {
    const char* name;
    const char* text;
    int status;
    ORVPrtViewBox expected;
};
void PrintTo(const ViewBoxCase& row, std::ostream* out) { *out << row.text; }

class ReadViewBoxTest : public testing::TestWithParam<ViewBoxCase> {};
TEST_P(ReadViewBoxTest, WritesWhatItCanRead) {
    ORVPrtViewBox box{-1.0, -2.0, -3.0, -4.0};
    EXPECT_EQ(ReadViewBox(GetParam().text, box), GetParam().status);
    EXPECT_EQ(box, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(
    ViewBox, ReadViewBoxTest,
    testing::Values(ViewBoxCase{"FourNumbers", "10 20 100 50", kRead, {10.0, 20.0, 100.0, 50.0}},
                    ViewBoxCase{"ManyBlanks", "  1   2  3   4  ", kRead, {1.0, 2.0, 3.0, 4.0}},
                    ViewBoxCase{"CommasDoNotSeparate", "0,0,100,100", kRead, {-1.0, -2.0, -3.0, 0.0}},
                    ViewBoxCase{"ThreeNumbers", "1 2 3", kRead, {1.0, 2.0, -3.0, 3.0}},
                    ViewBoxCase{"ThreeAndABlank", "1 2 3 ", kRead, {1.0, 2.0, 3.0, -4.0}},
                    ViewBoxCase{"OneNumber", "7", kRead, {-1.0, -2.0, -3.0, 7.0}},
                    ViewBoxCase{"UnreadableTakesItsPlace", "1 x 3 4", kRead, {1.0, -2.0, 3.0, 4.0}},
                    ViewBoxCase{"FifthIsIgnored", "1 2 3 4 5", kRead, {1.0, 2.0, 3.0, 4.0}},
                    ViewBoxCase{"UnitsAreIgnored", "1mm 2% 3px 4in", kRead, {1.0, 2.0, 3.0, 4.0}},
                    ViewBoxCase{"TabDoesNotSeparate", "1\t2 3 4 5", kRead, {1.0, 3.0, 4.0, 5.0}},
                    ViewBoxCase{"UnreadableLast", "1 2 3 x", kRead, {1.0, 2.0, 3.0, -4.0}},
                    ViewBoxCase{"CommaAndBlank", "1, 2, 3, 4", kRead, {1.0, 2.0, 3.0, 4.0}},
                    ViewBoxCase{"TwoNumbers", "1 2", kRead, {1.0, -2.0, -3.0, 2.0}},
                    ViewBoxCase{"Negative", "-1 -2.5 -3e1 -.5", kRead, {-1.0, -2.5, -30.0, -0.5}},
                    ViewBoxCase{"Blank", " ", kRead, {-1.0, -2.0, -3.0, -4.0}},
                    ViewBoxCase{"Empty", "", kEmpty, {-1.0, -2.0, -3.0, -4.0}}),
    kNameOfRow);

}  // namespace
