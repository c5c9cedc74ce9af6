// SPDX-License-Identifier: Apache-2.0

// Text as pixels.

#include <gtest/gtest.h>

#include <vector>

#include "tests/generators/raster/pixel_page.h"

namespace {

double InkOfText(const ORVTextLayout& layout, const ORVPrintFill* fill, const ORVPrintStroke* stroke,
                 const ORVPrintPath* clip = nullptr) {
    PixelPage page(100.0, 40.0);
    EXPECT_EQ(page.Get().DrawText({layout, "HHHH", {1.0, 0.0, 0.0, -1.0, 5.0, 25.0}, fill, stroke, clip}), 1);
    page.Finish();
    return page.TotalInk();
}

TEST(ORVRasterGeneratorTest, TextIsFilledStrokedAndClipped) {
    ORVTextStyle style;
    style.height = 20.0;
    const ORVTextLayout layout = ORVLayoutText("HHHH", style);
    const ORVPrintFill fill;
    ORVPrintStroke stroke;
    const double filled = InkOfText(layout, &fill, nullptr), stroked = InkOfText(layout, nullptr, &stroke);
    const double both = InkOfText(layout, &fill, &stroke);
    EXPECT_GT(filled, 100.0);
    EXPECT_GT(stroked, filled);
    EXPECT_GT(both, stroked);

    const ORVPrintPath around = RectanglePath(0.0, 0.0, 100.0, 40.0);
    EXPECT_EQ(InkOfText(layout, &fill, nullptr, &around), filled);
    const ORVPrintPath elsewhere = RectanglePath(0.0, 0.0, 100.0, 5.0);
    EXPECT_EQ(InkOfText(layout, &fill, nullptr, &elsewhere), 0.0);
    // Two clips that share a slanted edge add up to the whole text.
    ORVPrintPath upper, lower;
    upper.MoveTo({0.0, 0.0});
    upper.LineTo({100.0, 0.0});
    upper.LineTo({0.0, 40.0});
    upper.Close();
    lower.MoveTo({100.0, 40.0});
    lower.LineTo({100.0, 0.0});
    lower.LineTo({0.0, 40.0});
    lower.Close();
    const double first = InkOfText(layout, &fill, nullptr, &upper),
                 second = InkOfText(layout, &fill, nullptr, &lower);
    EXPECT_GT(first, filled * 0.2);
    EXPECT_GT(second, filled * 0.05);
    EXPECT_NEAR(first + second, filled, filled * 0.01);
}

TEST(ORVRasterGeneratorTest, GlyphsLieWhereTheirOutlinesDo) {
    // Stored glyphs and glyphs drawn as outlines give the same pixels.
    ORVTextStyle style;
    style.height = 20.0;
    ORVTextLayout layout = ORVLayoutText("Sage&", style);
    const ORVPrintFill fill;
    const auto draw = [&](double enlarge) {
        ORVRasterOptions options;
        options.dotsPerInch = 90.0;
        PixelPage page(100.0, 40.0, options);
        EXPECT_EQ(page.Get().DrawText(
                      {layout, "Sage&", {enlarge, 0.0, 0.0, -enlarge, 5.0, 25.0}, &fill, nullptr, nullptr}),
                  1);
        return page.Finish().bytes;
    };
    const std::vector<std::uint8_t> usual = draw(1.0);
    // Glyphs of this size are not stored; the transform scales them back.
    for (ORVGlyphRun& run : layout.runs) {
        run.size *= 4096.0;
        for (ORVGlyph& glyph : run.glyphs) glyph.x *= 4096.0, glyph.y *= 4096.0;
    }
    const std::vector<std::uint8_t> scaled = draw(1.0 / 4096.0);
    ASSERT_EQ(usual.size(), scaled.size());
    for (std::size_t i = 0; i < usual.size(); ++i) EXPECT_NEAR(usual[i], scaled[i], 2) << i;
}

TEST(ORVRasterGeneratorTest, GlyphsLargerThanAnyPageAreDrawn) {
    ORVTextStyle style;
    style.height = 1e6;
    const ORVTextLayout layout = ORVLayoutText("H", style);
    PixelPage page(50.0, 50.0);
    const ORVPrintFill fill;
    // The left stem of the letter covers the page.
    EXPECT_EQ(page.Get().DrawText(
                  {layout, "H", {1.0, 0.0, 0.0, -1.0, -120'000.0, 300'000.0}, &fill, nullptr, nullptr}),
              1);
    page.Finish();
    EXPECT_GT(page.TotalInk(), 2000.0);
}

TEST(ORVRasterGeneratorTest, SyntheticBoldIsOneInk) {
    ORVTextStyle style;
    style.height = 24.0;
    ORVTextLayout layout = ORVLayoutText("HO8", style);
    ORVPrintFill fill;
    const double plain = InkOfText(layout, &fill, nullptr);
    for (ORVGlyphRun& run : layout.runs) run.syntheticBold = true;
    const double bold = InkOfText(layout, &fill, nullptr);
    EXPECT_GT(bold, plain * 1.1);
    EXPECT_LT(bold, plain * 1.8);
    // Where a glyph and the outline that thickens it overlap, the ink must not be darker.
    fill.colour.opacity = 51;
    EXPECT_NEAR(InkOfText(layout, &fill, nullptr), bold / 5.0, bold * 0.01);
    PixelPage page(100.0, 40.0);
    EXPECT_EQ(page.Get().DrawText({layout, "HO8", {1.0, 0.0, 0.0, -1.0, 5.0, 25.0}, &fill, nullptr, nullptr}),
              1);
    page.Finish();
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 100; ++x) EXPECT_LE(page.Ink(x, y), 51);
}

}  // namespace
