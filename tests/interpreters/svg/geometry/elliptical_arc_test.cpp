// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/elliptical_arc.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "platform/mathematics/constants.h"
#include "tests/support/sketch_case.h"

namespace {

enum Order { kRising, kFalling };  // whether the first angle is the smaller or the larger one
enum Distance { kLarge, kHalf, kSmall };

// A row of the table. `start` and `end` state which angle (a or b) is used, and how many turns are added.
struct AngleCase {
    const char* name;
    Order order;
    Distance distance;
    bool large, sweep;
    char start;
    int startTurns;
    char end;
    int endTurns;
};

class ArcAnglesTest : public testing::TestWithParam<AngleCase> {};

TEST_P(ArcAnglesTest, FollowTheTable) {
    const AngleCase& row = GetParam();
    // Distances close to the limits and far from them. The tolerance is in single precision, slightly less
    // than 0.01.
    constexpr double kTolerance = 0.009999999776482582, kBehind = 0.0099999999;
    const double large[] = {ORVPI + kBehind, ORVPI + 0.0101, 4.0, 5.0, 6.2},
                 half[] = {ORVPI - kTolerance, ORVPI - 0.0099, ORVPI, ORVPI + 0.0099, ORVPI + kTolerance},
                 small[] = {ORVPI - kBehind, ORVPI - 0.0101, 1.0, 0.5, 0.001};
    const auto& distances = row.distance == kLarge ? large : row.distance == kHalf ? half : small;
    for (const double distance : distances) {
        const double a = row.order == kRising ? -distance / 2.0 : distance / 2.0, b = -a;
        const ArcAngles angles = ChooseArcAngles(a, b, row.large, row.sweep);
        EXPECT_DOUBLE_EQ(angles.start, (row.start == 'a' ? a : b) + row.startTurns * ORV2PI) << distance;
        EXPECT_DOUBLE_EQ(angles.end, (row.end == 'a' ? a : b) + row.endTurns * ORV2PI) << distance;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, ArcAnglesTest,
    testing::Values(AngleCase{"RisingLargeSetSet", kRising, kLarge, true, true, 'a', 0, 'b', 0},
                    AngleCase{"RisingLargeSetUnset", kRising, kLarge, true, false, 'b', 0, 'a', 0},
                    AngleCase{"RisingLargeUnsetSet", kRising, kLarge, false, true, 'b', 0, 'a', 1},
                    AngleCase{"RisingLargeUnsetUnset", kRising, kLarge, false, false, 'a', 1, 'b', 0},
                    AngleCase{"RisingHalfSetSet", kRising, kHalf, true, true, 'a', 0, 'b', 0},
                    AngleCase{"RisingHalfUnsetSet", kRising, kHalf, false, true, 'a', 0, 'b', 0},
                    AngleCase{"RisingHalfSetUnset", kRising, kHalf, true, false, 'a', 1, 'b', 0},
                    AngleCase{"RisingHalfUnsetUnset", kRising, kHalf, false, false, 'a', 1, 'b', 0},
                    AngleCase{"RisingSmallUnsetSet", kRising, kSmall, false, true, 'a', 0, 'b', 0},
                    AngleCase{"RisingSmallUnsetUnset", kRising, kSmall, false, false, 'b', 0, 'a', 0},
                    AngleCase{"RisingSmallSetSet", kRising, kSmall, true, true, 'b', 0, 'a', 1},
                    AngleCase{"RisingSmallSetUnset", kRising, kSmall, true, false, 'a', 1, 'b', 0},
                    AngleCase{"FallingLargeSetSet", kFalling, kLarge, true, true, 'b', 0, 'a', 0},
                    AngleCase{"FallingLargeSetUnset", kFalling, kLarge, true, false, 'a', 0, 'b', 0},
                    AngleCase{"FallingLargeUnsetSet", kFalling, kLarge, false, true, 'a', 0, 'b', 1},
                    AngleCase{"FallingLargeUnsetUnset", kFalling, kLarge, false, false, 'b', 1, 'a', 0},
                    AngleCase{"FallingHalfSetSet", kFalling, kHalf, true, true, 'a', 0, 'b', 1},
                    AngleCase{"FallingHalfUnsetSet", kFalling, kHalf, false, true, 'a', 0, 'b', 1},
                    AngleCase{"FallingHalfSetUnset", kFalling, kHalf, true, false, 'a', 0, 'b', 0},
                    AngleCase{"FallingHalfUnsetUnset", kFalling, kHalf, false, false, 'a', 0, 'b', 0},
                    AngleCase{"FallingSmallSetSet", kFalling, kSmall, true, true, 'a', 0, 'b', 1},
                    AngleCase{"FallingSmallSetUnset", kFalling, kSmall, true, false, 'b', 1, 'a', 0},
                    AngleCase{"FallingSmallUnsetSet", kFalling, kSmall, false, true, 'b', 0, 'a', 0},
                    AngleCase{"FallingSmallUnsetUnset", kFalling, kSmall, false, false, 'a', 0, 'b', 0}),
    kNameOfRow);

TEST(ArcAnglesTest, EqualAnglesGiveNothingOrAFullTurn) {
    for (const bool sweep : {false, true}) {
        EXPECT_DOUBLE_EQ(ChooseArcAngles(1.0, 1.0, false, sweep).start, 1.0);
        EXPECT_DOUBLE_EQ(ChooseArcAngles(1.0, 1.0, false, sweep).end, 1.0);
        EXPECT_DOUBLE_EQ(ChooseArcAngles(1.0, 1.0, true, sweep).start, sweep ? 1.0 : 1.0 + ORV2PI);
        EXPECT_DOUBLE_EQ(ChooseArcAngles(1.0, 1.0, true, sweep).end, sweep ? 1.0 + ORV2PI : 1.0);
    }
}

struct ShapeCase {
    const char* name;
    EndpointArc arc;
    ArcShape shape;
};

class ArcShapeTest : public testing::TestWithParam<ShapeCase> {};

TEST_P(ArcShapeTest, DependsOnTheRadii) {
    CenterArc center;
    center.horzRadius = -7.0;
    EXPECT_EQ(ConvertArc(GetParam().arc, center), GetParam().shape);
    if (GetParam().shape != ArcShape::kArc) {
        EXPECT_EQ(center.horzRadius, -7.0) << "written without need";
    }
}

constexpr ORVMathPoint2D kFrom{0.0, 0.0}, kTo{10.0, 0.0};

INSTANTIATE_TEST_SUITE_P(
    Shapes, ArcShapeTest,
    testing::Values(ShapeCase{"BothPositive", {kFrom, 8, 9, 0, 0, 0, kTo}, ArcShape::kArc},
                    ShapeCase{"FirstZero", {kFrom, 0, 9, 0, 0, 0, kTo}, ArcShape::kStraight},
                    ShapeCase{"SecondZero", {kFrom, 9, 0, 0, 0, 0, kTo}, ArcShape::kStraight},
                    ShapeCase{"FirstNegative", {kFrom, -1, 9, 0, 0, 0, kTo}, ArcShape::kStraight},
                    ShapeCase{"SecondNegative", {kFrom, 9, -1, 0, 0, 0, kTo}, ArcShape::kStraight},
                    ShapeCase{"BothZero", {kFrom, 0, 0, 0, 0, 0, kTo}, ArcShape::kNothing},
                    ShapeCase{"BothNegative", {kFrom, -8, -9, 0, 0, 0, kTo}, ArcShape::kNothing},
                    ShapeCase{"ZeroAndNegative", {kFrom, 0, -9, 0, 0, 0, kTo}, ArcShape::kNothing},
                    ShapeCase{"StartIsEnd", {kTo, 8, 9, 0, 0, 0, kTo}, ArcShape::kNothing},
                    // The number of positive radii is checked before the points.
                    ShapeCase{"StartIsEndAndOneRadiusZero", {kTo, 8, 0, 0, 0, 0, kTo}, ArcShape::kStraight}),
    kNameOfRow);

CenterArc Convert(const EndpointArc& arc) {
    CenterArc center;
    EXPECT_EQ(ConvertArc(arc, center), ArcShape::kArc);
    return center;
}

TEST(EllipticalArcTest, RadiiTooSmallGrowAroundTheMiddleOfTheChord) {
    const CenterArc arc = Convert({{0.0, 0.0}, 1.0, 2.0, 0.0, 0.0, 1.0, {10.0, 0.0}});
    EXPECT_DOUBLE_EQ(arc.center.x, 5.0);
    EXPECT_DOUBLE_EQ(arc.center.y, 0.0);
    EXPECT_DOUBLE_EQ(arc.horzRadius, 5.0);
    EXPECT_DOUBLE_EQ(arc.vertRadius, 2.0);  // not determined by the start point
}

TEST(EllipticalArcTest, RadiiAreTakenFromTheStartPoint) {
    // Chord along y = x: if the circle is far too small, both radii grow to half the chord.
    const CenterArc arc = Convert({{0.0, 0.0}, 1.0, 1.0, 0.0, 0.0, 1.0, {6.0, 8.0}});
    EXPECT_DOUBLE_EQ(arc.center.x, 3.0);
    EXPECT_DOUBLE_EQ(arc.center.y, 4.0);
    EXPECT_DOUBLE_EQ(arc.horzRadius, 5.0);
    EXPECT_DOUBLE_EQ(arc.vertRadius, 5.0);
}

TEST(EllipticalArcTest, SlopeIsTheRotationInRadians) {
    EXPECT_DOUBLE_EQ(Convert({{0.0, 0.0}, 8.0, 9.0, 30.0, 0.0, 1.0, {10.0, 0.0}}).slope, ORVPI / 6.0);
}

// The four arcs of a circle of radius 5 from (0, 0) to (6, 0); the centre is (3, 4) or (3, -4).
struct FlagCase {
    const char* name;
    double large, sweep;
    double centerY;
    bool sweepsUp;  // the angle increases from start to end
};

class ArcFlagsTest : public testing::TestWithParam<FlagCase> {};

TEST_P(ArcFlagsTest, ChooseTheCenter) {
    const CenterArc arc =
        Convert({{0.0, 0.0}, 5.0, 5.0, 0.0, GetParam().large, GetParam().sweep, {6.0, 0.0}});
    EXPECT_DOUBLE_EQ(arc.center.x, 3.0);
    EXPECT_DOUBLE_EQ(arc.center.y, GetParam().centerY);
    EXPECT_EQ(arc.endAngle > arc.startAngle, GetParam().sweepsUp);
}

INSTANTIATE_TEST_SUITE_P(
    Flags, ArcFlagsTest,
    testing::Values(FlagCase{"NeitherSet", 0, 0, -4, false}, FlagCase{"SweepSet", 0, 1, 4, true},
                    FlagCase{"LargeSet", 1, 0, 4, false}, FlagCase{"BothSet", 1, 1, -4, true},
                    FlagCase{"LargeTwoIsNotSet", 2, 1, 4, true}, FlagCase{"SweepTwoIsNotSet", 1, 2, 4, false},
                    FlagCase{"TwoAndTwoAreNotSet", 2, 2, -4, false},
                    FlagCase{"AlmostOneIsNotSet", 0.999, 1, 4, true},
                    FlagCase{"TwoAndZeroCountAsEqual", 2, 0, -4, false}),
    kNameOfRow);

// If the radii are large enough, the arc ends at both points, and the sweep flag determines its direction.
RC_GTEST_PROP(EllipticalArcTest, RunsBetweenItsPoints, ()) {
    const auto number = [](int low, int high) {
        return static_cast<double>(*rc::gen::inRange(low, high)) / 16.0;
    };
    EndpointArc arc;
    arc.start = {number(-1000, 1000), number(-1000, 1000)};
    arc.end = {number(-1000, 1000), number(-1000, 1000)};
    RC_PRE(!(arc.start == arc.end));
    const double reach = std::hypot(arc.start.x - arc.end.x, arc.start.y - arc.end.y) / 2.0;
    arc.rx = reach + number(1, 2000);
    arc.ry = reach + number(1, 2000);
    arc.rotation = number(-6000, 6000);
    arc.largeArcFlag = *rc::gen::inRange(0, 3);
    arc.sweepFlag = *rc::gen::inRange(0, 3);

    CenterArc center;
    RC_ASSERT(ConvertArc(arc, center) == ArcShape::kArc);
    const auto at = [&](double angle) {
        const double x = center.horzRadius * std::cos(angle), y = center.vertRadius * std::sin(angle);
        return ORVMathPoint2D{center.center.x + std::cos(center.slope) * x - std::sin(center.slope) * y,
                              center.center.y + std::sin(center.slope) * x + std::cos(center.slope) * y};
    };
    const auto near = [](const ORVMathPoint2D& p, const ORVMathPoint2D& q) {
        return std::hypot(p.x - q.x, p.y - q.y) < 1e-6;
    };
    const ORVMathPoint2D first = at(center.startAngle), last = at(center.endAngle);
    RC_ASSERT((near(first, arc.start) && near(last, arc.end)) ||
              (near(first, arc.end) && near(last, arc.start)));
    RC_ASSERT(std::fabs(center.endAngle - center.startAngle) <= ORV2PI + 1e-9);
    RC_ASSERT((center.endAngle > center.startAngle) == (arc.sweepFlag == 1.0));
    RC_ASSERT(std::fabs(center.horzRadius - arc.rx) < 1e-6);
    RC_ASSERT(std::fabs(center.vertRadius - arc.ry) < 1e-6);
}

}  // namespace
