// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/mathematics/constants.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/support/named_rows.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Box {
    int status = 0;
    double xMin = -7.0, xMax = -7.0, yMin = -7.0, yMax = -7.0;
};

Box BoxOf(const ORVRef<ORVPrtGraphicPrimitiveElt>& primitive) {
    Box box;
    ORVPrintModelBoundingBoxComputer computer;
    box.status = computer.Compute(*primitive, box.xMin, box.xMax, box.yMin, box.yMax);
    return box;
}

void ExpectBox(const ORVRef<ORVPrtGraphicPrimitiveElt>& primitive, double xMin, double xMax, double yMin,
               double yMax) {
    const Box box = BoxOf(primitive);
    EXPECT_EQ(box.status, 1);
    EXPECT_NEAR(box.xMin, xMin, 1e-9);
    EXPECT_NEAR(box.xMax, xMax, 1e-9);
    EXPECT_NEAR(box.yMin, yMin, 1e-9);
    EXPECT_NEAR(box.yMax, yMax, 1e-9);
}

void ExpectNoBox(const ORVRef<ORVPrtGraphicPrimitiveElt>& primitive) {
    const Box box = BoxOf(primitive);
    EXPECT_EQ(box.status, 0);
    for (const double side : {box.xMin, box.xMax, box.yMin, box.yMax}) EXPECT_EQ(side, 0.0);
}

TEST(BoundingBoxTest, RectangleCountsBothCornersInAnyOrder) {
    ExpectBox(MakeRectangle(10.0, 2.0, -5.0, 8.0), -5.0, 10.0, 2.0, 8.0);
}

TEST(BoundingBoxTest, StrokeWidthDoesNotCount) {
    const auto line = MakeLine(0.0, 0.0, 10.0, 0.0);
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeWidth(100.0);
    line->SetStrokeAttributes(stroke);
    ExpectBox(line, 0.0, 10.0, 0.0, 0.0);
}

TEST(BoundingBoxTest, HiddenAndDegeneratePrimitivesHaveBoxes) {
    const auto hidden = MakeRectangle(1.0, 1.0, 2.0, 2.0);
    hidden->SetDrawStyle(kDrawNothing);
    ExpectBox(hidden, 1.0, 2.0, 1.0, 2.0);
    ExpectBox(MakeCircle(3.0, 4.0, 0.0), 3.0, 3.0, 4.0, 4.0);
}

TEST(BoundingBoxTest, NegativeRadiusReachesAsFar) {
    ExpectBox(MakeCircle(0.0, 0.0, -5.0), -5.0, 5.0, -5.0, 5.0);
}

TEST(BoundingBoxTest, NothingHasNoBox) {
    ExpectNoBox(Make<ORVPrtPolylineElt>());
    ExpectNoBox(Make<ORVPrtGroupElt>());
    ExpectNoBox(MakeContainer<ORVPrtPatternElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)}));
}

TEST(BoundingBoxTest, PointsThatAreNotFiniteAreLeftOut) {
    ExpectBox(MakePoints<ORVPrtPolygonElt>({{1.0, 1.0}, {kInfinity, 5.0}, {2.0, std::nan("")}, {3.0, 4.0}}),
              1.0, 3.0, 1.0, 4.0);
    ExpectNoBox(MakeCircle(0.0, kInfinity, 1.0));
    ExpectNoBox(MakeCircle(0.0, 0.0, std::nan("")));
}

TEST(BoundingBoxTest, EllipseIsExactWhenTurned) {
    const auto ellipse = Make<ORVPrtEllipseElt>();
    ellipse->SetHorzRadius(2.0);
    ellipse->SetVertRadius(1.0);
    ellipse->SetSlope(static_cast<float>(ORVPI / 4.0));
    const double half = std::sqrt(2.5);
    const Box box = BoxOf(ellipse);
    EXPECT_NEAR(box.xMax, half, 1e-7);
    EXPECT_NEAR(box.yMin, -half, 1e-7);
}

