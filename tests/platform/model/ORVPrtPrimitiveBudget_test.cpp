// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtPrimitiveBudget.h"

#include <gtest/gtest.h>

namespace {

TEST(PrimitiveBudget, RefusesTheFirstPrimitivePastTheLimit) {
    ORVPrtPrimitiveBudget budget(2);
    EXPECT_TRUE(budget.Take());
    EXPECT_TRUE(budget.Take());
    EXPECT_FALSE(budget.GetRefusal());
    EXPECT_FALSE(budget.Take());
    EXPECT_EQ(budget.GetRefusal(), ORVPrintLimit::kPrimitives);
    EXPECT_EQ(budget.GetTaken(), 2U);
}

TEST(PrimitiveBudget, RefusesTheFirstDuplicatePastTheLimit) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, 5);
    ORVPrtPrimitiveBudget budget(100);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(budget.TakeDuplicate(0));
    EXPECT_FALSE(budget.TakeDuplicate(0));
    EXPECT_EQ(budget.GetRefusal(), ORVPrintLimit::kDuplicates);
    EXPECT_EQ(budget.GetTaken(), 5U);
    EXPECT_EQ(budget.GetDuplicates(), 5U);
}

TEST(PrimitiveBudget, EveryPrimitiveOfTheDocumentAllowsMoreDuplicates) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, 0);
    ORVPrtPrimitiveBudget budget(100);
    EXPECT_TRUE(budget.Take());
    for (std::uint64_t i = 0; i < kGrowthPerPrimitive; ++i) EXPECT_TRUE(budget.TakeDuplicate(0));
    EXPECT_FALSE(budget.TakeDuplicate(0));
    EXPECT_TRUE(budget.Take());
    EXPECT_TRUE(budget.TakeDuplicate(0));
}

TEST(PrimitiveBudget, PointsAndTextOfDuplicatesCount) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, 11);
    ORVPrtPrimitiveBudget budget(100);
    EXPECT_TRUE(budget.TakeDuplicate(9 * kPayloadUnit));
    EXPECT_FALSE(budget.TakeDuplicate(kPayloadUnit));
    EXPECT_TRUE(budget.TakeDuplicate(kPayloadUnit - 1));
}

TEST(PrimitiveBudget, VisitsAreSpentAtTheLimit) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kVisits, 10);
    ORVPrtPrimitiveBudget budget(100);
    EXPECT_EQ(budget.GetVisitsLeft(), 10U);
    budget.NoteVisits(9);
    EXPECT_EQ(budget.GetVisitsLeft(), 1U);
    EXPECT_FALSE(budget.GetRefusal());
    EXPECT_TRUE(budget.Take());
    EXPECT_EQ(budget.GetVisitsLeft(), 1U + kGrowthPerPrimitive);
    budget.NoteVisits(1 + kGrowthPerPrimitive);
    EXPECT_EQ(budget.GetVisitsLeft(), 0U);
}

TEST(PrimitiveBudget, PixelsBeyondWhatTheFilePaysForCount) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDocumentPixels, 1000);
    ORVPrtPrimitiveBudget budget(100);
    budget.NotePixels(50 * kPixelsPerFileByte, 50);
    budget.NotePixels(kPixelsPerFileByte + 1000, 1);
    EXPECT_TRUE(budget.MayTakePixels());
    budget.NotePixels(kPixelsPerFileByte + 1, 1);
    EXPECT_FALSE(budget.MayTakePixels());
    EXPECT_EQ(budget.GetRefusal(), ORVPrintLimit::kDocumentPixels);
}

TEST(PrimitiveBudget, TheFirstRefusalIsKept) {
    ORVPrtPrimitiveBudget budget(0);
    EXPECT_FALSE(budget.Refuse(ORVPrintLimit::kPathPoints));
    EXPECT_FALSE(budget.Take());
    EXPECT_EQ(budget.GetRefusal(), ORVPrintLimit::kPathPoints);
}

TEST(PrimitiveBudget, SomeRefusedMemoryLeavesTheRestAndMuchEndsIt) {
    ORVPrtPrimitiveBudget budget(5000);
    EXPECT_FALSE(budget.IsOutOfMemory());
    for (std::uint64_t i = 1; i < ORVPrtPrimitiveBudget::kMostMemoryRefusals; ++i) budget.NoteOutOfMemory();
    EXPECT_TRUE(budget.IsOutOfMemory());
    EXPECT_TRUE(budget.Take());
    budget.NoteOutOfMemory();
    EXPECT_FALSE(budget.Take());
    EXPECT_FALSE(budget.TakeDuplicate(0));
    EXPECT_FALSE(budget.GetRefusal().has_value()) << "it is memory that was spent, not a limit reached";
}

}  // namespace
