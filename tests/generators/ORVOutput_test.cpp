// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVOutput.h"

#include <gtest/gtest.h>

namespace {

TEST(OutputTest, TakesAsManyBytesAsTheLimitSays) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kOutputBytes, 5);
    ORVMemoryOutput output;
    ASSERT_EQ(output.BeginPart(), 1);
    EXPECT_EQ(output.Write("abc", 3), 1);
    ASSERT_EQ(output.BeginPart(), 1);
    EXPECT_EQ(output.Write("de", 2), 1);
    EXPECT_FALSE(output.IsPastLimit());
    EXPECT_EQ(output.Write("f", 1), 0);
    EXPECT_TRUE(output.IsPastLimit());
    EXPECT_FALSE(output.GetError().empty());
    EXPECT_EQ(output.GetBytes(), "abcde");
}

TEST(OutputTest, EndsWithTheFirstWriteTooMany) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kOutputBytes, 5);
    ORVMemoryOutput output;
    EXPECT_EQ(output.Write("abcdef", 6), 0);
    EXPECT_EQ(output.Write("a", 1), 0) << "what follows has lost its beginning";
    EXPECT_EQ(output.GetBytes(), "");
}

TEST(OutputTest, CanBeEndedByBytesThatWaitElsewhere) {
    ORVMemoryOutput output;
    EXPECT_EQ(output.EndPastLimit(), 0);
    EXPECT_TRUE(output.IsPastLimit());
    EXPECT_EQ(output.Write("a", 1), 0);
}

}  // namespace
