// SPDX-License-Identifier: Apache-2.0

// Images and pattern fills: each is embedded once per page.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/sample_images.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;

TEST(SvgImagesTest, ImagesAreInsideAndOnlyOnce) {
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> jpeg(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    ASSERT_TRUE(jpeg);
    const auto plain = PlainImage(3, 2, {1, 2, 3});
    DrawnSvg page;
    for (const double x : {0.0, 20.0}) {
        EXPECT_EQ(page.Get().DrawImage({*jpeg, {60.0, 0.0, 0.0, 40.0, x, 10.0}}), 1);
        EXPECT_EQ(page.Get().DrawImage({*plain, {3.0, 0.0, 0.0, 2.0, x, 0.0}}), 1);
    }
    const std::string text = page.Finish();
    EXPECT_EQ(CountOf(text, "<image"), 2U);
    EXPECT_EQ(CountOf(text, "<use"), 4U);
    EXPECT_THAT(text, HasSubstr("width=\"6\" height=\"4\" preserveAspectRatio=\"none\" "
                                "xlink:href=\"data:image/jpeg;base64," +
                                ToBase64(file) + "\"/>"));
    EXPECT_THAT(text, HasSubstr("<use xlink:href=\"#orv-i1\" transform=\"matrix(10 0 0 10 20 10)\"/>"));
    EXPECT_THAT(text, HasSubstr("<use xlink:href=\"#orv-i2\"/>"));
    EXPECT_THAT(text, HasSubstr("data:image/png;base64,iVBORw0KGgo"));
}

TEST(SvgImagesTest, SmallDefinitionsAreRepeatedWhereAGroupHidesThem) {
    const auto small = PlainImage(3, 2, {1, 2, 3}), large = PlainImage(100, 100, {1, 2, 3});
    DrawnSvg page;
    ORVPrintGroup group;
    for (const char* id : {"a", "b"}) {
        group.id = id;
        EXPECT_EQ(page.Get().BeginGroup(group), 1);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(page.Get().DrawImage({*small, {}}), 1);
            EXPECT_EQ(page.Get().DrawImage({*large, {}}), 1);
        }
        EXPECT_EQ(page.Get().EndGroup(), 1);
    }
    EXPECT_EQ(CountOf(page.Finish(), "<image"), 3U);
}

TEST(SvgImagesTest, SmallPatternsAreRepeatedWhereAGroupHidesThem) {
    const auto small = PlainImage(3, 2, {1, 2, 3}), large = PlainImage(100, 100, {1, 2, 3});
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 5.0, 5.0);
    DrawnSvg page;
    ORVPrintGroup group;
    for (const char* id : {"a", "b"}) {
        group.id = id;
        EXPECT_EQ(page.Get().BeginGroup(group), 1);
        for (const ORVPixelImage* tile : {small.get(), large.get(), small.get(), large.get()}) {
            ORVPrintFill fill;
            fill.pattern = tile;
            EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
        }
        EXPECT_EQ(page.Get().EndGroup(), 1);
    }
    EXPECT_EQ(CountOf(page.Finish(), "<pattern"), 3U);
}

TEST(SvgImagesTest, PatternsTileTheirImage) {
    const auto tile = PlainImage(2, 2, {9, 9, 9});
    DrawnSvg page;
    ORVPrintFill fill;
    fill.pattern = tile.get();
    fill.patternToPage = ORVMathAffine2D::Scaling(0.5, 0.5);
    fill.colour.opacity = 51;
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 5.0, 5.0);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    const std::string text = page.Finish();
    EXPECT_EQ(CountOf(text, "<pattern"), 1U);
    EXPECT_THAT(text,
                HasSubstr("<pattern id=\"orv-p1\" patternUnits=\"userSpaceOnUse\" width=\"2\" height=\"2\" "
                          "patternTransform=\"matrix(.5 0 0 .5 0 0)\"><image width=\"2\" height=\"2\" "));
    EXPECT_THAT(text, HasSubstr("<g fill=\"url(#orv-p1)\" fill-opacity=\".2\">"));
}

TEST(SvgImagesTest, OnlyGreyImagesAreWrittenAsGrey) {
    constexpr char kGrey = 0, kColour = 2;
    for (const auto& [colour, type] : {std::pair{ORVPrintColour{9, 9, 9}, kGrey},
                                       {ORVPrintColour{9, 9, 8}, kColour},
                                       {ORVPrintColour{9, 8, 9}, kColour},
                                       {ORVPrintColour{8, 9, 9}, kColour}}) {
        const auto image = PlainImage(1, 1, colour);
        DrawnSvg page;
        EXPECT_EQ(page.Get().DrawImage({*image, {}}), 1);
        // Signature, length and name of the header, size, bit depth, colour type, compression.
        const std::string start =
            std::string("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\1\0\0\0\1\x08", 25) + type + '\0';
        EXPECT_THAT(page.Finish(), HasSubstr("data:image/png;base64," + ToBase64(start)));
    }
}

}  // namespace
