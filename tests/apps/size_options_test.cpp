// SPDX-License-Identifier: Apache-2.0

// Sizes in pixels, backgrounds, and single elements as pages.

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using Words = std::vector<std::string>;

constexpr const char* kDrawing =
    "<svg xmlns='http://www.w3.org/2000/svg' width='200' height='100'>"
    "<defs><rect id='unused' width='3' height='3'/></defs>"
    "<g id='both' transform='translate(50 20)'>"
    "<rect id='box' x='10' y='10' width='40' height='20' fill='#ff0000' stroke='#000000' stroke-width='4'/>"
    "<rect id='beside' x='55' y='5' width='20' height='30' fill='#00ff00'/></g>"
    "<rect id='hidden' width='5' height='5' fill='none'/>"
    "<polyline id='tip' points='100,90 120,50 140,90' fill='none' stroke='#0000ff' stroke-width='6' "
    "stroke-miterlimit='10'/>"
    "<g id='faint' opacity='0.5'><rect id='inside' width='10' height='10' fill='#ff0000'/></g>"
    "</svg>";

class SizeOptionsTest : public ToolTest {
protected:
    void SetUp() override { WriteFile("a.svg", kDrawing); }

    ToolRun Print(const std::string& interpreter, const std::string& output, const Words& options) const {
        Words words{"a.svg", "-o", output, "--interpreter", interpreter};
        words.insert(words.end(), options.begin(), options.end());
        return Run(words);
    }
    ORVRef<const ORVPixelImage> Image(const std::string& name) const {
        return ORVRef<const ORVPixelImage>(ORVPixelImage::CreateFromFile((Folder() / name).string(), 0, 0));
    }
    /// Returns the size of an image, such as "300 x 150".
    std::string SizeOf(const std::string& name) const {
        const auto image = Image(name);
        return image ? std::to_string(image->GetWidth()) + " x " + std::to_string(image->GetHeight())
                     : "none";
    }
    std::array<int, 3> ColourAt(const std::string& name, int x, int y) const {
        const auto image = Image(name);
        if (!image) return {-1, -1, -1};
        const auto* pixel = &image->GetPixels()[4 * static_cast<std::size_t>(y * image->GetWidth() + x)];
        return {pixel[0], pixel[1], pixel[2]};
    }
};

struct SizeRow {
    const char* name;
    Words options;
    const char* size;
};

TEST_F(SizeOptionsTest, PagesHaveTheSizeThatWasAskedForInBothDialects) {
    const SizeRow rows[] = {
        {"a width keeps the ratio", {"--width", "300"}, "300 x 150"},
        {"a height keeps the ratio", {"--height", "300"}, "600 x 300"},
        {"both: the width is the narrower one", {"--width", "50", "--height", "90"}, "50 x 25"},
        {"both: the height is the narrower one", {"--width", "300", "--height", "90"}, "180 x 90"},
        {"a zoom of one is a pixel for a px", {"--zoom", "1"}, "200 x 100"},
        {"a zoom multiplies", {"--zoom", "2.5"}, "500 x 250"},
        {"an element with its line", {"--export-id", "box", "--zoom", "1"}, "44 x 24"},
        {"a group", {"--export-id", "both", "--zoom", "1"}, "67 x 30"},
        {"an element at a width", {"--export-id", "beside", "--width", "80"}, "80 x 120"},
        {"a background does not change the size", {"--zoom", "1", "--background", "red"}, "200 x 100"},
    };
    for (const SizeRow& row : rows)
        for (const char* interpreter : {"SVG", "SVG2"}) {
            SCOPED_TRACE(std::string(row.name) + ", " + interpreter);
            const ToolRun run = Print(interpreter, "out.png", row.options);
            EXPECT_EQ(run.exitCode, 0) << run.errors;
            EXPECT_EQ(SizeOf("out.png"), row.size);
        }
}

TEST_F(SizeOptionsTest, APixelIsAPxOfTheDialectWhereTheFormatHasNone) {
    const struct {
        const char *interpreter, *size;
    } rows[] = {{"SVG", "240 x 120 pts"}, {"SVG2", "225 x 112.5 pts"}};
    for (const auto& row : rows) {
        ASSERT_EQ(Print(row.interpreter, "out.pdf", {"--width", "300"}).exitCode, 0);
        EXPECT_THAT(RunProgram({"pdfinfo", "out.pdf"}).output, HasSubstr(row.size)) << row.interpreter;
    }
}

TEST_F(SizeOptionsTest, TheBoxOfAnElementHasTheTipsOfItsLines) {
    // The tip of the line is 3 / sin(26.57 degrees) above the corner; the ends have butt caps.
    ASSERT_EQ(Print("SVG2", "out.png", {"--export-id", "tip", "--zoom", "10"}).exitCode, 0);
    EXPECT_EQ(SizeOf("out.png"), "454 x 480");
}

