// SPDX-License-Identifier: Apache-2.0
#include "generators/common/filter_reach.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr ORVMathBox2D kEverywhere{-kInfinity, kInfinity, -kInfinity, kInfinity};
constexpr ORVMathBox2D kContent{10, 20, 10, 20}, kRegion{0, 100, 0, 100};
constexpr int kSource = ORVPrintFilterStep::kSource;

ORVMathBox2D Reach(const ORVFilterOperation& operation, std::size_t inputs, const ORVMathBox2D& region) {
    const std::vector<ORVPrintFilterStep> steps{{operation, std::vector<int>(inputs, kSource), true, region}};
    return ORVReachOfFilter({steps, region, {}, 0}, kContent);
}

void ExpectBox(const ORVMathBox2D& box, double xMin, double xMax, double yMin, double yMax) {
    EXPECT_NEAR(box.xMin, xMin, 1e-9);
    EXPECT_NEAR(box.xMax, xMax, 1e-9);
    EXPECT_NEAR(box.yMin, yMin, 1e-9);
    EXPECT_NEAR(box.yMax, yMax, 1e-9);
}

TEST(FilterReachTest, GoesWithTheContent) {
    ExpectBox(Reach(ORVFilterOffset{5, -5}, 1, kEverywhere), 15, 25, 5, 15);
    ExpectBox(Reach(ORVFilterBlur{10, 0}, 1, kEverywhere), -21, 51, 10, 20);
    ExpectBox(Reach(ORVFilterShadow{{0, 0}, {30, 0}, {}}, 1, kEverywhere), 10, 50, 10, 20);
    ExpectBox(Reach(ORVFilterMorphology{true, 3, 4}, 1, kEverywhere), 7, 23, 6, 24);
    ExpectBox(Reach(ORVFilterMorphology{false, 3, 4}, 1, kEverywhere), 10, 20, 10, 20);
    ExpectBox(Reach(ORVFilterDisplacement{-8}, 2, kEverywhere), 6, 24, 6, 24);
    ExpectBox(Reach(ORVFilterColours{}, 1, kRegion), 10, 20, 10, 20);
}

TEST(FilterReachTest, IsTheSubregionForWhatAppearsAnywhere) {
    ExpectBox(Reach(ORVFilterFlood{}, 0, kRegion), 0, 100, 0, 100);
    ExpectBox(Reach(ORVFilterTurbulence{}, 0, kRegion), 0, 100, 0, 100);
    ORVFilterColours opaque;
    opaque.matrix[19] = 1.0;
    ExpectBox(Reach(opaque, 1, kRegion), 0, 100, 0, 100);
    ORVFilterTransfer table;
    table.functions[3].kind = ORVFilterTransfer::Function::Kind::kTable;
    table.functions[3].values = {0.5, 1.0};
    ExpectBox(Reach(table, 1, kRegion), 0, 100, 0, 100);
    ORVFilterComposite sum;
    sum.kind = ORVFilterComposite::Operator::kArithmetic;
    sum.k4 = 0.1;
    ExpectBox(Reach(sum, 2, kRegion), 0, 100, 0, 100);
}

TEST(FilterReachTest, IsNothingWhereNothingComesOut) {
    EXPECT_TRUE(Reach(ORVFilterNothing{}, 0, kRegion).IsEmpty());
    EXPECT_TRUE(Reach(ORVFilterOffset{200, 0}, 1, kRegion).IsEmpty());
    EXPECT_TRUE(Reach(ORVFilterOffset{}, 1, {}).IsEmpty());
    const std::vector<ORVPrintFilterStep> steps{{ORVFilterOffset{}, {kSource}, true, kRegion}};
    EXPECT_TRUE(ORVReachOfFilter({steps, kRegion, {}, 0}, {}).IsEmpty());
}

TEST(FilterReachTest, IsMappedToThePage) {
    const std::vector<ORVPrintFilterStep> steps{{ORVFilterOffset{1, 0}, {kSource}, true, kEverywhere}};
    // User units of ten page units, turned by 180 degrees.
    ExpectBox(ORVReachOfFilter({steps, kEverywhere, {-10, 0, 0, -10, 0, 0}, 0}, kContent), 0, 10, 10, 20);
}

}  // namespace
