// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <initializer_list>
#include <numbers>
#include <vector>

#include "tests/generators/raster/pixel_page.h"

// Outlines that are painted exactly where their parts overlap.

namespace {

using Cap = ORVPrintStroke::Cap;
using Join = ORVPrintStroke::Join;

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

ORVPrintStroke Pen(double width, Cap cap = Cap::kButt, Join join = Join::kMiter) {
    ORVPrintStroke stroke;
    stroke.width = width;
    stroke.cap = cap;
    stroke.join = join;
    return stroke;
}

double InkOf(const ORVPrintPath& path, const ORVPrintStroke& stroke) {
    PixelPage page(100.0, 100.0);
    EXPECT_EQ(page.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
    page.Finish();
    return page.TotalInk();
}

/// Ink of each pixel of a row.
std::vector<int> RowOf(const ORVPrintPath& path, const ORVPrintFill* fill, const ORVPrintStroke* stroke,
                       int y) {
    PixelPage page(100.0, 100.0);
    EXPECT_EQ(page.Get().DrawShape({path, {}, fill, stroke}), 1);
    page.Finish();
    std::vector<int> row;
    row.reserve(100);
    for (int x = 0; x < 100; ++x) row.push_back(page.Ink(x, y));
    return row;
}

TEST(ExactStrokeTest, ALineThereAndBackIsThatLine) {
    const auto once = Line({{50.3, 10.0}, {50.3, 90.0}});
    for (const ORVPrintPath& path :
         {Line({{50.3, 10.0}, {50.3, 90.0}}, true), Line({{50.3, 10.0}, {50.3, 90.0}, {50.3, 10.0}}),
          Line({{50.3, 10.0}, {50.3, 90.0}, {50.3, 40.0}}, true)}) {
        ORVPrintStroke stroke = Pen(1.0);
        const std::vector<int> line = RowOf(once, nullptr, &stroke, 50);
        EXPECT_NE(RowOf(path, nullptr, &stroke, 50), line);
        stroke.isExact = true;
        EXPECT_EQ(RowOf(path, nullptr, &stroke, 50), line);
    }
}

TEST(ExactStrokeTest, TheJoinsOfALineThereAndBackLookLikeCaps) {
    ORVPrintStroke stroke = Pen(10.0, Cap::kSquare, Join::kRound);
    stroke.isExact = true;
    const auto line = Line({{30.0, 50.0}, {60.0, 50.0}}, true);
    EXPECT_NEAR(InkOf(line, stroke), 300 + 25 * std::numbers::pi, 1.0);
    stroke.join = Join::kMiter;
    EXPECT_NEAR(InkOf(line, stroke), 300, 0.5);
}

TEST(ExactFillTest, NoLineShowsWherePartsOfOppositeWindingMeet) {
    ORVPrintPath path = Line({{10.5, 10.0}, {50.5, 10.0}, {50.5, 90.0}, {10.5, 90.0}}, true);
    const ORVPrintPath other = Line({{50.5, 10.0}, {50.5, 90.0}, {90.5, 90.0}, {90.5, 10.0}}, true);
    path.points.insert(path.points.end(), other.points.begin(), other.points.end());
    path.verbs.insert(path.verbs.end(), other.verbs.begin(), other.verbs.end());
    for (const bool evenOdd : {false, true}) {
        ORVPrintFill fill;
        fill.evenOdd = evenOdd;
        EXPECT_EQ(RowOf(path, &fill, nullptr, 50)[50], 0);
        fill.isExact = true;
        const std::vector<int> row = RowOf(path, &fill, nullptr, 50);
        EXPECT_EQ(row[50], 255);
        EXPECT_EQ(row[10], 128);
        EXPECT_EQ(row[90], 128);
        EXPECT_EQ(row[91], 0);
    }
}

/// Parts beside each other, and on top of each other, of a page in one band or in many.
TEST(ExactFillTest, PartsOfTheBandAreThoseOfThePage) {
    ORVPrintPath path = Line({{-20.0, 5.5}, {60.25, 5.5}, {60.25, 95.5}, {-20.0, 95.5}}, true);
    for (const ORVPrintPath& other :
         {Line({{60.25, 5.5}, {60.25, 95.5}, {130.0, 95.5}, {130.0, 5.5}}, true),
          Line({{-20.0, 5.5}, {60.25, 5.5}, {60.25, 95.5}, {-20.0, 95.5}}, true)}) {
        path.points.insert(path.points.end(), other.points.begin(), other.points.end());
        path.verbs.insert(path.verbs.end(), other.verbs.begin(), other.verbs.end());
    }
    ORVPrintFill fill;
    fill.isExact = true;
    for (const int y : {5, 50, 95}) {
        const std::vector<int> row = RowOf(path, &fill, nullptr, y);
        for (int x = 0; x < 100; ++x)
            EXPECT_EQ(row[static_cast<std::size_t>(x)], y == 50 ? 255 : 128) << x << "," << y;
    }
}

}  // namespace
