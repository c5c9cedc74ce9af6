// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVPrintLimits.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

class PrintLimitsTest : public testing::Test {
protected:
    ~PrintLimitsTest() override { ORVPrintLimits::UseStandard(); }
};

TEST_F(PrintLimitsTest, EveryLimitHasANameOfItsOwnAndSensibleValues) {
    std::set<std::string> names;
    for (const ORVPrintLimits::Row& row : ORVPrintLimits::Rows()) {
        EXPECT_TRUE(names.insert(std::string(row.name)).second) << row.name;
        EXPECT_EQ(ORVPrintLimits::Find(row.name), &row);
        EXPECT_EQ(&ORVPrintLimits::RowOf(row.limit), &row);
        EXPECT_FALSE(row.what.empty()) << row.name;
        EXPECT_GT(row.unchecked, 0U) << row.name;
        EXPECT_LE(row.unchecked, row.standard) << row.name;
        EXPECT_LE(row.standard, row.greatest) << row.name;
    }
    EXPECT_EQ(names.size(), kPrintLimitCount);
    EXPECT_EQ(ORVPrintLimits::Find("no-such-limit"), nullptr);
    EXPECT_EQ(ORVPrintLimits::Find(""), nullptr);
}

TEST_F(PrintLimitsTest, TheStandardHoldsUntilSomethingElseIsSet) {
    ORVPrintLimits::UseStandard();
    EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kPrimitives), 50'000'000U);
    EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kDrawn), 200'000'000U);
    EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kImagePixels), std::uint64_t{1} << 28U);
    ORVPrintLimits::Set(ORVPrintLimit::kPrimitives, 0);
    EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kPrimitives), 0U);
    {
        const ORVScopedPrintLimit scope(ORVPrintLimit::kPrimitives, 7);
        EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kPrimitives), 7U);
        EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kDrawn), 200'000'000U);
    }
    EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kPrimitives), 0U);
}

TEST_F(PrintLimitsTest, UncheckedFilesGetTighterLimits) {
    ORVPrintLimits::UseUnchecked();
    for (const ORVPrintLimits::Row& row : ORVPrintLimits::Rows())
        EXPECT_EQ(ORVPrintLimits::Get(row.limit), row.unchecked) << row.name;
    EXPECT_LT(ORVPrintLimits::Get(ORVPrintLimit::kDuplicates),
              ORVPrintLimits::RowOf(ORVPrintLimit::kDuplicates).standard);
}

TEST_F(PrintLimitsTest, AValueBeyondTheGreatestBecomesThat) {
    ORVPrintLimits::Set(ORVPrintLimit::kElementDepth, 1'000'000);
    EXPECT_EQ(ORVPrintLimits::Get(ORVPrintLimit::kElementDepth), 1024U);
}

}  // namespace
