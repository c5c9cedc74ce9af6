// SPDX-License-Identifier: Apache-2.0

// Gradients as other programs draw them, and the objects that they share in the file.

#include "generators/pdf/pdf_gradients.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/generators/gradients.h"
#include "tests/generators/pdf/drawn_page.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using Kind = ORVPrintGradient::Kind;
using Spread = ORVPrintGradient::Spread;

constexpr ORVPrintColour kRed{255, 0, 0}, kBlue{0, 0, 255}, kGreen{0, 255, 0}, kYellow{255, 255, 0};
constexpr PaperColour kWhite{255, 255, 255}, kPurple{128, 0, 128};
const GradientStops kRedToBlue{{0.0, kRed}, {1.0, kBlue}};

int Fill(ORVPrintGenerator& generator, const ORVPrintGradient& gradient, const ORVPrintPath& path,
         const ORVMathAffine2D& map = {}) {
    ORVPrintFill fill;
    fill.colour = kGreen;
    fill.gradient = &gradient;
    return generator.DrawShape({path, map, &fill, nullptr});
}

/// Draws a page of 90 by 90 filled with a gradient.
void DrawFilledPage(DrawnPdf& document, const ORVPrintGradient& gradient) {
    document.BeginPage();
    EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(0.0, 0.0, 90.0, 90.0)), 1);
    document.EndPage();
    document.Finish();
}

struct Look {
    const char* name;
    GradientStops stops;
    Kind kind;
    Spread spread;
    ORVMathPoint2D start, end;
    double startRadius, endRadius;
    std::vector<PaperPoint> points;
};

void PrintTo(const Look& look, std::ostream* out) { *out << look.name; }

class PdfGradientLookTest : public testing::TestWithParam<Look> {};

TEST_P(PdfGradientLookTest, OtherProgramsDrawIt) {
    const Look& look = GetParam();
    ORVPrintGradient gradient = LinearGradient(look.stops, look.start, look.end, look.spread);
    gradient.kind = look.kind;
    gradient.startRadius = look.startRadius;
    gradient.endRadius = look.endRadius;
    DrawnPdf document;
    DrawFilledPage(document, gradient);
    ExpectColours(document, look.points, 14);
}

const GradientStops kHard{{0.0, kRed}, {0.5, kRed}, {0.5, kBlue}, {1.0, kBlue}};
const GradientStops kBetween{{0.25, kRed}, {0.75, kBlue}};
const GradientStops kOtherEnds{{0.0, kYellow}, {0.0, kRed}, {1.0, kBlue}, {1.0, kGreen}};

