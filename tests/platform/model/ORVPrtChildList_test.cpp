// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtChildList.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

// Returns a fake pointer: the list never dereferences its elements.
ORVPrtGraphicPrimitiveElt* Child(std::uintptr_t number) {
    return reinterpret_cast<ORVPrtGraphicPrimitiveElt*>(number * 16);
}

TEST(ORVPrtChildListTest, HoldsOneChildAndMany) {
    ORVPrtChildList list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
    EXPECT_THROW(static_cast<void>(list.at(0)), std::out_of_range);
    list.push_back(Child(1));
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(list.front(), Child(1));
    EXPECT_EQ(list.back(), Child(1));
    for (std::uintptr_t i = 2; i <= 100; ++i) {
        list.push_back(Child(i));
        ASSERT_EQ(list.size(), i);
        ASSERT_EQ(list[0], Child(1));
        ASSERT_EQ(list.back(), Child(i));
        ASSERT_EQ(list.at(i - 1), Child(i));
        ASSERT_THROW(static_cast<void>(list.at(i)), std::out_of_range);
    }
}

TEST(ORVPrtChildListTest, ComparesChildrenInTheirOrder) {
    EXPECT_EQ(ORVPrtChildList(), ORVPrtChildList());
    EXPECT_EQ((ORVPrtChildList{Child(1), Child(2)}), (ORVPrtChildList{Child(1), Child(2)}));
    EXPECT_FALSE((ORVPrtChildList{Child(1), Child(2)}) == (ORVPrtChildList{Child(2), Child(1)}));
    EXPECT_FALSE((ORVPrtChildList{Child(1)}) == (ORVPrtChildList{Child(1), Child(1)}));
}

TEST(ORVPrtChildListTest, AddsAndErasesLikeAVector) {
    ORVPrtChildList list;
    std::vector<ORVPrtGraphicPrimitiveElt*> expected;
    std::mt19937 random(11);
    for (std::uintptr_t i = 1; i < 3'000; ++i) {
        if (!expected.empty() && random() % 3 == 0) {
            const std::size_t place = random() % expected.size();
            list.erase(list.begin() + place);
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(place));
        } else {
            list.push_back(Child(i));
            expected.push_back(Child(i));
        }
        ASSERT_EQ(std::vector<ORVPrtGraphicPrimitiveElt*>(list.begin(), list.end()), expected);
    }
}

}  // namespace
