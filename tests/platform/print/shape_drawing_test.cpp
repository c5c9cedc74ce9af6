// SPDX-License-Identifier: Apache-2.0

// How primitives are drawn: draw styles, paints and outlines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/mathematics/constants.h"
#include "tests/platform/print/drawn_page.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/named_rows.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

struct DrawStyleCase {
    const char* name;
    int style;
    const char* start;  // of the recorded line; empty if nothing is drawn
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

TEST(ShapeDrawingTest, ColoursComeFromTheTableWithTheirOpacity) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourIndex(1);
    fill.SetFillColourTransparency(128);
    fill.SetFillRule(kFillEvenOdd);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill #ff0000@128 eo M")));
}

TEST(ShapeDrawingTest, WhatIsWhollyTransparentIsNotDrawn) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourTransparency(0);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), IsEmpty());
}

TEST(ShapeDrawingTest, StrokesNeedAWidth) {
    for (const double width : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        const auto line = MakeLine(0.0, 0.0, 1.0, 0.0);
        ORVPrtStrokeAttributes stroke;
        stroke.SetStrokeWidth(width);
        line->SetStrokeAttributes(stroke);
        EXPECT_THAT(Drawn({line}), IsEmpty()) << width;
    }
}

TEST(ShapeDrawingTest, CapsAndJoinsAreResolved) {
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

TEST(ShapeDrawingTest, CircleIsFourCurvesWhenSmall) {
    const auto drawn = Drawn({MakeCircle(10.0, 40.0, 10.0)});
    EXPECT_THAT(drawn, ElementsAre("fill #000000 M20,10 C20,15.523 15.523,20 10,20 C4.477,20 0,15.523 0,10 "
                                   "C0,4.477 4.477,0 10,0 C15.523,0 20,4.477 20,10 Z"));
}

TEST(ShapeDrawingTest, DashesOfEllipsesBeginAtTheRightAndRunClockwise) {
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

TEST(ShapeDrawingTest, RadiiThatAreNotPositiveDrawNothing) {
    EXPECT_THAT(Drawn({MakeCircle(0.0, 0.0, 0.0), MakeCircle(0.0, 0.0, -3.0)}), IsEmpty());
}

TEST(ShapeDrawingTest, TransformsOfContainersAndPrimitivesMultiply) {
    const auto line = MakeLine(0.0, 0.0, 1.0, 0.0);
    line->SetTransformAttributes(Translation(5.0, 0.0));
    const auto symbol = MakeContainer<ORVPrtSymbolElt>({line});
    symbol->SetTransformAttributes(Matrix(2.0, 0.0, 0.0, 2.0));
    EXPECT_THAT(Drawn({symbol}), ElementsAre("stroke #000000 w1 M10,50 L12,50"));
}

TEST(ShapeDrawingTest, MapsWithoutAreaDrawNothing) {
    const auto flat = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    flat->SetTransformAttributes(Matrix(1.0, 0.0, 0.0, 0.0));
    const auto group = MakeContainer<ORVPrtGroupElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)});
    group->SetTransformAttributes(Matrix(std::nan(""), 0.0, 0.0, 1.0));
    EXPECT_THAT(Drawn({flat, group}), IsEmpty());
}

TEST(ShapeDrawingTest, PolylineThatComesBackIsClosed) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}, {9.0, 40.0}, {0.0, 50.0}}),
                       MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}, {9.0, 40.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 L9,0 L9,10 L0,0 Z", "stroke #000000 w1 M0,0 L9,0 L9,10"));
}

TEST(ShapeDrawingTest, PointsThatAreNotFiniteAreLeftOut) {
    const double bad = std::numeric_limits<double>::infinity();
    EXPECT_THAT(
        Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {bad, 0.0}, {5.0, 50.0}}),
               MakeRectangle(0.0, 0.0, bad, 1.0), MakeCircle(0.0, 0.0, bad), MakeLine(0.0, 0.0, bad, 0.0)}),
        ElementsAre("stroke #000000 w1 M0,0 L5,0"));
}

