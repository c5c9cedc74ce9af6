// SPDX-License-Identifier: Apache-2.0

// Clips to outlines, as other programs draw them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/generators/pdf/drawn_page.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;

constexpr PaperColour kWhite{255, 255, 255}, kRed{255, 0, 0};

/// Makes a square inside a larger one, both clockwise.
ORVPrintPath SquareInSquare() {
    ORVPrintPath path = RectanglePath(10.0, 10.0, 70.0, 70.0);
    const ORVPrintPath inner = RectanglePath(30.0, 30.0, 30.0, 30.0);
    path.verbs.insert(path.verbs.end(), inner.verbs.begin(), inner.verbs.end());
    path.points.insert(path.points.end(), inner.points.begin(), inner.points.end());
    return path;
}

TEST(PdfClipPathsTest, InsidesShowByTheirRule) {
    for (const bool evenOdd : {false, true}) {
        DrawnPdf document;
        DrawPage(document, [&](ORVPrintGenerator& page) {
            EXPECT_EQ(page.BeginClipPath({SquareInSquare(), {}, evenOdd}), 1);
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
            EXPECT_EQ(page.EndClipPath(), 1);
            EXPECT_NE(page.EndClipPath(), 1);
            EXPECT_EQ(FillRectangle(page, 0.0, 84.0, 90.0, 6.0, {0, 0, 255}), 1);
        });
        ExpectColours(document, {{20.0, 20.0, kRed},
                                 {45.0, 45.0, evenOdd ? kWhite : kRed},
                                 {5.0, 45.0, kWhite},
                                 {5.0, 87.0, {0, 0, 255}}});
    }
}

TEST(PdfClipPathsTest, ClipsNestUnderTheirMapsAndCutLinks) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        ORVPrintPath triangle;
        triangle.MoveTo({0.0, 0.0});
        triangle.LineTo({1.0, 0.0});
        triangle.LineTo({0.0, 1.0});
        triangle.Close();
        EXPECT_EQ(page.BeginClipPath({triangle, {80.0, 0.0, 0.0, 80.0, 0.0, 0.0}}), 1);
        EXPECT_EQ(page.BeginClipPath({RectanglePath(0.0, 0.0, 1.0, 1.0), {90.0, 0.0, 0.0, 30.0, 20.0, 0.0}}),
                  1);
        ORVPrintGroup link;
        link.linkURL = "http://example.org/";
        EXPECT_EQ(page.BeginGroup(link), 1);
        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
        EXPECT_EQ(page.EndGroup(), 1);
        EXPECT_EQ(page.EndClipPath(), 1);
        EXPECT_EQ(page.EndClipPath(), 1);
    });
    ExpectColours(document,
                  {{30.0, 20.0, kRed}, {10.0, 20.0, kWhite}, {30.0, 40.0, kWhite}, {75.0, 20.0, kWhite}});
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    16\n    48\n    64\n    72\n  ]"));
}

TEST(PdfClipPathsTest, NothingShowsWithoutAnInside) {
    ORVPrintPath line, point, outside = RectanglePath(1e6, 1e6, 5.0, 5.0);
    line.MoveTo({0.0, 45.0});
    line.LineTo({90.0, 45.0});
    point.MoveTo({45.0, 45.0});
    const ORVPrintPath square = RectanglePath(0.0, 0.0, 1.0, 1.0);
    const ORVMathAffine2D flat{90.0, 90.0, 90.0, 90.0, 0.0, 0.0};
    for (const ORVPrintClipPath& clip :
         {ORVPrintClipPath{ORVPrintPath(), {}}, ORVPrintClipPath{line, {}}, ORVPrintClipPath{point, {}},
          ORVPrintClipPath{outside, {}}, ORVPrintClipPath{square, flat}}) {
        DrawnPdf document;
        DrawPage(document, [&](ORVPrintGenerator& page) {
            EXPECT_EQ(page.BeginClipPath(clip), 1);
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
            EXPECT_EQ(page.EndClipPath(), 1);
        });
        const std::string pixels = document.Pixels();
        EXPECT_EQ(CountOf(pixels.substr(pixels.size() - 90 * 90 * 3), "\xFF\xFF\xFF"), 90U * 90U * 3U - 2U);
        ExpectColours(document, {{45.0, 44.5, kWhite}, {45.0, 45.5, kWhite}, {1.0, 1.0, kWhite}});
    }
}

}  // namespace
