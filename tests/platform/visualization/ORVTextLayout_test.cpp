// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVTextLayout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "tests/support/test_texts.h"

namespace {

ORVTextStyle StyleOf(const char* family, double height = 10.0, int writingMode = 0) {
    ORVTextStyle style;
    style.font = FindFontForAttribute(family);
    style.height = height;
    style.writingMode = writingMode;
    return style;
}

ORVTextStyle Sans(int writingMode = 0) { return StyleOf("Liberation Sans", 10.0, writingMode); }

std::vector<ORVGlyph> GlyphsOf(const ORVTextLayout& layout) {
    std::vector<ORVGlyph> glyphs;
    for (const ORVGlyphRun& run : layout.runs)
        glyphs.insert(glyphs.end(), run.glyphs.begin(), run.glyphs.end());
    return glyphs;
}

/// Returns the text in visual order, cluster by cluster.
std::string Seen(std::string_view text, const ORVTextStyle& style) {
    std::string seen;
    for (const ORVGlyph& glyph : GlyphsOf(ORVLayoutText(text, style)))
        seen += text.substr(glyph.textOffset, glyph.textLength);
    return seen;
}

TEST(TextLayoutTest, LatinRunsFromTheOriginToTheAdvance) {
    const ORVTextLayout layout = ORVLayoutText("Hello", Sans());
    ASSERT_EQ(layout.runs.size(), 1u);
    const ORVGlyphRun& run = layout.runs[0];
    EXPECT_EQ(run.face, Sans().font->GetFace(25));
    EXPECT_EQ(run.size, 10.0);
    EXPECT_FALSE(run.rightToLeft || run.vertical || run.syntheticBold);
    ASSERT_EQ(run.glyphs.size(), 5u);
    double pen = 0.0;
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_NEAR(run.glyphs[i].x, pen, 1e-9);
        EXPECT_EQ(run.glyphs[i].y, 0.0);
        EXPECT_EQ(run.glyphs[i].textOffset, i);
        EXPECT_EQ(run.glyphs[i].textLength, 1u);
        pen += run.glyphs[i].advance;
    }
    EXPECT_NEAR(layout.advance, pen, 1e-9);
    EXPECT_NEAR(layout.advance, 22.78, 0.01);  // 1479 + 1139 + 455 + 455 + 1139 of 2048 units
    EXPECT_NEAR(layout.ascent, 9.05, 0.01);
    EXPECT_NEAR(layout.descent, 2.12, 0.01);
}

TEST(TextLayoutTest, SizesAreProportional) {
    const double small = ORVLayoutText("Proportional", Sans()).advance;
    EXPECT_NEAR(ORVLayoutText("Proportional", StyleOf("Liberation Sans", 1000.0)).advance, small * 100.0,
                1e-6);
}

TEST(TextLayoutTest, NoFontMeansSansSerif) {
    ORVTextStyle style;
    const ORVTextLayout layout = ORVLayoutText("abc", style);
    ASSERT_FALSE(layout.runs.empty());
    EXPECT_EQ(layout.runs[0].face, ORVFont::sGetFont("arial.ttf")->GetFace(25));
}

TEST(TextLayoutTest, EmptyTextHasOnlyTheFontsHeight) {
    const ORVTextLayout layout = ORVLayoutText("", Sans());
    EXPECT_TRUE(layout.runs.empty());
    EXPECT_EQ(layout.advance, 0.0);
    EXPECT_GT(layout.ascent, 0.0);
}

TEST(TextLayoutTest, HebrewIsSeenFromRightToLeft) {
    const ORVTextLayout layout = ORVLayoutText("\u05D0\u05D1\u05D2", Sans());
    ASSERT_EQ(layout.runs.size(), 1u);
    EXPECT_TRUE(layout.runs[0].rightToLeft);
    ASSERT_EQ(layout.runs[0].glyphs.size(), 3u);
    EXPECT_EQ(layout.runs[0].glyphs[0].textOffset, 4u);
    EXPECT_EQ(layout.runs[0].glyphs[0].x, 0.0);
    EXPECT_EQ(layout.runs[0].glyphs[2].textOffset, 0u);
    EXPECT_LT(layout.runs[0].glyphs[1].x, layout.runs[0].glyphs[2].x);
}

