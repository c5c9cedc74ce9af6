// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/state/tolerance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// 0.01 in single precision, which is slightly less.
constexpr double kHundredth = 0.009999999776482582;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ToleranceTest, TheEndsOfTheBandBelongToIt) {
    for (const double end : {1.0 - kHundredth, 1.0 + kHundredth}) {
        EXPECT_TRUE(IsUnitScale(end));
        EXPECT_TRUE(IsUnitScale(std::nextafter(end, 1.0)));
        EXPECT_FALSE(IsUnitScale(std::nextafter(end, end < 1.0 ? -kInfinity : kInfinity)));
    }
    EXPECT_TRUE(IsUnitScale(1.0));
    EXPECT_FALSE(IsUnitScale(0.99));
    EXPECT_FALSE(IsUnitScale(1.01));
    EXPECT_FALSE(IsUnitScale(-1.0));
    EXPECT_FALSE(IsUnitScale(std::nan("")));
}

TEST(ToleranceTest, LengthsAgreeAsFarAsTheTolerance) {
    for (const double length : {0.0, -kHundredth, kHundredth}) EXPECT_TRUE(IsWithinTolerance(length, 0.0));
    EXPECT_FALSE(IsWithinTolerance(std::nextafter(kHundredth, 1.0), 0.0));
    EXPECT_FALSE(IsWithinTolerance(0.0, std::nextafter(kHundredth, 1.0)));
    EXPECT_FALSE(IsWithinTolerance(0.01, 0.0));
    EXPECT_FALSE(IsWithinTolerance(std::nan(""), 0.0));
}

}  // namespace
