// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/marker_properties.h"

#include <gtest/gtest.h>

#include <ostream>

#include "interpreters/svg/state/SvgDrawState.h"
#include "tests/support/named_rows.h"

namespace {

struct ReferenceCase {
    const char* name;
    const char* value;
    const char* expected;  // "old" if unchanged

    friend std::ostream& operator<<(std::ostream& out, const ReferenceCase& row) { return out << row.value; }
};

class MarkerReferenceTest : public testing::TestWithParam<ReferenceCase> {};

TEST_P(MarkerReferenceTest, IsWhatTheValueNames) {
    SvgDrawState state;
    state.markers.Edit() = {"old", "old", "old"};
    ApplyMarkerReference(state, MarkerPlace::kAll, GetParam().value);
    EXPECT_EQ(state.markers.Get().start.GetView(), GetParam().expected);
    EXPECT_EQ(state.markers.Get().mid.GetView(), GetParam().expected);
    EXPECT_EQ(state.markers.Get().end.GetView(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Values, MarkerReferenceTest,
                         testing::Values(ReferenceCase{"Reference", "url(#arrow)", "arrow"},
                                         ReferenceCase{"Empty", "", "old"},
                                         ReferenceCase{"NoneWithItsBlank", "none ", ""},
                                         ReferenceCase{"NoneWithoutRegardToCase", "NoNe ", ""},
                                         ReferenceCase{"PlainNoneIsAnIdentifier", "none", "none"},
                                         ReferenceCase{"NoneWithTwoBlanks", "none  ", "none  "},
                                         ReferenceCase{"Inherit", "inherit", "old"},
                                         ReferenceCase{"InheritWithoutRegardToCase", "INHERIT", "old"},
                                         ReferenceCase{"InheritWithABlank", "inherit ", "inherit "},
                                         ReferenceCase{"Bare", "arrow", "arrow"},
                                         ReferenceCase{"OnlyTheFirstPrefixGoes", "url(#url(#a))", "url(#a)"},
                                         ReferenceCase{"PrefixInTheMiddle", "xurl(#a)y)", "xay)"},
                                         ReferenceCase{"OnlyTheClosingBracket", "a)b)", "ab)"},
                                         ReferenceCase{"NothingLeft", "url(#)", ""},
                                         ReferenceCase{"PrefixInCapitalsStays", "URL(#a)", "URL(#a"},
                                         ReferenceCase{"PrefixAfterTheBracket", ")url(#a", "a"}),
                         kNameOfRow);

TEST(MarkerReferenceTest, EachPlaceHasItsOwn) {
    SvgDrawState state;
    ApplyMarkerReference(state, MarkerPlace::kStart, "url(#s)");
    ApplyMarkerReference(state, MarkerPlace::kMid, "url(#m)");
    ApplyMarkerReference(state, MarkerPlace::kEnd, "url(#e)");
    EXPECT_EQ(state.markers.Get(), (SvgMarkerReferences{"s", "m", "e"}));
    ApplyMarkerReference(state, MarkerPlace::kMid, "none ");
    EXPECT_EQ(state.markers.Get(), (SvgMarkerReferences{"s", "", "e"}));
}

}  // namespace
