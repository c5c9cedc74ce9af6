// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlNodeStore.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "tests/platform/xml/tree_text.h"
#include "tests/support/named_rows.h"

namespace {

constexpr std::size_t kBlocks = std::size_t{1} << 20U;  // bytes; more than the last blocks of a tree take

std::string Rectangles(int count, std::string_view name = "rect") {
    std::string text;
    for (int i = 0; i < count; ++i)
        text.append("<").append(name).append(" x='" + std::to_string(i) + "'/>\n");
    return text;
}

struct ReadingRow {
    const char* name;
    ORVXmlReading reading;
};

/// Parses a document for a given kind of reading, and reads it by adding up its numbers.
class NodeStoreTest : public testing::TestWithParam<ReadingRow> {
protected:
    void Parse(std::string document) {
        document_ = std::move(document);
        ASSERT_EQ(
            ORVLightXmlParser().Parse({document_.data(), document_.size(),
                                       ORVLightXmlInputStreamBuffer::Lifetime::kElements, GetParam().reading},
                                      root_),
            1);
        largest_ = MemoryInUse();
    }

    std::size_t MemoryInUse() const { return root_.GetTree()->GetMemoryInUse(); }

    /// Reads the descendants of an element as interpreters do: an element's attribute before its children,
    /// and again after them. Returns the sum of the attributes.
    long Sum(const ORVXmlNode& element) {
        long sum = 0;
        ORVXmlChildWalk walk(element);
        for (const ORVXmlNode* child = element.firstChild; child; child = child->nextSibling) {
            walk.Reach(*child);
            sum += Number(*child);
            if (!child->firstChild) continue;
            sum += Sum(*child);
            sum += Number(*child);
        }
        return sum;
    }

    static long Number(const ORVXmlNode& element) {
        return std::stol("0" + std::string(element.Value(AttributeName::kX)));
    }

    bool GivesNodesBack() const { return GetParam().reading != ORVXmlReading::kAny; }
    bool GivesSourceBack() const { return GetParam().reading == ORVXmlReading::kOnce; }

    std::string document_;
    ORVLightXmlElement root_;
    std::size_t largest_ = 0;
};

constexpr long kCount = 40'000, kSum = kCount * (kCount - 1) / 2;

TEST_P(NodeStoreTest, NodesAreGivenBackOnceTheyHaveBeenRead) {
    Parse("<svg>" + Rectangles(kCount) + "</svg>");
    EXPECT_GT(largest_, 2 * kBlocks);
    EXPECT_EQ(Sum(*root_.GetNode()), kSum);
    if (GivesNodesBack())
        EXPECT_LT(MemoryInUse(), kBlocks);
    else
        EXPECT_EQ(MemoryInUse(), largest_);
}

TEST_P(NodeStoreTest, OnlyADocumentThatMayBeLostIsGivenBack) {
    Parse("<svg>" + Rectangles(kCount) + "</svg>");
    const std::string copy = document_;
    Sum(*root_.GetNode());
    EXPECT_EQ(document_ != copy, GivesSourceBack());
    if (!GivesSourceBack()) return;
    EXPECT_EQ(document_.substr(0, 400), copy.substr(0, 400));
    EXPECT_EQ(document_.substr(document_.size() - 400), copy.substr(copy.size() - 400));
    EXPECT_GT(document_.size() - document_.find('\0'), document_.size() / 2);
}

TEST_P(NodeStoreTest, ElementsStayWhileTheirChildrenAreRead) {
    std::string text = "<svg>";
    for (int i = 1; i <= 20; ++i)
        text += "<g x='" + std::to_string(i) + "'>" + Rectangles(2'000) + "<g x='7'>" + Rectangles(2'000) +
                "</g>" + Rectangles(100) + "</g>";
    Parse(text + "</svg>");
    const auto sum = [](long count) { return count * (count - 1) / 2; };
    EXPECT_EQ(Sum(*root_.GetNode()), 2 * 210 + 20 * (2 * 7 + 2 * sum(2'000) + sum(100)));
    if (GivesNodesBack()) EXPECT_LT(MemoryInUse(), kBlocks);
}

TEST_P(NodeStoreTest, WhatIsPassedOverIsGivenBackToo) {
    Parse("<svg><g>" + Rectangles(kCount, "other") + "</g><rect x='3'/><g>" + Rectangles(kCount) +
          "</g></svg>");
    const ORVXmlNode& root = *root_.GetNode();
    ORVXmlChildWalk walk(root);
    const ORVXmlNode* const first = root.firstChild;
    walk.Reach(*first);
    const ORVXmlNode* const second = first->nextSibling;
    walk.Reach(*second);
    EXPECT_EQ(Number(*second), 3);
    const ORVXmlNode* const third = second->nextSibling;
    walk.Reach(*third);
    EXPECT_EQ(Sum(*third), kSum);
    if (GivesNodesBack()) EXPECT_LT(MemoryInUse(), kBlocks);
}

TEST_P(NodeStoreTest, PartsThatAreReadOneAfterTheOtherLeaveTheRestAlone) {
    const std::string part = Rectangles(kCount);
    Parse("<set><a x='1'>" + part + "</a><b x='2'>" + part + "</b><c x='3'>" + part + "</c></set>");
    const ORVXmlNode* const a = root_.GetNode()->firstChild;
    const ORVXmlNode* const b = a->nextSibling;
    const ORVXmlNode* const c = b->nextSibling;
    EXPECT_EQ(Sum(*b), kSum);
    if (GivesNodesBack()) EXPECT_LT(MemoryInUse(), largest_ / 3 * 2 + kBlocks);
    EXPECT_EQ(Sum(*c), kSum);
    EXPECT_EQ(Sum(*a), kSum);
    EXPECT_EQ(Number(*a) + Number(*b) + Number(*c), 6);
    if (GivesNodesBack()) EXPECT_LT(MemoryInUse(), 2 * kBlocks);
}

TEST_P(NodeStoreTest, AttributesBeyondCountingLieApart) {
    std::string many = "<rect";
    for (int i = 0; i < 2'000; ++i) many += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
    Parse("<svg>" + many + " x='5'/>" + Rectangles(kCount) + many + " x='6'/></svg>");
    EXPECT_EQ(root_.GetNode()->firstChild->Find("a1999").value_or(""), "1999");
    EXPECT_EQ(Sum(*root_.GetNode()), kSum + 11);
}

INSTANTIATE_TEST_SUITE_P(Readings, NodeStoreTest,
                         testing::Values(ReadingRow{"Any", ORVXmlReading::kAny},
                                         ReadingRow{"OnceInKeptSource", ORVXmlReading::kOnceInKeptSource},
                                         ReadingRow{"Once", ORVXmlReading::kOnce}),
                         kNameOfRow);

}  // namespace
