// SPDX-License-Identifier: Apache-2.0

// Variable fonts: the boxes of a test font (fonts/make_varied_font.py) show by their size where on the axes
// they are.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

struct Size {
    int width = 0, height = 0;
};

/// Returns the size of the bounding box of all dark pixels.
Size InkOf(const fs::path& file) {
    const ORVRef<const ORVPixelImage> image(ORVPixelImage::CreateFromFile(file.string(), 0, 0));
    if (!image) return {};
    constexpr int kDark = 128;
    int left = image->GetWidth(), right = -1, top = image->GetHeight(), bottom = -1;
    const auto pixels = image->GetPixels();
    for (int y = 0; y < image->GetHeight(); ++y)
        for (int x = 0; x < image->GetWidth(); ++x) {
            const auto at = (static_cast<std::size_t>(y) * static_cast<std::size_t>(image->GetWidth()) +
                             static_cast<std::size_t>(x)) *
                            4;
            if (pixels[at + 3] < kDark || pixels[at] >= kDark) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    return {right - left + 1, bottom - top + 1};
}

class VariedFontsTest : public ToolTest {
protected:
    VariedFontsTest() {
        WriteFile("fonts.conf", "<?xml version='1.0'?><fontconfig><dir>" ORV_VARIED_FONTS "</dir><cachedir>" +
                                    (Folder() / "cache").string() + "</cachedir></fontconfig>");
    }

    /// Prints a box at 100 px per em.
    void Print(const std::string& style, const std::string& output) const {
        WriteFile("text.svg",
                  "<svg xmlns='http://www.w3.org/2000/svg' width='300' height='100' viewBox='0 0 24 8'><text "
                  "y='7' font-family='Varied Boxes' font-size='8' style=\"" +
                      style + "\">A</text></svg>");
        const ToolRun run = RunProgram({"env", "FONTCONFIG_FILE=" + (Folder() / "fonts.conf").string(),
                                        "ORVPRINT_CACHE_DIR=", ORV_TOOL_PATH, "text.svg", "-o", output,
                                        "--interpreter", "svg2", "--dpi", "96", "--force", "--no-sandbox"});
        EXPECT_EQ(run.exitCode, 0) << style << run.errors;
    }

    void ExpectInk(const std::string& file, const Size& expected, const std::string& trial) const {
        const Size size = InkOf(Folder() / file);
        EXPECT_NEAR(size.width, expected.width, 1) << trial;
        EXPECT_NEAR(size.height, expected.height, 1) << trial;
    }
};

struct Row {
    const char* style;
    Size ink;
};
constexpr Row kRows[] = {
    {"", {40, 40}},
    {"font-weight:100", {10, 40}},
    {"font-weight:650", {65, 40}},
    {"font-weight:bold", {70, 40}},
    {"font-weight:1000", {90, 40}},
    {"font-stretch:50%", {40, 20}},
    {"font-stretch:ultra-expanded", {40, 80}},
    {"font-style:italic", {54, 40}},
    {"font-style:oblique;font-weight:600;font-stretch:50%", {73, 20}},
    {"font-size:16px", {80, 74}},
    {"font-variation-settings:'opsz' 100", {40, 4}},
    {"font-variation-settings:'wght' 900;font-weight:100", {90, 40}},
    {"font-variation-settings:'wght' 100,'wght' 900", {90, 40}},
    {"font-variation-settings:'XXXX' 900", {40, 40}},
    {"font-variation-settings:'wght' 99999", {90, 40}},
};

TEST_F(VariedFontsTest, FollowThePropertiesInImages) {
    for (const Row& row : kRows) {
        Print(row.style, "text.png");
        ExpectInk("text.png", row.ink, row.style);
    }
}

TEST_F(VariedFontsTest, FollowThePropertiesInPdf) {
    for (const Row& row : kRows) {
        Print(row.style, "text.pdf");
        ASSERT_EQ(RunProgram({"pdftoppm", "-r", "96", "-png", "-singlefile", "text.pdf", "page"}).exitCode,
                  0);
        ExpectInk("page.png", row.ink, row.style);
        EXPECT_THAT(RunProgram({"pdffonts", "text.pdf"}).output, HasSubstr("CID TrueType")) << row.style;
        EXPECT_THAT(RunProgram({"pdftotext", "text.pdf", "-"}).output, HasSubstr("A")) << row.style;
    }
}

TEST_F(VariedFontsTest, FollowThePropertiesInPostScript) {
    for (const Row& row : kRows) {
        Print(row.style, "text.ps");
        ASSERT_EQ(RunProgram({"gs", "-q", "-dNOPAUSE", "-dBATCH", "-sDEVICE=png16m", "-r96",
                              "-sOutputFile=page.png", "text.ps"})
                      .exitCode,
                  0);
        ExpectInk("page.png", row.ink, row.style);
    }
}

// A triangle that is 2 em wide at this weight, more than twice the width that the font declares for glyphs.
TEST_F(VariedFontsTest, GlyphsBeyondTheirEmAreWholeInPostScript) {
    WriteFile("text.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='300' height='100' viewBox='0 0 150 50'><text "
              "y='40' font-family='Orv Tiny' font-size='40' font-weight='900'>B</text></svg>");
    const ToolRun run = RunProgram({"env", "FONTCONFIG_FILE=" + (Folder() / "fonts.conf").string(),
                                    "ORVPRINT_CACHE_DIR=", ORV_TOOL_PATH, "text.svg", "-o", "text.ps",
                                    "--interpreter", "svg2", "--no-sandbox"});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    ASSERT_EQ(RunProgram({"gs", "-q", "-dNOPAUSE", "-dBATCH", "-sDEVICE=png16m", "-r96",
                          "-sOutputFile=page.png", "text.ps"})
                  .exitCode,
              0);
    ExpectInk("page.png", {152, 56}, "2 em less the room before it");
}

TEST_F(VariedFontsTest, TwoLooksStandBesideEachOther) {
    WriteFile("two.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='300' height='100' viewBox='0 0 24 8'>"
              "<g font-family='Varied Boxes' font-size='8'><text y='7' font-weight='100'>A</text>"
              "<text x='10' y='7' font-weight='900'>A</text></g></svg>");
    for (const char* name : {"two.pdf", "two.png"})
        EXPECT_EQ(RunProgram({"env", "FONTCONFIG_FILE=" + (Folder() / "fonts.conf").string(),
                              "ORVPRINT_CACHE_DIR=", ORV_TOOL_PATH, "two.svg", "-o", name, "--interpreter",
                              "svg2", "--dpi", "96"})
                      .exitCode,
                  0);
    ASSERT_EQ(RunProgram({"pdftoppm", "-r", "96", "-png", "-singlefile", "two.pdf", "page"}).exitCode, 0);
    // From the left of the first box, at 10, to the right of the second, at 125 + 10 + 90.
    for (const char* name : {"two.png", "page.png"}) ExpectInk(name, {215, 40}, name);
}

}  // namespace
