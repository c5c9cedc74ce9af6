// SPDX-License-Identifier: Apache-2.0
#include "library/check/identifiers.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/xml/ORVLightXml.h"

namespace {

class IdentifiersTest : public testing::Test {
protected:
    IdentifiersTest() {
        EXPECT_EQ(ORVLightXmlParser().Parse({kText.data(), kText.size()}, root_), 1);
        first_ = root_.GetNode()->firstChild;
        second_ = first_->nextSibling;
    }

    const std::string kText =
        "<svg><svg id='p1'><rect id='a'/><g id='b'><rect id='A'/></g></svg><svg><rect id='C'/></svg></svg>";
    ORVLightXmlElement root_;
    const ORVXmlNode *first_ = nullptr, *second_ = nullptr;
    CheckedDocument document_;
    Findings found_;
    FindingWriter findings_{document_, found_};
};

TEST_F(IdentifiersTest, TheFirstOfAPageIsFoundInAnyCase) {
    Identifiers identifiers(*root_.GetNode());
    identifiers.ReadPage({first_, 1}, findings_);
    EXPECT_EQ(identifiers.FindOnPage("P1"), first_);
    EXPECT_EQ(identifiers.FindOnPage("A"), first_->firstChild);
    EXPECT_EQ(identifiers.FindOnPage("c"), nullptr);
    EXPECT_EQ(identifiers.FindOnPage(""), nullptr);
    EXPECT_EQ(found_.GetCount(FindingCode::kDuplicateId), 1U);
}

TEST_F(IdentifiersTest, APageTakesThePlaceOfTheOneBefore) {
    Identifiers identifiers(*root_.GetNode());
    identifiers.ReadPage({first_, 1}, findings_);
    identifiers.ReadPage({second_, 5}, findings_);
    EXPECT_EQ(identifiers.FindOnPage("a"), nullptr);
    EXPECT_EQ(identifiers.FindOnPage("c"), second_->firstChild);
}

TEST_F(IdentifiersTest, OtherPagesAreOfTheDocumentInTheSameLettersOnly) {
    Identifiers identifiers(*root_.GetNode());
    identifiers.ReadPage({second_, 5}, findings_);
    EXPECT_TRUE(identifiers.IsInDocument("c"));
    EXPECT_TRUE(identifiers.IsInDocument("b"));
    EXPECT_FALSE(identifiers.IsInDocument("B"));
    EXPECT_FALSE(identifiers.IsInDocument("d"));
}

}  // namespace
