// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/platform/xml/tree_text.h"
#include "tests/support/test_texts.h"

namespace {

std::size_t DepthOf(const ORVXmlNode* node) {
    std::size_t depth = 0;
    for (; node; node = node->firstChild) ++depth;
    return depth;
}

TEST(XmlLimits, ElementsMayBeNested1024Deep) {
    const std::string document = Nested(1024);
    const LightResult light = ParseLight(document);
    EXPECT_EQ(light.status, 1) << light.error.message;
    EXPECT_EQ(DepthOf(light.root.GetNode()), 1024U);
    EXPECT_EQ(ParseDom(document).status, 1);

    ORVLightXmlElement copy;
    EXPECT_EQ(copy.Assign(light.root), 1);
    EXPECT_EQ(DepthOf(copy.GetNode()), 1024U);
}

TEST(XmlLimits, The1025thNestedStartTagIsAnError) {
    const std::string document = Nested(1025);
    const LightResult light = ParseLight(document);
    EXPECT_EQ(light.status, -1);
    EXPECT_EQ(DepthOf(light.root.GetNode()), 1024U);
    EXPECT_EQ(light.error.offset, 3U * 1024U);
    EXPECT_EQ(light.error.line, 1U);
    EXPECT_EQ(light.error.column, 3U * 1024U + 1U);

    const DomResult dom = ParseDom(document);
    EXPECT_EQ(dom.status, -1);
    EXPECT_FALSE(dom.root);
    EXPECT_EQ(dom.error.offset, 3U * 1024U);
}

TEST(XmlLimits, AnEmptyElementBeyondTheDepthIsAnErrorAndLeavesNothing) {
    std::string document;
    document += Repeat("<g>", 1024);
    document += "t<h/>u";
    const LightResult light = ParseLight(document);
    EXPECT_EQ(light.status, -1);
    const ORVXmlNode* innermost = light.root.GetNode();
    while (innermost->firstChild) innermost = innermost->firstChild;
    EXPECT_EQ(innermost->GetName(), "g");
    EXPECT_EQ(innermost->GetText(), "t");
}

TEST(XmlLimits, ManySiblingsAreNoDepth) {
    std::string document = "<svg>";
    document += Repeat("<g><g/></g>", 3000);
    document += "</svg>";
    EXPECT_EQ(ParseLight(document).status, 1);
}

TEST(XmlLimits, EntitiesThatGrowExponentiallyAreAnError) {
    std::string type = "<!DOCTYPE t [<!ENTITY e0 'lol'>";
    for (int i = 1; i < 30; ++i) {
        type += "<!ENTITY e" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) type += "&e" + std::to_string(i - 1) + ";";
        type += "'>";
    }
    type += "]>";
    EXPECT_EQ(ParseLight(type + "<t>&e29;</t>").status, -1);
    EXPECT_EQ(ParseDom(type + "<t>&e29;</t>").status, -1);
    EXPECT_EQ(ParseLight(type + "<t a='&e29;'/>").status, -1);
    EXPECT_EQ(ParseDom(type + "<t a='&e29;'/>").status, -1);
    EXPECT_EQ(ParseLight(type + "<t>&e3;</t>").root.GetNode()->GetText().size(), 3000U);
}

TEST(XmlLimits, EntitiesThatGrowQuadraticallyAreBounded) {
    std::string document = "<!DOCTYPE t [<!ENTITY e '" + std::string(100000, 'x') + "'>]><t>";
    document += Repeat("&e;", 20000);
    document += "</t>";
    const LightResult light = ParseLight(document);
    EXPECT_EQ(light.status, -1);
    EXPECT_LT(light.root.GetTree()->GetMemoryInUse(), 100U << 20U);
}

TEST(XmlLimits, ParameterEntitiesThatGrowAreAnError) {
    std::string document = "<!DOCTYPE t [<!ENTITY % p0 '<!--xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx-->'>";
    for (int i = 1; i < 20; ++i) {
        document += "<!ENTITY % p" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) document += "&#37;p" + std::to_string(i - 1) + ";";
        document += "'>";
    }
    document += "%p19;]><t/>";
    EXPECT_EQ(ParseLight(document).status, -1);
    EXPECT_EQ(ParseDom(document).status, -1);
}

std::string EntityChain(std::size_t length) {
    std::string document = "<!DOCTYPE t [<!ENTITY e0 'x'>";
    for (std::size_t i = 1; i < length; ++i)
        document += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    const std::string last = "&e" + std::to_string(length - 1) + ";";
    return document + "]><t a='" + last + "'>" + last + "</t>";
}

TEST(XmlLimits, EntitiesMayBeNested1024Deep) {
    EXPECT_EQ(ParseLight(EntityChain(1024)).Text(), "t{a=x}'x'");
    EXPECT_EQ(ParseDom(EntityChain(1024)).Text(), "t{a=x}'x'");
    for (const std::size_t length : {1025U, 100000U}) {
        EXPECT_EQ(ParseLight(EntityChain(length)).status, -1) << length;
        EXPECT_EQ(ParseDom(EntityChain(length)).status, -1) << length;
    }
}

