// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/definition_elements.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sample_images.h"
#include "tests/support/sketch_case.h"

namespace {

class DefinitionElementTest : public testing::TestWithParam<SketchCase> {};

TEST_P(DefinitionElementTest, IsKeptForReferences) {
    ExpectSketch(Drawing(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Defs, DefinitionElementTest,
    testing::Values(
        SketchCase{"NothingIsDrawnWhereItStands", "<defs><rect/><g><line/></g><desc>D</desc></defs>", ""},
        SketchCase{"Leaves",
                   "<defs><rect id='a'/><path id='b'/><text id='c'>x</text></defs>"
                   "<use xlink:href='#a'/><use xlink:href='#b'/><use xlink:href='#c'/>",
                   "g{rect#a(0,100 0,100)} g{g#b{}} g{text#c(0,100 'x')}"},
        SketchCase{"Containers",
                   "<defs><g id='a'><line/></g><a id='b' xlink:href='u'/><svg id='c' x='5'/></defs>"
                   "<use xlink:href='#a'/><use xlink:href='#b'/><use xlink:href='#c'/>",
                   "g{g#a{line(0,100 0,100)}} g{g#b->u{}} g{g#c[~100 t(5,0) ~100]{}}"},
        SketchCase{"OnlyDirectChildrenAreFound",
                   "<defs><g id='a'><rect id='b'/></g></defs><use xlink:href='#b'/>", "g{}"},
        SketchCase{"HolderIsNotFound", "<defs id='d'><rect/></defs><use xlink:href='#d'/>", "g{}"},
        SketchCase{"ItsTransformHasNoEffect",
                   "<defs transform='scale(2)' patternTransform='scale(3)'><rect id='r'/></defs><use "
                   "xlink:href='#r'/>",
                   "g{rect#r(0,100 0,100)}"},
        SketchCase{"DefinitionsKeepTheirTransform",
                   "<defs><rect id='r' transform='scale(2)'/></defs><use xlink:href='#r'/>",
                   "g{rect#r[~100 sx(2) sy(2) ~100](0,100 0,100)}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Symbols, DefinitionElementTest,
    testing::Values(
        SketchCase{"InDefs", "<defs><symbol id='s'><rect/></symbol></defs><use xlink:href='#s'/>",
                   "g{symbol#s{rect(0,100 0,100)}}"},
        SketchCase{"OutsideDefs", "<symbol id='s'><rect/></symbol><use xlink:href='#s'/>",
                   "g{symbol#s{rect(0,100 0,100)}}"},
        SketchCase{"ViewBox", "<symbol id='s' viewBox='1 2 3 4'/><use xlink:href='#s'/>",
                   "g{symbol#s<1 2 3 4>{}}"},
        SketchCase{"EmptyViewBoxIsNone", "<symbol id='s' viewBox=''/><use xlink:href='#s'/>",
                   "g{symbol#s{}}"},
        SketchCase{"BlankViewBoxIsThePage", "<symbol id='s' viewBox=' '/><use xlink:href='#s'/>",
                   "g{symbol#s<0 0 200 100>{}}"},
        SketchCase{"ViewBoxOfOneNumber", "<symbol id='s' viewBox='5'/><use xlink:href='#s'/>",
                   "g{symbol#s<0 0 200 5>{}}"},
        SketchCase{"ViewBoxOfThreeNumbers", "<symbol id='s' viewBox='1 2 3'/><use xlink:href='#s'/>",
                   "g{symbol#s<1 2 200 3>{}}"},
        SketchCase{"UnreadableViewBox", "<symbol id='s' viewBox='a b c d'/><use xlink:href='#s'/>",
                   "g{symbol#s<0 0 200 100>{}}"},
        SketchCase{"NoTransform",
                   "<symbol id='s' transform='scale(2)' patternTransform='scale(2)'/><use xlink:href='#s'/>",
                   "g{symbol#s{}}"},
        SketchCase{"Description",
                   "<symbol id='s'><desc>D</desc><title>T</title></symbol><use xlink:href='#s'/>",
                   "g{symbol#s\"T\"{}}"},
        SketchCase{
            "EveryKindOfChild",
            "<symbol id='s'><g/><a/><use/><svg/><path/><marker/><pattern/><symbol/><defs/></symbol><use "
            "xlink:href='#s'/>",
            "g{symbol#s{g{} g{} g{} g{} g{}}}"},
        SketchCase{
            "InsideItsOwnHolderOthersAreSeen",
            "<defs><rect id='r'/></defs><symbol id='s'><use xlink:href='#r'/></symbol><use xlink:href='#s'/>",
            "g{symbol#s{g{rect#r(0,100 0,100)}}}"}),
    kNameOfRow);

// The transform of a marker, from its attributes and content. A marker instance is at the end (0, 0) of a
// line.
struct MarkerCase {
    const char* name;
    const char* attributes;
    const char* content;
    const char* expected;  // the symbol
};

class MarkerElementTest : public testing::TestWithParam<MarkerCase> {};

TEST_P(MarkerElementTest, IsFittedAndMoved) {
    ExpectSketch(Drawing("<marker id='m' " + std::string(GetParam().attributes) + ">" + GetParam().content +
                         "</marker><line marker-end='url(#m)'/>"),
                 "line(0,100 0,100) g[~100 t(0,0) ~100]{" + std::string(GetParam().expected) + "}");
}

constexpr const char* kBox = "<rect width='10' height='20'/>";

INSTANTIATE_TEST_SUITE_P(
    Fitting, MarkerElementTest,
    testing::Values(MarkerCase{"WithoutAttributes", "", kBox,
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"ReferencePoint", "refX='3' refY='4'", kBox,
                               "symbol#m[~100 t(-3,-4) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"ReferencePercents", "refX='10%' refY='10%'", kBox,
                               "symbol#m[~100 t(-20,-10) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"BothScales", "markerWidth='20' markerHeight='60'", kBox,
                               "symbol#m[~100 sx(2) sy(3) t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"ScalesAreOutsideTheMove", "refX='1' markerWidth='20' markerHeight='60'", kBox,
                               "symbol#m[~100 sx(2) sy(3) t(-1,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"SameWidthAddsNoScale", "markerWidth='10' markerHeight='60'", kBox,
                               "symbol#m[~100 sy(3) t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"SameHeightAddsNoScale", "markerWidth='5' markerHeight='20'", kBox,
                               "symbol#m[~100 sx(0.5) t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"WithinOnePercentAddsNone", "markerWidth='10.09' markerHeight='19.81'", kBox,
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 10,80)}"},
                    // The band is slightly narrower than one percent: 0.9900000002 to 1.0099999998.
                    MarkerCase{"OnePercentMoreIsOutside", "markerWidth='10.1' markerHeight='20'", kBox,
                               "symbol#m[~100 sx(1.01) t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"OnePercentLessIsOutside", "markerWidth='9.9' markerHeight='20'", kBox,
                               "symbol#m[~100 sx(0.99) t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"JustBelowOnePercentIsInside", "markerWidth='10.099999997' markerHeight='20'",
                               kBox, "symbol#m[~100 t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"SizePercents", "markerWidth='10%' markerHeight='60%'", kBox,
                               "symbol#m[~100 sx(2) sy(3) t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"WidthOnlyDoesNotFit", "markerWidth='20'", kBox,
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"HeightOnlyDoesNotFit", "markerHeight='20'", kBox,
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"NegativeSizeDoesNotFit", "markerWidth='20' markerHeight='-5'", kBox,
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 10,80)}"},
                    MarkerCase{"FlatContentDoesNotFit", "markerWidth='20' markerHeight='20'",
                               "<line x2='5'/>", "symbol#m[~100 t(0,0) ~100]{line(0,100 5,100)}"},
                    MarkerCase{"UprightContentDoesNotFit", "markerWidth='20' markerHeight='20'",
                               "<line y2='5'/>", "symbol#m[~100 t(0,0) ~100]{line(0,100 0,95)}"},
                    MarkerCase{"WithoutContent", "refX='3' refY='4' markerWidth='20' markerHeight='20'", "",
                               "symbol#m[~100 t(-3,-4) ~100]{}"},
                    MarkerCase{"ContentAwayFromTheCorner", "markerWidth='20' markerHeight='20'",
                               "<rect x='50' y='50' width='10' height='10'/>",
                               "symbol#m[~100 sx(2) sy(2) t(0,0) ~100]{rect(50,50 60,40)}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    LeftAsItIs, MarkerElementTest,
    testing::Values(MarkerCase{"SquareOfThePageHeight", "refX='3' markerWidth='9' markerHeight='9'",
                               "<rect width='100' height='100'/>", "symbol#m{rect(0,100 100,0)}"},
                    MarkerCase{"WithinTheTolerance", "refX='3'",
                               "<rect x='0.009' y='-0.009' width='99.99' height='100'/>",
                               "symbol#m{rect(0.009,100.009 99.999,0.009)}"},
                    MarkerCase{"LeftOutside", "", "<rect x='0.011' width='99.989' height='100'/>",
                               "symbol#m[~100 t(0,0) ~100]{rect(0.011,100 100,0)}"},
                    MarkerCase{"RightOutside", "", "<rect width='100.011' height='100'/>",
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 100.011,0)}"},
                    MarkerCase{"TopOutside", "", "<rect y='0.011' width='100' height='99.989'/>",
                               "symbol#m[~100 t(0,0) ~100]{rect(0,99.989 100,0)}"},
                    MarkerCase{"BottomOutside", "", "<rect width='100' height='99.98'/>",
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 100,0.02)}"},
                    MarkerCase{"PageWidthIsNotWhatCounts", "", "<rect width='200' height='100'/>",
                               "symbol#m[~100 t(0,0) ~100]{rect(0,100 200,0)}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Rest, MarkerElementTest,
    testing::Values(
        MarkerCase{"ViewBoxHasNoEffect", "viewBox='0 0 5 5' markerWidth='20' markerHeight='60'", kBox,
                   "symbol#m[~100 sx(2) sy(3) t(0,0) ~100]{rect(0,100 10,80)}"},
        MarkerCase{"OrientHasNoEffect", "orient='45' markerUnits='userSpaceOnUse' overflow='hidden'", "",
                   "symbol#m[~100 t(0,0) ~100]{}"},
        MarkerCase{"NoTransform", "transform='scale(2)' patternTransform='scale(2)'", "",
                   "symbol#m[~100 t(0,0) ~100]{}"},
        MarkerCase{"Description", "", "<desc>D</desc><title>T</title>", "symbol#m\"T\"[~100 t(0,0) ~100]{}"},
        MarkerCase{"ReadsSizesWithItsOwnPageWidth", "style='letter-spacing:50' refX='10%'", "",
                   "symbol#m[~100 t(-5,0) ~100]{}"}),
    kNameOfRow);

// Without a page height, an empty marker is within the tolerance.
TEST(MarkerElementTest, InAFragmentAnEmptyMarkerIsLeftAsItIs) {
    const BuiltModel model(Drawing("<marker id='m' refX='3'/><line marker-end='url(#m)'/>"),
                           {.embedded = true});
    EXPECT_EQ(SketchOfChildren(model.GetPage()), "line(0,0 0,0) g[~0 t(0,0) ~0]{symbol#m{}}");
}

TEST(MarkerElementTest, OutsideDefsItEndsWithItsGroup) {
    ExpectSketch(Drawing("<g><marker id='m'/></g><line marker-end='url(#m)'/>"), "g{} line(0,100 0,100)");
}

TEST(PatternElementTest, KeepsItsBoxes) {
    for (const Backend backend : kBackends) {
        const BuiltModel model(
            Drawing("<pattern id='p' x='10%' y='10%' width='50%' height='50%' viewBox='1 2 3 4'>"
                    "<desc>D</desc><rect/></pattern><pattern id='q'/>"
                    "<use xlink:href='#p'/><use xlink:href='#q'/>"),
            {.backend = backend});
        EXPECT_EQ(SketchOfChildren(model.GetPage()), "g{pattern#p\"D\"{rect(0,100 0,100)}} g{pattern#q{}}");
        const auto patternOf = [&model](std::size_t use) -> const ORVPrtPatternElt& {
            const ORVPrtGraphicPrimitiveElt* group = model.GetPage().GetChildren().at(use);
            return static_cast<const ORVPrtPatternElt&>(*group->GetChildList()->front());
        };
        EXPECT_EQ(patternOf(0).GetBox(), (ORVPrtViewBox{20.0, 10.0, 100.0, 50.0}));
        ASSERT_NE(patternOf(0).GetViewBox(), nullptr);
        EXPECT_EQ(*patternOf(0).GetViewBox(), (ORVPrtViewBox{1.0, 2.0, 3.0, 4.0}));
        EXPECT_EQ(patternOf(1).GetBox(), ORVPrtViewBox());
        EXPECT_EQ(patternOf(1).GetViewBox(), nullptr);
    }
}

std::string ImageOf(int width) {
    return "<image xlink:href='data:image/png;base64," + ToBase64(SamplePng(width, 2)) + "'/>";
}

struct PatternCase {
    const char* name;
    std::string content;
    const char* expected;
};

class PatternFillTest : public testing::TestWithParam<PatternCase> {};

TEST_P(PatternFillTest, TakesTheBitmap) {
    ExpectPaintedSketch(Drawing(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Fills, PatternFillTest,
    testing::Values(
        PatternCase{"OneBitmap", "<pattern id='p'>" + ImageOf(3) + "</pattern><rect fill='url(#p)'/>",
                    "rect(0,100 0,100):2 fill=#000000 pattern(3x2) stroke=#000000"},
        PatternCase{"InDefs",
                    "<defs><pattern id='p'>" + ImageOf(3) + "</pattern></defs><rect fill='url(#P)'/>",
                    "rect(0,100 0,100):2 fill=#000000 pattern(3x2) stroke=#000000"},
        PatternCase{
            "LastBitmapStays",
            "<pattern id='p'>" + ImageOf(3) + "<rect/>" + ImageOf(4) + "</pattern><rect fill='url(#p)'/>",
            "rect(0,100 0,100):2 fill=#000000 pattern(4x2) stroke=#000000"},
        PatternCase{"BitmapWithoutPixelsHandsNothing",
                    "<pattern id='p'>" + ImageOf(3) + "<image/></pattern><rect fill='url(#p)'/>",
                    "rect(0,100 0,100):2 fill=#000000 pattern(3x2) stroke=#000000"},
        PatternCase{"OnlyDirectChildrenCount",
                    "<pattern id='p'><g>" + ImageOf(3) + "</g></pattern><rect fill='url(#p)'/>",
                    "rect(0,100 0,100):2 fill=#000000 pattern stroke=#000000"},
        PatternCase{"NoBitmap", "<pattern id='p'/><rect fill='url(#p)'/>",
                    "rect(0,100 0,100):2 fill=#000000 pattern stroke=#000000"},
        PatternCase{"FromElsewhereWithAnotherPaint",
                    "<pattern id='p'>" + ImageOf(3) + "</pattern><g fill='red'><rect fill='url(#p)'/></g>",
                    "g{rect(0,100 0,100):2 fill=#ff0000 pattern(3x2) stroke=#000000}"},
        PatternCase{"OtherDefinitionIsNone", "<symbol id='p'/><rect fill='url(#p)'/>",
                    "rect(0,100 0,100):2 fill=#000000 stroke=#000000"}),
    kNameOfRow);

// Inside a holder the paint is reset to the default: a definition used with default paint is shared, so no
// primitive is mistaken for a duplicate.
TEST(DefinitionStateTest, HoldersStartWithDefaultSets) {
    const auto taken = [](const char* content) {
        return BuiltModel(Drawing(content)).GetModel().GetBudget().GetTaken();
    };
    // Page, outer holder, symbol; group, inner holder, use.
    EXPECT_EQ(taken("<defs><symbol id='s'/></defs>"
                    "<g fill='red' stroke-width='2' font-size='20' opacity='0.5'><defs><use fill='' "
                    "xlink:href='#s'/></defs></g>"),
              6U);
    // The draw style is not reset and causes a duplicate.
    EXPECT_EQ(taken("<defs><symbol id='s'/></defs><g fill='red' stroke='red'><defs><use "
                    "xlink:href='#s'/></defs></g>"),
              7U);
    // Symbols, markers and patterns outside "defs" are in a holder as well.
    for (const char* name : {"symbol", "marker", "pattern"}) {
        const std::string content = "<defs><symbol id='s'/></defs><g fill='red' font-size='20'><" +
                                    std::string(name) + "><use fill='' xlink:href='#s'/></" + name + "></g>";
        EXPECT_EQ(taken(content.c_str()), 7U) << name;
    }
}

TEST(DefinitionStateTest, HoldersKeepTheStateInForce) {
    // Inside the group the state equals that of the holder: both references share the definition, painted
    // like the group.
    for (const char* definition :
         {"<defs><symbol id='s'><rect/></symbol></defs>", "<symbol id='s'><rect/></symbol>"}) {
        const BuiltModel model(Drawing("<g fill='red' stroke='blue'>" + std::string(definition) +
                                       "<use xlink:href='#s'/><use xlink:href='#s'/></g>"),
                               {.backend = Backend::kLight});
        const ORVPrtChildList& uses = *model.GetPage().GetChildren().at(0)->GetChildList();
        ASSERT_EQ(uses.size(), 2U);
        EXPECT_EQ(uses[0]->GetChildList()->front(), uses[1]->GetChildList()->front());
        EXPECT_EQ(PaintedSketchOfChildren(model.GetPage()),
                  "g{g{symbol#s{rect(0,100 0,100):3 fill=#ff0000 stroke=#0000ff}} "
                  "g{symbol#s{rect(0,100 0,100):3 fill=#ff0000 stroke=#0000ff}}}");
    }
}

TEST(DefinitionStateTest, TextSetOfAHolderIsTheDefault) {
    // The font size is 20 where the holder is defined, but the holder counts as having the default size.
    const BuiltModel model(Drawing(
        "<g font-size='20'><defs><symbol id='s'/></defs><use xlink:href='#s'/><use xlink:href='#s'/></g>"));
    const ORVPrtChildList& uses = *model.GetPage().GetChildren().at(0)->GetChildList();
    EXPECT_NE(uses[0]->GetChildList()->front(), uses[1]->GetChildList()->front());
}

TEST(DefinitionStateTest, AttributesOfDefsAreInForce) {
    // References are compared with the paint of "defs" itself.
    const BuiltModel model(
        Drawing("<defs fill='red'><symbol id='s'/></defs><use fill='red' xlink:href='#s'/><use fill='red' "
                "xlink:href='#s'/>"
                "<use fill='' xlink:href='#s'/>"));
    const ORVPrtChildList& uses = model.GetPage().GetChildren();
    EXPECT_EQ(uses[0]->GetChildList()->front(), uses[1]->GetChildList()->front());
    EXPECT_NE(uses[0]->GetChildList()->front(), uses[2]->GetChildList()->front());
}

template <class Access>
class DefinitionHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(DefinitionHandlerTest, ElementAccesses);

TYPED_TEST(DefinitionHandlerTest, HoldersBearTheIdentifierOfDefs) {
    PageState state(200.0, 100.0);
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    const ParsedElement<TypeParam> defs("<defs id='d'><symbol id='s'/></defs>");
    EXPECT_EQ(HandleDefs(state, defs.Get(), *group), 1);
    ASSERT_NE(state.definitions->Find("s"), nullptr);
    EXPECT_EQ(state.definitions->Find("s")->holder->GetID(), "d");
    EXPECT_EQ(state.definitions->Find("d"), nullptr) << "it is no definition itself";
    EXPECT_TRUE(group->GetChildren().empty());
}

// Documents always have y flipped.
TYPED_TEST(DefinitionHandlerTest, WithoutTheFlipMarkersAreNotMirrored) {
    PageState state(200.0, 100.0, 0);
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    const ParsedElement<TypeParam> marker(
        "<marker id='m' refX='3' refY='4' markerWidth='20' markerHeight='60'><rect width='10' height='20'/>"
        "</marker>");
    EXPECT_EQ(HandleMarker(state, marker.Get(), *group), 1);
    ASSERT_NE(state.definitions->Find("m"), nullptr);
    EXPECT_EQ(SketchOf(*state.definitions->Find("m")->primitive),
              "symbol#m[sx(2) sy(3) t(-3,-4)]{rect(0,0 10,20)}");
}

}  // namespace
