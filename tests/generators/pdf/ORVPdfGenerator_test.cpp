// SPDX-License-Identifier: Apache-2.0

// External programs check the output: see DrawnPdf.

#include "generators/pdf/ORVPdfGenerator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "generators/common/generator_status.h"
#include "tests/generators/limited_output.h"
#include "tests/generators/pdf/drawn_pdf.h"
#include "tests/support/text_search.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(ORVPdfGeneratorTest, PagesHaveTheirOwnSizes) {
    DrawnPdf document("A title with (brackets) and é");
    document.BeginPage(90.0, 45.0);
    document.EndPage();
    document.BeginPage(1052.36, 744.09);
    document.EndPage();
    document.Finish();
    const std::string info = document.Run("pdfinfo -l 2");
    EXPECT_THAT(info, HasSubstr("A title with (brackets) and é"));
    EXPECT_THAT(info, HasSubstr("Page    1 size:  72 x 36 pts"));
    EXPECT_THAT(info, HasSubstr("Page    2 size:  841.888 x 595.272 pts (A4)"));
}

TEST(ORVPdfGeneratorTest, ManyPagesTakeManyObjectStreams) {
    DrawnPdf document;
    for (int page = 0; page < 300; ++page) {
        document.BeginPage();
        EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 5.0), 1);
        document.EndPage();
    }
    document.Finish();
    EXPECT_THAT(document.Run("pdfinfo"), HasSubstr("Pages:           300"));
    EXPECT_EQ(CountOf(document.Bytes(), "/Type/ObjStm"), 4U);
    EXPECT_EQ(CountOf(document.Bytes(), "/Type/Page"), 0U);  // all of them in object streams
}

TEST(ORVPdfGeneratorTest, TransparencyAndPatternsAreSound) {
    const auto tile = PlainImage(2, 2, {9, 9, 9});
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 50.0, 50.0, {1, 2, 3, 100}), 1);
    ORVPrintFill fill;
    fill.pattern = tile.get();
    const ORVPrintPath path = RectanglePath(20.0, 20.0, 50.0, 50.0);
    for (const std::uint8_t opacity : {std::uint8_t{255}, std::uint8_t{77}}) {
        fill.colour.opacity = opacity;
        EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    }
    document.EndPage();
    document.Finish();
}

TEST(ORVPdfGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    DrawnPdf document;
    document.BeginPage();
    const double huge = std::numeric_limits<double>::max();
    const double tinyDashes[]{1e-30, 1e-30}, dashes[]{0.2, 0.2};
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({-huge, 5.0});
    line.LineTo({huge, 5.0});
    for (const double width : {1e-300, 1.0, huge}) {
        stroke.width = width;
        for (const std::span<const double> list :
             {std::span<const double>(), std::span<const double>(tinyDashes),
              std::span<const double>(dashes)}) {
            stroke.dashes = list;
            EXPECT_EQ(document.Get().DrawShape({line, {}, nullptr, &stroke}), 1);
        }
    }
    for (const double scale : {0.0, 1e-300, 1e300, std::nan("")})
        EXPECT_EQ(document.Get().DrawShape({line, ORVMathAffine2D::Scaling(scale, scale), nullptr, &stroke}),
                  1);
    document.EndPage();
    document.Finish();
}

TEST(ORVPdfGeneratorTest, ClipsCutWhatIsDrawnAndItsLinks) {
    DrawnPdf document;
    document.BeginPage(90.0, 90.0);
    ORVPrintGroup link;
    link.linkURL = "http://example.org/";
    EXPECT_EQ(document.Get().BeginClip({10.0, 40.0, 20.0, 60.0}), 1);
    EXPECT_EQ(document.Get().BeginClip({0.0, 30.0, 0.0, 90.0}), 1);
    EXPECT_EQ(document.Get().BeginGroup(link), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 90.0, 90.0), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    EXPECT_EQ(document.Get().EndClip(), 1);
    EXPECT_EQ(document.Get().EndClip(), 1);
    EXPECT_NE(document.Get().EndClip(), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    8\n    24\n    24\n    56\n  ]"));
    // 20 x 40 black pixels.
    const std::string pixels = document.Pixels();
    EXPECT_EQ(std::count(pixels.end() - 90 * 90 * 3, pixels.end(), '\0'), 20 * 40 * 3);
}

TEST(ORVPdfGeneratorTest, PagesBeyondTheFormatAreRefusedAndTheRestIsClosed) {
    ORVMemoryOutput output;
    ORVPdfGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"", 2}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(10.0, 10.0)), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(20'000.0, 10.0, 2)), kPageTooLarge);
    EXPECT_THAT(generator.GetError(), AllOf(HasSubstr("page 2"), HasSubstr("--paper")));
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_THAT(output.GetBytes(), HasSubstr("%%EOF"));
}

TEST(ORVPdfGeneratorTest, OutputThatFailsIsReported) {
    LimitedOutput output(0);
    ORVPdfGenerator generator(output);
    int result = generator.BeginDocument({"", 1});
    if (result == 1) result = generator.BeginPage(PageInfo(10.0, 10.0));
    if (result == 1) result = FillRectangle(generator, 0.0, 0.0, 1.0, 1.0);
    if (result == 1) result = generator.EndPage();
    const int ended = generator.EndDocument();
    EXPECT_EQ(result == 1 ? ended : result, kOutputFailed);
}

TEST(ORVPdfGeneratorTest, OutputThatFailsLateIsReported) {
    LimitedOutput output(100'000);
    ORVPdfGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(90.0, 90.0)), 1);
    int result = 1;
    for (int i = 0; i < 2'000'000 && result == 1; ++i)
        result = FillRectangle(generator, i % 8300 * 0.01, i % 8900 * 0.01, 0.5, 0.5,
                               {static_cast<std::uint8_t>(i * 7), static_cast<std::uint8_t>(i >> 3), 7});
    EXPECT_EQ(result, kOutputFailed);
    EXPECT_EQ(output.GetError(), "no room");
    EXPECT_EQ(generator.EndDocument(), kOutputFailed);
}

}  // namespace
