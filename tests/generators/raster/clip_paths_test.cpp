// SPDX-License-Identifier: Apache-2.0

// Clips to outlines, by the ink that remains on simple pages. layers_test.cpp compares random clips with the
// reference implementation.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/generators/raster/pixel_page.h"

namespace {

TEST(RasterClipPathsTest, WithoutInsideShowNothing) {
    PixelPage page(20.0, 20.0);
    ORVPrintPath line;
    line.MoveTo({2.0, 2.0});
    line.LineTo({18.0, 15.0});
    line.Close();
    for (const ORVPrintPath& path : {ORVPrintPath(), line}) {
        EXPECT_EQ(page.Get().BeginClipPath({path, {}}), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 20.0, 20.0), 1);
        EXPECT_EQ(WriteText(page.Get(), "HHH", 0.0, 10.0), 1);
        EXPECT_EQ(page.Get().EndClipPath(), 1);
    }
    page.Finish();
    EXPECT_EQ(page.TotalInk(), 0.0);
}

TEST(RasterClipPathsTest, ThatAreBoxesAreBoxes) {
    const auto draw = [](bool asPath) {
        PixelPage page(20.0, 20.0);
        const ORVPrintPath path = RectanglePath(0.0, 0.0, 3.0, 2.5);
        const ORVMathAffine2D turned{0.0, 4.1, 3.3, 0.0, 2.2, 3.3};
        if (asPath)
            EXPECT_EQ(page.Get().BeginClipPath({path, turned}), 1);
        else
            EXPECT_EQ(page.Get().BeginClip({2.2, 2.2 + 2.5 * 4.1, 3.3, 3.3 + 3.0 * 3.3}), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 20.0, 20.0, {255, 0, 0, 200}), 1);
        EXPECT_EQ(page.Get().EndClip(), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0.0, 19.0, 20.0, 20.0), 1);
        return page.Finish().bytes;
    };
    EXPECT_EQ(draw(true), draw(false));
}

TEST(RasterClipPathsTest, CutOffTexts) {
    const auto ink = [](const ORVPrintPath* clip, const ORVPrintPath* outer) {
        ORVTextStyle style;
        style.height = 20.0;
        const ORVTextLayout layout = ORVLayoutText("HHHH", style);
        const ORVPrintFill fill;
        PixelPage page(100.0, 40.0);
        if (outer) EXPECT_EQ(page.Get().BeginClipPath({*outer, {}}), 1);
        EXPECT_EQ(
            page.Get().DrawText({layout, "HHHH", {1.0, 0.0, 0.0, -1.0, 5.0, 25.0}, &fill, nullptr, clip}), 1);
        if (outer) EXPECT_EQ(page.Get().EndClipPath(), 1);
        page.Finish();
        return page.TotalInk();
    };
    ORVPrintPath upper, left;  // triangles that cover half of the page each
    upper.MoveTo({0.0, 0.0});
    upper.LineTo({100.0, 0.0});
    upper.LineTo({0.0, 40.0});
    left.MoveTo({0.0, -40.0});
    left.LineTo({60.0, 20.0});
    left.LineTo({0.0, 80.0});
    const double all = ink(nullptr, nullptr), one = ink(&upper, nullptr), other = ink(nullptr, &left),
                 both = ink(&upper, &left);
    EXPECT_LT(one, all);
    EXPECT_LT(other, all);
    EXPECT_LT(both, std::min(one, other));  // both the text's own clip and the one around it apply
    EXPECT_GT(both, 10.0);
}

}  // namespace
