// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVPageRecording.h"

#include <gmock/gmock.h>

#include <array>

#include "tests/generators/drawing_calls.h"
#include "tests/generators/symbol_recorder.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Draws with gradients, dashes, a clip path, a layer and a mask.
template <class Target>
void DrawCompositions(Target& target) {
    using Spread = ORVPrintGradient::Spread;
    const std::array<ORVPrintGradientStop, 2> stops{{{0.0, {255, 0, 0, 255}}, {0.25, {0, 255, 0, 10}}}};
    ORVPrintGradient linear = Gradient(stops, {10, 0, 0, 5, 1, 2}), radial = linear;
    linear.spread = Spread::kReflect;
    radial.kind = ORVPrintGradient::Kind::kRadial;
    radial.spread = Spread::kRepeat;
    radial.startRadius = 0.25;
    radial.endRadius = 3.0;
    ORVPrintFill fill;
    fill.gradient = &linear;
    ORVPrintStroke stroke;
    stroke.gradient = &radial;
    const std::array dashes{1.0, 2.5};
    stroke.dashes = dashes;
    stroke.dashOffset = 0.5;
    const ORVPrintPath path = RectanglePath(1, 2, 3, 4);
    ASSERT_EQ(target.DrawShape({path, {2, 0, 0, 2, 5, 5}, &fill, &stroke}), 1);
    stroke.dashOffset = 0.75;
    fill.gradient = nullptr;
    ASSERT_EQ(target.DrawShape({path, {2, 0, 0, 2, 5, 5}, &fill, &stroke}), 1);
    radial.spread = Spread::kPad;
    ASSERT_EQ(target.DrawShape({path, {2, 0, 0, 2, 5, 5}, nullptr, &stroke}), 1);
    ASSERT_EQ(target.BeginClipPath({path, {10, 0, 0, 10, 0, 0}, true}), 1);
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.blend = ORVPrintBlendMode::kScreen;
    layer.isIsolated = false;
    layer.hasMask = true;
    layer.box = BoxOf(1, 2, 60, 70);
    ASSERT_EQ(target.BeginLayer(layer), 1);
    ASSERT_EQ(target.BeginMask({ORVPrintMask::Kind::kOpacity, BoxOf(3, 4, 50, 60)}), 1);
    ASSERT_EQ(FillRectangle(target, 5, 5, 10, 10), 1);
    ASSERT_EQ(target.EndMask(), 1);
    ASSERT_EQ(FillRectangle(target, 12, 32, 10, 10), 1);
    ASSERT_EQ(target.EndLayer(), 1);
    ASSERT_EQ(target.EndClipPath(), 1);
}

TEST(ORVPageRecordingTest, FiltersAreReplayedWholeWhereTheirResultsAre) {
    ORVPageRecording recording;
    {
        const std::vector<ORVPrintFilterStep> steps{
            {ORVFilterOffset{50.0, 0.0}, {ORVPrintFilterStep::kSource}, false, BoxOf(0, 0, 100, 100)}};
        ASSERT_EQ(recording.BeginFilter({steps, BoxOf(0, 0, 100, 100), {}, 1}), 1);
        ASSERT_EQ(recording.BeginFilterInput(), 1);
        ASSERT_EQ(FillRectangle(recording, 0, 0, 1, 1), 1);
        ASSERT_EQ(recording.EndFilterInput(), 1);
        ASSERT_EQ(FillRectangle(recording, 10, 10, 5, 5), 1);
        ASSERT_EQ(recording.EndFilter(), 1);
    }
    recording.Finish(BoxOf(0, 0, 100, 100));
    const auto replay = [&](const ORVMathBox2D& box, unsigned int powers) {
        RecordingGenerator target;
        target.SetPowers(powers);
        recording.SelectBand(box.yMin, box.yMax);
        EXPECT_EQ(recording.Replay(target, box), 1);
        return target.GetLines();
    };
    EXPECT_THAT(replay(BoxOf(55, 5, 70, 20), kAllPowers),
                ElementsAre("filter 3 [1 0 0 1 0 0]", "input", "fill #000000 M0,0 L1,0 L1,1 L0,1 Z",
                            "end input", "fill #000000 M10,10 L15,10 L15,15 L10,15 Z", "end filter"));
    EXPECT_THAT(
        replay(BoxOf(55, 5, 70, 20), 0),
        ElementsAre("filter 3 [1 0 0 1 0 0]", "fill #000000 M10,10 L15,10 L15,15 L10,15 Z", "end filter"));
    EXPECT_THAT(replay(BoxOf(5, 5, 20, 20), kAllPowers), IsEmpty());
    EXPECT_THAT(replay(BoxOf(55, 50, 70, 60), kAllPowers), IsEmpty());
}

