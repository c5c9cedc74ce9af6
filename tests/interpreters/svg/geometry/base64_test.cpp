// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/base64.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <ostream>
#include <string>

#include "tests/support/sample_images.h"
#include "tests/support/sketch_case.h"

namespace {

struct Base64Case {
    const char* name;
    const char* text;
    bool valid;
    const char* bytes;  // expected, for a valid text

    friend std::ostream& operator<<(std::ostream& out, const Base64Case& row) { return out << row.text; }
};

class Base64Test : public testing::TestWithParam<Base64Case> {};

TEST_P(Base64Test, GivesTheBytes) {
    std::string bytes = "old";
    ASSERT_EQ(DecodeBase64(GetParam().text, bytes), GetParam().valid);
    if (GetParam().valid) {
        EXPECT_EQ(bytes, GetParam().bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(Groups, Base64Test,
                         testing::Values(Base64Case{"Empty", "", true, ""},
                                         Base64Case{"OneGroup", "QUJD", true, "ABC"},
                                         Base64Case{"TwoGroups", "QUJDREVG", true, "ABCDEF"},
                                         Base64Case{"PlusAndSlash", "+/+/", true, "\xFB\xFF\xBF"},
                                         Base64Case{"ShortTextYieldsNothing", "QUJ", true, ""},
                                         Base64Case{"LastShortGroupYieldsNothing", "QUJDRE", true, "ABC"},
                                         Base64Case{"LastShortGroupIsNotLookedAt", "QUJD!?", true, "ABC"}),
                         kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Padding, Base64Test,
    testing::Values(Base64Case{"FirstPlaceEndsTheData", "QUJD====REVG", true, "ABC"},
                    Base64Case{"SecondPlaceYieldsNoByte", "QUJDR===REVG", true, "ABC"},
                    Base64Case{"ThirdPlaceYieldsOneByte", "QUJDRA==REVG", true, "ABCD"},
                    Base64Case{"ThirdPlaceWithoutAFourthPad", "QUJDRA=AREVG", true, "ABCD"},
                    Base64Case{"NothingIsLookedAtBehindTheEnd", "QUJDRA=!!!!!", true, "ABCD"},
                    Base64Case{"NothingIsLookedAtBehindAnEarlyEnd", "=!!!", true, ""},
                    Base64Case{"NothingIsLookedAtBehindASecondPlaceEnd", "Q=!!", true, ""}),
    kNameOfRow);

TEST(Base64PaddingTest, FourthPlaceCountsAsZeroBitsAndGoesOn) {
    std::string bytes;
    ASSERT_TRUE(DecodeBase64("QUI=REVG", bytes));
    EXPECT_EQ(bytes, std::string("AB\0DEF", 6));
}

INSTANTIATE_TEST_SUITE_P(Characters, Base64Test,
                         testing::Values(Base64Case{"BlanksCountNowhere", " Q U\tJ\nD\r", true, "ABC"},
                                         Base64Case{"FormFeedIsInvalid", "QU\fJD", false, ""},
                                         Base64Case{"VerticalTabIsInvalid", "QU\vJD", false, ""},
                                         Base64Case{"MinusIsInvalid", "QUJ-", false, ""},
                                         Base64Case{"UnderscoreIsInvalid", "QUJ_", false, ""},
                                         Base64Case{"InvalidInTheFirstPlace", "!UJD", false, ""},
                                         Base64Case{"InvalidInTheSecondPlace", "Q!JD", false, ""},
                                         Base64Case{"InvalidInTheThirdPlace", "QU!D", false, ""},
                                         Base64Case{"InvalidInTheFourthPlace", "QUJ!", false, ""},
                                         Base64Case{"InvalidInALaterGroup", "QUJD!EVG", false, ""},
                                         Base64Case{"InvalidBeforeAPad", "Q!==", false, ""},
                                         Base64Case{"BytesOver127", "QUJ\xC3", false, ""}),
                         kNameOfRow);

RC_GTEST_PROP(Base64Test, ReadsWhatWasWritten, (const std::string& bytes)) {
    std::string read;
    RC_ASSERT(DecodeBase64(ToBase64(bytes), read));
    // The last byte pair is followed by the zero byte of its padding.
    RC_ASSERT(read == (bytes.size() % 3 == 2 ? bytes + '\0' : bytes));
}

}  // namespace
