// SPDX-License-Identifier: Apache-2.0

// Lines of text as elements.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/visualization/fonts/ORVFont.h"
#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/named_rows.h"
#include "tests/support/text_search.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

struct TextCase {
    const char* name;
    const char* text;
    ORVMathAffine2D toPage;
    int writingMode;
    double spacing, expansion;
    std::vector<std::string> expected;
};
class SvgTextTest : public testing::TestWithParam<TextCase> {};
TEST_P(SvgTextTest, StandsWhereItWasLaidOut) {
    const TextCase& row = GetParam();
    ORVTextStyle style;
    style.font = FindFontForAttribute("DejaVu Sans");
    ASSERT_TRUE(style.font);
    style.height = 10.0;
    style.writingMode = row.writingMode;
    style.extraSpacing = row.spacing;
    style.expansion = row.expansion;
    const ORVTextLayout layout = ORVLayoutText(row.text, style);
    const ORVPrintFill fill;
    DrawnSvg page;
    EXPECT_EQ(page.Get().DrawText({layout, row.text, row.toPage, &fill, nullptr, nullptr}), 1);
    const std::string text = page.Content();
    for (const std::string& expected : row.expected) EXPECT_THAT(text, HasSubstr(expected));
    EXPECT_EQ(text.empty(), row.expected.empty());
}

constexpr ORVMathAffine2D kUpright{1.0, 0.0, 0.0, -1.0, 20.0, 30.0};

INSTANTIATE_TEST_SUITE_P(
    Text, SvgTextTest,
    testing::Values(
        TextCase{"Plain",
                 "A<b",
                 kUpright,
                 0,
                 0.0,
                 1.0,
                 {"<text font-family=\"DejaVu Sans,sans-serif\" font-size=\"10\" x=\"20\" y=\"30\" "
                  "textLength=\"",
                  "\">A&lt;b</text>\n"}},
        TextCase{"Enlarged",
                 "A",
                 ORVMathAffine2D{3.0, 0.0, 0.0, -3.0, 20.0, 30.0},
                 0,
                 0.0,
                 1.0,
                 {"font-size=\"30\" x=\"20\" y=\"30\">A</text>\n"}},
        TextCase{"Turned",
                 "A",
                 ORVMathAffine2D{0.0, 2.0, 2.0, 0.0, 20.0, 30.0},
                 0,
                 0.0,
                 1.0,
                 {"font-size=\"20\" transform=\"matrix(0 1 -1 0 20 30)\">A</text>\n"}},
        TextCase{"Wide", "A", kUpright, 0, 0.0, 2.0, {"transform=\"matrix(2 0 0 1 20 30)\">A</text>\n"}},
        TextCase{"Spaced",
                 "WW",
                 kUpright,
                 0,
                 2.5,
                 1.0,
                 // Two letters of width 9.888, and the spacing after each.
                 {"letter-spacing=\"2.5\"", "textLength=\"24.775\""}},
        TextCase{"Blanks", " a  b", kUpright, 0, 0.0, 1.0, {" xml:space=\"preserve\"> a  b</text>"}},
        TextCase{"OnlyBlanks", "   ", kUpright, 0, 0.0, 1.0, {}},
        TextCase{"Controls",
                 "a\x01\x1F\x7F\xC2\x85"
                 "b",
                 kUpright,
                 0,
                 0.0,
                 1.0,
                 {">ab</text>"}},
        TextCase{"NoUtf8", "a\xFF", kUpright, 0, 0.0, 1.0, {">a\xEF\xBF\xBD</text>"}},
        TextCase{"RightToLeft",
                 "שלום",
                 kUpright,
                 1,
                 0.0,
                 1.0,
                 // The position is that of the right end.
                 {"direction=\"rtl\" writing-mode=\"rl\" x=\"42.129\" y=\"30\" "
                  "textLength=\"22.129\">שלום</text>"}},
        TextCase{"RightToLeftSpaced",
                 "שלום",
                 kUpright,
                 1,
                 2.5,
                 1.0,
                 // The spacing after the last letter lies outside the line.
                 {"x=\"49.629\" y=\"30\" textLength=\"32.129\">שלום</text>"}},
        TextCase{"Mixed", "a שלום b", kUpright, 0, 0.0, 1.0, {">a </text>", ">שלום</text>", ">b</text>"}},
        // One element for each letter.
        TextCase{"Vertical", "AB", kUpright, 2, 0.0, 1.0, {">A</text>\n<text x=\"16", ">B</text>\n"}}),
    kNameOfRow);