/// Makes calls with every kind of argument, whose objects are destroyed on return.
template <class Target>
void DrawEverything(Target& target) {
    const ORVRef<ORVPixelImage> image = PlainImage(2, 3, {1, 2, 3, 255});
    ORVPrintGroup group;
    group.id = "outer";
    group.linkElementId = "other";
    group.description = "what";
    ASSERT_EQ(target.BeginGroup(group), 1);
    ORVPrintPath path = RectanglePath(1, 2, 3, 4);
    path.CubicTo({1, 1}, {2, 2}, {3, 3});
    ORVPrintFill fill;
    fill.colour = {255, 0, 0, 128};
    fill.evenOdd = true;
    ORVPrintStroke stroke;
    const std::array dashes{1.0, 2.5};
    stroke.dashes = dashes;
    stroke.cap = ORVPrintStroke::Cap::kRound;
    ASSERT_EQ(target.DrawShape({path, {2, 0, 0, 2, 5, 5}, &fill, &stroke}), 1);
    ASSERT_EQ(target.DrawShape({path, {2, 0, 0, 2, 5, 5}, nullptr, &stroke, "shape"}), 1);
    fill.pattern = image.get();
    fill.patternToPage = {1, 0, 0, 1, 7, 8};
    ASSERT_EQ(target.DrawShape({path, {}, &fill, nullptr}), 1);
    ORVMathBox2D box;
    box.Add({0, 0});
    box.Add({90, 80});
    ASSERT_EQ(target.BeginClip(box), 1);
    const std::string words = "some words";
    const ORVTextLayout layout = ORVLayoutText(words, {});
    const ORVPrintPath clip = RectanglePath(0, 0, 9, 9);
    ASSERT_EQ(target.DrawText({layout, words, {1, 0, 0, -1, 10, 20}, &fill, nullptr, &clip, "text"}), 1);
    ASSERT_EQ(target.EndClip(), 1);
    ASSERT_EQ(target.EndGroup(), 1);
    ASSERT_EQ(target.DrawImage({*image, {10, 0, 0, 20, 5, 5}, "image"}), 1);
    DrawCompositions(target);
}

/// Returns the calls that the recording makes for a part of the page.
std::vector<std::string> Replayed(ORVPageRecording& recording, const ORVMathBox2D& part) {
    RecordingGenerator target;
    recording.SelectBand(part.yMin, part.yMax);
    EXPECT_EQ(recording.Replay(target, part), 1);
    return target.GetLines();
}

TEST(ORVPageRecordingTest, DrawsAgainWhatWasDrawn) {
    RecordingGenerator direct;
    DrawEverything(direct);
    ORVPageRecording recording;
    DrawEverything(recording);
    recording.Finish(BoxOf(0, 0, 100, 100));
    EXPECT_EQ(Replayed(recording, BoxOf(0, 0, 100, 100)), direct.GetLines());
    EXPECT_EQ(Replayed(recording, BoxOf(0, 0, 100, 100)), direct.GetLines());  // can be replayed again
}