TEST(TextLayoutTest, BaseDirectionOrdersMixedText) {
    const std::string mixed = "ab \u05D0\u05D1 cd";
    EXPECT_EQ(Seen(mixed, Sans(0)), "ab \u05D1\u05D0 cd");
    EXPECT_EQ(Seen(mixed, Sans(1)), "cd \u05D1\u05D0 ab");
    EXPECT_EQ(Seen("ab!", Sans(0)), "ab!");
    EXPECT_EQ(Seen("ab!", Sans(1)), "!ab");
    EXPECT_EQ(Seen("\u05D0 12", Sans(0)), "12 \u05D0");
    EXPECT_EQ(Seen("\u05D0 ", Sans(0)), "\u05D0 ");  // a trailing space has the base direction
    EXPECT_EQ(Seen("ab ", Sans(1)), " ab");
}

TEST(TextLayoutTest, BaseDirectionDoesNotChangeTheAdvance) {
    const std::string mixed = "ab \u05D0\u05D1, cd!";
    EXPECT_NEAR(ORVLayoutText(mixed, Sans(0)).advance, ORVLayoutText(mixed, Sans(1)).advance, 1e-9);
}

TEST(TextLayoutTest, ArabicLettersJoin) {
    const ORVTextStyle style = StyleOf("DejaVu Sans");
    const auto alone = GlyphsOf(ORVLayoutText("\u0628", style)),
               joined = GlyphsOf(ORVLayoutText("\u0628\u0628\u0628", style));
    ASSERT_EQ(alone.size(), 1u);
    ASSERT_EQ(joined.size(), 3u);
    EXPECT_NE(joined[0].index, joined[1].index);
    EXPECT_NE(joined[1].index, joined[2].index);
    EXPECT_NE(joined[1].index, alone[0].index);
}

TEST(TextLayoutTest, MissingCharactersTakeAnotherFont) {
    ASSERT_EQ(Sans().font->GetFace(25)->GetGlyph(0x2603), 0u);
    const ORVTextLayout layout = ORVLayoutText("a\u2603b", Sans());
    ASSERT_EQ(layout.runs.size(), 3u);
    EXPECT_EQ(layout.runs[0].face, layout.runs[2].face);
    EXPECT_NE(layout.runs[1].face, layout.runs[0].face);
    ASSERT_EQ(layout.runs[1].glyphs.size(), 1u);
    EXPECT_EQ(layout.runs[1].glyphs[0].index, layout.runs[1].face->GetGlyph(0x2603));
    EXPECT_EQ(layout.runs[1].glyphs[0].textOffset, 1u);
    EXPECT_EQ(layout.runs[1].glyphs[0].textLength, 3u);
}

TEST(TextLayoutTest, CharactersOfNoFontKeepTheirPlace) {
    const ORVTextLayout layout = ORVLayoutText("a\U0010FFFD", Sans());
    const auto glyphs = GlyphsOf(layout);
    ASSERT_EQ(glyphs.size(), 2u);
    EXPECT_EQ(glyphs[1].index, 0u);
    EXPECT_GT(glyphs[1].advance, 0.0);
}

TEST(TextLayoutTest, AccentsStayWithTheirLetter) {
    const auto glyphs = GlyphsOf(ORVLayoutText("e\u0301x", Sans()));
    ASSERT_GE(glyphs.size(), 2u);
    EXPECT_EQ(glyphs.front().textOffset, 0u);
    EXPECT_EQ(glyphs.front().textLength, 3u);
    EXPECT_EQ(glyphs.back().textOffset, 3u);
}

TEST(TextLayoutTest, FollowUpGlyphsOfAClusterStandForNoText) {
    // No single glyph combines this letter with a mark above and a mark below.
    const ORVTextStyle style = StyleOf("DejaVu Sans");
    const auto glyphs = GlyphsOf(ORVLayoutText("x\u0323\u0307", style));
    ASSERT_GT(glyphs.size(), 1u);
    EXPECT_EQ(glyphs[0].textLength, 5u);
    for (std::size_t i = 1; i < glyphs.size(); ++i) {
        EXPECT_EQ(glyphs[i].textLength, 0u);
        EXPECT_EQ(glyphs[i].textOffset, 0u);
    }
}

