// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/sheet_layout.h"

#include <gmock/gmock.h>

#include <array>

#include "tests/support/named_rows.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

ORVSheetLayout OnPaper(double width, double height) {
    ORVSheetLayout layout;
    layout.paper = ORVPaperSize{width, height};
    return layout;
}

ORVSheetScale Factor(double factor) { return {ORVSheetScale::Kind::kFactor, factor}; }

std::array<double, 4> Sides(const ORVMathBox2D& box) { return {box.xMin, box.yMin, box.xMax, box.yMax}; }

void ExpectBox(const ORVMathBox2D& box, const std::array<double, 4>& expected) {
    const std::array<double, 4> sides = Sides(box);
    for (std::size_t i = 0; i < sides.size(); ++i) EXPECT_NEAR(sides[i], expected[i], 1e-6) << i;
}

TEST(SheetLayoutTest, LeavesThePageAloneByItself) {
    const auto sheet = ORVLayOutPage({}, 123.25, 45.5);
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->width, 123.25);
    EXPECT_EQ(sheet->height, 45.5);
    EXPECT_EQ(sheet->page.scale, 1.0);
    EXPECT_EQ(sheet->page.left, 0.0);
    EXPECT_EQ(sheet->page.top, 0.0);
    EXPECT_FALSE(sheet->page.isCut);
}

TEST(SheetLayoutTest, ASheetWithoutPaperIsThePageAndItsMargins) {
    ORVSheetLayout layout;
    layout.scale = Factor(0.5);
    layout.margins = ORVSheetMargins{1.0, 2.0, 3.0, 4.0};
    const auto sheet = ORVLayOutPage(layout, 100.0, 200.0);
    ASSERT_TRUE(sheet);
    EXPECT_DOUBLE_EQ(sheet->width, 50.0 + 6.0);
    EXPECT_DOUBLE_EQ(sheet->height, 100.0 + 4.0);
    ExpectBox(sheet->page.place, {4.0, 1.0, 54.0, 101.0});
    EXPECT_TRUE(sheet->page.isCut);
}

struct ScaleCase {
    const char* name;
    ORVSheetScale scale;
    double width, height;  // of the page
    double expected;
    std::array<double, 4> place;
};
class SheetScaleTest : public testing::TestWithParam<ScaleCase> {};
// Paper of 100 x 200 with margins of 10 on all sides: a printable area of 80 x 180.
TEST_P(SheetScaleTest, PlacesThePageInTheMiddle) {
    ORVSheetLayout layout = OnPaper(100.0, 200.0);
    layout.orientation = ORVSheetOrientation::kPortrait;
    layout.margins = ORVSheetMargins{10.0, 10.0, 10.0, 10.0};
    layout.scale = GetParam().scale;
    const auto sheet = ORVLayOutPage(layout, GetParam().width, GetParam().height);
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->width, 100.0);
    EXPECT_EQ(sheet->height, 200.0);
    EXPECT_DOUBLE_EQ(sheet->page.scale, GetParam().expected);
    ExpectBox(sheet->page.place, GetParam().place);
}
INSTANTIATE_TEST_SUITE_P(
    Layout, SheetScaleTest,
    testing::Values(
        ScaleCase{"SmallStaysNatural", {}, 40.0, 20.0, 1.0, {30.0, 90.0, 70.0, 110.0}},
        ScaleCase{"LargeIsReduced", {}, 160.0, 90.0, 0.5, {10.0, 77.5, 90.0, 122.5}},
        ScaleCase{"FitEnlarges", {ORVSheetScale::Kind::kFit}, 40.0, 20.0, 2.0, {10.0, 80.0, 90.0, 120.0}},
        ScaleCase{"FillCutsOff", {ORVSheetScale::Kind::kFill}, 40.0, 20.0, 9.0, {10.0, 10.0, 90.0, 190.0}},
        ScaleCase{"FactorEnlarges", Factor(1.5), 40.0, 20.0, 1.5, {20.0, 85.0, 80.0, 115.0}},
        ScaleCase{"FactorMayCutOff", Factor(1.0), 160.0, 20.0, 1.0, {10.0, 90.0, 90.0, 110.0}}),
    kNameOfRow);