TEST(ORVPageRecordingTest, LeavesOutWhatLiesOutside) {
    ORVPageRecording recording;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) ASSERT_EQ(FillRectangle(recording, 10 * x, 10 * y, 8, 8), 1);
    recording.Finish(BoxOf(0, 0, 30, 30));
    EXPECT_THAT(Replayed(recording, BoxOf(11, 21, 13, 23)),
                ElementsAre("fill #000000 M10,20 L18,20 L18,28 L10,28 Z"));
    EXPECT_EQ(Replayed(recording, BoxOf(0, 0, 12, 30)).size(), 6U);
    EXPECT_EQ(Replayed(recording, BoxOf(8, 0, 9, 5)).size(), 1U);  // boxes that touch the part count
    EXPECT_THAT(Replayed(recording, BoxOf(8.5, 8.5, 9.5, 9.5)), IsEmpty());
}

TEST(ORVPageRecordingTest, CountsTheReachOfPens) {
    struct Row {
        ORVPrintStroke::Cap cap;
        ORVPrintStroke::Join join;
        ORVMathAffine2D toPage;
        double reach;  // from the line upwards, in page coordinates
    };
    using Cap = ORVPrintStroke::Cap;
    using Join = ORVPrintStroke::Join;
    for (const Row& row : {Row{Cap::kButt, Join::kBevel, {}, 5.0}, Row{Cap::kButt, Join::kMiter, {}, 20.0},
                           Row{Cap::kSquare, Join::kRound, {}, 5.0 * std::sqrt(2.0)},
                           Row{Cap::kRound, Join::kRound, {1, 0, 0, 3, 0, -200}, 15.0}}) {
        ORVPageRecording recording;
        ORVPrintPath path;
        path.MoveTo({0, 100});
        path.LineTo({50, 100});
        ORVPrintStroke stroke;
        stroke.width = 10.0;
        stroke.cap = row.cap;
        stroke.join = row.join;
        ASSERT_EQ(recording.DrawShape({path, row.toPage, nullptr, &stroke}), 1);
        recording.Finish(BoxOf(0, 0, 100, 200));
        EXPECT_EQ(Replayed(recording, BoxOf(20, 0, 30, 100 - row.reach + 0.01)).size(), 1U) << row.reach;
        EXPECT_THAT(Replayed(recording, BoxOf(20, 0, 30, 100 - row.reach - 0.01)), IsEmpty()) << row.reach;
    }
}

TEST(ORVPageRecordingTest, ReportsGroupsAroundWhatShowsAndTheirTargetsOnce) {
    ORVPageRecording recording;
    ORVPrintGroup outer, inner, empty;
    outer.id = "outer";
    inner.id = "inner";
    inner.isLinkTarget = true;
    empty.id = "empty";
    empty.isLinkTarget = true;
    ASSERT_EQ(recording.BeginGroup(outer), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 10, 10), 1);
    ASSERT_EQ(recording.BeginGroup(inner), 1);
    ASSERT_EQ(FillRectangle(recording, 20, 0, 30, 10), 1);
    ASSERT_EQ(recording.EndGroup(), 1);
    ASSERT_EQ(recording.EndGroup(), 1);
    ASSERT_EQ(recording.BeginGroup(empty), 1);
    ASSERT_EQ(recording.EndGroup(), 1);
    recording.Finish(BoxOf(0, 0, 50, 20));
    EXPECT_THAT(Replayed(recording, BoxOf(5, 0, 15, 10)),
                ElementsAre("group #outer", "fill #000000 M0,0 L10,0 L10,10 L0,10 Z", "end group",
                            "group #empty target", "end group"));
    EXPECT_THAT(Replayed(recording, BoxOf(25, 0, 30, 10)),
                ElementsAre("group #outer", "group #inner target", "fill #000000 M20,0 L50,0 L50,10 L20,10 Z",
                            "end group", "end group"));
    EXPECT_THAT(Replayed(recording, BoxOf(30, 0, 40, 10)),
                ElementsAre("group #outer", "group #inner", "fill #000000 M20,0 L50,0 L50,10 L20,10 Z",
                            "end group", "end group"));
    EXPECT_THAT(Replayed(recording, BoxOf(0, 15, 40, 20)), IsEmpty());
}

