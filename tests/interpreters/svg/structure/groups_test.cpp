// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/groups.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/system/ORVRef.h"
#include "tests/support/built_model.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sketch_case.h"

namespace {

class GroupTest : public testing::TestWithParam<SketchCase> {};

TEST_P(GroupTest, HoldsItsChildren) { ExpectSketch(Drawing(GetParam().content), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Texts, GroupTest,
    testing::Values(SketchCase{"Empty", "<g/><a/>", "g{} g{}"},
                    SketchCase{"Identifier", "<g id='x'/><a id='y'/>", "g#x{} g#y{}"},
                    SketchCase{"Nested", "<g id='x'><g id='y'><a id='z'/></g></g>", "g#x{g#y{g#z{}}}"},
                    SketchCase{"DescriptionThenTitle", "<g><desc>D</desc><title>T</title></g>", "g\"T\"{}"},
                    SketchCase{"TitleThenDescription", "<g><title>T</title><desc>D</desc></g>", "g\"D\"{}"},
                    SketchCase{"TextsBetweenChildren", "<g><rect/><desc>D</desc><line/></g>",
                               "g\"D\"{rect(0,100 0,100) line(0,100 0,100)}"},
                    SketchCase{"EmptyTextKeepsTheDescription", "<g><desc>D</desc><title/></g>", "g\"D\"{}"},
                    SketchCase{"LinkToo", "<a><title>T</title></a>", "g\"T\"{}"},
                    SketchCase{"OfTheInnerGroupOnly", "<g><g><title>T</title></g></g>", "g{g\"T\"{}}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Transforms, GroupTest,
    testing::Values(
        SketchCase{"Transform", "<g transform='translate(1,2)'/>", "g[~100 t(1,2) ~100]{}"},
        SketchCase{"PatternTransform", "<g patternTransform='translate(1,2)'/>", "g[~100 t(1,2) ~100]{}"},
        SketchCase{"BothInThisOrder", "<g transform='scale(2)' patternTransform='translate(1,2)'/>",
                   "g[~100 t(1,2) ~100 ~100 sx(2) sy(2) ~100]{}"},
        SketchCase{"LinkToo", "<a transform='scale(2)' patternTransform='translate(1,2)'/>",
                   "g[~100 t(1,2) ~100 ~100 sx(2) sy(2) ~100]{}"},
        SketchCase{"EmptyOnesAddNothing", "<g transform='' patternTransform=''/>", "g{}"},
        SketchCase{"UnreadableOneIsAMirroringTwice", "<g transform='x'/>", "g[~100 ~100]{}"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Links, GroupTest,
    testing::Values(SketchCase{"ElementOfTheDocument", "<a xlink:href='#part7'/>", "g->#part7{}"},
                    SketchCase{"ElementOfAnother", "<a xlink:href='doc.svg#part7'/>", "g->doc.svg#part7{}"},
                    SketchCase{"Document", "<a xlink:href='doc.svg'/>", "g->doc.svg{}"},
                    SketchCase{"OnlyOneHashGoes", "<a xlink:href='##x'/>", "g->##x{}"},
                    SketchCase{"HashAlone", "<a xlink:href='#'/>", "g{}"},
                    SketchCase{"BlankBeforeTheHash", "<a xlink:href=' #x'/>", "g-> #x{}"},
                    SketchCase{"EmptyTarget", "<a xlink:href=''/>", "g{}"},
                    SketchCase{"ShowNew", "<a xlink:href='x' xlink:show='new'/>", "g->x!1{}"},
                    SketchCase{"ShowReplace", "<a xlink:href='x' xlink:show='replace'/>", "g->x!2{}"},
                    SketchCase{"ShowEmbed", "<a xlink:href='x' xlink:show='embed'/>", "g->x{}"},
                    SketchCase{"ShowMatchesExactly", "<a xlink:show='New'/><a xlink:show=' new'/>",
                               "g{} g{}"},
                    SketchCase{"ShowWithoutTarget", "<a xlink:show='new'/>", "g!1{}"},
                    SketchCase{"PlainHrefIsNoTarget", "<a href='x'/>", "g{}"},
                    SketchCase{"OnlyLinksHaveTargets", "<g xlink:href='#x' xlink:show='new'/>", "g{}"}),
    kNameOfRow);

// Changes made by a group end with it. Each row has a group-like element that changes everything, followed by
// elements that show the state.
struct ScopeCase {
    const char* name;
    const char* start;  // tag and attributes
    const char* end;
    bool drawn;  // is drawn as a group in place
};

constexpr ScopeCase kGroupLike[] = {{"Group", "<g", "</g>", true},
                                    {"Link", "<a", "</a>", true},
                                    {"NestedSvg", "<svg", "</svg>", true},
                                    {"Use", "<use", "</use>", true},
                                    {"Symbol", "<symbol", "</symbol>", false},
                                    {"Marker", "<marker", "</marker>", false},
                                    {"Pattern", "<pattern", "</pattern>", false},
                                    {"Definitions", "<defs", "</defs>", false}};

class GroupLikeTest : public testing::TestWithParam<ScopeCase> {};

TEST_P(GroupLikeTest, RestoresTheState) {
    const std::string changes =
        " fill='red' stroke='lime' stroke-width='3' color='blue' opacity='0.5' font-size='20'"
        " visibility='visible' marker='url(#m)' style='letter-spacing:50'>";
    const std::string witnesses =
        "<line fill='' x2='10%'/><rect fill='currentColor'/><line fill='' stroke='currentColor'/><text "
        "fill=''>x</text>";
    const std::string expected =
        "line(0,100 20,100) stroke=#000000 rect(0,100 0,100):2 fill=#000000 stroke=#000000 "
        "line(0,100 0,100) stroke=#000000 text(0,100 'x'):2 fill=#000000 stroke=#000000";
    ExpectPaintedSketch(Drawing("<defs><symbol id='m'/></defs>" + std::string(GetParam().start) + changes +
                                GetParam().end + witnesses),
                        (GetParam().drawn ? "g{} " : "") + expected);
}

INSTANTIATE_TEST_SUITE_P(Elements, GroupLikeTest, testing::ValuesIn(kGroupLike), kNameOfRow);

// Elements drawn in place inherit the state.
class DrawnGroupTest : public testing::TestWithParam<ScopeCase> {};

TEST_P(DrawnGroupTest, PassesTheStateOn) {
    ExpectPaintedSketch(Drawing("<defs><symbol id='m'/></defs>" + std::string(GetParam().start) +
                                " fill='red' stroke='lime' color='blue' font-size='20' marker-end='url(#m)' "
                                "style='letter-spacing:50'>"
                                "<line fill='' x2='10%'/><rect fill='currentColor'/><text fill=''>x</text>" +
                                GetParam().end),
                        "g{line(0,100 5,100) stroke=#00ff00 g[~100 t(5,0) ~100]{symbol#m{}} rect(0,100 "
                        "0,100):3 fill=#0000ff stroke=#00ff00 "
                        "text(0,100 'x'):3 fill=#ff0000 stroke=#00ff00 h20}");
}

INSTANTIATE_TEST_SUITE_P(Elements, DrawnGroupTest,
                         testing::Values(kGroupLike[0], kGroupLike[1], kGroupLike[2]), kNameOfRow);

// The content of a "use" element is ignored, so it can define nothing.
class DefinitionScopeTest : public testing::TestWithParam<ScopeCase> {};

TEST_P(DefinitionScopeTest, DefinitionsEndWithTheGroup) {
    ExpectSketch(Drawing(std::string(GetParam().start) + "><defs><rect id='r'/></defs><symbol id='s'/>" +
                         GetParam().end + "<use xlink:href='#r'/><use xlink:href='#s'/>"),
                 std::string(GetParam().drawn ? "g{} " : "") + "g{} g{}");
}

TEST_P(DefinitionScopeTest, DefinitionsInDefinitionsEndWithTheGroup) {
    ExpectSketch(Drawing(std::string(GetParam().start) + "><defs><defs><rect id='r'/></defs></defs>" +
                         GetParam().end + "<use xlink:href='#r'/>"),
                 std::string(GetParam().drawn ? "g{} " : "") + "g{}");
}

TEST_P(DefinitionScopeTest, DefinitionsFromOutsideStay) {
    ExpectSketch(Drawing("<defs><rect id='r'/></defs>" + std::string(GetParam().start) +
                         "><defs><rect id='q'/></defs>" + GetParam().end + "<use xlink:href='#r'/>"),
                 std::string(GetParam().drawn ? "g{} " : "") + "g{rect#r(0,100 0,100)}");
}

INSTANTIATE_TEST_SUITE_P(Elements, DefinitionScopeTest,
                         testing::Values(kGroupLike[0], kGroupLike[1], kGroupLike[2], kGroupLike[4],
                                         kGroupLike[5], kGroupLike[6]),
                         kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Definitions, GroupTest,
    testing::Values(
        SketchCase{"SeenByWhatFollowsInside",
                   "<g><use xlink:href='#r'/><defs><rect id='r'/></defs><use xlink:href='#r'/></g>",
                   "g{g{} g{rect#r(0,100 0,100)}}"},
        SketchCase{"SeenByInnerGroups", "<g><defs><rect id='r'/></defs><g><use xlink:href='#r'/></g></g>",
                   "g{g{g{rect#r(0,100 0,100)}}}"},
        SketchCase{"AtTheTopDefinitionsInDefinitionsStay",
                   "<defs><defs><rect id='r'/></defs></defs><use xlink:href='#r'/>",
                   "g{rect#r(0,100 0,100)}"},
        SketchCase{"GroupInsideDefinitionsScopesItsOwn",
                   "<defs><g id='g'><defs><rect id='r'/></defs></g></defs><use xlink:href='#r'/><use "
                   "xlink:href='#g'/>",
                   "g{} g{g#g{}}"},
        SketchCase{"OuterOnesAreSeenAgain",
                   "<defs><rect id='r'/></defs><g><defs><circle id='r'/></defs><use xlink:href='#r'/></g>",
                   "g{g{rect#r(0,100 0,100)}}"}),
    kNameOfRow);

template <class Access>
class GroupHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(GroupHandlerTest, ElementAccesses);

TYPED_TEST(GroupHandlerTest, RefusesANullGroup) {
    const ORVXmlNode node;
    SvgDrawState state;
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    EXPECT_EQ(HandleGroup(state, TypeParam(&node), nullptr, *container), kUnusable);
    EXPECT_EQ(HandleLink(state, TypeParam(&node), nullptr, *container), kUnusable);
}

}  // namespace