struct AlignCase {
    double horizontal, vertical, left, top;
};
TEST(SheetLayoutTest, AlignsWithinTheMargins) {
    for (const AlignCase& row : {AlignCase{0.0, 0.0, 4.0, 1.0}, AlignCase{1.0, 0.0, 88.0, 1.0},
                                 AlignCase{0.0, 1.0, 4.0, 87.0}, AlignCase{0.5, 0.5, 46.0, 44.0}}) {
        ORVSheetLayout layout = OnPaper(100.0, 100.0);
        layout.margins = ORVSheetMargins{1.0, 2.0, 3.0, 4.0};
        layout.horizontalAlign = row.horizontal;
        layout.verticalAlign = row.vertical;
        const auto sheet = ORVLayOutPage(layout, 10.0, 10.0);
        ASSERT_TRUE(sheet);
        EXPECT_DOUBLE_EQ(sheet->page.left, row.left);
        EXPECT_DOUBLE_EQ(sheet->page.top, row.top);
    }
}

TEST(SheetLayoutTest, TurnsThePaperToThePage) {
    using O = ORVSheetOrientation;
    struct Row {
        double paperWidth, paperHeight;
        O orientation;
        double width, height;  // of the page
        double sheetWidth;
    };
    for (const Row& row : {Row{100, 200, O::kAuto, 30, 20, 200}, Row{100, 200, O::kAuto, 20, 30, 100},
                           Row{100, 200, O::kAuto, 30, 30, 100}, Row{200, 100, O::kAuto, 30, 30, 200},
                           Row{200, 100, O::kAuto, 20, 30, 100}, Row{100, 200, O::kLandscape, 20, 30, 200},
                           Row{100, 200, O::kPortrait, 30, 20, 100}, Row{200, 100, O::kPortrait, 30, 20, 100},
                           Row{200, 100, O::kLandscape, 20, 30, 200}}) {
        ORVSheetLayout layout = OnPaper(row.paperWidth, row.paperHeight);
        layout.orientation = row.orientation;
        const auto sheet = ORVLayOutPage(layout, row.width, row.height);
        ASSERT_TRUE(sheet);
        EXPECT_EQ(sheet->width, row.sheetWidth) << row.paperWidth << " for " << row.width;
    }
}

TEST(SheetLayoutTest, APageOfThePaperStaysAtItsSizeInSpiteOfRounding) {
    const auto sheet = ORVLayOutPage(OnPaper(744.0944881, 1052.3622047), 744.0944882, 1052.3622048);
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->page.scale, 1.0);
}

TEST(SheetLayoutTest, RefusesWhatCannotBeCounted) {
    ORVSheetLayout layout;
    layout.scale = Factor(1e4);
    EXPECT_FALSE(ORVLayOutPage(layout, 1e308, 1.0));
    layout = OnPaper(100.0, 100.0);
    layout.scale.kind = ORVSheetScale::Kind::kFit;
    EXPECT_FALSE(ORVLayOutPage(layout, 5e-324, 5e-324));
    layout.isPoster = true;
    layout.margins.emplace();
    layout.overlap = 0.0;
    layout.scale = Factor(1e4);
    EXPECT_FALSE(ORVLayOutPoster(layout, 1e308, 1.0));
}

