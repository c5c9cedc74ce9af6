// SPDX-License-Identifier: Apache-2.0

// Content that is stored once and shown in several places.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/generators/pdf/drawn_pdf.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;

/// Draws content that needs graphics state or resources: dashes, opacity, text, images, patterns.
void DrawVariety(ORVPrintGenerator& generator, const ORVMathAffine2D& map) {
    const auto tile = PlainImage(3, 3, {200, 30, 30}), picture = PlainImage(4, 4, {20, 90, 160, 128});
    const double dashes[]{4.0, 2.0};
    ORVPrintStroke stroke;
    stroke.colour = {0, 0, 200};
    stroke.width = 3.0;
    stroke.join = ORVPrintStroke::Join::kRound;
    stroke.cap = ORVPrintStroke::Cap::kRound;
    stroke.dashes = dashes;
    ORVPrintFill fill;
    fill.colour = {0, 120, 0, 130};
    const ORVPrintPath box = RectanglePath(2.0, 2.0, 20.0, 15.0);
    EXPECT_EQ(generator.DrawShape({box, map, &fill, &stroke}), 1);
    stroke = {};
    ORVPrintPath corner;
    corner.MoveTo({25.0, 2.0});
    corner.LineTo({30.0, 20.0});
    corner.LineTo({35.0, 2.0});
    EXPECT_EQ(generator.DrawShape({corner, map, nullptr, &stroke}), 1);
    const ORVTextLayout layout = ORVLayoutText("Tap 7", {});
    const ORVPrintFill black;
    EXPECT_EQ(generator.DrawText({layout, "Tap 7", map * ORVMathAffine2D{1.0, 0.0, 0.0, -1.0, 2.0, 32.0},
                                  &black, nullptr, nullptr}),
              1);
    EXPECT_EQ(generator.DrawImage({*picture, map * ORVMathAffine2D{8.0, 0.0, 0.0, 8.0, 28.0, 24.0}}), 1);
    fill = {};
    fill.pattern = tile.get();
    fill.patternToPage = map;
    const ORVPrintPath tiled = RectanglePath(2.0, 36.0, 30.0, 5.0);
    EXPECT_EQ(generator.DrawShape({tiled, map, &fill, nullptr}), 1);
}

/// Draws the content of DrawVariety as a symbol.
void PlaceVariety(ORVPrintGenerator& generator, const void* key, const ORVMathAffine2D& map) {
    const int answer = generator.BeginSymbol({key, map});
    if (answer == ORVPrintGenerator::kSymbolKnown) return;
    ASSERT_EQ(answer, ORVPrintGenerator::kDrawSymbol);
    DrawVariety(generator, {});
    EXPECT_EQ(generator.EndSymbol(), 1);
}

// Moved, turned, mirrored, stretched.
constexpr ORVMathAffine2D kPlaces[]{{1.0, 0.0, 0.0, 1.0, 5.0, 5.0},
                                    {1.0, 0.0, 0.0, 1.0, 60.0, 5.0},
                                    {0.0, -1.0, 1.0, 0.0, 170.0, 5.0},
                                    {-1.5, 0.0, 0.0, 1.5, 70.0, 60.0},
                                    {2.0, 0.0, 0.0, 1.0, 100.0, 70.0}};

TEST(PdfSymbolsTest, SymbolsLookAsTheirContentDoes) {
    DrawnPdf plain, symbols;
    const int key = 0;
    for (DrawnPdf* document : {&plain, &symbols}) {
        document->BeginPage(200.0, 130.0);
        // The graphics state of the page must not affect the symbol, nor that of the symbol the page.
        const double dashes[]{1.0, 1.0};
        ORVPrintStroke stroke;
        stroke.width = 2.0;
        stroke.colour = {9, 99, 199, 77};
        stroke.join = ORVPrintStroke::Join::kBevel;
        stroke.dashes = dashes;
        const ORVPrintPath frame = RectanglePath(1.0, 1.0, 198.0, 128.0);
        for (const ORVMathAffine2D& place : kPlaces) {
            EXPECT_EQ(document->Get().DrawShape({frame, {}, nullptr, &stroke}), 1);
            if (document == &plain)
                DrawVariety(document->Get(), place);
            else
                PlaceVariety(document->Get(), &key, place);
        }
        document->EndPage();
        document->Finish();
    }
    EXPECT_EQ(CountOf(symbols.Plain(), "/Subtype /Form"), 1U);
    const std::string expected = plain.Pixels(), got = symbols.Pixels();
    ASSERT_EQ(expected.size(), got.size());
    std::size_t differing = 0;
    for (std::size_t i = 0; i < got.size(); ++i)
        differing +=
            std::abs(static_cast<unsigned char>(got[i]) - static_cast<unsigned char>(expected[i])) > 40;
    // Glyphs and edges may be rounded to pixels differently.
    EXPECT_LT(differing, got.size() / 200);
    for (const char* text : {"Tap 7"}) EXPECT_EQ(CountOf(symbols.Text(), text), CountOf(plain.Text(), text));
}

TEST(PdfSymbolsTest, SymbolsNestAndServeAllPages) {
    DrawnPdf document;
    const int inner = 0, outer = 0;
    for (int page = 0; page < 2; ++page) {
        document.BeginPage();
        for (const double x : {0.0, 40.0}) {
            const int answer = document.Get().BeginSymbol({&outer, ORVMathAffine2D::Translation(x, 0.0)});
            if (answer == ORVPrintGenerator::kSymbolKnown) continue;
            EXPECT_EQ(answer, ORVPrintGenerator::kDrawSymbol);
            PlaceVariety(document.Get(), &inner, {});
            PlaceVariety(document.Get(), &inner, ORVMathAffine2D::Translation(0.0, 40.0));
            EXPECT_EQ(document.Get().EndSymbol(), 1);
        }
        document.EndPage();
    }
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "/Subtype /Form"), 2U);
    EXPECT_EQ(CountOf(document.Text(), "Tap 7"), 8U);
}

