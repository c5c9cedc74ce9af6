// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtTransformAttributes.h"

#include <gtest/gtest.h>

#include "platform/mathematics/constants.h"

namespace {

void ExpectMapsTo(const ORVPrtTransformAttributes& transform, ORVMathPoint2D from, double x, double y) {
    const ORVMathPoint2D to = transform.GetAffine()(from);
    EXPECT_NEAR(to.x, x, 1e-6);
    EXPECT_NEAR(to.y, y, 1e-6);
}

TEST(ORVPrtTransformAttributesTest, NoOperationIsTheIdentity) {
    ExpectMapsTo(ORVPrtTransformAttributes(), {3.0, 4.0}, 3.0, 4.0);
}

TEST(ORVPrtTransformAttributesTest, WhatIsAddedLaterActsFirst) {
    ORVPrtTransformAttributes transform;
    transform.AddTranslation({1.0, 2.0});
    transform.AddScaleX(3.0);
    transform.AddScaleY(5.0);
    ExpectMapsTo(transform, {10.0, 10.0}, 31.0, 52.0);
}

TEST(ORVPrtTransformAttributesTest, RotationTurnsTheXAxisTowardsTheYAxis) {
    ORVPrtTransformAttributes transform;
    transform.AddRotation(static_cast<float>(ORVPI / 2.0));
    ExpectMapsTo(transform, {1.0, 0.0}, 0.0, 1.0);
}

TEST(ORVPrtTransformAttributesTest, SkewsMoveAlongOneAxis) {
    ORVPrtTransformAttributes alongX, alongY;
    alongX.AddSkewX(static_cast<float>(ORVPI / 4.0));
    alongY.AddSkewY(static_cast<float>(ORVPI / 4.0));
    ExpectMapsTo(alongX, {1.0, 2.0}, 3.0, 2.0);
    ExpectMapsTo(alongY, {1.0, 2.0}, 1.0, 3.0);
}

TEST(ORVPrtTransformAttributesTest, MatrixIsGivenByRows) {
    ORVPrtTransformAttributes transform;
    transform.AddMatrix({1.0, 2.0, 3.0, 4.0});
    ExpectMapsTo(transform, {1.0, 10.0}, 21.0, 43.0);
}

TEST(ORVPrtTransformAttributesTest, CopiesShareUntilOneChanges) {
    ORVPrtTransformAttributes original;
    original.AddScaleX(2.0);
    ORVPrtTransformAttributes copy = original;
    EXPECT_EQ(copy, original);
    copy.AddScaleX(2.0);
    EXPECT_EQ(original.GetOperations().size(), 1U);
    EXPECT_EQ(copy.GetOperations().size(), 2U);
}

}  // namespace