TEST(SheetLayoutTest, SaysWhatCannotWork) {
    ORVSheetLayout layout;
    EXPECT_THAT(ORVCheckSheetLayout(layout), IsEmpty());
    layout = OnPaper(100.0 * kPaperMillimetre, 200.0 * kPaperMillimetre);
    EXPECT_THAT(ORVCheckSheetLayout(layout), IsEmpty());
    layout.margins = ORVSheetMargins{0.0, 50.0 * kPaperMillimetre, 0.0, 50.0 * kPaperMillimetre};
    EXPECT_THAT(ORVCheckSheetLayout(layout), HasSubstr("margins leave nothing of a sheet of 100 x 200 mm"));
    layout.orientation = ORVSheetOrientation::kLandscape;
    EXPECT_THAT(ORVCheckSheetLayout(layout), IsEmpty());
    layout.margins.reset();
    layout.isPoster = true;
    layout.overlap = 79.0 * kPaperMillimetre;
    EXPECT_THAT(ORVCheckSheetLayout(layout), IsEmpty());
    layout.overlap = 80.0 * kPaperMillimetre;
    EXPECT_THAT(ORVCheckSheetLayout(layout), HasSubstr("overlap of 80 mm leaves nothing"));
    layout = OnPaper(20.0, 20.0);
    layout.pagesPerSheet = 16;
    EXPECT_THAT(ORVCheckSheetLayout(layout), HasSubstr("no room for 16 pages"));
    layout.scale = Factor(0.0);
    EXPECT_THAT(ORVCheckSheetLayout(layout), HasSubstr("greater than 0"));
}

ORVSheetLayout Poster(double paperWidth, double paperHeight, double margin, double overlap) {
    ORVSheetLayout layout = OnPaper(paperWidth, paperHeight);
    layout.isPoster = true;
    layout.margins = ORVSheetMargins{margin, margin, margin, margin};
    layout.overlap = overlap;
    return layout;
}

struct PosterCase {
    const char* name;
    double width, height, overlap;
    double columns, rows;
};
class PosterTest : public testing::TestWithParam<PosterCase> {};
TEST_P(PosterTest, TakesNoMoreSheetsThanNeeded) {
    ORVSheetLayout layout = Poster(120.0, 220.0, 10.0, GetParam().overlap);  // shows 100 x 200
    layout.orientation = ORVSheetOrientation::kPortrait;
    const auto poster = ORVLayOutPoster(layout, GetParam().width, GetParam().height);
    ASSERT_TRUE(poster);
    EXPECT_EQ(poster->columns, GetParam().columns);
    EXPECT_EQ(poster->rows, GetParam().rows);
    // The sheets cover the page, and consecutive ones overlap as stated.
    const auto last = poster->Sheet(static_cast<unsigned int>(poster->rows) - 1,
                                    static_cast<unsigned int>(poster->columns) - 1);
    EXPECT_NEAR(last.place.xMax - last.left, GetParam().width, 1e-6);
    EXPECT_NEAR(last.place.yMax - last.top, GetParam().height, 1e-6);
    EXPECT_EQ(poster->Sheet(0, 0).left, 10.0);
    EXPECT_NEAR(poster->Sheet(0, 1).left, 10.0 - (100.0 - GetParam().overlap), 1e-9);
    EXPECT_NEAR(poster->Sheet(1, 0).top, 10.0 - (200.0 - GetParam().overlap), 1e-9);
}
INSTANTIATE_TEST_SUITE_P(Layout, PosterTest,
                         testing::Values(PosterCase{"Small", 50.0, 60.0, 10.0, 1.0, 1.0},
                                         PosterCase{"Exact", 100.0, 200.0, 10.0, 1.0, 1.0},
                                         PosterCase{"ExactMultiple", 300.0, 400.0, 0.0, 3.0, 2.0},
                                         PosterCase{"ExactWithOverlap", 190.0, 390.0, 10.0, 2.0, 2.0},
                                         PosterCase{"LittleMore", 190.1, 390.1, 10.0, 3.0, 3.0},
                                         PosterCase{"Wide", 1000.0, 10.0, 10.0, 11.0, 1.0}),
                         kNameOfRow);

TEST(PosterTest, TakesThePaperAsItNeedsFewerSheets) {
    const auto poster = ORVLayOutPoster(Poster(100.0, 200.0, 0.0, 0.0), 400.0, 100.0);
    ASSERT_TRUE(poster);
    EXPECT_EQ(poster->width, 200.0);
    EXPECT_EQ(poster->SheetCount(), 2.0);
}

