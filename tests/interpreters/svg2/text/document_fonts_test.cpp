// SPDX-License-Identifier: Apache-2.0

// Fonts of @font-face rules. How they look is tested in tests/svg2/text/font-face.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "interpreters/svg2/css/font_faces.h"
#include "interpreters/svg2/document/outer_files.h"
#include "interpreters/svg2/document/parsing.h"
#include "interpreters/svg2/text/TextLayout.h"
#include "interpreters/svg2/tree/DocumentFonts.h"
#include "platform/visualization/fonts/ORVDocumentFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "tests/generators/pdf/drawn_pdf.h"
#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/tiny_fonts.h"

namespace {

std::string Rule(const std::string& family, const char* font, const std::string& more = "") {
    return "@font-face{font-family:" + family + ";src:url(data:font/ttf;base64," + font + ");" + more + "}";
}

std::string BytesOf(const char* font) {
    std::string bytes;
    EXPECT_TRUE(svg2::ReadDataUri(std::string("data:;base64,") + font, bytes));
    return bytes;
}

/// The layout of a document's first text.
class Laid {
public:
    Laid(const std::string& sheet, const std::string& text)
        : document_(svg2::ParseDocument("<svg xmlns='http://www.w3.org/2000/svg'><style>" + sheet +
                                        "</style>" + text + "</svg>")),
          scene_(*document_, {}),
          layout_(scene_, fonts_) {
        const svg2::ElementIndex element = document_->FindAll(svg2::Tag::kText).front();
        EXPECT_TRUE(layout_.LayOut(element, scene_.StyleInPlace(element), {100.0, 100.0})) << text;
    }

    /// The families of the glyph runs, each followed by a semicolon.
    std::string Families() const {
        std::string families;
        ForEachRun([&](const ORVGlyphRun& run) { families += run.face->GetFamily() + ";"; });
        return families;
    }
    double Size() const {
        double size = 0.0;
        ForEachRun([&](const ORVGlyphRun& run) { size = run.size; });
        return size;
    }
    bool IsThickened() const {
        bool is = false;
        ForEachRun([&](const ORVGlyphRun& run) { is = is || run.syntheticBold; });
        return is;
    }
    const svg2::TextSegment& First() const { return layout_.GetSegments().front(); }
    std::shared_ptr<const ORVFontFace> Face() const {
        std::shared_ptr<const ORVFontFace> face;
        ForEachRun([&](const ORVGlyphRun& run) { face = run.face->Share(); });
        return face;
    }

private:
    template <class Use>
    void ForEachRun(Use use) const {
        for (const svg2::TextSegment& segment : layout_.GetSegments())
            for (const ORVGlyphRun& run : segment.layout.runs) use(run);
    }

