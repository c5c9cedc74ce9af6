// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModelRender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/mathematics/constants.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/named_rows.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

int DrawAll(OnePage& page, RecordingGenerator& generator, const ORVPrintParameters& parameters = {}) {
    return ORVPrintModelRender(page.GetModel(), &generator, parameters).Draw();
}

/// What is drawn of a page of 100 x 50 with these primitives.
std::vector<std::string> Drawn(std::initializer_list<ORVRef<ORVPrtGraphicPrimitiveElt>> primitives) {
    OnePage page;
    for (const auto& primitive : primitives) page.Add(primitive);
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    return generator.GetDrawn();
}

ORVPrtStrokeAttributes Dashed(std::vector<float> lengths) {
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeType(kLineUserDash);
    stroke.SetStrokeDashPattern(lengths.data(), static_cast<std::uint8_t>(lengths.size()));
    return stroke;
}

TEST(ModelRenderTest, FramesPagesAndDocument) {
    OnePage page;
    page.GetPage().SetTitle("Plan");
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_EQ(generator.GetText(), "document \"Plan\" 1\npage 1 100x50\nend page\nend document\n");
}

TEST(ModelRenderTest, YPointsDownFromTheUpperLeftCorner) {
    EXPECT_THAT(Drawn({MakeRectangle(10.0, 50.0, 20.0, 40.0)}),
                ElementsAre("fill #000000 M10,0 L20,0 L20,10 L10,10 Z"));
}

TEST(ModelRenderTest, PageOriginIsTheLowerLeftCorner) {
    OnePage page;
    page.GetPage().SetOrigin({5.0, -20.0});
    page.Add(MakeLine(5.0, -20.0, 105.0, 30.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L100,0"));
}

TEST(ModelRenderTest, PageMatrixThatIsNoNumberCountsAsIdentity) {
    OnePage page;
    page.GetPage().SetMatrix({std::nan(""), 0.0, 0.0, std::nan("")});
    page.Add(MakeLine(0.0, 0.0, 1.0, 0.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L1,50"));
}

TEST(ModelRenderTest, PageMatrixScales) {
    OnePage page;
    page.GetPage().SetMatrix({2.0, 0.0, 0.0, 2.0});
    page.Add(MakeLine(0.0, 0.0, 10.0, 5.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L20,40"));
}

struct DrawStyleCase {
    const char* name;
    int style;
    const char* start;  // of the line that is drawn; empty for none
};
class DrawStyleTest : public testing::TestWithParam<DrawStyleCase> {};
TEST_P(DrawStyleTest, DecidesWhatIsPainted) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    rectangle->SetDrawStyle(GetParam().style);
    const std::vector<std::string> drawn = Drawn({rectangle});
    if (*GetParam().start == '\0') {
        EXPECT_THAT(drawn, IsEmpty());
    } else {
        EXPECT_THAT(drawn, ElementsAre(StartsWith(GetParam().start)));
    }
}
INSTANTIATE_TEST_SUITE_P(
    DrawStyle, DrawStyleTest,
    testing::Values(DrawStyleCase{"Nothing", kDrawNothing, ""},
                    DrawStyleCase{"Stroke", kDrawStroke, "stroke #000000 w1 M"},
                    DrawStyleCase{"Fill", kDrawFill, "fill #000000 M"},
                    DrawStyleCase{"Both", kDrawFillAndStroke, "fill #000000 stroke #000000 w1 M"},
                    DrawStyleCase{"Undecided", kDrawUndecided, "fill #000000 stroke #000000 w1 M"}),
    kNameOfRow);

TEST(ModelRenderTest, ColoursComeFromTheTableWithTheirOpacity) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourIndex(1);
    fill.SetFillColourTransparency(128);
    fill.SetFillRule(kFillEvenOdd);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill #ff0000@128 eo M")));
}

TEST(ModelRenderTest, WhatIsWhollyTransparentIsNotDrawn) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourTransparency(0);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), IsEmpty());
}

TEST(ModelRenderTest, StrokesNeedAWidth) {
    for (const double width : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        const auto line = MakeLine(0.0, 0.0, 1.0, 0.0);
        ORVPrtStrokeAttributes stroke;
        stroke.SetStrokeWidth(width);
        line->SetStrokeAttributes(stroke);
        EXPECT_THAT(Drawn({line}), IsEmpty()) << width;
    }
}

TEST(ModelRenderTest, CapsAndJoinsAreResolved) {
    const auto line = MakeLine(0.0, 50.0, 1.0, 50.0);
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeColourIndex(2);
    stroke.SetStrokeWidth(3.0);
    stroke.SetStrokeCap(kCapRound);
    stroke.SetStrokeJoin(kJoinBevel);
    line->SetStrokeAttributes(stroke);
    EXPECT_THAT(Drawn({line}), ElementsAre("stroke #00ff00 w3 round-cap bevel-join M0,0 L1,0"));
}

struct DashCase {
    const char* name;
    std::vector<float> lengths;
    const char* expected;
};
class DashTest : public testing::TestWithParam<DashCase> {};
TEST_P(DashTest, BecomesAListOfEvenLength) {
    const auto line = MakeLine(0.0, 50.0, 1.0, 50.0);
    line->SetStrokeAttributes(Dashed(GetParam().lengths));
    EXPECT_THAT(Drawn({line}),
                ElementsAre(std::string("stroke #000000 w1") + GetParam().expected + " M0,0 L1,0"));
}
INSTANTIATE_TEST_SUITE_P(Dash, DashTest,
                         testing::Values(DashCase{"Even", {4.0F, 2.0F}, " d4,2"},
                                         DashCase{"OddCountsTwice", {4.0F}, " d4,4"},
                                         DashCase{"AllZeroIsSolid", {0.0F, 0.0F}, ""},
                                         DashCase{"NegativeIsSolid", {4.0F, -1.0F}, ""},
                                         DashCase{"NotANumberIsSolid", {std::nanf(""), 1.0F}, ""},
                                         DashCase{"EmptyIsSolid", {}, ""}),
                         kNameOfRow);

TEST(ModelRenderTest, CircleIsFourCurvesWhenSmall) {
    const auto drawn = Drawn({MakeCircle(10.0, 40.0, 10.0)});
    EXPECT_THAT(drawn, ElementsAre("fill #000000 M20,10 C20,15.523 15.523,20 10,20 C4.477,20 0,15.523 0,10 "
                                   "C0,4.477 4.477,0 10,0 C15.523,0 20,4.477 20,10 Z"));
}

TEST(ModelRenderTest, DashesOfEllipsesBeginAtTheRightAndRunClockwise) {
    const auto ellipse = Make<ORVPrtEllipseElt>();
    ellipse->SetCenter({20.0, 40.0});
    ellipse->SetHorzRadius(20.0);
    ellipse->SetVertRadius(10.0);
    ellipse->SetDrawStyle(kDrawStroke);
    ellipse->SetStrokeAttributes(Dashed({4.0F, 2.0F}));
    // From the right end of the ellipse downwards.
    EXPECT_THAT(Drawn({ellipse}),
                ElementsAre(StartsWith("stroke #000000 w1 d4,2 M40,10 C40,15.523 31.046,20 20,20")));
}

TEST(ModelRenderTest, RadiiThatAreNotPositiveDrawNothing) {
    EXPECT_THAT(Drawn({MakeCircle(0.0, 0.0, 0.0), MakeCircle(0.0, 0.0, -3.0)}), IsEmpty());
}

TEST(ModelRenderTest, TransformsOfContainersAndPrimitivesMultiply) {
    const auto line = MakeLine(0.0, 0.0, 1.0, 0.0);
    line->SetTransformAttributes(Translation(5.0, 0.0));
    const auto symbol = MakeContainer<ORVPrtSymbolElt>({line});
    symbol->SetTransformAttributes(Matrix(2.0, 0.0, 0.0, 2.0));
    EXPECT_THAT(Drawn({symbol}), ElementsAre("stroke #000000 w1 M10,50 L12,50"));
}

TEST(ModelRenderTest, MapsWithoutAreaDrawNothing) {
    const auto flat = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    flat->SetTransformAttributes(Matrix(1.0, 0.0, 0.0, 0.0));
    const auto group = MakeContainer<ORVPrtGroupElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)});
    group->SetTransformAttributes(Matrix(std::nan(""), 0.0, 0.0, 1.0));
    EXPECT_THAT(Drawn({flat, group}), IsEmpty());
}

