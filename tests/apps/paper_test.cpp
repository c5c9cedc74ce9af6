// SPDX-License-Identifier: Apache-2.0

// Sheets of paper, from the command line to the page.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A greyscale image.
struct Picture {
    int width = 0, height = 0;
    std::string pixels;
    int At(int x, int y) const {
        return static_cast<unsigned char>(
            pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)]);
    }
};

class PaperTest : public ToolTest {
protected:
    /// Prints a drawing of that size to a PDF.
    void Print(double width, double height, std::vector<std::string> options) const {
        WriteFile("in.svg", Sized(width, height, "<rect width='100%' height='100%' fill='#000000'/>"));
        options.insert(options.begin(), {"in.svg", "-o", "out.pdf"});
        const ToolRun run = Run(options);
        ASSERT_EQ(run.exitCode, 0) << run.errors;
    }
    static std::string Sized(double width, double height, const std::string& content) {
        return "<svg xmlns='http://www.w3.org/2000/svg' width='" + std::to_string(width) + "' height='" +
               std::to_string(height) + "'>" + content + "</svg>";
    }

    /// Returns the sizes of all pages in points.
    std::vector<std::string> PageSizes() const {
        const ToolRun run = RunProgram({"pdfinfo", "-l", "99", "out.pdf"});
        std::vector<std::string> sizes;
        std::istringstream lines(run.output);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t start = line.find("size:");
            if (start == std::string::npos || !line.starts_with("Page")) continue;
            double width = 0.0, height = 0.0;
            char by = 0;
            std::istringstream(line.substr(start + 5)) >> width >> by >> height;
            std::ostringstream size;
            size << std::round(width * 10.0) / 10.0 << " x " << std::round(height * 10.0) / 10.0;
            sizes.push_back(size.str());
        }
        return sizes;
    }

    /// Renders one page of a PDF.
    Picture Render(const std::string& file, int page, int dotsPerInch) const {
        const std::string number = std::to_string(page);
        const ToolRun run = RunProgram({"pdftoppm", "-gray", "-r", std::to_string(dotsPerInch), "-f", number,
                                        "-l", number, "-singlefile", file, "page"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        std::istringstream content(ReadFile("page.pgm"));
        std::string magic;
        int greatest = 0;
        Picture picture;
        content >> magic >> picture.width >> picture.height >> greatest;
        content.get();
        std::ostringstream rest;
        rest << content.rdbuf();
        picture.pixels = rest.str();
        EXPECT_EQ(picture.pixels.size(),
                  static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
        return picture;
    }

    /// Returns the bounding box of all pixels darker than mid-grey: left, top, width, height.
    static std::vector<int> Dark(const Picture& picture) {
        int left = picture.width, top = picture.height, right = 0, bottom = 0;
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x)
                if (picture.At(x, y) < 128) {
                    left = std::min(left, x);
                    right = std::max(right, x + 1);
                    top = std::min(top, y);
                    bottom = std::max(bottom, y + 1);
                }
        return {left, top, right - left, bottom - top};
    }
};

struct PageCase {
    const char* name;
    double width, height;
    std::vector<std::string> options;
    const char* size;  // points
};
class PaperSizeTest : public PaperTest, public testing::WithParamInterface<PageCase> {};
TEST_P(PaperSizeTest, IsThatOfThePage) {
    Print(GetParam().width, GetParam().height, GetParam().options);
    EXPECT_THAT(PageSizes(), ElementsAre(GetParam().size));
}
INSTANTIATE_TEST_SUITE_P(
    Paper, PaperSizeTest,
    testing::Values(
        PageCase{"Natural", 90, 180, {}, "72 x 144"},
        PageCase{"A4", 90, 180, {"--paper", "A4"}, "595.3 x 841.9"},
        PageCase{"A4Turned", 180, 90, {"--paper", "a4"}, "841.9 x 595.3"},
        PageCase{"A4Portrait", 180, 90, {"--paper", "a4", "--orientation", "portrait"}, "595.3 x 841.9"},
        PageCase{"StandardName", 90, 180, {"--paper", "na_legal_8.5x14in"}, "612 x 1008"},
        PageCase{"Size", 90, 180, {"--paper", "100x200mm"}, "283.5 x 566.9"},
        PageCase{"Scaled", 90, 180, {"--scale", "50%"}, "36 x 72"},
        PageCase{"ScaledUp", 90, 180, {"--scale", "2:1"}, "144 x 288"},
        PageCase{"Margins", 90, 180, {"--margin", "1in,0.5in"}, "144 x 288"},
        PageCase{"FourMargins", 90, 180, {"--margin", "1pt,2pt,3pt,4pt"}, "78 x 148"},
        PageCase{"SmallestScale", 90, 180, {"--paper", "A4", "--scale", "0.0001"}, "595.3 x 841.9"},
        PageCase{"ScaledWithMargin", 90, 180, {"--scale", "0.5", "--margin", "1in"}, "180 x 216"}),
    kNameOfRow);

TEST_F(PaperTest, NaturalSizeIsExact) {
    // 90 units = 25.4 mm = 72 points.
    WriteFile("in.svg", Sized(180, 180, "<rect x='45' y='45' width='90' height='90' fill='#000000'/>"));
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--paper", "A4", "--align", "top-left"}).exitCode, 0);
    EXPECT_THAT(Dark(Render("out.pdf", 1, 254)), ElementsAre(127, 127, 254, 254));
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(36, 36, 72, 72));
    ASSERT_EQ(
        Run({"in.svg", "-o", "out.png", "--dpi", "254", "--paper", "A4", "--align", "top-left"}).exitCode, 0);
    const std::string png = ReadFile("out.png");
    const auto number = [&](std::size_t at) {
        int value = 0;
        for (std::size_t i = at; i < at + 4; ++i) value = value * 256 + static_cast<unsigned char>(png[i]);
        return value;
    };
    EXPECT_EQ(number(16), 2100);  // A4 at 10 pixels a millimetre
    EXPECT_EQ(number(20), 2970);
}

