// SPDX-License-Identifier: Apache-2.0

// Gradients, clips, layers and masks: as written, and as another program draws them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>

#include "platform/print/ORVPrintFilter.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVString.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/shell_run.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Stops = std::array<ORVPrintGradientStop, 2>;
constexpr Stops kRedToBlue{{{0.0, {255, 0, 0, 255}}, {1.0, {0, 0, 255, 128}}}};

int FillWith(ORVPrintGenerator& generator, const ORVPrintGradient& gradient,
             const ORVPrintPath& path = RectanglePath(0, 0, 90, 90), const ORVMathAffine2D& toPage = {}) {
    ORVPrintFill fill;
    fill.colour = {255, 0, 0, 7};  // only used without support for gradients
    fill.gradient = &gradient;
    return generator.DrawShape({path, toPage, &fill, nullptr});
}

/// An SVG document as drawn by another program: one pixel per user unit, on white.
class Picture {
public:
    explicit Picture(const std::string& text) {
        const ScratchFolder folder;
        const std::string from = folder.PathOf("page.svg"), to = folder.PathOf("page.png");
        std::ofstream(from, std::ios::binary) << text;
        const ShellRun run("rsvg-convert -w 90 -h 90 -b white '" + from + "' -o '" + to + "'");
        EXPECT_EQ(run.status, 0) << run.text;
        image_ = ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromFile(ORVString(to.c_str()), 0, 0));
    }
    void Expect(int x, int y, int red, int green, int blue) const {
        ASSERT_TRUE(image_);
        const auto at = (static_cast<std::size_t>(y) * 90 + static_cast<std::size_t>(x)) * 4;
        const auto pixels = image_->GetPixels();
        EXPECT_NEAR(pixels[at], red, 4) << x << "," << y;
        EXPECT_NEAR(pixels[at + 1], green, 4) << x << "," << y;
        EXPECT_NEAR(pixels[at + 2], blue, 4) << x << "," << y;
    }

private:
    ORVRef<ORVPixelImage> image_;
};

TEST(SvgCompositionsTest, AGradientIsWrittenWithItsCoordinatesAndStops) {
    DrawnSvg page;
    ORVPrintGradient gradient = Gradient(kRedToBlue, {30, 0, 0, 20, 5, 6});
    gradient.spread = ORVPrintGradient::Spread::kReflect;
    EXPECT_EQ(FillWith(page.Get(), gradient, RectanglePath(1, 2, 3, 4)), 1);
    EXPECT_EQ(
        page.Content(),
        "<defs><linearGradient id=\"orv-g1\" gradientUnits=\"userSpaceOnUse\" x1=\"0\" y1=\"0\" x2=\"1\" "
        "y2=\"0\" gradientTransform=\"matrix(30 0 0 20 5 6)\" spreadMethod=\"reflect\">"
        "<stop offset=\"0\" stop-color=\"#f00\"/><stop offset=\"1\" stop-color=\"#00f\" "
        "stop-opacity=\".502\"/></linearGradient></defs>\n"
        "<rect fill=\"url(#orv-g1)\" x=\"1\" y=\"2\" width=\"3\" height=\"4\"/>\n");
}

TEST(SvgCompositionsTest, EqualGradientsAndStopsAreWrittenOnce) {
    DrawnSvg page;
    ORVPrintGradient gradient = Gradient(kRedToBlue, {30, 0, 0, 20, 5, 6});
    for (int i = 0; i < 3; ++i) EXPECT_EQ(FillWith(page.Get(), gradient), 1);
    gradient.toPage.dx = 7.0;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(FillWith(page.Get(), gradient), 1);
    gradient.kind = ORVPrintGradient::Kind::kRadial;
    gradient.endRadius = 2.0;
    EXPECT_EQ(FillWith(page.Get(), gradient), 1);
    const std::string text = page.Content();
    EXPECT_EQ(CountOf(text, "<linearGradient"), 2U);
    EXPECT_EQ(CountOf(text, "<radialGradient"), 1U);
    EXPECT_EQ(CountOf(text, "<stop "), 2U);
    EXPECT_EQ(CountOf(text, "xlink:href=\"#orv-g1\""), 2U);
    EXPECT_EQ(CountOf(text, "fill=\"url(#orv-g2)\""), 1U) << "neighbours of one style are a group";
    EXPECT_THAT(text, Not(HasSubstr("fill-opacity")));
}

