// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVGeneratorSequence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;

void DrawOnePage(ORVPrintGenerator& generator, const char* title) {
    ASSERT_EQ(generator.BeginDocument({title, 1}), 1);
    ORVPrintPageInfo page;
    page.number = 1;
    page.width = 10.0;
    page.height = 10.0;
    ASSERT_EQ(generator.BeginPage(page), 1);
    ORVPrintGroup group;
    group.id = "a";
    group.linkElementId = "b";
    group.linkURL = "http://x/";
    ASSERT_EQ(generator.BeginGroup(group), 1);
    ASSERT_EQ(generator.EndGroup(), 1);
    ASSERT_EQ(generator.EndPage(), 1);
    ASSERT_EQ(generator.EndDocument(), 1);
}

TEST(ORVGeneratorSequenceTest, MakesOneDocumentOfSeveralDrawings) {
    RecordingGenerator target;
    ORVGeneratorSequence sequence(target, 0);
    DrawOnePage(sequence, "first");
    DrawOnePage(sequence, "second");
    EXPECT_EQ(sequence.Finish(), 1);
    EXPECT_EQ(target.GetText(),
              "document \"first\" 0\n"
              "page 1 10x10\ngroup #a ->#b ->http://x/\nend group\nend page\n"
              "page 2 10x10\ngroup #2:a ->#2:b ->http://x/\nend group\nend page\n"
              "end document\n");
}

TEST(ORVGeneratorSequenceTest, PassesOnClipsLayersAndMasks) {
    RecordingGenerator target;
    target.SetPowers(ORVPrintGenerator::kLayers | ORVPrintGenerator::kMasks);
    ORVGeneratorSequence sequence(target, 0);
    EXPECT_EQ(sequence.GetPowers(), target.GetPowers());
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    ORVPrintLayer layer;
    layer.box = BoxOf(0, 0, 5, 5);
    EXPECT_EQ(sequence.BeginClipPath({path, {}}), 1);
    EXPECT_EQ(sequence.BeginLayer(layer), 1);
    EXPECT_EQ(sequence.BeginMask({{}, BoxOf(1, 1, 2, 2)}), 1);
    EXPECT_EQ(sequence.EndMask(), 1);
    EXPECT_EQ(sequence.EndLayer(), 1);
    EXPECT_EQ(sequence.EndClipPath(), 1);
    EXPECT_THAT(target.GetLines(),
                ElementsAre("clip path M0,0 L1,0 L1,1 L0,1 Z", "layer 1 normal 0,0 to 5,5",
                            "mask luminance 1,1 to 2,2", "end mask", "end layer", "end clip path"));
    target.SetPowers(0);
    EXPECT_EQ(sequence.BeginMask({}), ORVPrintGenerator::kSkipMask);
}

TEST(ORVGeneratorSequenceTest, IdentifiersOfShapesAreKeptApart) {
    RecordingGenerator target;
    ORVGeneratorSequence sequence(target, 0);
    EXPECT_FALSE(sequence.KeepsIdentifiers());
    target.KeepIdentifiers();
    EXPECT_TRUE(sequence.KeepsIdentifiers());
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    const ORVPrintFill fill;
    const auto image = PlainImage(1, 1, {});
    for (int drawing = 0; drawing < 2; ++drawing) {
        EXPECT_EQ(sequence.BeginDocument({}), 1);
        EXPECT_EQ(sequence.DrawShape({path, {}, &fill, nullptr, "s"}), 1);
        EXPECT_EQ(sequence.DrawShape({path, {}, &fill, nullptr}), 1);
        EXPECT_EQ(sequence.DrawText({{}, "Word", {}, &fill, nullptr, nullptr, "t"}), 1);
        EXPECT_EQ(sequence.DrawImage({*image, {}, "i"}), 1);
    }
    EXPECT_THAT(target.GetDrawn(),
                ElementsAre(EndsWith("Z #s"), EndsWith("Z"), EndsWith(" #t"), EndsWith(" #i"),
                            EndsWith("Z #2:s"), EndsWith("Z"), EndsWith(" #2:t"), EndsWith(" #2:i")));
}

TEST(ORVGeneratorSequenceTest, EndsOnlyWhatBegan) {
    RecordingGenerator target;
    ORVGeneratorSequence sequence(target, 0);
    EXPECT_EQ(sequence.Finish(), 1);
    EXPECT_TRUE(target.GetLines().empty());
    target.FailAt(1);
    EXPECT_EQ(sequence.BeginDocument({"t", 1}), -99);
    EXPECT_EQ(sequence.Finish(), 1);
    EXPECT_EQ(target.GetLines().size(), 1U);
}

}  // namespace