TEST(TextLayoutTest, LigaturesStandForAllTheirLetters) {
    const ORVTextStyle style = StyleOf("DejaVu Sans");
    const auto glyphs = GlyphsOf(ORVLayoutText("fi", style));
    ASSERT_EQ(glyphs.size(), 1u);
    EXPECT_EQ(glyphs[0].textLength, 2u);
    ORVTextStyle spaced = style;
    spaced.extraSpacing = 1.0;
    EXPECT_EQ(GlyphsOf(ORVLayoutText("fi", spaced)).size(), 2u);
}

TEST(TextLayoutTest, ExtraSpacingStandsBetweenCharacters) {
    ORVTextStyle style = Sans();
    const double plain = ORVLayoutText("abc", style).advance;
    style.extraSpacing = 2.0;
    const ORVTextLayout spaced = ORVLayoutText("abc", style);
    EXPECT_NEAR(spaced.advance, plain + 4.0, 1e-9);
    const auto glyphs = GlyphsOf(spaced);
    EXPECT_NEAR(glyphs[1].x, glyphs[0].advance + 2.0, 1e-9);
    style.writingMode = 1;
    EXPECT_NEAR(ORVLayoutText("\u05D0\u05D1", style).advance,
                ORVLayoutText("\u05D0\u05D1", Sans(1)).advance + 2.0, 1e-9);
}

TEST(TextLayoutTest, ExtraSpacingKeepsMarksAtTheirLetter) {
    ORVTextStyle style = StyleOf("DejaVu Sans");
    const std::string text = "x\u0323\u0307y";
    const ORVTextLayout plain = ORVLayoutText(text, style);
    style.extraSpacing = 5.0;
    const ORVTextLayout spaced = ORVLayoutText(text, style);
    const auto before = GlyphsOf(plain), after = GlyphsOf(spaced);
    ASSERT_GT(after.size(), 2u);
    ASSERT_EQ(before.size(), after.size());
    // The letter and its marks stay together; only the next letter moves.
    for (std::size_t i = 0; i + 1 < after.size(); ++i) EXPECT_NEAR(after[i].x, before[i].x, 1e-9) << i;
    EXPECT_NEAR(after.back().x, before.back().x + 5.0, 1e-9);
    EXPECT_NEAR(spaced.advance, plain.advance + 5.0, 1e-9);
}

/// A letter with this number of accents, followed by another letter.
std::string Accented(std::size_t marks) {
    std::string text = "e";
    text += Repeat("\u0301", marks);
    return text + "x";
}

