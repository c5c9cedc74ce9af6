// SPDX-License-Identifier: Apache-2.0

// Text filled and stroked with gradients, as other programs draw and read it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "generators/pdf/pdf_gradients.h"
#include "tests/generators/gradients.h"
#include "tests/generators/pdf/drawn_page.h"

namespace {

using testing::HasSubstr;

constexpr ORVPrintColour kRed{255, 0, 0}, kBlue{0, 0, 255}, kGreen{0, 255, 0};
constexpr PaperColour kWhite{255, 255, 255};
const GradientStops kRedToBlue{{0.0, kRed}, {1.0, kBlue}};

/// Draws a large H.
void DrawLetter(DrawnPdf& document, const ORVPrintFill* fill, const ORVPrintStroke* stroke) {
    ORVTextStyle style;
    style.height = 90.0;
    const ORVTextLayout layout = ORVLayoutText("H", style);
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawText({layout, "H", {1.0, 0.0, 0.0, -1.0, 0.0, 85.0}, fill, stroke, nullptr}),
              1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Text(), HasSubstr("H"));
}

// The left stem of the letter is at x = 8 to 16, the right one at 49 to 57; the bar is at y = 48.
TEST(PdfTextGradientsTest, TextIsFilledAndStaysText) {
    ORVPrintFill fill;
    const GradientStops fading{{0.0, {255, 0, 0, 255}}, {1.0, {255, 0, 0, 55}}};
    for (const GradientStops* stops : {&kRedToBlue, &fading}) {
        const ORVPrintGradient gradient = LinearGradient(*stops, {12.0, 0.0}, {53.0, 0.0});
        fill.gradient = &gradient;
        DrawnPdf document;
        DrawLetter(document, &fill, nullptr);
        const PaperColour right = stops == &kRedToBlue ? PaperColour{0, 0, 255} : PaperColour{255, 200, 200};
        ExpectColours(document, {{12.0, 60.0, {255, 0, 0}}, {53.0, 60.0, right}, {32.0, 70.0, kWhite}}, 14);
    }
}

TEST(PdfTextGradientsTest, LinesAroundTextHaveGradientsAndTheTextIsFound) {
    const ORVPrintGradient gradient = LinearGradient(kRedToBlue, {12.0, 0.0}, {53.0, 0.0});
    ORVPrintStroke stroke;
    stroke.width = 12.0;
    stroke.gradient = &gradient;
    ORVPrintFill fill;
    fill.colour = kGreen;
    for (const bool isFilled : {false, true}) {
        DrawnPdf document;
        DrawLetter(document, isFilled ? &fill : nullptr, &stroke);
        ExpectColours(document, {{12.0, 60.0, {255, 0, 0}}, {53.0, 60.0, {0, 0, 255}}}, 24);
    }
}

TEST(PdfTextGradientsTest, SolidLinesSurroundTextOfAGradient) {
    const ORVPrintGradient gradient = LinearGradient(kRedToBlue, {0.0, 0.0}, {60.0, 0.0});
    ORVPrintFill fill;
    fill.gradient = &gradient;
    ORVPrintStroke stroke;
    stroke.colour = kGreen;
    stroke.width = 4.0;
    DrawnPdf document;
    DrawLetter(document, &fill, &stroke);
    ExpectColours(document, {{11.0, 60.0, {206, 0, 49}}, {7.0, 60.0, {0, 255, 0}}}, 14);
}

}  // namespace
