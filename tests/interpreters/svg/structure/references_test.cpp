// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/references.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/system/ORVRef.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sketch_case.h"

namespace {

// "r" is a rectangle of 10 x 20 at the origin, "q" the same at (5, 6).
constexpr const char* kDefinitions =
    "<defs><rect id='r' width='10' height='20'/><rect id='q' x='5' y='6' width='10' height='20'/>"
    "<polyline id='none'/><line id='flat' x2='5'/></defs>";

class UseTest : public testing::TestWithParam<SketchCase> {};

TEST_P(UseTest, PlacesTheDefinition) {
    ExpectSketch(Drawing(kDefinitions + std::string(GetParam().content)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    References, UseTest,
    testing::Values(
        SketchCase{"ByIdentifier", "<use xlink:href='#r'/>", "g{rect#r(0,100 10,80)}"},
        SketchCase{"WithoutRegardToCase", "<use xlink:href='#R'/>", "g{rect#r(0,100 10,80)}"},
        SketchCase{"Unknown", "<use xlink:href='#x'/>", "g{}"}, SketchCase{"Absent", "<use/>", "g{}"},
        SketchCase{"Empty", "<use xlink:href=''/>", "g{}"},
        SketchCase{"HashAlone", "<use xlink:href='#'/>", "g{}"},
        SketchCase{"WithoutHash", "<use xlink:href='r'/><use xlink:href='xr'/>", "g{} g{}"},
        SketchCase{"HashLater", "<use xlink:href='d.svg#r'/>", "g{}"},
        SketchCase{"BlankBefore", "<use xlink:href=' #r'/>", "g{}"},
        SketchCase{"PlainHref", "<use href='#r'/>", "g{}"},
        SketchCase{"Identifier", "<use id='u' xlink:href='#r'/>", "g#u{rect#r(0,100 10,80)}"},
        SketchCase{"OwnContentIsNotDrawn", "<use xlink:href='#r'><line/></use>", "g{rect#r(0,100 10,80)}"},
        SketchCase{"BeforeTheDefinition", "<use xlink:href='#late'/><defs><rect id='late'/></defs>", "g{}"},
        SketchCase{"PagesContentIsNotFound", "<rect id='drawn'/><use xlink:href='#drawn'/>",
                   "rect#drawn(0,100 0,100) g{}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Position, UseTest,
    testing::Values(
        SketchCase{"XAndY", "<use xlink:href='#r' x='5' y='6'/>", "g[~100 t(5,6) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"XOnly", "<use xlink:href='#r' x='5'/>", "g[~100 t(5,0) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"YOnly", "<use xlink:href='#r' y='-6'/>", "g[~100 t(0,-6) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"Zero", "<use xlink:href='#r' x='0' y='0'/>", "g{rect#r(0,100 10,80)}"},
        SketchCase{"Percents", "<use xlink:href='#r' x='10%' y='10%'/>",
                   "g[~100 t(20,10) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"OfNothing", "<use x='5' y='6'/>", "g[~100 t(5,6) ~100]{}"},
        SketchCase{"BehindTheTransform", "<use xlink:href='#r' x='5' transform='scale(2)'/>",
                   "g[~100 sx(2) sy(2) ~100 ~100 t(5,0) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"BothTransforms",
                   "<use xlink:href='#r' transform='scale(2)' patternTransform='translate(1)'/>",
                   "g[~100 t(1,0) ~100 ~100 sx(2) sy(2) ~100]{rect#r(0,100 10,80)}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Fit, UseTest,
    testing::Values(
        SketchCase{"Width", "<use xlink:href='#r' width='20' height='20'/>",
                   "g[~100 sx(2) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"Height", "<use xlink:href='#r' width='10' height='60'/>",
                   "g[~100 sy(3) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"AboutTheCornerOfTheContent", "<use xlink:href='#q' width='20' height='60'/>",
                   "g[~100 t(5,6) sx(2) sy(3) t(-5,-6) ~100]{rect#q(5,94 15,74)}"},
        SketchCase{"AndPosition", "<use xlink:href='#q' x='1' y='2' width='20' height='60'/>",
                   "g[~100 t(6,8) sx(2) sy(3) t(-5,-6) ~100]{rect#q(5,94 15,74)}"},
        SketchCase{"SameSizeIsOnlyMoved", "<use xlink:href='#q' x='1' y='2' width='10' height='20'/>",
                   "g[~100 t(1,2) ~100]{rect#q(5,94 15,74)}"},
        SketchCase{"WithinOnePercentIsOnlyMoved",
                   "<use xlink:href='#q' x='1' y='2' width='10.09' height='19.81'/>",
                   "g[~100 t(1,2) ~100]{rect#q(5,94 15,74)}"},
        SketchCase{"OnePercentIsOutside", "<use xlink:href='#r' width='10.1' height='20'/>",
                   "g[~100 sx(1.01) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"OneScaleWithinOnePercent", "<use xlink:href='#r' width='10.05' height='40'/>",
                   "g[~100 sy(2) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"Percents", "<use xlink:href='#r' width='10%' height='60%'/>",
                   "g[~100 sx(2) sy(3) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"WidthAloneDoesNotFit", "<use xlink:href='#r' width='20'/>", "g{rect#r(0,100 10,80)}"},
        SketchCase{"HeightAloneDoesNotFit", "<use xlink:href='#r' x='1' height='20'/>",
                   "g[~100 t(1,0) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"ZeroDoesNotFit", "<use xlink:href='#r' width='0' height='20'/>",
                   "g{rect#r(0,100 10,80)}"},
        SketchCase{"NegativeDoesNotFit", "<use xlink:href='#r' width='-20' height='20'/>",
                   "g{rect#r(0,100 10,80)}"},
        SketchCase{"ContentWithoutBox", "<use xlink:href='#none' x='1' width='20' height='20'/>",
                   "g[~100 t(1,0) ~100]{polyline#none()}"},
        SketchCase{"FlatContent", "<use xlink:href='#flat' x='1' width='20' height='20'/>",
                   "g[~100 t(1,0) ~100]{line#flat(0,100 5,100)}"},
        SketchCase{"OwnTransformDoesNotCount",
                   "<use xlink:href='#r' width='20' height='20' transform='scale(9)'/>",
                   "g[~100 sx(9) sy(9) ~100 ~100 sx(2) ~100]{rect#r(0,100 10,80)}"},
        SketchCase{"TransformOfTheContentCounts",
                   "<defs><rect id='t' width='10' height='20' transform='translate(50,0)'/></defs>"
                   "<use xlink:href='#t' width='20' height='20'/>",
                   "g[~100 t(50,0) sx(2) t(-50,0) ~100]{rect#t[~100 t(50,0) ~100](0,100 10,80)}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    SymbolFit, UseTest,
    testing::Values(
        SketchCase{"SmallerScaleAndCentred",
                   "<symbol id='s' viewBox='0 0 10 10'/><use xlink:href='#s' width='20' height='40'/>",
                   "g[~100 t(0,10) sx(2) sy(2) ~100]{symbol#s<0 0 10 10>{}}"},
        SketchCase{"CentredAcross",
                   "<symbol id='s' viewBox='0 0 10 10'/><use xlink:href='#s' width='40' height='20'/>",
                   "g[~100 t(10,0) sx(2) sy(2) ~100]{symbol#s<0 0 10 10>{}}"},
        SketchCase{
            "PositionAndMinimum",
            "<symbol id='s' viewBox='1 2 10 10'/><use xlink:href='#s' x='3' y='4' width='20' height='20'/>",
            "g[~100 t(3,4) sx(2) sy(2) t(-1,-2) ~100]{symbol#s<1 2 10 10>{}}"},
        SketchCase{"WithinOnePercent",
                   "<symbol id='s' viewBox='0 0 10 10'/><use xlink:href='#s' width='10.08' height='10.08'/>",
                   "g[~100 t(0.04,0.04) ~100]{symbol#s<0 0 10 10>{}}"},
        SketchCase{"SameSize",
                   "<symbol id='s' viewBox='0 0 10 10'/><use xlink:href='#s' width='10' height='10'/>",
                   "g{symbol#s<0 0 10 10>{}}"},
        SketchCase{"MinimumAlone",
                   "<symbol id='s' viewBox='1 2 10 10'/><use xlink:href='#s' width='10' height='10'/>",
                   "g[~100 t(-1,-2) ~100]{symbol#s<1 2 10 10>{}}"},
        SketchCase{"WithoutSizeIsOnlyMoved",
                   "<symbol id='s' viewBox='1 2 10 10'/><use xlink:href='#s' x='3'/>",
                   "g[~100 t(3,0) ~100]{symbol#s<1 2 10 10>{}}"},
        SketchCase{"ContentDoesNotCount",
                   "<symbol id='s' viewBox='0 0 10 10'><rect width='99' height='99'/></symbol>"
                   "<use xlink:href='#s' width='20' height='20'/>",
                   "g[~100 sx(2) sy(2) ~100]{symbol#s<0 0 10 10>{rect(0,100 99,1)}}"},
        SketchCase{"EmptyViewBoxFitsTheContent",
                   "<symbol id='s' viewBox='0 0 0 10'><rect width='10' height='20'/></symbol>"
                   "<use xlink:href='#s' width='20' height='20'/>",
                   "g[~100 sx(2) ~100]{symbol#s<0 0 0 10>{rect(0,100 10,80)}}"},
        SketchCase{"NegativeViewBoxFitsTheContent",
                   "<symbol id='s' viewBox='0 0 10 -10'><rect width='10' height='20'/></symbol>"
                   "<use xlink:href='#s' width='20' height='20'/>",
                   "g[~100 sx(2) ~100]{symbol#s<0 0 10 -10>{rect(0,100 10,80)}}"},
        SketchCase{"WithoutViewBoxFitsTheContent",
                   "<symbol id='s'><rect width='10' height='20'/></symbol><use xlink:href='#s' width='20' "
                   "height='20'/>",
                   "g[~100 sx(2) ~100]{symbol#s{rect(0,100 10,80)}}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Cycles, UseTest,
    testing::Values(
        SketchCase{"ItselfIsPassedOver",
                   "<defs><g id='a'><use xlink:href='#a'/></g></defs><use xlink:href='#a'/>", "g{g#a{g{}}}"},
        SketchCase{"SymbolItself", "<symbol id='a'><use xlink:href='#a'/></symbol><use xlink:href='#a'/>",
                   "g{symbol#a{g{}}}"},
        SketchCase{"UseOfItsOwnIdentifier",
                   "<defs><use id='a' xlink:href='#a'/></defs><use xlink:href='#a'/>", "g{g#a{}}"},
        SketchCase{"TwoThatNameEachOther",
                   "<defs><g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g></defs>"
                   "<use xlink:href='#a'/><use xlink:href='#b'/>",
                   "g{g#a{g{}}} g{g#b{g{g#a{g{}}}}}"},
        SketchCase{"MarkerInsideItself",
                   "<marker id='a' markerWidth='1'><line marker-end='url(#a)'/></marker><line "
                   "marker-end='url(#a)'/>",
                   "line(0,100 0,100) g[~100 t(0,0) ~100]{symbol#a[~100 t(0,0) ~100]{line(0,100 0,100)}}"},
        SketchCase{"PatternInsideItself",
                   "<pattern id='a'><use xlink:href='#a'/></pattern><use xlink:href='#a'/>",
                   "g{pattern#a{g{}}}"},
        SketchCase{"NextCandidateIsTaken",
                   "<defs><g id='a'><defs><line id='a'/></defs><use xlink:href='#a'/></g></defs><use "
                   "xlink:href='#a'/>",
                   "g{g#a{g{line#a(0,100 0,100)}}}"},
        SketchCase{"EarlierChildIsTaken",
                   "<defs><line id='a'/><g id='a'><use xlink:href='#a'/></g></defs><use xlink:href='#a'/>",
                   "g{line#a(0,100 0,100)}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    FirstMatch, UseTest,
    testing::Values(
        SketchCase{"InAHolder", "<defs><line id='a'/><circle id='a'/></defs><use xlink:href='#a'/>",
                   "g{line#a(0,100 0,100)}"},
        SketchCase{"OfTwoHolders",
                   "<defs><line id='a'/></defs><defs><circle id='a'/></defs><use xlink:href='#a'/>",
                   "g{line#a(0,100 0,100)}"},
        SketchCase{"IdentifiersInOtherLetters",
                   "<defs><line id='A'/><circle id='a'/></defs><use xlink:href='#a'/>",
                   "g{line#A(0,100 0,100)}"},
        SketchCase{"OuterHolderWinsThoughItsChildIsLater",
                   "<defs><defs><line id='a'/></defs><circle id='a'/></defs><use xlink:href='#a'/>",
                   "g{circle#a(0,100 0)}"}),
    kNameOfRow);

class RestyledUseTest : public testing::TestWithParam<SketchCase> {};

TEST_P(RestyledUseTest, PaintsTheDefinition) {
    ExpectPaintedSketch(Drawing(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Paint, RestyledUseTest,
    testing::Values(
        SketchCase{"OwnPaintOfTheReference",
                   "<defs><rect id='r'/></defs><use fill='red' stroke='blue' xlink:href='#r'/>",
                   "g{rect#r(0,100 0,100):2 fill=#ff0000 stroke=#0000ff}"},
        SketchCase{"InheritedPaint", "<defs><rect id='r'/></defs><g fill='red'><use xlink:href='#r'/></g>",
                   "g{g{rect#r(0,100 0,100):2 fill=#ff0000 stroke=#000000}}"},
        SketchCase{"PaintOfTheDefinitionIsReplaced",
                   "<defs><rect id='r' fill='red' stroke='blue'/></defs><use xlink:href='#r'/>",
                   "g{rect#r(0,100 0,100):3 fill=#000000 stroke=#000000}"},
        SketchCase{
            "InEveryPlaceItsOwn",
            "<defs><rect id='r'/></defs><use fill='red' xlink:href='#r'/><use fill='blue' xlink:href='#r'/>"
            "<use fill='' xlink:href='#r'/>",
            "g{rect#r(0,100 0,100):2 fill=#ff0000 stroke=#000000} g{rect#r(0,100 0,100):2 fill=#0000ff "
            "stroke=#000000} "
            "g{rect#r(0,100 0,100):2 fill=#000000 stroke=#000000}"},
        SketchCase{"DrawStyleOfTheDefinitionStays",
                   "<defs><rect id='r'/></defs><use fill='none' stroke='red' xlink:href='#r'/>",
                   "g{rect#r(0,100 0,100):2 fill=#000000 stroke=#ff0000}"},
        SketchCase{"TextsToo",
                   "<defs><text id='t'>x</text></defs><use fill='red' font-size='20' xlink:href='#t'/>",
                   "g{text#t(0,100 'x'):2 fill=#ff0000 stroke=#000000 h20}"},
        SketchCase{"DeepInside",
                   "<defs><g id='g'><a><path fill='black' d='M0 0 H1 V1'/></a></g></defs><use fill='red' "
                   "xlink:href='#g'/>",
                   "g{g#g{g{g{figure:2 fill=#ff0000 stroke=#000000{region{polyline(0,100 1,100 1,99) "
                   "stroke=#000000}}}}}}"}),
    kNameOfRow);

TEST(SharedDefinitionTest, EqualStateSharesAndRestylesInPlace) {
    for (const Backend backend : kBackends) {
        const BuiltModel model(Drawing("<defs><rect id='r' fill='red'/></defs><use xlink:href='#r'/><use "
                                       "fill='lime' xlink:href='#r'/><use xlink:href='#r'/>"),
                               {.backend = backend});
        const ORVPrtChildList& uses = model.GetPage().GetChildren();
        ASSERT_EQ(uses.size(), 3U);
        EXPECT_EQ(uses[0]->GetChildList()->front(), uses[2]->GetChildList()->front());
        EXPECT_NE(uses[0]->GetChildList()->front(), uses[1]->GetChildList()->front());
        EXPECT_EQ(PaintedSketchOfChildren(model.GetPage()),
                  "g{rect#r(0,100 0,100):2 fill=#000000 stroke=#000000} g{rect#r(0,100 0,100):2 fill=#00ff00 "
                  "stroke=#000000} "
                  "g{rect#r(0,100 0,100):2 fill=#000000 stroke=#000000}");
    }
}

class NestedSvgTest : public testing::TestWithParam<SketchCase> {};

TEST_P(NestedSvgTest, BecomesAGroup) { ExpectSketch(Drawing(GetParam().content), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Placement, NestedSvgTest,
    testing::Values(
        SketchCase{"Plain", "<svg><rect/></svg>", "g{rect(0,100 0,100)}"},
        SketchCase{"Position", "<svg x='5' y='6'/>", "g[~100 t(5,6) ~100]{}"},
        SketchCase{"PositionPercents", "<svg x='10%' y='10%'/>", "g[~100 t(20,10) ~100]{}"},
        SketchCase{"SizeAloneScalesNothing", "<svg width='10' height='10'><rect width='5' height='5'/></svg>",
                   "g{rect(0,100 5,95)}"},
        SketchCase{"ViewBox", "<svg x='5' y='6' width='50' height='50' viewBox='0 0 10 20'/>",
                   "g[~100 t(17.5,6) sx(2.5) sy(2.5) ~100]{}"},
        SketchCase{"ViewBoxMinimum", "<svg width='20' height='20' viewBox='1 2 10 10'/>",
                   "g[~100 sx(2) sy(2) t(-1,-2) ~100]{}"},
        SketchCase{"SizeDefaultsToThePage", "<svg viewBox='0 0 100 100'/>", "g[~100 t(50,0) ~100]{}"},
        SketchCase{"NoToleranceHere", "<svg width='10.05' height='10.05' viewBox='0 0 10 10'/>",
                   "g[~100 sx(1.005) sy(1.005) ~100]{}"},
        SketchCase{"ScaleOfOneIsNotAdded", "<svg width='10' height='10' viewBox='0 0 10 10'/>", "g{}"},
        SketchCase{"ZeroSizeIsOnlyMoved", "<svg x='5' width='0' viewBox='0 0 10 10'/>",
                   "g[~100 t(5,0) ~100]{}"},
        SketchCase{"NegativeSizeIsOnlyMoved", "<svg x='5' height='-1' viewBox='0 0 10 10'/>",
                   "g[~100 t(5,0) ~100]{}"},
        SketchCase{"EmptyViewBoxIsOnlyMoved", "<svg x='5' viewBox='0 0 0 10'/>", "g[~100 t(5,0) ~100]{}"},
        SketchCase{"MissingNumbersAreThePages", "<svg viewBox='1 50'/>", "g[~100 t(0,25) t(-1,0) ~100]{}"},
        SketchCase{"BlankViewBoxIsThePage", "<svg viewBox=' '/>", "g{}"},
        SketchCase{"UnreadableSizeIsThePages", "<svg width='x' viewBox='0 0 100 100'/>",
                   "g[~100 t(50,0) ~100]{}"},
        SketchCase{"PageIsThatAfterItsOwnStyle", "<svg style='letter-spacing:50' viewBox='0 0 50 100'/>",
                   "g{}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Content, NestedSvgTest,
    testing::Values(
        SketchCase{"IdentifierAndTexts", "<svg id='n'><title>T</title><desc>D</desc></svg>", "g#n\"D\"{}"},
        SketchCase{"NoTransform", "<svg transform='scale(2)' patternTransform='scale(2)'/>", "g{}"},
        SketchCase{"PercentagesAreOfThePage",
                   "<svg width='50' height='50' viewBox='0 0 10 10'><rect width='10%' height='10%'/></svg>",
                   "g[~100 sx(5) sy(5) ~100]{rect(0,100 20,90)}"},
        SketchCase{"Inside", "<svg><svg x='5'><rect/></svg></svg>",
                   "g{g[~100 t(5,0) ~100]{rect(0,100 0,100)}}"},
        SketchCase{"EveryKindOfChild", "<svg><g/><a/><use/><path/><marker/><pattern/><symbol/><defs/></svg>",
                   "g{g{} g{} g{} g{}}"}),
    kNameOfRow);

// In a fragment, the page height is 0 for the content, but placing operations are still mirrored.
TEST(FragmentPlacementTest, KeepsTheMirroringsOfHeightZero) {
    const BuiltModel model(Drawing("<svg x='5' y='6'/><use x='7' y='8'/><g transform='scale(2)'/>"),
                           {.embedded = true});
    EXPECT_EQ(SketchOfChildren(model.GetPage()),
              "g[~0 t(5,6) ~0]{} g[~0 t(7,8) ~0]{} g[~0 sx(2) sy(2) ~0]{}");
}

TEST(FragmentPlacementTest, FitsContentBelowZero) {
    const BuiltModel model(Drawing("<defs><rect id='q' x='5' y='6' width='10' height='20'/></defs><use "
                                   "xlink:href='#q' width='20' height='60'/>"),
                           {.embedded = true});
    EXPECT_EQ(SketchOfChildren(model.GetPage()), "g[~0 t(5,6) sx(2) sy(3) t(-5,-6) ~0]{rect#q(5,-6 15,-26)}");
}

template <class Access>
class ReferenceHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(ReferenceHandlerTest, ElementAccesses);

TYPED_TEST(ReferenceHandlerTest, RefusesANullGroup) {
    const ORVXmlNode node;
    SvgDrawState state;
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    EXPECT_EQ(HandleUse(state, TypeParam(&node), nullptr, *container), kUnusable);
    EXPECT_EQ(HandleNestedSvg(state, TypeParam(&node), nullptr, *container), kUnusable);
}

}  // namespace