TEST_F(SizeOptionsTest, AnElementComesAloneAndAsItIs) {
    for (const char* interpreter : {"SVG", "SVG2"}) {
        ASSERT_EQ(Print(interpreter, "box.png", {"--export-id", "box", "--zoom", "1"}).exitCode, 0);
        EXPECT_EQ(ColourAt("box.png", 0, 0), (std::array<int, 3>{0, 0, 0})) << interpreter;
        EXPECT_EQ(ColourAt("box.png", 22, 12), (std::array<int, 3>{255, 0, 0})) << interpreter;
        ASSERT_EQ(Print(interpreter, "beside.png", {"--export-id", "beside", "--zoom", "1"}).exitCode, 0);
        EXPECT_EQ(ColourAt("beside.png", 0, 29), (std::array<int, 3>{0, 255, 0})) << interpreter;
    }
    // The opacity of the group around it does not apply.
    ASSERT_EQ(Print("SVG2", "inside.png", {"--export-id", "inside", "--zoom", "1"}).exitCode, 0);
    EXPECT_EQ(ColourAt("inside.png", 5, 5), (std::array<int, 3>{255, 0, 0}));
    ASSERT_EQ(Print("SVG2", "faint.png", {"--export-id", "faint", "--zoom", "1"}).exitCode, 0);
    EXPECT_NEAR(ColourAt("faint.png", 5, 5)[1], 128, 1);
}

TEST_F(SizeOptionsTest, AnElementOfALaterPageIsFound) {
    WriteFile(
        "a.svg",
        "<svg xmlns='http://www.w3.org/2000/svg'><svg width='50' height='50'/>"
        "<svg width='50' height='50'><rect id='r' x='9' width='7' height='8' fill='#0000ff'/></svg></svg>");
    ASSERT_EQ(Print("SVG", "out.png", {"--export-id", "r", "--zoom", "1"}).exitCode, 0);
    EXPECT_EQ(SizeOf("out.png"), "7 x 8");
    ASSERT_EQ(Print("SVG", "out.pdf", {"--export-id", "r"}).exitCode, 0);
    EXPECT_THAT(RunProgram({"pdfinfo", "out.pdf"}).output, HasSubstr("Pages:           1"));
}

TEST_F(SizeOptionsTest, AnElementThatIsNotDrawnIsAnErrorAndLeavesNoOutput) {
    const struct {
        const char *id, *words;
    } rows[] = {{"nowhere", "no element with the id 'nowhere' is drawn"},
                {"unused", "no element with the id 'unused' is drawn"},
                {"hidden", "'hidden'"}};
    for (const auto& row : rows)
        for (const char* interpreter : {"SVG", "SVG2"}) {
            const ToolRun run = Print(interpreter, "out.png", {"--export-id", row.id});
            EXPECT_EQ(run.exitCode, 6) << row.id;
            EXPECT_THAT(run.errors, AllOf(HasSubstr("a.svg: "), HasSubstr(row.words))) << interpreter;
            EXPECT_FALSE(Exists("out.png"));
        }
}

TEST_F(SizeOptionsTest, TheBackgroundLiesUnderThePage) {
    for (const char* interpreter : {"SVG", "SVG2"}) {
        ASSERT_EQ(Print(interpreter, "out.png", {"--background", "#ffeedd", "--zoom", "1"}).exitCode, 0);
        EXPECT_EQ(ColourAt("out.png", 199, 99), (std::array<int, 3>{255, 238, 221})) << interpreter;
        EXPECT_EQ(ColourAt("out.png", 80, 40), (std::array<int, 3>{255, 0, 0})) << interpreter;
        ASSERT_EQ(Print(interpreter, "out.png", {"--background", "rgb(0 0 0 / 20%)"}).exitCode, 0);
        EXPECT_NEAR(ColourAt("out.png", 5, 90)[0], 204, 1) << interpreter;
    }
    // On paper, the margins stay white.
    ASSERT_EQ(Print("SVG", "out.png", {"--background", "red", "--paper", "210x210mm"}).exitCode, 0);
    EXPECT_EQ(ColourAt("out.png", 5, 5), (std::array<int, 3>{255, 255, 255}));
    EXPECT_EQ(ColourAt("out.png", 372, 330), (std::array<int, 3>{255, 0, 0}));
    // The page's own background covers it.
    WriteFile("a.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9' style='background-color:lime'/>");
    ASSERT_EQ(Print("SVG2", "out.png", {"--background", "red"}).exitCode, 0);
    EXPECT_EQ(ColourAt("out.png", 4, 4), (std::array<int, 3>{0, 255, 0}));
}

