// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/transform_list.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/visit_primitive.h"
#include "tests/support/model_sketch.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"

namespace {

// The operations that a list adds to a group, see SketchOf; y is not flipped.
std::string Sketch(std::string_view text, int flip = 0) {
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    EXPECT_EQ(ApplyTransformList(PageState(200.0, 100.0, flip), text, group.get()), kDone);
    const std::string sketch = SketchOf(*group);
    const std::size_t open = sketch.find('['), close = sketch.find(']');
    return open == std::string::npos ? "" : sketch.substr(open + 1, close - open - 1);
}

struct TransformCase {
    const char* name;
    const char* text;
    const char* expected;
};
void PrintTo(const TransformCase& row, std::ostream* out) { *out << row.text; }

class ApplyTransformListTest : public testing::TestWithParam<TransformCase> {};
TEST_P(ApplyTransformListTest, AddsElementaryOperations) {
    EXPECT_EQ(Sketch(GetParam().text), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(
    Transform, ApplyTransformListTest,
    testing::Values(
        TransformCase{"Translate", "translate(1,2)", "t(1,2)"},
        TransformCase{"TranslateX", "translate(10)", "t(10,0)"},
        TransformCase{"Scale", "scale(2)", "sx(2) sy(2)"},
        TransformCase{"ScaleXY", "scale(2 3)", "sx(2) sy(3)"}, TransformCase{"EmptyArguments", "scale()", ""},
        TransformCase{"BlankArguments", "scale( )", "sx(1) sy(1)"},
        TransformCase{"Rotate", "rotate(0.5)", "r(0.008726646192)"},
        // If computed in single precision throughout, the last digits would be 6221.
        TransformCase{"OnlyTheProductIsNarrowed", "rotate(0.9)skewX(0.9)skewY(0.9)",
                      "r(0.01570796408) kx(0.01570796408) ky(0.01570796408)"},
        TransformCase{"RotateTwoNumbers", "rotate(0.5 10)", "r(0.008726646192)"},
        TransformCase{"RotateAboutAPoint", "rotate(0.5 10 20)", "t(10,20) r(0.008726646192) t(-10,-20)"},
        TransformCase{"RotateNothing", "rotate(x)", ""},
        TransformCase{"SkewX", "skewX(0.5)", "kx(0.008726646192)"},
        TransformCase{"SkewY", "skewY(0.5 9)", "ky(0.008726646192)"},
        TransformCase{"SkewUnreadable", "skewX(a 5)", "kx(0)"},
        TransformCase{"Matrix", "matrix(1 2 3 4 5 6)", "t(5,6) m(1 3 2 4)"},
        TransformCase{"MatrixDefaults", "matrix(7)", "t(0,0) m(7 0 0 1)"},
        TransformCase{"TwoInOrder", "translate(1,2) scale(3)", "t(1,2) sx(3) sy(3)"},
        TransformCase{"WithoutAnythingBetween", "scale(3)translate(1)", "sx(3) sy(3) t(1,0)"},
        TransformCase{"UnreadableTokenDropsOut", "translate(a 5)", "t(5,0)"},
        TransformCase{"NameInAnyCase", "TRANSLATE(5)", "t(5,0)"},
        TransformCase{"OtherCaseIsNotSplitOff", "scale(2)Translate(5)", "sx(2) sy(2)"},
        TransformCase{"OtherCaseBehindASemicolon", "scale(2);Translate(5)", "sx(2) sy(2) t(5,0)"},
        TransformCase{"TextBeforeTheFirstNameIsLost", "Translate(5) scale(2)", "sx(2) sy(2)"},
        TransformCase{"NameIsNotTrimmed", "translate (5)", ""}, TransformCase{"NoBracket", "translate 5", ""},
        TransformCase{"NotClosed", "translate(5", ""},
        TransformCase{"ClosedBeforeOpened", "translate)(5", ""}, TransformCase{"UnknownName", "shift(5)", ""},
        TransformCase{"NameInsideArguments", "rotate(scale(2))", "sx(2) sy(2)"},
        TransformCase{"SixNumbersAtMost", "translate(1 2 3 4 5 6 7)", "t(1,2)"},
        TransformCase{"TranslateWithoutNumbers", "translate(x)", "t(0,0)"},
        TransformCase{"UnreadableFactorDropsOut", "scale(x 2 3)", "sx(2) sy(3)"},
        TransformCase{"UnreadableAngleDropsOut", "rotate(x 0.5 10 20)",
                      "t(10,20) r(0.008726646192) t(-10,-20)"},
        TransformCase{"RotateFourNumbers", "rotate(0.5 10 20 30)", "t(10,20) r(0.008726646192) t(-10,-20)"},
        TransformCase{"UnreadableMatrixEntryMovesTheRestUp", "matrix(1 x 2 3 4 5 6)", "t(5,6) m(1 3 2 4)"},
        TransformCase{"MatrixWithoutNumbers", "matrix(x)", "t(0,0) m(1 0 0 1)"},
        TransformCase{"SkewIsNotSplit", "skewX(0.5,9)", "kx(0.008726646192)"},
        TransformCase{"SkewInAnyCase", ";SKEWX(0.5);skewy(0.5)", "kx(0.008726646192) ky(0.008726646192)"},
        TransformCase{"CommasAndBlanks", "translate( 1 ,, 2 )", "t(1,2)"},
        TransformCase{"TabDoesNotSeparate", "translate(1\t2 3)", "t(1,3)"},
        TransformCase{"UnitsAreIgnored", "translate(1mm,50%)", "t(1,50)"},
        TransformCase{"Semicolons", ";;translate(1);;;scale(2);", "t(1,0) sx(2) sy(2)"},
        TransformCase{"TextInFrontOfANameIsLost", "translate(7),scale(2)", "t(7,0) sx(2) sy(2)"},
        TransformCase{"SecondBracketIsIgnored", "translate(1)(2)", "t(1,0)"},
        TransformCase{"OpenBracketRunsToTheFirstClosing", "translate(1(2)", "t(1,0)"},
        TransformCase{"NameAloneThenAnother", "scale translate(1)", "t(1,0)"},
        TransformCase{"NameBehindText", "x translate(1)", "t(1,0)"}, TransformCase{"Empty", "", ""}),
    kNameOfRow);

TEST(TransformMirrorTest, StandsOnBothSidesAlsoOfNothing) {
    EXPECT_EQ(Sketch("translate(1,2)", 1), "~100 t(1,2) ~100");
    EXPECT_EQ(Sketch("", 1), "~100 ~100");
    EXPECT_EQ(Sketch("rubbish", 1), "~100 ~100");
    EXPECT_EQ(Sketch("scale(2) rotate(0.5)", 1), "~100 sx(2) sy(2) r(0.008726646192) ~100");
    EXPECT_EQ(Sketch("translate(1,2)", 2), "t(1,2)");  // only 1 means flipped
}

TEST(TransformTargetTest, NullIsUnusable) {
    EXPECT_EQ(ApplyTransformList(PageState(1.0, 1.0), "scale(2)", nullptr), kUnusable);
}

TEST(TransformTargetTest, AddsToWhatIsThere) {
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    const PageState state(1.0, 1.0, 0);
    ApplyTransformList(state, "scale(2)", group.get());
    ApplyTransformList(state, "translate(3)", group.get());
    EXPECT_EQ(group->GetTransformAttributes().GetOperations().size(), 3U);
}

template <class Primitive>
std::size_t OperationsOn() {
    const ORVRef<Primitive> primitive(new Primitive);
    EXPECT_EQ(ApplyTransformList(PageState(1.0, 1.0, 0), "translate(1)", primitive.get()), kDone);
    return GetTransform(*primitive).GetOperations().size();
}

TEST(TransformTargetTest, OnlyClassesThatCarryATransformGetOne) {
    EXPECT_EQ(OperationsOn<ORVPrtBitmapImageElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtCircleElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtClosedFigureElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtClosedFigureRegionElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtEllipseElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtEllipticalArcElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtGroupElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtLineElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtPolyCubicBezierElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtPolygonElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtPolylineElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtPolyQuadraticBezierElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtRectangleElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtSymbolElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtTextElt>(), 1U);
    EXPECT_EQ(OperationsOn<ORVPrtPatternElt>(), 0U);
    EXPECT_EQ(OperationsOn<ORVPrtImageElt>(), 0U);
    EXPECT_EQ(OperationsOn<ORVPrtDefsElt>(), 0U);
}

}  // namespace
