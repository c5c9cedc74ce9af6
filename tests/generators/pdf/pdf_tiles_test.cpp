// SPDX-License-Identifier: Apache-2.0

// Repeated content: as the cell of a pattern, and as other programs draw it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/generators/pdf/drawn_page.h"
#include "tests/support/text_search.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr PaperColour kWhite{255, 255, 255}, kRed{255, 0, 0}, kBlue{0, 0, 255}, kHalfRed{255, 127, 127};

ORVPrintTiles Tiles(const ORVMathAffine2D& toPage = {}) {
    ORVPrintTiles tiles;
    tiles.tile = {0.0, 20.0, 0.0, 30.0};
    tiles.xStep = 20.0;
    tiles.yStep = 30.0;
    tiles.toPage = toPage;
    tiles.shown = {0.0, 90.0, 0.0, 60.0};
    return tiles;
}

/// Draws a tile of 20 by 30: red in the upper left, blue below.
void DrawTile(ORVPrintGenerator& page, const ORVPrintTiles& tiles) {
    ASSERT_EQ(page.BeginTiles(tiles), ORVPrintGenerator::kDrawTile);
    EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 10.0, 20.0, {255, 0, 0}), 1);
    EXPECT_EQ(FillRectangle(page, 0.0, 20.0, 90.0, 90.0, {0, 0, 255}), 1);
    EXPECT_EQ(page.EndTiles(), 1);
}

TEST(PdfTilesTest, TilesCoverTheirBoxSideBySide) {
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(FillRectangle(document.Get(), 80.0, 80.0, 10.0, 10.0, {0, 0, 0, 51}), 1);
    DrawTile(document.Get(), Tiles());
    EXPECT_EQ(FillRectangle(document.Get(), 60.0, 80.0, 10.0, 10.0, {255, 0, 0}), 1);
    document.EndPage();
    document.Finish();
    ExpectColours(document, {{5, 5, kRed},
                             {15, 5, kWhite},
                             {15, 25, kBlue},
                             {25, 10, kRed},
                             {35, 40, kWhite},
                             {45, 35, kRed},
                             {45, 55, kBlue},
                             {45, 70, kWhite},
                             {65, 85, kRed}});
    EXPECT_EQ(CountOf(document.Plain(), "/PatternType 1"), 1U);
    EXPECT_THAT(document.Plain(), AllOf(HasSubstr("/XStep 20"), HasSubstr("/YStep 30")));
}

TEST(PdfTilesTest, TilesFollowTheirMapAndStayInClips) {
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(document.Get().BeginClip({0.0, 50.0, 0.0, 90.0}), 1);
    // A quarter turn: right in the tile is down on the page.
    DrawTile(document.Get(), Tiles({0.0, -1.0, 1.0, 0.0, 30.0, 0.0}));
    EXPECT_EQ(document.Get().EndClip(), 1);
    document.EndPage();
    document.Finish();
    ExpectColours(document,
                  {{25, 5, kRed}, {15, 15, kWhite}, {5, 15, kBlue}, {45, 25, kRed}, {55, 25, kWhite}});
}

TEST(PdfTilesTest, TilesInLayersLieWhereTheyAreShown) {
    DrawnPdf document;
    document.BeginPage();
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.box = {0.0, 90.0, 0.0, 90.0};
    EXPECT_EQ(document.Get().BeginLayer(layer), 1);
    ORVPrintTiles tiles = Tiles();
    tiles.shown = {0.0, 40.0, 0.0, 30.0};
    DrawTile(document.Get(), tiles);
    EXPECT_EQ(document.Get().EndLayer(), 1);
    document.EndPage();
    document.Finish();
    ExpectColours(document, {{5, 5, kHalfRed}, {25, 5, kHalfRed}, {15, 5, kWhite}, {45, 5, kWhite}});
}

TEST(PdfTilesTest, TilesMoveWithTheSymbolThatHoldsThem) {
    DrawnPdf document;
    document.BeginPage();
    const int key = 0;
    ORVPrintTiles tiles = Tiles();
    tiles.shown = {0.0, 40.0, 0.0, 30.0};
    ASSERT_EQ(document.Get().BeginSymbol({&key, {1.0, 0.0, 0.0, 1.0, 10.0, 0.0}}),
              ORVPrintGenerator::kDrawSymbol);
    DrawTile(document.Get(), tiles);
    EXPECT_EQ(document.Get().EndSymbol(), 1);
    document.EndPage();
    document.Finish();
    ExpectColours(document, {{5, 5, kWhite}, {15, 5, kRed}, {25, 5, kWhite}, {35, 5, kRed}, {25, 25, kBlue}});
}

TEST(PdfTilesTest, TilesWithoutContentShowNothing) {
    DrawnPdf document;
    document.BeginPage();
    ASSERT_EQ(document.Get().BeginTiles(Tiles()), ORVPrintGenerator::kDrawTile);
    EXPECT_EQ(document.Get().EndTiles(), 1);
    EXPECT_NE(document.Get().EndTiles(), 1);
    document.EndPage();
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "/PatternType 1"), 0U);
}

// Repeated content has no single position on the page for a link.
TEST(PdfTilesTest, GroupsInTilesLeadNowhere) {
    DrawnPdf document;
    document.BeginPage();
    ASSERT_EQ(document.Get().BeginTiles(Tiles()), ORVPrintGenerator::kDrawTile);
    ORVPrintGroup group;
    group.linkURL = "https://example.org/";
    EXPECT_EQ(document.Get().BeginGroup(group), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 20.0, {255, 0, 0}), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    EXPECT_EQ(document.Get().EndTiles(), 1);
    document.EndPage();
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "/Annot"), 0U);
    ExpectColours(document, {{5, 5, kRed}, {15, 5, kWhite}});
}

}  // namespace