TEST(ShapeDrawingTest, QuadraticCurvesAreRaisedByADegree) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolyQuadraticBezierElt>({{0.0, 50.0}, {3.0, 44.0}, {6.0, 50.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 C2,4 4,4 6,0"));
}

TEST(ShapeDrawingTest, ArcRunsFromItsStartToItsEnd) {
    const auto up = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0);
    const auto down = MakeArc(0.0, 50.0, 10.0, 10.0, ORVPI / 2.0, 0.0);
    up->SetDrawStyle(kDrawStroke);
    down->SetDrawStyle(kDrawStroke);
    EXPECT_THAT(Drawn({up}), ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10"));
    EXPECT_THAT(Drawn({down}), ElementsAre("stroke #000000 w1 M0,-10 C5.523,-10 10,-5.523 10,0"));
}

TEST(ShapeDrawingTest, ArcByItselfIsStrokedAndNeverFilled) {
    for (const int style : {kDrawStroke, kDrawFill, kDrawFillAndStroke, kDrawUndecided}) {
        const auto arc = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0);
        arc->SetDrawStyle(style);
        EXPECT_THAT(Drawn({arc}), ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10")) << style;
    }
    const auto hidden = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, 1.0);
    hidden->SetDrawStyle(kDrawNothing);
    EXPECT_THAT(Drawn({hidden}), IsEmpty());
}

TEST(ShapeDrawingTest, FilledArcsThatMeetAreOneLine) {
    const auto group = MakeContainer<ORVPrtGroupElt>({MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0),
                                                      MakeArc(0.0, 50.0, 10.0, 10.0, ORVPI / 2.0, ORVPI)});
    EXPECT_THAT(
        Drawn({group}),
        ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10 C-5.523,-10 -10,-5.523 -10,0"));
}

TEST(ShapeDrawingTest, PiecesOfAPathAreStrokedAsOneLine) {
    const auto group = MakeContainer<ORVPrtGroupElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
         MakePoints<ORVPrtPolyCubicBezierElt>({{6.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {6.0, 44.0}}),
         MakePoints<ORVPrtPolylineElt>({{6.0, 44.0}, {0.0, 50.0}})});
    EXPECT_THAT(Drawn({group}), ElementsAre("stroke #000000 w1 M0,0 L6,0 C9,0 9,6 6,6 L0,0 Z"));
}

TEST(ShapeDrawingTest, LinesThatTouchStayApart) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
                       MakePoints<ORVPrtPolylineElt>({{6.0, 50.0}, {6.0, 40.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 L6,0", "stroke #000000 w1 M6,0 L6,10"));
}

TEST(ShapeDrawingTest, PiecesOfDifferentPaintOrPlaceStayApart) {
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

TEST(ShapeDrawingTest, RegionsAreContoursOfOneShape) {
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

TEST(ShapeDrawingTest, PiecesOfARegionThatDoNotMeetAreJoined) {
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {5.0, 50.0}}),
         MakePoints<ORVPrtPolylineElt>({{5.0, 45.0}, {0.0, 45.0}})});
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtClosedFigureElt>({region})}),
                ElementsAre("fill #000000 M0,0 L5,0 L5,5 L0,5"));
}

TEST(ShapeDrawingTest, PiecesRegionsAndFiguresAreMovedOneAfterTheOther) {
    const auto piece = MakePoints<ORVPrtPolylineElt>({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}});
    piece->SetTransformAttributes(Matrix(10.0, 0.0, 0.0, 10.0));
    const auto plain = MakePoints<ORVPrtPolylineElt>({{10.0, 10.0}, {0.0, 10.0}});
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>({piece, plain});
    region->SetTransformAttributes(Translation(5.0, 0.0));
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({region});
    figure->SetTransformAttributes(Translation(0.0, 20.0));
    EXPECT_THAT(Drawn({figure}), ElementsAre("fill #000000 M5,30 L15,30 L15,20 L5,20"));
}

TEST(ShapeDrawingTest, ArcsInARegionEndWhereTheNextPieceStarts) {
    // The angles are floats, so the arc ends near (0, 60), while the line starts exactly there.
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0),
         MakePoints<ORVPrtPolylineElt>({{0.0, 60.0}, {0.0, 50.0}, {10.0, 50.0}})});
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtClosedFigureElt>({region})}),
                ElementsAre("fill #000000 M10,0 C10,-5.523 5.523,-10 0,-10 L0,0 L10,0 Z"));
}

TEST(ShapeDrawingTest, HiddenFigureIsNotDrawnNorAreItsPieces) {
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {5.0, 50.0}})});
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({region});
    figure->SetDrawStyle(kDrawNothing);
    EXPECT_THAT(Drawn({figure}), IsEmpty());
}

TEST(ShapeDrawingTest, PatternDrawsNothing) {
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtPatternElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)})}), IsEmpty());
}

}  // namespace
