// SPDX-License-Identifier: Apache-2.0

// Gradients as a PostScript interpreter draws them.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "platform/visualization/fonts/ORVFont.h"
#include "tests/generators/drawing_calls.h"
#include "tests/generators/postscript/drawn_postscript.h"
#include "tests/support/text_search.h"

namespace {

constexpr std::array<ORVPrintGradientStop, 2> kRedToBlue{{{0.0, {255, 0, 0, 255}}, {1.0, {0, 0, 255, 255}}}};
using Spread = ORVPrintGradient::Spread;

/// Makes a gradient on a page of 90 by 90: linear from x = 30 to 60, or radial from radius 15 to 30.
ORVPrintGradient SpreadGradient(ORVPrintGradient::Kind kind, Spread spread,
                                std::span<const ORVPrintGradientStop> stops) {
    ORVPrintGradient gradient = Gradient(stops, {30, 0, 0, 30, 0, 0});
    gradient.kind = kind;
    gradient.spread = spread;
    if (kind == ORVPrintGradient::Kind::kLinear) {
        gradient.start = {1.0, 0.0};
        gradient.end = {2.0, 0.0};
    } else {
        gradient.start = {1.5, 1.5};
        gradient.end = {1.5, 1.5};
        gradient.startRadius = 0.5;
        gradient.endRadius = 1.0;
    }
    return gradient;
}

/// Ends the page, all of it filled with the gradient.
void FillPage(PostScript& document, const ORVPrintGradient& gradient) {
    ORVPrintFill fill;
    fill.gradient = &gradient;
    const ORVPrintPath path = RectanglePath(0, 0, 90, 90);
    EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    document.EndPage();
}

void ExpectColour(const std::array<int, 3>& actual, int red, int blue, const std::string& what) {
    EXPECT_NEAR(actual[0], red, 12) << what;
    EXPECT_NEAR(actual[1], 0, 3) << what;
    EXPECT_NEAR(actual[2], blue, 12) << what;
}

TEST(ORVPostScriptGeneratorTest, GradientsStayVectorsWhateverLiesBelow) {
    struct Row {
        ORVPrintGradient::Kind kind;
        Spread spread;
        double x;       // on the horizontal centre line
        int red, blue;  // expected at x
    };
    using Kind = ORVPrintGradient::Kind;
    for (const Row& row : {Row{Kind::kLinear, Spread::kPad, 10.0, 255, 0},
                           {Kind::kLinear, Spread::kPad, 45.0, 127, 128},
                           {Kind::kLinear, Spread::kPad, 80.0, 0, 255},
                           {Kind::kLinear, Spread::kReflect, 7.5, 64, 191},
                           {Kind::kLinear, Spread::kReflect, 82.5, 191, 64},
                           {Kind::kLinear, Spread::kRepeat, 7.5, 191, 64},
                           {Kind::kLinear, Spread::kRepeat, 82.5, 64, 191},
                           {Kind::kRadial, Spread::kPad, 45.0, 255, 0},
                           {Kind::kRadial, Spread::kPad, 67.5, 127, 128},
                           {Kind::kRadial, Spread::kPad, 85.0, 0, 255},
                           {Kind::kRadial, Spread::kReflect, 49.0, 70, 185},
                           {Kind::kRadial, Spread::kReflect, 78.75, 64, 191},
                           {Kind::kRadial, Spread::kRepeat, 52.5, 127, 128},
                           {Kind::kRadial, Spread::kRepeat, 78.75, 191, 64}}) {
        PostScript document;
        document.BeginPage();
        EXPECT_EQ(document.Get().GetPowers(), ORVPrintGenerator::kGradients | ORVPrintGenerator::kClipPaths);
        EXPECT_EQ(FillRectangle(document.Get(), 0, 0, 90, 90, {0, 255, 0, 255}), 1);
        const ORVPrintGradient gradient = SpreadGradient(row.kind, row.spread, kRedToBlue);
        FillPage(document, gradient);
        const std::string text = document.Finish();
        EXPECT_EQ(CountOf(text, "Fallback Image"), 0U);
        EXPECT_EQ(CountOf(text, "/ImageType"), 0U);
        EXPECT_GE(CountOf(text, "/ShadingType"), 1U);
        ExpectColour(document.Draw().At(row.x, 45.0), row.red, row.blue, std::to_string(row.x));
    }
}

TEST(ORVPostScriptGeneratorTest, EndsOfGradientsGoOnAsTheirOutermostStops) {
    constexpr ORVPrintColour kRed{255, 0, 0, 255}, kGreen{0, 255, 0, 255}, kBlue{0, 0, 255, 255};
    struct Row {
        std::vector<ORVPrintGradientStop> stops;
        Spread spread;
        double x;
        ORVPrintColour expected;
    };
    for (const Row& row :
         std::vector<Row>{{{{0.0, kRed}, {0.5, kGreen}, {0.5, kBlue}}, Spread::kPad, 80.0, kBlue},
                          {{{0.0, kRed}, {0.5, kGreen}, {0.5, kBlue}}, Spread::kRepeat, 80.0, kBlue},
                          {{{0.0, kRed}, {1.0, kGreen}, {1.0, kBlue}}, Spread::kPad, 80.0, kBlue},
                          {{{0.0, kRed}, {0.0, kGreen}, {1.0, kBlue}}, Spread::kPad, 10.0, kRed},
                          {{{0.5, kRed}, {0.5, kGreen}, {1.0, kBlue}}, Spread::kPad, 10.0, kRed},
                          {{{0.5, kRed}, {0.5, kGreen}, {1.0, kBlue}}, Spread::kPad, 35.0, kRed},
                          {{{0.4, kRed}, {0.5, kBlue}}, Spread::kRepeat, 65.0, kRed},
                          {{{0.4, kRed}, {0.5, kBlue}}, Spread::kRepeat, 25.0, kBlue},
                          {{{0.4, kRed}, {0.5, kBlue}}, Spread::kReflect, 65.0, kBlue}}) {
        PostScript document;
        document.BeginPage();
        const ORVPrintGradient gradient =
            SpreadGradient(ORVPrintGradient::Kind::kLinear, row.spread, row.stops);
        FillPage(document, gradient);
        document.Finish();
        EXPECT_EQ(document.Draw().At(row.x, 45.0),
                  (std::array<int, 3>{row.expected.red, row.expected.green, row.expected.blue}))
            << row.stops.size() << " stops at x = " << row.x;
    }
}

TEST(ORVPostScriptGeneratorTest, LinesAndTextHaveGradients) {
    PostScript document;
    document.BeginPage();
    const ORVPrintGradient gradient =
        SpreadGradient(ORVPrintGradient::Kind::kLinear, Spread::kPad, kRedToBlue);
    ORVPrintStroke stroke;
    stroke.gradient = &gradient;
    stroke.width = 10.0;
    ORVPrintPath path;
    path.MoveTo({0, 1});
    path.LineTo({9, 1});
    EXPECT_EQ(document.Get().DrawShape({path, {10, 0, 0, 10, 0, 0}, nullptr, &stroke}), 1);
    ORVPrintFill fill;
    fill.gradient = &gradient;
    ORVTextStyle style;
    style.height = 90.0;
    const std::string letters = "\xE2\x80\x94\xE2\x80\x94";  // two em dashes: bars at half height
    const ORVTextLayout layout = ORVLayoutText(letters, style);
    EXPECT_EQ(document.Get().DrawText({layout, letters, {0.5, 0, 0, -0.5, 0, 80}, &fill, nullptr, nullptr}),
              1);
    document.EndPage();
    const std::string text = document.Finish();
    EXPECT_EQ(CountOf(text, "Fallback Image"), 0U);
    const PostScript::Pixels pixels = document.Draw();
    ExpectColour(pixels.At(15, 10), 255, 0, "line");
    ExpectColour(pixels.At(45, 10), 127, 128, "line");
    ExpectColour(pixels.At(75, 10), 0, 255, "line");
    std::array<int, 3> dash{255, 255, 255};
    for (int y = 30; y < 80; ++y)
        if (pixels.At(25, y)[1] < dash[1]) dash = pixels.At(25, y);
    ExpectColour(dash, 255, 0, "text");
}

TEST(ORVPostScriptGeneratorTest, NothingShowsBesideTheConeOfTwoCircles) {
    PostScript document;
    document.BeginPage();
    ORVPrintGradient gradient = Gradient(kRedToBlue, {1, 0, 0, 1, 0, 0});
    gradient.kind = ORVPrintGradient::Kind::kRadial;
    gradient.start = {20, 45};
    gradient.end = {60, 45};
    gradient.startRadius = gradient.endRadius = 10.0;
    FillPage(document, gradient);
    document.Finish();
    const PostScript::Pixels pixels = document.Draw();
    EXPECT_EQ(pixels.At(45, 10), (std::array<int, 3>{255, 255, 255}));
    EXPECT_EQ(pixels.At(45, 45)[1], 0);
}

}  // namespace
