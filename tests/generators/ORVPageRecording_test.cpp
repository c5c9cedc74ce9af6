#include "generators/common/ORVPageRecording.h"

#include <gmock/gmock.h>

#include <array>

#include "tests/generators/drawing_calls.h"
#include "tests/generators/symbol_recorder.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Every call there is. Temporary objects: the recording keeps what it needs.
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
}

ORVMathBox2D Box(double xMin, double yMin, double xMax, double yMax) {
    ORVMathBox2D box;
    box.Add({xMin, yMin});
    box.Add({xMax, yMax});
    return box;
}

/// Lines of what a part shows.
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
    recording.Finish(Box(0, 0, 100, 100));
    EXPECT_EQ(Replayed(recording, Box(0, 0, 100, 100)), direct.GetLines());
    EXPECT_EQ(Replayed(recording, Box(0, 0, 100, 100)), direct.GetLines());  // as often as wanted
}

TEST(ORVPageRecordingTest, LeavesOutWhatLiesOutside) {
    ORVPageRecording recording;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) ASSERT_EQ(FillRectangle(recording, 10 * x, 10 * y, 8, 8), 1);
    recording.Finish(Box(0, 0, 30, 30));
    EXPECT_THAT(Replayed(recording, Box(11, 21, 13, 23)),
                ElementsAre("fill #000000 M10,20 L18,20 L18,28 L10,28 Z"));
    EXPECT_EQ(Replayed(recording, Box(0, 0, 12, 30)).size(), 6U);
    EXPECT_EQ(Replayed(recording, Box(8, 0, 9, 5)).size(), 1U);  // touching is enough
    EXPECT_THAT(Replayed(recording, Box(8.5, 8.5, 9.5, 9.5)), IsEmpty());
}

TEST(ORVPageRecordingTest, CountsTheReachOfPens) {
    struct Row {
        ORVPrintStroke::Cap cap;
        ORVPrintStroke::Join join;
        ORVMathAffine2D toPage;
        double reach;  // upwards, on the page
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
        recording.Finish(Box(0, 0, 100, 200));
        EXPECT_EQ(Replayed(recording, Box(20, 0, 30, 100 - row.reach + 0.01)).size(), 1U) << row.reach;
        EXPECT_THAT(Replayed(recording, Box(20, 0, 30, 100 - row.reach - 0.01)), IsEmpty()) << row.reach;
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
    recording.Finish(Box(0, 0, 50, 20));
    EXPECT_THAT(Replayed(recording, Box(5, 0, 15, 10)),
                ElementsAre("group #outer", "fill #000000 M0,0 L10,0 L10,10 L0,10 Z", "end group",
                            "group #empty target", "end group"));
    EXPECT_THAT(Replayed(recording, Box(25, 0, 30, 10)),
                ElementsAre("group #outer", "group #inner target", "fill #000000 M20,0 L50,0 L50,10 L20,10 Z",
                            "end group", "end group"));
    EXPECT_THAT(Replayed(recording, Box(30, 0, 40, 10)),
                ElementsAre("group #outer", "group #inner", "fill #000000 M20,0 L50,0 L50,10 L20,10 Z",
                            "end group", "end group"));
    EXPECT_THAT(Replayed(recording, Box(0, 15, 40, 20)), IsEmpty());
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
    recording.Finish(Box(0, 0, 50, 20));
    EXPECT_THAT(Replayed(recording, Box(0, 0, 10, 10)),
                ElementsAre("group #outer", "group #hidden target", "end group", "end group"));
    EXPECT_THAT(Replayed(recording, Box(0, 0, 10, 10)), IsEmpty());
}

TEST(ORVPageRecordingTest, EndsWhatADrawingLeftOpen) {
    ORVPageRecording recording;
    ORVPrintGroup group;
    group.id = "a";
    ASSERT_EQ(recording.BeginGroup(group), 1);
    ASSERT_EQ(recording.BeginGroup(group), 1);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 5, 5), 1);
    recording.Finish(Box(0, 0, 10, 10));
    EXPECT_THAT(
        Replayed(recording, Box(0, 0, 10, 10)),
        ElementsAre("group #a", "group #a", "fill #000000 M0,0 L5,0 L5,5 L0,5 Z", "end group", "end group"));
}

