// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <span>
#include <vector>

#include "tests/generators/raster/pixel_page.h"
#include "tests/support/named_rows.h"

namespace {

ORVPrintPath Line(std::initializer_list<ORVMathPoint2D> points, bool closed = false) {
    ORVPrintPath path;
    for (const ORVMathPoint2D& p : points) {
        if (path.IsEmpty())
            path.MoveTo(p);
        else
            path.LineTo(p);
    }
    if (closed) path.Close();
    return path;
}

/// Makes a circle of four curves.
ORVPrintPath Circle(double x, double y, double r) {
    constexpr double k = 0.5522847498;
    ORVPrintPath path;
    path.MoveTo({x + r, y});
    path.CubicTo({x + r, y + k * r}, {x + k * r, y + r}, {x, y + r});
    path.CubicTo({x - k * r, y + r}, {x - r, y + k * r}, {x - r, y});
    path.CubicTo({x - r, y - k * r}, {x - k * r, y - r}, {x, y - r});
    path.CubicTo({x + k * r, y - r}, {x + r, y - k * r}, {x + r, y});
    path.Close();
    return path;
}

double InkOf(const ORVPrintPath& path, const ORVPrintStroke& stroke, const ORVMathAffine2D& map = {}) {
    PixelPage page(100.0, 100.0);
    EXPECT_EQ(page.Get().DrawShape({path, map, nullptr, &stroke}), 1);
    page.Finish();
    return page.TotalInk();
}

using Cap = ORVPrintStroke::Cap;
using Join = ORVPrintStroke::Join;

ORVPrintStroke Pen(double width, Cap cap = Cap::kButt, Join join = Join::kMiter) {
    ORVPrintStroke stroke;
    stroke.width = width;
    stroke.cap = cap;
    stroke.join = join;
    return stroke;
}

struct AreaCase {
    const char* name;
    ORVPrintPath path;
    ORVPrintStroke stroke;
    double area;  // in pixels
};
class StrokeAreaTest : public testing::TestWithParam<AreaCase> {};
TEST_P(StrokeAreaTest, IsThatOfTheLine) {
    const AreaCase& row = GetParam();
    EXPECT_NEAR(InkOf(row.path, row.stroke), row.area, 0.3 + row.area * 0.003);
    // Mirrored or with its axes swapped, the line has the same area.
    EXPECT_NEAR(InkOf(row.path, row.stroke, {-1.0, 0.0, 0.0, 1.0, 100.0, 0.0}), row.area,
                0.3 + row.area * 0.003);
    EXPECT_NEAR(InkOf(row.path, row.stroke, {0.0, 1.0, 1.0, 0.0, 0.0, 0.0}), row.area,
                0.3 + row.area * 0.003);
}
const double kPi = std::numbers::pi;
const auto kCorner = Line({{20.0, 70.0}, {20.0, 20.0}, {70.0, 20.0}});
INSTANTIATE_TEST_SUITE_P(
    Stroke, StrokeAreaTest,
    testing::Values(AreaCase{"Butt", Line({{20, 50}, {60, 50}}), Pen(10), 400},
                    AreaCase{"Square", Line({{20, 50}, {60, 50}}), Pen(10, Cap::kSquare), 500},
                    AreaCase{"Round", Line({{20, 50}, {60, 50}}), Pen(10, Cap::kRound), 400 + kPi * 25},
                    AreaCase{"Slanted", Line({{20, 20}, {50, 60}}), Pen(10), 500},
                    AreaCase{"MiterJoin", kCorner, Pen(10), 1000},
                    AreaCase{"BevelJoin", kCorner, Pen(10, Cap::kButt, Join::kBevel), 1000 - 12.5},
                    AreaCase{"RoundJoin", kCorner, Pen(10, Cap::kButt, Join::kRound),
                             1000 - 25 + kPi * 25 / 4},
                    AreaCase{"Closed", Line({{20, 20}, {70, 20}, {70, 70}, {20, 70}}, true), Pen(10), 2000},
                    AreaCase{"ClosedRound", Line({{20, 20}, {70, 20}, {70, 70}, {20, 70}}, true),
                             Pen(10, Cap::kButt, Join::kRound), 2000 - 100 + kPi * 25},
                    // The line turns back: the overlap counts once.
                    AreaCase{"ThereAndBack", Line({{20, 50}, {60, 50}, {20, 50}}), Pen(10), 400},
                    AreaCase{"ThereAndBackRound", Line({{20, 50}, {60, 50}, {20, 50}}),
                             Pen(10, Cap::kButt, Join::kRound), 400 + kPi * 12.5},
                    AreaCase{"Ring", Circle(50, 50, 30), Pen(10), kPi*(35 * 35 - 25 * 25)},
                    AreaCase{"ThickRing", Circle(50, 50, 20), Pen(39), kPi*(39.5 * 39.5 - 0.5 * 0.5)},
                    AreaCase{"RingWithoutHole", Circle(50, 50, 10), Pen(30), kPi * 25 * 25},
                    AreaCase{"DotRound", Line({{50, 50}, {50, 50}}), Pen(10, Cap::kRound), kPi * 25},
                    AreaCase{"DotSquare", Line({{50, 50}}, true), Pen(10, Cap::kSquare), 100},
                    AreaCase{"DotButt", Line({{50, 50}, {50, 50}}), Pen(10), 0},
                    AreaCase{"PointOnly", Line({{50, 50}}), Pen(10, Cap::kRound), 0}),
    kNameOfRow);

TEST(StrokeTest, MitersEndAtTheirLimit) {
    // The miter of a corner of 30 degrees is 3.86 times as long as the line is wide.
    const double angle = 30.0 * kPi / 180.0;
    const auto path = Line({{80, 50}, {30, 50}, {30 + 50 * std::cos(angle), 50 - 50 * std::sin(angle)}});
    ORVPrintStroke stroke = Pen(6);
    stroke.miterLimit = 4.0;
    const double with = InkOf(path, stroke);
    stroke.miterLimit = 3.8;
    const double without = InkOf(path, stroke);
    stroke.join = Join::kBevel;
    EXPECT_NEAR(InkOf(path, stroke), without, 0.01);
    // The tip of the miter is a triangle on the bevel.
    const double bevel = 6.0 * std::cos(angle / 2.0),
                 height = 3.0 / std::sin(angle / 2.0) - 3.0 * std::sin(angle / 2.0);
    EXPECT_NEAR(with - without, bevel * height / 2.0, 0.3);
}

TEST(StrokeTest, CutMitersEndOnALineAtTheirLimit) {
    const double angle = 30.0 * kPi / 180.0, half = 3.0;
    const auto path = Line({{80, 50}, {30, 50}, {30 + 50 * std::cos(angle), 50 - 50 * std::sin(angle)}});
    ORVPrintStroke stroke = Pen(2.0 * half);
    const double whole = InkOf(path, stroke);
    stroke.join = Join::kMiterClip;
    stroke.miterLimit = 4.0;
    EXPECT_NEAR(InkOf(path, stroke), whole, 0.01);  // the miter is within the limit
    // The part of the tip beyond the limit, itself a triangle, is cut off.
    stroke.miterLimit = 2.0;
    const double beyond = half / std::sin(angle / 2.0) - 2.0 * half;
    EXPECT_NEAR(whole - InkOf(path, stroke), beyond * beyond * std::tan(angle / 2.0), 0.3);
    // The same under a transform that mirrors the line.
    EXPECT_NEAR(InkOf(path, stroke, {-1.0, 0.0, 0.0, 1.0, 100.0, 0.0}), InkOf(path, stroke), 0.2);
}

/// Returns the ink outside the lower right quarter of the page, in pixels.
double InkOutsideQuarter(const ORVPrintPath& path, const ORVPrintStroke& stroke, const ORVMathAffine2D& map) {
    PixelPage page(100.0, 100.0);
    EXPECT_EQ(page.Get().DrawShape({path, map, nullptr, &stroke}), 1);
    page.Finish();
    double ink = 0.0;
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x)
            if (x < 50 || y < 50) ink += page.Ink(x, y) / 255.0;
    return ink;
}

