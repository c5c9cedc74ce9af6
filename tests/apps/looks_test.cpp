// SPDX-License-Identifier: Apache-2.0

// Compares pages that other programs render with our own images: a drawing looks the same in every format.

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tests/apps/looks.h"
#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"
#include "tests/support/sample_profiles.h"
#include "tests/support/test_texts.h"

namespace {

constexpr int kDotsPerInch = 96;

/// How another program renders a page to the image "page.png".
struct Viewer {
    const char* name;
    const char* format;
    std::vector<std::string> command;  ///< IN stands for the page's file name
    /// Mean difference from our own image, in levels of 255, as measured for each of kExamples.
    std::array<double, 6> measured;
};

const std::string kResolution = std::to_string(kDotsPerInch);

const std::vector<Viewer> kViewers{
    {"Poppler",
     "pdf",
     {"pdftoppm", "-r", kResolution, "-png", "-singlefile", "IN", "page"},
     {0.740, 0.559, 1.232, 0.990, 0.458, 1.019}},
    {"MuPdf",
     "pdf",
     {"mutool", "draw", "-q", "-r", kResolution, "-o", "page.png", "IN"},
     {0.304, 0.212, 0.531, 0.630, 0.458, 0.201}},
    {"MuPdf",
     "tiff",
     {"mutool", "draw", "-q", "-r", kResolution, "-o", "page.png", "IN"},
     {0.349, 0.795, 0.863, 0.726, 0.603, 0.324}},
    {"Ghostscript",
     "pdf",
     {"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=png16m", "-r" + kResolution,
      "-dTextAlphaBits=4", "-dGraphicsAlphaBits=4", "-sOutputFile=page.png", "IN"},
     {1.253, 0.550, 1.430, 2.324, 0.577, 0.854}},
    {"Ghostscript",
     "ps",
     {"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=png16m", "-r" + kResolution,
      "-dTextAlphaBits=4", "-dGraphicsAlphaBits=4", "-sOutputFile=page.png", "IN"},
     {1.388, 0.840, 1.680, 1.670, 0.812, 0.944}},
    {"Ghostscript",
     "eps",
     {"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dEPSCrop", "-sDEVICE=png16m", "-r" + kResolution,
      "-dTextAlphaBits=4", "-dGraphicsAlphaBits=4", "-sOutputFile=page.png", "IN"},
     {1.194, 0.618, 1.478, 1.602, 0.648, 0.887}},
    {"Librsvg",
     "svg",
     {"rsvg-convert", "-d", kResolution, "-p", kResolution, "-o", "page.png", "IN"},
     {0.038, 0.018, 0.077, 0.093, 0.021, 0.019}},
    // orvprint reads its own SVG back.
    {"Orvprint",
     "svg",
     {ORV_TOOL_PATH, "--dpi", kResolution, "-o", "page.png", "IN"},
     {0.001, 0.001, 0.001, 0.001, 0.001, 0.001}},
};

const std::vector<std::string> kExamples{"bracket",  "chart",    "floor-plan",
                                         "hatching", "link-map", "schematic"};

/// Allowed differences between two programs: a third more than measured. They smooth edges differently.
struct Bounds {
    double mean;   ///< in levels of 255
    double share;  ///< of cells that differ by more than kLevelsApart

