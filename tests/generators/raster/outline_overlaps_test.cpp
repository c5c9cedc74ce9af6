// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/outline_overlaps.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "generators/raster/outline_collector.h"
#include "tests/support/named_rows.h"

namespace {

using Cap = ORVPrintStroke::Cap;
using Join = ORVPrintStroke::Join;

/// A path of straight lines.
ORVPrintPath PathOf(const std::vector<std::vector<ORVMathPoint2D>>& contours, bool closed) {
    ORVPrintPath path;
    for (const auto& points : contours) {
        path.MoveTo(points.front());
        for (std::size_t i = 1; i < points.size(); ++i) path.LineTo(points[i]);
        if (closed) path.Close();
    }
    return path;
}

struct Outline {
    explicit Outline(const ORVPrintPath& path) : collector(arena) {
        RasterExtent extent;
        collector.Make(path, {}, PathUse::kStroke, geometry, extent);
    }
    RasterArena arena;
    OutlineCollector collector;
    RasterGeometry geometry;
};

struct FillCase {
    const char* name;
    std::vector<std::vector<ORVMathPoint2D>> contours;
    bool repeats;
};
class RepeatedEdgesTest : public testing::TestWithParam<FillCase> {};
TEST_P(RepeatedEdgesTest, AreThoseWithTheSameEndsInTheSameDirection) {
    const Outline outline(PathOf(GetParam().contours, true));
    SeenEdges seen;
    EXPECT_EQ(ORVRepeatsEdges(outline.geometry, seen), GetParam().repeats);
    EXPECT_EQ(ORVRepeatsEdges(outline.geometry, seen), GetParam().repeats);  // with memory in use
}
INSTANTIATE_TEST_SUITE_P(
    Fills, RepeatedEdgesTest,
    testing::Values(FillCase{"One", {{{0, 0}, {9, 0}, {9, 9}}}, false},
                    FillCase{"Apart", {{{0, 0}, {9, 0}, {9, 9}}, {{20, 0}, {29, 0}, {29, 9}}}, false},
                    FillCase{"Twice", {{{0, 0}, {9, 0}, {9, 9}}, {{0, 0}, {9, 0}, {9, 9}}}, true},
                    FillCase{"OppositeWindings", {{{0, 0}, {9, 0}, {9, 9}}, {{9, 0}, {9, 9}, {20, 0}}}, true},
                    FillCase{"SameWindings", {{{0, 0}, {9, 0}, {9, 9}}, {{9, 9}, {9, 0}, {20, 0}}}, false},
                    FillCase{"ByTheClosingLine", {{{9, 9}, {0, 0}, {9, 0}}, {{9, 0}, {9, 9}, {20, 0}}}, true},
                    FillCase{"OnlyACorner", {{{0, 0}, {9, 0}, {9, 9}}, {{9, 9}, {20, 9}, {20, 20}}}, false}),
    kNameOfRow);

TEST(RepeatedEdgesTest, ManyVerbsAreNotSearched) {
    std::vector<ORVMathPoint2D> many;
    for (std::uint32_t i = 0; i < kMostOverlapVerbs / 2 - 1; ++i)
        many.push_back({static_cast<double>(i), static_cast<double>(i % 2)});
    SeenEdges seen;
    EXPECT_TRUE(ORVRepeatsEdges(Outline(PathOf({many, many}, true)).geometry, seen));
    many.push_back({1e4, 0});
    many.push_back({1e4, 1});
    EXPECT_FALSE(ORVRepeatsEdges(Outline(PathOf({many, many}, true)).geometry, seen));
}

struct StrokeCase {
    const char* name;
    std::vector<ORVMathPoint2D> points;
    bool closed;
    double width;
    bool turnsBack;
};
class TurnsBackTest : public testing::TestWithParam<StrokeCase> {};
TEST_P(TurnsBackTest, IsALineCloseBesideItself) {
    const StrokeCase& row = GetParam();
    const Outline outline(PathOf({row.points}, row.closed));
    ORVPrintStroke stroke;
    stroke.width = row.width;
    stroke.isExact = true;
    std::vector<double> ends;
    EXPECT_EQ(ORVTurnsBack(outline.geometry, ORVMakePen(stroke, {}, 0.0, ends)), row.turnsBack);
    const std::vector<double> dashes{5.0, 5.0};
    stroke.dashes = dashes;
    EXPECT_FALSE(ORVTurnsBack(outline.geometry, ORVMakePen(stroke, {}, 0.0, ends)));
}
INSTANTIATE_TEST_SUITE_P(
    Strokes, TurnsBackTest,
    testing::Values(StrokeCase{"Straight", {{0, 0}, {90, 0}, {190, 0}}, false, 1, false},
                    StrokeCase{"Corner", {{0, 0}, {90, 0}, {0, 40}}, false, 1, false},
                    StrokeCase{"SharpCorner", {{0, 0}, {90, 0}, {0, 20}}, false, 1, false},
                    StrokeCase{"VerySharpCorner", {{0, 0}, {90, 0}, {0, 0.5}}, false, 1, true},
                    StrokeCase{"OfAThinPen", {{0, 0}, {90, 0}, {0, 0.5}}, false, 0.25, false},
                    StrokeCase{"ShortWayBack", {{0, 0}, {400, 0}, {390, 0}, {800, 0}}, false, 1, false},
                    StrokeCase{"LongWayBack", {{0, 0}, {400, 0}, {300, 0}, {800, 0}}, false, 1, true},
                    StrokeCase{"BackOnItself", {{0, 0}, {90, 0}, {10, 0}}, false, 1, true},
                    StrokeCase{"ThinBox", {{0, 0}, {90, 0}, {90, 0.5}, {0, 0.5}}, true, 1, true},
                    StrokeCase{"ThickBox", {{0, 0}, {90, 0}, {90, 1.5}, {0, 1.5}}, true, 1, false},
                    StrokeCase{"ByTheClosingLine", {{0, 0}, {90, 0}, {90, 90}, {60, 0}}, true, 1, true},
                    StrokeCase{"OpenThere", {{0, 0}, {90, 0}, {90, 90}, {60, 0}}, false, 1, false},
                    // Drawn once by the outliner.
                    StrokeCase{"ThereAndBack", {{0, 0}, {90, 0}}, true, 1, false},
                    StrokeCase{"OverThreePoints", {{0, 0}, {90, 0}, {40, 0}}, true, 1, true},
                    StrokeCase{"TallEnough", {{0, 0}, {0, 32000}, {0, 0}}, false, 1, true},
                    StrokeCase{"TooTall", {{0, 0}, {0, 33000}, {0, 0}}, false, 1, false},
                    StrokeCase{"OnlyShortPieces", {{0, 0}, {2, 0}, {0, 0}, {2, 0}}, false, 5, false}),
    kNameOfRow);

/// Whether a line turns back that begins at the origin with a curve and goes on to these points.
bool CurveTurnsBack(const ORVMathPoint2D& control1, const ORVMathPoint2D& control2, const ORVMathPoint2D& end,
                    bool closed) {
    ORVPrintPath path;
    path.MoveTo({0.0, 0.0});
    path.CubicTo(control1, control2, end);
    if (closed) path.Close();
    const Outline outline(path);
    ORVPrintStroke stroke;
    std::vector<double> ends;
    return ORVTurnsBack(outline.geometry, ORVMakePen(stroke, {}, 0.0, ends));
}

TEST(TurnsBackTest, CurvesDoSoAtTheirEnds) {
    EXPECT_TRUE(CurveTurnsBack({30, 0}, {60, 0}, {90, 0}, true));
    EXPECT_FALSE(CurveTurnsBack({30, 0}, {60, 0}, {90, 0}, false));
    // A bay, and a half circle with its diameter.
    EXPECT_FALSE(CurveTurnsBack({0, 60}, {20, 60}, {20, 0}, false));
    EXPECT_FALSE(CurveTurnsBack({0, 60}, {90, 60}, {90, 0}, true));
}

}  // namespace