TEST(PdfSymbolsTest, LinksAroundSymbolsCoverThem) {
    DrawnPdf document;
    const int key = 0;
    document.BeginPage(90.0, 90.0);
    ORVPrintGroup link;
    link.linkURL = "http://example.org/";
    for (const double x : {10.0, 50.0}) {
        EXPECT_EQ(document.Get().BeginGroup(link), 1);
        if (document.Get().BeginSymbol({&key, ORVMathAffine2D::Translation(x, 20.0)}) ==
            ORVPrintGenerator::kDrawSymbol) {
            EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 5.0), 1);
            EXPECT_EQ(document.Get().EndSymbol(), 1);
        }
        EXPECT_EQ(document.Get().EndGroup(), 1);
    }
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    8\n    52\n    16\n    56\n  ]"));
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    40\n    52\n    48\n    56\n  ]"));
}

TEST(PdfSymbolsTest, SymbolsThatShowNothingOrBreakOffDoNotDisturb) {
    DrawnPdf document;
    const int empty = 0, open = 0;
    document.BeginPage();
    EXPECT_EQ(document.Get().BeginSymbol({&empty, {}}), ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(document.Get().EndSymbol(), 1);
    EXPECT_EQ(document.Get().BeginSymbol({&empty, {}}), ORVPrintGenerator::kSymbolKnown);
    EXPECT_NE(document.Get().EndSymbol(), 1);
    EXPECT_EQ(document.Get().BeginSymbol({&open, {}}), ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 5.0), 1);
    EXPECT_NE(document.Get().BeginGroup({}), 1);
    document.EndPage();
    document.Finish();
    // The unfinished symbol shows its content, the empty one shows nothing.
    EXPECT_EQ(CountOf(document.Plain(), " Do\n"), 1U);
}

// The content of a symbol inherits the colour of the place that shows it until it sets one.
TEST(PdfSymbolsTest, BlackOfASymbolIsBlackOnAPageThatPaintsRed) {
    DrawnPdf document;
    document.BeginPage();
    ORVPrintGenerator& page = document.Get();
    ORVPrintStroke black, red;
    red.colour = {255, 0, 0};
    black.width = red.width = 6.0;
    ORVPrintPath line;
    line.MoveTo({30.0, 0.0});
    line.LineTo({30.0, 10.0});
    const int key = 0;
    for (const double y : {0.0, 45.0}) {
        EXPECT_EQ(FillRectangle(page, 0.0, y, 10.0, 10.0, {255, 0, 0}), 1);
        EXPECT_EQ(page.DrawShape({line, {1.0, 0.0, 0.0, 1.0, 0.0, y}, nullptr, &red}), 1);
        const int answer = page.BeginSymbol({&key, {1.0, 0.0, 0.0, 1.0, 0.0, y + 20.0}});
        if (answer == ORVPrintGenerator::kDrawSymbol) {
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 10.0, 10.0), 1);
            EXPECT_EQ(page.DrawShape({line, {}, nullptr, &black}), 1);
            EXPECT_EQ(page.EndSymbol(), 1);
        }
    }
    EXPECT_EQ(FillRectangle(page, 60.0, 0.0, 10.0, 10.0), 1);
    document.EndPage();
    document.Finish();
    const std::string pixels = document.Pixels();
    ASSERT_GE(pixels.size(), 90U * 90U * 3U);
    const auto colourAt = [&](std::size_t x, std::size_t y) {
        return pixels.substr(pixels.size() - 3 * (90 * (90 - y) - x), 3);
    };
    const std::string blackPixel(3, '\0'), redPixel("\xFF\0\0", 3);
    for (const std::size_t y : {5U, 50U}) {
        EXPECT_EQ(colourAt(5, y), redPixel) << y;
        EXPECT_EQ(colourAt(30, y), redPixel) << y;
        EXPECT_EQ(colourAt(5, y + 20), blackPixel) << y;
        EXPECT_EQ(colourAt(30, y + 20), blackPixel) << y;
    }
    EXPECT_EQ(colourAt(65, 5), blackPixel);
}

TEST(PdfSymbolsTest, TextOfASymbolIsFilledAfterTextThatIsStroked) {
    DrawnPdf document;
    document.BeginPage();
    const ORVTextLayout layout = ORVLayoutText("Tap 7", {});
    const ORVPrintFill black;
    const ORVPrintStroke stroke;
    const ORVMathAffine2D map{1.0, 0.0, 0.0, -1.0, 2.0, 32.0};
    const int key = 0;
    EXPECT_EQ(document.Get().BeginSymbol({&key, {}}), ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(document.Get().DrawText({layout, "Tap 7", map, &black, nullptr, nullptr}), 1);
    EXPECT_EQ(document.Get().EndSymbol(), 1);
    EXPECT_EQ(document.Get().DrawText({layout, "Tap 7", map, nullptr, &stroke, nullptr}), 1);
    EXPECT_EQ(document.Get().BeginSymbol({&key, ORVMathAffine2D::Translation(0.0, 30.0)}),
              ORVPrintGenerator::kSymbolKnown);
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    const std::size_t stroked = plain.find("1 Tr\n"), filled = plain.find("0 Tr\n", stroked);
    ASSERT_NE(stroked, plain.npos);
    ASSERT_NE(filled, plain.npos);
    EXPECT_LT(filled, plain.find(" Do\n", stroked));
}

}  // namespace
