// SPDX-License-Identifier: Apache-2.0
#include "platform/mathematics/geometry.h"

#include <cmath>
#include <limits>
#include <optional>

#include "gtest/gtest.h"

namespace {

const ORVMathAffine2D kSlanted{2.0, 1.0, 0.5, 3.0, 7.0, -4.0};

void ExpectBox(const ORVMathBox2D& box, double xMin, double xMax, double yMin, double yMax) {
    EXPECT_EQ(box.xMin, xMin);
    EXPECT_EQ(box.xMax, xMax);
    EXPECT_EQ(box.yMin, yMin);
    EXPECT_EQ(box.yMax, yMax);
}

TEST(AffineTest, TheInverseGivesTheWayBack) {
    const std::optional<ORVMathAffine2D> inverse = kSlanted.Inverse();
    ASSERT_TRUE(inverse);
    const ORVMathPoint2D p = (*inverse)(kSlanted({11.0, 13.0}));
    EXPECT_NEAR(p.x, 11.0, 1e-12);
    EXPECT_NEAR(p.y, 13.0, 1e-12);
}

TEST(AffineTest, WhatFlattensOrIsNoNumberHasNoInverse) {
    const ORVMathAffine2D flat{1.0, 1.0, 1.0, 1.0, 0.0, 0.0};
    const ORVMathAffine2D none{std::nan(""), 0.0, 0.0, 1.0, 0.0, 0.0};
    const ORVMathAffine2D far{1e-200, 0.0, 0.0, 1e-100, 1e300, 0.0};
    EXPECT_FALSE(flat.Inverse());
    EXPECT_FALSE(none.Inverse());
    EXPECT_FALSE(far.Inverse());
}

TEST(AffineTest, TheEnlargementIsThatOfTheLongerAxis) {
    EXPECT_EQ(ORVMathAffine2D().Enlargement(), 1.0);
    EXPECT_EQ(ORVMathAffine2D::Scaling(2.0, -5.0).Enlargement(), 5.0);
    EXPECT_EQ((ORVMathAffine2D{3.0, 0.0, 4.0, 1.0, 9.0, 9.0}).Enlargement(), 5.0);
}

TEST(AffineTest, MapsAreEqualWhenAllSixNumbersAre) {
    for (double ORVMathAffine2D::*number :
         {&ORVMathAffine2D::m11, &ORVMathAffine2D::m12, &ORVMathAffine2D::m21, &ORVMathAffine2D::m22,
          &ORVMathAffine2D::dx, &ORVMathAffine2D::dy}) {
        ORVMathAffine2D other = kSlanted;
        EXPECT_TRUE(other == kSlanted);
        other.*number += 0.25;
        EXPECT_FALSE(other == kSlanted);
    }
}

TEST(BoxTest, TheUnionReachesAroundBoth) {
    ORVMathBox2D box{0.0, 2.0, 0.0, 2.0};
    box.Unite({-1.0, 1.0, 1.0, 3.0});
    ExpectBox(box, -1.0, 2.0, 0.0, 3.0);
    box.Unite({});
    ExpectBox(box, -1.0, 2.0, 0.0, 3.0);
    ORVMathBox2D none;
    none.Unite({});
    EXPECT_TRUE(none.IsEmpty());
    none.Unite(box);
    ExpectBox(none, -1.0, 2.0, 0.0, 3.0);
}

TEST(BoxTest, CutsToWhatIsCommon) {
    constexpr ORVMathBox2D kBox{0.0, 10.0, 0.0, 20.0};
    struct Row {
        const char* name;
        ORVMathBox2D other, intersection, overlap;
    };
    for (const Row& row : {
             Row{"corner", {5, 15, -5, 5}, {5, 10, 0, 5}, {5, 10, 0, 5}},
             Row{"within", {1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}},
             Row{"edges that touch", {10, 15, 0, 20}, {10, 10, 0, 20}, {}},
             Row{"a line within", {5, 5, 0, 20}, {5, 5, 0, 20}, {}},
             Row{"apart across", {11, 15, 0, 20}, {}, {}},
             Row{"apart down", {0, 10, 21, 25}, {}, {}},
             Row{"nothing", {}, {}, {}},
         }) {
        SCOPED_TRACE(row.name);
        const auto same = [](const ORVMathBox2D& a, const ORVMathBox2D& b) {
            return a.xMin == b.xMin && a.xMax == b.xMax && a.yMin == b.yMin && a.yMax == b.yMax;
        };
        EXPECT_TRUE(same(kBox.Intersection(row.other), row.intersection));
        EXPECT_TRUE(same(row.other.Intersection(kBox), row.intersection));
        EXPECT_TRUE(same(kBox.Overlap(row.other), row.overlap));
    }
}

TEST(BoxTest, AMappedBoxReachesAroundItsFourCorners) {
    constexpr ORVMathBox2D kBox{1.0, 2.0, 10.0, 20.0};
    ExpectBox(kBox.MappedBy({0.0, -1.0, 1.0, 0.0, 0.0, 0.0}), -20.0, -10.0, 1.0, 2.0);
    ExpectBox(kBox.MappedBy({1.0, 1.0, 0.0, 1.0, 0.0, 0.0}), 11.0, 22.0, 10.0, 20.0);
    EXPECT_TRUE(ORVMathBox2D().MappedBy({}).IsEmpty());
}

}  // namespace
