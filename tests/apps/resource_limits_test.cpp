// SPDX-License-Identifier: Apache-2.0

// Limits that users set by name: each is enforced, and its message says what to do.

#include <gmock/gmock.h>

#include <array>
#include <sstream>

#include "platform/system/ORVPrintLimits.h"
#include "tests/apps/limits_run.h"
#include "tests/support/sample_images.h"
#include "tests/support/test_texts.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ResourceLimitsTest : public BoundedToolTest {};

TEST_F(ResourceLimitsTest, AreListed) {
    const ToolRun run = Run({"limits"});
    EXPECT_EQ(run.exitCode, 0);
    std::istringstream lines(run.output);
    for (const ORVPrintLimits::Row& row : ORVPrintLimits::Rows()) {
        std::string name;
        std::uint64_t value = 0;
        lines >> name >> value;
        EXPECT_EQ(name, row.name);
        EXPECT_EQ(value, row.unchecked);
        std::getline(lines, name);
        EXPECT_THAT(name, HasSubstr(std::string(row.what)));
    }
}

TEST_F(ResourceLimitsTest, PaintingForPixelsIsBounded) {
    const std::string large = "<rect width='100' height='100' fill='red'/>";
    WriteFile("a.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100'>" +
                           Repeat(large, 300) + "</svg>");
    for (const std::string format : {"png", "tiff", "pwg", "urf"}) {
        const ToolRun run = Run({"a.svg", "-o", "a." + format, "--limit", "painted-pixels=1000"});
        EXPECT_EQ(run.exitCode, 9);
        EXPECT_EQ(run.errors,
                  "orvprint: a.svg: has more than 1000 pixels to paint, the limit; to allow more, use "
                  "--limit painted-pixels=N\n");
    }
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit", "painted-pixels=1000"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "a.png"}).exitCode, 0);
}

TEST_F(ResourceLimitsTest, AreSetByName) {
    WriteFile("a.svg", SmallDrawing(kLeaf + kLeaf));
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit", "primitives=3"}).exitCode, 0);
    const ToolRun refused = Run({"a.svg", "-o", "a.pdf", "--limit", "primitives=2"});
    EXPECT_EQ(refused.exitCode, 9);
    EXPECT_EQ(
        refused.errors,
        "orvprint: a.svg: has more than 2 primitives, the limit; to allow more, use --limit primitives=N\n");
    EXPECT_EQ(Run({"info", "a.svg", "--limit", "primitives=2"}).exitCode, 9);
    EXPECT_EQ(Run({"inspect", "a.svg", "--limit", "primitives=2"}).exitCode, 9);
    EXPECT_EQ(Run({"check", "a.svg", "--limit", "element-depth=1"}).exitCode, 4);
    EXPECT_EQ(Run({"check", "a.svg", "--limit", "element-depth=2"}).exitCode, 0);
    // The last setting counts.
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit=primitives=2", "--limit=primitives=3"}).exitCode, 0);
}

TEST_F(ResourceLimitsTest, SettingsThatCannotBeUnderstood) {
    WriteFile("a.svg", SmallDrawing(kLeaf));
    for (const char* setting : {"such=1", "primitives", "primitives=", "primitives=x", "primitives=1x",
                                "primitives=-1", "element-depth=1025", "primitives=99999999999999999999"}) {
        const ToolRun run = Run({"a.svg", "-o", "a.pdf", "--limit", setting});
        EXPECT_EQ(run.exitCode, 2) << setting;
        EXPECT_THAT(run.errors, StartsWith("orvprint: --limit ")) << setting;
    }
    EXPECT_FALSE(Exists("a.pdf"));
}

TEST_F(ResourceLimitsTest, BytesOfAnInput) {
    const std::string drawing = SmallDrawing(kLeaf);
    WriteFile("a.svg", drawing);
    const std::string size = std::to_string(drawing.size()), less = std::to_string(drawing.size() - 1);
    for (const std::vector<std::string>& command : {std::vector<std::string>{"info", "a.svg"},
                                                    {"check", "a.svg"},
                                                    {"inspect", "a.svg"},
                                                    {"a.svg", "-o", "a.pdf"}}) {
        std::vector<std::string> fits = command, exceeds = command;
        fits.insert(fits.end(), {"--limit", "input-bytes=" + size});
        exceeds.insert(exceeds.end(), {"--limit", "input-bytes=" + less});
        EXPECT_EQ(Run(fits).exitCode, 0) << command[0];
        EXPECT_EQ(Run(exceeds).exitCode, 9) << command[0];
    }
    EXPECT_EQ(Run({"info", "-", "--limit", "input-bytes=" + size}, drawing).exitCode, 0);
    EXPECT_EQ(Run({"info", "-", "--limit", "input-bytes=" + less}, drawing).exitCode, 9);
}