TEST(ModelRenderTest, PolylineThatComesBackIsClosed) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}, {9.0, 40.0}, {0.0, 50.0}}),
                       MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}, {9.0, 40.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 L9,0 L9,10 L0,0 Z", "stroke #000000 w1 M0,0 L9,0 L9,10"));
}

TEST(ModelRenderTest, PointsThatAreNotFiniteAreLeftOut) {
    const double bad = std::numeric_limits<double>::infinity();
    EXPECT_THAT(
        Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {bad, 0.0}, {5.0, 50.0}}),
               MakeRectangle(0.0, 0.0, bad, 1.0), MakeCircle(0.0, 0.0, bad), MakeLine(0.0, 0.0, bad, 0.0)}),
        ElementsAre("stroke #000000 w1 M0,0 L5,0"));
}

TEST(ModelRenderTest, QuadraticCurvesAreRaisedByADegree) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolyQuadraticBezierElt>({{0.0, 50.0}, {3.0, 44.0}, {6.0, 50.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 C2,4 4,4 6,0"));
}

TEST(ModelRenderTest, ArcRunsFromItsStartToItsEnd) {
    const auto up = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0);
    const auto down = MakeArc(0.0, 50.0, 10.0, 10.0, ORVPI / 2.0, 0.0);
    up->SetDrawStyle(kDrawStroke);
    down->SetDrawStyle(kDrawStroke);
    EXPECT_THAT(Drawn({up}), ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10"));
    EXPECT_THAT(Drawn({down}), ElementsAre("stroke #000000 w1 M0,-10 C5.523,-10 10,-5.523 10,0"));
}

TEST(ModelRenderTest, ArcByItselfIsStrokedAndNeverFilled) {
    for (const int style : {kDrawStroke, kDrawFill, kDrawFillAndStroke, kDrawUndecided}) {
        const auto arc = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0);
        arc->SetDrawStyle(style);
        EXPECT_THAT(Drawn({arc}), ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10")) << style;
    }
    const auto hidden = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, 1.0);
    hidden->SetDrawStyle(kDrawNothing);
    EXPECT_THAT(Drawn({hidden}), IsEmpty());
}

TEST(ModelRenderTest, FilledArcsThatMeetAreOneLine) {
    const auto group = MakeContainer<ORVPrtGroupElt>({MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0),
                                                      MakeArc(0.0, 50.0, 10.0, 10.0, ORVPI / 2.0, ORVPI)});
    EXPECT_THAT(
        Drawn({group}),
        ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10 C-5.523,-10 -10,-5.523 -10,0"));
}

TEST(ModelRenderTest, PiecesOfAPathAreStrokedAsOneLine) {
    const auto group = MakeContainer<ORVPrtGroupElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
         MakePoints<ORVPrtPolyCubicBezierElt>({{6.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {6.0, 44.0}}),
         MakePoints<ORVPrtPolylineElt>({{6.0, 44.0}, {0.0, 50.0}})});
    EXPECT_THAT(Drawn({group}), ElementsAre("stroke #000000 w1 M0,0 L6,0 C9,0 9,6 6,6 L0,0 Z"));
}