    std::unique_ptr<svg2::Document> document_;
    svg2::Scene scene_;
    svg2::TextFonts fonts_;
    svg2::TextLayout layout_;
};

std::string FamiliesOf(const std::string& sheet, const std::string& attributes, const std::string& text) {
    return Laid(sheet, "<text " + attributes + ">" + text + "</text>").Families();
}

TEST(DocumentFontsTest, AllFormatsAreRead) {
    for (const char* font : {tiny_fonts::kTrueType, tiny_fonts::kOpenType, tiny_fonts::kWoff,
                             tiny_fonts::kWoff2, tiny_fonts::kOpenTypeWoff2}) {
        const auto face = ORVOpenDocumentFont({BytesOf(font), "t"});
        ASSERT_TRUE(face) << font;
        EXPECT_NE(face->GetGlyph('A'), 0U) << font;
        EXPECT_DOUBLE_EQ(face->GetAdvance(face->GetGlyph('A')), 0.9) << font;
        EXPECT_EQ(face->GetFamily(), "t");
        EXPECT_EQ(face->GetPostScriptName(), "OrvTiny");
        EXPECT_TRUE(face->GetDocumentBytes().starts_with("OTTO") ||
                    face->GetDocumentBytes().starts_with(std::string("\0\1\0\0", 4)))
            << "unpacked";
    }
}

TEST(DocumentFontsTest, DamagedFontsAreNone) {
    for (const char* font :
         {tiny_fonts::kTrueType, tiny_fonts::kOpenType, tiny_fonts::kWoff, tiny_fonts::kWoff2}) {
        const std::string whole = BytesOf(font);
        EXPECT_FALSE(ORVOpenDocumentFont({whole.substr(0, 40), "t"})) << font;
        EXPECT_FALSE(ORVOpenDocumentFont({"", "t"}));
        EXPECT_FALSE(ORVOpenDocumentFont({"%!PS-AdobeFont-1.0", "t"}));
        // Neither a wrong byte nor a truncated font may cause a crash; whether the font is accepted is
        // irrelevant.
        for (std::size_t i = 0; i < whole.size(); ++i) {
            std::string wrong = whole;
            wrong[i] = static_cast<char>(wrong[i] ^ 0xFF);
            if (const auto face = ORVOpenDocumentFont({wrong, "t"})) face->GetAdvance(face->GetGlyph('A'));
        }
        for (std::size_t size = 0; size < whole.size(); size += 7)
            ORVOpenDocumentFont({whole.substr(0, size), "t"});
    }
}

TEST(DocumentFontsTest, WoffThatGrowsTooMuchIsNotUnpacked) {
    std::string woff = BytesOf(tiny_fonts::kWoff);
    woff[16] = '\x7F';  // declares an unpacked size of two gigabytes
    EXPECT_FALSE(ORVOpenDocumentFont({woff, "t"}));
}

TEST(DocumentFontsTest, TextIsSetInThem) {
    const struct {
        const char* name;
        std::string sheet, attributes, text, families;
    } rows[] = {
        {"the family", Rule("t", tiny_fonts::kTrueType), "font-family='t'", "AB", "t;"},
        {"another family", Rule("t", tiny_fonts::kTrueType), "font-family='DejaVu Sans'", "AB",
         "DejaVu Sans;"},
        {"case and quotes", Rule("\"My  Font\"", tiny_fonts::kTrueType), "font-family='my font'", "AB",
         "My  Font;"},
        {"characters it has not", Rule("t", tiny_fonts::kTrueType), "font-family='t, DejaVu Sans'", "Ax",
         "t;DejaVu Sans;"},
        {"first in the list", Rule("t", tiny_fonts::kTrueType), "font-family='DejaVu Sans, t'", "A",
         "DejaVu Sans;"},
        {"the next one of the document", Rule("a", tiny_fonts::kOnlyA) + Rule("b", tiny_fonts::kSquareForB),
         "font-family='a, b'", "ABA", "a;b;a;"},
        {"lost source", "@font-face{font-family:t;src:url(a.ttf)}", "font-family='t, DejaVu Sans'", "A",
         "DejaVu Sans;"},
        {"installed source", "@font-face{font-family:t;src:local('DejaVu Sans')}", "font-family='t'", "A",
         "DejaVu Sans;"},
        {"ranges",
         Rule("t", tiny_fonts::kTrueType, "unicode-range:U+41") +
             Rule("t", tiny_fonts::kSquareForB, "unicode-range:U+42-50,U+7?"),
         "font-family='t, DejaVu Sans'", "ABC", "t;t;DejaVu Sans;"},
        {"no family", "@font-face{src:local('DejaVu Sans')}", "font-family='DejaVu Serif'", "A",
         "DejaVu Serif;"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FamiliesOf(row.sheet, row.attributes, row.text), row.families) << row.name;
}

TEST(DocumentFontsTest, TheNearestFaceOfAFamilyIsTaken) {
    const std::string sheet = Rule("t", tiny_fonts::kOnlyA, "font-weight:400") +
                              Rule("t", tiny_fonts::kTrueType, "font-weight:700") +
                              Rule("t", tiny_fonts::kOnlyA, "font-weight:400;font-style:italic");
    const auto hasB = [&](const std::string& attributes) {
        return FamiliesOf(sheet, "font-family='t,DejaVu Sans' " + attributes, "B") == "t;";
    };
    EXPECT_FALSE(hasB(""));
    EXPECT_FALSE(hasB("font-weight='300'"));
    EXPECT_FALSE(hasB("font-weight='500'"));
    EXPECT_TRUE(hasB("font-weight='600'"));
    EXPECT_TRUE(hasB("font-weight='900'"));
    EXPECT_FALSE(hasB("font-weight='700' font-style='italic'")) << "style counts before weight";
}

TEST(DocumentFontsTest, BoldIsImitatedWhereTheRuleStatesNone) {
    const auto isThickened = [](const std::string& more) {
        return Laid(Rule("t", tiny_fonts::kTrueType, more),
                    "<text font-family='t' font-weight='bold'>A</text>")
            .IsThickened();
    };
    EXPECT_TRUE(isThickened(""));
    EXPECT_FALSE(isThickened("font-weight:bold"));
    EXPECT_FALSE(isThickened("font-weight:100 900"));
}

TEST(DocumentFontsTest, AVariableFontKeepsWithinTheRangeOfItsRule) {
    const auto variations = [](const std::string& more, const std::string& attributes) {
        return Laid(Rule("t", tiny_fonts::kVaried, more), "<text font-family='t' " + attributes + ">A</text>")
            .Face()
            ->GetVariations();
    };
    EXPECT_EQ(variations("font-weight:400 650", "font-weight='900'"), "wght=650.0000");
    EXPECT_EQ(variations("font-weight:400 900", "font-weight='500'"), "wght=500.0000");
    EXPECT_EQ(variations("", "font-weight='900'"), "") << "the rule states one weight";
}

TEST(DocumentFontsTest, OneDocumentDoesNotSeeFontsOfAnother) {
    const Laid one(Rule("t", tiny_fonts::kTrueType), "<text font-family='t'>A</text>");
    EXPECT_EQ(one.Families(), "t;");
    EXPECT_EQ(FamiliesOf("", "font-family='t, DejaVu Sans'", "A"), "DejaVu Sans;");
    const Laid other(Rule("t", tiny_fonts::kSquareForB), "<text font-family='t, DejaVu Sans'>A</text>");
    EXPECT_EQ(other.Families(), "DejaVu Sans;");
}

TEST(DocumentFontsTest, AFaceGoesWithItsLastOwner) {
    std::weak_ptr<const ORVFontFace> face;
    ORVKeptFaces kept;
    {
        const Laid laid(Rule("t", tiny_fonts::kVaried, "font-weight:400 900"),
                        "<text font-family='t' font-weight='700'>A</text>");
        face = laid.Face();
        kept.Keep(*laid.Face());
    }
    ASSERT_FALSE(face.expired());
    EXPECT_GT(face.lock()->GetAdvance(face.lock()->GetGlyph('A')), 0.0) << "with the font that it varies";
    kept.Clear();
    EXPECT_TRUE(face.expired());
}

/// Calls `draw` with the first segment of a text in an embedded font. The layout is destroyed afterwards.
template <class Draw>
void DrawOwnText(Draw draw) {
    auto laid =
        std::make_unique<Laid>(Rule("t", tiny_fonts::kTrueType), "<text y='50' font-family='t'>ABC</text>");
    draw(laid->First());
}

TEST(DocumentFontsTest, SvgOutputBringsTheFontOnce) {
    DrawnSvg page;
    DrawOwnText([&](const svg2::TextSegment& segment) {
        const ORVPrintFill fill;
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(page.Get().DrawText({segment.layout, segment.text, {1, 0, 0, -1, 0, 50}, &fill}), 1);
    });
    const std::string text = page.Finish();
    const std::size_t rule = text.find("@font-face{font-family:orv-font1;src:url(data:font/ttf;base64,");
    EXPECT_NE(rule, std::string::npos) << text;
    EXPECT_EQ(text.find("@font-face", rule + 1), std::string::npos) << text;
    EXPECT_NE(text.find("<g font-family=\"orv-font1\" font-size="), std::string::npos) << text;
}

TEST(DocumentFontsTest, PdfKeepsTheFontUntilItIsWritten) {
    DrawnPdf document;
    document.BeginPage();
    DrawOwnText([&](const svg2::TextSegment& segment) {
        const ORVPrintFill fill;
        EXPECT_EQ(document.Get().DrawText({segment.layout, segment.text, {1, 0, 0, -1, 0, 50}, &fill}), 1);
    });
    document.EndPage();
    document.Finish();
    EXPECT_EQ(document.Text().substr(0, 3), "ABC");
    EXPECT_NE(document.Run("pdffonts").find("OrvTiny"), std::string::npos);
}

TEST(DocumentFontsTest, RecordingsKeepTheFontUntilTheyAreDrawn) {
    ORVPageRecording recording;
    DrawOwnText([&](const svg2::TextSegment& segment) {
        const ORVPrintFill fill;
        EXPECT_EQ(recording.DrawText({segment.layout, segment.text, {1, 0, 0, -1, 0, 50}, &fill}), 1);
    });
    DrawnSvg page;
    EXPECT_EQ(recording.ReplaySoFar(page.Get(), {0, 100, 0, 100}), 1);
    EXPECT_NE(page.Finish().find("@font-face"), std::string::npos);
}

TEST(FontFaceRuleTest, DescriptorsAreRead) {
    svg2::FontFaceRule rule;
    ASSERT_TRUE(
        svg2::ReadFontFace("font-family: 'My  Font'; src: local(Some Font), url( \"a.woff\" ) format('woff'),"
                           "url(b.eot) format('embedded-opentype'), url(data:font/ttf;base64,AA==);"
                           "font-weight: bold 200; font-stretch: 75% 125%; font-style: oblique 10deg;"
                           "unicode-range: U+0-7F, u+4??",
                           rule));
    EXPECT_EQ(rule.family, "my font");
    ASSERT_EQ(rule.sources.size(), 3U);
    EXPECT_EQ(rule.sources[0].kind, svg2::FontSource::Kind::kLocal);
    EXPECT_EQ(rule.sources[0].text, "Some Font");
    EXPECT_EQ(rule.sources[1].kind, svg2::FontSource::Kind::kOther);
    EXPECT_EQ(rule.sources[2].kind, svg2::FontSource::Kind::kData);
    EXPECT_EQ(rule.weights, std::pair(200.0, 700.0));
    EXPECT_EQ(rule.stretches, std::pair(75.0, 125.0));
    EXPECT_TRUE(rule.isItalic);
    ASSERT_EQ(rule.ranges.size(), 2U);
    EXPECT_EQ(rule.ranges[1], std::pair(U'\x400', U'\x4FF'));
    EXPECT_TRUE(rule.ignored.empty());
}

TEST(FontFaceRuleTest, WhatIsNoRuleIsNone) {
    for (const char* block :
         {"", "font-family:a", "src:url(a.ttf)", "font-family:a;src:none", "font-family:;src:url(a.ttf)"}) {
        svg2::FontFaceRule rule;
        EXPECT_FALSE(svg2::ReadFontFace(block, rule)) << block;
    }
}

// DejaVu Sans: x height 1120, capitals 1493, zero 1303 of 2048.
TEST(FontSizeAdjustTest, SizesAreAdjustedToTheFont) {
    const struct {
        const char *attributes, *name;
        double size;
    } rows[] = {
        {"", "none", 10.0},
        {"font-size-adjust='0.5'", "attribute", 5.0 / (1120.0 / 2048.0)},
        {"style='font-size-adjust:0.5'", "property", 5.0 / (1120.0 / 2048.0)},
        {"style='font-size-adjust:ex-height 0.5'", "ex-height", 5.0 / (1120.0 / 2048.0)},
        {"style='font-size-adjust:cap-height 0.5'", "cap-height", 5.0 / (1493.0 / 2048.0)},
        {"style='font-size-adjust:ch-width 0.5'", "ch-width", 5.0 / (1303.0 / 2048.0)},
        {"font-size-adjust='none'", "said to be none", 10.0},
        {"font-size-adjust='-1'", "below zero", 10.0},
        {"font-size-adjust='from-font'", "its own font", 10.0},
        {"font-size-adjust='ic-height from-font'", "not read", 10.0},
        {"style='font-size-adjust:0.5;font:10px DejaVu Sans'", "shorthand resets", 10.0},
        {"style='font:10px DejaVu Sans;font-size-adjust:0.5'", "after the shorthand",
         5.0 / (1120.0 / 2048.0)},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(Laid("", std::string("<text font-family='DejaVu Sans' font-size='10' ") + row.attributes +
                                 ">a</text>")
                        .Size(),
                    row.size, 1e-9)
            << row.name;
}

// DejaVu Serif: x height 1063, zero 1303 of 2048.
TEST(FontSizeAdjustTest, TheRatioOfAFontIsInherited) {
    const double serif = 1063.0 / 2048.0, sans = 1120.0 / 2048.0;
    const struct {
        const char *outer, *inner;
        double size;
    } rows[] = {
        {"font-size-adjust='from-font'", "", 10.0 * serif / sans},
        {"style='font-size-adjust:EX-HEIGHT from-font'", "", 10.0 * serif / sans},
        {"style='font-size-adjust:ch-width from-font'", "", 10.0},
        {"font-size-adjust='from-font'", "font-size='2em'", 20.0 * serif / sans},
        {"font-size-adjust='from-font'", "font-size-adjust='inherit'", 10.0 * serif / sans},
        {"font-size-adjust='from-font'", "font-size-adjust='from-font'", 10.0},
        {"font-size-adjust='from-font'", "font-size-adjust='none'", 10.0},
        {"style='font-size-adjust:from-font;font:10px DejaVu Serif'", "", 10.0},
        {"style='font:10px DejaVu Serif;font-size-adjust:from-font'", "", 10.0 * serif / sans},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(Laid("", std::string("<g font-family='DejaVu Serif' font-size='10' ") + row.outer +
                                 "><text font-family='DejaVu Sans' " + row.inner + ">a</text></g>")
                        .Size(),
                    row.size, 1e-9)
            << row.outer << row.inner;
}

TEST(FontSizeAdjustTest, IsInheritedAndDoesNotChangeEms) {
    const Laid laid("",
                    "<text font-family='DejaVu Sans' font-size='10' font-size-adjust='0.5'>"
                    "<tspan font-size='2em'>a</tspan></text>");
    EXPECT_NEAR(laid.Size(), 20.0 * 0.5 / (1120.0 / 2048.0), 1e-9);
}

}  // namespace