struct RefusedRow {
    const char* name;
    Words options;
    const char* words;
};
class RefusedSizeTest : public SizeOptionsTest, public testing::WithParamInterface<RefusedRow> {};

const RefusedRow kRefused[] = {
    {"ZoomAndResolution", {"--zoom", "2", "--dpi", "300"}, "--zoom and --dpi cannot be combined"},
    {"WidthAndPaper", {"--width", "2", "--paper", "A4"}, "--width and --paper cannot be combined"},
    {"HeightAndScale", {"--height", "2", "--scale", "2"}, "--height and --scale cannot be combined"},
    {"ZoomAndWidth", {"--zoom", "2", "--width", "9"}, "--zoom and --width cannot be combined"},
    {"ElementAndPoster", {"--export-id", "box", "--paper", "A4", "--tile"}, "combined with --tile"},
    {"WidthOfNothing", {"--width", "0"}, "'0' is not a number of pixels"},
    {"WidthWithUnit", {"--width", "3cm"}, "'3cm' is not a number of pixels"},
    {"ZoomThatIsNoNumber", {"--zoom", "nan"}, "'nan' is not a factor"},
    {"BackgroundThatIsNoColour", {"--background", "blurple"}, "'blurple' is not a colour"},
    {"IdOfNothing", {"--export-id", ""}, "an id has"},
    {"PercentWithoutSign", {"--scale", "50"}, "write 50% for percent"},
    {"GreyAndMono", {"--grey", "--mono"}, "orvprint: --grey and --mono exclude each other"},
    {"LanguagesOfNothing", {"--language", ","}, "is not a list of languages"},
    {"SizeOfFontOfNothing", {"--font-size", "0"}, "--font-size"},
};

TEST_P(RefusedSizeTest, IsRefusedWithAReason) {
    const ToolRun run = Print("SVG", "out.png", GetParam().options);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, HasSubstr(GetParam().words));
    EXPECT_FALSE(Exists("out.png"));
}

INSTANTIATE_TEST_SUITE_P(Rows, RefusedSizeTest, testing::ValuesIn(kRefused), kNameOfRow);

TEST_F(SizeOptionsTest, ImagesThatAreTooLargeAreRefusedByTheLimits) {
    const ToolRun run = Print("SVG", "out.png", {"--width", "40000", "--limit", "page-pixels=1000000"});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, HasSubstr("use a lower --dpi or a smaller size"));
}

TEST_F(SizeOptionsTest, LanguagesChooseWhatASwitchShows) {
    WriteFile("a.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><switch>"
              "<rect systemLanguage='de' width='9' height='9' fill='red'/>"
              "<rect systemLanguage='fr-CA, it' width='9' height='9' fill='lime'/>"
              "<rect width='9' height='9' fill='blue'/></switch></svg>");
    const struct {
        const char* languages;
        std::array<int, 3> colour;
    } rows[] = {{"de", {255, 0, 0}},     {"DE-at", {255, 0, 0}}, {"fr", {0, 255, 0}},
                {"en, it", {0, 255, 0}}, {"it,de", {255, 0, 0}}, {"en", {0, 0, 255}}};
    for (const auto& row : rows) {
        ASSERT_EQ(Print("SVG2", "out.png", {"--language", row.languages}).exitCode, 0);
        EXPECT_EQ(ColourAt("out.png", 4, 4), row.colour) << row.languages;
    }
}

TEST_F(SizeOptionsTest, TheFontSizeIsThatOfTextAndUnitsThatStateNone) {
    WriteFile("a.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='10em' height='50'>"
              "<g font-size='30'><rect id='a' style='font-size:initial' width='2em' height='1em'/>"
              "<rect id='b' style='font-size:medium' width='3em' height='1em'/></g></svg>");
    ASSERT_EQ(Print("SVG2", "out.png", {"--zoom", "1"}).exitCode, 0);
    EXPECT_EQ(SizeOf("out.png"), "120 x 50");
    ASSERT_EQ(Print("SVG2", "out.png", {"--zoom", "1", "--font-size", "16"}).exitCode, 0);
    EXPECT_EQ(SizeOf("out.png"), "160 x 50");
    ASSERT_EQ(Print("SVG2", "out.png", {"--zoom", "1", "--font-size", "16", "--export-id", "a"}).exitCode, 0);
    EXPECT_EQ(SizeOf("out.png"), "32 x 16");
    ASSERT_EQ(Print("SVG2", "out.png", {"--zoom", "1", "--font-size", "16", "--export-id", "b"}).exitCode, 0);
    EXPECT_EQ(SizeOf("out.png"), "48 x 16");
}

}  // namespace