TEST(SvgCompositionsTest, LinesHaveGradientsAndOffsetsOfDashes) {
    DrawnSvg page;
    const ORVPrintGradient gradient = Gradient(kRedToBlue);
    const std::array dashes{4.0, 2.0};
    ORVPrintStroke stroke;
    stroke.gradient = &gradient;
    stroke.dashes = dashes;
    stroke.dashOffset = 1.5;
    ORVPrintPath path;
    path.MoveTo({0, 0});
    path.LineTo({9, 0});
    EXPECT_EQ(page.Get().DrawShape({path, {2, 0, 0, 2, 0, 0}, nullptr, &stroke}), 1);
    // If the transform distorts the pen, it is written to the element; it must not apply to the gradient.
    EXPECT_EQ(page.Get().DrawShape({path, {2, 0, 0, 1, 0, 0}, nullptr, &stroke}), 1);
    const std::string text = page.Content();
    EXPECT_THAT(text, HasSubstr(" stroke=\"url(#orv-g1)\" stroke-width=\"2\" stroke-dasharray=\"8,4\" "
                                "stroke-dashoffset=\"3\""));
    EXPECT_THAT(text, HasSubstr("gradientTransform=\"matrix(1 0 0 2 0 0)\""));
}

TEST(SvgCompositionsTest, GradientsLookAsTheyShould) {
    DrawnSvg page;
    ORVPrintGradient gradient = Gradient(kRedToBlue, {30, 0, 0, 1, 0, 0});
    EXPECT_EQ(FillWith(page.Get(), gradient, RectanglePath(0, 0, 3, 1), {30, 0, 0, 30, 0, 0}), 1);
    // The circle of offset 0 contains that of offset 1.
    gradient = Gradient(kRedToBlue, {1, 0, 0, 1, 45, 60});
    gradient.kind = ORVPrintGradient::Kind::kRadial;
    gradient.end = {0, 0};
    gradient.startRadius = 20.0;
    gradient.endRadius = 10.0;
    gradient.spread = ORVPrintGradient::Spread::kReflect;
    EXPECT_EQ(FillWith(page.Get(), gradient, RectanglePath(0, 30, 90, 60)), 1);
    const Picture picture(page.Finish());
    picture.Expect(0, 15, 252, 0, 4);
    picture.Expect(15, 15, 155, 63, 163);  // the mean of both colours, at an opacity of 3/4
    picture.Expect(60, 15, 127, 127, 255);
    picture.Expect(45, 60, 238, 9, 26);  // nearly the colour at radius 20
    picture.Expect(45, 79, 242, 6, 18);
    picture.Expect(54, 60, 127, 121, 249);
}

TEST(SvgCompositionsTest, ClipsAreWrittenOncePerOutline) {
    DrawnSvg page;
    const ORVPrintPath path = RectanglePath(1, 1, 2, 2);
    for (const bool evenOdd : {false, true, false}) {
        EXPECT_EQ(page.Get().BeginClipPath({path, {10, 0, 0, 10, 0, 0}, evenOdd}), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0, 0, 90, 90), 1);
        EXPECT_EQ(page.Get().EndClipPath(), 1);
    }
    const std::string text = page.Content();
    EXPECT_THAT(text, StartsWith("<clipPath id=\"orv-c1\"><path d=\"M10 10h20v20H10z\"/></clipPath>\n"
                                 "<g clip-path=\"url(#orv-c1)\">\n<rect "));
    EXPECT_EQ(CountOf(text, "<clipPath"), 2U);
    EXPECT_EQ(CountOf(text, "clip-rule=\"evenodd\""), 1U);
    EXPECT_EQ(CountOf(text, "<g clip-path=\"url(#orv-c1)\""), 2U);
}

