// SPDX-License-Identifier: Apache-2.0
#include "library/check/namespaces.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/xml/ORVLightXml.h"

namespace {

TEST(NamespacesTest, InnerDeclarationsHideOuterOnesUntilTheirElementEnds) {
    const std::string text = "<a xmlns='one' xmlns:p='two'><b xmlns:p='three'/><c xmlns=''/></a>";
    ORVLightXmlElement root;
    ASSERT_EQ(ORVLightXmlParser().Parse({text.data(), text.size()}, root), 1);
    const ORVXmlNode *a = root.GetNode(), *b = a->firstChild, *c = b->nextSibling;
    Namespaces namespaces;
    EXPECT_EQ(namespaces.Find(""), "");
    namespaces.Enter(*a);
    EXPECT_EQ(namespaces.Find(""), "one");
    EXPECT_EQ(namespaces.Find("p"), "two");
    EXPECT_EQ(namespaces.Find("q"), "");
    namespaces.Enter(*b);
    EXPECT_EQ(namespaces.Find("p"), "three");
    EXPECT_EQ(namespaces.Find(""), "one");
    namespaces.Leave();
    EXPECT_EQ(namespaces.Find("p"), "two");
    namespaces.Enter(*c);
    EXPECT_EQ(namespaces.Find(""), "");
    namespaces.Leave();
    namespaces.Leave();
    EXPECT_EQ(namespaces.Find("p"), "");
}

TEST(NamespacesTest, NamesAreSplitAtTheirColon) {
    EXPECT_EQ(PrefixOf("a:b"), "a");
    EXPECT_EQ(LocalNameOf("a:b"), "b");
    EXPECT_EQ(PrefixOf("b"), "");
    EXPECT_EQ(LocalNameOf("b"), "b");
}

}  // namespace