TEST(ModelRenderTest, LinesThatTouchStayApart) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
                       MakePoints<ORVPrtPolylineElt>({{6.0, 50.0}, {6.0, 40.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 L6,0", "stroke #000000 w1 M6,0 L6,10"));
}

TEST(ModelRenderTest, PiecesOfDifferentPaintOrPlaceStayApart) {
    const auto red =
        MakePoints<ORVPrtPolyCubicBezierElt>({{6.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {6.0, 44.0}});
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeColourIndex(1);
    red->SetStrokeAttributes(stroke);
    EXPECT_THAT(
        Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}), red,
               MakePoints<ORVPrtPolyCubicBezierElt>({{7.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {7.0, 44.0}})}),
        ElementsAre("stroke #000000 w1 M0,0 L6,0", "stroke #ff0000 w1 M6,0 C9,0 9,6 6,6",
                    "stroke #000000 w1 M7,0 C9,0 9,6 7,6"));
}

TEST(ModelRenderTest, RegionsAreContoursOfOneShape) {
    const auto outer = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}}),
         MakePoints<ORVPrtPolyCubicBezierElt>({{9.0, 50.0}, {9.0, 45.0}, {5.0, 41.0}, {0.0, 41.0}}),
         MakePoints<ORVPrtPolylineElt>({{0.0, 41.0}, {0.0, 50.0}})});
    const auto open = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{1.0, 49.0}, {2.0, 49.0}, {2.0, 48.0}})});
    const auto empty = Make<ORVPrtClosedFigureRegionElt>();
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({outer, open, empty});
    figure->SetDrawStyle(kDrawFillAndStroke);
    EXPECT_THAT(Drawn({figure}), ElementsAre("fill #000000 stroke #000000 w1 M0,0 L9,0 C9,5 5,9 0,9 L0,0 Z "
                                             "M1,1 L2,1 L2,2"));
}

TEST(ModelRenderTest, PiecesOfARegionThatDoNotMeetAreJoined) {
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {5.0, 50.0}}),
         MakePoints<ORVPrtPolylineElt>({{5.0, 45.0}, {0.0, 45.0}})});
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtClosedFigureElt>({region})}),
                ElementsAre("fill #000000 M0,0 L5,0 L5,5 L0,5"));
}

TEST(ModelRenderTest, PiecesRegionsAndFiguresAreMovedOneAfterTheOther) {
    const auto piece = MakePoints<ORVPrtPolylineElt>({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}});
    piece->SetTransformAttributes(Matrix(10.0, 0.0, 0.0, 10.0));
    const auto plain = MakePoints<ORVPrtPolylineElt>({{10.0, 10.0}, {0.0, 10.0}});
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>({piece, plain});
    region->SetTransformAttributes(Translation(5.0, 0.0));
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({region});
    figure->SetTransformAttributes(Translation(0.0, 20.0));
    EXPECT_THAT(Drawn({figure}), ElementsAre("fill #000000 M5,30 L15,30 L15,20 L5,20"));
}

TEST(ModelRenderTest, ArcsInARegionEndWhereTheNextPieceStarts) {
    // The angles are floats: the arc ends near (0, 60), the line starts there.
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0),
         MakePoints<ORVPrtPolylineElt>({{0.0, 60.0}, {0.0, 50.0}, {10.0, 50.0}})});
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtClosedFigureElt>({region})}),
                ElementsAre("fill #000000 M10,0 C10,-5.523 5.523,-10 0,-10 L0,0 L10,0 Z"));
}

TEST(ModelRenderTest, HiddenFigureIsNotDrawnNorAreItsPieces) {
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {5.0, 50.0}})});
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({region});
    figure->SetDrawStyle(kDrawNothing);
    EXPECT_THAT(Drawn({figure}), IsEmpty());
}

TEST(ModelRenderTest, PatternDrawsNothing) {
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtPatternElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)})}), IsEmpty());
}

ORVRef<ORVPixelImage> MakeImage(int width, int height) {
    const std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height) * 4, 255);
    return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromPixels(width, height, pixels));
}

TEST(ModelRenderTest, PatternFillTilesFromThePageOrigin) {
    const auto image = MakeImage(4, 4);
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillPatternImage(image.get());
    rectangle->SetFillAttributes(fill);
    rectangle->SetTransformAttributes(Translation(3.0, 3.0));
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill pattern@255[1 0 0 1 0 0] M")));
}

TEST(ModelRenderTest, PatternTileIsAsLargeAsItsImageStates) {
    const auto image = ReadBmp(BmpToWrite::Info(1, 1, 24).With({0, 0, 0, 0}));
    ASSERT_TRUE(image);
    ASSERT_EQ(image->GetHorizontalResolution(), 2835.0);  // pixels per metre; a unit has 3543.3 of them
    ASSERT_EQ(image->GetVerticalResolution(), 3780.0);
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillPatternImage(image.get());
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill pattern@255[1.25 0 0 0.937 0 0] M")));
}