TEST(XmlLimits, LongChainsOfParameterEntitiesGiveAnAnswer) {
    std::string document = "<!DOCTYPE t [<!ENTITY % p0 '<!ENTITY e \"x\">'>";
    for (int i = 1; i < 20000; ++i)
        document += "<!ENTITY % p" + std::to_string(i) + " '&#37;p" + std::to_string(i - 1) + ";'>";
    document += "%p19999;]><t>&e;</t>";
    const LightResult light = ParseLight(document);
    EXPECT_TRUE(light.status == 1 ? light.Text() == "t'x'" : light.Text().empty());
}

TEST(XmlLimits, ALongDefaultValueIsStoredOnce) {
    std::string document = "<!DOCTYPE t [<!ATTLIST g a CDATA '" + std::string(10000, 'x') + "'>]><t>";
    document += Repeat("<g/>", 800);
    document += "</t>";
    for (const bool isDom : {false, true}) {
        const ORVRef<const ORVXmlTree> tree =
            isDom ? ParseDom(document).root.GetTree() : ParseLight(document).root.GetTree();
        ASSERT_TRUE(tree);
        EXPECT_LT(tree->GetMemoryInUse(), 1U << 20U);
        EXPECT_EQ(tree->GetRoot()->firstChild->nextSibling->Find("a")->size(), 10000U);
    }
}

TEST(XmlLimits, DefaultAttributesThatGrowAreBounded) {
    std::string document = "<!DOCTYPE t [<!ATTLIST g";
    for (int i = 0; i < 3000; ++i) document += " a" + std::to_string(i) + " CDATA ''";
    document += ">]><t>";
    document += Repeat("<g/>", 30000);
    document += "</t>";
    const LightResult light = ParseLight(document);
    EXPECT_EQ(light.status, -1);
    EXPECT_EQ(light.error.message, "the document type supplies too many attributes");
    EXPECT_LT(light.root.GetTree()->GetMemoryInUse(), 100U << 20U);
    EXPECT_EQ(ParseDom(document).status, -1);
}

// Every default attribute takes memory, even one with a short name and an empty value.
TEST(XmlLimits, DefaultAttributesCountWithWhatTheyTakeThemselves) {
    std::string type = "<!DOCTYPE t [<!ATTLIST g";
    for (char c = 'a'; c <= 'z'; ++c) type += std::string(" ") + c + "1 CDATA '' " + c + "2 CDATA ''";
    type += ">]><t>";
    for (const auto& [count, status] : {std::pair{1'000, 1}, {10'000, -1}}) {
        std::string document = type;
        for (int i = 0; i < count; ++i) document += "<g/>";
        EXPECT_EQ(ParseLight(document + "</t>").status, status) << count;
    }
}

// The following documents are so large that code of quadratic time would not finish.
TEST(XmlLimits, AValueOf50MillionBytesIsRead) {
    constexpr std::size_t kSize = 50000000;
    const std::string document = "<svg><image xlink:href='" + std::string(kSize, 'A') + "'/></svg>";
    const LightResult light = ParseLight(document);
    ASSERT_EQ(light.status, 1) << light.error.message;
    EXPECT_EQ(light.root.GetNode()->firstChild->Value(AttributeName::kXlinkHref).size(), kSize);
    const DomResult dom = ParseDom(document);
    ASSERT_EQ(dom.status, 1) << dom.error.message;
    EXPECT_EQ(dom.root.GetNode()->firstChild->Value(AttributeName::kXlinkHref).size(), kSize);
}

TEST(XmlLimits, TextInAMillionPiecesIsJoined) {
    std::string document = "<t>";
    document += Repeat("a\n", 1000000);
    document += "</t>";
    EXPECT_EQ(ParseLight(document).root.GetNode()->GetText().size(), 2000000U);
    EXPECT_EQ(ParseDom(document).root.GetNode()->GetText().size(), 2000000U);
}

TEST(XmlLimits, TextBetweenChildrenIsJoined) {
    std::string document = "<t>";
    document += Repeat("ab<g/>", 200000);
    document += "</t>";
    EXPECT_EQ(ParseLight(document).root.GetNode()->GetText().size(), 400000U);
    EXPECT_EQ(ParseDom(document).root.GetNode()->GetText().size(), 400000U);
}

TEST(XmlLimits, AMillionElementsTakeLittleMemory) {
    std::string document = "<svg>";
    document += Repeat("<rect x='1' y='2' fill='red'/>", 1000000);
    document += "</svg>";
    const LightResult light = ParseLight(document);
    ASSERT_EQ(light.status, 1);
    EXPECT_LT(light.root.GetTree()->GetMemoryInUse(), 250U << 20U);
    std::size_t count = 0;
    for (const ORVXmlNode* node = light.root.GetNode()->firstChild; node; node = node->nextSibling) ++count;
    EXPECT_EQ(count, 1000000U);
}

TEST(XmlLimits, ManyAttributesOnOneElementAreFine) {
    std::string document = "<svg";
    for (int i = 0; i < 100000; ++i) document += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
    document += " x='last'/>";
    const LightResult light = ParseLight(document);
    ASSERT_EQ(light.status, 1);
    EXPECT_EQ(light.root.GetNode()->attributeCount, 100001U);
    EXPECT_EQ(light.root.GetNode()->Value(AttributeName::kX), "last");
    EXPECT_EQ(*light.root.GetNode()->Find("a99999"), "99999");
}

}  // namespace
