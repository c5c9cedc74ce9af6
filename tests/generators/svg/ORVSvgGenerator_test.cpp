// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/ORVSvgGenerator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "generators/common/generator_status.h"
#include "tests/generators/limited_output.h"
#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/text_search.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(ORVSvgGeneratorTest, PagesAreMeasuredInMillimetresAndUserUnits) {
    ORVMemoryOutput output;
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"Set", 2}), 1);
    ORVPrintPageInfo page = PageInfo(90.0, 744.09);
    page.id = "p 1";
    page.title = "One & only";
    page.description = "said <so>";
    EXPECT_EQ(generator.BeginPage(page), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(1.5, 1e-3)), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(output.GetPartCount(), 2U);
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "version=\"1.1\"";
    EXPECT_EQ(output.GetBytes(),
              head +
                  " id=\"p_1\" width=\"25.4mm\" height=\"209.998733mm\" viewBox=\"0 0 90 "
                  "744.09\">\n<title>One &amp; only</title>\n<desc>said &lt;so&gt;</desc>\n"
                  "</svg>\n" +
                  head +
                  " width=\".423333333mm\" height=\".000282222222mm\" viewBox=\"0 0 1.5 "
                  ".001\">\n<title>Set</title>\n</svg>\n");
}

// Each page is a separate document.
TEST(ORVSvgGeneratorTest, PagesHaveTheirOwnIdentifiers) {
    const auto image = PlainImage(1, 1, {1, 2, 3});
    ORVMemoryOutput output;
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"", 2}), 1);
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    const ORVPrintFill fill;
    for (unsigned int page = 1; page <= 2; ++page) {
        EXPECT_EQ(generator.BeginPage(PageInfo(9.0, 9.0, page)), 1);
        EXPECT_EQ(generator.DrawShape({path, {}, &fill, nullptr, "a"}), 1);
        EXPECT_EQ(generator.DrawImage({*image, {}}), 1);
        EXPECT_EQ(generator.EndPage(), 1);
    }
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(CountOf(output.GetBytes(), "<rect id=\"a\""), 2U);
    EXPECT_EQ(CountOf(output.GetBytes(), "<image id=\"orv-i1\""), 2U);
}

TEST(ORVSvgGeneratorTest, GroupsKeepIdentifiersTextsAndLinks) {
    DrawnSvg page;
    ORVSvgGenerator& generator = page.Get();
    ORVPrintGroup group, again, link, inner, place;
    group.id = "a b";
    group.description = "d<";
    again.id = "a b";
    link.linkURL = "http://x/?a=1&b=\"2\"";
    link.linkShow = 1;
    inner.linkElementId = "c";
    place.id = "q";
    place.linkElementId = "a b";
    for (const ORVPrintGroup* one : {&group, &again, &link, &inner, &place})
        EXPECT_EQ(generator.BeginGroup(*one), 1);
    EXPECT_EQ(FillRectangle(generator, 0, 0, 1, 1), 1);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(generator.EndGroup(), 1);
    EXPECT_EQ(generator.BeginGroup(inner), 1);
    EXPECT_EQ(generator.EndGroup(), 1);
    EXPECT_NE(generator.EndGroup(), 1);
    EXPECT_EQ(page.Content(),
              "<g id=\"a_b\">\n<desc>d&lt;</desc>\n"
              "<a xlink:href=\"http://x/?a=1&amp;b=&quot;2&quot;\" xlink:show=\"new\" target=\"_blank\">\n"
              "<g id=\"q\">\n<rect width=\"1\" height=\"1\"/>\n</g>\n</a>\n</g>\n"
              "<a xlink:href=\"#c\">\n</a>\n");
}

TEST(ORVSvgGeneratorTest, LinksRunNothing) {
    for (const auto& [address, isWritten] : {std::pair{"javascript:alert(1)", false}, {"mailto:a@b", true}}) {
        DrawnSvg page;
        ORVPrintGroup link;
        link.linkURL = address;
        EXPECT_EQ(page.Get().BeginGroup(link), 1);
        EXPECT_EQ(page.Get().EndGroup(), 1);
        const std::string content = page.Content();
        EXPECT_EQ(content.find(address) != content.npos, isWritten);
        EXPECT_EQ(content.empty(), !isWritten);
    }
}

