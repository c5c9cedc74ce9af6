// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/ORVSheetGenerator.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/generators/sheet/sheet_options.h"
#include "tests/generators/symbol_recorder.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(ORVSheetGeneratorTest, LeavesEverythingAloneWhenNothingIsAsked) {
    RecordingGenerator direct, target;
    ORVSheetGenerator sheets(target, {});
    for (ORVPrintGenerator* generator : std::initializer_list<ORVPrintGenerator*>{&direct, &sheets}) {
        ASSERT_EQ(generator->BeginDocument({"title", 1}), 1);
        DrawFilledPage(*generator, 123.25, 45.5);
        ASSERT_EQ(generator->EndDocument(), 1);
    }
    EXPECT_EQ(target.GetText(), direct.GetText());
}

TEST(ORVSheetGeneratorTest, PlacesAllKindsOfContent) {
    RecordingGenerator target;
    ORVSheetOptions options = OnPaper(100.0, 100.0, 10.0);
    options.layout.scale = {ORVSheetScale::Kind::kFit, 1.0};
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 20)), 1);
    const auto image = PlainImage(1, 2, {});
    ORVPrintFill fill;
    fill.pattern = image.get();
    fill.patternToPage = {3, 0, 0, 3, 1, 1};
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1), clip = RectanglePath(1, 1, 2, 2);
    ASSERT_EQ(sheets.DrawShape({path, {1, 0, 0, 1, 5, 5}, &fill, nullptr}), 1);
    const ORVTextLayout layout = ORVLayoutText("x", {});
    const ORVPrintFill black;
    ASSERT_EQ(sheets.DrawText({layout, "x", {1, 0, 0, -1, 3, 4}, &black, nullptr, &clip}), 1);
    ASSERT_EQ(sheets.DrawImage({*image, {8, 0, 0, 9, 1, 2}}), 1);
    ORVMathBox2D box;
    box.Add({0, 0});
    box.Add({10, 5});
    ASSERT_EQ(sheets.BeginClip(box), 1);
    ASSERT_EQ(sheets.EndClip(), 1);
    ASSERT_EQ(sheets.EndPage(), 1);
    ASSERT_EQ(sheets.EndDocument(), 1);
    EXPECT_EQ(target.GetText(),
              "document \"t\" 1\n"
              "page 1 100x100\n"
              "clip 10,30 to 90,70\n"
              "fill pattern@255[6 0 0 6 12 32] M20,40 L22,40 L22,42 L20,42 Z\n"
              "text \"x\" [2 0 0 -2 16 38] fill #000000 clip M12,32 L16,32 L16,36 L12,36 Z\n"
              "image 1x2 [16 0 0 18 12 34]\n"
              "clip 10,30 to 30,40\n"
              "end clip\n"
              "end clip\n"
              "end page\n"
              "end document\n");
}

/// Draws a shape with gradients, in a clip and a masked layer.
void DrawComposition(ORVPrintGenerator& generator) {
    const std::array<ORVPrintGradientStop, 2> stops{{{0.0, {255, 0, 0, 255}}, {1.0, {255, 255, 255, 255}}}};
    const ORVPrintGradient gradient = Gradient(stops, {10, 0, 0, 10, 1, 1});
    ORVPrintFill fill;
    fill.gradient = &gradient;
    ORVPrintStroke stroke;
    stroke.gradient = &gradient;
    stroke.width = 2.0;
    const ORVPrintPath path = RectanglePath(0, 0, 10, 10);
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.blend = ORVPrintBlendMode::kMultiply;
    layer.hasMask = true;
    layer.box = BoxOf(1, 1, 11, 11);
    ASSERT_EQ(generator.BeginClipPath({path, {1, 0, 0, 1, 1, 1}, true}), 1);
    ASSERT_EQ(generator.BeginLayer(layer), 1);
    const int answer = generator.BeginMask({ORVPrintMask::Kind::kLuminance, BoxOf(2, 2, 10, 10)});
    if (answer == 1) {
        ASSERT_EQ(FillRectangle(generator, 0, 0, 20, 10, {0, 255, 0, 255}), 1);
        ASSERT_EQ(generator.EndMask(), 1);
    }
    ASSERT_EQ(generator.DrawShape({path, {1, 0, 0, 1, 1, 1}, &fill, &stroke}), 1);
    ASSERT_EQ(generator.EndLayer(), 1);
    ASSERT_EQ(generator.EndClipPath(), 1);
}