TEST(StrokeTest, ExactEndsArePerpendicularToCurves) {
    constexpr double kWidth = 40.0, kRadius = 25.0, kQuarter = std::numbers::pi * kRadius / 2.0;
    constexpr double k = 0.5522847498 * kRadius;
    ORVPrintPath arc;
    arc.MoveTo({50.0 + kRadius, 50.0});
    arc.CubicTo({50.0 + kRadius, 50.0 + k}, {50.0 + k, 50.0 + kRadius}, {50.0, 50.0 + kRadius});
    ORVPrintStroke stroke = Pen(kWidth);
    EXPECT_GT(InkOutsideQuarter(arc, stroke, {}), 5.0);
    stroke.isExact = true;
    EXPECT_LT(InkOutsideQuarter(arc, stroke, {}), 0.2);

    // A dash from the middle of a curve to the middle of the next one, on a page turned by 45 degrees.
    const double dashes[] = {kQuarter, 3.0 * kQuarter};
    stroke.dashes = dashes;
    stroke.dashOffset = 3.5 * kQuarter;
    const double h = std::sqrt(0.5);
    const ORVMathAffine2D turned{h, h, -h, h, 50.0 - 100.0 * h, 50.0};
    EXPECT_LT(InkOutsideQuarter(Circle(50, 50, kRadius), stroke, turned), 4.0);
    EXPECT_NEAR(InkOf(Circle(50, 50, kRadius), stroke, turned), kWidth * kQuarter, 3.0);
}

