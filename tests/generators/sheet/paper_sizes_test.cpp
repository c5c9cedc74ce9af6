// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/paper_sizes.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>

namespace {

struct PaperCase {
    const char* text;
    double width, height;  // millimetres

    friend std::ostream& operator<<(std::ostream& out, const PaperCase& row) { return out << row.text; }
};
class FindPaperTest : public testing::TestWithParam<PaperCase> {};
TEST_P(FindPaperTest, GivesTheSize) {
    ORVPaperSize paper;
    ASSERT_TRUE(ORVFindPaper(GetParam().text, paper)) << GetParam().text;
    EXPECT_NEAR(paper.width, GetParam().width * 90.0 / 25.4, 1e-9) << GetParam().text;
    EXPECT_NEAR(paper.height, GetParam().height * 90.0 / 25.4, 1e-9) << GetParam().text;
}
INSTANTIATE_TEST_SUITE_P(
    Paper, FindPaperTest,
    testing::Values(PaperCase{"A4", 210, 297}, PaperCase{"a4", 210, 297}, PaperCase{"iso_a4", 210, 297},
                    PaperCase{"iso_a4_210x297mm", 210, 297}, PaperCase{"ISO_A4_210x297MM", 210, 297},
                    PaperCase{"4A0", 1682, 2378}, PaperCase{"2a0", 1189, 1682}, PaperCase{"A10", 26, 37},
                    PaperCase{"B5", 176, 250}, PaperCase{"JIS B5", 182, 257}, PaperCase{"jis-b5", 182, 257},
                    PaperCase{"jis_b5", 182, 257}, PaperCase{"C6", 114, 162}, PaperCase{"A3x4", 420, 1189},
                    PaperCase{"letter", 215.9, 279.4}, PaperCase{"na_letter_8.5x11in", 215.9, 279.4},
                    PaperCase{"Tabloid", 279.4, 431.8}, PaperCase{"ansi d", 558.8, 863.6},
                    PaperCase{"ArchE1", 762, 1066.8}, PaperCase{"arch-e", 914.4, 1219.2},
                    // Not in the table: the name contains the size.
                    PaperCase{"custom_roll_914.4x5000mm", 914.4, 5000}, PaperCase{"x_y_z_1x2in", 25.4, 50.8},
                    PaperCase{"210x297mm", 210, 297}, PaperCase{"8.5x11in", 215.9, 279.4},
                    PaperCase{"21X29.7CM", 210, 297}, PaperCase{"72x144pt", 25.4, 50.8},
                    // The smallest and the largest permitted side.
                    PaperCase{"1x100000mm", 1, 100'000}));

class NoPaperTest : public testing::TestWithParam<const char*> {};
TEST_P(NoPaperTest, IsRefusedAndWritesNothing) {
    ORVPaperSize paper{7.0, 8.0};
    EXPECT_FALSE(ORVFindPaper(GetParam(), paper));
    EXPECT_EQ(paper.width, 7.0);
    EXPECT_EQ(paper.height, 8.0);
}
INSTANTIATE_TEST_SUITE_P(Paper, NoPaperTest,
                         testing::Values("", "A11", "A", "210x297", "210mm", "210x297px", "0x297mm", "-1x2mm",
                                         "210x297mm ", "x297mm", "infx2mm", "nanx2mm", "1e9x2mm",
                                         "iso_a4_210", "210x297mmmm", "_", "0.1x5mm", "1e999x1mm",
                                         "0.9999x5mm", "5x100001mm"));

TEST(PaperSizesTest, EveryNameStandsForItsOwnPaper) {
    std::set<std::string> names;
    for (const ORVPaperName& name : ORVPaperNames()) {
        EXPECT_TRUE(names.insert(std::string(name.common)).second) << name.common;
        ORVPaperSize common, standard;
        ASSERT_TRUE(ORVFindPaper(name.common, common)) << name.common;
        ASSERT_TRUE(ORVFindPaper(name.standard, standard)) << name.standard;
        EXPECT_EQ(common.width, standard.width) << name.common;
        EXPECT_EQ(common.height, standard.height) << name.common;
        EXPECT_LE(common.width, common.height) << name.common;
    }
}

// Halving a sheet gives the next size, rounded to whole millimetres.
TEST(PaperSizesTest, SizesOfASeriesHalveEachOther) {
    for (const char* series : {"A", "B", "C", "JIS B"})
        for (int i = 0; i < 10; ++i) {
            ORVPaperSize larger, smaller;
            ASSERT_TRUE(ORVFindPaper(series + std::to_string(i), larger));
            ASSERT_TRUE(ORVFindPaper(series + std::to_string(i + 1), smaller));
            EXPECT_NEAR(smaller.height, larger.width, 1e-9) << series << i;
            EXPECT_NEAR(smaller.width, larger.height / 2.0, 1.01 * 90.0 / 25.4) << series << i;
        }
}

TEST(PaperLengthTest, NeedsAUnitUnlessItIsNothing) {
    struct Row {
        const char* text;
        bool isRead;
        double userUnits;
    };
    for (const Row& row :
         {Row{"25.4mm", true, 90.0}, Row{"1in", true, 90.0}, Row{"72PT", true, 90.0},
          Row{"2.54cm", true, 90.0}, Row{"0", true, 0.0}, Row{"0mm", true, 0.0}, Row{"10", false, -1.0},
          Row{"", false, -1.0}, Row{"mm", false, -1.0}, Row{"-1mm", false, -1.0}, Row{"1 mm", false, -1.0},
          Row{"1mm,", false, -1.0}, Row{"infmm", false, -1.0}, Row{"1e300mm", false, -1.0}}) {
        double userUnits = -1.0;
        EXPECT_EQ(ORVParsePaperLength(row.text, userUnits), row.isRead) << row.text;
        EXPECT_NEAR(userUnits, row.userUnits, 1e-9) << row.text;
    }
}

}  // namespace