INSTANTIATE_TEST_SUITE_P(
    All, PdfGradientLookTest,
    testing::Values(Look{"Pad",
                         kRedToBlue,
                         Kind::kLinear,
                         Spread::kPad,
                         {30.0, 0.0},
                         {60.0, 0.0},
                         0.0,
                         0.0,
                         {{5.0, 9.0, {255, 0, 0}}, {45.0, 80.0, kPurple}, {85.0, 9.0, {0, 0, 255}}}},
                    Look{"AlongTheDiagonal",
                         kRedToBlue,
                         Kind::kLinear,
                         Spread::kPad,
                         {0.0, 0.0},
                         {90.0, 90.0},
                         0.0,
                         0.0,
                         {{88.0, 2.0, kPurple}, {2.0, 88.0, kPurple}, {67.0, 67.0, {64, 0, 191}}}},
                    Look{"StopsBeginLateAndEndEarly",
                         kBetween,
                         Kind::kLinear,
                         Spread::kPad,
                         {0.0, 0.0},
                         {90.0, 0.0},
                         0.0,
                         0.0,
                         {{20.0, 9.0, {255, 0, 0}}, {45.0, 9.0, kPurple}, {70.0, 9.0, {0, 0, 255}}}},
                    Look{"StopsAtOnePlaceJump",
                         kHard,
                         Kind::kLinear,
                         Spread::kPad,
                         {0.0, 0.0},
                         {90.0, 0.0},
                         0.0,
                         0.0,
                         {{43.0, 9.0, {255, 0, 0}}, {47.0, 9.0, {0, 0, 255}}}},
                    Look{"StopsAtTheEndsSayWhatLiesBeyond",
                         kOtherEnds,
                         Kind::kLinear,
                         Spread::kPad,
                         {30.0, 0.0},
                         {60.0, 0.0},
                         0.0,
                         0.0,
                         {{27.0, 9.0, {255, 255, 0}},
                          {31.0, 9.0, {247, 0, 8}},
                          {59.0, 9.0, {8, 0, 247}},
                          {63.0, 9.0, {0, 255, 0}}}},
                    Look{"Repeat",
                         kRedToBlue,
                         Kind::kLinear,
                         Spread::kRepeat,
                         {40.0, 0.0},
                         {60.0, 0.0},
                         0.0,
                         0.0,
                         {{10.0, 9.0, kPurple},
                          {35.0, 9.0, {64, 0, 191}},
                          {65.0, 9.0, {191, 0, 64}},
                          {82.0, 9.0, {229, 0, 25}}}},
                    Look{"Reflect",
                         kRedToBlue,
                         Kind::kLinear,
                         Spread::kReflect,
                         {40.0, 0.0},
                         {60.0, 0.0},
                         0.0,
                         0.0,
                         {{10.0, 9.0, kPurple},
                          {35.0, 9.0, {191, 0, 64}},
                          {65.0, 9.0, {64, 0, 191}},
                          {82.0, 9.0, {229, 0, 25}}}},
                    Look{"Circle",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kPad,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         0.0,
                         30.0,
                         {{45.0, 45.0, {255, 0, 0}},
                          {60.0, 45.0, kPurple},
                          {45.0, 30.0, kPurple},
                          {5.0, 5.0, {0, 0, 255}}}},
                    Look{"Ring",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kPad,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         20.0,
                         40.0,
                         {{60.0, 45.0, {255, 0, 0}}, {75.0, 45.0, kPurple}, {88.0, 45.0, {0, 0, 255}}}},
                    Look{"InwardRing",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kPad,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         40.0,
                         20.0,
                         {{60.0, 45.0, {0, 0, 255}}, {75.0, 45.0, kPurple}, {88.0, 45.0, {255, 0, 0}}}},
                    Look{"FocalPoint",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kPad,
                         {25.0, 45.0},
                         {45.0, 45.0},
                         0.0,
                         40.0,
                         {{25.0, 45.0, {255, 0, 0}},
                          {55.0, 45.0, kPurple},
                          {15.0, 45.0, kPurple},
                          {2.0, 45.0, {0, 0, 255}}}},
                    Look{"ConeOfTwoCircles",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kPad,
                         {25.0, 45.0},
                         {65.0, 45.0},
                         5.0,
                         10.0,
                         {{3.0, 45.0, {255, 0, 0}},
                          {85.0, 45.0, {0, 0, 255}},
                          {45.0, 20.0, kWhite},
                          {45.0, 70.0, kWhite},
                          {5.0, 60.0, kWhite}}},
                    Look{"RepeatedCircles",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kRepeat,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         0.0,
                         20.0,
                         {{55.0, 45.0, kPurple},
                          {75.0, 45.0, kPurple},
                          {63.0, 45.0, {25, 0, 230}},
                          {68.0, 45.0, {217, 0, 38}}}},
                    Look{"MirroredCircles",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kReflect,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         0.0,
                         20.0,
                         {{55.0, 45.0, kPurple},
                          {75.0, 45.0, kPurple},
                          {63.0, 45.0, {25, 0, 230}},
                          {68.0, 45.0, {38, 0, 217}}}},
                    Look{"CirclesRepeatInwardsToo",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kRepeat,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         20.0,
                         40.0,
                         {{55.0, 45.0, kPurple}, {62.0, 45.0, {38, 0, 217}}, {68.0, 45.0, {217, 0, 38}}}},
                    Look{"ShrinkingCirclesRepeatInwardsToo",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kRepeat,
                         {45.0, 45.0},
                         {45.0, 45.0},
                         40.0,
                         20.0,
                         {{55.0, 45.0, kPurple},
                          {62.0, 45.0, {217, 0, 38}},
                          {68.0, 45.0, {38, 0, 217}},
                          {89.0, 45.0, {51, 0, 204}}}},
                    Look{"RepeatedCone",
                         kRedToBlue,
                         Kind::kRadial,
                         Spread::kRepeat,
                         {10.0, 45.0},
                         {30.0, 45.0},
                         0.0,
                         4.0,
                         {{22.0, 45.0, {64, 0, 191}},
                          {38.0, 45.0, {64, 0, 191}},
                          {45.0, 20.0, kWhite},
                          {5.0, 45.0, kWhite}}}),
    [](const auto& info) { return info.param.name; });

TEST(PdfGradientsTest, MapsStretchAndSkew) {
    ORVPrintGradient gradient = LinearGradient(kRedToBlue, {0.0, 0.0}, {1.0, 0.0});
    gradient.toPage = {60.0, 30.0, 0.0, 60.0, 0.0, 0.0};  // lines of equal colour are slanted
    DrawnPdf document;
    DrawFilledPage(document, gradient);
    ExpectColours(document, {{30.0, 1.0, kPurple}, {60.0, 60.0, kPurple}, {45.0, 60.0, {191, 0, 64}}});
}