TEST(StrokeTest, ExactJoinsFollowTheTangents) {
    // The arc is so tight that its last piece turns by several degrees; the line continues along its tangent.
    constexpr double k = 0.5522847498 * 10.0;
    ORVPrintPath path;
    path.MoveTo({40, 40});
    path.CubicTo({40.0 + k, 40}, {50, 50.0 - k}, {50, 50});
    path.LineTo({50, 90});
    for (const Join join : {Join::kMiter, Join::kRound, Join::kBevel}) {
        ORVPrintStroke stroke = Pen(18, Cap::kButt, join);
        stroke.isExact = true;
        EXPECT_NEAR(InkOf(path, stroke), kPi / 4.0 * (19 * 19 - 1) + 40 * 18, 1.5);
    }
}

TEST(StrokeTest, CrispEdgesHaveNoLevels) {
    for (const bool isCrisp : {false, true}) {
        ORVPrintStroke stroke = Pen(6);
        stroke.isCrisp = isCrisp;
        ORVPrintFill fill;
        fill.isCrisp = isCrisp;
        PixelPage page(100.0, 100.0);
        EXPECT_EQ(page.Get().DrawShape({Line({{10, 20}, {80, 33}}), {}, nullptr, &stroke}), 1);
        EXPECT_EQ(page.Get().DrawShape({Circle(50, 70, 20), {}, &fill, nullptr}), 1);
        page.Finish();
        int levels = 0;
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x) levels += page.Ink(x, y) != 0 && page.Ink(x, y) != 255;
        EXPECT_EQ(levels == 0, isCrisp);
    }
}

TEST(StrokeTest, CrispLinesAreAtLeastAPixelWide) {
    ORVPrintStroke stroke = Pen(0.1);
    stroke.isCrisp = true;
    EXPECT_GE(InkOf(Line({{10, 20}, {80, 33}}), stroke), 69.0);
}

TEST(StrokeTest, MapsSqueezeThePen) {
    // The pen is four times as wide as high: horizontal lines are 2 pixels wide, vertical ones 8.
    const ORVMathAffine2D map{4.0, 0.0, 0.0, 1.0, 0.0, 0.0};
    EXPECT_NEAR(InkOf(Line({{5, 50}, {15, 50}}), Pen(2), map), 40 * 2, 0.3);
    EXPECT_NEAR(InkOf(Line({{10, 20}, {10, 60}}), Pen(2), map), 40 * 8, 0.3);
    EXPECT_NEAR(InkOf(Line({{10, 50}, {10, 50}}), Pen(4, Cap::kRound), map), kPi * 2 * 8, 0.5);
    // This skew preserves areas.
    EXPECT_NEAR(InkOf(Circle(40, 50, 20), Pen(6), {1.0, 0.3, 0.0, 1.0, 0.0, 0.0}), kPi * (23 * 23 - 17 * 17),
                3.0);
}

