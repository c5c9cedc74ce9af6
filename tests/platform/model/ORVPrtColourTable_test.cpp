#include "platform/model/ORVPrtColourTable.h"

#include <gtest/gtest.h>

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

TEST(ORVPrtColourTableTest, GivesBlackBeyondItsEnd) {
    const ORVRef<ORVPrtColourTable> table(new ORVPrtColourTable);
    const ORVPrtColourTable::Colour colour = table->GetColour(3);
    EXPECT_EQ(colour.red + colour.green + colour.blue, 0);
}

}  // namespace
