// SPDX-License-Identifier: Apache-2.0
#include "generators/common/visible_box.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <vector>

#include "platform/print/ORVPrintPath.h"
#include "tests/support/named_rows.h"

namespace {

using Cap = ORVPrintStroke::Cap;
using Join = ORVPrintStroke::Join;

struct BoxCase {
    const char* name;
    ORVPrintPath path;
    bool isFilled, isStroked;
    Cap cap;
    Join join;
    double miterLimit;
    ORVMathBox2D box;  // xMin, xMax, yMin, yMax
};
void PrintTo(const BoxCase& row, std::ostream* out) { *out << row.name; }

ORVPrintPath Lines(const std::vector<ORVMathPoint2D>& points, bool isClosed = false) {
    ORVPrintPath path;
    for (const ORVMathPoint2D& point : points) path.verbs.empty() ? path.MoveTo(point) : path.LineTo(point);
    if (isClosed) path.Close();
    return path;
}

ORVPrintPath Arch() {
    ORVPrintPath path;
    path.MoveTo({0, 0});
    path.CubicTo({0, 40}, {30, 40}, {30, 0});
    return path;
}

const std::vector<ORVMathPoint2D> kCorner{{0, 10}, {10, 0}, {20, 10}}, kLevel{{0, 0}, {10, 0}};
const double kHalf = std::sqrt(2.0);  // reach along either axis of a diagonal line 4 units wide

class VisibleBoxTest : public testing::TestWithParam<BoxCase> {};
TEST_P(VisibleBoxTest, IsAroundWhatIsPainted) {
    const BoxCase& row = GetParam();
    const ORVPrintFill fill;
    ORVPrintStroke stroke;
    stroke.width = 4.0;
    stroke.cap = row.cap;
    stroke.join = row.join;
    stroke.miterLimit = row.miterLimit;
    const ORVMathBox2D box = ORVVisibleBox(
        ORVPrintShape{row.path, {}, row.isFilled ? &fill : nullptr, row.isStroked ? &stroke : nullptr});
    ASSERT_EQ(box.IsEmpty(), row.box.IsEmpty());
    if (box.IsEmpty()) return;
    EXPECT_NEAR(box.xMin, row.box.xMin, 0.06);
    EXPECT_NEAR(box.xMax, row.box.xMax, 0.06);
    EXPECT_NEAR(box.yMin, row.box.yMin, 0.06);
    EXPECT_NEAR(box.yMax, row.box.yMax, 0.06);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, VisibleBoxTest,
    testing::Values(
        BoxCase{"Nothing", Lines(kCorner), false, false, Cap::kButt, Join::kMiter, 4, {}},
        BoxCase{"Fill", Lines(kCorner), true, false, Cap::kButt, Join::kMiter, 4, {0, 20, 0, 10}},
        BoxCase{"FillOfACurve", Arch(), true, false, Cap::kButt, Join::kMiter, 4, {0, 30, 0, 30}},
        BoxCase{"ButtCaps", Lines(kLevel), false, true, Cap::kButt, Join::kMiter, 4, {0, 10, -2, 2}},
        BoxCase{"SquareCaps", Lines(kLevel), false, true, Cap::kSquare, Join::kMiter, 4, {-2, 12, -2, 2}},
        BoxCase{"RoundCaps", Lines(kLevel), false, true, Cap::kRound, Join::kMiter, 4, {-2, 12, -2, 2}},
        BoxCase{"Mitre",
                Lines(kCorner),
                false,
                true,
                Cap::kButt,
                Join::kMiter,
                4,
                {-kHalf, 20 + kHalf, -2 * kHalf, 10 + kHalf}},
        BoxCase{"MitreBeyondItsLimit",
                Lines(kCorner),
                false,
                true,
                Cap::kButt,
                Join::kMiter,
                1,
                {-kHalf, 20 + kHalf, -kHalf, 10 + kHalf}},
        BoxCase{"Bevel",
                Lines(kCorner),
                false,
                true,
                Cap::kButt,
                Join::kBevel,
                4,
                {-kHalf, 20 + kHalf, -kHalf, 10 + kHalf}},
        BoxCase{"RoundJoin",
                Lines(kCorner),
                false,
                true,
                Cap::kButt,
                Join::kRound,
                4,
                {-kHalf, 20 + kHalf, -2, 10 + kHalf}},
        BoxCase{"ClosedContour",
                Lines({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true),
                false,
                true,
                Cap::kButt,
                Join::kMiter,
                4,
                {-2, 12, -2, 12}},
        BoxCase{"StrokeOfACurve", Arch(), false, true, Cap::kButt, Join::kMiter, 4, {-2, 32, 0, 32}},
        BoxCase{"DotWithButtCaps", Lines({{5, 5}, {5, 5}}), false, true, Cap::kButt, Join::kMiter, 4, {}},
        BoxCase{"DotWithRoundCaps",
                Lines({{5, 5}, {5, 5}}),
                false,
                true,
                Cap::kRound,
                Join::kMiter,
                4,
                {3, 7, 3, 7}},
        BoxCase{"DotWithSquareCaps",
                Lines({{5, 5}, {5, 5}}),
                false,
                true,
                Cap::kSquare,
                Join::kMiter,
                4,
                {3, 7, 3, 7}}),
    kNameOfRow);

}  // namespace