TEST(ORVPageRecordingTest, ReportsATargetThatIsOffThePageOnTheFirstPart) {
    ORVPageRecording recording;
    ORVPrintGroup outer, hidden;
    outer.id = "outer";
    hidden.id = "hidden";
    hidden.isLinkTarget = true;
    ASSERT_EQ(recording.BeginGroup(outer), 1);
    ASSERT_EQ(FillRectangle(recording, 40, 0, 5, 5), 1);
    ASSERT_EQ(recording.BeginGroup(hidden), 1);
    ASSERT_EQ(FillRectangle(recording, 500, 0, 30, 10), 1);
    ASSERT_EQ(recording.EndGroup(), 1);
    ASSERT_EQ(recording.EndGroup(), 1);
    recording.Finish(BoxOf(0, 0, 50, 20));
    EXPECT_THAT(Replayed(recording, BoxOf(0, 0, 10, 10)),
                ElementsAre("group #outer", "group #hidden target", "end group", "end group"));
    EXPECT_THAT(Replayed(recording, BoxOf(0, 0, 10, 10)), IsEmpty());
}

TEST(ORVPageRecordingTest, EndsWhatADrawingLeftOpen) {
    ORVPageRecording recording;
    ORVPrintGroup group;
    group.id = "a";
    ASSERT_EQ(recording.BeginGroup(group), 1);
    ASSERT_EQ(recording.BeginGroup(group), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 5, 5), 1);
    recording.Finish(BoxOf(0, 0, 10, 10));
    EXPECT_THAT(
        Replayed(recording, BoxOf(0, 0, 10, 10)),
        ElementsAre("group #a", "group #a", "fill #000000 M0,0 L5,0 L5,5 L0,5 Z", "end group", "end group"));
}

/// Draws two symbols. The outer one shows the inner one, a square of side 1, at (1, 1) and (3, 1).
void DrawSymbols(ORVPageRecording& recording) {
    const int inner = 0, outer = 0;
    ASSERT_EQ(recording.BeginSymbol({&outer, {2, 0, 0, 2, 10, 0}}), ORVPrintGenerator::kDrawSymbol);
    ASSERT_EQ(recording.BeginSymbol({&inner, {1, 0, 0, 1, 1, 1}}), ORVPrintGenerator::kDrawSymbol);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 1, 1), 1);
    ASSERT_EQ(recording.EndSymbol(), 1);
    ASSERT_EQ(recording.BeginSymbol({&inner, {1, 0, 0, 1, 3, 1}}), ORVPrintGenerator::kSymbolKnown);
    ASSERT_EQ(recording.EndSymbol(), 1);
    ASSERT_EQ(recording.BeginSymbol({&outer, {1, 0, 0, 1, 50, 0}}), ORVPrintGenerator::kSymbolKnown);
    recording.Finish(BoxOf(0, 0, 100, 100));
}

TEST(ORVPageRecordingTest, KeepsSymbolsOnce) {
    ORVPageRecording recording;
    DrawSymbols(recording);
    SymbolRecorder target;
    recording.SelectBand(0, 100);
    ASSERT_EQ(recording.Replay(target, BoxOf(0, 0, 100, 100)), 1);
    EXPECT_THAT(target.lines,
                ElementsAre("symbol 1 at 10,0 x 2", "symbol 2 at 1,1 x 1", "shape at 0,0 x 1", "end symbol",
                            "known 2 at 3,1 x 1", "end symbol", "known 1 at 50,0 x 1"));
    target.lines.clear();
    ASSERT_EQ(recording.Replay(target, BoxOf(49, 0, 100, 100)), 1);
    EXPECT_THAT(target.lines, ElementsAre("known 1 at 50,0 x 1"));
}