TEST(ORVSvgGeneratorTest, ShapesKeepTheirIdentifiers) {
    const auto image = PlainImage(1, 1, {1, 2, 3});
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    const ORVPrintFill fill;
    DrawnSvg page;
    EXPECT_TRUE(page.Get().KeepsIdentifiers());
    // A repeated identifier is written once, an empty one is not written.
    for (const char* id : {"a b", "a b", "", "\"c\""})
        EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr, id}), 1);
    EXPECT_EQ(page.Get().DrawImage({*image, {}, "i"}), 1);
    const std::string content = page.Content();
    EXPECT_THAT(
        content,
        HasSubstr(
            "<rect id=\"a_b\" width=\"1\" height=\"1\"/>\n<rect width=\"1\" height=\"1\"/>\n"
            "<rect width=\"1\" height=\"1\"/>\n<rect id=\"&quot;c&quot;\" width=\"1\" height=\"1\"/>\n"));
    EXPECT_THAT(content, HasSubstr("<use xlink:href=\"#orv-i1\" id=\"i\""));
}

TEST(ORVSvgGeneratorTest, ShapeOfTwoElementsHasItsIdentifierOnce) {
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    const ORVPrintFill fill;
    const ORVPrintStroke stroke;
    DrawnSvg page;
    // The transform distorts the pen but leaves the area a rectangle, so fill and stroke are two elements.
    EXPECT_EQ(page.Get().DrawShape({path, {1, 0, 0, 3, 0, 0}, &fill, &stroke, "s"}), 1);
    const std::string content = page.Content();
    EXPECT_EQ(CountOf(content, "<rect"), 2U) << content;
    EXPECT_EQ(CountOf(content, "id=\"s\""), 1U) << content;
}

TEST(ORVSvgGeneratorTest, TextInPiecesIsAGroupUnderItsIdentifier) {
    const ORVPrintFill fill;
    const std::string words = "one", mixed = "one \u05D0\u05D1";
    const ORVPrintPath clip = RectanglePath(0, 0, 9, 9);
    const ORVTextLayout oneRun = ORVLayoutText(words, {}), twoRuns = ORVLayoutText(mixed, {});
    const ORVMathAffine2D upright{1.0, 0.0, 0.0, -1.0, 9.0, 9.0};
    {
        DrawnSvg page;
        EXPECT_EQ(page.Get().DrawText({oneRun, words, upright, &fill, nullptr, nullptr, "t"}), 1);
        EXPECT_THAT(page.Content(), ContainsRegex("<text [^>]*id=\"t\"[^>]*>one</text>"));
    }
    {
        DrawnSvg page;
        EXPECT_EQ(page.Get().DrawText({twoRuns, mixed, upright, &fill, nullptr, nullptr, "t"}), 1);
        const std::string content = page.Content();
        EXPECT_THAT(content, StartsWith("<g id=\"t\">\n"));
        EXPECT_EQ(CountOf(content, "id=\"t\""), 1U);
        EXPECT_EQ(CountOf(content, "<text"), 2U);
    }
    DrawnSvg page;
    EXPECT_EQ(page.Get().DrawText({oneRun, words, upright, &fill, nullptr, &clip, "t"}), 1);
    const std::string content = page.Content();
    EXPECT_THAT(content, StartsWith("<g id=\"t\">\n<clipPath"));
    EXPECT_EQ(CountOf(content, "<g"), CountOf(content, "</g>"));
}

TEST(ORVSvgGeneratorTest, SymbolsHoldNoIdentifiers) {
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    const ORVPrintFill fill;
    DrawnSvg page;
    EXPECT_EQ(page.Get().BeginSymbol({&page, {}}), ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr, "s"}), 1);
    EXPECT_EQ(page.Get().EndSymbol(), 1);
    EXPECT_THAT(page.Content(), Not(HasSubstr("id=\"s\"")));
}