TEST(StrokeTest, DashesAreMeasuredBeforeTheMap) {
    const double dashes[]{4.0, 6.0};
    ORVPrintStroke stroke = Pen(2);
    stroke.dashes = dashes;
    EXPECT_NEAR(InkOf(Line({{0, 20}, {40, 20}}), stroke, ORVMathAffine2D::Scaling(2.0, 2.0)), 4 * 8 * 4, 0.3);

    PixelPage page(60.0, 40.0);
    EXPECT_EQ(page.Get().DrawShape(
                  {Line({{0, 10}, {25, 10}}), ORVMathAffine2D::Scaling(2.0, 1.0), nullptr, &stroke}),
              1);
    page.Finish();
    for (const int x : {0, 7, 20, 27, 40, 47}) EXPECT_EQ(page.Ink(x, 10), 255) << x;
    for (const int x : {8, 19, 28, 39, 48, 52}) EXPECT_EQ(page.Ink(x, 10), 0) << x;
}

TEST(StrokeTest, DashesGoAroundCorners) {
    const double dashes[]{10.0, 5.0};
    ORVPrintStroke stroke = Pen(2);
    stroke.dashes = dashes;
    PixelPage page(40.0, 40.0);
    EXPECT_EQ(page.Get().DrawShape({Line({{10, 10}, {30, 10}, {30, 30}}), {}, nullptr, &stroke}), 1);
    page.Finish();
    EXPECT_EQ(page.Ink(19, 10), 255);
    EXPECT_EQ(page.Ink(22, 10), 0);
    EXPECT_EQ(page.Ink(30, 9), 255);   // the miter of the corner within the second dash
    EXPECT_EQ(page.Ink(30, 14), 255);  // the second dash ends 25 along the line
    EXPECT_EQ(page.Ink(30, 17), 0);
    EXPECT_EQ(page.Ink(30, 22), 255);
}

TEST(StrokeTest, DashesOfClosedLinesMeet) {
    // The perimeter is 80, so the path ends within a dash, which continues as the first one, with a join.
    const double dashes[]{10.0, 5.0};
    ORVPrintStroke stroke = Pen(4);
    stroke.dashes = dashes;
    PixelPage page(40.0, 40.0);
    EXPECT_EQ(
        page.Get().DrawShape({Line({{10, 10}, {30, 10}, {30, 30}, {10, 30}}, true), {}, nullptr, &stroke}),
        1);
    page.Finish();
    EXPECT_EQ(page.Ink(8, 8), 255);
    // A single dash covers all of it, like a solid line.
    const double longDashes[]{1000.0, 5.0};
    stroke.dashes = longDashes;
    EXPECT_NEAR(InkOf(Line({{10, 10}, {30, 10}, {30, 30}, {10, 30}}, true), stroke), 80 * 4, 0.3);
}

TEST(StrokeTest, DashesWithoutLengthAreDots) {
    const double dashes[]{0.0, 10.0};
    ORVPrintStroke stroke = Pen(4, Cap::kRound);
    stroke.dashes = dashes;
    EXPECT_NEAR(InkOf(Line({{10, 20}, {45, 20}}), stroke), 4 * kPi * 4, 0.8);
    stroke.cap = Cap::kButt;
    EXPECT_EQ(InkOf(Line({{10, 20}, {45, 20}}), stroke), 0.0);
}

TEST(StrokeTest, MillionsOfDashesAreBounded) {
    const double fine[]{1e-9, 1e-9}, small[]{0.1, 0.1};
    ORVPrintStroke stroke = Pen(2);
    stroke.dashes = fine;  // too fine to be visible: solid
    EXPECT_NEAR(InkOf(Line({{10, 20}, {50, 20}}), stroke), 80, 0.3);
    stroke.dashes = small;  // only dashes on the page are made
    EXPECT_NEAR(InkOf(Line({{-1e6, 20}, {1e6, 20}}), stroke), 100, 2.0);
    EXPECT_GT(InkOf(Line({{-1e12, 20}, {1e12, 20}}), stroke), 50.0);
}