TEST(ORVPageRecordingTest, DrawsSymbolsOutForTargetsWithout) {
    ORVPageRecording recording;
    DrawSymbols(recording);
    EXPECT_THAT(
        Replayed(recording, BoxOf(0, 0, 100, 100)),
        ElementsAre("fill #000000 M12,2 L14,2 L14,4 L12,4 Z", "fill #000000 M16,2 L18,2 L18,4 L16,4 Z",
                    "fill #000000 M51,1 L52,1 L52,2 L51,2 Z", "fill #000000 M53,1 L54,1 L54,2 L53,2 Z"));
    EXPECT_THAT(Replayed(recording, BoxOf(30, 0, 40, 100)), IsEmpty());
}

/// Draws rectangles in a clip path, in a layer inside it, and in a masked layer inside that.
void DrawNestedParts(ORVPageRecording& recording) {
    const ORVPrintPath path = RectanglePath(0, 0, 100, 20);
    ASSERT_EQ(recording.BeginClipPath({path, {}}), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 10, 10), 1);
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.box = BoxOf(20, 0, 60, 10);
    ASSERT_EQ(recording.BeginLayer(layer), 1);
    ASSERT_EQ(FillRectangle(recording, 20, 0, 10, 10), 1);
    layer.hasMask = true;
    layer.box = BoxOf(40, 0, 50, 10);
    ASSERT_EQ(recording.BeginLayer(layer), 1);
    ASSERT_EQ(recording.BeginMask({{}, BoxOf(0, 0, 100, 20)}), 1);
    ASSERT_EQ(FillRectangle(recording, 80, 0, 10, 10), 1);
    ASSERT_EQ(FillRectangle(recording, 42, 0, 10, 10), 1);
    ASSERT_EQ(recording.EndMask(), 1);
    ASSERT_EQ(FillRectangle(recording, 40, 0, 30, 10), 1);
    ASSERT_EQ(recording.EndLayer(), 1);
    ASSERT_EQ(recording.EndLayer(), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 50, 90, 10), 1);
    ASSERT_EQ(recording.EndClipPath(), 1);
}

TEST(ORVPageRecordingTest, LeavesOutPartsOfWhichNothingShows) {
    ORVPageRecording recording;
    DrawNestedParts(recording);
    recording.Finish(BoxOf(0, 0, 100, 100));
    const std::string clip = "clip path M0,0 L100,0 L100,20 L0,20 Z";
    EXPECT_THAT(Replayed(recording, BoxOf(2, 2, 4, 4)),
                ElementsAre(clip, "fill #000000 M0,0 L10,0 L10,10 L0,10 Z", "end clip path"));
    EXPECT_THAT(Replayed(recording, BoxOf(22, 2, 24, 4)),
                ElementsAre(clip, "layer 0.5 normal 20,0 to 60,10",
                            "fill #000000 M20,0 L30,0 L30,10 L20,10 Z", "end layer", "end clip path"));
    // The mask is kept; those parts of its content that lie outside are left out.
    EXPECT_THAT(
        Replayed(recording, BoxOf(44, 2, 46, 4)),
        ElementsAre(clip, "layer 0.5 normal 20,0 to 60,10", "layer 0.5 normal masked 40,0 to 50,10",
                    "mask luminance 0,0 to 100,20", "fill #000000 M42,0 L52,0 L52,10 L42,10 Z", "end mask",
                    "fill #000000 M40,0 L70,0 L70,10 L40,10 Z", "end layer", "end layer", "end clip path"));
    EXPECT_THAT(Replayed(recording, BoxOf(51.5, 2, 59, 4)), ElementsAre(clip, "end clip path"))
        << "the layers' boxes cut";
    EXPECT_THAT(Replayed(recording, BoxOf(82, 2, 84, 4)), ElementsAre(clip, "end clip path"))
        << "masks are not seen";
    EXPECT_THAT(Replayed(recording, BoxOf(0, 52, 90, 54)), IsEmpty()) << "the clip cuts";
}