TEST(ModelRenderTest, PatternWithoutBitmapLeavesTheColour) {
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillColourIndex(1);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill #ff0000 M")));
}

TEST(ModelRenderTest, BitmapIsStretchedIntoItsBox) {
    const auto image = MakeImage(2, 3);
    const auto bitmap = Make<ORVPrtBitmapImageElt>();
    bitmap->SetOrigin({10.0, 20.0});
    bitmap->SetSize(30.0, 15.0);
    EXPECT_THAT(Drawn({bitmap}), IsEmpty());  // no pixels
    bitmap->SetPixelImage(image.get());
    EXPECT_THAT(Drawn({bitmap}), ElementsAre("image 2x3 [30 0 0 15 10 15]"));
    bitmap->SetSize(30.0, 0.0);
    EXPECT_THAT(Drawn({bitmap}), IsEmpty());
}

ORVRef<ORVPrtTextElt> MakeText(const char* string, double x, double y) {
    auto text = Make<ORVPrtTextElt>();
    text->SetText(string);
    text->SetPosition({x, y});
    return text;
}

TEST(ModelRenderTest, TextStandsUprightAtItsPosition) {
    EXPECT_THAT(Drawn({MakeText("Word", 10.0, 40.0)}),
                ElementsAre("text \"Word\" [1 0 0 -1 10 10] fill #000000"));
}

TEST(ModelRenderTest, EmptyAndHiddenTextsAreNotDrawn) {
    const auto hidden = MakeText("Word", 1.0, 1.0);
    hidden->SetDrawStyle(kDrawNothing);
    const auto flat = MakeText("Word", 1.0, 1.0);
    ORVPrtTextAttributes attributes;
    attributes.SetHeight(0.0);
    flat->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({MakeText("", 1.0, 1.0), hidden, flat}), IsEmpty());
}

TEST(ModelRenderTest, TextIsTurnedAndSlantedAboutItsPosition) {
    const auto text = MakeText("Word", 10.0, 40.0);
    ORVPrtTextAttributes attributes;
    attributes.SetDirection(static_cast<float>(ORVPI / 2.0));
    text->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({text}), ElementsAre(HasSubstr("[0 -1 -1 0 10 10]")));
    attributes.SetDirection(0.0F);
    attributes.SetSlant(static_cast<float>(ORVPI / 4.0));
    text->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({text}), ElementsAre(HasSubstr("[1 1 0 -1 10 10]")));
}

struct ClipCase {
    const char* name;
    double mirrorHeight;
    ORVMathPoint2D origin;  // of the page
    const char* expected;
};
class ClippedTextTest : public testing::TestWithParam<ClipCase> {
protected:
    /// The drawn text, clipped by a box of 30 x 10 at (1, 2).
    std::string DrawnText(const ORVPrtTransformAttributes& transform = {}) {
        OnePage page;
        page.GetPage().SetOrigin(GetParam().origin);
        page.GetPage().SetMirrorHeight(GetParam().mirrorHeight);
        const auto text = MakeText("Word", GetParam().origin.x + 10.0, GetParam().origin.y + 40.0);
        text->SetClippingBox(1.0, 2.0, 30.0, 10.0);
        text->SetTransformAttributes(transform);
        page.Add(text);
        RecordingGenerator generator;
        DrawAll(page, generator);
        return generator.GetDrawn().at(0);
    }
};

TEST_P(ClippedTextTest, BoxIsMeasuredDownwardsFromTheMirrorHeight) {
    EXPECT_THAT(DrawnText(), HasSubstr(GetParam().expected));
}

// Which end of its page's box zero is, or whether it is none of them, does not matter.
INSTANTIATE_TEST_SUITE_P(
    Pages, ClippedTextTest,
    testing::Values(
        ClipCase{
            "Document", 50.0, {0.0, 0.0}, " [1 0 0 -1 10 10] fill #000000 clip M1,2 L31,2 L31,12 L1,12 Z"},
        ClipCase{
            "Fragment", 0.0, {0.0, -50.0}, " [1 0 0 -1 10 10] fill #000000 clip M1,2 L31,2 L31,12 L1,12 Z"},
        ClipCase{"FragmentThatBeginsElsewhere",
                 0.0,
                 {5.0, -70.0},
                 " [1 0 0 -1 10 10] fill #000000 clip M-4,-18 L26,-18 L26,-8 L-4,-8 Z"},
        ClipCase{"DocumentThatBeginsAtItsHeight",
                 50.0,
                 {0.0, -50.0},
                 " [1 0 0 -1 10 10] fill #000000 clip M1,-48 L31,-48 L31,-38 L1,-38 Z"}),
    kNameOfRow);

TEST(ModelRenderTest, ClippingBoxMovesWithItsText) {
    const auto text = MakeText("Word", 10.0, 40.0);
    text->SetClippingBox(1.0, 2.0, 30.0, 10.0);
    text->SetTransformAttributes(Matrix(2.0, 0.0, 0.0, 1.0));
    const auto group = MakeContainer<ORVPrtGroupElt>({text});
    group->SetTransformAttributes(Translation(3.0, -5.0));
    EXPECT_THAT(Drawn({group}), ElementsAre(HasSubstr(" clip M5,57 L65,57 L65,67 L5,67 Z")));
}

