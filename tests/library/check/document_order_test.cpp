// SPDX-License-Identifier: Apache-2.0
#include "library/check/document_order.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/xml/ORVLightXml.h"

namespace {

std::string NamesFrom(const ORVXmlNode& top) {
    std::string names;
    DocumentOrder order(top);
    while (const ORVXmlNode* node = order.Next()) names += std::string(node->GetName()) + " ";
    EXPECT_EQ(order.Next(), nullptr) << "goes on behind the end";
    return names;
}

TEST(DocumentOrderTest, GoesThroughAllBelowTheTopAndNothingBesideIt) {
    const std::string text = "<a><b><c/><d><e/></d></b><f><g/></f><h/></a>";
    ORVLightXmlElement root;
    ASSERT_EQ(ORVLightXmlParser().Parse({text.data(), text.size()}, root), 1);
    const ORVXmlNode *a = root.GetNode(), *b = a->firstChild, *f = b->nextSibling, *h = f->nextSibling;
    EXPECT_EQ(NamesFrom(*a), "a b c d e f g h ");
    EXPECT_EQ(NamesFrom(*b), "b c d e ");
    EXPECT_EQ(NamesFrom(*b->firstChild), "c ");
    EXPECT_EQ(NamesFrom(*f), "f g ");
    EXPECT_EQ(NamesFrom(*h), "h ");
}

}  // namespace