TEST(ORVPageRecordingTest, LeavesMasksOutForTargetsWithout) {
    ORVPageRecording recording;
    DrawNestedParts(recording);
    recording.Finish(BoxOf(0, 0, 100, 100));
    RecordingGenerator target;
    target.SetPowers(0);
    recording.SelectBand(0, 10);
    ASSERT_EQ(recording.Replay(target, BoxOf(44, 2, 46, 4)), 1);
    EXPECT_THAT(target.GetDrawn(), ElementsAre("fill #000000 M40,0 L70,0 L70,10 L40,10 Z"));
}

TEST(ORVPageRecordingTest, ReportsATargetInALayerThatShowsNothing) {
    ORVPageRecording recording;
    ORVPrintLayer layer;
    layer.box = BoxOf(200, 0, 300, 10);
    ASSERT_EQ(recording.BeginLayer(layer), 1);
    ORVPrintGroup group;
    group.id = "hidden";
    group.isLinkTarget = true;
    ASSERT_EQ(recording.BeginGroup(group), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 250, 10), 1);
    ASSERT_EQ(recording.EndGroup(), 1);
    ASSERT_EQ(recording.EndLayer(), 1);
    recording.Finish(BoxOf(0, 0, 100, 100));
    EXPECT_THAT(
        Replayed(recording, BoxOf(50, 50, 60, 60)),
        ElementsAre("layer 1 normal 200,0 to 300,10", "group #hidden target", "end group", "end layer"));
    EXPECT_THAT(Replayed(recording, BoxOf(50, 50, 60, 60)), IsEmpty());
}

TEST(ORVPageRecordingTest, KeepsEqualStopsOnceUnderDifferentMaps) {
    ORVPageRecording recording;
    const std::array<ORVPrintGradientStop, 2> stops{{{0.0, {255, 0, 0, 255}}, {1.0, {0, 255, 0, 255}}}};
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    std::vector<const ORVPrintGradientStop*> seen;
    for (int i = 0; i < 3; ++i) {
        const std::vector<ORVPrintGradientStop> copy(stops.begin(), stops.end());
        const ORVPrintGradient gradient = Gradient(copy, {1.0 + i, 0, 0, 1, 0, 0});
        ORVPrintFill fill;
        fill.gradient = &gradient;
        ASSERT_EQ(recording.DrawShape({path, {}, &fill, nullptr}), 1);
    }
    recording.Finish(BoxOf(0, 0, 100, 100));
    EXPECT_THAT(Replayed(recording, BoxOf(0, 0, 1, 1)),
                ElementsAre("fill linear 0,0 1,0 [1 0 0 1 0 0] 0 #ff0000 1 #00ff00 M0,0 L1,0 L1,1 L0,1 Z",
                            "fill linear 0,0 1,0 [2 0 0 1 0 0] 0 #ff0000 1 #00ff00 M0,0 L1,0 L1,1 L0,1 Z",
                            "fill linear 0,0 1,0 [3 0 0 1 0 0] 0 #ff0000 1 #00ff00 M0,0 L1,0 L1,1 L0,1 Z"));
}

TEST(ORVPageRecordingTest, ShowsWhatThereIsSoFarAndGoesOn) {
    ORVPageRecording recording;
    ORVPrintLayer layer;
    layer.box = BoxOf(0, 0, 60, 10);
    ASSERT_EQ(recording.BeginClip(BoxOf(0, 0, 50, 50)), 1);
    ASSERT_EQ(recording.BeginLayer(layer), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 10, 10), 1);
    ASSERT_EQ(FillRectangle(recording, 30, 0, 10, 10), 1);
    RecordingGenerator soFar;
    ASSERT_EQ(recording.ReplaySoFar(soFar, BoxOf(0, 0, 20, 20), {2, 0, 0, 2, -5, 0}), 1);
    EXPECT_THAT(soFar.GetLines(),
                ElementsAre("clip -5,0 to 95,100", "layer 1 normal -5,0 to 115,20",
                            "fill #000000 M-5,0 L15,0 L15,20 L-5,20 Z", "end layer", "end clip"));
    ASSERT_EQ(FillRectangle(recording, 11, 0, 2, 10), 1);
    ASSERT_EQ(recording.EndLayer(), 1);
    ASSERT_EQ(recording.EndClip(), 1);
    recording.Finish(BoxOf(0, 0, 100, 100));
    EXPECT_EQ(Replayed(recording, BoxOf(0, 0, 20, 20)).size(), 6U);
}