// Shaping takes time quadratic in the number of marks that are shaped at once.
TEST(TextLayoutTest, ThirtyMarksAreSetWithTheirLetterAndMoreBehindThem) {
    for (const auto& [marks, runs] :
         {std::pair{1u, 1u}, {30u, 1u}, {31u, 2u}, {60u, 2u}, {61u, 3u}, {80'000u, 2667u}})
        EXPECT_EQ(ORVLayoutText(Accented(marks), StyleOf("DejaVu Sans")).runs.size(), runs) << marks;
}

TEST(TextLayoutTest, ManyMarksTakeNoRoomAndNoSpacing) {
    for (const int mode : {0, 1}) {
        ORVTextStyle style = StyleOf("DejaVu Sans", 10.0, mode);
        style.extraSpacing = 3.0;
        const ORVTextLayout few = ORVLayoutText(Accented(30), style);
        const ORVTextLayout many = ORVLayoutText(Accented(100), style);
        EXPECT_NEAR(many.advance, few.advance, 1e-6) << mode;
        EXPECT_NEAR(ORVMeasureText(Accented(100), style).advance, many.advance, 1e-9) << mode;
        EXPECT_EQ(GlyphsOf(many).back().x, GlyphsOf(few).back().x) << mode;
    }
}

TEST(TextLayoutTest, ExpansionWidensGlyphsOnly) {
    ORVTextStyle style = Sans();
    const ORVTextLayout plain = ORVLayoutText("Wide", style);
    style.expansion = 2.0;
    const ORVTextLayout wide = ORVLayoutText("Wide", style);
    EXPECT_NEAR(wide.advance, plain.advance * 2.0, 1e-9);
    EXPECT_EQ(wide.ascent, plain.ascent);
    EXPECT_EQ(wide.runs[0].expansion, 2.0);
    EXPECT_EQ(wide.runs[0].size, plain.runs[0].size);
}

TEST(TextLayoutTest, WeightsTakeTheBoldFaceOrAskForThickening) {
    ORVTextStyle style = Sans();
    style.weight = 26;
    const ORVTextLayout bold = ORVLayoutText("b", style);
    EXPECT_EQ(bold.runs[0].face->GetWeight(), 700);
    EXPECT_FALSE(bold.runs[0].syntheticBold);

    // A font registered by the host has no family from which to take a bold face.
    static const ORVFont* const lone =
        ORVFont::sRegisterPlainFont("Lone.font", Sans().font->GetFace(25)->GetFilePath());
    style.font = lone;
    for (const int weight : {26, 27}) {
        style.weight = weight;
        EXPECT_TRUE(ORVLayoutText("b", style).runs[0].syntheticBold) << weight;
    }
    style.weight = 25;
    EXPECT_FALSE(ORVLayoutText("b", style).runs[0].syntheticBold);
}

TEST(TextLayoutTest, VerticalTextGoesDownCentred) {
    const ORVTextLayout layout = ORVLayoutText("HIH", Sans(2));
    const auto glyphs = GlyphsOf(layout);
    ASSERT_EQ(glyphs.size(), 3u);
    EXPECT_TRUE(layout.runs[0].vertical);
    const double widthOfH = ORVLayoutText("H", Sans()).advance, widthOfI = ORVLayoutText("I", Sans()).advance;
    EXPECT_NEAR(glyphs[0].x, -widthOfH / 2.0, 0.01);
    EXPECT_NEAR(glyphs[1].x, -widthOfI / 2.0, 0.01);
    EXPECT_LT(glyphs[0].y, 0.0);
    EXPECT_NEAR(glyphs[1].y - glyphs[0].y, -glyphs[0].advance, 1e-9);
    EXPECT_NEAR(layout.advance, glyphs[0].advance + glyphs[1].advance + glyphs[2].advance, 1e-9);
    EXPECT_GT(glyphs[2].y, -layout.advance);  // upright: the last baseline is above the end
}

TEST(TextLayoutTest, AbsurdSizesGiveAnEmptyLayout) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double height : {0.0, -1.0, std::nan(""), kInfinity, -kInfinity, 1e300}) {
        const ORVTextLayout layout = ORVLayoutText("abc", StyleOf("Liberation Sans", height));
        EXPECT_TRUE(layout.runs.empty()) << height;
        EXPECT_EQ(layout.advance, 0.0) << height;
        EXPECT_EQ(layout.ascent, 0.0) << height;
    }
    for (const double height : {1e-300, 1e29})
        EXPECT_TRUE(std::isfinite(ORVLayoutText("abc", StyleOf("Liberation Sans", height)).advance));

    const ORVTextLayout usual = ORVLayoutText("abc", Sans());
    for (const double odd : {std::nan(""), kInfinity, -kInfinity, 1e300}) {
        ORVTextStyle style = Sans();
        style.extraSpacing = odd;
        style.expansion = odd;
        EXPECT_EQ(ORVLayoutText("abc", style).advance, usual.advance) << odd;
    }
}

TEST(TextLayoutTest, BytesThatAreNotUtf8KeepTheirPlace) {
    const std::string text = "a\xFF\xC3(\xED\xA0\x80z";
    const auto glyphs = GlyphsOf(ORVLayoutText(text, Sans()));
    std::uint32_t covered = 0;
    for (const ORVGlyph& glyph : glyphs) covered += glyph.textLength;
    EXPECT_EQ(covered, text.size());
    EXPECT_EQ(glyphs.back().textOffset, text.size() - 1);
}

/// Returns a random text of letters of both directions, marks, digits, control and rare characters, and
/// invalid UTF-8.
std::string RandomText(std::mt19937& random) {
    constexpr const char* kPieces[] = {"a",          "B",      " ",
                                       "1",          "fi",     "\u05D0",
                                       "\u05D1",     "\u0628", "\u0644\u0627",
                                       "\u0301",     "\u0323", "(",
                                       ")",          "\u202E", "\u202C",
                                       "\u2067",     "\u2069", "\u200D",
                                       "\uFE0F",     "\u2603", "\u4E2D",
                                       "\U0001F600", "\xFF",   "\xE2\x82",
                                       "\u00A0",     "\u0661", "\u0915\u094D\u0937",
                                       "\u2029",     "\x01"};
    std::string text;
    for (std::size_t count = random() % 24; count > 0; --count)
        text += kPieces[random() % std::size(kPieces)];
    return text;
}

TEST(TextLayoutTest, EveryByteBelongsToOneCluster) {
    std::mt19937 random(20240517);
    for (int round = 0; round < 3000; ++round) {
        const std::string text = RandomText(random);
        ORVTextStyle style = StyleOf(round % 2 ? "Liberation Sans" : "DejaVu Sans");
        style.writingMode = round % 3;
        std::vector<int> covered(text.size());
        for (const ORVGlyph& glyph : GlyphsOf(ORVLayoutText(text, style))) {
            ASSERT_LE(std::size_t{glyph.textOffset} + glyph.textLength, text.size());
            for (std::size_t i = 0; i < glyph.textLength; ++i) ++covered[glyph.textOffset + i];
        }
        EXPECT_TRUE(std::all_of(covered.begin(), covered.end(), [](int times) { return times == 1; }))
            << round << ": " << text;
    }
}

TEST(TextLayoutTest, MeasuringGivesTheSameNumbers) {
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        const std::string text = RandomText(random);
        ORVTextStyle style = Sans(round % 3);
        style.extraSpacing = round % 4 == 0 ? 0.75 : 0.0;
        style.weight = 24 + round % 4;
        const ORVTextLayout layout = ORVLayoutText(text, style);
        const ORVTextExtent extent = ORVMeasureText(text, style);
        EXPECT_EQ(extent.advance, layout.advance);
        EXPECT_EQ(extent.ascent, layout.ascent);
        EXPECT_EQ(extent.descent, layout.descent);
        double pen = 0.0;
        for (const ORVGlyph& glyph : GlyphsOf(layout)) pen += glyph.advance;
        EXPECT_GE(layout.advance, pen - 1e-6);
        if (style.extraSpacing == 0.0) {
            EXPECT_NEAR(layout.advance, pen, 1e-6);
        }
    }
}