TEST(SvgTextElementTest, TextIsSplitWhereTheSpacingChanges) {
    struct Row {
        const char* text;
        bool isRightToLeft;
        std::vector<double> spacings;  // between letters, from left to right
        std::vector<std::string> expected;
        std::size_t elements;
    };
    for (const Row& row : std::vector<Row>{
             {"ab cd",
              false,
              {0, 0, 5, 0},
              {" x=\"20\" y=\"30\" textLength=\"30\" xml:space=\"preserve\">ab </text>",
               " x=\"55\" y=\"30\" textLength=\"20\">cd</text>"},
              2},
             // Readers disagree about the spacing after the last letter, so there is no length.
             {"ab cd",
              false,
              {2, 2, 7, 2},
              {" letter-spacing=\"2\"", " x=\"20\" y=\"30\" xml:space=\"preserve\">ab </text>",
               " x=\"61\" y=\"30\">cd</text>"},
              2},
             {"abc", false, {-3, -3}, {" letter-spacing=\"-3\" ", " x=\"20\" y=\"30\">abc</text>"}, 1},
             // A letter beside its place.
             {"abcd", false, {0, 1, -1}, {" textLength=\"40\">abcd</text>"}, 1},
             {"של ום",
              true,
              {0, 5, 0, 0},
              {" x=\"75\" y=\"30\" textLength=\"30\" xml:space=\"preserve\">של </text>",
               " x=\"40\" y=\"30\" textLength=\"20\">ום</text>"},
              2}}) {
        ORVTextStyle style;
        style.font = FindFontForAttribute("DejaVu Sans");
        style.height = 10.0;
        style.writingMode = row.isRightToLeft ? 1 : 0;
        style.extraSpacing = 1.0;  // no kerning
        ORVTextLayout layout = ORVLayoutText(row.text, style);
        ASSERT_EQ(layout.runs.size(), 1U) << row.text;
        ASSERT_EQ(layout.runs[0].glyphs.size(), row.spacings.size() + 1) << row.text;
        layout.isEvenlySpaced = false;
        double pen = 0.0;
        std::size_t i = 0;
        for (ORVGlyph& glyph : layout.runs[0].glyphs) {
            glyph.x = pen;
            glyph.advance = 10.0;
            pen += glyph.advance + (i < row.spacings.size() ? row.spacings[i++] : 0.0);
        }
        const ORVPrintFill fill;
        DrawnSvg page;
        EXPECT_EQ(page.Get().DrawText({layout, row.text, kUpright, &fill, nullptr, nullptr}), 1);
        const std::string text = page.Content();
        for (const std::string& expected : row.expected) EXPECT_THAT(text, HasSubstr(expected));
        EXPECT_EQ(CountOf(text, "</text>"), row.elements) << text;
    }
}

TEST(SvgTextElementTest, TextIsClippedAndStroked) {
    const ORVTextLayout layout = ORVLayoutText("clip", {});
    const ORVPrintPath clip = RectanglePath(0, 0, 5, 5);
    ORVPrintStroke stroke;
    stroke.width = 0.5;
    DrawnSvg page;
    EXPECT_EQ(page.Get().DrawText({layout, "clip", {2.0, 0.0, 0.0, -2.0, 1.0, 9.0}, nullptr, &stroke, &clip}),
              1);
    const std::string text = page.Content();
    EXPECT_THAT(text,
                HasSubstr("<path d=\"M0 0h5v5H0z\"/></clipPath>\n<g clip-path=\"url(#orv-c1)\">\n<text "));
    EXPECT_THAT(text, HasSubstr(" fill=\"none\" stroke=\"#000\" x=\"1\" y=\"9\""));
    EXPECT_THAT(text, EndsWith("</text>\n</g>\n"));
}

TEST(SvgTextElementTest, SlantedFacesAreNamed) {
    ORVTextStyle style;
    style.font = FindFontForAttribute("Liberation Serif Italic");
    ASSERT_TRUE(style.font);
    style.weight = 26;
    DrawnSvg page;
    EXPECT_EQ(WriteText(page.Get(), "x", 1, 9, style), 1);
    EXPECT_THAT(
        page.Content(),
        HasSubstr("font-family=\"LiberationSerif-BoldItalic,Liberation Serif,serif\" font-size=\"12\" "
                  "font-style=\"italic\" font-weight=\"bold\""));
}

}  // namespace