// Stops of different opacity let the background show through, in fills and in strokes alike.
TEST(PdfGradientsTest, OpacitiesOfStopsAreMixedByThemselves) {
    const GradientStops fading{{0.0, {255, 0, 0, 255}}, {1.0, {0, 0, 255, 0}}};
    const ORVPrintGradient gradient = LinearGradient(fading, {0.0, 0.0}, {80.0, 0.0});
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 90.0, 20.0), 1);
    EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(0.0, 10.0, 80.0, 30.0)), 1);
    ORVPrintStroke stroke;
    stroke.width = 20.0;
    stroke.gradient = &gradient;
    ORVPrintFill below;
    below.colour = {0, 128, 0};
    const ORVPrintPath path = RectanglePath(0.0, 60.0, 80.0, 30.0);
    EXPECT_EQ(document.Get().DrawShape({path, {}, &below, &stroke}), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 84.0, 80.0, 6.0, 10.0, kRed), 1);  // the mask no longer applies
    document.EndPage();
    document.Finish();
    ExpectColours(document, {{40.0, 15.0, {64, 0, 64}},
                             {40.0, 30.0, {191, 127, 191}},
                             {60.0, 30.0, {207, 191, 239}},
                             {40.0, 55.0, {191, 127, 191}},
                             {40.0, 65.0, {64, 64, 64}},
                             {87.0, 85.0, {255, 0, 0}}});
}

TEST(PdfGradientsTest, EqualOpacitiesNeedNoMask) {
    const GradientStops even{{0.0, {255, 0, 0, 102}}, {1.0, {0, 0, 255, 102}}};
    DrawnPdf document;
    DrawFilledPage(document, LinearGradient(even, {0.0, 0.0}, {90.0, 0.0}));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/SMask")));
    EXPECT_THAT(document.Plain(), HasSubstr("/ca .4"));
    ExpectColours(document, {{45.0, 45.0, {204, 153, 204}}});
}

TEST(PdfGradientsTest, FillAndLineOfOneShapeHaveGradientsOfTheirOwn) {
    const GradientStops greens{{0.0, kGreen}, {1.0, kYellow}};
    const ORVPrintGradient across = LinearGradient(kRedToBlue, {0.0, 0.0}, {90.0, 0.0}),
                           down = LinearGradient(greens, {0.0, 0.0}, {0.0, 90.0});
    ORVPrintFill fill;
    fill.gradient = &across;
    ORVPrintStroke stroke;
    stroke.gradient = &down;
    stroke.width = 10.0;
    const ORVPrintPath path = RectanglePath(10.0, 10.0, 70.0, 70.0);
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, &stroke}), 1);
    // The shape's transform applies to the pen, but not to the gradient.
    stroke.width = 1.0;
    const ORVPrintPath small = RectanglePath(8.0, 3.0, 5.0, 1.0);
    EXPECT_EQ(document.Get().DrawShape({small, {5.0, 0.0, 0.0, 10.0, 0.0, 0.0}, nullptr, &stroke}), 1);
    document.EndPage();
    document.Finish();
    ExpectColours(document, {{25.0, 25.0, {184, 0, 71}},
                             {10.0, 20.0, {57, 255, 0}},
                             {80.0, 70.0, {198, 255, 0}},
                             {45.0, 30.0, {85, 255, 0}},
                             {41.0, 42.0, {120, 255, 0}}});
    EXPECT_EQ(CountOf(document.Plain(), "\nB\n"), 1U);
}

TEST(PdfGradientsTest, EqualStopsAreOneFunctionAndOneShading) {
    DrawnPdf document;
    document.BeginPage();
    for (int i = 0; i < 1000; ++i) {
        const ORVPrintGradient gradient = LinearGradient(kRedToBlue, {i * 0.01, 5.0}, {50.0, 70.0});
        EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(i * 0.05, 0.0, 30.0, 30.0)), 1);
        EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(i * 0.05, 40.0, 30.0, 30.0)), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    EXPECT_EQ(CountOf(plain, "/FunctionType"), 1U);
    EXPECT_EQ(CountOf(plain, "/ShadingType"), 1U);
    EXPECT_EQ(CountOf(plain, "/PatternType"), 1000U);
    EXPECT_LT(document.Bytes().size(), 150'000U);
}