TEST_F(ResourceLimitsTest, InputsThatNeverEnd) {
    WriteFile("sparse.svg", "");
    std::filesystem::resize_file(Folder() / "sparse.svg", std::uintmax_t{1} << 40U);
    for (const char* command : {"", "info ", "inspect ", "check "})
        for (const char* input : {"sparse.svg", "/dev/zero"}) {
            const std::string output = *command == 0 ? " -o a.pdf" : "";
            const ToolRun run =
                RunBounded(std::string(command) + input + output + " --limit input-bytes=50000000");
            EXPECT_EQ(run.exitCode, 9) << command << input;
            EXPECT_THAT(run.errors, HasSubstr("has more than 50000000 bytes")) << command << input;
        }
}

TEST_F(ResourceLimitsTest, Pages) {
    WriteFile("a.svg", "<svg>" + Repeat("<svg width='9' height='9'/>", 3) + "</svg>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit", "pages=3"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "b.png", "--limit", "pages=2"}).exitCode, 9);
    EXPECT_EQ(Run({"a.svg", "a.svg", "-o", "b.pdf", "--limit", "pages=5"}).exitCode, 9);
    EXPECT_EQ(Run({"a.svg", "-o", "b.pdf", "--limit", "pages=2", "--pages", "2-3"}).exitCode, 0);
    WriteFile("many.svg", "<svg>" + Repeat("<svg width='9' height='9'/>", 10'001) + "</svg>");
    const ToolRun many = Run({"many.svg", "-o", "b.pdf", "--limit", "pages=10000"});
    EXPECT_EQ(many.exitCode, 9);
    EXPECT_THAT(many.errors, HasSubstr("has more than 10000 pages, the limit"));
    // The sheets of a poster count as pages.
    WriteFile("wide.svg", "<svg width='9000' height='9000'/>");
    EXPECT_EQ(
        Run({"wide.svg", "-o", "c.pdf", "--paper", "A4", "--scale", "1000%", "--tile", "--limit", "pages=20"})
            .exitCode,
        9);
    EXPECT_THAT(Files(), testing::ElementsAre("a.pdf", "a.svg", "b.pdf", "many.svg", "wide.svg"));
}

TEST_F(ResourceLimitsTest, PixelsOfAPage) {
    WriteFile("a.svg", "<svg width='20' height='10'/>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--limit", "page-pixels=200"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "b.png", "--limit", "page-pixels=199"}).exitCode, 9);
    EXPECT_FALSE(Exists("b.png"));
}

constexpr std::array kFormats{"pdf", "ps", "eps", "svg", "png", "tiff", "pwg", "urf"};

/// Returns a drawing that needs more than `kSmallOutput` bytes in every format.
std::string LongDrawing() {
    std::string shapes;
    for (int i = 0; i < 4000; ++i)
        shapes += "<rect x='" + std::to_string(i * 37 % 89) + "." + std::to_string(i % 7) + "' y='" +
                  std::to_string(i * 53 % 43) + "' width='1' height='1' fill='#" +
                  std::to_string(100 + i * 7919 % 900) + "'/>";
    // The limit may also be reached in the middle of an image.
    const std::string image = SampleJpegOf(64, 64, [](int x, int y) {
        return std::array<unsigned char, 3>{static_cast<unsigned char>(x * y * 7919), 9, 9};
    });
    return SmallDrawing(shapes + "<image width='30' height='30' xlink:href='data:image/jpeg;base64," +
                        ToBase64(image) + "'/>");
}
constexpr const char* kSmallOutput = "output-bytes=5000";

TEST_F(ResourceLimitsTest, BytesOfAnOutput) {
    WriteFile("a.svg", LongDrawing());
    for (const std::string format : kFormats) {
        const std::string file = "out." + format;
        const ToolRun refused = Run({"a.svg", "-o", file, "--limit", kSmallOutput});
        EXPECT_EQ(refused.exitCode, 9) << format;
        EXPECT_EQ(refused.errors,
                  "orvprint: a.svg: has more than 5000 bytes of output, the limit; to allow more, use "
                  "--limit output-bytes=N\n")
            << format;
        EXPECT_THAT(Files(), testing::ElementsAre("a.svg")) << format;

        const ToolRun stream = Run({"a.svg", "-f", format, "-o", "-", "--limit", kSmallOutput});
        EXPECT_EQ(stream.exitCode, 9) << format;
        EXPECT_THAT(stream.errors, HasSubstr("output-bytes")) << format;
        EXPECT_LE(stream.output.size(), 5000U) << format;

        ASSERT_EQ(Run({"a.svg", "-o", file}).exitCode, 0) << format;
        // The actual size passes. PostScript is first written to a temporary file, which is a little longer.
        const std::uintmax_t size = std::filesystem::file_size(Folder() / file) + 500;
        EXPECT_EQ(Run({"a.svg", "-o", file, "--limit", "output-bytes=" + std::to_string(size)}).exitCode, 0)
            << format;
        std::filesystem::remove(Folder() / file);
    }
}