TEST(ORVSheetGeneratorTest, PlacesGradientsClipsLayersAndMasks) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.layout.scale = {ORVSheetScale::Kind::kFactor, 2.0};
    ORVSheetGenerator sheets(target, options);
    target.SetPowers(ORVPrintGenerator::kMasks);
    EXPECT_EQ(sheets.GetPowers(), target.GetPowers());
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
    DrawComposition(sheets);
    const std::string gradient = "linear 0,0 1,0 [20 0 0 20 2 2] 0 #ff0000 1 #ffffff";
    EXPECT_THAT(target.GetLines(),
                ElementsAre("document \"\" 0", "page 1 80x80", "clip path eo M2,2 L22,2 L22,22 L2,22 Z",
                            "layer 0.5 multiply masked 2,2 to 22,22", "mask luminance 4,4 to 20,20",
                            "fill #00ff00 M0,0 L40,0 L40,20 L0,20 Z", "end mask",
                            "fill " + gradient + " stroke " + gradient + " w2 M2,2 L22,2 L22,22 L2,22 Z",
                            "end layer", "end clip path"));
}

/// Draws a red square and moves it by a filter.
void DrawFiltered(ORVPrintGenerator& generator) {
    const std::vector<ORVPrintFilterStep> steps{
        {ORVFilterOffset{40.0, 0.0}, {ORVPrintFilterStep::kSource}, false, BoxOf(0, 0, 100, 100)}};
    ASSERT_EQ(generator.BeginFilter({steps, BoxOf(0, 0, 100, 100), {}, 0}), 1);
    ASSERT_EQ(FillRectangle(generator, 5, 5, 10, 10, {255, 0, 0, 255}), 1);
    ASSERT_EQ(generator.EndFilter(), 1);
}

TEST(ORVSheetGeneratorTest, PlacesFilters) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.layout.scale = {ORVSheetScale::Kind::kFactor, 2.0};
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(100, 100)), 1);
    DrawFiltered(sheets);
    const std::vector<std::string> lines(target.GetLines().begin() + 2, target.GetLines().end());
    EXPECT_THAT(lines, ElementsAre("filter 3 [2 0 0 2 0 0]", "fill #ff0000 M10,10 L30,10 L30,30 L10,30 Z",
                                   "end filter"));
}

TEST(ORVSheetGeneratorTest, FiltersConvertTheirResultsToTheInks) {
    // The content keeps its colours. A matrix is appended, and for black and white a step function.
    for (const auto& [mode, last] : {std::pair{ORVColourMode::kGrey, "filter 3 9 [1 0 0 1 0 0]"},
                                     {ORVColourMode::kMono, "filter 3 9 10 [1 0 0 1 0 0]"}}) {
        RecordingGenerator target;
        ORVSheetOptions options;
        options.colourMode = mode;
        ORVSheetGenerator sheets(target, options);
        ASSERT_EQ(sheets.BeginDocument({}), 1);
        ASSERT_EQ(sheets.BeginPage(PageInfo(100, 100)), 1);
        DrawFiltered(sheets);
        const std::vector<std::string> lines(target.GetLines().begin() + 2, target.GetLines().end());
        EXPECT_THAT(lines, ElementsAre(last, "fill #ff0000 M5,5 L15,5 L15,15 L5,15 Z", "end filter"));
    }
}

