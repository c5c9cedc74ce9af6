// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/visibility.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"

namespace {

struct VisibilityCase {
    const char* name;
    const char* attributes;
    int before, after;
};
void PrintTo(const VisibilityCase& row, std::ostream* out) { *out << row.attributes; }

class VisibilityTest : public testing::TestWithParam<VisibilityCase> {};
TEST_P(VisibilityTest, RewritesTheDrawStyle) {
    const std::string text = std::string("<r ") + GetParam().attributes + "/>";
    PageState dom(10.0, 10.0), light(10.0, 10.0);
    dom.drawStyle = light.drawStyle = GetParam().before;
    ApplyDisplayVisibility(dom, ParsedElement<DomElementAccess>(text).Get());
    ApplyDisplayVisibility(light, ParsedElement<LightElementAccess>(text).Get());
    EXPECT_EQ(dom.drawStyle, GetParam().after);
    EXPECT_EQ(light.drawStyle, GetParam().after);
}
INSTANTIATE_TEST_SUITE_P(Visibility, VisibilityTest,
                         testing::Values(VisibilityCase{"Nothing", "", 2, 2},
                                         VisibilityCase{"DisplayNone", "display='none'", 3, 0},
                                         VisibilityCase{"DisplayNoneIsExact", "display='None'", 3, 3},
                                         VisibilityCase{"DisplayInline", "display='inline'", 0, 0},
                                         VisibilityCase{"Visible", "visibility='visible'", 1, 3},
                                         VisibilityCase{"Hidden", "visibility='hidden'", 3, 0},
                                         VisibilityCase{"Collapse", "visibility='collapse'", 3, 0},
                                         VisibilityCase{"Inherit", "visibility='inherit'", 1, 1},
                                         VisibilityCase{"VisibleIsExact", "visibility='Visible'", 1, 1},
                                         VisibilityCase{"Empty", "display='' visibility=''", 4, 4},
                                         VisibilityCase{"HiddenOfUndecided", "visibility='hidden'", 4, 0},
                                         VisibilityCase{"VisibleOfNothing", "visibility='visible'", 0, 3},
                                         VisibilityCase{"BlanksAreNotTrimmed", "display=' none'", 2, 2},
                                         VisibilityCase{"InStyleItIsNothing", "style='display:none'", 2, 2},
                                         VisibilityCase{"VisibilityComesAfterDisplay",
                                                        "display='none' visibility='visible'", 1, 3}),
                         kNameOfRow);

}  // namespace
