// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/interpreters/svg2/text/laid_out.h"

namespace {

using svg2_test::GlyphsOf;
using svg2_test::IsEvenlySpaced;
using svg2_test::LengthOf;

constexpr char kArabic[] = "&#x645;&#x631;&#x62d;&#x628;&#x627;";

TEST(TextRunsTest, ArabicLettersJoinAcrossSpansAndPlaces) {
    const auto joined = GlyphsOf(std::string("<text>") + kArabic + "</text>");
    const auto spans =
        GlyphsOf("<text>&#x645;&#x631;<tspan fill='red'>&#x62d;</tspan><tspan>&#x628;&#x627;</tspan></text>");
    const auto places = GlyphsOf(std::string("<text x='1 20 40 60 80'>") + kArabic + "</text>");
    EXPECT_EQ(std::multiset<unsigned>(joined.begin(), joined.end()),
              std::multiset<unsigned>(spans.begin(), spans.end()));
    EXPECT_EQ(std::multiset<unsigned>(joined.begin(), joined.end()),
              std::multiset<unsigned>(places.begin(), places.end()));
    const auto apart = GlyphsOf("<text>&#x645; &#x631; &#x62d; &#x628; &#x627;</text>");
    EXPECT_NE(joined.size(), apart.size());
}

TEST(TextRunsTest, SpansOfOneFontAreKernedAndOthersAreNot) {
    const double plain = LengthOf("<text>AVAV</text>");
    EXPECT_DOUBLE_EQ(LengthOf("<text>A<tspan fill='red'>V</tspan>AV</text>"), plain);
    EXPECT_GT(LengthOf("<text>A<tspan font-size='10.001'>V</tspan>AV</text>"), plain + 0.5);
    EXPECT_GT(LengthOf("<text style='font-kerning:none'>AVAV</text>"), plain + 0.5);
    EXPECT_GT(LengthOf("<text kerning='0'>AVAV</text>"), plain + 0.5);
    EXPECT_GT(LengthOf("<text style='font-feature-settings:\"kern\" 0'>AVAV</text>"), plain + 0.5);
    EXPECT_GT(
        LengthOf("<text style='font-feature-settings:&apos;kern&apos; off, &apos;liga&apos;'>AVAV</text>"),
        plain + 0.5);
}

TEST(TextRunsTest, LigaturesEndWherePlacesAndSpacingsAre) {
    EXPECT_EQ(GlyphsOf("<text>ffi</text>").size(), 1U);
    EXPECT_EQ(GlyphsOf("<text>f<tspan fill='red'>fi</tspan></text>").size(), 1U);
    EXPECT_EQ(GlyphsOf("<text dx='0 2 2'>ffi</text>").size(), 1U);
    EXPECT_EQ(GlyphsOf("<text textLength='50'>ffi</text>").size(), 1U);
    EXPECT_EQ(GlyphsOf("<text x='1 20 40'>ffi</text>").size(), 3U);
    EXPECT_EQ(GlyphsOf("<text letter-spacing='1'>ffi</text>").size(), 3U);
    EXPECT_EQ(GlyphsOf("<text style='font-variant-ligatures:none'>ffi</text>").size(), 3U);
    EXPECT_EQ(GlyphsOf("<text style='font-variant:no-common-ligatures'>ffi</text>").size(), 3U);
    EXPECT_EQ(GlyphsOf("<text style='font-feature-settings:\"liga\" 0'>ffi</text>").size(), 3U);
}

TEST(TextRunsTest, JoinedScriptsAreNotSetApart) {
    const std::string text(kArabic);
    EXPECT_DOUBLE_EQ(LengthOf("<text letter-spacing='9'>" + text + "</text>"),
                     LengthOf("<text>" + text + "</text>"));
    EXPECT_DOUBLE_EQ(LengthOf("<text letter-spacing='9'>abc</text>"), LengthOf("<text>abc</text>") + 18.0);
}

TEST(TextRunsTest, SmallCapitalsAreMadeOfCapitalsWhereTheFontHasNone) {
    EXPECT_EQ(GlyphsOf("<text font-variant='small-caps'>aB</text>"), GlyphsOf("<text>AB</text>"));
    EXPECT_NEAR(LengthOf("<text font-variant='small-caps'>mm</text>"), LengthOf("<text>MM</text>") * 0.8,
                1e-9);
}

TEST(TextRunsTest, LetterCaseIsThatOfTheSpan) {
    const struct {
        const char *text, *same;
    } kRows[] = {
        {"<text style='text-transform:uppercase'>aß</text>", "<text>ASS</text>"},
        {"<text style='text-transform:uppercase' xml:lang='tr'>i<tspan lang='en'>i</tspan></text>",
         "<text>\u0130I</text>"},
        {"<text style='text-transform:lowercase'>AB<tspan style='text-transform:none'>C</tspan>D</text>",
         "<text>abCd</text>"},
        {"<text style='text-transform:capitalize'>ab<tspan>cd ef</tspan>gh <tspan>ij</tspan></text>",
         "<text>Abcd Efgh Ij</text>"},
        {"<text>a<tspan style='text-transform:capitalize'>b  c</tspan></text>", "<text>ab C</text>"},
        {"<text style='text-transform:uppercase' font-variant='small-caps'>ab</text>", "<text>AB</text>"},
        {"<text style='text-transform:uppercase'><tref href='#a'/></text><text id='a'>ab</text>",
         "<text>AB</text>"},
    };
    for (const auto& row : kRows) EXPECT_EQ(GlyphsOf(row.text), GlyphsOf(row.same)) << row.text;
}

TEST(TextRunsTest, OneLongTextIsAsLongAsItsParts) {
    std::string words;
    for (int i = 0; i < 30'000; ++i) words += "Two words ";
    const double one = LengthOf("<text xml:space='preserve'>Two words </text>");
    EXPECT_NEAR(LengthOf("<text xml:space='preserve'>" + words + "</text>"), 30'000 * one, 1.0);
    EXPECT_NEAR(LengthOf("<text xml:space='preserve' dy='0 1'>" + words + "</text>"), 30'000 * one, 1.0);
}

TEST(TextRunsTest, LayoutsSayWhetherTheirSpacingIsEven) {
    EXPECT_TRUE(IsEvenlySpaced("<text x='1 2 3'>a b c</text>"));
    EXPECT_TRUE(IsEvenlySpaced("<text textLength='90' lengthAdjust='spacingAndGlyphs'>a b c</text>"));
    EXPECT_FALSE(IsEvenlySpaced("<text word-spacing='5'>a b c</text>"));
    EXPECT_FALSE(IsEvenlySpaced("<text letter-spacing='5'>ab<tspan fill='red'>c</tspan></text>"));
    EXPECT_FALSE(IsEvenlySpaced("<text textLength='90'>abc</text>"));
}

}  // namespace
