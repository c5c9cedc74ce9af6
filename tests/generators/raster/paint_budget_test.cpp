// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/paint_budget.h"

#include <gtest/gtest.h>

namespace {

TEST(PaintBudgetTest, IsSpentWhenMoreIsTakenThanThereIs) {
    PaintBudget budget;
    budget.Reset(10);
    EXPECT_TRUE(budget.Spend(4));
    EXPECT_TRUE(budget.Spend(6));
    EXPECT_FALSE(budget.IsSpent()) << "all of it, and no more";
    EXPECT_FALSE(budget.Spend(1));
    EXPECT_TRUE(budget.IsSpent());
    budget.Allow(1);
    EXPECT_FALSE(budget.IsSpent());
    EXPECT_FALSE(budget.Spend(1));
    budget.Reset(0);
    EXPECT_FALSE(budget.IsSpent());
    EXPECT_TRUE(budget.Spend(0));
}

}  // namespace
