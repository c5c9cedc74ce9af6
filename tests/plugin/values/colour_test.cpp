#include "plugin/values/colour.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtImageElt.h"
#include "plugin/structure/statuses.h"
#include "plugin/values/colour_keywords.h"
#include "tests/plugin/values/page_state.h"

namespace {

constexpr long kNone = -1;

// The colour as 0xRRGGBB, kNone when the text is none.
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
        ColourCase{"RgbAlone", "rgb", kNone}),
    [](const auto& row) { return std::string(row.param.name); });

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

TEST(ColourKeywordsTest, BothSpellingsOfGrey) {
    for (const char* pair :
         {"gray", "darkgray", "dimgray", "lightgray", "slategray", "darkslategray", "lightslategray"}) {
        const std::string american = pair;
        std::string british = american;
        british[british.find("gray") + 2] = 'e';
        RgbColour a, b;
        EXPECT_TRUE(FindColourKeyword(american, a));
        EXPECT_TRUE(FindColourKeyword(british, b));
        EXPECT_EQ(a.red * 65536 + a.green * 256 + a.blue, b.red * 65536 + b.green * 256 + b.blue) << american;
    }
}

TEST(ColourKeywordsTest, EndsOfTheTableAndLongNames) {
    RgbColour colour;
    EXPECT_TRUE(FindColourKeyword("aliceblue", colour));
    EXPECT_EQ(colour.red, 240);
    EXPECT_TRUE(FindColourKeyword("yellowgreen", colour));
    EXPECT_EQ(colour.red, 154);
    EXPECT_TRUE(FindColourKeyword("LightGoldenrodYellow", colour));
    EXPECT_EQ(colour.blue, 210);
    EXPECT_FALSE(FindColourKeyword("lightgoldenrodyellowx", colour));
    EXPECT_FALSE(FindColourKeyword("", colour));
}

}  // namespace
