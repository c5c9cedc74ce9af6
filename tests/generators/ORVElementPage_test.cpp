// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVElementPage.h"

#include <gmock/gmock.h>

#include <string>

#include "generators/common/generator_status.h"
#include "platform/print/ORVPrintFilter.h"
#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ORVElementPageTest : public testing::Test {
protected:
    void Begin(const char* pageId = "page") {
        ASSERT_EQ(element_.BeginDocument({"title", 2}), 1);
        ORVPrintPageInfo info;
        info.number = 1;
        info.width = info.height = 100;
        info.id = pageId;
        ASSERT_EQ(element_.BeginPage(info), 1);
    }
    void Group(const char* id) {
        ORVPrintGroup group;
        group.id = id;
        ASSERT_EQ(element_.BeginGroup(group), 1);
    }
    void EndGroup() { ASSERT_EQ(element_.EndGroup(), 1); }
    void Fill(double x, double y, double size, const char* id = "") {
        const ORVPrintFill fill;
        const ORVPrintPath path = RectanglePath(x, y, size, size);
        ORVPrintShape shape{path, {}, &fill, nullptr};
        shape.id = id;
        ASSERT_EQ(element_.DrawShape(shape), 1);
    }
    void End() {
        ASSERT_EQ(element_.EndPage(), 1);
        ASSERT_EQ(element_.EndDocument(), 1);
    }
    /// Returns the line with which the target's page begins; empty without a page.
    std::string Page() const {
        for (const std::string& line : target_.GetLines())
            if (line.starts_with("page ")) return line;
        return {};
    }

    RecordingGenerator target_;
    ORVElementPage element_{target_, "e"};
};

TEST_F(ORVElementPageTest, AShapeIsAPageOfItsSize) {
    Begin();
    Fill(0, 0, 50);
    Fill(10, 20, 5, "e");
    Fill(70, 70, 5, "e");  // a second element with the id: ignored
    End();
    EXPECT_TRUE(element_.IsFound());
    EXPECT_TRUE(element_.HasPage());
    EXPECT_EQ(Page(), "page 1 5x5");
    EXPECT_THAT(target_.GetDrawn(), ElementsAre("fill #000000 M0,0 L5,0 L5,5 L0,5 Z #e"));
}

TEST_F(ORVElementPageTest, AGroupIsAPageOfAllThatItShows) {
    Begin();
    Group("outer");
    Group("e");
    Fill(10, 10, 10);
    Group("inner");
    Fill(40, 30, 10);
    EndGroup();
    EndGroup();
    Fill(0, 0, 99);
    EndGroup();
    End();
    EXPECT_EQ(Page(), "page 1 40x30");
    EXPECT_EQ(target_.GetDrawn().size(), 2U);
}

TEST_F(ORVElementPageTest, ThereIsNoPageOfWhatDoesNotCome) {
    Begin();
    Group("other");
    ASSERT_EQ(element_.BeginClip({0, 9, 0, 9}), 1);
    Fill(0, 0, 9);
    ASSERT_EQ(element_.EndClip(), 1);
    EndGroup();
    End();
    EXPECT_FALSE(element_.IsFound());
    EXPECT_THAT(target_.GetLines(), IsEmpty());
}

TEST_F(ORVElementPageTest, AnEmptyGroupIsFoundButHasNoPage) {
    Begin();
    Group("e");
    EndGroup();
    End();
    EXPECT_TRUE(element_.IsFound());
    EXPECT_FALSE(element_.HasPage());
    EXPECT_THAT(target_.GetLines(), IsEmpty());
}

TEST_F(ORVElementPageTest, APageOfThatIdentifierGoesThrough) {
    Begin("e");
    Group("g");
    Fill(1, 2, 3);
    EndGroup();
    End();
    EXPECT_EQ(Page(), "page 1 100x100");
    EXPECT_EQ(target_.GetDrawn().size(), 1U);
}

TEST_F(ORVElementPageTest, WhatClipsLayersAndMasksHideDoesNotCount) {
    const ORVPrintPath circle = RectanglePath(0, 0, 30, 60);
    Begin();
    ASSERT_EQ(element_.BeginClip({0, 1, 0, 1}), 1);  // outside the element: not applied
    Group("e");
    ASSERT_EQ(element_.BeginClip({0, 50, 0, 90}), 1);
    ASSERT_EQ(element_.BeginClipPath({circle, {}}), 1);
    ORVPrintLayer layer;
    layer.box = BoxOf(5, 0, 80, 80);
    layer.hasMask = true;
    ASSERT_EQ(element_.BeginLayer(layer), 1);
    ORVPrintMask mask;
    mask.box = BoxOf(0, 40, 99, 99);
    ASSERT_EQ(element_.BeginMask(mask), 1);
    Fill(0, 0, 99);  // does not extend the visible box
    ASSERT_EQ(element_.EndMask(), 1);
    Fill(0, 0, 99);
    ASSERT_EQ(element_.EndLayer(), 1);
    ASSERT_EQ(element_.EndClipPath(), 1);
    ASSERT_EQ(element_.EndClip(), 1);
    EndGroup();
    ASSERT_EQ(element_.EndClip(), 1);
    End();
    EXPECT_EQ(Page(), "page 1 25x20");
    EXPECT_EQ(element_.EndMask(), kDrawingFailed);  // no mask is open
}

TEST_F(ORVElementPageTest, FiltersReachFarther) {
    const std::vector<ORVPrintFilterStep> steps{
        {ORVFilterOffset{20, 0}, {ORVPrintFilterStep::kSource}, true, BoxOf(0, 0, 200, 200)}};
    Begin();
    Group("e");
    ASSERT_EQ(element_.BeginFilter({steps, BoxOf(0, 0, 200, 200), {}, 0}), 1);
    Fill(10, 10, 10);
    ASSERT_EQ(element_.EndFilter(), 1);
    Fill(10, 10, 10);
    EndGroup();
    End();
    EXPECT_EQ(Page(), "page 1 30x10");
}

}  // namespace
