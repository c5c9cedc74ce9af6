// SPDX-License-Identifier: Apache-2.0

// Tests the generator as it is used, from its module. A PostScript interpreter runs the output.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/formats.h"
#include "platform/system/modules.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "tests/generators/drawing_calls.h"
#include "tests/generators/limited_output.h"
#include "tests/generators/postscript/drawn_postscript.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/shell_run.h"
#include "tests/support/text_search.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The interpreter reports boxes to a hundredth of a point.
void ExpectBox(const std::array<double, 4>& actual, const std::array<double, 4>& expected) {
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(actual[i], expected[i], 0.03) << "side " << i;
}

TEST(ORVPostScriptGeneratorTest, ADocumentHasAllPagesInTheirSizes) {
    PostScript document("ps", "Größe (1)");
    for (const auto& [width, height] : {std::pair{90.0, 45.0}, {744.09, 1052.36}, {1052.36, 744.09}}) {
        document.BeginPage(width, height);
        EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 90, 45), 1);
        document.EndPage();
    }
    const std::string& text = document.Finish();
    EXPECT_EQ(document.GetOutput().GetPartCount(), 1U);
    EXPECT_THAT(
        text,
        StartsWith("%!PS-Adobe-3.0\n%%Title: (Gr\\366\\337e \\(1\\))\n%%Creator: orvprint\n%%Pages: 3\n"));
    EXPECT_THAT(text, HasSubstr("%%BoundingBox: 0 0 842 842\n"));
    EXPECT_THAT(text, HasSubstr("72 36 cairo_set_page_size\n"));
    EXPECT_THAT(text, HasSubstr("595 842 cairo_set_page_size\n"));
    EXPECT_THAT(text, HasSubstr("842 595 cairo_set_page_size\n"));
    EXPECT_THAT(text, Not(HasSubstr("CreationDate")));
    EXPECT_THAT(text, Not(HasSubstr("Landscape")));
    EXPECT_EQ(CountOf(text, "%%Page: "), 3U);
    // 90 by 45 user units are 72 by 36 points, at the top of the page.
    const auto boxes = document.Boxes();
    ASSERT_EQ(boxes.size(), 3U);
    ExpectBox(boxes[0], {0, 0, 72, 36});
    ExpectBox(boxes[1], {0, 806, 72, 842});
    ExpectBox(boxes[2], {0, 559, 72, 595});
}

TEST(ORVPostScriptGeneratorTest, EpsHasOnePageAPartAndItsBox) {
    PostScript document("eps", "Document");
    document.BeginPage(90.0, 45.5);
    EXPECT_EQ(FillRectangle(document.Get(), 10, 10, 20, 20), 1);
    document.EndPage();
    const std::string first = document.GetOutput().GetBytes();
    EXPECT_THAT(first, StartsWith("%!PS-Adobe-3.0 EPSF-3.0\n%%Title: Document\n%%Creator: orvprint\n"));
    EXPECT_THAT(first, HasSubstr("%%BoundingBox: 0 0 72 37\n%%HiResBoundingBox: 0 0.6 72 37\n"));
    document.BeginPage(50.0, 50.0);
    document.EndPage();
    const std::string& text = document.Finish();
    EXPECT_EQ(document.GetOutput().GetPartCount(), 2U);
    EXPECT_THAT(text.substr(first.size()), StartsWith("%!PS-Adobe-3.0 EPSF-3.0\n"));
    EXPECT_THAT(text.substr(first.size()),
                HasSubstr("%%BoundingBox: 0 0 40 40\n%%HiResBoundingBox: 0 0 40 40\n"));
    ASSERT_FALSE(document.Boxes().empty());
    ExpectBox(document.Boxes()[0], {8, 13, 24, 29});
}

TEST(ORVPostScriptGeneratorTest, TheSameDrawingGivesTheSameBytes) {
    std::string before;
    for (int i = 0; i < 2; ++i) {
        PostScript document;
        document.BeginPage();
        EXPECT_EQ(WriteText(document.Get(), "again", 5.0, 20.0), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 5, 5, 50, 50, {255, 0, 0, 100}), 1);
        document.EndPage();
        const std::string text = document.Finish();
        EXPECT_TRUE(i == 0 || text == before);
        before = text;
    }
}