TEST(ORVSheetGeneratorTest, SheetsOfAPosterHaveWhatFiltersMoveThere) {
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(60.0, 60.0, 0.0, 10.0));
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(100, 50)), 1);
    DrawFiltered(sheets);
    ASSERT_EQ(sheets.EndPage(), 1);
    // The content is on the first sheet, but is also drawn on sheets to which the filter moves it.
    std::size_t filters = 0;
    bool isOnLast = false;
    for (const std::string& line : target.GetLines()) {
        if (line.starts_with("page")) isOnLast = false;
        if (!line.starts_with("filter")) continue;
        ++filters;
        isOnLast = true;
    }
    EXPECT_GE(filters, 1U);
    EXPECT_EQ(target.GetDrawn().size() >= filters, true);
    EXPECT_TRUE(isOnLast);
}

TEST(ORVSheetGeneratorTest, SheetsOfAPosterHaveTheirPartsOfLayers) {
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(60.0, 60.0, 0.0, 10.0));
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(110, 60)), 1);
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.box = BoxOf(0, 0, 110, 60);
    ASSERT_EQ(sheets.BeginLayer(layer), 1);
    ASSERT_EQ(FillRectangle(sheets, 5, 5, 10, 10), 1);
    ASSERT_EQ(FillRectangle(sheets, 100, 5, 10, 10), 1);
    ASSERT_EQ(sheets.EndLayer(), 1);
    layer.box = BoxOf(70, 0, 80, 60);
    ASSERT_EQ(sheets.BeginLayer(layer), 1);
    ASSERT_EQ(FillRectangle(sheets, 0, 20, 110, 10), 1);
    ASSERT_EQ(sheets.EndLayer(), 1);
    ASSERT_EQ(sheets.EndPage(), 1);
    EXPECT_THAT(
        target.GetLines(),
        ElementsAre("document \"t\" 0", "page 1 60x60", "clip 0,0 to 60,60", "layer 0.5 normal 0,0 to 110,60",
                    "fill #000000 M5,5 L15,5 L15,15 L5,15 Z", "end layer", "end clip", "end page",
                    "page 2 60x60", "clip 0,0 to 60,60", "layer 0.5 normal -50,0 to 60,60",
                    "fill #000000 M50,5 L60,5 L60,15 L50,15 Z", "end layer", "layer 0.5 normal 20,0 to 30,60",
                    "fill #000000 M-50,20 L60,20 L60,30 L-50,30 Z", "end layer", "end clip", "end page"));
}

TEST(ORVSheetGeneratorTest, LayersHaveRoomForWiderLines) {
    for (const double factor : {1.0, 3.0}) {
        RecordingGenerator target;
        ORVSheetOptions options;
        options.strokeScale = factor;
        ORVSheetGenerator sheets(target, options);
        ASSERT_EQ(sheets.BeginDocument({}), 1);
        ASSERT_EQ(sheets.BeginPage(PageInfo(40, 30)), 1);
        ORVPrintLayer layer;
        layer.box = BoxOf(10, 10, 50, 20);
        ASSERT_EQ(sheets.BeginLayer(layer), 1);
        EXPECT_EQ(target.GetLines().back(),
                  factor == 1.0 ? "layer 1 normal 10,10 to 50,20" : "layer 1 normal 0,0 to 50,30");
    }
}

TEST(ORVSheetGeneratorTest, ConvertsGradientsButNotMasks) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.colourMode = ORVColourMode::kGrey;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
    DrawComposition(sheets);
    const std::vector<std::string> drawn = target.GetDrawn();
    ASSERT_EQ(drawn.size(), 2U);
    EXPECT_THAT(drawn[0], HasSubstr("fill #00ff00 "));
    EXPECT_THAT(drawn[1], HasSubstr("[10 0 0 10 1 1] 0 #7f7f7f 0.125 #8"));
    EXPECT_THAT(drawn[1], HasSubstr(" 1 #ffffff stroke linear"));
}

