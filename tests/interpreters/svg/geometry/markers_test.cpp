// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/markers.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtModel.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/sketch_case.h"

namespace {

// "m" is an empty marker: a symbol that is only translated. An instance at the vertex (x, y) of the drawing
// appears as g[~100 t(x,y) ~100]{...}.
constexpr const char* kMarker = "<defs><marker id='m'/><symbol id='n'/></defs>";

class MarkerPlacementTest : public testing::TestWithParam<SketchCase> {};

TEST_P(MarkerPlacementTest, PutsInstancesOnVertices) {
    std::string expected(GetParam().expected);
    const std::string marker = "symbol#m[~100 t(0,0) ~100]{}";
    for (std::size_t at = expected.find("{m}"); at != expected.npos; at = expected.find("{m}", at + 1))
        expected.replace(at + 1, 1, marker);
    for (std::size_t at = expected.find("{n}"); at != expected.npos; at = expected.find("{n}", at + 1))
        expected.replace(at + 1, 1, "symbol#n{}");
    ExpectSketch(Drawing(kMarker + std::string(GetParam().content)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, MarkerPlacementTest,
    testing::Values(SketchCase{"Start", "<line x1='1' y1='2' x2='3' y2='4' marker-start='url(#m)'/>",
                               "line(1,98 3,96) g[~100 t(1,2) ~100]{m}"},
                    SketchCase{"End", "<line x1='1' y1='2' x2='3' y2='4' marker-end='url(#m)'/>",
                               "line(1,98 3,96) g[~100 t(3,4) ~100]{m}"},
                    SketchCase{"MidIsNeverPlaced", "<line x1='1' y1='2' x2='3' y2='4' marker-mid='url(#m)'/>",
                               "line(1,98 3,96)"},
                    SketchCase{"AllThree", "<line x1='1' y1='2' x2='3' y2='4' marker='url(#m)'/>",
                               "line(1,98 3,96) g[~100 t(1,2) ~100]{m} g[~100 t(3,4) ~100]{m}"},
                    SketchCase{"DefaultPoints", "<line marker-end='url(#m)'/>",
                               "line(0,100 0,100) g[~100 t(0,0) ~100]{m}"},
                    SketchCase{"SpecificBehindGeneral",
                               "<line x2='9' marker='url(#m)' marker-end='url(#n)'/>",
                               "line(0,100 9,100) g[~100 t(0,0) ~100]{m} g[~100 t(9,0) ~100]{n}"},
                    SketchCase{"SpecificNone", "<line x2='9' marker='url(#m)' marker-start='none '/>",
                               "line(0,100 9,100) g[~100 t(9,0) ~100]{m}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    PointLists, MarkerPlacementTest,
    testing::Values(
        SketchCase{"StartOfAPolyline", "<polyline points='1 2 3 4 5 6' marker-start='url(#m)'/>",
                   "polyline(1,98 3,96 5,94) g[~100 t(1,2) ~100]{m}"},
        SketchCase{"MidsOfAPolyline", "<polyline points='1 2 3 4 5 6 7 8' marker-mid='url(#m)'/>",
                   "polyline(1,98 3,96 5,94 7,92) g[~100 t(3,4) ~100]{m} g[~100 t(5,6) ~100]{m}"},
        SketchCase{"NoMidOfTwoPoints", "<polyline points='1 2 3 4' marker-mid='url(#m)'/>",
                   "polyline(1,98 3,96)"},
        SketchCase{
            "OrderIsStartMidEnd", "<polyline points='1 2 3 4 5 6' marker='url(#m)'/>",
            "polyline(1,98 3,96 5,94) g[~100 t(1,2) ~100]{m} g[~100 t(3,4) ~100]{m} g[~100 t(5,6) ~100]{m}"},
        SketchCase{"EndOfAPolygonIsItsLastListedPoint",
                   "<polygon points='1 2 3 4 5 6' marker-end='url(#m)'/>",
                   "polygon(1,98 3,96 5,94) g[~100 t(5,6) ~100]{m}"},
        SketchCase{"OneVertexIsStartAndEnd", "<polyline points='1 2' marker='url(#m)'/>",
                   "polyline(1,98) g[~100 t(1,2) ~100]{m} g[~100 t(1,2) ~100]{m}"},
        SketchCase{"OddNumberIsNoVertex", "<polyline points='1 2 3' marker-end='url(#m)'/>",
                   "polyline(1,98) g[~100 t(1,2) ~100]{m}"},
        SketchCase{"NoVertexNoMarker",
                   "<polyline points='' marker='url(#m)'/><polyline points='5' marker='url(#m)'/>",
                   "polyline() polyline()"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Paths, MarkerPlacementTest,
    testing::Values(SketchCase{"StandInThePathsGroup",
                               "<path fill='none' stroke='red' d='M1 2 L3 4 5 6' marker='url(#m)'/>",
                               "g{polyline(1,98 3,96 5,94) g[~100 t(1,2) ~100]{m} g[~100 t(3,4) ~100]{m} "
                               "g[~100 t(5,6) ~100]{m}}"},
                    SketchCase{"BehindTheFigure", "<path fill='red' d='M1 2 L3 4 5 6' marker-end='url(#m)'/>",
                               "g{figure{region{polyline(1,98 3,96 5,94)}} g[~100 t(5,6) ~100]{m}}"},
                    SketchCase{"ClosingIsAVertex",
                               "<path fill='none' stroke='red' d='M1 2 L3 4 Z' marker-end='url(#m)'/>",
                               "g{polyline(1,98 3,96 1,98) g[~100 t(1,2) ~100]{m}}"},
                    SketchCase{"WithoutVertexNone", "<path d='5' marker='url(#m)'/>", "g{}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Containers, MarkerPlacementTest,
    testing::Values(
        SketchCase{"Group", "<g><line marker-end='url(#m)'/></g>",
                   "g{line(0,100 0,100) g[~100 t(0,0) ~100]{m}}"},
        SketchCase{"Link", "<a><polyline points='1 2' marker-end='url(#m)'/></a>",
                   "g{polyline(1,98) g[~100 t(1,2) ~100]{m}}"},
        SketchCase{"Symbol",
                   "<defs><symbol id='s'><line marker-end='url(#m)'/></symbol></defs><use xlink:href='#s'/>",
                   "g{symbol#s{line(0,100 0,100) g[~100 t(0,0) ~100]{m}}}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    References, MarkerPlacementTest,
    testing::Values(
        SketchCase{"AreInherited", "<g marker-end='url(#m)'><line/></g><line/>",
                   "g{line(0,100 0,100) g[~100 t(0,0) ~100]{m}} line(0,100 0,100)"},
        SketchCase{"AreRestored", "<line marker='url(#m)'/><line/>",
                   "line(0,100 0,100) g[~100 t(0,0) ~100]{m} g[~100 t(0,0) ~100]{m} line(0,100 0,100)"},
        SketchCase{"MatchWithoutRegardToCase", "<line marker-end='url(#M)'/>",
                   "line(0,100 0,100) g[~100 t(0,0) ~100]{m}"},
        SketchCase{"UnknownDrawsNothing", "<line marker-end='url(#x)'/>", "line(0,100 0,100)"},
        SketchCase{"AnyDefinitionWillDo", "<line marker-end='url(#n)'/>",
                   "line(0,100 0,100) g[~100 t(0,0) ~100]{n}"},
        SketchCase{"StyleHasNone", "<line style='marker-end:url(#m)'/>", "line(0,100 0,100)"},
        SketchCase{"RectHasNone",
                   "<rect marker='url(#m)'/><circle marker='url(#m)'/><ellipse marker='url(#m)'/>",
                   "rect(0,100 0,100) circle(0,100 0) ellipse(0,100 0,0)"},
        SketchCase{"EmptyValueKeepsTheInherited", "<g marker-end='url(#m)'><line marker-end=''/></g>",
                   "g{line(0,100 0,100) g[~100 t(0,0) ~100]{m}}"},
        SketchCase{"InheritKeepsTheInherited", "<g marker-end='url(#m)'><line marker-end='inherit'/></g>",
                   "g{line(0,100 0,100) g[~100 t(0,0) ~100]{m}}"}),
    kNameOfRow);

TEST(MarkerPlacementTest, PlainNoneFindsADefinitionOfThatName) {
    ExpectSketch(Drawing("<defs><symbol id='none'/></defs><line marker-end='none'/>"),
                 "line(0,100 0,100) g[~100 t(0,0) ~100]{symbol#none{}}");
}

TEST(MarkerPlacementTest, WithoutMirroringInstancesAreOnlyMoved) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    SvgDrawState state;
    state.model = model.get();
    state.pageHeight = 100.0;
    state.yFlip = 0;
    ResolvedMarkers markers;
    markers.start = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtGroupElt);
    const double vertices[] = {1.0, 2.0, 3.0, 4.0};
    PlaceMarkers(state, markers, vertices, *container);
    EXPECT_EQ(SketchOf(*container), "g{g[t(1,2)]{g{}}}");
}

TEST(MarkerPlacementTest, InstancesShareTheDefinition) {
    for (const Backend backend : kBackends) {
        const BuiltModel model(Drawing("<defs><marker id='m'/></defs><line fill='' marker='url(#m)'/>"),
                               {.backend = backend});
        const ORVPrtChildList& children = model.GetPage().GetChildren();
        ASSERT_EQ(children.size(), 3U);
        ASSERT_EQ(children[1]->GetChildList()->size(), 1U);
        EXPECT_EQ(children[1]->GetChildList()->front(), children[2]->GetChildList()->front());
    }
}

}  // namespace