TEST(ORVPostScriptGeneratorTest, TheTimeIsTheOneThatIsGiven) {
    for (const auto& [time, expected] :
         {std::pair{std::int64_t{981'173'106}, "%%CreationDate: 2001-02-03T04:05:06Z\n"},
          {std::numeric_limits<std::int64_t>::max(), "%%Pages: 1\n"}}) {
        ORVFormatOptions options;
        options.creationTime = time;
        ORVMemoryOutput output;
        const auto format = ORVFindOutputFormat("ps")->create(output, options);
        EXPECT_EQ(format->Get().BeginDocument({}), 1);
        EXPECT_EQ(format->Get().BeginPage(PageInfo(9, 9)), 1);
        EXPECT_EQ(format->Get().EndPage(), 1);
        EXPECT_EQ(format->Get().EndDocument(), 1);
        EXPECT_THAT(output.GetBytes(),
                    StartsWith(std::string("%!PS-Adobe-3.0\n%%Creator: orvprint\n") + expected));
    }
}

TEST(ORVPostScriptGeneratorTest, TextStaysText) {
    PostScript document;
    document.BeginPage(400.0, 200.0);
    EXPECT_EQ(WriteText(document.Get(), "Office text", 10.0, 20.0), 1);
    EXPECT_EQ(WriteText(document.Get(), "bad \xFF bytes", 10.0, 50.0), 1);
    ORVTextStyle style;
    style.writingMode = 1;
    EXPECT_EQ(WriteText(document.Get(), "שלום (x)", 10.0, 80.0, style), 1);
    style.writingMode = 2;
    EXPECT_EQ(WriteText(document.Get(), "down", 300.0, 30.0, style), 1);
    document.EndPage();
    const std::string& text = document.Finish();
    EXPECT_THAT(text, HasSubstr("%%BeginResource: font"));
    EXPECT_THAT(document.Text(), HasSubstr("Office text"));
}

// Its characters take three and two bytes, so that confusing them would be noticed.
TEST(ORVPostScriptGeneratorTest, TextFromRightToLeftKeepsItsCharacters) {
    ORVTextStyle style;
    style.font = FindFontForAttribute("DejaVu Sans");
    PostScript document;
    document.BeginPage(400.0, 200.0);
    EXPECT_EQ(WriteText(document.Get(), "\uFB2A\u05D0", 10.0, 80.0, style), 1) << document.GetError();
    EXPECT_EQ(WriteText(document.Get(), "after", 10.0, 120.0, style), 1) << document.GetError();
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Text(), HasSubstr("after"));
}

// Interpreters take three components for YCbCr, so other JPEG files must not be embedded.
TEST(ORVPostScriptGeneratorTest, OnlyJpegFilesOfUsualColoursAreEmbedded) {
    constexpr int kGrey = 1, kRgb = 2, kYCbCr = 3;
    for (const int stored : {kGrey, kRgb, kYCbCr}) {
        JpegToWrite jpeg{.width = 8, .height = 8, .storedSpace = stored};
        if (stored == kGrey) jpeg.components = jpeg.inputSpace = kGrey;
        for (int i = 0; i < 64; ++i)
            for (int k = 0; k < jpeg.components; ++k) jpeg.samples.push_back(200);
        const auto image = ReadJpeg(WriteJpeg(jpeg));
        ASSERT_TRUE(image) << stored;
        PostScript document;
        document.BeginPage();
        EXPECT_EQ(document.Get().DrawImage({*image, {60.0, 0.0, 0.0, 40.0, 10.0, 10.0}}), 1);
        document.EndPage();
        EXPECT_EQ(CountOf(document.Finish(), "DCTDecode"), stored == kRgb ? 0U : 1U) << stored;
    }
}

TEST(ORVPostScriptGeneratorTest, JpegFilesAreEmbeddedAsTheyAre) {
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> image(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    ASSERT_TRUE(image);
    PostScript document;
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawImage({*image, {60.0, 0.0, 0.0, 40.0, 10.0, 10.0}}), 1);
    EXPECT_EQ(document.Get().DrawImage({*image, {6.0, 1.0, -1.0, 6.0, 30.0, 60.0}}), 1);
    document.EndPage();
    EXPECT_EQ(CountOf(document.Finish(), "DCTDecode"), 2U);
    ASSERT_EQ(document.Boxes().size(), 1U);
    ExpectBox(document.Boxes()[0], {8, 19.2, 56, 64});
}