TEST(BoundingBoxTest, CircleIsExactUnderSkew) {
    const auto circle = MakeCircle(0.0, 0.0, 1.0);
    circle->SetTransformAttributes(Matrix(1.0, 1.0, 0.0, 1.0));
    ExpectBox(circle, -std::sqrt(2.0), std::sqrt(2.0), -1.0, 1.0);
}

struct ArcCase {
    const char* name;
    double start, end;
    double xMin, xMax, yMin, yMax;  // for an arc of the unit circle
};
class ArcBoxTest : public testing::TestWithParam<ArcCase> {};
TEST_P(ArcBoxTest, CoversWhatIsSwept) {
    const ArcCase& row = GetParam();
    const Box box = BoxOf(MakeArc(0.0, 0.0, 1.0, 1.0, row.start, row.end));
    EXPECT_NEAR(box.xMin, row.xMin, 1e-6);
    EXPECT_NEAR(box.xMax, row.xMax, 1e-6);
    EXPECT_NEAR(box.yMin, row.yMin, 1e-6);
    EXPECT_NEAR(box.yMax, row.yMax, 1e-6);
}
INSTANTIATE_TEST_SUITE_P(
    Arc, ArcBoxTest,
    testing::Values(ArcCase{"QuarterHasNoExtremumInside", 0.0, ORVPI / 2.0, 0.0, 1.0, 0.0, 1.0},
                    ArcCase{"HalfOverTheTop", 0.0, ORVPI, -1.0, 1.0, 0.0, 1.0},
                    ArcCase{"DownwardsTheSameHalf", ORVPI, 0.0, -1.0, 1.0, 0.0, 1.0},
                    ArcCase{"AcrossZero", -ORVPI / 2.0, ORVPI / 2.0, 0.0, 1.0, -1.0, 1.0},
                    ArcCase{"DownwardsFromTwoPi", 2.5 * ORVPI, ORVPI, -1.0, 1.0, -1.0, 1.0},
                    ArcCase{"MoreThanATurn", 0.0, 20.0, -1.0, 1.0, -1.0, 1.0},
                    ArcCase{"NoSweepIsAPoint", ORVPI, ORVPI, -1.0, -1.0, 0.0, 0.0}),
    kNameOfRow);

TEST(BoundingBoxTest, EnormousAnglesEnd) {
    EXPECT_EQ(BoxOf(MakeArc(0.0, 0.0, 1.0, 1.0, 1e30, 1e30)).status, 1);
}

TEST(BoundingBoxTest, CubicReachesItsExtremaNotItsControls) {
    // y = 3 t (1 - t)^2 * 4 + 3 t^2 (1 - t) * 4 = 12 t (1 - t), at most 3.
    ExpectBox(MakePoints<ORVPrtPolyCubicBezierElt>({{0.0, 0.0}, {0.0, 4.0}, {6.0, 4.0}, {6.0, 0.0}}), 0.0,
              6.0, 0.0, 3.0);
}

TEST(BoundingBoxTest, CubicThatIsAStraightLineOrAParabolaIsExact) {
    ExpectBox(MakePoints<ORVPrtPolyCubicBezierElt>({{0.0, 0.0}, {1.0, 1.0}, {2.0, 2.0}, {3.0, 3.0}}), 0.0,
              3.0, 0.0, 3.0);
    // A parabola with its vertex at (1, 1), as a cubic.
    ExpectBox(MakePoints<ORVPrtPolyCubicBezierElt>(
                  {{0.0, 0.0}, {2.0 / 3.0, 4.0 / 3.0}, {4.0 / 3.0, 4.0 / 3.0}, {2.0, 0.0}}),
              0.0, 2.0, 0.0, 1.0);
}

TEST(BoundingBoxTest, QuadraticReachesItsExtremaNotItsControl) {
    ExpectBox(MakePoints<ORVPrtPolyQuadraticBezierElt>({{0.0, 0.0}, {1.0, 2.0}, {2.0, 0.0}}), 0.0, 2.0, 0.0,
              1.0);
}

