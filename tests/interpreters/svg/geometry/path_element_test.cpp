// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/path_element.h"

#include <gtest/gtest.h>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/system/ORVRef.h"
#include "tests/support/built_model.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sketch_case.h"

namespace {

class PathElementTest : public testing::TestWithParam<SketchCase> {};

TEST_P(PathElementTest, BecomesAGroup) { ExpectSketch(Drawing(GetParam().content), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Groups, PathElementTest,
    testing::Values(
        SketchCase{"WithoutData", "<path/>", "g{}"}, SketchCase{"WithEmptyData", "<path d=''/>", "g{}"},
        SketchCase{"WithoutDataKeepsIdentifierAndTransform", "<path id='p' transform='scale(2)'/>",
                   "g#p[~100 sx(2) sy(2) ~100]{}"},
        SketchCase{"Filled", "<path fill='red' d='M0 0 L1 0 L1 1'/>",
                   "g{figure{region{polyline(0,100 1,100 1,99)}}}"},
        SketchCase{"Stroked", "<path fill='none' stroke='red' d='M0 0 L1 0 L1 1'/>",
                   "g{polyline(0,100 1,100 1,99)}"},
        SketchCase{"FilledByDefault", "<path d='M0 0 L1 0 L1 1'/>",
                   "g{figure{region{polyline(0,100 1,100 1,99)}}}"},
        SketchCase{"TransformIsOfTheGroup", "<path transform='translate(1,2)' d='M0 0 L1 1'/>",
                   "g[~100 t(1,2) ~100]{polyline(0,100 1,99)}"},
        SketchCase{"PatternTransformIsNotForPaths", "<path patternTransform='scale(2)'/>", "g{}"},
        SketchCase{"PathLengthNeverScales", "<path pathLength='1000' d='M0 0 L1 1'/>",
                   "g{polyline(0,100 1,99)}"},
        SketchCase{"DescriptionIsOfTheGroup", "<path d='M0 0 L1 1'><title>T</title><desc>D</desc></path>",
                   "g\"D\"{polyline(0,100 1,99)}"},
        SketchCase{"OtherChildrenAreNotDrawn", "<path><rect/></path>", "g{}"},
        SketchCase{"LineBreaksInDataAreBlanks", "<path d='M0 0\nL1&#32;1\tL2 2 0 0'/>",
                   "g{figure{region{polyline(0,100 1,99 2,98 0,100)}}}"},
        SketchCase{"TabsAsReferencesAreNot", "<path fill='none' stroke='red' d='M0&#9;7 0 L5 5'/>",
                   "g{polyline(0,100 5,95)}"}),
    kNameOfRow);

class PathPaintTest : public testing::TestWithParam<SketchCase> {};

TEST_P(PathPaintTest, IsOfTheChildren) {
    ExpectPaintedSketch(Drawing(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Paint, PathPaintTest,
    testing::Values(
        SketchCase{
            "FigureHasStyleFillAndStroke",
            "<path fill='red' stroke='blue' fill-rule='evenodd' d='M0 0 H1 V1'/>",
            "g{figure:3 fill=#ff0000 eo stroke=#0000ff{region{polyline(0,100 1,100 1,99) stroke=#0000ff}}}"},
        SketchCase{"CurvesHaveTheStroke",
                   "<path fill='none' stroke='blue' stroke-width='3' d='M0 0 C1 1 2 2 3 3 Q1 1 2 2'/>",
                   "g{cubic(0,100 1,99 2,98 3,97) stroke=#0000ff w3 quad(3,97 1,99 2,98) stroke=#0000ff w3}"},
        SketchCase{"ArcsHaveStyleFillAndStroke",
                   "<path fill='none' stroke='blue' d='M0 0 A10 10 0 0 1 20 0'/>",
                   "g{arc(10,100 10,10 3.14159..0):1 fill=#000000 stroke=#0000ff}"},
        SketchCase{"ArcsOfAFigureHaveThem", "<path fill='red' d='M0 0 H1 A10 10 0 0 1 21 0'/>",
                   "g{figure:2 fill=#ff0000 stroke=#000000{region{polyline(0,100 1,100) stroke=#000000 "
                   "arc(11,100 10,10 3.14159..0):2 fill=#ff0000 stroke=#000000}}}"},
        SketchCase{"DissolvedFigureLeavesStrokes", "<path fill='red' stroke='blue' d='M0 0 L5 5'/>",
                   "g{polyline(0,100 5,95) stroke=#0000ff}"},
        SketchCase{
            "NothingReachesASibling", "<path fill='red' d='M0 0 H1 V1'/><path fill='' d='M0 0 H1 V1'/>",
            "g{figure:2 fill=#ff0000 stroke=#000000{region{polyline(0,100 1,100 1,99) stroke=#000000}}} "
            "g{figure:2 fill=#000000 stroke=#000000{region{polyline(0,100 1,100 1,99) stroke=#000000}}}"}),
    kNameOfRow);

template <class Access>
class PathHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(PathHandlerTest, ElementAccesses);

TYPED_TEST(PathHandlerTest, RefusesANullGroup) {
    const ORVXmlNode node;
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    EXPECT_EQ(HandlePath(SvgDrawState(), TypeParam(&node), nullptr, *container), kUnusable);
    EXPECT_EQ(HandlePath(SvgDrawState(), TypeParam(&node), container.get(), *container), kDone);
}

}  // namespace