TEST(ModelRenderTest, ClippingBoxThatIsNotFiniteCutsNothingOff) {
    const double bad = std::numeric_limits<double>::infinity();
    for (const auto& [x, height] : {std::pair{bad, 10.0}, {-bad, 10.0}, {0.0, bad}, {0.0, std::nan("")}}) {
        const auto text = MakeText("Word", 10.0, 40.0);
        text->SetClippingBox(x, 2.0, 30.0, height);
        EXPECT_THAT(Drawn({text}), ElementsAre(Not(HasSubstr("clip")))) << x << " " << height;
    }
}

TEST(ModelRenderTest, GroupsThatSaySomethingAreReported) {
    const auto silent = MakeContainer<ORVPrtGroupElt>({MakeLine(0.0, 50.0, 1.0, 50.0)});
    const auto named = MakeContainer<ORVPrtGroupElt>({silent});
    named->SetID("n");
    named->SetDescription("what");
    OnePage page;
    page.Add(named);
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_EQ(generator.GetText(),
              "document \"\" 1\npage 1 100x50\ngroup #n \"what\"\nstroke #000000 w1 M0,0 L1,0\nend "
              "group\nend page\n"
              "end document\n");
}

ORVRef<ORVPrtGroupElt> MakeLink(const char* elementId, const char* url) {
    ORVPrintLinkURI link;
    link.SetElementId(elementId);
    link.SetBaseURL(url);
    ORVPrtGroupAttributes attributes;
    attributes.SetLinkURI(link);
    auto group = Make<ORVPrtGroupElt>();
    group->SetGroupAttributes(attributes);
    return group;
}

TEST(ModelRenderTest, LinksLeadOnlyToGroupsThatAreThere) {
    const auto target = Make<ORVPrtGroupElt>();
    target->SetID("here");
    const auto unlinked = Make<ORVPrtGroupElt>();
    unlinked->SetID("other");
    OnePage page;
    for (const auto& group :
         {MakeLink("here", ""), MakeLink("nowhere", ""), MakeLink("", "http://x/"), target, target, unlinked})
        page.Add(group);
    RecordingGenerator generator;
    DrawAll(page, generator);
    std::vector<std::string> groups;
    for (const std::string& line : generator.GetLines())
        if (line.starts_with("group")) groups.push_back(line);
    EXPECT_THAT(groups, ElementsAre("group ->#here", "group ->http://x/", "group #here target", "group #here",
                                    "group #other"));
}

TEST(ModelRenderTest, LinksLeadToPagesWhereNoAddressIsGiven) {
    OnePage page;
    (*page.GetModel().GetImages())[0]->SetID("page");
    page.Add(MakeLink("page", ""));
    page.Add(MakeLink("page", "http://x/"));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetText(), HasSubstr("group #page target\nend group\ngroup ->#page\n"));
    EXPECT_THAT(generator.GetText(), HasSubstr("->http://x/"));
}

/// A rectangle, a line, a text and an image, called "shape" each, one after the other.
std::vector<ORVRef<ORVPrtGraphicPrimitiveElt>> NamedShapes() {
    const auto bitmap = Make<ORVPrtBitmapImageElt>();
    bitmap->SetSize(30.0, 15.0);
    bitmap->SetPixelImage(MakeImage(2, 3).get());
    std::vector<ORVRef<ORVPrtGraphicPrimitiveElt>> shapes{
        MakeRectangle(0.0, 0.0, 1.0, 1.0), MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
        MakeText("Word", 10.0, 40.0), bitmap};
    for (const auto& shape : shapes) shape->SetID("shape");
    return shapes;
}

std::vector<std::string> PageLines(const RecordingGenerator& generator) {
    const std::vector<std::string>& lines = generator.GetLines();
    return {lines.begin() + 2, lines.end() - 2};  // without document and page
}

TEST(ModelRenderTest, ShapeThatALinkLeadsToIsAGroupOfItsOwn) {
    for (const auto& shape : NamedShapes())
        for (const bool keepsIdentifiers : {false, true}) {
            OnePage page;
            page.Add(MakeLink("shape", ""));
            page.Add(shape);
            page.Add(MakeRectangle(2.0, 0.0, 3.0, 1.0));
            RecordingGenerator generator;
            if (keepsIdentifiers) generator.KeepIdentifiers();
            EXPECT_EQ(DrawAll(page, generator), 1);
            EXPECT_THAT(PageLines(generator),
                        ElementsAre("group ->#shape", "end group", "group #shape target",
                                    Not(HasSubstr("#shape")), "end group", StartsWith("fill #000000 M2,50")));
        }
}

TEST(ModelRenderTest, PageThatALinkLeadsToIsAGroupWithoutContent) {
    const auto shape = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    shape->SetID("page");
    OnePage page;
    page.GetPage().SetID("page");
    page.Add(shape);
    page.Add(MakeLink("page", ""));
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_THAT(PageLines(generator),
                ElementsAre("group #page target", "end group", StartsWith("fill #000000 M0,50"),
                            "group ->#page", "end group"));
}

TEST(ModelRenderTest, PageWithoutLinksToItIsNoGroup) {
    OnePage page;
    page.GetPage().SetID("page");
    page.Add(MakeLink("", "http://x/"));
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_THAT(PageLines(generator), ElementsAre("group ->http://x/", "end group"));
}

