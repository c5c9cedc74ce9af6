// SPDX-License-Identifier: Apache-2.0
#include "generators/common/path_range.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

double LargestCoordinate(const ORVPrintPath& path) {
    double largest = 0.0;
    for (const ORVMathPoint2D& p : path.points) largest = std::max({largest, std::fabs(p.x), std::fabs(p.y)});
    return largest;
}

TEST(FitPathToRangeTest, LeavesWhatFits) {
    ORVPrintPath path, storage;
    path.MoveTo({0.0, 0.0});
    path.CubicTo({1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    EXPECT_EQ(&FitPathToRange(path, {}, 6.0, PathUse::kStroke, storage), &path);
}

TEST(FitPathToRangeTest, CutsAreasWithoutChangingTheirInside) {
    ORVPrintPath path, storage;
    path.MoveTo({-1e9, 0.0});
    path.LineTo({1e9, 0.0});
    path.LineTo({1e9, 1e9});
    path.LineTo({-1e9, 1e9});
    path.Close();
    const ORVPrintPath& fitted = FitPathToRange(path, {}, 100.0, PathUse::kFill, storage);
    double area = 0.0;
    for (std::size_t i = 0; i < fitted.points.size(); ++i) {
        const ORVMathPoint2D &a = fitted.points[i], &b = fitted.points[(i + 1) % fitted.points.size()];
        area += 0.5 * (a.x * b.y - b.x * a.y);
    }
    EXPECT_NEAR(area, 200.0 * 100.0, 1e-3);
    EXPECT_LE(LargestCoordinate(fitted), 100.0 + 1e-6);
}

TEST(FitPathToRangeTest, CutsLinesWithoutBendingThem) {
    ORVPrintPath path, storage;
    path.MoveTo({-1e9, -1e9});
    path.LineTo({1e9, 1e9});
    const ORVPrintPath& fitted = FitPathToRange(path, {}, 100.0, PathUse::kStroke, storage);
    ASSERT_EQ(fitted.points.size(), 2U);
    EXPECT_NEAR(fitted.points[0].x, -100.0, 1e-6);
    EXPECT_NEAR(fitted.points[0].y, fitted.points[0].x, 1e-6);
    EXPECT_NEAR(fitted.points[1].x, 100.0, 1e-6);
}

TEST(FitPathToRangeTest, LinesThatLeaveAndReturnAreTwo) {
    ORVPrintPath path, storage;
    path.MoveTo({0.0, 0.0});
    path.LineTo({300.0, 0.0});  // leaves the range on the right
    path.LineTo({300.0, 50.0});
    path.LineTo({0.0, 50.0});  // and returns
    const ORVPrintPath& fitted = FitPathToRange(path, {}, 100.0, PathUse::kStroke, storage);
    using Verb = ORVPrintPath::Verb;
    EXPECT_EQ(fitted.verbs, (std::vector<Verb>{Verb::kMove, Verb::kLine, Verb::kMove, Verb::kLine}));
    const std::vector<ORVMathPoint2D> expected{{0.0, 0.0}, {100.0, 0.0}, {100.0, 50.0}, {0.0, 50.0}};
    ASSERT_EQ(fitted.points.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(fitted.points[i].x, expected[i].x, 1e-9) << i;
        EXPECT_NEAR(fitted.points[i].y, expected[i].y, 1e-9) << i;
    }
}

TEST(FitPathToRangeTest, DropsLinesThatAreFarOff) {
    ORVPrintPath path, storage;
    path.MoveTo({1e9, 0.0});
    path.LineTo({1e9, 5.0});
    EXPECT_TRUE(FitPathToRange(path, {}, 100.0, PathUse::kStroke, storage).IsEmpty());
}

TEST(FitPathToRangeTest, KeepsWhatStaysConnectedInOnePiece) {
    ORVPrintPath path, storage;
    path.MoveTo({0.0, 0.0});
    path.LineTo({10.0, 0.0});
    path.LineTo({10.0, 1e9});
    path.LineTo({20.0, 1e9});
    path.LineTo({20.0, 0.0});
    const ORVPrintPath& fitted = FitPathToRange(path, {}, 100.0, PathUse::kStroke, storage);
    using Verb = ORVPrintPath::Verb;
    EXPECT_EQ(fitted.verbs,
              (std::vector<Verb>{Verb::kMove, Verb::kLine, Verb::kLine, Verb::kMove, Verb::kLine}));
}

TEST(FitPathToRangeTest, EnormousNumbersStayNumbers) {
    const double huge = std::numeric_limits<double>::max();
    for (const PathUse use : {PathUse::kFill, PathUse::kStroke}) {
        ORVPrintPath path, storage;
        path.MoveTo({-huge, -huge});
        path.CubicTo({huge, -huge}, {-huge, huge}, {huge, huge});
        path.Close();
        const ORVPrintPath& fitted =
            FitPathToRange(path, ORVMathAffine2D::Scaling(2.0, 2.0), 100.0, use, storage);
        EXPECT_TRUE(std::isfinite(LargestCoordinate(fitted)));
        EXPECT_LE(LargestCoordinate(fitted), 50.0 + 1e-6);
    }
}

}  // namespace