    bool Hold(const Looks& own, const Looks& other) const {
        return own.DifferenceFrom(other) <= mean && own.ShareApartFrom(other, kLevelsApart) <= share;
    }
    static constexpr double kLevelsApart = 40.0;
};

class LooksTest : public ToolTest, public testing::WithParamInterface<Viewer> {
protected:
    /// Renders our own image of a drawing.
    Looks Own(const std::string& drawing) const {
        EXPECT_EQ(Run({drawing, "--pages", "1", "--dpi", kResolution, "-o", "own.png"}).exitCode, 0);
        return Looks((Folder() / "own.png").string(), 0);
    }
    /// Prints a drawing in the viewer's format, and renders it with the viewer.
    Looks Viewed(const std::string& drawing, int rows) const {
        const std::string page = std::string("page.") + GetParam().format;
        const ToolRun printed = Run({drawing, "--pages", "1", "-o", page});
        EXPECT_EQ(printed.exitCode, 0) << printed.errors;
        std::vector<std::string> command = GetParam().command;
        for (std::string& argument : command)
            if (argument == "IN") argument = page;
        std::filesystem::remove(Folder() / "page.png");
        const ToolRun viewed = RunProgram(command);
        EXPECT_TRUE(Exists("page.png")) << viewed.output << viewed.errors;
        return Looks((Folder() / "page.png").string(), rows);
    }
};

std::string WithoutText(std::string drawing) {
    for (std::size_t begin = 0; (begin = drawing.find("<text", begin)) != std::string::npos;)
        drawing.erase(begin, drawing.find("</text>", begin) + 7 - begin);
    return drawing;
}

std::string WithoutLines(std::string drawing) {
    const std::string stroke = " stroke=\"";
    for (std::size_t at = 0; (at = drawing.find(stroke, at)) != std::string::npos;) {
        at += stroke.size();
        drawing.replace(at, drawing.find('"', at) - at, "none");
    }
    return drawing;
}

TEST_P(LooksTest, ExamplesLookLikeOurOwnPictures) {
    for (std::size_t i = 0; i < kExamples.size(); ++i) {
        SCOPED_TRACE(kExamples[i]);
        const std::string drawing = Example(kExamples[i] + ".svg");
        const Looks own = Own(drawing);
        ASSERT_TRUE(own.IsThere());
        const Looks other = Viewed(drawing, own.GetRows());
        ASSERT_TRUE(other.IsThere());
        const Bounds bounds{1.3 * GetParam().measured[i], 0.001};
        EXPECT_TRUE(bounds.Hold(own, other)) << "mean " << own.DifferenceFrom(other) << ", share "
                                             << own.ShareApartFrom(other, Bounds::kLevelsApart);

        // The bounds are tight enough to detect missing content.
        const std::string text = ReadAll(drawing);
        for (const auto& [what, lossy] :
             {std::pair("text", WithoutText(text)), std::pair("lines", WithoutLines(text))}) {
            WriteFile("lossy.svg", lossy);
            const Looks lost = Own("lossy.svg");
            ASSERT_EQ(lost.GetRows(), own.GetRows());
            EXPECT_FALSE(bounds.Hold(lost, other))
                << "without " << what << ": mean " << lost.DifferenceFrom(other) << ", share "
                << lost.ShareApartFrom(other, Bounds::kLevelsApart);
        }
    }
}

// Every image has a red corner, so that a wrong orientation or a missing colour conversion changes the page.
TEST_P(LooksTest, TurnedAndConvertedPicturesLookLikeOurOwn) {
    const std::string plain = SampleJpegOf(64, 32, [](int x, int y) {
        return x < 32 && y < 16 ? std::array<unsigned char, 3>{255, 0, 0}
                                : std::array<unsigned char, 3>{static_cast<unsigned char>(255 - x), 255, 0};
    });
    const std::string profile = std::string("ICC_PROFILE\0\1\1", 14) + SwappedProfile();
    std::string content;
    for (int i = 1; i <= 9; ++i) {
        const std::string jpeg =
            i == 9 ? WithJpegSegment(plain, 0xE2, profile)
                   : WithJpegSegment(plain, 0xE1, std::string("Exif\0\0", 6) + SampleExif(i));
        const std::string name = std::to_string(i) + ".jpg", id = "p" + std::to_string(i);
        WriteFile(name, jpeg);
        const auto place = [&](int y) {
            return "x='" + std::to_string(70 * i - 65) + "' y='" + std::to_string(y);
        };
        content += "<image xlink:href='" + name + "' " + place(5) +
                   "' width='64' height='64'/><pattern id='" + id + "'><image xlink:href='" + name +
                   "' width='64' height='64'/></pattern><rect fill='url(#" + id + ")' stroke='none' " +
                   place(80) + "' width='64' height='64'/>";
    }
    WriteFile("pictures.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
              "width='640' height='150'>" +
                  content + "</svg>");
    const Viewer& viewer = GetParam();
    ASSERT_EQ(Run({"pictures.svg", "--dpi", kResolution, "-o", "own.png"}).exitCode, 0);
    const std::string page = std::string("page.") + viewer.format;
    ASSERT_EQ(Run({"pictures.svg", "-o", page}).exitCode, 0);
    std::vector<std::string> command = viewer.command;
    std::replace(command.begin(), command.end(), std::string("IN"), page);
    const ToolRun viewed = RunProgram(command);
    const Looks own((Folder() / "own.png").string(), 0);
    ASSERT_TRUE(own.IsThere());
    const Looks other((Folder() / "page.png").string(), own.GetRows());
    ASSERT_TRUE(other.IsThere()) << viewed.output << viewed.errors;
    EXPECT_LT(own.DifferenceFrom(other), 4.0);
}

INSTANTIATE_TEST_SUITE_P(Viewers, LooksTest, testing::ValuesIn(kViewers), [](const auto& row) {
    return std::string(row.param.name) + "_" + row.param.format;
});

}  // namespace