TEST(StrokeTest, GapsThatCapsCoverAreNotSeen) {
    const auto straight = Line({{10, 50}, {88, 50}});
    const auto inkOf = [&](const ORVPrintPath& path, Cap cap, Join join, std::span<const double> dashes) {
        ORVPrintStroke stroke = Pen(20, cap, join);
        stroke.dashes = dashes;
        return InkOf(path, stroke);
    };
    const double fine[]{0.3, 0.5}, wide[]{4.0, 4.0}, wider[]{4.0, 12.0}, longGaps[]{3.0, 37.0};
    EXPECT_NEAR(inkOf(straight, Cap::kRound, Join::kMiter, fine),
                inkOf(Line({{10, 50}, {87.9, 50}}), Cap::kRound, Join::kMiter, {}), 0.1);
    EXPECT_NEAR(inkOf(straight, Cap::kSquare, Join::kMiter, wide),
                inkOf(Line({{10, 50}, {86, 50}}), Cap::kSquare, Join::kMiter, {}), 0.1);
    // Visible gaps remain: between round caps, between dashes whose caps do not meet, and without caps.
    EXPECT_LT(inkOf(straight, Cap::kRound, Join::kMiter, wider),
              inkOf(Line({{10, 50}, {78, 50}}), Cap::kRound, Join::kMiter, {}) - 5.0);
    EXPECT_NEAR(inkOf(straight, Cap::kSquare, Join::kMiter, longGaps), 2 * 23 * 20, 1.0);
    EXPECT_NEAR(inkOf(straight, Cap::kButt, Join::kMiter, wide), 10 * 4 * 20, 1.0);
    // A corner in a gap has no miter.
    const double toCorner[]{28.0, 4.0};
    const auto corner = Line({{60, 90}, {60, 60}, {90, 60}});
    EXPECT_LT(inkOf(corner, Cap::kSquare, Join::kRound, toCorner),
              inkOf(corner, Cap::kSquare, Join::kMiter, {}));
}

TEST(StrokeTest, DashesOfWideLinesAreCutWhereTheyShow) {
    // A line far wider than the page: each dash is a strip across the page.
    const double dashes[]{10.0, 10.0};
    ORVPrintStroke stroke = Pen(4000);
    stroke.dashes = dashes;
    EXPECT_NEAR(InkOf(Line({{50, -5000}, {50, 5000}}), stroke), 50 * 100, 1.0);
    EXPECT_NEAR(InkOf(Line({{-5000, -5000}, {5000, 5000}}), stroke), 50 * 100, 300.0);
}

TEST(StrokeTest, SquareCapsReachTheirCorners) {
    // A cap's corner is farther from the end than half the width. Bands that only it touches must show it.
    std::vector<std::uint8_t> expected;
    for (const int rows : {100, 1}) {
        ORVRasterOptions options;
        options.bandRows = rows;
        PixelPage page(100.0, 100.0, options);
        ORVPrintStroke stroke = Pen(40, Cap::kSquare, Join::kBevel);
        EXPECT_EQ(page.Get().DrawShape({Line({{50, 50}, {51, 51}}), {}, nullptr, &stroke}), 1);
        const auto& pixels = page.Finish();
        if (expected.empty()) expected = pixels.bytes;
        EXPECT_GT(page.Ink(50, 23), 100) << rows;  // 28.3 above the end
        EXPECT_GT(page.Ink(51, 77), 100) << rows;
        EXPECT_EQ(pixels.bytes, expected) << rows;
    }
}

TEST(StrokeTest, ThinLinesStayVisible) {
    for (const double width : {0.4, 0.1, 0.02}) {
        PixelPage page(40.0, 40.0);
        const ORVPrintStroke stroke = Pen(width);
        EXPECT_EQ(page.Get().DrawShape({Line({{5, 5}, {35, 30}}), {}, nullptr, &stroke}), 1);
        page.Finish();
        const double length = std::hypot(30.0, 25.0);
        EXPECT_NEAR(page.TotalInk(), length * std::max(width, 0.25), 0.5) << width;
    }
    // A width of practically zero gives a line of one pixel.
    EXPECT_NEAR(InkOf(Line({{10, 20}, {50, 20}}), Pen(1e-9)), 40.0, 0.3);
    EXPECT_NEAR(InkOf(Line({{10, 20}, {50, 20}}), Pen(1e-300)), 40.0, 0.3);
}

TEST(StrokeTest, ExactThinLinesAreAsLightAsTheirWidth) {
    for (const double width : {0.4, 0.1, 0.05}) {
        PixelPage page(40.0, 40.0);
        ORVPrintStroke stroke = Pen(width);
        stroke.isExact = true;
        EXPECT_EQ(page.Get().DrawShape({Line({{5, 5}, {35, 30}}), {}, nullptr, &stroke}), 1);
        page.Finish();
        const double length = std::hypot(30.0, 25.0);
        EXPECT_NEAR(page.TotalInk(), length * width, 0.5) << width;
    }
    ORVPrintStroke stroke = Pen(1e-9);
    stroke.isExact = true;
    EXPECT_LT(InkOf(Line({{10, 20}, {50, 20}}), stroke), 1.0);
}

