// SPDX-License-Identifier: Apache-2.0
#include "platform/print/text_placement.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/mathematics/constants.h"
#include "platform/model/ORVPrtTextElt.h"
#include "platform/system/ORVRef.h"
#include "tests/support/named_rows.h"

namespace {

// 40 along the line, 8 above and 2 below the baseline.
constexpr ORVTextExtent kExtent{40.0, 8.0, 2.0};
constexpr ORVMathPoint2D kPosition{100.0, 50.0};
constexpr int kStart = 0, kMiddle = 1, kEnd = 2;
constexpr int kBottom = 0, kBaseline = 1, kHalf = 2, kTop = 3;

ORVMathBox2D BoxOf(const ORVPrtTextAttributes& attributes) {
    const ORVRef<ORVPrtTextElt> text(new ORVPrtTextElt);
    text->SetPosition(kPosition);
    text->SetTextAttributes(attributes);
    const ORVTextPlacement placement = ORVPlaceText(*text, kExtent);
    ORVMathBox2D box;
    for (const double x : {placement.box.xMin, placement.box.xMax})
        for (const double y : {placement.box.yMin, placement.box.yMax}) box.Add(placement.toModel({x, y}));
    return box;
}

struct AnchorCase {
    const char* name;
    int anchor, writingMode;
    double xMin, xMax, yMin, yMax;  // relative to the position
};
class TextAnchorTest : public testing::TestWithParam<AnchorCase> {};
TEST_P(TextAnchorTest, StandsOnThePosition) {
    const AnchorCase& row = GetParam();
    ORVPrtTextAttributes attributes;
    attributes.SetAnchor(row.anchor);
    attributes.SetWritingMode(row.writingMode);
    const ORVMathBox2D box = BoxOf(attributes);
    EXPECT_DOUBLE_EQ(box.xMin - kPosition.x, row.xMin);
    EXPECT_DOUBLE_EQ(box.xMax - kPosition.x, row.xMax);
    EXPECT_DOUBLE_EQ(box.yMin - kPosition.y, row.yMin);
    EXPECT_DOUBLE_EQ(box.yMax - kPosition.y, row.yMax);
}

constexpr int Anchor(int horizontal, int vertical) { return 28 + 4 * horizontal + vertical; }

INSTANTIATE_TEST_SUITE_P(
    Anchors, TextAnchorTest,
    testing::Values(AnchorCase{"Bottom", Anchor(kStart, kBottom), kLeftToRight, 0, 40, 0, 10},
                    AnchorCase{"Baseline", Anchor(kStart, kBaseline), kLeftToRight, 0, 40, -2, 8},
                    AnchorCase{"HalfHeight", Anchor(kStart, kHalf), kLeftToRight, 0, 40, -5, 5},
                    AnchorCase{"Top", Anchor(kStart, kTop), kLeftToRight, 0, 40, -10, 0},
                    AnchorCase{"MiddleBottom", Anchor(kMiddle, kBottom), kLeftToRight, -20, 20, 0, 10},
                    AnchorCase{"MiddleBaseline", Anchor(kMiddle, kBaseline), kLeftToRight, -20, 20, -2, 8},
                    AnchorCase{"MiddleTop", Anchor(kMiddle, kTop), kLeftToRight, -20, 20, -10, 0},
                    AnchorCase{"EndBaseline", Anchor(kEnd, kBaseline), kLeftToRight, -40, 0, -2, 8},
                    AnchorCase{"EndHalfHeight", Anchor(kEnd, kHalf), kLeftToRight, -40, 0, -5, 5},
                    AnchorCase{"EndTop", Anchor(kEnd, kTop), kLeftToRight, -40, 0, -10, 0},
                    AnchorCase{"BelowTheFirst", 27, kLeftToRight, 0, 40, -2, 8},
                    AnchorCase{"BehindTheLast", 40, kLeftToRight, 0, 40, -2, 8},
                    AnchorCase{"RightToLeftStart", Anchor(kStart, kBaseline), kRightToLeft, -40, 0, -2, 8},
                    AnchorCase{"RightToLeftMiddle", Anchor(kMiddle, kTop), kRightToLeft, -20, 20, -10, 0},
                    AnchorCase{"RightToLeftEnd", Anchor(kEnd, kBottom), kRightToLeft, 0, 40, 0, 10},
                    AnchorCase{"DownStart", Anchor(kStart, kBaseline), kTopToBottom, -5, 5, -40, 0},
                    AnchorCase{"DownMiddle", Anchor(kMiddle, kTop), kTopToBottom, -5, 5, -20, 20},
                    AnchorCase{"DownEnd", Anchor(kEnd, kBottom), kTopToBottom, -5, 5, 0, 40}),
    kNameOfRow);

TEST(TextPlacementTest, DirectionTurnsAboutThePosition) {
    ORVPrtTextAttributes attributes;
    attributes.SetDirection(static_cast<float>(ORVPI / 2.0));
    const ORVMathBox2D box = BoxOf(attributes);
    EXPECT_NEAR(box.xMin, kPosition.x - 8.0, 1e-5);
    EXPECT_NEAR(box.xMax, kPosition.x + 2.0, 1e-5);
    EXPECT_NEAR(box.yMin, kPosition.y, 1e-5);
    EXPECT_NEAR(box.yMax, kPosition.y + 40.0, 1e-5);
}

TEST(TextPlacementTest, SlantMovesWhatIsAboveTheBaselineToTheRight) {
    ORVPrtTextAttributes attributes;
    attributes.SetSlant(static_cast<float>(std::atan(0.5)));
    const ORVMathBox2D box = BoxOf(attributes);
    EXPECT_NEAR(box.xMin, kPosition.x - 1.0, 1e-5);
    EXPECT_NEAR(box.xMax, kPosition.x + 44.0, 1e-5);
    EXPECT_NEAR(box.yMax, kPosition.y + 8.0, 1e-5);
}

TEST(TextPlacementTest, TheSlantIsTurnedWithTheText) {
    ORVPrtTextAttributes attributes;
    attributes.SetDirection(static_cast<float>(ORVPI / 2.0));
    attributes.SetSlant(static_cast<float>(std::atan(0.5)));
    const ORVMathBox2D box = BoxOf(attributes);
    EXPECT_NEAR(box.xMin, kPosition.x - 8.0, 1e-5);
    EXPECT_NEAR(box.yMax, kPosition.y + 44.0, 1e-5);
    EXPECT_NEAR(box.yMin, kPosition.y - 1.0, 1e-5);
}

}  // namespace
