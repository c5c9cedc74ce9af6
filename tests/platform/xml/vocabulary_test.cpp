// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/vocabulary.h"

#include <gtest/gtest.h>

#include <cctype>
#include <random>
#include <set>
#include <string>

namespace {

TEST(Vocabulary, FindsEveryElementNameByItsText) {
    std::set<std::string_view> texts;
    for (int i = 1; i <= static_cast<int>(ElementName::kUse); ++i) {
        const auto name = static_cast<ElementName>(i);
        const std::string_view text = GetNameText(name);
        ASSERT_FALSE(text.empty()) << i;
        EXPECT_EQ(FindElementName(text), name) << text;
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
    EXPECT_EQ(GetNameText(ElementName::kUnknown), "");
}

TEST(Vocabulary, FindsEveryAttributeNameByItsText) {
    std::set<std::string_view> texts;
    for (int i = 0; i < static_cast<int>(AttributeName::kCount); ++i) {
        const auto name = static_cast<AttributeName>(i);
        const std::string_view text = GetNameText(name);
        ASSERT_FALSE(text.empty()) << i;
        EXPECT_EQ(FindAttributeName(text), name) << text;
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
    EXPECT_EQ(GetNameText(AttributeName::kCount), "");
}

TEST(Vocabulary, NumbersStandForTheRightNames) {
    EXPECT_EQ(FindElementName("a"), ElementName::kA);
    EXPECT_EQ(FindElementName("ellipse"), ElementName::kEllipse);
    EXPECT_EQ(FindElementName("polyline"), ElementName::kPolyline);
    EXPECT_EQ(FindElementName("svg"), ElementName::kSvg);
    EXPECT_EQ(FindAttributeName("alignment-baseline"), AttributeName::kAlignmentBaseline);
    EXPECT_EQ(FindAttributeName("tlv:text-version"), AttributeName::kTextVersion);
    EXPECT_EQ(FindAttributeName("viewBox"), AttributeName::kViewBox);
    EXPECT_EQ(FindAttributeName("xlink:href"), AttributeName::kXlinkHref);
    EXPECT_EQ(FindAttributeName("markerWidth"), AttributeName::kMarkerWidth);
    EXPECT_EQ(FindAttributeName("marker-mid"), AttributeName::kMarkerMid);
    EXPECT_EQ(FindAttributeName("stroke-linejoin"), AttributeName::kStrokeLinejoin);
}

TEST(Vocabulary, IsExact) {
    for (const char* text :
         {"", "SVG", "Svg", "svg:svg", "svg ", "sv", "svgg", "#text", "#comment", "linearGradient"})
        EXPECT_EQ(FindElementName(text), ElementName::kUnknown) << text;
    for (const char* text : {"", "viewbox", "VIEWBOX", "href", "text-version", "xlink:Href", "x ", " x",
                             "stroke-", "stroke-dashoffset", "xmlns", "y3"})
        EXPECT_FALSE(FindAttributeName(text)) << text;
}

TEST(Vocabulary, TakesNoNameForItsNeighbour) {
    std::mt19937 random(4711);
    for (int i = 0; i < static_cast<int>(AttributeName::kCount); ++i) {
        const std::string text(GetNameText(static_cast<AttributeName>(i)));
        for (std::size_t at = 0; at < text.size(); ++at) {
            std::string changed = text;
            changed[at] = static_cast<char>('A' + random() % 26);
            if (changed == text) continue;
            const auto found = FindAttributeName(changed);
            EXPECT_TRUE(!found || GetNameText(*found) == changed) << changed;
        }
    }
}

}  // namespace