TEST(PosterTest, LabelsRowsWithLettersAndColumnsWithNumbers) {
    EXPECT_EQ(ORVPoster::Label(0, 0), "A1");
    EXPECT_EQ(ORVPoster::Label(0, 11), "A12");
    EXPECT_EQ(ORVPoster::Label(1, 0), "B1");
    EXPECT_EQ(ORVPoster::Label(25, 0), "Z1");
    EXPECT_EQ(ORVPoster::Label(26, 0), "AA1");
    EXPECT_EQ(ORVPoster::Label(701, 0), "ZZ1");
    EXPECT_EQ(ORVPoster::Label(702, 0), "AAA1");
}

TEST(CellsTest, FillTheSheetByRowsAsSuitsThePage) {
    struct Row {
        unsigned int count;
        double width, height;
        double sheetWidth;
        std::size_t columns;  // cells in the first row
    };
    // Paper of 210 x 297 mm; pages of the same proportions, and wide ones.
    const double mm = kPaperMillimetre;
    for (const Row& row :
         {Row{2, 210, 297, 297 * mm, 2}, Row{4, 210, 297, 210 * mm, 2}, Row{2, 297, 210, 210 * mm, 1},
          Row{6, 297, 210, 210 * mm, 2}, Row{8, 210, 297, 297 * mm, 4}, Row{9, 210, 297, 210 * mm, 3},
          Row{16, 210, 297, 210 * mm, 4}, Row{3, 300, 100, 210 * mm, 1}}) {
        ORVSheetLayout layout = OnPaper(210.0 * mm, 297.0 * mm);
        layout.pagesPerSheet = row.count;
        const ORVSheetOfMany sheet = ORVLayOutCells(layout, row.width, row.height);
        ASSERT_EQ(sheet.cells.size(), row.count);
        EXPECT_DOUBLE_EQ(sheet.width, row.sheetWidth) << row.count << " of " << row.width;
        std::size_t columns = 0;
        for (const ORVMathBox2D& cell : sheet.cells)
            if (cell.yMin == sheet.cells.front().yMin) ++columns;
        EXPECT_EQ(columns, row.columns) << row.count << " of " << row.width;
        for (const ORVMathBox2D& cell : sheet.cells) {
            EXPECT_GE(cell.xMin, 0.0);
            EXPECT_GE(cell.yMin, 0.0);
            EXPECT_LE(cell.xMax, sheet.width + 1e-9);
            EXPECT_LE(cell.yMax, sheet.height + 1e-9);
            for (const ORVMathBox2D& other : sheet.cells)
                EXPECT_TRUE(&cell == &other || cell.xMax < other.xMin || other.xMax < cell.xMin ||
                            cell.yMax < other.yMin || other.yMax < cell.yMin);
        }
    }
}

TEST(CellsTest, ShowPagesAsLargeAsTheyCan) {
    ORVSheetLayout layout = OnPaper(100.0, 100.0);
    ORVMathBox2D cell;
    cell.Add({10.0, 20.0});
    cell.Add({50.0, 40.0});
    const auto fitted = ORVPlaceInCell(layout, cell, 10.0, 10.0);
    ASSERT_TRUE(fitted);
    EXPECT_DOUBLE_EQ(fitted->scale, 2.0);
    ExpectBox(fitted->place, {20.0, 20.0, 40.0, 40.0});
    layout.scale = Factor(1.0);
    layout.horizontalAlign = 0.0;
    const auto natural = ORVPlaceInCell(layout, cell, 10.0, 10.0);
    ASSERT_TRUE(natural);
    ExpectBox(natural->place, {10.0, 25.0, 20.0, 35.0});
}

TEST(CountSheetsTest, CountsPostersAndSharedSheets) {
    const std::vector<ORVPaperSize> pages{{100.0, 200.0}, {190.0, 390.0}, {10.0, 10.0}};
    EXPECT_EQ(ORVCountSheets(OnPaper(120.0, 220.0), pages), 3.0);
    EXPECT_EQ(ORVCountSheets(Poster(120.0, 220.0, 10.0, 10.0), pages), 1.0 + 4.0 + 1.0);
    ORVSheetLayout shared = OnPaper(120.0, 220.0);
    shared.pagesPerSheet = 2;
    EXPECT_EQ(ORVCountSheets(shared, pages), 2.0);
}

}  // namespace
