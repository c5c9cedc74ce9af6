// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/colour.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtImageElt.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"

namespace {

constexpr long kNone = -1;

// The colour as 0xRRGGBB; kNone if the text is not a colour.
long Read(std::string_view text) {
    PageState state(10.0, 10.0);
    unsigned int index = 0;
    if (ParseColour(state, text, index) != kRead) return kNone;
    const ORVPrtColourTable::Colour colour = state.page->GetColourTable()->GetColour(index);
    return colour.red * 0x10000L + colour.green * 0x100L + colour.blue;
}

struct ColourCase {
    const char* name;
    const char* text;
    long expected;
};
void PrintTo(const ColourCase& row, std::ostream* out) { *out << row.text; }

class ParseColourTest : public testing::TestWithParam<ColourCase> {};
TEST_P(ParseColourTest, GivesTheColour) { EXPECT_EQ(Read(GetParam().text), GetParam().expected); }
INSTANTIATE_TEST_SUITE_P(
    Colour, ParseColourTest,
    testing::Values(
        ColourCase{"SixDigits", "#12abEF", 0x12ABEF}, ColourCase{"ThreeDigits", "#f0c", 0xFF00CC},
        ColourCase{"UpperCase", "#F0C", 0xFF00CC},
        ColourCase{"BlanksCountNowhere", " # f f 0 0 0 0 ", 0xFF0000},
        ColourCase{"FiveDigits", "#ff000", kNone}, ColourCase{"SevenDigits", "#ff00000", kNone},
        ColourCase{"FourDigits", "#ff00", kNone}, ColourCase{"NoDigit", "#ff00g0", kNone},
        ColourCase{"HashAlone", "#", kNone}, ColourCase{"HashInside", "f#00", kNone},
        ColourCase{"SignIsNoDigit", "#+10000", kNone}, ColourCase{"Integers", "rgb(255,128,1)", 0xFF8001},
        ColourCase{"IntegersWithBlanks", "rgb( 255, 128 , 1 )", 0xFF8001},
        ColourCase{"WithoutRgb", "(1,2,3)", 0x010203}, ColourCase{"ValuesWrap", "rgb(256,257,511)", 0x0001FF},
        ColourCase{"NegativeWraps", "rgb(-1,0,0)", 0xFF0000},
        ColourCase{"FractionIsCut", "rgb(1.9,2,3)", 0x010203},
        ColourCase{"ThirdEndsAtTheBracket", "rgb(1,2,3,4)", 0x010203},
        ColourCase{"MissingBracket", "rgb(1,2,3", kNone}, ColourCase{"MissingComma", "rgb(1,2)", kNone},
        ColourCase{"NoInteger", "rgb(a,2,3)", kNone}, ColourCase{"UpperCaseRgb", "RGB(1,2,3)", kNone},
        ColourCase{"Percentages", "rgb(100%,50%,0%)", 0xFF7F00},
        ColourCase{"PercentWraps", "rgb(200%,0%,0%)", 0xFE0000},
        ColourCase{"PercentFractionIsCut", "rgb(12.5%,0%,0%)", 12 * 255 / 100 * 0x10000L},
        ColourCase{"AnyCharacterBehindPercent", "rgb(100%x100%y0%", 0xFFFF00},
        ColourCase{"SeveralBytesBehindPercent", "rgb(100%ü100%,0%)", 0xFFFF00},
        ColourCase{"PercentMissing", "rgb(100%,50%,0)", kNone},
        ColourCase{"NoPercentage", "rgb(x%,0%,0%)", kNone},
        ColourCase{"PercentFirstReadsIntegers", "rgb(%1,2,3)", kNone},
        ColourCase{"PercentProductWraps", "rgb(16843010%,0%,0%)",
                   ((16843010U * 255U / 100U) & 0xFFU) * 0x10000L},
        ColourCase{"Keyword", "red", 0xFF0000}, ColourCase{"KeywordInAnyCase", "DarkGrey", 0xA9A9A9},
        ColourCase{"KeywordWithBlanks", "dark grey", 0xA9A9A9},
        ColourCase{"KeywordBehindRgb", "rgbred", 0xFF0000}, ColourCase{"Black", "black", 0},
        ColourCase{"None", "none", kNone}, ColourCase{"Current", "currentColor", kNone},
        ColourCase{"Transparent", "transparent", kNone}, ColourCase{"LaterKeyword", "rebeccapurple", kNone},
        ColourCase{"Empty", "", kNone}, ColourCase{"Blank", "  ", kNone},
        ColourCase{"RgbAlone", "rgb", kNone}, ColourCase{"RgbTwice", "rgbrgb(1,2,3)", kNone},
        ColourCase{"BracketAlone", "(", kNone}, ColourCase{"RgbInside", "x rgb(1,2,3)", kNone},
        ColourCase{"TextBehindTheBracket", "rgb(1,2,3)x", 0x010203},
        ColourCase{"SignsAreRead", "rgb(+1,+2,+3)", 0x010203},
        ColourCase{"EmptyComponent", "rgb(,2,3)", kNone},
        ColourCase{"TabInFrontOfANumber", "rgb(\t1,2,3)", 0x010203},
        ColourCase{"TabIsNoBlank", "\tred", kNone}, ColourCase{"UnitsAreIgnored", "rgb(1px,2x,3y)", 0x010203},
        ColourCase{"PercentagesWithBlanks", " rgb( 100% , 50% , 0% ) ", 0xFF7F00},
        ColourCase{"PercentagesNeedNoBracketAtTheEnd", "rgb(100%,50%,0%", 0xFF7F00},
        ColourCase{"LatePercentMakesPercentages", "rgb(1,2,100%)", kNone},
        ColourCase{"PercentBehindTheBracketCounts", "rgb(1,2,3)%", kNone},
        ColourCase{"PercentIsTruncated", "rgb(1%,2%,99%)", 0x0205FC},
        ColourCase{"HexadecimalWithMultibyte",
                   "#\xC3\xBC"
                   "f",
                   kNone},
        ColourCase{"HexadecimalIsNotRgb", "#rgb(1,2,3)", kNone}),
    kNameOfRow);

TEST(ColourTableTest, StartsWithBlackAndHoldsEachColourOnce) {
    PageState state(10.0, 10.0);
    EXPECT_EQ(state.page->GetColourTable(), nullptr);
    const auto indexOf = [&](const char* text) {
        unsigned int index = 99;
        EXPECT_EQ(ParseColour(state, text, index), kRead) << text;
        return index;
    };
    EXPECT_EQ(indexOf("red"), 1U);
    EXPECT_EQ(indexOf("rgb(255,0,0)"), 1U);
    EXPECT_EQ(indexOf("#f00"), 1U);
    EXPECT_EQ(indexOf("black"), 0U);
    EXPECT_EQ(indexOf("blue"), 2U);
    EXPECT_EQ(indexOf("rgb(100%,0%,0%)"), 1U);
    EXPECT_EQ(state.page->GetColourTable()->GetColours().size(), 3U);
}

TEST(ColourTableTest, NoPageNoColour) {
    SvgDrawState state;
    unsigned int index = 0;
    EXPECT_EQ(ParseColour(state, "red", index), -1);
}

TEST(ColourTableTest, AFailedColourAddsNothing) {
    PageState state(10.0, 10.0);
    unsigned int index = 0;
    EXPECT_EQ(ParseColour(state, "rgb(1,2)", index), -1);
    EXPECT_EQ(state.page->GetColourTable()->GetColours().size(), 1U);
}

TEST(ColourTableTest, NothingToReadMakesNoTable) {
    PageState state(10.0, 10.0);
    unsigned int index = 0;
    EXPECT_EQ(ParseColour(state, "", index), -1);
    EXPECT_EQ(state.page->GetColourTable(), nullptr);
    EXPECT_EQ(ParseColour(state, " ", index), -1);
    EXPECT_NE(state.page->GetColourTable(), nullptr);
}

TEST(ColourTableTest, AnExistingTableIsUsedAsItIs) {
    PageState state(10.0, 10.0);
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    state.page->SetColourTable(table.get());
    unsigned int index = 99;
    EXPECT_EQ(ParseColour(state, "lime", index), kRead);
    EXPECT_EQ(index, 0U);
    EXPECT_EQ(state.page->GetColourTable(), table.get());
    EXPECT_EQ(table->GetColours().size(), 1U);
}

}  // namespace
