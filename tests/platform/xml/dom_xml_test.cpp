// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVDOMXml.h"

#include <gtest/gtest.h>

#include "tests/platform/xml/tree_text.h"

namespace {

TEST(DomXml, KeepsTextsAndComments) {
    const DomResult read = ParseDom("<t>a<!--k-->b<![CDATA[c]]><g/><?p q?>d</t>");
    ASSERT_EQ(read.status, 1);
    EXPECT_EQ(read.Text(false), "t'abcd'(#text'a'#comment'k'#text'bc'g#text'd')");
}

TEST(DomXml, WalksNodesByFirstChildAndNextNode) {
    const DomResult read = ParseDom("<a>x<b/><!--k--><c/></a>");
    ORVIDOMNode_var node;
    ASSERT_GE(read.root.GetFirstChild(node), 0);
    ORVUnicodeString name;
    EXPECT_EQ(node.GetNodeName(name), 1);
    std::string names(name.GetView());
    while (GetNextNode(node, node, name) >= 0 && node) names.append(" ").append(name.GetView());
    EXPECT_EQ(names, "#text b #comment c");
    EXPECT_FALSE(node);
}

TEST(DomXml, AnElementWithoutChildrenHasNoFirstChild) {
    const DomResult read = ParseDom("<a/>");
    ORVIDOMNode_var child = read.root;
    EXPECT_LT(read.root.GetFirstChild(child), 0);
    EXPECT_FALSE(child);
}

TEST(DomXml, TheRootHasCommentsAndTextsBesideIt) {
    const DomResult read = ParseDom("<!--x--><!DOCTYPE a [<!--in the type-->]><!--y--><a/> <!--z--><?p?>\n");
    ASSERT_EQ(read.status, 1) << read.error.message;
    std::string names;
    for (const ORVXmlNode* node = read.root.GetTree()->GetFirstNode(); node; node = node->nextSibling)
        names.append(node->GetName()).append("'").append(node->GetText()).append("' ");
    EXPECT_EQ(names, "#comment'x' #comment'y' a'' #text' ' #comment'z' #text'\n' ");

    ORVIDOMNode_var next;
    ORVUnicodeString name;
    EXPECT_EQ(GetNextNode(read.root, next, name), 1);
    EXPECT_EQ(name, ORVUnicodeString("#text"));
}

TEST(DomXml, AbsentAttributesHaveANegativeStatus) {
    const DomResult read = ParseDom("<a fill='' other='1'/>");
    ORVUnicodeString value("kept");
    EXPECT_LT(read.root.GetAttribute("stroke", value), 0);
    EXPECT_LT(read.root.GetAttribute("nothing", value), 0);
    EXPECT_EQ(value, ORVUnicodeString("kept"));
    EXPECT_GE(read.root.GetAttribute("other", value), 0);
    EXPECT_EQ(value, ORVUnicodeString("1"));
    EXPECT_GE(read.root.GetAttribute("fill", value), 0);
    EXPECT_TRUE(value.IsEmpty());
}

TEST(DomXml, GivesTagNamesAndValues) {
    const DomResult read = ParseDom("<p:a>x<b>y</b>z</p:a>");
    ORVUnicodeString name, value("kept");
    EXPECT_GE(read.root.GetTagName(name), 0);
    EXPECT_EQ(name, ORVUnicodeString("p:a"));
    EXPECT_GE(GetValue(read.root, value), 0);
    EXPECT_EQ(value, ORVUnicodeString("xz"));
    EXPECT_LT(GetValue(ParseDom("<a><b>y</b></a>").root, value), 0);
    EXPECT_EQ(value, ORVUnicodeString("xz"));
}

TEST(DomXml, ANullHandleAnswersNegatively) {
    const ORVIDOMElement_var null;
    ORVUnicodeString text("kept");
    ORVIDOMNode_var node;
    EXPECT_FALSE(null);
    EXPECT_LT(null.GetTagName(text), 0);
    EXPECT_LT(null.GetAttribute("x", text), 0);
    EXPECT_LT(null.GetFirstChild(node), 0);
    EXPECT_LT(GetNextNode(null, node, text), 0);
    EXPECT_LT(GetValue(null, text), 0);
    EXPECT_FALSE(null.AsElement());
    EXPECT_EQ(text, ORVUnicodeString("kept"));
}

TEST(DomXml, HandlesKeepTheDocumentAlive) {
    ORVIDOMElement_var child;
    {
        const DomResult read = ParseDom("<a>t<b id='x'><c/></b></a>");
        ORVIDOMNode_var node;
        ORVUnicodeString name;
        read.root.GetFirstChild(node);
        EXPECT_FALSE(node.AsElement());
        GetNextNode(node, node, name);
        child = node.AsElement();
    }
    ASSERT_TRUE(child);
    EXPECT_EQ(TreeText(child.GetNode()), "b{id=x}(c)");
}

TEST(DomXml, HandlesCanBeMadeOfLightElements) {
    const LightResult light = ParseLight("<a><b id='x'/></a>");
    const ORVIDOMElement_var element(light.root.GetTree(), light.root.GetNode()->firstChild);
    ORVUnicodeString value;
    EXPECT_GE(element.GetAttribute("id", value), 0);
    EXPECT_EQ(value, ORVUnicodeString("x"));
}

TEST(DomXml, AFailedBuildLeavesANullElement) {
    ORVIDOMElement_var element = ParseDom("<a/>").root;
    EXPECT_EQ(BuildParser("<a>", "SVG", element), -1);
    EXPECT_FALSE(element);
}

}  // namespace