TEST(ModelRenderTest, DescriptionOfAShapeIsThatOfAGroupAroundIt) {
    const auto described = MakeRectangle(0.0, 0.0, 1.0, 1.0), both = MakeRectangle(2.0, 0.0, 3.0, 1.0);
    described->SetDescription("Wall");
    both->SetDescription("Door");
    both->SetID("door");
    OnePage page;
    page.Add(described);
    page.Add(both);
    RecordingGenerator indifferent, keen;
    keen.KeepIdentifiers();
    EXPECT_EQ(DrawAll(page, indifferent), 1);
    EXPECT_EQ(DrawAll(page, keen), 1);
    EXPECT_THAT(PageLines(indifferent),
                ElementsAre(StartsWith("fill #000000 M0,50"), StartsWith("fill #000000 M2,50")));
    EXPECT_THAT(PageLines(keen),
                ElementsAre("group \"Wall\"", StartsWith("fill #000000 M0,50"), "end group",
                            "group #door \"Door\"", StartsWith("fill #000000 M2,50"), "end group"));
}

TEST(ModelRenderTest, OtherShapesSayTheirIdentifiersWhereTheyAreOfUse) {
    for (const auto& shape : NamedShapes()) {
        OnePage page;
        page.Add(shape);
        page.Add(MakeRectangle(2.0, 0.0, 3.0, 1.0));
        RecordingGenerator indifferent, keen;
        keen.KeepIdentifiers();
        EXPECT_EQ(DrawAll(page, indifferent), 1);
        EXPECT_EQ(DrawAll(page, keen), 1);
        EXPECT_THAT(PageLines(indifferent),
                    ElementsAre(Not(HasSubstr("#shape")), StartsWith("fill #000000 M2,50")));
        EXPECT_THAT(PageLines(keen), ElementsAre(EndsWith(" #shape"), StartsWith("fill #000000 M2,50")));
        EXPECT_THAT(PageLines(keen).back(), Not(HasSubstr("#shape")));
    }
}

TEST(ModelRenderTest, FirstPlaceUnderAnIdentifierIsTheTargetOfItsLinks) {
    const auto first = MakeRectangle(0.0, 0.0, 1.0, 1.0), second = MakeRectangle(2.0, 0.0, 3.0, 1.0);
    const auto group = Make<ORVPrtGroupElt>();
    for (ORVPrtGraphicPrimitiveElt* named :
         std::initializer_list<ORVPrtGraphicPrimitiveElt*>{first.get(), second.get(), group.get()})
        named->SetID("here");
    OnePage page;
    page.Add(first);
    page.Add(second);
    page.Add(group);
    page.Add(MakeLink("here", ""));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(PageLines(generator), ElementsAre("group #here target", StartsWith("fill #000000 M0,50"),
                                                  "end group", StartsWith("fill #000000 M2,50"),
                                                  "group #here", "end group", "group ->#here", "end group"));
}

TEST(ModelRenderTest, NamedLinesAreNoPiecesOfOthers) {
    const auto curve = [](double x, const char* id) {
        auto one =
            MakePoints<ORVPrtPolyCubicBezierElt>({{x, 50.0}, {x, 40.0}, {x + 5.0, 40.0}, {x + 5.0, 50.0}});
        one->SetID(id);
        return one;
    };
    OnePage page;
    for (const auto& piece : {curve(0.0, ""), curve(5.0, "n"), curve(10.0, "")}) page.Add(piece);
    RecordingGenerator keen;
    keen.KeepIdentifiers();
    DrawAll(page, keen);
    EXPECT_THAT(keen.GetDrawn(), ElementsAre(HasSubstr(" M0,0 "), AllOf(HasSubstr(" M5,0 "), EndsWith(" #n")),
                                             HasSubstr(" M10,0 ")));
    // Where nobody asks, they are one line as before.
    RecordingGenerator indifferent;
    DrawAll(page, indifferent);
    EXPECT_EQ(indifferent.GetDrawn().size(), 1U);
}

TEST(ModelRenderTest, DrawingThatEndsInANamedShapeClosesItsGroup) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 100.0, 50.0);
    rectangle->SetID("here");
    const auto group = MakeContainer<ORVPrtGroupElt>({rectangle});
    OnePage page;
    page.Add(MakeLink("here", ""));
    page.Add(group);
    for (int i = 0; i < 100; ++i) page.Add(group);
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(0);
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator, parameters), ORVPrintModelRender::kTooManyRepeats);
    int open = 0;
    for (const std::string& line : generator.GetLines()) {
        if (line.starts_with("group")) ++open;
        if (line == "end group") --open;
    }
    EXPECT_EQ(open, 0);
    EXPECT_THAT(generator.GetText(), EndsWith("end page\nend document\n"));
}

