// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/path_data.h"

#include <gtest/gtest.h>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVRef.h"
#include "tests/support/model_sketch.h"
#include "tests/support/sketch_case.h"

namespace {

// Interprets path data on a page of 200 x 100.
struct Interpretation {
    explicit Interpretation(int drawStyle) : model(new ORVPrtModel), group(new ORVPrtGroupElt) {
        state.model = model.get();
        state.pageWidth = 200.0;
        state.pageHeight = 100.0;
        state.drawStyle = drawStyle;
    }

    std::string Sketch(std::string_view data) {
        PathDataInterpreter interpreter(state, *group);
        result = interpreter.Interpret(data);
        vertices = interpreter.GetVertices();
        return SketchOfChildren(*group);
    }

    ORVRef<ORVPrtModel> model;
    ORVRef<ORVPrtGroupElt> group;
    SvgDrawState state;
    int result = 0;
    std::vector<double> vertices;
};

// Only stroked, so primitives are direct children of the group. y is mirrored against the height of 100.
class StrokedPathTest : public testing::TestWithParam<SketchCase> {};

TEST_P(StrokedPathTest, BecomesPrimitives) {
    EXPECT_EQ(Interpretation(kDrawStroke).Sketch(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    StraightLines, StrokedPathTest,
    testing::Values(
        SketchCase{"PairsBehindMAreLines", "M10 10 20 20 30 10", "polyline(10,90 20,80 30,90)"},
        SketchCase{"MoveDrawsNothing", "M5 5", ""}, SketchCase{"MoveBehindMove", "M5 5 M6 6", ""},
        SketchCase{"MoveEndsALine", "M1 1 L2 2 M3 3 L4 4", "polyline(1,99 2,98) polyline(3,97 4,96)"},
        SketchCase{"LinesGoOn", "M0 0 5 5 L9 9 8 8L7 7", "polyline(0,100 5,95 9,91 8,92 7,93)"},
        SketchCase{"RepeatedPointCountsOnce", "M0 0 L0 0 L5 5", "polyline(0,100 5,95)"},
        SketchCase{"PointsRepeatApart", "M0 0 L5 5 L0 0", "polyline(0,100 5,95 0,100)"},
        SketchCase{"SameXIsAnotherPoint", "M0 0 L0 5 L5 5", "polyline(0,100 0,95 5,95)"},
        SketchCase{"LineWithoutMoveStartsAtItsFirstPoint", "L5 5 10 10", "polyline(5,95 10,90)"},
        SketchCase{"LoneLineWithoutMove", "L5 5", ""},
        SketchCase{
            "ManyPoints", "M1 0 2 0 3 0 4 0 5 0 6 0 7 0 8 0 9 0 10 0 11 0 12 0 13 0",
            "polyline(1,100 2,100 3,100 4,100 5,100 6,100 7,100 8,100 9,100 10,100 11,100 12,100 13,100)"},
        SketchCase{"OddNumberIsDropped", "M0 0 L5 5 7", "polyline(0,100 5,95)"},
        SketchCase{"NoPair", "M0 0 L5", ""},
        SketchCase{"MoveWithoutPairForgetsTheLastPoint", "M0 0 L5 5 M L9 9 8 8",
                   "polyline(0,100 5,95) polyline(9,91 8,92)"},
        SketchCase{"MoveWithoutPairKeepsTheCurrentPoint", "M5 5 M l1 1 1 1", "polyline(6,94 7,93)"},
        SketchCase{"MoveWithoutPairKeepsTheSubpathStart", "M5 5 L6 6 7 7 M L8 8 Z",
                   "polyline(5,95 6,94 7,93) polyline(8,92 5,95)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    RelativeLines, StrokedPathTest,
    testing::Values(SketchCase{"EachPairFollowsTheOneBefore", "M10 10 l5 5 5 5",
                               "polyline(10,90 15,85 20,80)"},
                    SketchCase{"FirstMoveStartsAtThePageHeight", "m5 5 5 5", "polyline(5,95 10,90)"},
                    SketchCase{"LineFirstStartsAtThePageHeight", "l5 5 5 5", "polyline(5,95 10,90)"},
                    SketchCase{"MoveIsRelativeToTheCurrentPoint", "M10 10 L20 20 m1 2 l1 1",
                               "polyline(10,90 20,80) polyline(21,78 22,77)"},
                    SketchCase{"DownIsDown", "M0 0 l0 10", "polyline(0,100 0,90)"},
                    SketchCase{"AbsoluteBehindRelative", "M10 10 l5 5 L5 5", "polyline(10,90 15,85 5,95)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    HorizontalAndVertical, StrokedPathTest,
    testing::Values(SketchCase{"Horizontal", "M5 5 H10 20", "polyline(5,95 10,95 20,95)"},
                    SketchCase{"Vertical", "M5 5 V10 20", "polyline(5,95 5,90 5,80)"},
                    SketchCase{"RelativeHorizontal", "M5 5 h5 -2", "polyline(5,95 10,95 8,95)"},
                    SketchCase{"RelativeVertical", "M5 5 v3 -1", "polyline(5,95 5,92 5,93)"},
                    SketchCase{"TheyMoveTheCurrentPoint", "M5 5 H10 V20 l1 1",
                               "polyline(5,95 10,95 10,80 11,79)"},
                    SketchCase{"PercentOfWidthAndHeight", "M0 0 H10% V10%", "polyline(0,100 20,100 20,90)"},
                    SketchCase{"UnreadableIsSkipped", "M0 0 H x 10 V y 5", "polyline(0,100 10,100 10,95)"},
                    SketchCase{"SamePointCountsOnce", "M0 0 H0 H5", "polyline(0,100 5,100)"},
                    SketchCase{"FirstCommand", "H5 10", "polyline(5,100 10,100)"},
                    SketchCase{"RelativeVerticalFirst", "v5 5", "polyline(0,95 0,90)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Closing, StrokedPathTest,
    testing::Values(
        SketchCase{"GoesBackToTheSubpathStart", "M0 0 L10 0 10 10 Z", "polyline(0,100 10,100 10,90 0,100)"},
        SketchCase{"LowerCaseIsTheSame", "M0 0 L10 0 10 10 z", "polyline(0,100 10,100 10,90 0,100)"},
        SketchCase{"WhatFollowsStartsThere", "M1 1 L10 0 Z L5 5",
                   "polyline(1,99 10,100 1,99) polyline(1,99 5,95)"},
        SketchCase{"RelativeBehindIt", "M1 1 L10 0 Z l5 5", "polyline(1,99 10,100 1,99) polyline(1,99 6,94)"},
        SketchCase{"SubpathStartIsTheFirstPairOfM", "M1 1 2 2 3 3 Z", "polyline(1,99 2,98 3,97 1,99)"},
        SketchCase{"OfAMoveOnly", "M5 5 Z", ""},
        SketchCase{"AlreadyThere", "M0 0 L5 5 L0 0 Z", "polyline(0,100 5,95 0,100)"},
        SketchCase{"WithoutMoveGoesToThePageHeight", "L5 5 Z", "polyline(5,95 0,100)"},
        SketchCase{"FirstCommand", "Z L5 5", "polyline(0,100 5,95)"},
        SketchCase{"NumbersBehindItAreIgnored", "M0 0 L5 5 Z 7 7 L9 9",
                   "polyline(0,100 5,95 0,100) polyline(0,100 9,91)"},
        SketchCase{"Twice", "M0 0 L5 5 Z Z", "polyline(0,100 5,95 0,100)"},
        SketchCase{"MoveBehindIt", "M0 0 L5 5 Z M1 1 L2 2 Z",
                   "polyline(0,100 5,95 0,100) polyline(1,99 2,98 1,99)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    CubicCurves, StrokedPathTest,
    testing::Values(
        SketchCase{"One", "M0 0 C1 2 3 4 5 6", "cubic(0,100 1,98 3,96 5,94)"},
        SketchCase{"Two", "M0 0 C1 2 3 4 5 6 7 8 9 10 11 12", "cubic(0,100 1,98 3,96 5,94 7,92 9,90 11,88)"},
        SketchCase{"Relative", "M10 10 c1 2 3 4 5 6 1 1 2 2 3 3",
                   "cubic(10,90 11,88 13,86 15,84 16,83 17,82 18,81)"},
        SketchCase{"TooFewNumbersDrawNothing", "M0 0 C1 2 3 4 5", ""},
        SketchCase{"TooFewKeepTheCurrentPoint", "M7 7 C1 2 3 4 5 L9 9", "polyline(7,93 9,91)"},
        SketchCase{"RestOfAnotherCurveIsIgnored", "M0 0 C1 2 3 4 5 6 7 8 9 10 11",
                   "cubic(0,100 1,98 3,96 5,94)"},
        SketchCase{"LineBeforeIsDrawnFirst", "M0 0 L1 1 C1 2 3 4 5 6",
                   "polyline(0,100 1,99) cubic(1,99 1,98 3,96 5,94)"},
        SketchCase{"LineBehindStartsAtItsEnd", "M0 0 C1 2 3 4 5 6 L9 9",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 9,91)"},
        SketchCase{"RelativeBehindIt", "M0 0 C1 2 3 4 5 6 l1 1",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 6,93)"},
        SketchCase{"WithoutMove", "C1 2 3 4 5 6", "cubic(0,100 1,98 3,96 5,94)"},
        SketchCase{"PercentAndUnits", "M0 0 C50% 50% 1in 0 1 1", "cubic(0,100 100,50 89.9999978,100 1,99)"},
        SketchCase{"ClosingBehindIt", "M1 1 C1 2 3 4 5 6 Z",
                   "cubic(1,99 1,98 3,96 5,94) polyline(5,94 1,99)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    SmoothCubicCurves, StrokedPathTest,
    testing::Values(
        SketchCase{"ReflectsTheLastControl", "M0 0 C1 2 3 4 5 6 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) cubic(5,94 7,92 7,92 9,91)"},
        SketchCase{"ReflectsItsOwn", "M0 0 S1 2 3 4 5 6 7 7", "cubic(0,100 0,100 1,98 3,96 5,94 5,94 7,93)"},
        SketchCase{"Relative", "M10 10 s1 2 3 4 1 1 5 5", "cubic(10,90 10,90 11,88 13,86 15,84 14,85 18,81)"},
        SketchCase{"TooFewNumbers", "M0 0 S1 2 3 L9 9", "polyline(0,100 9,91)"},
        SketchCase{"RestIsIgnored", "M0 0 S1 2 3 4 5 6 7", "cubic(0,100 0,100 1,98 3,96)"},
        SketchCase{"BehindALineReflectsNothing", "M0 0 C1 2 3 4 5 6 L8 8 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 8,92) cubic(8,92 8,92 7,92 9,91)"},
        SketchCase{"BehindAMove", "M0 0 C1 2 3 4 5 6 M8 8 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) cubic(8,92 8,92 7,92 9,91)"},
        SketchCase{"BehindHorizontal", "M0 0 C1 2 3 4 5 6 H8 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 8,94) cubic(8,94 8,94 7,92 9,91)"},
        SketchCase{"BehindVertical", "M0 0 C1 2 3 4 5 6 V8 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 5,92) cubic(5,92 5,92 7,92 9,91)"},
        SketchCase{"BehindClosing", "M0 0 C1 2 3 4 5 6 Z S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 0,100) cubic(0,100 0,100 7,92 9,91)"},
        SketchCase{"BehindAMoveWithoutPair", "M0 0 C1 2 3 4 5 6 M S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) cubic(5,94 5,94 7,92 9,91)"},
        SketchCase{"BehindACurveThatWasTooShort", "M0 0 C1 2 3 4 5 6 C1 2 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) cubic(5,94 7,92 7,92 9,91)"},
        SketchCase{"BehindAQuadraticCurve", "M0 0 Q3 4 5 6 S7 8 9 9",
                   "quad(0,100 3,96 5,94) cubic(5,94 7,92 7,92 9,91)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    QuadraticCurves, StrokedPathTest,
    testing::Values(
        SketchCase{"One", "M0 0 Q1 2 3 4", "quad(0,100 1,98 3,96)"},
        SketchCase{"Two", "M0 0 Q1 2 3 4 5 6 7 8", "quad(0,100 1,98 3,96 5,94 7,92)"},
        SketchCase{"Relative", "M10 10 q1 2 3 4 1 1 2 2", "quad(10,90 11,88 13,86 14,85 15,84)"},
        SketchCase{"TooFewNumbers", "M0 0 Q1 2 3 L9 9", "polyline(0,100 9,91)"},
        SketchCase{"RestIsIgnored", "M0 0 Q1 2 3 4 5 6 7", "quad(0,100 1,98 3,96)"},
        SketchCase{"LineBehind", "M0 0 Q1 2 3 4 L9 9", "quad(0,100 1,98 3,96) polyline(3,96 9,91)"},
        SketchCase{"LineBefore", "M0 0 L5 5 Q1 2 3 4", "polyline(0,100 5,95) quad(5,95 1,98 3,96)"},
        SketchCase{"SmoothReflects", "M0 0 Q5 5 10 0 T20 0",
                   "quad(0,100 5,95 10,100) quad(10,100 15,105 20,100)"},
        SketchCase{"SmoothReflectsItsOwn", "M0 0 Q5 5 10 0 T20 0 30 0",
                   "quad(0,100 5,95 10,100) quad(10,100 15,105 20,100 25,95 30,100)"},
        SketchCase{"SmoothRelative", "M10 10 q1 1 2 0 t2 0 2 0",
                   "quad(10,90 11,89 12,90) quad(12,90 13,91 14,90 15,89 16,90)"},
        SketchCase{"SmoothTooFewNumbers", "M0 0 T1 L9 9", "polyline(0,100 9,91)"},
        SketchCase{"SmoothRestIsIgnored", "M0 0 T1 1 2", "quad(0,100 0,100 1,99)"},
        SketchCase{"SmoothBehindALine", "M0 0 Q5 5 10 0 L20 0 T30 0",
                   "quad(0,100 5,95 10,100) polyline(10,100 20,100) quad(20,100 20,100 30,100)"},
        SketchCase{"SmoothBehindACubicCurve", "M0 0 C1 2 3 4 5 6 T9 9",
                   "cubic(0,100 1,98 3,96 5,94) quad(5,94 7,92 9,91)"},
        SketchCase{"LineBehindSmooth", "M0 0 T5 5 L9 9", "quad(0,100 0,100 5,95) polyline(5,95 9,91)"},
        SketchCase{"LineBeforeSmooth", "M0 0 L1 1 T5 5", "polyline(0,100 1,99) quad(1,99 1,99 5,95)"}),
    kNameOfRow);

// Angles in radians to five digits. Mirroring reverses the sweep.
INSTANTIATE_TEST_SUITE_P(
    Arcs, StrokedPathTest,
    testing::Values(
        SketchCase{"HalfCircleOverTheTop", "M0 0 A10 10 0 0 1 20 0", "arc(10,100 10,10 3.14159..0)"},
        SketchCase{"HalfCircleBelow", "M0 0 A10 10 0 0 0 20 0", "arc(10,100 10,10 3.14159..6.28319)"},
        SketchCase{"RotationIsTheSlope", "M0 0 A10 10 90 0 1 20 0",
                   "arc(10,100 10,10 1.5708..-1.5708 slope1.5708)"},
        SketchCase{"TwoArcs", "M0 0 A10 10 0 0 1 20 0 5 5 0 0 1 30 0",
                   "arc(10,100 10,10 3.14159..0) arc(25,100 5,5 3.14159..0)"},
        SketchCase{"Relative", "M10 10 a10 10 0 0 1 20 0 5 5 0 0 1 10 0",
                   "arc(20,90 10,10 3.14159..0) arc(35,90 5,5 3.14159..0)"},
        SketchCase{"RelativeDown", "M10 10 a10 10 0 0 1 0 20", "arc(10,80 10,10 1.5708..-1.5708)"},
        SketchCase{"RadiiPercents", "M0 0 A5% 10% 0 0 1 20 0", "arc(10,100 10,10 3.14159..0)"},
        SketchCase{"EndPercents", "M0 50 A10 10 0 0 1 10% 50%", "arc(10,50 10,10 3.14159..0)"},
        SketchCase{"OneRadiusZeroIsStraight", "M0 0 A5 0 0 0 1 20 0", "polyline(0,100 20,100)"},
        SketchCase{"OtherRadiusZeroIsStraight", "M0 0 A0 5 0 0 1 20 0", "polyline(0,100 20,100)"},
        SketchCase{"StraightToTheSamePoint", "M0 0 A0 5 0 0 1 0 0", ""},
        SketchCase{"BehindAStraightOneALineGoesOn", "M0 0 A0 5 0 0 1 20 0 L30 0",
                   "polyline(0,100 20,100) polyline(20,100 30,100)"},
        SketchCase{"BothRadiiZeroMove", "M0 0 A0 0 0 0 1 20 0 L30 0", "polyline(20,100 30,100)"},
        SketchCase{"BothRadiiNegativeMove", "M0 0 A-1 -1 0 0 1 20 0 l10 0", "polyline(20,100 30,100)"},
        SketchCase{"SamePointDrawsNothing", "M5 5 A9 9 0 0 1 5 5 L6 6", "polyline(5,95 6,94)"},
        SketchCase{"LineBeforeAndBehind", "M0 0 L0 1 A10 10 0 0 1 20 1 L30 1",
                   "polyline(0,100 0,99) arc(10,99 10,10 3.14159..0) polyline(20,99 30,99)"},
        SketchCase{"SmallRadiiGrow", "M0 0 A1 1 0 0 1 12 16", "arc(6,92 10,10 2.2143..-0.9273)"},
        SketchCase{"RadiusThatTheStartDoesNotShowStays", "M0 0 A1 1 0 0 1 20 0",
                   "arc(10,100 10,1 3.14159..0)"},
        SketchCase{"LargeFlagTwoIsNotSet", "M0 0 A5 5 0 2 1 6 0", "arc(3,96 5,5 2.2143..0.9273)"},
        SketchCase{"LargeFlagOneIsSet", "M0 0 A5 5 0 1 1 6 0", "arc(3,104 5,5 4.06889..-0.9273)"},
        SketchCase{"SweepFlagTwoIsInvertedToo", "M0 0 A10 10 0 0 2 20 0", "arc(10,100 10,10 3.14159..0)"},
        SketchCase{"FewerThanSevenMoveNothing", "M0 0 A1 1 0 0 1 20 L30 0", "polyline(0,100 30,100)"},
        SketchCase{"RestIsIgnored", "M0 0 A10 10 0 0 1 20 0 5 5 0", "arc(10,100 10,10 3.14159..0)"},
        SketchCase{"SmoothBehindAnArc", "M0 0 C1 2 3 4 5 6 A10 10 0 0 1 25 6 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) arc(15,94 10,10 3.14159..0) cubic(25,94 25,94 7,92 9,91)"},
        SketchCase{"SmoothBehindAnArcOfNothing", "M0 0 C1 2 3 4 5 6 A0 0 0 0 1 25 6 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) cubic(25,94 25,94 7,92 9,91)"},
        SketchCase{"SmoothBehindAStraightArc", "M0 0 C1 2 3 4 5 6 A5 0 0 0 1 25 6 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) polyline(5,94 25,94) cubic(25,94 25,94 7,92 9,91)"},
        SketchCase{"SmoothBehindAnArcThatWasTooShort", "M0 0 C1 2 3 4 5 6 A5 S7 8 9 9",
                   "cubic(0,100 1,98 3,96 5,94) cubic(5,94 7,92 7,92 9,91)"},
        // The first token of the second arc is missing only from the list of first radii.
        SketchCase{"UnreadableTokenIsMissingFromItsOwnList",
                   "M0 0 A10 10 0 0 1 20 0 x 7 0 0 1 30 0 5 9 0 0 1 40 0",
                   "arc(10,100 10,10 3.14159..0) arc(25,100 5,7 3.14159..0)"},
        SketchCase{"UnreadableFlagMovesUp", "M0 0 A10 10 0 x 1 20 0 5 5 0 0 0 30 0",
                   "arc(10,100 10,10 3.14159..0)"},
        SketchCase{"RadiiWithUnits", "M0 0 A1in 1in 0 0 1 2in 0",
                   "arc(89.9999978,100 89.9999978,89.9999978 3.14159..0)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Texts, StrokedPathTest,
    testing::Values(
        SketchCase{"Empty", "", ""}, SketchCase{"NoCommand", "5 5 6 6", ""},
        SketchCase{"TextBeforeTheFirstCommand", "5 5 M0 0 L1 1", "polyline(0,100 1,99)"},
        SketchCase{"UnknownLetterIsANumberThatCannotBeRead", "M0 0 B5 5 L3 3", "polyline(0,100 3,97)"},
        SketchCase{"UnreadableXMovesUp", "M0 0 L x 1 2 3", "polyline(0,100 99,2)"},
        SketchCase{"UnreadableYMovesUp", "M0 0 L 1 y 2 3", "polyline(0,100 1,2)"},
        SketchCase{"LastTokenIsAnXLikeAnyOther", "M0 0 L 1 y 7%", "polyline(0,100 1,14)"},
        SketchCase{"LowerCaseExponent", "M1e-3 0 L5 5", "polyline(0.001,100 5,95)"},
        SketchCase{"UpperCaseExponentIsSplit", "M1E-3 0 L5 5", "polyline(1,103 5,95)"},
        SketchCase{"UpperCaseExponentWithoutMinus", "M1E1 0 L5 5", "polyline(10,100 5,95)"},
        SketchCase{"MinusSeparates", "M0-1L2-3", "polyline(0,101 2,103)"},
        SketchCase{"InchesAndPercents", "M0 0 L1in 1in 50% 50%",
                   "polyline(0,100 89.9999978,10.0000022 100,50)"},
        SketchCase{"OtherUnitsAreCommands", "M0 0 L5 10mm1 1 2 2",
                   "polyline(0,100 5,90) polyline(6,89 8,87)"},
        SketchCase{"RelativePercents", "M10 10 l10% 10%", "polyline(10,90 30,80)"},
        SketchCase{"TabsDoNotSeparate", "M0\t7 0 L5 5", "polyline(0,100 5,95)"},
        SketchCase{"SemicolonEndsACommand", "M0 0 L5 5;9 9", "polyline(0,100 5,95)"},
        SketchCase{"EveryLetterInLowerCase", "m0 0l1 1h1v1c0 0 0 0 1 1s0 0 1 1q0 0 1 1t1 1z",
                   "polyline(0,100 1,99 2,99 2,98) cubic(2,98 2,98 2,98 3,97) cubic(3,97 4,96 3,97 4,96) "
                   "quad(4,96 4,96 5,95) quad(5,95 6,94 6,94) polyline(6,94 0,100)"}),
    kNameOfRow);

// Filled: everything is in the regions of one figure.
class FilledPathTest : public testing::TestWithParam<SketchCase> {};

TEST_P(FilledPathTest, GathersRegions) {
    EXPECT_EQ(Interpretation(kDrawFill).Sketch(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Regions, FilledPathTest,
    testing::Values(
        SketchCase{"OneOutline", "M0 0 L10 0 L10 10", "figure{region{polyline(0,100 10,100 10,90)}}"},
        SketchCase{
            "EveryClosingStartsARegion", "M0,0 L10,0 Z M20,0 L30,0 Z",
            "figure{region{polyline(0,100 10,100 0,100)} region{polyline(20,100 30,100 20,100)} region{}}"},
        SketchCase{"MoveStartsARegion", "M0 0 L5 0 L5 5 M9 9 L8 8",
                   "figure{region{polyline(0,100 5,100 5,95)} region{polyline(9,91 8,92)}}"},
        SketchCase{"MoveBehindNothingStartsNone", "M0 0 M5 5 L6 6 L7 7",
                   "figure{region{polyline(5,95 6,94 7,93)}}"},
        SketchCase{"MoveBehindACurve", "M0 0 C1 1 2 2 3 3 M5 5 L6 6",
                   "figure{region{cubic(0,100 1,99 2,98 3,97)} region{polyline(5,95 6,94)}}"},
        SketchCase{"ClosingTwiceLeavesAnEmptyRegion", "M0 0 L5 5 Z Z L6 6",
                   "figure{region{polyline(0,100 5,95 0,100)} region{} region{polyline(0,100 6,94)}}"},
        SketchCase{"EveryKindOfPrimitive", "M0 0 L1 1 C1 1 2 2 3 3 Q1 1 2 2 A9 9 0 0 1 20 2",
                   "figure{region{polyline(0,100 1,99) cubic(1,99 1,99 2,98 3,97) quad(3,97 1,99 2,98) "
                   "arc(11,98 9,9 3.14159..0)}}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Degenerate, FilledPathTest,
    testing::Values(
        SketchCase{"TwoVerticesAreOnlyStroked", "M0 0 L5 5", "polyline(0,100 5,95)"},
        SketchCase{"ThreeVerticesAreFilled", "M0 0 L5 5 L6 6", "figure{region{polyline(0,100 5,95 6,94)}}"},
        SketchCase{"RepeatedVerticesCount", "M0 0 L5 5 L5 5", "figure{region{polyline(0,100 5,95)}}"},
        SketchCase{"OneCurve", "M0 0 C1 1 2 2 3 3", "cubic(0,100 1,99 2,98 3,97)"},
        SketchCase{"OneArc", "M0 0 A10 10 0 0 1 20 0", "arc(10,100 10,10 3.14159..0)"},
        SketchCase{"ArcOfNothingIsAVertex", "M0 0 L1 1 A0 0 0 0 1 20 0",
                   "figure{region{polyline(0,100 1,99)}}"},
        SketchCase{"ClosingIsAVertex", "M0 0 L1 1 Z", "figure{region{polyline(0,100 1,99 0,100)} region{}}"},
        SketchCase{"HorizontalAndVerticalAreVertices", "M0 0 H1 V1",
                   "figure{region{polyline(0,100 1,100 1,99)}}"},
        SketchCase{"EarlierRegionsGoAway", "L5 5 Z", ""},
        SketchCase{"ChildrenOfTheLastRegionStay", "C1 1 2 2 3 3 M5 5 L", ""},
        SketchCase{"MoveOnly", "M0 0", ""}, SketchCase{"NoCommand", "5 5", ""},
        SketchCase{"OnlySemicolons", ";;", ""}),
    kNameOfRow);

struct StyleCase {
    const char* name;
    int drawStyle;
    const char* expected;
};

class PathStyleTest : public testing::TestWithParam<StyleCase> {};

TEST_P(PathStyleTest, DecidesWhetherThereIsAFigure) {
    EXPECT_EQ(Interpretation(GetParam().drawStyle).Sketch("M0 0 L1 0 L1 1"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Styles, PathStyleTest,
    testing::Values(StyleCase{"Nothing", kDrawNothing, "polyline(0,100 1,100 1,99)"},
                    StyleCase{"Stroke", kDrawStroke, "polyline(0,100 1,100 1,99)"},
                    StyleCase{"Fill", kDrawFill, "figure{region{polyline(0,100 1,100 1,99)}}"},
                    StyleCase{"FillAndStroke", kDrawFillAndStroke,
                              "figure{region{polyline(0,100 1,100 1,99)}}"},
                    StyleCase{"Undecided", kDrawUndecided, "figure{region{polyline(0,100 1,100 1,99)}}"}),
    kNameOfRow);

// Without mirroring, y is as written; only the first point is still at the page height.
class UnmirroredPathTest : public testing::TestWithParam<SketchCase> {};

TEST_P(UnmirroredPathTest, KeepsY) {
    Interpretation interpretation(kDrawStroke);
    interpretation.state.yFlip = 0;
    EXPECT_EQ(interpretation.Sketch(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, UnmirroredPathTest,
    testing::Values(SketchCase{"Lines", "M0 0 l0 10 L5 5 v7 V9", "polyline(0,0 0,10 5,5 5,12 5,9)"},
                    SketchCase{"FirstRelativeMove", "m5 5 1 1", "polyline(5,105 6,106)"},
                    SketchCase{"Curve", "M0 0 c1 1 2 2 3 3", "cubic(0,0 1,1 2,2 3,3)"},
                    SketchCase{"ArcSweepStays", "M0 0 A10 10 0 0 1 20 0", "arc(10,0 10,10 3.14159..6.28319)"},
                    SketchCase{"RelativeArc", "M1 1 a10 10 0 0 1 20 0", "arc(11,1 10,10 3.14159..6.28319)"},
                    SketchCase{"ArcSweepTwoIsNotSet", "M0 0 A10 10 0 0 2 20 0",
                               "arc(10,0 10,10 3.14159..0)"}),
    kNameOfRow);

TEST(PathDataTest, ReportsEmptyData) {
    Interpretation interpretation(kDrawFill);
    interpretation.Sketch("");
    EXPECT_EQ(interpretation.result, kUnusable);
    interpretation.Sketch("5");
    EXPECT_EQ(interpretation.result, kDone);
    interpretation.Sketch("M0 0");
    EXPECT_EQ(interpretation.result, kDone);
}

struct VertexCase {
    const char* name;
    const char* data;
    std::vector<double> vertices;
};

class PathVerticesTest : public testing::TestWithParam<VertexCase> {};

TEST_P(PathVerticesTest, AreTheEndPointsOfAllCommands) {
    Interpretation interpretation(kDrawStroke);
    interpretation.Sketch(GetParam().data);
    EXPECT_EQ(interpretation.vertices, GetParam().vertices);
}

INSTANTIATE_TEST_SUITE_P(
    Vertices, PathVerticesTest,
    testing::Values(
        VertexCase{"None", "5", {}}, VertexCase{"Move", "M1 2 3 4", {1, 98, 3, 96}},
        VertexCase{"Line", "M1 2 L3 4 3 4", {1, 98, 3, 96, 3, 96}},
        VertexCase{"HorizontalVertical", "M0 0 H1 2 V1 2", {0, 100, 1, 100, 2, 100, 2, 99, 2, 98}},
        VertexCase{"Close", "M1 2 L3 4 Z", {1, 98, 3, 96, 1, 98}},
        VertexCase{"Cubic", "M0 0 C1 1 2 2 3 3 4 4 5 5 6 6", {0, 100, 3, 97, 6, 94}},
        VertexCase{"SmoothCubic", "M0 0 S1 1 2 2 3 3 4 4", {0, 100, 2, 98, 4, 96}},
        VertexCase{"Quadratic", "M0 0 Q1 1 2 2 3 3 4 4", {0, 100, 2, 98, 4, 96}},
        VertexCase{"SmoothQuadratic", "M0 0 T1 1 2 2", {0, 100, 1, 99, 2, 98}},
        VertexCase{"Arcs", "M0 0 A9 9 0 0 0 5 5 0 9 0 0 0 6 6 0 0 0 0 0 7 7", {0, 100, 5, 95, 6, 94, 7, 93}},
        VertexCase{"IncompleteCommandsHaveNone", "M0 0 L1 C1 1 2 2 3 A1 1 1", {0, 100}}),
    kNameOfRow);

}  // namespace