TEST(ORVSheetGeneratorTest, InBlackAndWhiteLayersAreOpaque) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.colourMode = ORVColourMode::kMono;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
    ORVPrintLayer layer;
    layer.opacity = 0.25;
    layer.box = BoxOf(0, 0, 40, 40);
    ASSERT_EQ(sheets.BeginLayer(layer), 1);
    const int key = 0;
    EXPECT_EQ(sheets.BeginSymbol({&key, {}}), ORVPrintGenerator::kNoSymbols);
    EXPECT_EQ(WriteText(sheets, "x", 1, 1), 1);
    EXPECT_EQ(FillRectangle(sheets, 0, 0, 1, 1), 1);  // too light in this layer: left out
    const auto image = PlainImage(16, 16, {0, 0, 0, 255});
    EXPECT_EQ(sheets.DrawImage({*image, {}}), 1);
    ASSERT_EQ(sheets.EndLayer(), 1);
    EXPECT_EQ(FillRectangle(sheets, 0, 0, 1, 1), 1);
    layer.opacity = 0.0;
    ASSERT_EQ(sheets.BeginLayer(layer), 1);
    EXPECT_THAT(
        target.GetLines(),
        ElementsAre("document \"\" 0", "page 1 40x40", "layer 1 normal 0,0 to 40,40",
                    "text \"x\" [1 0 0 -1 1 1] fill #000000", "image 16x16 [1 0 0 1 0 0]", "end layer",
                    "fill #000000 M0,0 L1,0 L1,1 L0,1 Z", "layer 0 normal 0,0 to 40,40"));
}

TEST(ORVSheetGeneratorTest, PlacesSymbolsAndLeavesTheirContent) {
    SymbolRecorder target;
    ORVSheetOptions options = OnPaper(100.0, 100.0, 10.0);
    options.layout.scale = {ORVSheetScale::Kind::kFit, 1.0};
    options.strokeScale = 2.0;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
    const int key = 0;
    ASSERT_EQ(sheets.BeginSymbol({&key, {1, 0, 0, 1, 5, 6}}), ORVPrintGenerator::kDrawSymbol);
    ASSERT_EQ(FillRectangle(sheets, 0, 0, 1, 1), 1);
    ASSERT_EQ(sheets.EndSymbol(), 1);
    ASSERT_EQ(FillRectangle(sheets, 0, 0, 1, 1), 1);
    ASSERT_EQ(sheets.BeginSymbol({&key, {1, 0, 0, 1, 7, 8}}), ORVPrintGenerator::kSymbolKnown);
    EXPECT_THAT(target.lines, ElementsAre("page 1", "symbol 1 at 20,22 x 2", "shape at 0,0 x 1", "end symbol",
                                          "shape at 10,10 x 2", "known 1 at 24,26 x 2"));
}

TEST(ORVSheetGeneratorTest, DrawsSymbolsOutWhenLinesDependOnTheirPlace) {
    SymbolRecorder target;
    ORVSheetOptions options;
    options.leastLineWidth = 1.0;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
    const int key = 0;
    EXPECT_EQ(sheets.BeginSymbol({&key, {}}), ORVPrintGenerator::kNoSymbols);
}

TEST(ORVSheetGeneratorTest, WidensLines) {
    struct Row {
        double strokeScale, least, width;
        ORVMathAffine2D toPage;
        const char* expected;
    };
    // The sheet shows the page at twice its size.
    for (const Row& row :
         {Row{3.0, 0.0, 1.5, {}, "w4.5"}, Row{1.0, 0.0, 1.5, {}, "w1.5"}, Row{1.0, 4.0, 1.0, {}, "w2 "},
          Row{1.0, 4.0, 3.0, {}, "w3 "}, Row{1.0, 4.0, 1.0, {0.5, 0, 0, 0.5, 0, 0}, "w4 "},
          Row{1.0, 4.0, 1.0, {4, 0, 0, 0.25, 0, 0}, "w2 "}, Row{0.5, 4.0, 3.0, {}, "w2 "}}) {
        RecordingGenerator target;
        ORVSheetOptions options;
        options.layout.scale = {ORVSheetScale::Kind::kFactor, 2.0};
        options.strokeScale = row.strokeScale;
        options.leastLineWidth = row.least;
        ORVSheetGenerator sheets(target, options);
        ASSERT_EQ(sheets.BeginDocument({}), 1);
        ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
        ORVPrintPath path;
        path.MoveTo({0, 0});
        path.LineTo({1, 0});
        ORVPrintStroke stroke;
        stroke.width = row.width;
        ASSERT_EQ(sheets.DrawShape({path, row.toPage, nullptr, &stroke}), 1);
        EXPECT_THAT(target.GetDrawn().at(0), HasSubstr(row.expected));
    }
}