TEST(SvgCompositionsTest, LayersAreGroupsThatSayNoMoreThanTheyMust) {
    const ORVMathBox2D page = BoxOf(0, 0, 90, 90), part = BoxOf(1, 2, 5, 6);
    using Blend = ORVPrintBlendMode;
    for (const auto& [layer, expected] :
         {std::pair{ORVPrintLayer{0.25, Blend::kNormal, true, false, page}, "<g opacity=\".25\">\n"},
          {ORVPrintLayer{1.0, Blend::kColourDodge, true, false, page},
           "<g style=\"mix-blend-mode:color-dodge\">\n"},
          {ORVPrintLayer{1.0, Blend::kNormal, true, false, page}, "<g style=\"isolation:isolate\">\n"},
          {ORVPrintLayer{1.0, Blend::kNormal, false, false, part}, "<g>\n"},
          {ORVPrintLayer{0.5, Blend::kScreen, false, false, part},
           "<clipPath id=\"orv-c1\"><path d=\"M1 2h4v4H1z\"/></clipPath>\n"
           "<g clip-path=\"url(#orv-c1)\" opacity=\".5\" style=\"mix-blend-mode:screen\">\n"},
          {ORVPrintLayer{1.0, Blend::kNormal, true, false, {}},
           "<clipPath id=\"orv-c1\"><path d=\"\"/></clipPath>\n<g clip-path=\"url(#orv-c1)\">\n"}}) {
        DrawnSvg drawn;
        EXPECT_EQ(drawn.Get().BeginLayer(layer), 1);
        EXPECT_EQ(drawn.Get().EndLayer(), 1);
        EXPECT_EQ(drawn.Content(), std::string(expected) + "</g>\n");
    }
}

TEST(SvgCompositionsTest, WhatEndsMustHaveBegun) {
    DrawnSvg page;
    EXPECT_NE(page.Get().EndLayer(), 1);
    EXPECT_EQ(page.Get().BeginLayer({}), 1);
    EXPECT_NE(page.Get().EndGroup(), 1);
    EXPECT_NE(page.Get().EndClipPath(), 1);
    EXPECT_NE(page.Get().EndMask(), 1);
    EXPECT_EQ(page.Get().BeginMask({}), 1);
    EXPECT_NE(page.Get().EndLayer(), 1);
    page.Finish();  // still well-formed
}

TEST(SvgCompositionsTest, LayersMasksAndBlendModesLookAsTheyShould) {
    DrawnSvg page;
    EXPECT_EQ(page.Get().GetPowers(), kAllPowers | ORVPrintGenerator::kContentLayers);
    EXPECT_EQ(FillRectangle(page.Get(), 0, 0, 90, 90, {255, 255, 255, 255}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0, 0, 45, 90, {255, 255, 0, 255}), 1);
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.box = BoxOf(0, 0, 90, 20);
    EXPECT_EQ(page.Get().BeginLayer(layer), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 50, 0, 20, 40, {255, 0, 0, 255}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 60, 0, 20, 40, {0, 0, 255, 255}), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    layer = {};
    layer.blend = ORVPrintBlendMode::kMultiply;
    layer.box = BoxOf(30, 30, 60, 50);
    EXPECT_EQ(page.Get().BeginLayer(layer), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 30, 30, 30, 20, {0, 255, 255, 255}), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    for (const bool isLuminance : {true, false}) {
        const double top = isLuminance ? 60.0 : 75.0;
        layer = {};
        layer.hasMask = true;
        layer.box = BoxOf(45, top, 90, top + 10);
        const auto kind = isLuminance ? ORVPrintMask::Kind::kLuminance : ORVPrintMask::Kind::kOpacity;
        EXPECT_EQ(page.Get().BeginLayer(layer), 1);
        EXPECT_EQ(page.Get().BeginMask({kind, BoxOf(45, top, 80, top + 10)}), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 45, top, 15, 10, {0, 0, 0, 255}), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 60, top, 30, 10, {255, 255, 255, 128}), 1);
        EXPECT_EQ(page.Get().EndMask(), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0, 0, 90, 90, {255, 0, 0, 255}), 1);
        EXPECT_EQ(page.Get().EndLayer(), 1);
    }
    layer.box = BoxOf(0, 0, 90, 90);
    EXPECT_EQ(page.Get().BeginLayer(layer), 1);
    EXPECT_EQ(page.Get().BeginMask({}), 1);
    EXPECT_EQ(page.Get().EndMask(), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0, 0, 90, 90), 1);  // hidden by an empty mask
    EXPECT_EQ(page.Get().EndLayer(), 1);
    const Picture picture(page.Finish());
    picture.Expect(55, 10, 255, 127, 127);
    picture.Expect(65, 10, 127, 127, 255);
    picture.Expect(65, 25, 255, 255, 255);
    picture.Expect(35, 40, 0, 255, 0);
    picture.Expect(55, 40, 0, 255, 255);
    picture.Expect(50, 65, 255, 255, 255);
    picture.Expect(70, 65, 255, 127, 127);
    picture.Expect(85, 65, 255, 255, 255);
    picture.Expect(50, 80, 255, 0, 0);
    picture.Expect(70, 80, 255, 127, 127);
    picture.Expect(85, 80, 255, 255, 255);
    picture.Expect(40, 80, 255, 255, 0);
}