// Tile by tile, files of hundreds of megabytes would be written.
TEST_F(ResourceLimitsTest, PatternsWithinPatternsRemainSmall) {
    const auto pattern = [](const std::string& id, double size, const std::string& paint) {
        const std::string number = std::to_string(size), half = std::to_string(size / 2.0);
        return "<pattern id='" + id + "' width='" + number + "' height='" + number +
               "' patternUnits='userSpaceOnUse'><circle cx='" + half + "' cy='" + half + "' r='" +
               std::to_string(size * 0.4) + "' fill='" + paint + "' stroke='" + paint + "'/></pattern>";
    };
    WriteFile("a.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='800' height='600'>" +
                           pattern("p", 100.0, "url(#q)") + pattern("q", 12.5, "red") +
                           "<rect width='800' height='600' fill='url(#p)'/></svg>");
    for (const std::string format : {"pdf", "svg", "ps"}) {
        const ToolRun run = Run({"a.svg", "--interpreter", "svg2", "-f", format, "-o", "out", "--limit",
                                 "output-bytes=10000000"});
        EXPECT_EQ(run.exitCode, 0) << format << run.errors;
    }
}

TEST_F(ResourceLimitsTest, BytesOfAllFilesOfAnOutput) {
    const std::string page = "<svg width='90' height='45'>" + kLeaf + "</svg>";
    WriteFile("a.svg", "<svg>" + Repeat(page, 40) + "</svg>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--limit", "output-bytes=1000"}).exitCode, 9);
    EXPECT_THAT(Files(), testing::ElementsAre("a.svg"));
    // In a batch, each drawing has its own output.
    std::vector<std::string> batch{"--out-dir", "out", "-f",      "png",
                                   "-j",        "1",   "--limit", "output-bytes=1000"};
    for (int i = 0; i < 9; ++i) {
        WriteFile(std::to_string(i) + ".svg", page);
        batch.push_back(std::to_string(i) + ".svg");
    }
    EXPECT_EQ(Run(batch).exitCode, 0);
}

TEST_F(ResourceLimitsTest, TemporaryDataStandWhereTheEnvironmentSays) {
    WriteFile("a.svg", LongDrawing());
    std::filesystem::create_directory(Folder() / "data");
    for (const std::string format : {"ps", "eps", "tiff"}) {
        const auto print = [&](const std::string& folder) {
            return RunProgram({"env", "TMPDIR=" + folder, ORV_TOOL_PATH, "a.svg", "-f", format, "-o", "out"});
        };
        const ToolRun missing = print("missing");
        EXPECT_EQ(missing.exitCode, 9) << format;
        EXPECT_THAT(missing.errors, HasSubstr("no temporary file can be made")) << format;
        EXPECT_FALSE(Exists("out")) << format;
        EXPECT_EQ(print("data").exitCode, 0) << format;
        EXPECT_TRUE(std::filesystem::is_empty(Folder() / "data")) << format;
        std::filesystem::remove(Folder() / "out");
    }
}

TEST_F(ResourceLimitsTest, PixelsOfAllPages) {
    WriteFile("a.svg", "<svg>" + Repeat("<svg width='20' height='10'/>", 3) + "</svg>");
    const auto print = [&](const std::vector<std::string>& arguments, const std::string& limit) {
        std::vector<std::string> all = arguments;
        all.insert(all.end(), {"--limit", "output-pixels=" + limit});
        return Run(all);
    };
    const ToolRun refused = print({"a.svg", "-o", "a.png"}, "599");
    EXPECT_EQ(refused.exitCode, 9);
    EXPECT_EQ(refused.errors,
              "orvprint: a.svg: has more than 599 pixels on all pages, the limit; to allow more, use --limit "
              "output-pixels=N\n");
    struct Row {
        std::vector<std::string> arguments;
        int pixels;
    };
    for (const Row& row :
         {Row{{"a.svg", "-o", "b.tiff"}, 600}, Row{{"a.svg", "-o", "b.pwg"}, 3 * 19 * 9},
          Row{{"a.svg", "a.svg", "-o", "b.tiff"}, 1200}, Row{{"a.svg", "-o", "b.tiff", "--dpi", "180"}, 2400},
          Row{{"a.svg", "-o", "b.tiff", "--pages", "2"}, 200},
          // Two sheets of 90 x 45 units; then one page as a poster of four sheets.
          Row{{"a.svg", "-o", "b.tiff", "--paper", "25.4x12.7mm", "--margin", "0mm", "--nup", "2"}, 8100},
          Row{{"a.svg", "-o", "b.tiff", "--pages", "1", "--paper", "10x5pt", "--margin", "0mm", "--overlap",
               "0mm", "--tile", "--scale", "100%", "--orientation", "landscape"},
              4 * 13 * 6}}) {
        SCOPED_TRACE(testing::PrintToString(row.arguments));
        const ToolRun within = print(row.arguments, std::to_string(row.pixels));
        EXPECT_EQ(within.exitCode, 0) << within.errors;
        EXPECT_EQ(print(row.arguments, std::to_string(row.pixels - 1)).exitCode, 9);
    }
    // Formats without pixels are not limited.
    EXPECT_EQ(print({"a.svg", "-o", "c.pdf"}, "0").exitCode, 0);
    // In a batch, the limit applies to each output.
    WriteFile("d.svg", ReadFile("a.svg"));
    EXPECT_EQ(print({"a.svg", "d.svg", "--out-dir", "out", "-f", "tiff", "-j", "1"}, "600").exitCode, 0);
    EXPECT_FALSE(Exists("a.png") || Exists("a-1.png"));
}

}  // namespace