TEST(ORVSheetGeneratorTest, ConvertsColoursOfAllContent) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.colourMode = ORVColourMode::kMono;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40, 40)), 1);
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    ORVPrintFill yellow, faint;
    yellow.colour = {255, 255, 0, 255};
    faint.colour = {255, 255, 0, 50};
    ORVPrintStroke stroke;
    stroke.colour = {255, 255, 0, 50};
    ASSERT_EQ(sheets.DrawShape({path, {}, &yellow, &stroke}), 1);
    ASSERT_EQ(sheets.DrawShape({path, {}, &faint, &stroke}), 1);
    ASSERT_EQ(sheets.DrawShape({path, {}, &faint, nullptr}), 1);
    const ORVTextLayout layout = ORVLayoutText("x", {});
    ASSERT_EQ(sheets.DrawText({layout, "x", {}, &yellow, nullptr, nullptr}), 1);
    const std::vector<std::string> drawn = target.GetDrawn();
    ASSERT_EQ(drawn.size(), 3U);
    EXPECT_THAT(drawn[0], HasSubstr("fill #ffffff stroke #000000 w1"));
    EXPECT_THAT(drawn[1], testing::StartsWith("stroke #000000 w1"));
    EXPECT_THAT(drawn[2], HasSubstr("fill #000000"));
}

TEST(ORVSheetGeneratorTest, PutsSeveralPagesOnASheet) {
    RecordingGenerator target;
    ORVSheetOptions options = OnPaper(100.0, 100.0);
    options.layout.pagesPerSheet = 2;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 3}), 1);
    for (unsigned int page = 1; page <= 3; ++page) DrawFilledPage(sheets, 40.0, 20.0, page);
    ASSERT_EQ(sheets.EndDocument(), 1);
    const double gutter = 4.0 * kPaperMillimetre, height = (100.0 - gutter) / 2.0;
    RecordingGenerator expected;  // formats the expected numbers
    const auto cell = [&](double top) {
        ORVMathBox2D box;
        const double scale = height / 20.0, left = (100.0 - 40.0 * scale) / 2.0;
        box.Add({left, top});
        box.Add({left + 40.0 * scale, top + height});
        ASSERT_EQ(expected.BeginClip(box), 1);
        ASSERT_EQ(FillRectangle(expected, left, top, 40.0 * scale, height), 1);
        ASSERT_EQ(expected.EndClip(), 1);
    };
    ASSERT_EQ(expected.BeginDocument({"t", 2}), 1);
    ASSERT_EQ(expected.BeginPage(PageInfo(100, 100, 1)), 1);
    cell(0.0);
    cell(height + gutter);
    ASSERT_EQ(expected.EndPage(), 1);
    ASSERT_EQ(expected.BeginPage(PageInfo(100, 100, 2)), 1);
    cell(0.0);
    ASSERT_EQ(expected.EndPage(), 1);
    ASSERT_EQ(expected.EndDocument(), 1);
    EXPECT_EQ(target.GetText(), expected.GetText());
}