TEST(SvgFilterTest, AnotherProgramDrawsThemAlike) {
    DrawnSvg page(90, 90);
    const int kSource = ORVPrintFilterStep::kSource;
    const ORVMathBox2D whole{0, 45, 0, 45};
    const std::vector<ORVPrintFilterStep> steps{
        {ORVFilterFlood{{0, 0, 255, 255}}, {}, true, {5, 15, 5, 15}},
        {ORVFilterOffset{10.0, 0.0}, {kSource}, true, whole},
        {ORVFilterMerge{}, {0, 1}, true, whole},
    };
    // One filter unit is two page units; the content is in page units.
    ASSERT_EQ(page.Get().BeginFilter({steps, whole, {2, 0, 0, 2, 0, 0}, 0}), 1);
    ASSERT_EQ(FillRectangle(page.Get(), 40, 40, 20, 20, {255, 0, 0, 255}), 1);
    ASSERT_EQ(page.Get().EndFilter(), 1);
    ASSERT_EQ(page.Get().BeginFilter({steps, whole, {2, 0, 0, 2, 0, 0}, 0}), 1);
    ASSERT_EQ(page.Get().EndFilter(), 1);
    const std::string text = page.Finish();
    EXPECT_EQ(CountOf(text, "<filter "), 1U) << text;
    const Picture picture(text);
    picture.Expect(20, 20, 0, 0, 255);
    picture.Expect(70, 50, 255, 0, 0);
    picture.Expect(45, 50, 255, 255, 255);
}

TEST(SvgTilesTest, TilesAreAPattern) {
    DrawnSvg page;
    ORVPrintTiles tiles;
    tiles.tile = {1.0, 21.0, 0.0, 30.0};
    tiles.xStep = 20.0;
    tiles.yStep = 30.0;
    tiles.toPage = ORVMathAffine2D::Scaling(0.5, 0.5);
    tiles.shown = {0.0, 60.0, 0.0, 90.0};
    ASSERT_EQ(page.Get().BeginTiles(tiles), ORVPrintGenerator::kDrawTile);
    EXPECT_EQ(FillRectangle(page.Get(), 1.0, 0.0, 10.0, 30.0, {255, 0, 0}), 1);
    EXPECT_EQ(page.Get().EndTiles(), 1);
    EXPECT_NE(page.Get().EndTiles(), 1);
    // The tiles of a pattern cannot have gaps, but a step that differs by a rounding error is accepted.
    tiles.tile = {0.1, 0.3, 0.0, 30.0};
    tiles.xStep = 0.2;
    ASSERT_NE(tiles.tile.xMax - tiles.tile.xMin, tiles.xStep);
    ASSERT_EQ(page.Get().BeginTiles(tiles), ORVPrintGenerator::kDrawTile);
    EXPECT_EQ(page.Get().EndTiles(), 1);
    tiles.xStep = 0.25;
    EXPECT_EQ(page.Get().BeginTiles(tiles), ORVPrintGenerator::kNoTiles);
    const std::string text = page.Finish();
    EXPECT_THAT(
        text, HasSubstr("<pattern id=\"orv-p1\" patternUnits=\"userSpaceOnUse\" x=\"1\" y=\"0\" width=\"20\" "
                        "height=\"30\" patternTransform=\"matrix(.5 0 0 .5 0 0)\">"));
    EXPECT_THAT(
        text,
        HasSubstr("</pattern>\n<rect x=\"0\" y=\"0\" width=\"60\" height=\"90\" fill=\"url(#orv-p1)\"/>"));
    const Picture picture(text);
    picture.Expect(3, 50, 255, 0, 0);
    picture.Expect(8, 50, 255, 255, 255);
    picture.Expect(53, 80, 255, 0, 0);
    picture.Expect(65, 80, 255, 255, 255);
}

}  // namespace
