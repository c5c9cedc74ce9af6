// SPDX-License-Identifier: Apache-2.0

// Posters: a page on several sheets.

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/generators/sheet/sheet_options.h"
#include "tests/generators/symbol_recorder.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(ORVSheetGeneratorTest, PrintsAPosterSheetBySheet) {
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(60.0, 60.0, 0.0, 10.0));  // no room for marks
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(110, 60)), 1);
    ASSERT_EQ(FillRectangle(sheets, 5, 5, 10, 10), 1);
    ASSERT_EQ(FillRectangle(sheets, 52, 5, 6, 10), 1);  // in the overlap
    ASSERT_EQ(FillRectangle(sheets, 100, 5, 10, 10), 1);
    ASSERT_EQ(sheets.EndPage(), 1);
    ASSERT_EQ(sheets.EndDocument(), 1);
    EXPECT_EQ(target.GetText(),
              "document \"t\" 0\n"
              "page 1 60x60\n"
              "clip 0,0 to 60,60\n"
              "fill #000000 M5,5 L15,5 L15,15 L5,15 Z\n"
              "fill #000000 M52,5 L58,5 L58,15 L52,15 Z\n"
              "end clip\n"
              "end page\n"
              "page 2 60x60\n"
              "clip 0,0 to 60,60\n"
              "fill #000000 M2,5 L8,5 L8,15 L2,15 Z\n"
              "fill #000000 M50,5 L60,5 L60,15 L50,15 Z\n"
              "end clip\n"
              "end page\n"
              "end document\n");
}

TEST(ORVSheetGeneratorTest, ReportsALinkTargetOnTheFirstSheetThatShowsIt) {
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(60.0, 60.0, 0.0, 10.0));
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    ASSERT_EQ(sheets.BeginPage(PageInfo(160, 60)), 1);
    ORVPrintGroup group;
    group.id = "a";
    group.linkElementId = "b";
    group.isLinkTarget = true;
    ASSERT_EQ(sheets.BeginGroup(group), 1);
    ASSERT_EQ(FillRectangle(sheets, 70, 5, 80, 10), 1);
    ASSERT_EQ(sheets.EndGroup(), 1);
    ASSERT_EQ(sheets.EndPage(), 1);
    std::vector<std::string> lines;
    for (const std::string& line : target.GetLines())
        if (line.starts_with("page") || line.starts_with("group")) lines.push_back(line);
    EXPECT_THAT(lines, ElementsAre("page 1 60x60", "page 2 60x60", "group #a ->#b target", "page 3 60x60",
                                   "group #a ->#b"));
}

TEST(ORVSheetGeneratorTest, LabelsAndTrimsTheSheetsOfAPoster) {
    for (const unsigned int pages : {1U, 2U}) {
        SymbolRecorder target;
        ORVSheetGenerator sheets(target, Poster(120.0, 120.0, 10.0, 0.0));
        ASSERT_EQ(sheets.BeginDocument({"t", pages}), 1);
        ORVPrintPageInfo info = PageInfo(150, 130, pages);
        info.id = "p";
        info.title = "Title";
        ASSERT_EQ(sheets.BeginPage(info), 1);
        ASSERT_EQ(sheets.EndPage(), 1);
        std::vector<std::string> begun;
        for (const std::string& line : target.lines)
            if (line.starts_with("page")) begun.push_back(line);
        const std::string before = pages == 1 ? "" : "2-";
        EXPECT_THAT(begun, ElementsAre("page 1 #p Title label " + before + "A1 trim 10,10 110,110",
                                       "page 2 label " + before + "A2 trim 10,10 60,110",
                                       "page 3 label " + before + "B1 trim 10,10 110,40",
                                       "page 4 label " + before + "B2 trim 10,10 60,40"));
    }
}

/// Returns the strokes and texts drawn outside of clips, which are the marks.
std::vector<std::string> Marks(const RecordingGenerator& target) {
    std::vector<std::string> marks;
    int depth = 0;
    for (const std::string& line : target.GetLines()) {
        if (line.starts_with("clip")) ++depth;
        if (line.starts_with("end clip")) --depth;
        if (depth == 0 && (line.starts_with("stroke") || line.starts_with("text"))) marks.push_back(line);
    }
    return marks;
}

TEST(ORVSheetGeneratorTest, DrawsMarksOutsideOfTheDrawing) {
    const double mm = kPaperMillimetre;
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(100.0 * mm, 100.0 * mm, 10.0 * mm, 10.0 * mm));
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    DrawFilledPage(sheets, 150.0 * mm, 80.0 * mm);
    const std::vector<std::string> marks = Marks(target);
    ASSERT_EQ(marks.size(), 4U);  // lines and a label on each of two sheets
    EXPECT_THAT(marks[1], testing::StartsWith("text \"A1\""));
    EXPECT_THAT(marks[3], testing::StartsWith("text \"A2\""));
    // The two lines at the upper left corner: 5 mm long, 1 mm away from it.
    EXPECT_THAT(marks[0], HasSubstr(" M31.89,35.433 L14.173,35.433 M35.433,31.89 L35.433,14.173"));
    // Circles in the middle of the overlap, with a radius of 1.2 mm: 5 mm inside the right edge of the first
    // sheet and the left edge of the second, above and below.
    EXPECT_THAT(marks[0], HasSubstr(" M305.433,24.803 C"));  // 85 + 1.2, 10 - 3 mm
    EXPECT_THAT(marks[0], Not(HasSubstr(" M57.402,24.803 C")));
    EXPECT_THAT(marks[2], HasSubstr(" M57.402,24.803 C"));  // 15 + 1.2 mm
    EXPECT_EQ(std::count(marks[0].begin(), marks[0].end(), 'Z'), 2);
}

TEST(ORVSheetGeneratorTest, LeavesMarksOutWhereThereIsNoRoom) {
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(60.0, 60.0, 3.0, 10.0));
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    DrawFilledPage(sheets, 98.0, 54.0);
    EXPECT_THAT(Marks(target), ElementsAre());
}

TEST(ORVSheetGeneratorTest, RefusesPostersOfTooManySheets) {
    RecordingGenerator target;
    ORVSheetGenerator sheets(target, Poster(60.0, 60.0, 0.0, 10.0));
    ASSERT_EQ(sheets.BeginDocument({"t", 1}), 1);
    EXPECT_EQ(sheets.BeginPage(PageInfo(50 * 101, 50 * 101)), kPageTooLarge);
    EXPECT_THAT(sheets.GetError(), HasSubstr("page 1 would take too many sheets"));
    EXPECT_EQ(sheets.BeginPage(PageInfo(1e300, 1e300)), kPageTooLarge);
    EXPECT_EQ(sheets.EndDocument(), 1);
    EXPECT_THAT(target.GetLines(), Not(Contains(testing::StartsWith("page"))));
}

}  // namespace
