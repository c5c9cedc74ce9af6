// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlFragments.h"

#include <gtest/gtest.h>

#include "tests/platform/xml/tree_text.h"

namespace {

std::string Ids(const std::vector<const ORVXmlNode*>& nodes) {
    std::string ids;
    for (const ORVXmlNode* node : nodes) ids += node->Value(AttributeName::kId);
    return ids;
}

constexpr std::string_view kReport =
    "<report><svg id='1'><g><svg id='2'/></g><svg id='3'><svg id='4'/></svg></svg>"
    "<page><x:svg id='-'/><p><svg id='5'/></p><svg id='6'>t</svg></page><SVG id='-'/></report>";

TEST(Fragments, AreFoundInDocumentOrderThroughBothParsers) {
    const LightResult light = ParseLight(kReport);
    const DomResult dom = ParseDom(kReport);
    EXPECT_EQ(Ids(FindSvgElements(light.root.GetNode())), "123456");
    EXPECT_EQ(Ids(FindSvgElements(dom.root.GetNode())), "123456");
}

TEST(Fragments, OutermostOnesLeaveNestedOnesOut) {
    const DomResult dom = ParseDom(kReport);
    EXPECT_EQ(Ids(FindOutermostSvgElements(dom.root.GetNode())), "156");
}

TEST(Fragments, TheRootCounts) {
    const LightResult light = ParseLight("<svg id='1'><svg id='2'/></svg>");
    EXPECT_EQ(Ids(FindSvgElements(light.root.GetNode())), "12");
    EXPECT_EQ(Ids(FindOutermostSvgElements(light.root.GetNode())), "1");
}

TEST(Fragments, StayBelowTheGivenElement) {
    const LightResult light = ParseLight("<a><b><svg id='1'/></b><svg id='2'/></a>");
    EXPECT_EQ(Ids(FindSvgElements(light.root.GetNode()->firstChild)), "1");
}

TEST(Fragments, NothingHasNone) {
    EXPECT_TRUE(FindSvgElements(nullptr).empty());
    EXPECT_TRUE(FindOutermostSvgElements(nullptr).empty());
    const LightResult light = ParseLight("<a><b/></a>");
    EXPECT_TRUE(FindSvgElements(light.root.GetNode()).empty());
}

}  // namespace
