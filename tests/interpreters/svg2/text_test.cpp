// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/interpreters/svg2/call_sketch.h"

namespace {

/// Texts of a drawing with the places that they start at, without their paints.
std::string Texts(const std::string& content) {
    const std::string calls =
        SketchContent("<g font-family='DejaVu Sans Mono' font-size='10'>" + content + "</g>");
    std::string texts;
    for (std::size_t start = 0; start < calls.size();) {
        const std::size_t end = calls.find('\n', start);
        const std::string line = calls.substr(start, end - start);
        if (!texts.empty()) texts += "; ";
        texts += line.substr(0, line.find(" fill"));
        start = end + 1;
    }
    return texts;
}

// A letter of this font is 0.602 em wide.
TEST(TextTest, SpansFollowEachOther) {
    const struct {
        const char *name, *content, *texts;
    } kRows[] = {
        {"plain", "<text x='5' y='20'>ab</text>", "\"ab\" 5,20"},
        {"span", "<text x='5' y='20'>a<tspan fill='red'>b</tspan>c</text>",
         "\"a\" 5,20; \"b\" 11.02,20; \"c\" 17.04,20"},
        {"moves", "<text y='20'>a<tspan dy='-5' dx='2'>b</tspan>c</text>",
         "\"a\" 0,20; \"b\" 8.02,15; \"c\" 14.04,15"},
        {"lists", "<text x='1 20 40' y='9'>abcd</text>", "\"a\" 1,9; \"b\" 20,9; \"cd\" 40,9"},
        {"inner list wins", "<text x='1 20'>a<tspan x='50'>b</tspan></text>", "\"a\" 1,0; \"b\" 50,0"},
        {"middle", "<text x='50' text-anchor='middle'>abcd</text>", "\"abcd\" 37.96,0"},
        {"end over spans", "<text x='50' text-anchor='end'>ab<tspan fill='red'>cd</tspan></text>",
         "\"ab\" 25.92,0; \"cd\" 37.96,0"},
        {"white space collapses", "<text>\n  a\t b <tspan> c </tspan> </text>",
         "\"a b \" 0,0; \"c\" 24.08,0"},
        {"white space stays", "<text xml:space='preserve'> a\nb </text>", "\" a b \" 0,0"},
        {"letter spacing", "<text letter-spacing='2'>ab<tspan fill='red'>c</tspan></text>",
         "\"ab\" 0,0; \"c\" 16.04,0"},
        {"word spacing", "<text word-spacing='5'>a b<tspan fill='red'>c</tspan></text>",
         "\"a b\" 0,0; \"c\" 23.06,0"},
        {"text length", "<text textLength='50'>abc<tspan fill='red'>d</tspan></text>",
         "\"abc\" 0,0; \"d\" 43.98,0"},
        {"glyphs stretched",
         "<text textLength='48.16' lengthAdjust='spacingAndGlyphs'>ab<tspan "
         "fill='red'>cd</tspan></text>",
         "\"ab\" 0,0; \"cd\" 24.08,0"},
        {"shift", "<text y='20'>a<tspan baseline-shift='5'>b</tspan></text>", "\"a\" 0,20; \"b\" 6.02,15"},
        {"no text", "<text x='5'></text><text> </text>", ""},
        {"size zero", "<text font-size='0'>a</text>", ""},
        {"hidden", "<text>a<tspan visibility='hidden'>b</tspan>c</text>", "\"a\" 0,0; \"c\" 12.04,0"},
        {"not displayed", "<text>a<tspan display='none'>b</tspan>c</text>", "\"ac\" 0,0"},
        {"rotated", "<text rotate='0 90'>ab</text>", "\"a\" 0,0; \"b\" 6.02,0"},
        {"on a path",
         "<path id='p' d='M10 50h80' fill='none'/><text><textPath href='#p' "
         "startOffset='25%'>ab</textPath></text>",
         "\"a\" 30,50; \"b\" 36.02,50"},
        {"beyond the path's end",
         "<path id='p' d='M10 50h8' fill='none'/><text><textPath "
         "href='#p'>ab</textPath></text>",
         "\"a\" 10,50"},
        {"a lost path", "<text x='1'>a<textPath href='#none'>b</textPath>c</text>", "\"ac\" 1,0"},
        {"right to left", "<text x='50' direction='rtl'>ab</text>", "\"ab\" 37.96,0"},
    };
    for (const auto& row : kRows) EXPECT_EQ(Texts(row.content), row.texts) << row.name;
}

TEST(TextTest, PaintsAreTheSpansAndGradientsCoverTheWholeText) {
    EXPECT_EQ(
        SketchContent("<linearGradient id='g'><stop stop-color='red'/><stop offset='1'/>"
                      "</linearGradient><text font-family='DejaVu Sans Mono' font-size='10' "
                      "fill='url(#g)'>ab<tspan fill='blue' stroke='lime' opacity='.5'>cd</tspan></text>"),
        "\"ab\" 0,0 fill linear(0,-9.28 to 24.08,-9.28, #ff0000 0, #000000 1)\n"
        "\"cd\" 12.04,0 fill #0000ff/128 stroke #00ff00/128 1\n");
}

TEST(TextTest, LinesHaveThePaintOfWhoAsksForThem) {
    const std::string calls = SketchContent(
        "<g fill='red' text-decoration='underline'><text y='50' font-family='DejaVu Sans' "
        "font-size='20' fill='blue'>ab</text></g>");
    EXPECT_EQ(calls.find(" fill #ff0000\n\"ab\" 0,50 fill #0000ff\n"), calls.find(" fill")) << calls;
}

TEST(TextTest, IsCutToLettersByClips) {
    EXPECT_EQ(SketchContent("<clipPath id='c'><text y='9' font-family='DejaVu Sans Mono' "
                            "font-size='10'>a</text></clipPath><rect width='9' height='9' "
                            "clip-path='url(#c)'/>"),
              "layer 1\n  mask by opacity 0,0 100,100\n    \"a\" 0,9 fill #000000\n  0,0 9,9 fill #000000\n");
}

}  // namespace
