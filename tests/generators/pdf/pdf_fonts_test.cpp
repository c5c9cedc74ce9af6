// SPDX-License-Identifier: Apache-2.0

// Text: searchable, with shared fonts and text objects.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/visualization/fonts/ORVFont.h"
#include "tests/generators/pdf/drawn_pdf.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;

TEST(PdfFontsTest, TextCanBeSearched) {
    DrawnPdf document;
    document.BeginPage(400.0, 200.0);
    for (const auto& [text, y] : {std::pair{"Office fi", 20.0}, {"Größe 漢", 50.0}, {"שלום", 80.0}})
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, y), 1);
    document.EndPage();
    document.Finish();
    const std::string text = document.Text();
    for (const char* expected : {"Office fi", "Größe 漢", "שלום"}) EXPECT_THAT(text, HasSubstr(expected));
}

TEST(PdfFontsTest, TextWithoutPaintsIsFoundAndNotSeen) {
    DrawnPdf document;
    document.BeginPage();
    const ORVTextLayout layout = ORVLayoutText("unseen", {});
    EXPECT_EQ(document.Get().DrawText({layout, "unseen", {1.0, 0.0, 0.0, -1.0, 10.0, 50.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Text(), HasSubstr("unseen"));
    const std::string pixels = document.Pixels();
    constexpr std::size_t kHead = 15;
    EXPECT_EQ(pixels.find_first_not_of('\xFF', kHead), std::string::npos);
}

TEST(PdfFontsTest, TextThatIsNoTextDoesNotDisturb) {
    DrawnPdf document;
    document.BeginPage(400.0, 200.0);
    for (const char* text : {"bad \xFF bytes", "\xEF\xBF\xBF", "\xEF\xB7\x90", "\xF4\x8F\xBF\xBF", ""})
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, 20.0), 1) << text;
    EXPECT_EQ(WriteText(document.Get(), "after", 10.0, 50.0), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Text(), HasSubstr("after"));
}

TEST(PdfFontsTest, SizesOfTextBeyondAllMeasureDoNotDisturb) {
    DrawnPdf document;
    document.BeginPage(100.0, 100.0);
    for (const double height : {1e-12, 1e-3, 5e4, 1e12, 1e200}) {
        ORVTextStyle style;
        style.height = height;
        EXPECT_EQ(WriteText(document.Get(), "size", 10.0, 20.0, style), 1) << height;
    }
    document.EndPage();
    document.Finish();
}

TEST(PdfFontsTest, TextsShareATextObjectAndTheirFont) {
    DrawnPdf document;
    document.BeginPage(400.0, 200.0);
    for (const auto& [text, y] : {std::pair{"one", 20.0}, {"two", 50.0}, {"three", 80.0}})
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, y), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 5.0, 5.0), 1);
    EXPECT_EQ(WriteText(document.Get(), "four", 10.0, 110.0), 1);
    document.EndPage();
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "BT\n"), 2U);
    EXPECT_EQ(CountOf(document.Plain(), "ET\n"), 2U);
    EXPECT_EQ(CountOf(document.Plain(), " Tf\n"), 1U);
    EXPECT_THAT(document.Text(), testing::ContainsRegex("one(.|\n)*two(.|\n)*three(.|\n)*four"));
}

TEST(PdfFontsTest, EveryCodeOfAFontIsRead) {
    // So many characters that their codes include brackets, backslashes and line ends.
    DrawnPdf document;
    document.BeginPage(2000.0, 200.0);
    std::vector<std::string> texts;
    for (char32_t block = 0xC0; block < 0x180; block += 0x20) {
        std::string text;
        for (char32_t c = block; c < block + 0x20; ++c) {
            text += static_cast<char>(0xC0U | c >> 6U);
            text += static_cast<char>(0x80U | (c & 0x3FU));
        }
        texts.push_back(text);
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, 20.0 * static_cast<double>(texts.size())), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string found = document.Text();
    for (const std::string& text : texts) EXPECT_THAT(found, HasSubstr(text));
    // A block of the character map has at most 100 lines.
    EXPECT_THAT(document.Plain(), HasSubstr("\n100 beginbfchar\n"));
    EXPECT_THAT(document.Plain(), testing::Not(HasSubstr("\n101 beginbfchar\n")));
}

TEST(PdfFontsTest, FontsReachAboveTheLineAndBelowIt) {
    DrawnPdf document;
    document.BeginPage();
    ORVTextStyle style;
    style.font = FindFontForAttribute("DejaVu Sans");
    EXPECT_EQ(WriteText(document.Get(), "g", 10.0, 50.0, style), 1);
    document.EndPage();
    document.Finish();
    // As in the font's own table, in thousandths of an em.
    EXPECT_THAT(document.Plain(), HasSubstr("/Ascent 928\n"));
    EXPECT_THAT(document.Plain(), HasSubstr("/Descent -236\n"));
}

TEST(PdfFontsTest, MixedDirectionsAreFoundAsTheyAreWritten) {
    DrawnPdf document;
    document.BeginPage(400.0, 200.0);
    EXPECT_EQ(WriteText(document.Get(), "abc שלום 123", 10.0, 20.0), 1);
    document.EndPage();
    document.Finish();
    const std::string text = document.Text();
    EXPECT_THAT(text, HasSubstr("abc"));
    EXPECT_THAT(text, HasSubstr("שלום"));
    EXPECT_THAT(text, HasSubstr("123"));
}

// Readers that ignore the ActualText of a cluster read the text of its glyphs, from left to right.
TEST(PdfFontsTest, GlyphsOfAClusterSayThemselvesWhatTheyAre) {
    struct Row {
        const char *name, *text;
        std::vector<const char*> map;
    };
    const Row rows[] = {
        {"a character each", "q\u0323\u0307", {"<0001> <0071>", "<0002> <0323>", "<0003> <0307>"}},
        {"right to left", "\u05E9\u05B8\u05B7", {"<0001> <05B7>", "<0002> <05B8>", "<0003> <05E9>"}},
        {"fewer than characters", "e\u0301\u0323\u0307", {"<0001> <0065030103230307>", "<0002> <034F>"}},
    };
    for (const Row& row : rows) {
        DrawnPdf document;
        document.BeginPage(400.0, 200.0);
        ORVTextStyle style;
        style.font = FindFontForAttribute("DejaVu Sans");
        EXPECT_EQ(WriteText(document.Get(), row.text, 10.0, 50.0, style), 1);
        document.EndPage();
        document.Finish();
        const std::string plain = document.Plain();
        EXPECT_THAT(plain, HasSubstr("/ActualText")) << row.name;
        for (const char* line : row.map) EXPECT_THAT(plain, HasSubstr(line)) << row.name;
    }
}

}  // namespace