TEST(ORVPageRecordingTest, SurvivesNumbersPastAllBounds) {
    ORVPageRecording recording;
    ORVPrintPath path;
    path.MoveTo({-1e308, -1e308});
    path.LineTo({1e308, 1e308});
    ORVPrintStroke stroke;
    stroke.width = 1e308;
    ASSERT_EQ(recording.DrawShape({path, {1e300, 0, 0, 1, 0, 0}, nullptr, &stroke}), 1);
    ASSERT_EQ(recording.DrawShape({path, {}, nullptr, &stroke}), 1);
    recording.Finish(BoxOf(0, 0, 10, 10));
    EXPECT_EQ(Replayed(recording, BoxOf(0, 0, 10, 10)).size(), 1U);
}

TEST(ORVPageRecordingTest, PassesOnFailures) {
    ORVPageRecording recording;
    DrawEverything(recording);
    recording.Finish(BoxOf(0, 0, 100, 100));
    for (std::size_t call = 1; call <= 9; ++call) {
        RecordingGenerator target;
        target.FailAt(call);
        recording.SelectBand(0, 100);
        EXPECT_EQ(recording.Replay(target, BoxOf(0, 0, 100, 100)), -99) << call;
        EXPECT_EQ(target.GetLines().size(), call);
    }
}

// Equal consecutive strokes are stored once. Strokes that differ in any one property must stay distinct.
TEST(ORVPageRecordingTest, LinesThatDifferInOneThingStayTwo) {
    const std::array dashes{1.0, 2.0}, otherDashes{1.0, 3.0};
    ORVPrintStroke base;
    base.dashes = dashes;
    const auto with = [&](auto change) {
        ORVPrintStroke stroke = base;
        change(stroke);
        return stroke;
    };
    const ORVPrintStroke others[]{
        with([](ORVPrintStroke& s) { s.colour.blue = 9; }),
        with([](ORVPrintStroke& s) { s.colour.opacity = 9; }),
        with([](ORVPrintStroke& s) { s.width = 9.0; }),
        with([](ORVPrintStroke& s) { s.cap = ORVPrintStroke::Cap::kSquare; }),
        with([](ORVPrintStroke& s) { s.join = ORVPrintStroke::Join::kBevel; }),
        with([](ORVPrintStroke& s) { s.miterLimit = 9.0; }),
        with([&](ORVPrintStroke& s) { s.dashes = otherDashes; }),
        with([](ORVPrintStroke& s) { s.dashes = {}; }),
    };
    const ORVPrintPath path = RectanglePath(0, 0, 9, 9);
    for (const ORVPrintStroke& other : others) {
        RecordingGenerator direct;
        ORVPageRecording recording;
        for (const ORVPrintStroke* stroke :
             std::initializer_list<const ORVPrintStroke*>{&base, &other, &base}) {
            ASSERT_EQ(direct.DrawShape({path, {}, nullptr, stroke}), 1);
            ASSERT_EQ(recording.DrawShape({path, {}, nullptr, stroke}), 1);
        }
        recording.Finish(BoxOf(0, 0, 10, 10));
        EXPECT_EQ(Replayed(recording, BoxOf(0, 0, 10, 10)), direct.GetLines());
    }
}

}  // namespace
