// SPDX-License-Identifier: Apache-2.0
#include "library/print/page_selection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"

namespace {

using Pages = std::vector<unsigned int>;

struct SelectionCase {
    const char* name;
    const char* text;
    Pages ofFour;    ///< from an input of four pages
    Pages ofFourth;  ///< from a separate input that is the fourth page
    unsigned int greatest;
    bool isSingle;
};
class PageSelectionTest : public testing::TestWithParam<SelectionCase> {};

TEST_P(PageSelectionTest, SelectsPages) {
    PageSelection selection;
    std::string error;
    ASSERT_TRUE(selection.Parse(GetParam().text, error)) << error;
    EXPECT_EQ(selection.Select(0, 4), GetParam().ofFour);
    EXPECT_EQ(selection.Select(3, 1), GetParam().ofFourth);
    EXPECT_EQ(selection.GetGreatest(), GetParam().greatest);
    EXPECT_EQ(selection.IsSingle(), GetParam().isSingle);
    EXPECT_FALSE(selection.IsAll());
}

INSTANTIATE_TEST_SUITE_P(Lists, PageSelectionTest,
                         testing::Values(SelectionCase{"One", "2", {2}, {}, 2, true},
                                         SelectionCase{"RangeOfOne", "4-4", {4}, {1}, 4, true},
                                         SelectionCase{"Range", "2-3", {2, 3}, {}, 3, false},
                                         SelectionCase{
                                             "InTheOrderGiven", "4,1-2,1", {4, 1, 2, 1}, {1}, 4, false},
                                         SelectionCase{"Open", "2-", {2, 3, 4}, {1}, 2, false},
                                         SelectionCase{"OpenFromTheLast", "4-", {4}, {1}, 4, false},
                                         SelectionCase{"OpenBehindTheLast", "5-", {}, {}, 5, false},
                                         SelectionCase{"OpenAmongOthers", "1,3-", {1, 3, 4}, {1}, 3, false},
                                         SelectionCase{"OpenThenMore", "3-,1", {3, 4, 1}, {1}, 3, false}),
                         kNameOfRow);

TEST(PageSelectionTest, WithoutAListAllAreWanted) {
    const PageSelection selection;
    EXPECT_TRUE(selection.IsAll());
    EXPECT_FALSE(selection.IsSingle());
    EXPECT_EQ(selection.Select(7, 3), (Pages{1, 2, 3}));
    EXPECT_EQ(selection.GetGreatest(), 0U);
}

TEST(PageSelectionTest, OtherTextsAreNone) {
    for (const char* text :
         {"", "0", "-", "-2", "2-1", "a", "1,", ",1", "1-2-3", "0-", "1 ", "99999999999"}) {
        PageSelection selection;
        std::string error;
        EXPECT_FALSE(selection.Parse(text, error)) << text;
        EXPECT_FALSE(error.empty()) << text;
    }
}

class PageSelectionToolTest : public ToolTest {};

TEST_F(PageSelectionToolTest, AnOpenRangeReachesTheLastPageOfTheLastInput) {
    const auto page = [](int width) { return "<svg width='" + std::to_string(width) + "' height='9'/>"; };
    WriteFile("a.svg", "<svg>" + page(10) + page(20) + page(30) + "</svg>");
    WriteFile("b.svg", "<svg>" + page(40) + page(50) + "</svg>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--pages", "2-"}).exitCode, 0);
    EXPECT_EQ(Files(), (std::vector<std::string>{"a-1.png", "a-2.png", "a.svg", "b.svg"}));
    EXPECT_EQ(Run({"a.svg", "b.svg", "-o", "b.png", "--pages", "3-"}).exitCode, 0);
    EXPECT_TRUE(Exists("b-3.png"));
    EXPECT_FALSE(Exists("b-4.png"));
    EXPECT_EQ(Run({"a.svg", "-o", "c.png", "--pages", "4-"}).exitCode, 6);
    EXPECT_EQ(Run({"a.svg", "b.svg", "-o", "c.png", "--pages", "6-"}).exitCode, 6);
}

}  // namespace