TEST(ModelRenderTest, DeepTreesCostNoStack) {
    ORVRef<ORVPrtGraphicPrimitiveElt> tree = MakeLine(0.0, 50.0, 1.0, 50.0);
    for (int i = 0; i < 100'000; ++i) tree = MakeContainer<ORVPrtGroupElt>({tree});
    EXPECT_THAT(Drawn({tree}), ElementsAre("stroke #000000 w1 M0,0 L1,0"));
}

TEST(ModelRenderTest, LimitCountsSharedPrimitivesEachTimeBeforeOutputBegins) {
    const auto shared = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    const auto group = MakeContainer<ORVPrtGroupElt>({shared, shared, shared, shared});
    group->SetID("g");
    OnePage page;
    page.Add(group);
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(5);
    RecordingGenerator enough;
    EXPECT_EQ(DrawAll(page, enough, parameters), 1);
    EXPECT_EQ(enough.GetDrawn().size(), 4U);

    parameters.SetDrawLimit(4);
    RecordingGenerator tooFew;
    EXPECT_EQ(DrawAll(page, tooFew, parameters), ORVPrintModelRender::kTooManyPrimitives);
    EXPECT_EQ(tooFew.GetText(), "");
}

TEST(ModelRenderTest, PageWithoutAreaBeginsNoOutput) {
    for (const double width : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        OnePage page;
        page.GetPage().SetSize(width, 10.0);
        RecordingGenerator generator;
        EXPECT_EQ(DrawAll(page, generator), ORVPrintModelRender::kPageWithoutArea);
        EXPECT_THAT(generator.GetLines(), IsEmpty());
    }
}

/// The widths of the pages that come out of a document with pages of these widths.
std::string DrawnWidths(const std::vector<double>& widths, int expectedResult,
                        const ORVPrintParameters& parameters = {}) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    for (const double width : widths) {
        const auto page = Make<ORVPrtImageElt>();
        page->SetSize(width, 1.0);
        model->AddImage(page.get());
    }
    RecordingGenerator generator;
    EXPECT_EQ(ORVPrintModelRender(*model, &generator, parameters).Draw(), expectedResult);
    std::string text = generator.GetText();
    for (const char* rest : {"document \"\" ", "x1\nend page\n", "end document\n"})
        for (std::size_t at = text.find(rest); at != text.npos; at = text.find(rest))
            text.erase(at, strlen(rest));
    for (char& c : text)
        if (c == '\n') c = ';';
    return text;
}

TEST(ModelRenderTest, PagesWithoutAreaArePassedOverAndTold) {
    constexpr int kIncomplete = ORVPrintModelRender::kPageWithoutArea;
    EXPECT_EQ(DrawnWidths({10.0, 20.0}, 1), "2;page 1 10page 2 20");
    EXPECT_EQ(DrawnWidths({10.0, 0.0, 30.0}, kIncomplete), "2;page 1 10page 2 30");
    EXPECT_EQ(DrawnWidths({0.0, -1.0, std::nan(""), 30.0}, kIncomplete), "1;page 1 30");
    EXPECT_EQ(DrawnWidths({0.0, 0.0}, kIncomplete), "");
}

TEST(ModelRenderTest, PagesWithoutAreaThatWereAskedForEndTheDrawing) {
    ORVPrintParameters parameters;
    parameters.SetPages({1, 2});
    EXPECT_EQ(DrawnWidths({10.0, 0.0}, ORVPrintModelRender::kPageWithoutArea, parameters), "");
    parameters.SetPages({1});
    EXPECT_EQ(DrawnWidths({10.0, 0.0}, 1, parameters), "1;page 1 10");
}

TEST(ModelRenderTest, OutputThatCannotBeClosedCountsMoreThanAPageWithoutArea) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    for (const double width : {0.0, 10.0}) {
        const auto page = Make<ORVPrtImageElt>();
        page->SetSize(width, 1.0);
        model->AddImage(page.get());
    }
    RecordingGenerator generator;
    generator.FailAt(4);  // the end of the document
    EXPECT_EQ(ORVPrintModelRender(*model, &generator, {}).Draw(), -99);
}

TEST(ModelRenderTest, GeneratorsFailureEndsTheDrawing) {
    for (std::size_t call = 2; call <= 4; ++call) {
        OnePage page;
        page.Add(MakeRectangle(0.0, 0.0, 1.0, 1.0));
        RecordingGenerator generator;
        generator.FailAt(call);
        EXPECT_EQ(DrawAll(page, generator), -99);
        EXPECT_EQ(generator.GetLines().size(), call + 1);
        EXPECT_EQ(generator.GetLines().back(), "end document failed");
    }
    OnePage page;
    RecordingGenerator generator;
    generator.FailAt(1);
    EXPECT_EQ(DrawAll(page, generator), -99);
    EXPECT_EQ(generator.GetLines().size(), 1U);  // what did not begin has no end
}

/// A model of three pages, 10, 20 and 30 wide.
class ThreePagesTest : public testing::Test {
protected:
    ThreePagesTest() {
        for (const double width : {10.0, 20.0, 30.0}) {
            const auto page = Make<ORVPrtImageElt>();
            page->SetSize(width, 1.0);
            model_->AddImage(page.get());
        }
    }
    ORVRef<ORVPrtModel> model_{new ORVPrtModel};
    RecordingGenerator generator_;
    ORVPrintParameters parameters_;
};

TEST_F(ThreePagesTest, OnePageIsDrawnByNumber) {
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(2), 1);
    EXPECT_EQ(generator_.GetText(), "document \"\" 1\npage 1 20x1\nend page\nend document\n");
}

TEST_F(ThreePagesTest, PageThatIsNotThereDrawsNothing) {
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(4), 0);
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(0), 0);
    EXPECT_THAT(generator_.GetLines(), IsEmpty());
}

TEST_F(ThreePagesTest, ParametersChooseAndOrderPages) {
    parameters_.SetPages({3, 1, 9});
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(), 1);
    EXPECT_EQ(generator_.GetText(),
              "document \"\" 2\npage 1 30x1\nend page\npage 2 10x1\nend page\nend document\n");
}

TEST_F(ThreePagesTest, InspectorSeesTheModelFirst) {
    class Counter final : public ORVPrintModelInspector {
    public:
        void Inspect(const ORVPrtModel& model) override { pages = model.GetImages()->size(); }
        std::size_t pages = 0;
    } counter;
    parameters_.SetModelInspector(&counter);
    EXPECT_EQ(ORVPrintModelRender(*model_, nullptr, parameters_).Draw(), 1);
    EXPECT_EQ(counter.pages, 3U);
}