TEST(StrokeTest, ThinLinesInBlackAndWhiteDoNotBreak) {
    ORVRasterOptions options;
    options.colourMode = ORVColourMode::kMono;
    for (int degrees = 0; degrees < 45; degrees += 3) {
        PixelPage page(100.0, 100.0, options);
        const ORVPrintStroke stroke = Pen(0.01);
        const double slope = std::tan(degrees * kPi / 180.0);
        EXPECT_EQ(page.Get().DrawShape({Line({{2, 5.37}, {98, 5.37 + 96 * slope}}), {}, nullptr, &stroke}),
                  1);
        const auto& pixels = page.Finish();
        for (int x = 3; x < 97; ++x) {
            if (5.37 + (x - 2) * slope > 98.0) break;
            bool found = false;
            for (std::size_t y = 0; y < 100; ++y)
                found = found ||
                        (pixels.bytes[y * pixels.rowBytes + static_cast<std::size_t>(x) / 8] >> (7 - x % 8) &
                         1) != 0;
            EXPECT_TRUE(found) << degrees << " degrees, column " << x;
        }
    }
}

TEST(StrokeTest, HugeNumbersDoNoHarm) {
    const double huge = std::numeric_limits<double>::max();
    const double dashes[]{huge, 1.0}, tiny[]{1e-300, 1e-300};
    for (const double width : {1e-300, 1.0, 1e9, huge})
        for (const double scale : {1e-20, 1.0, 1e20})
            for (const std::span<const double> pattern :
                 {std::span<const double>(), std::span<const double>(dashes),
                  std::span<const double>(tiny)}) {
                ORVPrintStroke stroke = Pen(width, Cap::kRound, Join::kRound);
                stroke.miterLimit = huge;
                stroke.dashes = pattern;
                InkOf(Line({{-huge, 3}, {huge, 50}, {7, huge}}, true), stroke,
                      ORVMathAffine2D::Scaling(scale, 1.0));
                stroke.join = Join::kMiter;
                InkOf(Circle(1e200, 1e200, 1e200), stroke, ORVMathAffine2D::Scaling(1.0, scale));
            }
    // A practically endless line across the page is drawn.
    EXPECT_NEAR(InkOf(Line({{-1e12, 50}, {1e12, 50}}), Pen(10)), 1000, 1.0);
}

/// Returns the same outline with many points added to each line, so that it is drawn in pieces.
ORVPrintPath WithPointsBetween(std::span<const ORVMathPoint2D> corners, bool closed, int pieces) {
    ORVPrintPath path;
    path.MoveTo(corners[0]);
    const std::size_t lines = closed ? corners.size() : corners.size() - 1;
    for (std::size_t i = 0; i < lines; ++i) {
        const ORVMathPoint2D &a = corners[i], &b = corners[(i + 1) % corners.size()];
        for (int k = 1; k <= pieces; ++k)
            path.LineTo({a.x + (b.x - a.x) * k / pieces, a.y + (b.y - a.y) * k / pieces});
    }
    if (closed) path.Close();
    return path;
}