/// Two symbols, the second one made of the first: a square of 1 at (1, 1) and at (3, 1).
void DrawSymbols(ORVPageRecording& recording) {
    const int inner = 0, outer = 0;
    ASSERT_EQ(recording.BeginSymbol({&outer, {2, 0, 0, 2, 10, 0}}), ORVPrintGenerator::kDrawSymbol);
    ASSERT_EQ(recording.BeginSymbol({&inner, {1, 0, 0, 1, 1, 1}}), ORVPrintGenerator::kDrawSymbol);
    ASSERT_EQ(FillRectangle(recording, 0, 0, 1, 1), 1);
    ASSERT_EQ(recording.EndSymbol(), 1);
    ASSERT_EQ(recording.BeginSymbol({&inner, {1, 0, 0, 1, 3, 1}}), ORVPrintGenerator::kSymbolKnown);
    ASSERT_EQ(recording.EndSymbol(), 1);
    ASSERT_EQ(recording.BeginSymbol({&outer, {1, 0, 0, 1, 50, 0}}), ORVPrintGenerator::kSymbolKnown);
    recording.Finish(Box(0, 0, 100, 100));
}

TEST(ORVPageRecordingTest, KeepsSymbolsOnce) {
    ORVPageRecording recording;
    DrawSymbols(recording);
    SymbolRecorder target;
    recording.SelectBand(0, 100);
    ASSERT_EQ(recording.Replay(target, Box(0, 0, 100, 100)), 1);
    EXPECT_THAT(target.lines,
                ElementsAre("symbol 1 at 10,0 x 2", "symbol 2 at 1,1 x 1", "shape at 0,0 x 1", "end symbol",
                            "known 2 at 3,1 x 1", "end symbol", "known 1 at 50,0 x 1"));
    target.lines.clear();
    ASSERT_EQ(recording.Replay(target, Box(49, 0, 100, 100)), 1);
    EXPECT_THAT(target.lines, ElementsAre("known 1 at 50,0 x 1"));
}

TEST(ORVPageRecordingTest, DrawsSymbolsOutForTargetsWithout) {
    ORVPageRecording recording;
    DrawSymbols(recording);
    EXPECT_THAT(
        Replayed(recording, Box(0, 0, 100, 100)),
        ElementsAre("fill #000000 M12,2 L14,2 L14,4 L12,4 Z", "fill #000000 M16,2 L18,2 L18,4 L16,4 Z",
                    "fill #000000 M51,1 L52,1 L52,2 L51,2 Z", "fill #000000 M53,1 L54,1 L54,2 L53,2 Z"));
    EXPECT_THAT(Replayed(recording, Box(30, 0, 40, 100)), IsEmpty());
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
    recording.Finish(Box(0, 0, 10, 10));
    EXPECT_EQ(Replayed(recording, Box(0, 0, 10, 10)).size(), 1U);
}

TEST(ORVPageRecordingTest, PassesOnFailures) {
    ORVPageRecording recording;
    DrawEverything(recording);
    recording.Finish(Box(0, 0, 100, 100));
    for (std::size_t call = 1; call <= 9; ++call) {
        RecordingGenerator target;
        target.FailAt(call);
        recording.SelectBand(0, 100);
        EXPECT_EQ(recording.Replay(target, Box(0, 0, 100, 100)), -99) << call;
        EXPECT_EQ(target.GetLines().size(), call);
    }
}

// Lines that follow each other share what they have in common.
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
        recording.Finish(Box(0, 0, 10, 10));
        EXPECT_EQ(Replayed(recording, Box(0, 0, 10, 10)), direct.GetLines());
    }
}

}  // namespace