TEST_F(PaperTest, PlacesThePageWithinTheMargins) {
    struct Row {
        std::vector<std::string> options;
        std::vector<int> dark;  // in points, on a sheet of 300 x 300
    };
    for (const Row& row :
         {Row{{}, {114, 132, 72, 36}}, Row{{"--align", "top-left"}, {0, 0, 72, 36}},
          Row{{"--align", "right"}, {228, 132, 72, 36}}, Row{{"--align", "bottom"}, {114, 264, 72, 36}},
          Row{{"--align", "bottom-right", "--margin", "10pt,20pt,30pt,40pt"}, {208, 234, 72, 36}},
          Row{{"--scale", "fit"}, {0, 75, 300, 150}}, Row{{"--scale", "fill"}, {0, 0, 300, 300}},
          Row{{"--scale", "fit", "--margin", "50pt"}, {50, 100, 200, 100}},
          Row{{"--scale", "1:2"}, {132, 141, 36, 18}}}) {
        std::vector<std::string> options{"--paper", "300x300pt"};
        options.insert(options.end(), row.options.begin(), row.options.end());
        Print(90, 45, options);
        EXPECT_EQ(Dark(Render("out.pdf", 1, 72)), row.dark) << testing::PrintToString(row.options);
    }
    // Larger than the paper: fitted by default, cut off if a scale is given.
    Print(900, 450, {"--paper", "300x300pt"});
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(0, 75, 300, 150));
    Print(900, 270, {"--paper", "300x300pt", "--scale", "none", "--margin", "20pt"});
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(20, 42, 260, 216));
}

TEST_F(PaperTest, NothingOfThePageShowsInTheMargins) {
    WriteFile("in.svg", Sized(90, 90, "<circle cx='45' cy='45' r='80' fill='#000000'/>"));
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--margin", "1in"}).exitCode, 0);
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(72, 72, 72, 72));
}