TEST(ORVSheetGeneratorTest, ASheetOfSeveralPagesEndsOnceWhenItIsFull) {
    RecordingGenerator target;
    ORVSheetOptions options = OnPaper(100.0, 100.0);
    options.layout.pagesPerSheet = 2;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 2}), 1);
    for (unsigned int page = 1; page <= 2; ++page) DrawFilledPage(sheets, 40.0, 20.0, page);
    ASSERT_EQ(sheets.EndDocument(), 1);
    EXPECT_EQ(std::count(target.GetLines().begin(), target.GetLines().end(), "end page"), 1);
}

TEST(ORVSheetGeneratorTest, ASheetWhosePageBrokeOffIsNotEnded) {
    RecordingGenerator target;
    ORVSheetOptions options = OnPaper(100.0, 100.0);
    options.layout.pagesPerSheet = 4;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 2}), 1);
    DrawFilledPage(sheets, 40.0, 40.0, 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(40.0, 40.0, 2)), 1);
    ASSERT_EQ(sheets.EndDocument(), 1);
    EXPECT_THAT(target.GetLines(), Not(Contains("end page")));
    EXPECT_EQ(target.GetLines().back(), "end document");
}

TEST(ORVSheetGeneratorTest, ASheetOfSeveralPagesHasNoTrimOrLabelOfItsFirst) {
    SymbolRecorder target;
    ORVSheetOptions options = OnPaper(100.0, 100.0);
    options.layout.pagesPerSheet = 2;
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ORVPrintPageInfo info = PageInfo(50, 50);
    info.title = "Title";
    info.label = "A1";
    info.trim.Add({1, 1});
    info.trim.Add({9, 9});
    ASSERT_EQ(sheets.BeginPage(info), 1);
    ASSERT_EQ(sheets.EndPage(), 1);
    ASSERT_EQ(sheets.EndDocument(), 1);
    EXPECT_THAT(target.lines, Contains("page 1 Title"));
}

TEST(ORVSheetGeneratorTest, RefusesPagesThatCannotBeScaled) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.layout.scale = {ORVSheetScale::Kind::kFactor, 1e4};
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    EXPECT_EQ(sheets.BeginPage(PageInfo(1e307, 1.0)), kPageTooLarge);
    EXPECT_THAT(sheets.GetError(), HasSubstr("page 1"));
}

TEST(ORVSheetGeneratorTest, LeavesOutWhatScalingTakesPastAllNumbers) {
    RecordingGenerator target;
    ORVSheetOptions options;
    options.layout.scale = {ORVSheetScale::Kind::kFactor, 1e4};
    ORVSheetGenerator sheets(target, options);
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(1.0, 1.0)), 1);
    const ORVPrintPath path = RectanglePath(0, 0, 1, 1);
    const ORVPrintFill fill;
    EXPECT_EQ(sheets.DrawShape({path, {1e307, 0, 0, 1e-307, 0, 0}, &fill, nullptr}), 1);
    EXPECT_TRUE(target.GetDrawn().empty());
}

// Whichever call of the target fails, its status is returned and the document is ended.
TEST(ORVSheetGeneratorTest, PassesOnFailures) {
    ORVSheetOptions shared = OnPaper(100.0, 100.0);
    shared.layout.pagesPerSheet = 2;
    for (const ORVSheetOptions& options :
         {OnPaper(100.0, 100.0, 5.0), shared, Poster(60.0, 60.0, 12.0, 10.0)})
        for (std::size_t call = 1;; ++call) {
            ASSERT_LT(call, 100U);
            RecordingGenerator target;
            target.FailAt(call);
            ORVSheetGenerator sheets(target, options);
            int result = sheets.BeginDocument({"t", 1});
            if (result != 1) continue;
            result = sheets.BeginPage(PageInfo(110, 60));
            if (result == 1) result = FillRectangle(sheets, 0, 0, 110, 60);
            if (result == 1) result = sheets.EndPage();
            const int ended = sheets.EndDocument();
            if (result == 1) result = ended;
            EXPECT_EQ(target.GetLines().back().substr(0, 12), "end document");
            if (result == 1) break;  // the target received fewer calls than `call`
            EXPECT_EQ(result, -99);
        }
}

}  // namespace