// cairo keeps the content of a page in memory until the page ends.
TEST(ORVPostScriptGeneratorTest, LargeOpaqueImagesAreNotKept) {
    constexpr int kSide = 400;
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            pixels.insert(pixels.end(), {static_cast<std::uint8_t>(x / 2), static_cast<std::uint8_t>(y / 2),
                                         static_cast<std::uint8_t>((x + y) / 4), 255});
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(kSide, kSide, pixels));
    PostScript document;
    document.BeginPage(500.0, 500.0);
    for (const double x : {10.0, 50.0})
        EXPECT_EQ(document.Get().DrawImage({*image, {kSide, 0.0, 0.0, kSide, x, 20.0}}), 1);
    EXPECT_EQ(image->GetReferenceCount(), 1U);
    document.EndPage();
    document.Finish();
    const PostScript::Pixels drawn = document.Draw();
    for (const auto& [x, y] : {std::pair{0, 0}, {399, 399}, {200, 7}, {31, 350}}) {
        const auto colour = drawn.At(50 + x, 20 + y);
        EXPECT_NEAR(colour[0], x / 2, 2) << x << " " << y;
        EXPECT_NEAR(colour[1], y / 2, 2) << x << " " << y;
        EXPECT_NEAR(colour[2], (x + y) / 4, 2) << x << " " << y;
    }
}

TEST(ORVPostScriptGeneratorTest, TransparentPartsBecomePictures) {
    PostScript document;
    document.BeginPage(400.0, 400.0);
    EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 50, 50), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 20, 20, 50, 50, {255, 0, 0, 100}), 1);
    EXPECT_EQ(WriteText(document.Get(), "beside", 100.0, 380.0), 1);
    document.EndPage();
    const std::string& text = document.Finish();
    EXPECT_THAT(text, HasSubstr("res=300ppi"));
    EXPECT_THAT(document.Text(), HasSubstr("beside"));
}

// The outline that thickens a glyph overlaps its fill, which must not show.
TEST(ORVPostScriptGeneratorTest, TransparentTextIsEvenWhereItIsThickened) {
    ORVTextStyle style;
    style.font = FindFontForAttribute("Z003");
    ASSERT_TRUE(style.font);
    style.height = 40.0;
    style.weight = 26;
    const ORVTextLayout layout = ORVLayoutText("bold", style);
    ASSERT_EQ(layout.runs.size(), 1U);
    ASSERT_TRUE(layout.runs[0].syntheticBold);
    ORVPrintFill fill;
    fill.colour.opacity = 100;
    PostScript document;
    document.BeginPage(150.0, 90.0);
    EXPECT_EQ(
        document.Get().DrawText({layout, "bold", {1.0, 0.0, 0.0, -1.0, 10.0, 60.0}, &fill, nullptr, nullptr}),
        1);
    document.EndPage();
    document.Finish();
    EXPECT_NEAR(document.Darkest(), 155, 2);
}

// As separate images, each would require drawing the page once more.
TEST(ORVPostScriptGeneratorTest, ManyTransparentPartsBecomeOnePicture) {
    PostScript document;
    document.BeginPage(400.0, 400.0);
    EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 400, 200), 1);
    ORVMathBox2D box;
    box.Add({0, 0});
    box.Add({400, 200});
    EXPECT_EQ(document.Get().BeginClip(box), 1);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(FillRectangle(document.Get(), i % 40 * 10, i / 40 * 8, 5, 4, {255, 0, 0, 100}), 1);
    EXPECT_EQ(document.Get().EndClip(), 1);
    EXPECT_EQ(WriteText(document.Get(), "below", 100.0, 380.0), 1);
    document.EndPage();
    const std::string& text = document.Finish();
    EXPECT_EQ(CountOf(text, "Fallback Image"), 1U);
    EXPECT_THAT(document.Text(), HasSubstr("below"));
}

TEST(ORVPostScriptGeneratorTest, ClipsToBoxes) {
    PostScript document;
    document.BeginPage();
    ORVMathBox2D box;
    box.Add({10, 10});
    box.Add({30, 30});
    EXPECT_EQ(document.Get().BeginClip(box), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 90, 90), 1);
    EXPECT_EQ(document.Get().EndClip(), 1);
    document.EndPage();
    document.Finish();
    ASSERT_EQ(document.Boxes().size(), 1U);
    ExpectBox(document.Boxes()[0], {8, 48, 24, 64});
}

