// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/walker.h"

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVRef.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sketch_case.h"

namespace {

class WalkerTest : public testing::TestWithParam<SketchCase> {};

TEST_P(WalkerTest, OffersChildrenToTheirHandlers) {
    ExpectSketch(Drawing(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Elements, WalkerTest,
    testing::Values(
        SketchCase{"Leaves", "<path/><text/><rect/><circle/><ellipse/><line/><polyline/><polygon/><image/>",
                   "g{} text(0,100 '') rect(0,100 0,100) circle(0,100 0) ellipse(0,100 0,0) line(0,100 "
                   "0,100) polyline() "
                   "polygon() image(0,100 0x0)"},
        SketchCase{"Containers", "<g/><defs/><use/><symbol/><svg/><marker/><a/><pattern/>",
                   "g{} g{} g{} g{}"},
        SketchCase{"LeavesInAGroup",
                   "<g><path/><text/><rect/><circle/><ellipse/><line/><polyline/><polygon/><image/></g>",
                   "g{g{} text(0,100 '') rect(0,100 0,100) circle(0,100 0) ellipse(0,100 0,0) line(0,100 "
                   "0,100) polyline() "
                   "polygon() image(0,100 0x0)}"},
        SketchCase{"ContainersInAGroup", "<g><g/><defs/><use/><symbol/><svg/><marker/><a/><pattern/></g>",
                   "g{g{} g{} g{} g{}}"},
        SketchCase{"UnknownNamesAreIgnored", "<foo/><rect/><tspan/><style>x</style><linearGradient/><line/>",
                   "rect(0,100 0,100) line(0,100 0,100)"},
        SketchCase{"ContentOfUnknownElementsToo", "<switch><rect/></switch>", ""},
        SketchCase{"NamesMatchExactly", "<Rect/><RECT/><G/><Use/>", ""},
        SketchCase{"PrefixesBelongToTheName", "<svg:rect xmlns:svg='http://www.w3.org/2000/svg'/>", ""},
        SketchCase{"TextsAndCommentsAreNone", "rect<!--<rect/>--><rect/><![CDATA[<line/>]]><?rect?>",
                   "rect(0,100 0,100)"}),
    kNameOfRow);

/// Lowers the limit of primitives per model.
class PrimitiveLimit {
public:
    explicit PrimitiveLimit(std::uint64_t limit) : old_(ORVPrtModel::GetPrimitiveLimit()) {
        ORVPrtModel::SetPrimitiveLimit(limit);
    }
    ~PrimitiveLimit() { ORVPrtModel::SetPrimitiveLimit(old_); }
    PrimitiveLimit(const PrimitiveLimit&) = delete;
    PrimitiveLimit& operator=(const PrimitiveLimit&) = delete;

private:
    std::uint64_t old_;
};

template <class Access>
class WalkerHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(WalkerHandlerTest, ElementAccesses);

TYPED_TEST(WalkerHandlerTest, ReportsHowItWent) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    SvgDefinitions definitions;
    const ORVUnicodeString path;
    SvgDrawState state;
    state.model = model.get();
    state.definitions = &definitions;
    state.currentPath = &path;

    ORVXmlNode rect;
    rect.id = ElementName::kRect;
    EXPECT_EQ(HandleChild(state, TypeParam(&rect), nullptr), kUnusable);
    EXPECT_EQ(HandleChild(state, TypeParam(&rect), group.get()), kDone);
    ORVXmlNode text;
    text.id = ElementName::kText;
    EXPECT_EQ(HandleChild(state, TypeParam(&text), group.get()), 0) << "the handler of texts always says so";
    const ORVXmlNode unknown;
    EXPECT_EQ(HandleChild(state, TypeParam(&unknown), group.get()), kDone);
    EXPECT_EQ(HandleChild(state, TypeParam(&unknown), nullptr), kUnusable);
    ORVXmlNode title;
    title.id = ElementName::kTitle;
    EXPECT_EQ(HandleChild(state, TypeParam(&title), group.get()), kDone) << "the walks read these themselves";
    EXPECT_EQ(group->GetChildren().size(), 2U);
}

TYPED_TEST(WalkerHandlerTest, ReportsARefusedAllocation) {
    const PrimitiveLimit limit(0);
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    SvgDefinitions definitions;
    SvgDrawState state;
    state.model = model.get();
    state.definitions = &definitions;
    for (const ElementName name :
         {ElementName::kPath, ElementName::kText, ElementName::kRect, ElementName::kCircle,
          ElementName::kEllipse, ElementName::kLine, ElementName::kPolyline, ElementName::kPolygon,
          ElementName::kImage, ElementName::kG, ElementName::kDefs, ElementName::kUse, ElementName::kSymbol,
          ElementName::kSvg, ElementName::kMarker, ElementName::kA, ElementName::kPattern}) {
        ORVXmlNode node;
        node.id = name;
        EXPECT_EQ(HandleChild(state, TypeParam(&node), group.get()), kNoMemory) << static_cast<int>(name);
    }
    EXPECT_TRUE(group->GetChildren().empty());
    EXPECT_EQ(definitions.GetHolderCount(), 0U);
}

TEST(WalkerBudgetTest, GoesOnBehindARefusedPrimitive) {
    // Page, group and rectangle; the title requires no primitive.
    const PrimitiveLimit limit(3);
    for (const Backend backend : kBackends) {
        const BuiltModel model(Drawing("<g><rect/><circle/><title>T</title></g><line/>"),
                               {.backend = backend});
        EXPECT_EQ(model.GetResult(), 1);
        EXPECT_EQ(SketchOfChildren(model.GetPage()), "g\"T\"{rect(0,100 0,100)}");
    }
}

TEST(WalkerBudgetTest, CountsDuplicates) {
    // Page, holder, rectangle, and a group and a duplicate for each reference.
    const PrimitiveLimit limit(6);
    const BuiltModel model(Drawing(
        "<defs><rect id='r'/></defs><use fill='red' xlink:href='#r'/><use fill='red' xlink:href='#r'/>"));
    EXPECT_EQ(SketchOfChildren(model.GetPage()), "g{rect#r(0,100 0,100)} g{}");
}

TEST(WalkerBudgetTest, SharedDefinitionsCostNothing) {
    const PrimitiveLimit limit(5);
    const BuiltModel model(
        Drawing("<defs><rect id='r'/></defs><use xlink:href='#r'/><use xlink:href='#r'/>"));
    EXPECT_EQ(SketchOfChildren(model.GetPage()), "g{rect#r(0,100 0,100)} g{rect#r(0,100 0,100)}");
}

TEST(WalkerBudgetTest, PageWithoutMemoryIsLeftOut) {
    const PrimitiveLimit limit(0);
    const BuiltModel model(Drawing("<rect/>"));
    EXPECT_EQ(model.GetResult(), 1);
    EXPECT_EQ(model.GetPageCount(), 0U);
}

}  // namespace