TEST_F(PaperTest, SheetsOfAPosterMakeTheWholeAgain) {
    // A page of whole points, full of lines, areas and text.
    std::string content;
    for (int i = 0; i < 60; ++i) {
        const std::string x = std::to_string(i * 137 % 1000), y = std::to_string(i * 89 % 700);
        content += "<circle cx='" + x + "' cy='" + y + "' r='" + std::to_string(20 + i) +
                   "' fill='#3366aa' fill-opacity='0.3' stroke='#000000' stroke-width='2'/>";
        content += "<text x='" + y + "' y='" + x + "' font-size='40' fill='#aa2200'>Sheet " + x + "</text>";
    }
    WriteFile("in.svg", Sized(1050, 750, content));
    ASSERT_EQ(Run({"in.svg", "-o", "whole.pdf"}).exitCode, 0);
    // Sheets of 300 x 250 points show 240 x 190 and overlap by 40, so that they start at whole pixels.
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--paper", "300x250pt", "--orientation", "landscape", "--tile",
                   "--margin", "30pt", "--overlap", "40pt"})
                  .exitCode,
              0);
    const Picture whole = Render("whole.pdf", 1, 72);
    constexpr int kColumns = 4, kRows = 4;
    EXPECT_EQ(PageSizes().size(), static_cast<std::size_t>(kColumns * kRows));
    std::size_t different = 0, compared = 0;
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column) {
            const Picture sheet = Render("out.pdf", row * kColumns + column + 1, 72);
            ASSERT_EQ(sheet.width, 300);
            ASSERT_EQ(sheet.height, 250);
            for (int y = 0; y < 190; ++y)
                for (int x = 0; x < 240; ++x) {
                    const int wholeX = column * 200 + x, wholeY = row * 150 + y;
                    if (wholeX >= whole.width || wholeY >= whole.height) continue;
                    ++compared;
                    if (std::abs(whole.At(wholeX, wholeY) - sheet.At(30 + x, 30 + y)) > 24) ++different;
                }
        }
    EXPECT_GT(compared, 650'000U);
    EXPECT_LT(different, compared / 10'000);
}

TEST_F(PaperTest, PosterSheetsHaveLabelsAndNoMore) {
    Print(600, 600, {"--paper", "A6", "--tile"});
    const ToolRun text = RunProgram({"pdftotext", "out.pdf", "-"});
    for (const char* label : {"A1", "A2", "B1", "B2"}) EXPECT_THAT(text.output, HasSubstr(label));
    ASSERT_EQ(Run({"in.svg", "-o", "out.png", "--paper", "A6", "--tile"}).exitCode, 0);
    EXPECT_TRUE(Exists("out-1.png"));
    EXPECT_TRUE(Exists("out-4.png"));
}

TEST_F(PaperTest, APosterOfOneSheetIsOneFile) {
    Print(90, 90, {"--paper", "A6", "--tile"});
    ASSERT_EQ(Run({"in.svg", "-o", "out.png", "--paper", "A6", "--tile"}).exitCode, 0);
    EXPECT_TRUE(Exists("out.png"));
}

TEST_F(PaperTest, PutsPagesOfSeveralInputsOnOneSheet) {
    WriteFile("in.svg", Sized(100, 100, "<rect width='100' height='100' fill='#000000'/>"));
    ASSERT_EQ(
        Run({"in.svg", "in.svg", "in.svg", "-o", "out.pdf", "--paper", "200x200mm", "--nup", "4"}).exitCode,
        0);
    EXPECT_THAT(PageSizes(), ElementsAre("566.9 x 566.9"));
    const Picture sheet = Render("out.pdf", 1, 72);
    // Cells of 98 mm = 278 points with 4 mm = 11 points between them; the last one is empty.
    EXPECT_LT(sheet.At(140, 140), 10);
    EXPECT_LT(sheet.At(430, 140), 10);
    EXPECT_LT(sheet.At(140, 430), 10);
    EXPECT_GT(sheet.At(430, 430), 245);
    EXPECT_GT(sheet.At(283, 140), 245);
    EXPECT_GT(sheet.At(140, 283), 245);
    ASSERT_EQ(Run({Example("drawing-set.svg"), "-o", "set.png", "--paper", "A4", "--nup", "2"}).exitCode, 0);
    EXPECT_TRUE(Exists("set.png"));
    // One sheet with all selected pages is one file.
    ASSERT_EQ(
        Run({Example("drawing-set.svg"), "-o", "two.png", "--paper", "A4", "--nup", "2", "--pages", "1,2"})
            .exitCode,
        0);
    EXPECT_TRUE(Exists("two.png"));
    EXPECT_FALSE(Exists("two-1.png"));
}

TEST_F(PaperTest, PrintsWithoutColours) {
    WriteFile("in.svg",
              Sized(90, 90,
                    "<rect width='90' height='45' fill='#ff0000'/><rect y='45' width='90' height='45' "
                    "fill='#ffff00'/>"));
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--grey"}).exitCode, 0);
    Picture page = Render("out.pdf", 1, 72);
    EXPECT_NEAR(page.At(36, 18), 127, 2);
    EXPECT_NEAR(page.At(36, 54), 248, 2);
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--mono"}).exitCode, 0);
    page = Render("out.pdf", 1, 72);
    EXPECT_EQ(page.At(36, 18), 0);
    EXPECT_EQ(page.At(36, 54), 255);
}

TEST_F(PaperTest, WidensLines) {
    WriteFile("in.svg", Sized(180, 90,
                              "<line x1='0' y1='45' x2='180' y2='45' stroke='#000000' "
                              "stroke-width='1' fill='none'/>"));
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--min-stroke", "10pt"}).exitCode, 0);
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(0, 31, 144, 10));
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--min-stroke", "10pt", "--scale", "50%"}).exitCode, 0);
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(0, 13, 72, 10));
    ASSERT_EQ(Run({"in.svg", "-o", "out.pdf", "--stroke-scale", "25"}).exitCode, 0);
    EXPECT_THAT(Dark(Render("out.pdf", 1, 72)), ElementsAre(0, 26, 144, 20));
}