TEST(BoundingBoxTest, CurvesAreExactThroughTransforms) {
    const auto curve = MakePoints<ORVPrtPolyQuadraticBezierElt>({{0.0, 0.0}, {1.0, 2.0}, {2.0, 0.0}});
    curve->SetTransformAttributes(Matrix(0.0, -1.0, 1.0, 0.0));  // a quarter turn
    ExpectBox(curve, -1.0, 0.0, 0.0, 2.0);
}

TEST(BoundingBoxTest, TransformsOfContainersMultiply) {
    const auto inner = MakeContainer<ORVPrtSymbolElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)});
    inner->SetTransformAttributes(Translation(10.0, 0.0));
    const auto outer = MakeContainer<ORVPrtGroupElt>({inner});
    outer->SetTransformAttributes(Matrix(2.0, 0.0, 0.0, 3.0));
    ExpectBox(outer, 20.0, 22.0, 0.0, 3.0);
}

TEST(BoundingBoxTest, ChildrenAloneLeaveTheContainersTransformOut) {
    const auto group = MakeContainer<ORVPrtGroupElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)});
    group->SetTransformAttributes(Translation(10.0, 0.0));
    Box box;
    ORVPrintModelBoundingBoxComputer computer;
    EXPECT_EQ(computer.ComputeChildren(*group, box.xMin, box.xMax, box.yMin, box.yMax), 1);
    EXPECT_EQ(box.xMin, 0.0);
    EXPECT_EQ(box.xMax, 1.0);
}

TEST(BoundingBoxTest, ClosedFigureCountsItsRegions) {
    const auto region =
        MakeContainer<ORVPrtClosedFigureRegionElt>({MakePoints<ORVPrtPolylineElt>({{1.0, 1.0}, {4.0, 5.0}})});
    ExpectBox(MakeContainer<ORVPrtClosedFigureElt>({region}), 1.0, 4.0, 1.0, 5.0);
}

TEST(BoundingBoxTest, BitmapIsItsBox) {
    const auto bitmap = Make<ORVPrtBitmapImageElt>();
    bitmap->SetOrigin({5.0, 6.0});
    bitmap->SetSize(10.0, 20.0);
    ExpectBox(bitmap, 5.0, 15.0, 6.0, 26.0);
}

TEST(BoundingBoxTest, TextIsMeasuredAndAnchored) {
    const auto text = Make<ORVPrtTextElt>();
    text->SetText("Measured");
    text->SetPosition({100.0, 50.0});
    const ORVTextExtent extent = ORVMeasureText("Measured", {});
    ASSERT_GT(extent.advance, 0.0);
    ExpectBox(text, 100.0, 100.0 + extent.advance, 50.0 - extent.descent, 50.0 + extent.ascent);

    ORVPrtTextAttributes attributes;
    attributes.SetAnchor(28 + 4 * 2 + 3);  // end, ascender line
    text->SetTextAttributes(attributes);
    ExpectBox(text, 100.0 - extent.advance, 100.0, 50.0 - extent.ascent - extent.descent, 50.0);
}

TEST(BoundingBoxTest, DeepTreesCostNoStack) {
    ORVRef<ORVPrtGraphicPrimitiveElt> tree = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    for (int i = 0; i < 100'000; ++i) tree = MakeContainer<ORVPrtGroupElt>({tree});
    ExpectBox(tree, 0.0, 1.0, 0.0, 1.0);
}

TEST(BoundingBoxTest, VisitsAreBoundedOverTheLifeOfAComputer) {
    const auto leaf = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    const auto group = MakeContainer<ORVPrtGroupElt>({leaf, leaf});
    double xMin = 7.0, xMax = 7.0, yMin = 7.0, yMax = 7.0;
    ORVPrintModelBoundingBoxComputer computer(4);
    EXPECT_EQ(computer.Compute(*group, xMin, xMax, yMin, yMax), 1);  // visits: group, leaf, leaf
    EXPECT_EQ(xMax, 1.0);
    EXPECT_EQ(computer.Compute(*group, xMin, xMax, yMin, yMax), 0);
    EXPECT_EQ(xMax, 0.0);
}

}  // namespace
