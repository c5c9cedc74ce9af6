// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/state/element_access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/platform/xml/tree_text.h"

namespace {

constexpr const char* kDocument = "<svg id='a' fill=''><!--c-->t<rect x='1'/>u<g>v</g><![CDATA[w]]></svg>";

TEST(ElementAccessTest, DomReportsAnAbsentAttribute) {
    const DomResult document = ParseDom(kDocument);
    const DomElementAccess element(document.root.GetNode());
    EXPECT_TRUE(element.Attribute(AttributeName::kId).WasRead());
    EXPECT_EQ(element.Attribute(AttributeName::kId).text, "a");
    EXPECT_TRUE(element.Attribute(AttributeName::kFill).WasRead());
    EXPECT_EQ(element.Attribute(AttributeName::kFill).text, "");
    EXPECT_LT(element.Attribute(AttributeName::kStroke).status, 0);
    EXPECT_FALSE(element.Attribute(AttributeName::kStroke).WasRead());
    EXPECT_EQ(element.Attribute(AttributeName::kStroke).text, "");
}

TEST(ElementAccessTest, LightGivesAnEmptyValueForAnAbsentAttribute) {
    const LightResult document = ParseLight(kDocument);
    const LightElementAccess element(document.root.GetNode());
    EXPECT_EQ(element.Attribute(AttributeName::kId).text, "a");
    EXPECT_TRUE(element.Attribute(AttributeName::kStroke).WasRead());
    EXPECT_EQ(element.Attribute(AttributeName::kStroke).text, "");
}

// Both visit the same elements; nodes that are not elements have no known name.
template <class Access>
std::vector<ElementName> KnownChildren(const Access& element) {
    std::vector<ElementName> names;
    for (Access child = element.FirstChild(); !child.IsNull(); child = child.NextSibling())
        if (child.Name() != ElementName::kUnknown) names.push_back(child.Name());
    return names;
}

TEST(ElementAccessTest, BothWalkTheElementsInDocumentOrder) {
    const DomResult dom = ParseDom(kDocument);
    const LightResult light = ParseLight(kDocument);
    const std::vector<ElementName> expected{ElementName::kRect, ElementName::kG};
    EXPECT_EQ(KnownChildren(DomElementAccess(dom.root.GetNode())), expected);
    EXPECT_EQ(KnownChildren(LightElementAccess(light.root.GetNode())), expected);
    EXPECT_TRUE(DomElementAccess(ParseDom("<svg/>").root.GetNode()).FirstChild().IsNull());
    EXPECT_TRUE(LightElementAccess(ParseLight("<svg/>").root.GetNode()).FirstChild().IsNull());
}

TEST(ElementAccessTest, TextIsTheElementsOwn) {
    EXPECT_EQ(DomElementAccess(ParseDom(kDocument).root.GetNode()).Text(), "tuw");
    EXPECT_EQ(LightElementAccess(ParseLight(kDocument).root.GetNode()).Text(), "tuw");
}

TEST(ElementAccessTest, NamesMatchExactly) {
    for (const char* document : {"<Svg/>", "<SVG/>", "<s:svg xmlns:s='x'/>"}) {
        EXPECT_EQ(DomElementAccess(ParseDom(document).root.GetNode()).Name(), ElementName::kUnknown)
            << document;
        EXPECT_EQ(LightElementAccess(ParseLight(document).root.GetNode()).Name(), ElementName::kUnknown)
            << document;
    }
}

}  // namespace