struct LongDashCase {
    const char* name;
    Cap cap;
    Join join;
    std::vector<double> dashes;
    bool closed;
};
class LongDashedLineTest : public testing::TestWithParam<LongDashCase> {};
TEST_P(LongDashedLineTest, LooksLikeItsCorners) {
    const LongDashCase& row = GetParam();
    const ORVMathPoint2D corners[]{{20.3, 15.2}, {170.1, 30.7}, {150.4, 171.9}, {31.6, 140.2}};
    ORVPrintStroke stroke = Pen(2.5, row.cap, row.join);
    stroke.dashes = row.dashes;
    std::vector<std::uint8_t> expected;
    for (const int pieces : {1, 40}) {
        PixelPage page(200.0, 200.0);
        const ORVPrintPath path = WithPointsBetween(corners, row.closed, pieces);
        EXPECT_EQ(page.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
        const auto& pixels = page.Finish();
        EXPECT_GT(page.TotalInk(), 100.0);
        if (expected.empty()) expected = pixels.bytes;
        ASSERT_EQ(pixels.bytes.size(), expected.size());
        int most = 0;
        for (std::size_t i = 0; i < expected.size(); ++i)
            most = std::max(most, std::abs(pixels.bytes[i] - expected[i]));
        EXPECT_LE(most, 6) << pieces;  // the added points are rounded
    }
}
INSTANTIATE_TEST_SUITE_P(
    Stroke, LongDashedLineTest,
    testing::Values(LongDashCase{"Butt", Cap::kButt, Join::kMiter, {11, 7}, false},
                    LongDashCase{"Square", Cap::kSquare, Join::kBevel, {11, 17}, false},
                    LongDashCase{"Round", Cap::kRound, Join::kRound, {11, 17}, false},
                    LongDashCase{"Dots", Cap::kRound, Join::kMiter, {0, 13}, false},
                    LongDashCase{"LongDashes", Cap::kButt, Join::kMiter, {250, 31}, false},
                    LongDashCase{"HiddenGaps", Cap::kRound, Join::kRound, {5, 0.3}, false},
                    LongDashCase{"ClosedInAGap", Cap::kButt, Join::kMiter, {11, 7}, true},
                    // The last dash continues as the first one, around a corner.
                    LongDashCase{"ClosedInADash", Cap::kButt, Join::kMiter, {100, 7}, true},
                    LongDashCase{"ClosedRound", Cap::kRound, Join::kMiter, {60, 13}, true},
                    LongDashCase{"ClosedInOneDash", Cap::kButt, Join::kMiter, {10000, 1}, true}),
    kNameOfRow);

TEST(StrokeTest, LongDashedLinesAreNotCutAnewForEachBand) {
    // A zigzag line, drawn row by row. Cutting all of it into dashes for each row would exceed the limit.
    ORVRasterOptions options;
    options.bandRows = 1;
    options.paintLimit = 100'000'000;
    PixelSink::Pixels pixels;
    ORVRasterGenerator generator(std::make_unique<PixelSink>(pixels), options);
    ASSERT_EQ(generator.BeginDocument({"", 1}), 1);
    ASSERT_EQ(generator.BeginPage(PageInfo(20.0, 3000.0)), 1);
    ORVPrintPath path;
    path.MoveTo({10.0, 0.0});
    for (int i = 1; i <= 10'000; ++i) path.LineTo({i % 2 == 0 ? 10.0 : 10.5, i * 0.3});
    const double dashes[]{3.0, 2.0};
    ORVPrintStroke stroke = Pen(1);
    stroke.dashes = dashes;
    EXPECT_EQ(generator.DrawShape({path, {}, nullptr, &stroke}), 1);
    EXPECT_EQ(generator.EndPage(), 1) << generator.GetError();
}

TEST(StrokeTest, LongLinesAreDrawnInPiecesWithoutSeams) {
    // More corners than a piece has. The height of the bands must not matter.
    std::vector<std::uint8_t> expected;
    for (const int rows : {200, 1, 16}) {
        ORVRasterOptions options;
        options.bandRows = rows;
        PixelPage page(200.0, 200.0, options);
        ORVPrintPath path;
        path.MoveTo({100, 100});
        for (int i = 1; i < 400; ++i) {
            const ORVMathPoint2D p{100 + i * 0.23 * std::cos(i * 0.7), 100 + i * 0.23 * std::sin(i * 0.7)};
            if (i % 5 == 0)
                path.CubicTo({p.x + 9, p.y}, {p.x, p.y + 9}, p);
            else
                path.LineTo(p);
        }
        path.Close();
        const double dashes[]{3.0, 2.0};
        ORVPrintStroke stroke = Pen(1.3, Cap::kRound, Join::kRound);
        stroke.colour = {200, 100, 0, 180};
        EXPECT_EQ(page.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
        stroke.dashes = dashes;
        stroke.join = Join::kMiter;
        EXPECT_EQ(page.Get().DrawShape({path, {0.9, 0.2, 0.1, 0.7, 3.0, 9.0}, nullptr, &stroke}), 1);
        const auto& pixels = page.Finish();
        if (expected.empty()) expected = pixels.bytes;
        EXPECT_GT(page.TotalInk(), 100.0);
        EXPECT_EQ(pixels.bytes, expected) << rows;
    }
}

}  // namespace