TEST(ORVSvgGeneratorTest, OwnIdentifiersKeepClearOfTheDrawings) {
    const auto image = PlainImage(1, 1, {1, 2, 3});
    DrawnSvg page;
    ORVPrintGroup first, second;
    first.id = "orv-i1";
    second.id = "orv-i2";
    EXPECT_EQ(page.Get().BeginGroup(first), 1);
    EXPECT_EQ(page.Get().DrawImage({*image, {}}), 1);
    EXPECT_EQ(page.Get().BeginGroup(second), 1);
    const std::string text = page.Finish();
    EXPECT_EQ(CountOf(text, "id=\"orv-i1\""), 1U);
    EXPECT_EQ(CountOf(text, "id=\"orv-i2\""), 1U);
    EXPECT_THAT(text, HasSubstr("<image id=\"orv-i2\""));
}

TEST(ORVSvgGeneratorTest, ClipsToBoxes) {
    DrawnSvg page;
    ORVMathBox2D box;
    box.Add({1, 2});
    box.Add({11, 22});
    EXPECT_EQ(page.Get().BeginClip(box), 1);
    EXPECT_NE(page.Get().EndGroup(), 1);
    EXPECT_EQ(page.Get().BeginClip({}), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    EXPECT_NE(page.Get().EndClip(), 1);
    EXPECT_EQ(
        page.Content(),
        "<clipPath id=\"orv-c1\"><path d=\"M1 2h10v20H1z\"/></clipPath>\n<g clip-path=\"url(#orv-c1)\">\n"
        "<clipPath id=\"orv-c2\"><path d=\"\"/></clipPath>\n<g clip-path=\"url(#orv-c2)\">\n</g>\n</g>\n");
}

TEST(ORVSvgGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    const double huge = std::numeric_limits<double>::max();
    const auto image = PlainImage(1, 1, {1, 2, 3});
    const double dashes[]{1e-30, 1e-30};
    const ORVPrintFill fill;
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({-huge, 5.0});
    line.LineTo({huge, 5.0});
    line.CubicTo({huge, huge}, {-huge, huge}, {0.0, 0.0});
    const ORVTextLayout layout = ORVLayoutText("far", {});
    DrawnSvg page;
    for (const double scale : {0.0, 1e-300, 1e-29, 1e-9, 1.0, 1e29, 1e300, std::nan("")})
        for (const ORVMathAffine2D& map :
             {ORVMathAffine2D::Scaling(scale, scale), ORVMathAffine2D::Scaling(1.0, scale),
              ORVMathAffine2D::Translation(scale, -scale)}) {
            stroke.width = scale > 0.0 ? scale : 1.0;
            stroke.dashes = scale < 1.0 ? std::span<const double>(dashes) : std::span<const double>();
            EXPECT_EQ(page.Get().DrawShape({line, map, &fill, &stroke}), 1);
            EXPECT_EQ(page.Get().DrawText({layout, "far", map, &fill, &stroke, &line}), 1);
            EXPECT_EQ(page.Get().DrawImage({*image, map}), 1);
            const int result = page.Get().BeginSymbol({&map, map});
            if (result == ORVPrintGenerator::kDrawSymbol) {
                EXPECT_EQ(page.Get().DrawShape({line, map, &fill, &stroke}), 1);
                EXPECT_EQ(page.Get().EndSymbol(), 1);
            }
        }
    const std::string text = page.Finish();
    for (const char* wrong : {"nan", "inf", "e+", "e-0", "e-1", "e-2"})
        EXPECT_THAT(text, Not(HasSubstr(wrong)));
}

TEST(ORVSvgGeneratorTest, RefusesPagesBeyondMeasure) {
    ORVMemoryOutput output;
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(2e6, 10.0, 7)), kPageTooLarge);
    EXPECT_THAT(generator.GetError(), AllOf(HasSubstr("page 7"), HasSubstr("--paper")));
    EXPECT_NE(FillRectangle(generator, 0, 0, 1, 1), 1);
}

TEST(ORVSvgGeneratorTest, OutputThatFailsIsNoticed) {
    LimitedOutput output(1000);
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(90.0, 90.0)), 1);
    int result = 1;
    for (int i = 0; i < 100'000 && result == 1; ++i)
        result = FillRectangle(generator, i % 100, 0, 1, 1, {static_cast<std::uint8_t>(i % 2), 0, 0, 255});
    EXPECT_EQ(result, kOutputFailed);
    EXPECT_EQ(generator.EndDocument(), kOutputFailed);
}

}  // namespace
