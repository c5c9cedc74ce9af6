// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVFontFace.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "platform/mathematics/geometry.h"
#include "platform/visualization/fonts/ORVFont.h"

namespace {

class BoxOfOutline final : public ORVGlyphOutlineSink {
public:
    void MoveTo(double x, double y) override { ++contours, box.Add({x, y}); }
    void LineTo(double x, double y) override { ++lines, box.Add({x, y}); }
    void QuadTo(double, double, double x, double y) override { ++curves, box.Add({x, y}); }
    void CubicTo(double, double, double, double, double x, double y) override { ++curves, box.Add({x, y}); }
    void Close() override { ++closed; }

    ORVMathBox2D box;
    int contours = 0, lines = 0, curves = 0, closed = 0;
};

const ORVFontFace& Sans() { return *FindFontForAttribute("Liberation Sans")->GetFace(25); }

TEST(ORVFontFaceTest, KnowsItsFile) {
    EXPECT_TRUE(Sans().GetFilePath().ends_with("LiberationSans-Regular.ttf"));
    EXPECT_EQ(Sans().GetFaceIndex(), 0u);
    EXPECT_EQ(Sans().GetPostScriptName(), "LiberationSans");
    EXPECT_EQ(Sans().GetUnitsPerEm(), 2048u);
    EXPECT_NEAR(Sans().GetAscent(), 0.905, 0.001);
    EXPECT_NEAR(Sans().GetDescent(), 0.212, 0.001);
    EXPECT_EQ(Sans().GetTable("head").bytes.size(), 54u);
    EXPECT_TRUE(Sans().GetTable("none").bytes.empty());
    EXPECT_NEAR(Sans().GetAdvance(Sans().GetGlyph('H')), 1479.0 / 2048.0, 1e-9);
    EXPECT_NE(Sans().GetFreeTypeFace(), nullptr);
}

TEST(ORVFontFaceTest, HasGlyphsForWhatItCovers) {
    EXPECT_NE(Sans().GetGlyph('A'), 0u);
    EXPECT_NE(Sans().GetGlyph('A'), Sans().GetGlyph('B'));
    EXPECT_EQ(Sans().GetGlyph(0x10FFFD), 0u);
    EXPECT_EQ(Sans().GetGlyph(0xFFFFFFFF), 0u);
}

TEST(ORVFontFaceTest, DrawsStraightLettersWithLines) {
    BoxOfOutline outline;
    ASSERT_TRUE(Sans().DrawGlyph(Sans().GetGlyph('H'), 1000.0, outline));
    EXPECT_EQ(outline.contours, 1);
    EXPECT_EQ(outline.closed, 1);
    EXPECT_EQ(outline.curves, 0);
    EXPECT_NEAR(outline.box.yMin, 0.0, 1e-9);
    EXPECT_NEAR(outline.box.yMax, 688.0, 2.0);  // the cap height; y points up
    EXPECT_GT(outline.box.xMin, 0.0);
    EXPECT_LT(outline.box.xMax, 723.0);  // within the advance
}

TEST(ORVFontFaceTest, DrawsRoundLettersWithCurvesAndScales) {
    BoxOfOutline small, large;
    ASSERT_TRUE(Sans().DrawGlyph(Sans().GetGlyph('O'), 1.0, small));
    ASSERT_TRUE(Sans().DrawGlyph(Sans().GetGlyph('O'), 100.0, large));
    EXPECT_EQ(small.contours, 2);
    EXPECT_GT(small.curves, 4);
    EXPECT_NEAR(small.box.xMax * 100.0, large.box.xMax, 1e-6);
}

TEST(ORVFontFaceTest, HasNothingToDrawForSpacesAndUnknownGlyphs) {
    BoxOfOutline outline;
    EXPECT_FALSE(Sans().DrawGlyph(Sans().GetGlyph(' '), 10.0, outline));
    EXPECT_FALSE(Sans().DrawGlyph(0xFFFFFF, 10.0, outline));
    EXPECT_FALSE(Sans().DrawGlyph(Sans().GetGlyph('A'), std::numeric_limits<double>::quiet_NaN(), outline));
    EXPECT_EQ(outline.contours, 0);
}

}  // namespace
