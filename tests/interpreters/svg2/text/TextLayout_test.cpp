// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/interpreters/svg2/call_sketch.h"

namespace {

/// The texts of a drawing with their start points, without their paint.
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
        {"characters that are not displayed use up values",
         "<text x='1 20 40 60'>a<tspan display='none'>bc</tspan>d</text>", "\"a\" 1,0; \"d\" 60,0"},
        {"white space after what is not displayed", "<text>a <tspan display='none'>b </tspan>c</text>",
         "\"a c\" 0,0"},
        {"characters that are not displayed leave the start of the text to the next",
         "<text x='5' y='7'><tspan display='none'>bc</tspan>d</text>", "\"d\" 5,7"},
        {"a span that is not displayed places nothing",
         "<text x='5' y='7'><tspan display='none' x='30' y='40'>bc</tspan>d</text>", "\"d\" 5,7"},
        {"white space before a chunk counts in its anchor",
         "<text x='50' text-anchor='end'>ab <tspan x='90'>c</tspan></text>",
         "\"ab \" 31.94,0; \"c\" 83.98,0"},
        {"white space at the end of the text does not count in its anchor",
         "<text x='50' text-anchor='end'>ab <tspan> </tspan></text>", "\"ab\" 37.96,0"},
        {"moves count where a text is anchored", "<text x='50' dx='0 6' text-anchor='end'>ab</text>",
         "\"a\" 31.96,0; \"b\" 43.98,0"},
        {"a mark stays on its letter", "<text x='1 20 40'>a&#x301;b</text>", "\"a\u0301\" 1,0; \"b\" 40,0"},
        {"moves within a cluster add up", "<text dx='1 2 4'>a&#x301;b</text>",
         "\"a\u0301\" 3,0; \"b\" 13.02,0"},
        {"a character beyond the first plane takes one value",
         "<text x='1 20' font-family='DejaVu Sans'>&#x1D504;b</text>", "\"\U0001D504\" 1,0; \"b\" 20,0"},
        {"no spacing by shares of the size", "<text letter-spacing='50%'>ab</text>", "\"ab\" 0,0"},
        {"word spacing in shares of the space",
         "<text word-spacing='100%'>a <tspan fill='red'>b</tspan></text>", "\"a \" 0,0; \"b\" 18.06,0"},
        {"inner lengths come first, stay together and keep their distance",
         "<text textLength='50'>a<tspan textLength='20' fill='red'>bc</tspan>d</text>",
         "\"a\" 0,0; \"bc\" 11.02,0; \"d\" 43.98,0"},
        {"a length of nothing", "<text textLength='0'>ab</text>", "\"ab\" 0,0"},
        {"a negative length", "<text textLength='-5'>ab</text>", "\"ab\" 0,0"},
        {"text of another element",
         "<defs><text id='r'> far <tspan>away</tspan></text></defs><text>go <tref href='#r' "
         "fill='red'/></text>",
         "\"go \" 0,0; \"far away\" 18.06,0"},
        {"no text of nothing", "<text>a<tref href='#none'>b</tref>c</text>", "\"ac\" 0,0"},
        {"a path within a span is none",
         "<path id='p' d='M10 50h80' fill='none'/><text>a<tspan><textPath "
         "href='#p'>b</textPath></tspan></text>",
         "\"a\" 0,0"},
        {"once around a closed path",
         "<path id='p' d='M0 10h20v20h-20z' fill='none'/><text><textPath href='#p' "
         "startOffset='70'>abc</textPath></text>",
         "\"a\" 0,20; \"b\" 0,13.98; \"c\" 2.04,10"},
        {"a path to the left of its direction",
         "<text><textPath path='M90 50h-80' side='right'>a</textPath></text>", "\"a\" 10,50"},
        {"along and across a path",
         "<path id='p' d='M10 50h80' fill='none'/><text x='5' y='7'><textPath href='#p'>a<tspan dx='2' "
         "dy='3'>b</tspan></textPath></text>",
         "\"a\" 15,50; \"b\" 23.02,53"},
        {"after a path", "<text><textPath path='M10 50h80'>a</textPath>b</text>",
         "\"a\" 10,50; \"b\" 16.02,50"},
        {"right to left spans",
         "<text x='50' direction='rtl'>&#x5d0;<tspan fill='red'>&#x5d1;</tspan></text>",
         "\"\u05D1\" 37.53,0; \"\u05D0\" 43.32,0"},
        {"right to left, at the end", "<text x='50' direction='rtl' text-anchor='end'>ab</text>",
         "\"ab\" 50,0"},
        {"overridden direction",
         "<text>a<tspan direction='rtl' unicode-bidi='bidi-override'>b<tspan "
         "fill='red'>c</tspan></tspan>d</text>",
         "\"a\" 0,0; \"c\" 6.02,0; \"b\" 12.04,0; \"d\" 18.06,0"},
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

// Vertical lines run through the middle of the em boxes, 0.346 em above the baseline.
TEST(TextTest, VerticalLinesGoDown) {
    const struct {
        const char *name, *content, *texts;
    } kRows[] = {
        {"letters on their side", "<text x='50' y='10' writing-mode='tb'>ab</text>", "\"ab\" 46.54,10"},
        {"the middle of them", "<text x='50' y='20' writing-mode='tb' text-anchor='middle'>ab</text>",
         "\"ab\" 46.54,13.98"},
        {"moves", "<text x='50' writing-mode='tb'>a<tspan dx='5' dy='7'>b</tspan></text>",
         "\"a\" 46.54,0; \"b\" 51.54,13.02"},
        {"on a span", "<text>a<tspan writing-mode='tb'>b</tspan></text>", "\"a\" 0,0; \"b\" 6.02,0"},
    };
    for (const auto& row : kRows) EXPECT_EQ(Texts(row.content), row.texts) << row.name;
}

TEST(TextTest, IsCutToLettersByClips) {
    EXPECT_EQ(SketchContent("<clipPath id='c'><text y='9' font-family='DejaVu Sans Mono' "
                            "font-size='10'>a</text></clipPath><rect width='9' height='9' "
                            "clip-path='url(#c)'/>"),
              "layer 1\n  mask by opacity 0,0 100,100\n    \"a\" 0,9 fill #000000\n  0,0 9,9 fill #000000\n");
}

}  // namespace