TEST_F(PaperTest, LinesMayBecomeAThousandTimesWider) {
    WriteFile("in.svg", Sized(90, 90, "<rect width='9' height='9'/>"));
    for (const auto& [factor, code] : {std::pair{"1000", 0}, {"1000.1", 2}, {"1e-9", 0}, {"0", 2}})
        EXPECT_EQ(Run({"in.svg", "-o", "out.pdf", "--stroke-scale", factor}).exitCode, code) << factor;
}

TEST_F(PaperTest, WithoutOptionsPagesAreWhatTheyWere) {
    ASSERT_EQ(Run({Example("chart.svg"), "-o", "a.pdf"}).exitCode, 0);
    ASSERT_EQ(Run({Example("chart.svg"), "-o", "b.pdf", "--scale", "100%"}).exitCode, 0);
    EXPECT_EQ(ReadFile("a.pdf"), ReadFile("b.pdf"));
}

struct RefusalCase {
    const char* name;
    std::vector<std::string> options;
    const char* says;
};
class PaperRefusalTest : public PaperTest, public testing::WithParamInterface<RefusalCase> {};
TEST_P(PaperRefusalTest, SaysWhatIsWrong) {
    WriteFile("in.svg", SmallDrawing(""));
    std::vector<std::string> arguments{"in.svg", "-o", "out.pdf"};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    const ToolRun run = Run(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, StartsWith("orvprint: "));
    EXPECT_THAT(run.errors, HasSubstr(GetParam().says));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_FALSE(Exists("out.pdf"));
}
INSTANTIATE_TEST_SUITE_P(
    Paper, PaperRefusalTest,
    testing::Values(
        RefusalCase{"Paper", {"--paper", "A44"}, "--paper: 'A44' is neither the name of a paper"},
        RefusalCase{"EmptyPaper", {"--paper", ""}, "--paper: '' is neither"},
        RefusalCase{"Orientation", {"--paper", "A4", "--orientation", "up"}, "--orientation"},
        RefusalCase{"Scale", {"--scale", "large"}, "--scale: 'large' is not a scale"},
        RefusalCase{"ScaleOfNothing", {"--scale", "0%"}, "--scale: '0%' is not a scale"},
        RefusalCase{"ScaleByNothing", {"--scale", "1:0"}, "--scale: '1:0' is not a scale"},
        RefusalCase{"TinyScale", {"--paper", "A4", "--scale", "0.0000999"}, "is not a scale"},
        RefusalCase{"HugeScale", {"--scale", "1e300%"}, "is not a scale"},
        RefusalCase{"InfiniteScale", {"--scale", "inf"}, "is not a scale"},
        RefusalCase{"FitWithoutPaper", {"--scale", "fit"}, "add, for example, --paper A4"},
        RefusalCase{"Margin", {"--margin", "10"}, "a length has a unit"},
        RefusalCase{"ThreeMargins", {"--margin", "1mm,2mm,3mm"}, "is not one, two or four lengths"},
        RefusalCase{"NegativeMargin", {"--margin=-1mm"}, "is not one, two or four lengths"},
        RefusalCase{"LargeMargins", {"--paper", "A4", "--margin", "150mm"}, "the margins leave nothing"},
        RefusalCase{
            "Align", {"--paper", "A4", "--align", "left-right"}, "--align: 'left-right' is not an alignment"},
        RefusalCase{"AlignWithoutPaper", {"--align", "left"}, "--align: needs to know the paper"},
        RefusalCase{"TileWithoutPaper", {"--tile"}, "--tile: needs to know the paper"},
        RefusalCase{"TileAndFit", {"--paper", "A4", "--tile", "--scale", "fit"}, "fit makes one sheet"},
        RefusalCase{"LargeOverlap", {"--paper", "A4", "--tile", "--overlap", "200mm"}, "overlap of 200 mm"},
        RefusalCase{"OverlapWithoutTile", {"--paper", "A4", "--overlap", "1mm"}, "--overlap: is for posters"},
        RefusalCase{"NupWithoutPaper", {"--nup", "2"}, "--nup: needs to know the paper"},
        RefusalCase{"NupOfNone", {"--paper", "A4", "--nup", "0"}, "--nup"},
        RefusalCase{"NupAndTile", {"--paper", "A4", "--nup", "2", "--tile"}, "exclude each other"},
        RefusalCase{"NupTooMany", {"--paper", "20x20mm", "--nup", "64"}, "no room for 64 pages"},
        RefusalCase{"GreyAndMono", {"--grey", "--mono"}, "exclude each other"},
        RefusalCase{"StrokeScale", {"--stroke-scale", "0"}, "--stroke-scale"},
        RefusalCase{"LeastLine", {"--min-stroke", "thin"}, "--min-stroke: 'thin' is not a length"}),
    kNameOfRow);