TEST(ORVPostScriptGeneratorTest, ClipsToOutlines) {
    for (const bool evenOdd : {false, true}) {
        PostScript document;
        document.BeginPage();
        ORVPrintPath rings = RectanglePath(1, 1, 7, 7), inner = RectanglePath(3, 3, 3, 3);
        rings.verbs.insert(rings.verbs.end(), inner.verbs.begin(), inner.verbs.end());
        rings.points.insert(rings.points.end(), inner.points.begin(), inner.points.end());
        EXPECT_EQ(document.Get().BeginClipPath({rings, {10, 0, 0, 10, 0, 0}, evenOdd}), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 90, 90), 1);
        EXPECT_EQ(document.Get().BeginClipPath({ORVPrintPath(), {}}), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 90, 90, {255, 0, 0, 255}), 1);
        EXPECT_EQ(document.Get().EndClipPath(), 1);
        EXPECT_EQ(document.Get().EndClipPath(), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 85, 85, 5, 5), 1);
        document.EndPage();
        const std::string text = document.Finish();
        EXPECT_EQ(CountOf(text, "Fallback Image"), 0U);
        const PostScript::Pixels pixels = document.Draw();
        EXPECT_EQ(pixels.At(5, 5)[1], 255);
        EXPECT_EQ(pixels.At(20, 20)[0], 0);
        EXPECT_EQ(pixels.At(45, 45)[1], evenOdd ? 255 : 0);
        EXPECT_EQ(pixels.At(87, 87)[1], 0);
    }
}

TEST(ORVPostScriptGeneratorTest, DashesBeginWhereTheyAreToldTo) {
    PostScript document;
    document.BeginPage();
    ORVPrintPath path;
    path.MoveTo({0, 45});
    path.LineTo({90, 45});
    const std::array dashes{20.0, 10.0};
    ORVPrintStroke stroke;
    stroke.width = 10.0;
    stroke.dashes = dashes;
    stroke.dashOffset = 15.0;
    EXPECT_EQ(document.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
    document.EndPage();
    document.Finish();
    const PostScript::Pixels pixels = document.Draw();
    EXPECT_EQ(pixels.At(2, 45)[0], 0);
    EXPECT_EQ(pixels.At(10, 45)[0], 255);
    EXPECT_EQ(pixels.At(20, 45)[0], 0);
}

TEST(ORVPostScriptGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    const double huge = std::numeric_limits<double>::max();
    const auto image = PlainImage(1, 1, {1, 2, 3});
    const ORVPrintFill fill;
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({-huge, 5.0});
    line.LineTo({huge, 5.0});
    const ORVTextLayout layout = ORVLayoutText("far", {});
    PostScript document;
    document.BeginPage();
    for (const double scale : {0.0, 1e-300, 1e-9, 1.0, 1e29, 1e300, std::nan("")}) {
        const ORVMathAffine2D map = ORVMathAffine2D::Scaling(1.0, scale);
        stroke.width = scale > 0.0 ? scale : 1.0;
        stroke.colour.opacity = scale < 1.0 ? 100 : 255;
        EXPECT_EQ(document.Get().DrawShape({line, map, &fill, &stroke}), 1) << scale;
        EXPECT_EQ(document.Get().DrawText({layout, "far", map, &fill, &stroke, nullptr}), 1) << scale;
        EXPECT_EQ(document.Get().DrawImage({*image, map}), 1) << scale;
    }
    document.EndPage();
    document.Finish();
}

TEST(ORVPostScriptGeneratorTest, RefusesPagesBeyondMeasure) {
    PostScript document;
    EXPECT_EQ(document.Get().BeginPage(PageInfo(20'000.0, 10.0, 7)), kPageTooLarge);
    EXPECT_THAT(document.GetError(), AllOf(HasSubstr("page 7"), HasSubstr("--paper")));
    EXPECT_EQ(document.Get().EndDocument(), 1);
}

TEST(ORVPostScriptGeneratorTest, OutputThatFailsIsNoticed) {
    LimitedOutput output(0);
    const auto format = ORVFindOutputFormat("ps")->create(output, {});
    EXPECT_EQ(format->Get().BeginDocument({}), 1);
    EXPECT_EQ(format->Get().BeginPage(PageInfo(9, 9)), 1);
    EXPECT_EQ(format->Get().EndPage(), 1);
    EXPECT_EQ(format->Get().EndDocument(), kOutputFailed);
}

TEST(ORVLoadModuleTest, SaysWhatIsMissing) {
    std::string error;
    EXPECT_EQ(ORVLoadModule("liborv-no-such-module.so", error), nullptr);
    EXPECT_THAT(error, HasSubstr("liborv-no-such-module.so"));
    error.clear();
    void* module = ORVLoadModule("liborvpostscript.so", error);
    ASSERT_NE(module, nullptr) << error;
    EXPECT_EQ(ORVFindInModule(module, "noSuchName", error), nullptr);
    EXPECT_THAT(error, HasSubstr("noSuchName"));
}

}  // namespace