TEST_F(ThreePagesTest, WithoutGeneratorNothingIsDone) {
    EXPECT_EQ(ORVPrintModelRender(*model_, nullptr, parameters_).Draw(), 0);
}

/// A page with long and short outlines, alone and shared, which nothing but the page holds.
class ModelTakenApartTest : public testing::Test {
protected:
    ModelTakenApartTest() {
        std::vector<ORVMathPoint2D> points;
        for (int i = 0; i < 1024; ++i) points.push_back({static_cast<double>(i % 100), i % 2 * 40.0});
        const auto add = [this](const auto& primitive) {
            page_.Add(primitive);
            return primitive.get();
        };
        long_ = add(MakePoints<ORVPrtPolylineElt>(points));
        polygon_ = add(MakePoints<ORVPrtPolygonElt>(points));
        short_ = add(MakePoints<ORVPrtPolylineElt>({points.begin(), points.end() - 1}));
        const auto figure = Make<ORVPrtClosedFigureElt>();
        {
            const auto region = Make<ORVPrtClosedFigureRegionElt>();
            const auto piece = MakePoints<ORVPrtPolylineElt>(points);
            inFigure_ = piece.get();
            region->AddChild(piece.get());
            figure->AddChild(region.get());
        }
        page_.Add(figure);
        const auto group = Make<ORVPrtGroupElt>();
        {
            const auto piece = MakePoints<ORVPrtPolylineElt>(points);
            inShared_ = piece.get();
            group->AddChild(piece.get());
        }
        page_.Add(group);
        page_.Add(group);
        const auto twice = MakePoints<ORVPrtPolylineElt>(points);
        shared_ = twice.get();
        page_.Add(twice);
        page_.Add(twice);
    }

    std::string Draw() {
        RecordingGenerator generator;
        EXPECT_EQ(DrawAll(page_, generator), 1);
        return generator.GetText();
    }
    /// Draws the model and takes it apart.
    std::string DrawAway(const ORVPrintParameters& parameters = {}) {
        RecordingGenerator generator;
        EXPECT_EQ(ORVPrintModelRender(std::move(page_.GetModel()), &generator, parameters).Draw(), 1);
        return generator.GetText();
    }

    OnePage page_;
    const ORVPrtPolylineElt *long_, *short_, *inFigure_, *inShared_, *shared_;
    const ORVPrtPolygonElt* polygon_;
};

TEST_F(ModelTakenApartTest, GivesBackWhatIsLongAndDrawnOnce) {
    const std::string drawn = Draw();
    EXPECT_EQ(DrawAway(), drawn);
    EXPECT_THAT(long_->GetPoints(), IsEmpty());
    EXPECT_THAT(polygon_->GetPoints(), IsEmpty());
    EXPECT_THAT(inFigure_->GetPoints(), IsEmpty());
    EXPECT_THAT(short_->GetPoints(), testing::SizeIs(1023));
    EXPECT_THAT(inShared_->GetPoints(), testing::SizeIs(1024));
    EXPECT_THAT(shared_->GetPoints(), testing::SizeIs(1024));
}

TEST_F(ModelTakenApartTest, OtherPrintsKeepEverything) {
    Draw();
    EXPECT_THAT(long_->GetPoints(), testing::SizeIs(1024));
    EXPECT_THAT(inFigure_->GetPoints(), testing::SizeIs(1024));
}

TEST_F(ModelTakenApartTest, PageThatIsDrawnTwiceKeepsEverything) {
    ORVPrintParameters parameters;
    parameters.SetPages({1, 1});
    DrawAway(parameters);
    EXPECT_THAT(long_->GetPoints(), testing::SizeIs(1024));
}

TEST(ModelRenderTest, LinesThatMeetTheirStartAreClosedUnlessTheyAreOneEdge) {
    struct Row {
        std::vector<ORVMathPoint2D> points;
        bool isClosed;
    };
    for (const Row& row :
         {Row{{{5, 5}, {5, 5}}, false}, Row{{{5, 5}, {9, 5}}, false}, Row{{{5, 5}, {9, 5}, {5, 5}}, true},
          Row{{{5, 5}, {9, 5}, {9, 9}, {5, 5}}, true}, Row{{{5, 5}, {9, 5}, {9, 9}, {5, 6}}, false}}) {
        OnePage page;
        page.Add(MakePoints<ORVPrtPolylineElt>(row.points));
        RecordingGenerator generator;
        DrawAll(page, generator);
        ASSERT_EQ(generator.GetDrawn().size(), 1U);
        EXPECT_EQ(generator.GetDrawn()[0].ends_with(" Z"), row.isClosed) << generator.GetDrawn()[0];
    }
}

// Angles are floats: an arc begins beside the point that the line before it ends at, the farther the larger.
TEST(ModelRenderTest, AnArcGoesOnFromTheLineBeforeItWithoutATinyEdge) {
    const float pi = 3.14159265F;
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakeLine(0.0, 10.0, 0.0, 0.0), MakeArc(1000.0, 0.0, 1000.0, 1000.0, pi, pi + 0.1F)});
    OnePage page;
    page.Add(MakeContainer<ORVPrtClosedFigureElt>({region}));
    RecordingGenerator generator;
    DrawAll(page, generator);
    ASSERT_EQ(generator.GetDrawn().size(), 1U);
    const std::string drawn = generator.GetDrawn()[0];
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), 'L'), 1) << drawn;
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), 'C'), 1) << drawn;
}

}  // namespace
