// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtColourTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>

#include "platform/system/ORVRef.h"

namespace {

TEST(ORVPrtColourTableTest, NumbersColoursFromZeroInTheOrderAdded) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    unsigned int first = 7, second = 7;
    EXPECT_EQ(table->AddColour(1, 2, 3, first), 1);
    EXPECT_EQ(table->AddColour(4, 5, 6, second), 1);
    EXPECT_EQ(first, 0U);
    EXPECT_EQ(second, 1U);
    EXPECT_EQ(table->GetColour(1).blue, 6);
}

TEST(ORVPrtColourTableTest, FindsWhatWasAddedAndLeavesTheIndexOtherwise) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    unsigned int index = 0;
    table->AddColour(9, 9, 9, index);
    table->AddColour(0, 1, 0, index);
    index = 42;
    EXPECT_EQ(table->GetColourIndex(index, 1, 0, 0), 0);
    EXPECT_EQ(index, 42U);
    EXPECT_EQ(table->GetColourIndex(index, 0, 1, 0), 1);
    EXPECT_EQ(index, 1U);
}

TEST(ORVPrtColourTableTest, FindsEachOfManyColours) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    const auto part = [](unsigned int number, unsigned int shift) {
        return static_cast<std::uint8_t>(number * 2654435761U >> shift);
    };
    constexpr unsigned int kCount = 20'000;
    for (unsigned int i = 0; i < kCount; ++i) {
        unsigned int index = 0;
        ASSERT_EQ(table->GetColourIndex(index, part(i, 24), part(i, 16), part(i, 8)), 0) << i;
        ASSERT_EQ(table->AddColour(part(i, 24), part(i, 16), part(i, 8), index), 1);
        ASSERT_EQ(index, i);
    }
    for (unsigned int i = 0; i < kCount; ++i) {
        unsigned int index = 0;
        ASSERT_EQ(table->GetColourIndex(index, part(i, 24), part(i, 16), part(i, 8)), 1) << i;
        ASSERT_EQ(index, i);
    }
}

TEST(ORVPrtColourTableTest, AColourAddedAgainKeepsItsFirstIndex) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    unsigned int index = 0;
    for (int i = 0; i < 40; ++i) table->AddColour(static_cast<std::uint8_t>(i / 2), 0, 0, index);
    EXPECT_EQ(index, 39U);
    EXPECT_EQ(table->GetColourIndex(index, 10, 0, 0), 1);
    EXPECT_EQ(index, 20U);
}

TEST(ORVPrtColourTableTest, FindsOrAddsLikeAPlainSearch) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    std::map<std::uint32_t, unsigned int> expected;
    std::mt19937 random(5);
    for (int i = 0; i < 100'000; ++i) {
        const auto value = static_cast<std::uint32_t>(random() % 40'000 * 397U);
        const ORVPrtColourTable::Colour colour{static_cast<std::uint8_t>(value >> 16U),
                                               static_cast<std::uint8_t>(value >> 8U),
                                               static_cast<std::uint8_t>(value)};
        const auto next = static_cast<unsigned int>(expected.size());
        const auto [found, isNew] = expected.emplace(value & 0xFFFFFFU, next);
        ASSERT_EQ(table->FindOrAddColour(colour), found->second);
        ASSERT_EQ(table->GetColours().size(), expected.size());
        ASSERT_EQ(table->GetColour(found->second), colour);
    }
}

TEST(ORVPrtColourTableTest, GivesBlackBeyondItsEnd) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    const ORVPrtColourTable::Colour colour = table->GetColour(3);
    EXPECT_EQ(colour.red + colour.green + colour.blue, 0);
}

}  // namespace
