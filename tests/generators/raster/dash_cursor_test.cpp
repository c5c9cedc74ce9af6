// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/dash_cursor.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

/// Makes a pen with dashes of 3 and 1, and gaps of 2 and 0.1.
class DashCursorTest : public testing::Test {
protected:
    StrokePen MakePen() {
        const double dashes[]{3.0, 2.0, 1.0, 0.1};
        ORVPrintStroke stroke;
        stroke.dashes = dashes;
        return ORVMakePen(stroke, {}, 0.25, ends_);
    }
    std::vector<double> ends_;
};

TEST_F(DashCursorTest, DashesFollowEachOther) {
    const StrokePen pen = MakePen();
    DashCursor cursor(pen, 0.0);
    EXPECT_TRUE(cursor.IsFirst());
    for (const auto& [begin, end] :
         std::vector<std::pair<double, double>>{{0.0, 3.0}, {5.0, 6.0}, {6.1, 9.1}, {11.1, 12.1}}) {
        EXPECT_DOUBLE_EQ(cursor.GetBegin(), begin);
        EXPECT_DOUBLE_EQ(cursor.GetEnd(), end);
        cursor.Advance();
    }
}

TEST_F(DashCursorTest, DashesAreTheSameWhereverTheWalkBegins) {
    const StrokePen pen = MakePen();
    DashCursor all(pen, 0.0);
    for (int i = 0; i < 500; ++i, all.Advance())
        for (const double distance : {all.GetBegin(), all.GetEnd(), all.GetEnd() + 0.05}) {
            DashCursor cursor(pen, distance);
            EXPECT_TRUE(cursor.GetEnd() <= distance || cursor.IsFirst()) << distance;
            while (cursor.GetBegin() < all.GetBegin()) cursor.Advance();
            EXPECT_EQ(cursor.GetBegin(), all.GetBegin());
            EXPECT_EQ(cursor.GetEnd(), all.GetEnd());
        }
}

TEST_F(DashCursorTest, JumpsEndBeforeTheirGoal) {
    const StrokePen pen = MakePen();
    DashCursor cursor(pen, 0.0);
    EXPECT_TRUE(cursor.JumpTowards(1000.0));
    EXPECT_LT(cursor.GetEnd(), 1000.0);
    EXPECT_GT(cursor.GetEnd(), 980.0);
    EXPECT_FALSE(cursor.JumpTowards(500.0));
    EXPECT_GT(cursor.GetEnd(), 980.0);
}

TEST_F(DashCursorTest, TheLastDashOfALineIsFound) {
    const StrokePen pen = MakePen();
    double begin = 0.0, end = 0.0;
    EXPECT_TRUE(ORVFindLastDash(pen, 8.0, begin, end));
    EXPECT_DOUBLE_EQ(begin, 6.1);
    EXPECT_FALSE(ORVFindLastDash(pen, 10.0, begin, end));
    EXPECT_DOUBLE_EQ(end, 9.1);
}

}  // namespace
