// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/state/SvgDrawState.h"

#include <gtest/gtest.h>

namespace {

TEST(SvgDrawStateTest, StartsWithFillOnly) {
    const SvgDrawState state;
    EXPECT_EQ(state.drawStyle, 2);
    EXPECT_EQ(state.markers.Get(), SvgMarkerReferences());
    EXPECT_EQ(state.strokeCurrentColour, 0U);
    EXPECT_EQ(state.fillCurrentColour, 0U);
    EXPECT_EQ(state.pageWidth, 0.0);
    EXPECT_EQ(state.pageHeight, 0.0);
    EXPECT_EQ(state.yFlip, 1);
    EXPECT_EQ(state.embeddedFragment, 0);
}

// The numeric defaults of new attribute sets, which hosts rely on.
TEST(SvgDrawStateTest, StartsWithDefaultSets) {
    const SvgDrawState state;
    EXPECT_EQ(state.stroke.GetStrokeColourIndex(), 0U);
    EXPECT_EQ(state.stroke.GetStrokeColourTransparency(), 255);
    EXPECT_EQ(state.stroke.GetStrokeType(), 0);
    EXPECT_TRUE(state.stroke.GetStrokeDashPattern().empty());
    EXPECT_EQ(state.stroke.GetStrokeWidth(), 1.0);
    EXPECT_EQ(state.stroke.GetStrokeStyle(), 0);
    EXPECT_EQ(state.stroke.GetStrokeCap(), 10);
    EXPECT_EQ(state.stroke.GetStrokeJoin(), 13);
    EXPECT_EQ(state.fill.GetFillStyle(), 1);
    EXPECT_EQ(state.fill.GetFillRule(), 0);
    EXPECT_EQ(state.fill.GetFillColourIndex(), 0U);
    EXPECT_EQ(state.fill.GetFillColourTransparency(), 255);
    EXPECT_EQ(state.fill.GetFillPatternImage(), nullptr);
    EXPECT_EQ(state.text.GetFont(), nullptr);
    EXPECT_EQ(state.text.GetWeight(), 25);
    EXPECT_EQ(state.text.GetHeight(), 12.0);
    EXPECT_EQ(state.text.GetAnchor(), 29);
    EXPECT_EQ(state.text.GetSlant(), 0.0F);
    EXPECT_EQ(state.text.GetDirection(), 0.0F);
    EXPECT_EQ(state.text.GetExtraSpacing(), 0.0);
    EXPECT_EQ(state.text.GetExpansion(), 1.0);
    EXPECT_EQ(state.text.GetWritingMode(), 0);
    EXPECT_EQ(state.text.GetTextVersion(), 0);
}

TEST(SvgDrawStateTest, GuardRestoresWhatIsInherited) {
    SvgDrawState state;
    state.markers.Edit().mid = "m";
    state.stroke.SetStrokeWidth(3.0);
    state.fill.SetFillColourIndex(4);
    state.text.SetHeight(5.0);
    state.drawStyle = 3;
    state.strokeCurrentColour = 6;
    state.fillCurrentColour = 7;
    state.pageWidth = 8.0;
    state.pageHeight = 9.0;
    {
        const SvgInheritedStateGuard guard(state);
        state.markers.Edit() = {"x", "y", "z"};
        state.stroke.SetStrokeWidth(30.0);
        state.fill.SetFillColourIndex(40);
        state.text.SetHeight(50.0);
        state.drawStyle = 0;
        state.strokeCurrentColour = 60;
        state.fillCurrentColour = 70;
        state.pageWidth = 80.0;
        state.pageHeight = 90.0;
    }
    EXPECT_EQ(state.markers.Get(), (SvgMarkerReferences{"", "m", ""}));
    EXPECT_EQ(state.stroke.GetStrokeWidth(), 3.0);
    EXPECT_EQ(state.fill.GetFillColourIndex(), 4U);
    EXPECT_EQ(state.text.GetHeight(), 5.0);
    EXPECT_EQ(state.drawStyle, 3);
    EXPECT_EQ(state.strokeCurrentColour, 6U);
    EXPECT_EQ(state.fillCurrentColour, 7U);
    EXPECT_EQ(state.pageWidth, 8.0);
    EXPECT_EQ(state.pageHeight, 90.0) << "the page height is not inherited";
}

}  // namespace