TEST_F(PaperTest, RefusesPostersWithoutEnd) {
    WriteFile("in.svg", Sized(90000, 90000, ""));
    const ToolRun run = Run({"in.svg", "-o", "out.pdf", "--paper", "A10", "--margin", "1mm", "--tile"});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, HasSubstr("page 1 would take too many sheets (at most 10000 in all)"));
    EXPECT_FALSE(Exists("out.pdf"));
}

/// Returns the share of black pixels in an image; -1 if it cannot be read.
double ShareOfBlack(const std::string& path) {
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromFile(path, 0, 0));
    if (!image) return -1.0;
    const auto pixels = image->GetPixels();
    double black = 0.0;
    for (std::size_t i = 0; i < pixels.size(); i += 4) black += pixels[i] == 0 ? 1.0 : 0.0;
    return black / (static_cast<double>(pixels.size()) / 4.0);
}

TEST_F(PaperTest, PixelsInBlackAndWhiteShowGreysAsDots) {
    WriteFile("grey.svg", SmallDrawing("<rect width='90' height='45' fill='#c8c8c8'/>"));
    ASSERT_EQ(Run({"grey.svg", "-o", "grey.png", "--mono"}).exitCode, 0);
    const double share = ShareOfBlack((Folder() / "grey.png").string());
    EXPECT_GT(share, 0.1);
    EXPECT_LT(share, 0.6);
}

}  // namespace
