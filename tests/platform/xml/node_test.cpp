// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlNode.h"

#include <gtest/gtest.h>

#include "tests/platform/xml/tree_text.h"

namespace {

TEST(XmlNode, AnswersForKnownAndUnknownAttributes) {
    const LightResult read =
        ParseLight(R"(<rect foo="1" y="2" id="r" xmlns:b="u" b:x="3" x="4" fill="" tlv:text-version="5"/>)");
    ASSERT_EQ(read.status, 1) << read.error.message;
    const ORVXmlNode& node = *read.root.GetNode();
    EXPECT_EQ(node.id, ElementName::kRect);
    EXPECT_EQ(node.attributeCount, 8U);

    EXPECT_TRUE(node.Has(AttributeName::kX));
    EXPECT_TRUE(node.Has(AttributeName::kFill));
    EXPECT_FALSE(node.Has(AttributeName::kCx));
    EXPECT_FALSE(node.Has(AttributeName::kY2));
    EXPECT_EQ(node.Value(AttributeName::kX), "4");
    EXPECT_EQ(node.Value(AttributeName::kY), "2");
    EXPECT_EQ(node.Value(AttributeName::kId), "r");
    EXPECT_EQ(node.Value(AttributeName::kFill), "");
    EXPECT_EQ(node.Value(AttributeName::kTextVersion), "5");
    EXPECT_EQ(node.Value(AttributeName::kWidth), "");

    ASSERT_TRUE(node.Find("foo"));
    EXPECT_EQ(*node.Find("foo"), "1");
    EXPECT_EQ(*node.Find("b:x"), "3");
    EXPECT_EQ(*node.Find("x"), "4");
    EXPECT_EQ(*node.Find("xmlns:b"), "u");
    EXPECT_FALSE(node.Find("width"));
    EXPECT_FALSE(node.Find("bar"));
    EXPECT_FALSE(node.Find(""));
}

TEST(XmlNode, KeepsKnownAttributesByNumberAndTheOthersAsWritten) {
    EXPECT_EQ(ParseLight(R"(<g zz="1" y="2" aa="3" cx="4" x="5"/>)").Text(), "g{cx=4 x=5 y=2 zz=1 aa=3}");
}

TEST(XmlNode, HoldsEveryKnownAttributeAtOnce) {
    std::string document = "<path";
    for (int i = static_cast<int>(AttributeName::kCount) - 1; i >= 0; --i)
        document.append(" ")
            .append(GetNameText(static_cast<AttributeName>(i)))
            .append("='v")
            .append(std::to_string(i) + "'");
    document += "/>";
    const LightResult read = ParseLight(document);
    ASSERT_EQ(read.status, 1) << read.error.message;
    for (int i = 0; i < static_cast<int>(AttributeName::kCount); ++i) {
        const auto name = static_cast<AttributeName>(i);
        EXPECT_TRUE(read.root.GetNode()->Has(name));
        EXPECT_EQ(read.root.GetNode()->Value(name), "v" + std::to_string(i));
    }
}

TEST(XmlNode, OutlivesParserInputAndOtherHandles) {
    ORVLightXmlElement child;
    {
        std::string document = "<svg><g id='" + std::string(100000, 'x') + "'/></svg>";
        const LightResult read = ParseLight(document);
        ORVLightXmlChildHandle handle = read.root.GetChildren();
        child = read.root.GetChild(handle);
        document.assign(document.size(), '?');
    }
    EXPECT_EQ(child.GetNode()->Value(AttributeName::kId), std::string(100000, 'x'));
    EXPECT_EQ(child.GetName(), ORVUnicodeString("g"));
}

}  // namespace