TEST(TextLayoutTest, ManyThreadsMayLayOutText) {
    const double expected = ORVMeasureText("ab \u05D0\u05D1 \u2603", Sans()).advance;
    std::vector<std::thread> threads;
    std::vector<double> advances(4);
    for (double& advance : advances)
        threads.emplace_back([&advance] {
            for (int i = 0; i < 200; ++i) advance = ORVLayoutText("ab \u05D0\u05D1 \u2603", Sans()).advance;
        });
    for (std::thread& thread : threads) thread.join();
    for (const double advance : advances) EXPECT_EQ(advance, expected);
}

// Type 1 fonts have no vertical metrics.
TEST(TextLayoutTest, PostScriptFontsRunDownByTheHeightOfALine) {
    constexpr const char* kFile = "/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.t1";
    const ORVFont* font = ORVFont::sRegisterPlainFont("Vertical.font", kFile);
    ASSERT_NE(font, nullptr);
    ORVTextStyle style;
    style.font = font;
    style.height = 10.0;
    style.writingMode = 2;
    const ORVTextLayout layout = ORVLayoutText("iW", style);
    const ORVFontFace& face = *font->GetFace(25);
    const double line = 10.0 * (face.GetAscent() + face.GetDescent());
    const std::vector<ORVGlyph> glyphs = GlyphsOf(layout);
    ASSERT_EQ(glyphs.size(), 2U);
    EXPECT_NEAR(layout.advance, 2.0 * line, 1e-9);
    EXPECT_NEAR(glyphs[0].y, -10.0 * face.GetAscent(), 1e-9);
    EXPECT_NEAR(glyphs[1].y, glyphs[0].y - line, 1e-9);
    // Glyphs are centred on the line: they begin half their horizontal advance to the left of it.
    style.writingMode = 0;
    EXPECT_NEAR(glyphs[0].x, -ORVMeasureText("i", style).advance / 2.0, 0.01);
    EXPECT_NEAR(glyphs[1].x, -ORVMeasureText("W", style).advance / 2.0, 0.01);
}

// The direction, the font or the marks change every few characters.
TEST(TextLayoutTest, LongTextsOfManyRunsAreLaidOut) {
    std::string text;
    while (text.size() < 400000) text += "ab \u05D0\u05D1 12 \u2603 x\u0323\u0307 \u202Edeep\u202C ";
    EXPECT_GT(ORVLayoutText(text, Sans()).advance, 0.0);
}

}  // namespace