// The file repeats the colours only over the painted area. The number of repetitions is rounded in steps, so
// that shapes of many sizes share a shading.
TEST(PdfGradientsTest, RepetitionsAreAsManyAsShow) {
    for (const Spread spread : {Spread::kRepeat, Spread::kReflect}) {
        DrawnPdf document;
        document.BeginPage();
        const ORVPrintGradient gradient = LinearGradient(kRedToBlue, {0.0, 0.0}, {5.0, 0.0}, spread);
        for (int width = 1; width <= 80; ++width)
            EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(0.5, 0.0, width, 5.0)), 1);
        EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(-1e6, 0.0, 2e6, 5.0)), 1);
        document.EndPage();
        document.Finish();
        EXPECT_LE(CountOf(document.Plain(), "/ShadingType"), 6U);
        EXPECT_LT(CountOf(document.Plain(), "\n"), 2'500U);
    }
}

TEST(PdfGradientsTest, RepetitionsTooFineToBeSeenAreTheirMean) {
    const GradientStops stops{{0.0, {255, 0, 0, 255}}, {0.5, {0, 0, 255, 255}}, {1.0, {0, 0, 255, 51}}};
    for (const ORVPrintGradient& gradient :
         {LinearGradient(stops, {0.0, 0.0}, {0.001, 0.0}, Spread::kRepeat),
          RadialGradient(stops, {45.0, 45.0}, 0.0, {45.0, 45.0}, 0.001, Spread::kReflect)}) {
        DrawnPdf document;
        DrawFilledPage(document, gradient);
        EXPECT_THAT(document.Plain(), Not(HasSubstr("/Pattern ")));
        ExpectColours(document, {{45.0, 20.0, {108, 51, 198}}});
    }
}

TEST(PdfGradientsTest, CirclesThatTouchAreBounded) {
    DrawnPdf document;
    DrawFilledPage(document,
                   RadialGradient(kRedToBlue, {15.0, 45.0}, 0.0, {45.0, 45.0}, 30.0, Spread::kRepeat));
    EXPECT_LT(document.Bytes().size(), 60'000U);
    ExpectColours(document, {{45.0, 45.0, kPurple}}, 255);  // only checks that it can be drawn
}

TEST(PdfGradientsTest, WhatLiesOutsideOfThePageAddsNothing) {
    DrawnPdf document;
    document.BeginPage();
    const ORVPrintGradient gradient = LinearGradient(kRedToBlue, {0.0, 0.0}, {50.0, 0.0});
    EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(200.0, 0.0, 30.0, 30.0)), 1);
    EXPECT_EQ(Fill(document.Get(), gradient, {}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/ShadingType")));
}

TEST(PdfGradientsTest, GradientsWithoutExtentAreTheirLastColour) {
    ORVPrintGradient flat = LinearGradient(kRedToBlue, {0.0, 0.0}, {1.0, 0.0});
    flat.toPage = {1.0, 1.0, 1.0, 1.0, 0.0, 0.0};
    for (const ORVPrintGradient& gradient : {flat, LinearGradient(kRedToBlue, {5.0, 5.0}, {5.0, 5.0}),
                                             RadialGradient(kRedToBlue, {5.0, 5.0}, 0.0, {5.0, 5.0}, 0.0)}) {
        DrawnPdf document;
        DrawFilledPage(document, gradient);
        ExpectColours(document, {{45.0, 45.0, {0, 0, 255}}});
    }
}

// A pattern is positioned relative to the content stream that contains it, not to the current transform.
TEST(PdfGradientsTest, GradientsMoveWithTheSymbolThatHoldsThem) {
    const GradientStops fading{{0.0, kRed}, {1.0, {0, 0, 255, 0}}};
    for (const GradientStops* stops : {&kRedToBlue, &fading}) {
        const ORVPrintGradient gradient = LinearGradient(*stops, {0.0, 0.0}, {40.0, 0.0});
        DrawnPdf document;
        document.BeginPage();
        const int key = 0;
        // Only moved, and turned by a quarter, so that right becomes down.
        for (const ORVMathAffine2D& map : {ORVMathAffine2D{1.0, 0.0, 0.0, 1.0, 45.0, 0.0},
                                           ORVMathAffine2D{0.0, -1.0, 1.0, 0.0, 40.0, 45.0}}) {
            if (document.Get().BeginSymbol({&key, map}) != ORVPrintGenerator::kDrawSymbol) continue;
            EXPECT_EQ(Fill(document.Get(), gradient, RectanglePath(0.0, 0.0, 40.0, 40.0)), 1);
            EXPECT_EQ(document.Get().EndSymbol(), 1);
        }
        document.EndPage();
        document.Finish();
        const PaperColour middle = stops == &kRedToBlue ? kPurple : PaperColour{191, 127, 191};
        ExpectColours(document,
                      {{46.0, 20.0, {252, 3, 3}},
                       {65.0, 20.0, middle},
                       {20.0, 46.0, {252, 3, 3}},
                       {20.0, 65.0, middle}},
                      14);
    }
}

}  // namespace
