// SPDX-License-Identifier: Apache-2.0

// What the command does with input that was made to break it.

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <array>
#include <sstream>

#include "platform/system/ORVPrintLimits.h"
#include "tests/apps/tool_run.h"
#include "tests/support/sample_images.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string Repeat(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

const std::string kLeaf = "<rect width='1' height='1' fill='red'/>";

/// Levels of groups, each of which uses the one before ten times.
std::string Fan(int levels, const std::string& leaf, const std::string& attributes,
                const std::string& element = "g") {
    std::string text = "<defs><" + element + " id='d0'>" + leaf + "</" + element + "></defs>";
    for (int i = 1; i < levels; ++i)
        text += "<defs><" + element + " id='d" + std::to_string(i) + "'>" +
                Repeat("<use xlink:href='#d" + std::to_string(i - 1) + "' " + attributes + "/>", 10) + "</" +
                element + "></defs>";
    return text + "<use xlink:href='#d" + std::to_string(levels - 1) + "' " + attributes + "/>";
}

class LimitsToolTest : public ToolTest {
protected:
    /// Prints to `output` under a limit of the stack.
    ToolRun RunWithStack(const std::string& kibibytes, const std::string& arguments) const {
        return RunProgram({"bash", "-c", "ulimit -s " + kibibytes + "; '" ORV_TOOL_PATH "' " + arguments});
    }
    /// Memory bounds what a failure could do to the machine.
    ToolRun RunBounded(const std::string& arguments) const {
#if defined(ORV_SANITIZED)
        return RunProgram({"bash", "-c", "'" ORV_TOOL_PATH "' " + arguments});
#else
        return RunProgram({"bash", "-c", "ulimit -v 2500000; '" ORV_TOOL_PATH "' " + arguments});
#endif
    }
};

TEST_F(LimitsToolTest, AreListed) {
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

TEST_F(LimitsToolTest, PaintingForPixelsIsBounded) {
    const std::string large = "<rect width='100' height='100' fill='red'/>";
    WriteFile("a.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100'>" +
                           Repeat(large, 300) + "</svg>");
    for (const std::string format : {"png", "tiff", "pwg"}) {
        const ToolRun run = Run({"a.svg", "-o", "a." + format, "--limit", "painted-pixels=1000"});
        EXPECT_EQ(run.exitCode, 9);
        EXPECT_EQ(run.errors,
                  "orvprint: a.svg: has more than 1000 pixels to paint, the limit; to allow more, use "
                  "--limit painted-pixels=N\n");
    }
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit", "painted-pixels=1000"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "a.png"}).exitCode, 0);
}

TEST_F(LimitsToolTest, AreSetByName) {
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
    // The last one counts.
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit=primitives=2", "--limit=primitives=3"}).exitCode, 0);
}

TEST_F(LimitsToolTest, SettingsThatCannotBeUnderstood) {
    WriteFile("a.svg", SmallDrawing(kLeaf));
    for (const char* setting : {"such=1", "primitives", "primitives=", "primitives=x", "primitives=1x",
                                "primitives=-1", "element-depth=1025", "primitives=99999999999999999999"}) {
        const ToolRun run = Run({"a.svg", "-o", "a.pdf", "--limit", setting});
        EXPECT_EQ(run.exitCode, 2) << setting;
        EXPECT_THAT(run.errors, StartsWith("orvprint: --limit ")) << setting;
    }
    EXPECT_FALSE(Exists("a.pdf"));
}

TEST_F(LimitsToolTest, BytesOfAnInput) {
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

TEST_F(LimitsToolTest, InputsThatNeverEnd) {
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

TEST_F(LimitsToolTest, Pages) {
    WriteFile("a.svg", "<svg>" + Repeat("<svg width='9' height='9'/>", 3) + "</svg>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", "--limit", "pages=3"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "b.png", "--limit", "pages=2"}).exitCode, 9);
    EXPECT_EQ(Run({"a.svg", "a.svg", "-o", "b.pdf", "--limit", "pages=5"}).exitCode, 9);
    EXPECT_EQ(Run({"a.svg", "-o", "b.pdf", "--limit", "pages=2", "--pages", "2-3"}).exitCode, 0);
    WriteFile("many.svg", "<svg>" + Repeat("<svg width='9' height='9'/>", 10'001) + "</svg>");
    const ToolRun many = Run({"many.svg", "-o", "b.pdf", "--limit", "pages=10000"});
    EXPECT_EQ(many.exitCode, 9);
    EXPECT_THAT(many.errors, HasSubstr("has more than 10000 pages, the limit"));
    // A poster's sheets are pages, too.
    WriteFile("wide.svg", "<svg width='9000' height='9000'/>");
    EXPECT_EQ(
        Run({"wide.svg", "-o", "c.pdf", "--paper", "A4", "--scale", "1000%", "--tile", "--limit", "pages=20"})
            .exitCode,
        9);
    EXPECT_THAT(Files(), testing::ElementsAre("a.pdf", "a.svg", "b.pdf", "many.svg", "wide.svg"));
}

TEST_F(LimitsToolTest, PixelsOfAPage) {
    WriteFile("a.svg", "<svg width='20' height='10'/>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--limit", "page-pixels=200"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "b.png", "--limit", "page-pixels=199"}).exitCode, 9);
    EXPECT_FALSE(Exists("b.png"));
}

constexpr std::array kFormats{"pdf", "ps", "eps", "svg", "png", "tiff", "pwg"};

/// A drawing that needs more than `kSmallOutput` bytes in every format.
std::string LongDrawing() {
    std::string shapes;
    for (int i = 0; i < 4000; ++i)
        shapes += "<rect x='" + std::to_string(i * 37 % 89) + "." + std::to_string(i % 7) + "' y='" +
                  std::to_string(i * 53 % 43) + "' width='1' height='1' fill='#" +
                  std::to_string(100 + i * 7919 % 900) + "'/>";
    // In the middle of an image, too, an output may become too long.
    const std::string image = SampleJpegOf(64, 64, [](int x, int y) {
        return std::array<unsigned char, 3>{static_cast<unsigned char>(x * y * 7919), 9, 9};
    });
    return SmallDrawing(shapes + "<image width='30' height='30' xlink:href='data:image/jpeg;base64," +
                        ToBase64(image) + "'/>");
}
constexpr const char* kSmallOutput = "output-bytes=5000";

TEST_F(LimitsToolTest, BytesOfAnOutput) {
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
        // As many bytes as there are pass. PostScript waits in a temporary file, where it is a little longer.
        const std::uintmax_t size = std::filesystem::file_size(Folder() / file) + 500;
        EXPECT_EQ(Run({"a.svg", "-o", file, "--limit", "output-bytes=" + std::to_string(size)}).exitCode, 0)
            << format;
        std::filesystem::remove(Folder() / file);
    }
}

TEST_F(LimitsToolTest, BytesOfAllFilesOfAnOutput) {
    const std::string page = "<svg width='90' height='45'>" + kLeaf + "</svg>";
    WriteFile("a.svg", "<svg>" + Repeat(page, 40) + "</svg>");
    EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--limit", "output-bytes=1000"}).exitCode, 9);
    EXPECT_THAT(Files(), testing::ElementsAre("a.svg"));
    // But each drawing of a batch has an output of its own.
    std::vector<std::string> batch{"--out-dir", "out", "-f",      "png",
                                   "-j",        "1",   "--limit", "output-bytes=1000"};
    for (int i = 0; i < 9; ++i) {
        WriteFile(std::to_string(i) + ".svg", page);
        batch.push_back(std::to_string(i) + ".svg");
    }
    EXPECT_EQ(Run(batch).exitCode, 0);
}

TEST_F(LimitsToolTest, TemporaryDataStandWhereTheEnvironmentSays) {
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

TEST_F(LimitsToolTest, PixelsOfAllPages) {
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
          // Two sheets of 90 x 45 units; a poster of four such sheets, of half of the page.
          Row{{"a.svg", "-o", "b.tiff", "--paper", "25.4x12.7mm", "--margin", "0mm", "--nup", "2"}, 8100},
          Row{{"a.svg", "-o", "b.tiff", "--pages", "1", "--paper", "10x5pt", "--margin", "0mm", "--overlap",
               "0mm", "--tile", "--scale", "100%", "--orientation", "landscape"},
              4 * 13 * 6}}) {
        SCOPED_TRACE(testing::PrintToString(row.arguments));
        const ToolRun within = print(row.arguments, std::to_string(row.pixels));
        EXPECT_EQ(within.exitCode, 0) << within.errors;
        EXPECT_EQ(print(row.arguments, std::to_string(row.pixels - 1)).exitCode, 9);
    }
    // Formats without pixels have none.
    EXPECT_EQ(print({"a.svg", "-o", "c.pdf"}, "0").exitCode, 0);
    // Each output of a batch has the limit to itself.
    WriteFile("d.svg", ReadFile("a.svg"));
    EXPECT_EQ(print({"a.svg", "d.svg", "--out-dir", "out", "-f", "tiff", "-j", "1"}, "600").exitCode, 0);
    EXPECT_FALSE(Exists("a.png") || Exists("a-1.png"));
}

#if !defined(ORV_SANITIZED)
TEST_F(LimitsToolTest, Memory) {
    // Some thirty megabytes of model, and the same behind much that says nothing.
    const std::string lines = Repeat("<g><line x2='9' stroke='red'/></g>", 250'000);
    WriteFile("small.svg", SmallDrawing(kLeaf));
    WriteFile("lines.svg", SmallDrawing(lines));
    WriteFile("large.svg", SmallDrawing(std::string(std::size_t{36} << 20U, ' ') + lines));
    const std::string few = " --limit memory=20000000";
    for (const std::string command : {"info ", "inspect ", "check ", "-o a.pdf ", "-o a.png "}) {
        const ToolRun refused = RunBounded(command + "lines.svg" + few);
        EXPECT_EQ(refused.exitCode, 9) << command;
        EXPECT_THAT(
            refused.errors,
            HasSubstr(
                "out of memory: more than 20000000 bytes, the limit; to allow more, use --limit memory=N"))
            << command;
        EXPECT_FALSE(Exists("a.pdf") || Exists("a.png"));
    }
    const ToolRun batch = Run({"lines.svg", "small.svg", "--out-dir", "out", "-f", "pdf", "-j", "1",
                               "--keep-going", "--quiet", "--limit", "memory=20000000"});
    EXPECT_EQ(batch.exitCode, 11) << batch.errors;
    EXPECT_TRUE(Exists("out/small.pdf"));
    EXPECT_FALSE(Exists("out/lines.pdf"));
    EXPECT_EQ(RunBounded("-o a.pdf lines.svg --limit memory=400000000").exitCode, 0);
    // Large inputs may take more.
    EXPECT_EQ(RunBounded("-o a.pdf large.svg" + few).exitCode, 0);
    EXPECT_EQ(RunBounded("info - < large.svg" + few).exitCode, 0);
}

/// What the system holds the command to while it waits for its next input, a pipe.
class MemoryBoundTest : public LimitsToolTest {
protected:
    static constexpr std::uint64_t kBase = std::uint64_t{900} << 20U, kFree = std::uint64_t{32} << 20U;

    MemoryBoundTest() {
        EXPECT_EQ(mkfifo((Folder() / "waits.svg").c_str(), 0600), 0);
        WriteFile("small.svg", SmallDrawing(kLeaf));
    }

    /// @param command    reads waits.svg behind what is to count; its own process is the shell's last job
    /// @param readsSoFar of waits.svg, before the bound is of interest
    std::uint64_t BoundOf(const std::string& command, int readsSoFar = 0) const {
        std::string script = "t='" ORV_TOOL_PATH "'; " + command + " & p=$!; ";
        // One reading must have ended before the next one is waited for.
        for (int i = 0; i < readsSoFar; ++i)
            script +=
                "open() { ls -l /proc/$p/fd | grep -q waits.svg; }; exec 3> waits.svg; cat small.svg >&3; "
                "until open; do sleep 0.01; done; exec 3>&-; while open; do sleep 0.01; done; ";
        // Opening waits until the other end is opened, too.
        script +=
            "exec 3> waits.svg; grep 'Max data size' /proc/$p/limits; cat small.svg >&3; exec 3>&-; wait $p";
        const ToolRun run = RunProgram({"bash", "-c", script});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        std::istringstream words(run.output);
        std::string max, data, size;
        std::uint64_t bound = 0;
        words >> max >> data >> size >> bound;
        return bound;
    }
    static std::uint64_t For(std::uint64_t inputBytes) {
        return kBase + 32 * (inputBytes > kFree ? inputBytes - kFree : 0);
    }
};

TEST_F(MemoryBoundTest, GrowsWithInputsAsTheyAreStored) {
    const std::string blanks(std::size_t{40} << 20U, ' ');
    WriteFile("large.svg", SmallDrawing(blanks));
    const std::uint64_t size = std::filesystem::file_size(Folder() / "large.svg");
    EXPECT_EQ(BoundOf("$t small.svg waits.svg -o x.pdf"), kBase);
    EXPECT_EQ(BoundOf("$t large.svg waits.svg -o x.pdf"), For(size));
    EXPECT_EQ(BoundOf("cat large.svg | $t - waits.svg -o x.pdf"), For(size))
        << "a stream's bytes, not its room";
    EXPECT_EQ(BoundOf("$t - waits.svg -o x.pdf < large.svg"), For(size));
    // Compressed: some megabytes that become forty.
    ASSERT_EQ(
        RunProgram({"bash", "-c",
                    "(echo \"<svg width='9' height='9'><!--\"; head -c 20000000 /dev/urandom | od -An -tx1 | "
                    "head -c 41000000; echo '--></svg>') | gzip -1 > large.svgz"})
            .exitCode,
        0);
    const std::uint64_t compressed = std::filesystem::file_size(Folder() / "large.svgz");
    ASSERT_GT(8 * compressed, kFree + kFree);
    ASSERT_LT(compressed, kFree);
    EXPECT_EQ(BoundOf("$t large.svgz waits.svg -o x.pdf"), kBase);
    EXPECT_EQ(BoundOf("cat large.svgz | $t - waits.svg -o x.pdf"), kBase);
}

// What the user has set is never raised, and what was set for the command's own sake may be.
TEST_F(MemoryBoundTest, StaysBelowWhatTheUserSet) {
    EXPECT_EQ(BoundOf("(ulimit -S -d 600000; exec $t small.svg waits.svg -o x.pdf)"), 600'000U * 1024U);
    EXPECT_EQ(BoundOf("(ulimit -S -d 2000000; exec $t small.svg waits.svg -o x.pdf)"), kBase);
    WriteFile("large.svg", SmallDrawing(std::string(std::size_t{40} << 20U, ' ')));
    EXPECT_EQ(BoundOf("(ulimit -S -d 1000000; exec $t large.svg waits.svg -o x.pdf)"), 1'000'000U * 1024U);
}

TEST_F(MemoryBoundTest, InputsThatAreCheckedFirstCountOnce) {
    WriteFile("large.svg", SmallDrawing(std::string(std::size_t{40} << 20U, ' ')));
    EXPECT_EQ(BoundOf("$t --strict --ignore bad-view-box waits.svg large.svg -o x.pdf", 1), kBase);
}

TEST_F(MemoryBoundTest, ImagesOfADrawingCountOnce) {
    WriteFile("image.png", std::string(std::size_t{40} << 20U, 'x'));
    const std::string image = "<image width='1' height='1' xlink:href='image.png'/>";
    WriteFile("three.svg", SmallDrawing(image + image + image));
    const std::uint64_t size =
        std::filesystem::file_size(Folder() / "three.svg") + (std::uint64_t{40} << 20U);
    EXPECT_EQ(BoundOf("$t three.svg waits.svg -o x.pdf"), For(size));
}

// A few megabytes that claim to hold a gigabyte: the claim reserves nothing.
TEST_F(LimitsToolTest, MemoryOfWhatCompressedDataClaimToHold) {
    ASSERT_EQ(RunProgram({"bash", "-c",
                          "head -c 5000000 /dev/urandom | gzip -1 > a.svgz; "
                          "printf '\\x00\\x00\\x00\\x40' | dd of=a.svgz bs=1 conv=notrunc status=none "
                          "seek=$(($(stat -c %s a.svgz) - 4))"})
                  .exitCode,
              0);
    for (const std::string command : {"info a.svgz", "info - < a.svgz", "a.svgz -o a.pdf"}) {
        const ToolRun run = RunBounded(command + " --limit memory=100000000");
        EXPECT_EQ(run.exitCode, 3) << command;
        EXPECT_THAT(run.errors, HasSubstr("is damaged gzip data")) << command;
    }
}

// What is within every other limit, and would be gigabytes.
TEST_F(LimitsToolTest, MemoryOfManyMarkers) {
    WriteFile("a.svg", SmallDrawing("<marker id='m'><path d='M0 0L3 3L0 3z'/></marker><polyline stroke='red' "
                                    "fill='none' marker-mid='url(#m)' points='" +
                                    Repeat("1 2 ", 3'000'000) + "'/>"));
    const ToolRun run = Run({"a.svg", "-o", "a.pdf"});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, HasSubstr("a.svg: out of memory: more than "));
    rusage used{};
    EXPECT_EQ(getrusage(RUSAGE_CHILDREN, &used), 0);
    EXPECT_LT(used.ru_maxrss, 1'000'000) << "kibibytes";
}
#endif

// Small documents that say a great deal: all end, in a page or in an error that says why.
TEST_F(LimitsToolTest, BillionsOfLaughs) {
    std::string markers = "<marker id='m0'>" + kLeaf + "</marker>",
                entities = "<!ENTITY e0 'aaaaaaaaaaaaaaaa'>";
    std::string patterns = "<pattern id='p0' width='9' height='9'>" + kLeaf + "</pattern>";
    for (int i = 1; i < 30; ++i) {
        const std::string number = std::to_string(i), before = std::to_string(i - 1);
        markers += "<marker id='m" + number + "'><polyline points='" + Repeat("1 2 ", 10) +
                   "' stroke='red' fill='blue' marker='url(#m" + before + ")'/></marker>";
        entities += "<!ENTITY e" + number + " '" + Repeat("&e" + before + ";", 10) + "'>";
        patterns += "<pattern id='p" + number + "' width='9' height='9'>" +
                    Repeat("<rect width='9' height='9' fill='url(#p" + before + ")'/>", 10) + "</pattern>";
    }
    struct Row {
        const char* name;
        std::string content;
        int pdf, png;  // exit codes
    };
    const std::string points = "<polyline fill='none' stroke='red' points='" + Repeat("1 2 ", 5000) + "'/>";
    const std::string text = "<text y='20' fill='red'>" + Repeat("lol ", 1000) + "</text>";
    for (const Row& row : {
             Row{"duplicates", Fan(12, kLeaf, "fill='blue'"), 9, 9},
             Row{"duplicates of points", Fan(12, points, "fill='blue'"), 9, 9},
             Row{"duplicates of text", Fan(12, text, "fill='blue'"), 9, 9},
             Row{"sharing past counting", Fan(12, kLeaf, ""), 9, 9},
             Row{"sharing", Fan(8, kLeaf, ""), 0, 9},
             Row{"sharing of points", Fan(7, points, ""), 0, 9},
             Row{"sharing of text", Fan(6, text, ""), 0, 9},
             Row{"sharing of area",
                 Fan(7, "<rect width='999' height='999' fill='red' fill-opacity='0.5'/>", ""), 0, 9},
             Row{"boxes", Fan(12, kLeaf, "width='9' height='9'"), 9, 9},
             Row{"boxes of text", Fan(8, text, "width='9' height='9'"), 9, 9},
             Row{"symbols", Fan(12, kLeaf, "width='9' height='9'", "symbol"), 9, 9},
             Row{"markers", markers + "<line stroke='blue' fill='red' marker='url(#m29)'/>", 9, 9},
             Row{"markers on vertices",
                 "<marker id='m'><g>" + Repeat(kLeaf, 1000) +
                     "</g></marker><polyline fill='none' stroke='red' "
                     "marker-mid='url(#m)' points='" +
                     Repeat("1 2 ", 20'000) + "'/>",
                 0, 9},
             Row{"patterns", "<defs>" + patterns + "</defs><rect width='90' height='45' fill='url(#p29)'/>",
                 0, 0},
             Row{"themselves",
                 "<defs><g id='a'><use xlink:href='#a'/></g><g id='b'><use xlink:href='#c'/></g><g id='c'>"
                 "<use xlink:href='#b'/></g><marker id='m'><line marker='url(#m)'/></marker></defs>"
                 "<use xlink:href='#a'/><use xlink:href='#b'/><line stroke='red' marker='url(#m)'/>",
                 0, 0},
             Row{"clips",
                 "<defs><clipPath id='c'><use xlink:href='#c' clip-path='url(#c)'/></clipPath></defs>"
                 "<g clip-path='url(#c)'>" +
                     kLeaf + "</g>",
                 0, 0},
         }) {
        SCOPED_TRACE(row.name);
        WriteFile("a.svg", SmallDrawing(row.content));
        const ToolRun pdf = RunBounded("a.svg -o a.pdf"), png = RunBounded("a.svg -o a.png");
        EXPECT_EQ(pdf.exitCode, row.pdf) << pdf.errors;
        EXPECT_EQ(png.exitCode, row.png) << png.errors;
        for (const ToolRun& run : {pdf, png})
            EXPECT_THAT(run.errors, run.exitCode == 0 ? testing::Matcher<std::string>(IsEmpty())
                                                      : HasSubstr("the limit"));
        const ToolRun dump = RunBounded("inspect a.svg > /dev/null");
        EXPECT_TRUE(dump.exitCode == 0 || dump.exitCode == 9) << dump.errors;
    }
    WriteFile("a.svg", "<!DOCTYPE svg [" + entities + "]><svg width='9' height='9'><desc>&e29;</desc></svg>");
    EXPECT_EQ(RunBounded("a.svg -o b.pdf").exitCode, 4);
    EXPECT_EQ(RunBounded("a.svg --parser dom -o b.pdf").exitCode, 4);
}

TEST_F(LimitsToolTest, LargeDrawingsAreNotRefused) {
    std::string uses = "<defs>";
    for (int i = 0; i < 1000; ++i)
        uses += "<g id='d" + std::to_string(i) + "'>" + kLeaf + "<path d='M0 0L3 3L0 3z' fill='red'/></g>";
    uses += "</defs>";
    for (int i = 0; i < 20'000; ++i)
        uses += "<use xlink:href='#d" + std::to_string(i % 1000) + "' x='" + std::to_string(i % 90) +
                "' fill='lime'/>";
    WriteFile("uses.svg", SmallDrawing(uses));
    WriteFile(
        "markers.svg",
        SmallDrawing("<marker id='m'><path d='M0 0L3 3L0 3z' fill='red'/></marker><polyline fill='none' "
                     "stroke='red' marker-mid='url(#m)' points='" +
                     Repeat("1 2 ", 200'000) + "'/>"));
    // Nothing but what the document itself is made of counts here.
    for (const char* name : {"uses.svg", "markers.svg"}) {
        const std::string limits = " --limit duplicates=100000 --limit repeats=0";
        EXPECT_EQ(RunBounded(std::string(name) + " -o a.pdf" + limits).exitCode, 0) << name;
        EXPECT_EQ(RunBounded(std::string(name) + " -o a.png" + limits).exitCode, 0) << name;
    }
}

// The parts of the command that follow the document's structure must not use up the stack.
TEST_F(LimitsToolTest, AStackOfAMegabyteIsEnough) {
#if defined(ORV_SANITIZED)
    const std::string stack = "16384";  // instrumented frames are many times as large
#else
    const std::string stack = "1024";
#endif
    const std::string deep = "<g id='a' fill='red' transform='scale(1)'>";
    WriteFile("deep.svg", SmallDrawing(Repeat(deep, 1022) + kLeaf + Repeat("</g>", 1022)));
    WriteFile("switch.svg", SmallDrawing(Repeat("<a xlink:href='#a'>", 1022) + kLeaf + Repeat("</a>", 1022)));
    WriteFile("nested.svg", SmallDrawing(Repeat("<svg>", 1022) + kLeaf + Repeat("</svg>", 1022)));
    WriteFile("wide.svg", SmallDrawing(Repeat("<g/>", 100'000)));
    std::string chain = "<defs><g id='d0'>" + kLeaf + "</g>";
    for (int i = 1; i < 20'000; ++i)
        chain += "<use id='d" + std::to_string(i) + "' xlink:href='#d" + std::to_string(i - 1) + "'/>";
    WriteFile("chain.svg", SmallDrawing(chain + "</defs><use xlink:href='#d19999' fill='blue'/>"));
    for (const std::string name : {"deep.svg", "switch.svg", "nested.svg", "wide.svg", "chain.svg"}) {
        for (const std::string arguments :
             {"-o a.pdf", "-o a.png", "-o a.svgout -f svg", "-o a.ps", "--parser dom -o a.pdf"}) {
            const ToolRun run = RunWithStack(stack, name + " " + arguments);
            EXPECT_EQ(run.exitCode, 0) << name << " " << arguments << ": " << run.errors;
        }
        EXPECT_EQ(RunWithStack(stack, "inspect " + name + " > /dev/null").exitCode, 0) << name;
        EXPECT_LE(RunWithStack(stack, "check " + name + " > /dev/null").exitCode, 1) << name;
    }
}

// Whatever a document names, only regular files of its own folder are opened.
TEST_F(LimitsToolTest, SpecialFilesAreNotOpened) {
    ASSERT_EQ(mkfifo((Folder() / "pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(Folder() / "folder");
    std::filesystem::create_symlink("/etc/hostname", Folder() / "link.png");
    std::filesystem::create_symlink("/etc", Folder() / "way-out");
    std::filesystem::create_symlink("loop", Folder() / "loop");
    WriteFile("sparse.png", "");
    std::filesystem::resize_file(Folder() / "sparse.png", std::uintmax_t{1} << 40U);
    std::string content;
    for (const char* name : {"/dev/zero",
                             "/dev/stdin",
                             "/dev/tty",
                             "/proc/self/mem",
                             "/proc/kmsg",
                             "/etc/hostname",
                             "pipe",
                             "folder",
                             ".",
                             "..",
                             "../x.png",
                             "link.png",
                             "way-out/hostname",
                             "loop",
                             "sparse.png",
                             "http://example.com/x.png",
                             "file:///etc/hostname",
                             "//example.com/x.png",
                             "",
                             "nul&#10;"})
        content += std::string("<image width='9' height='9' xlink:href='") + name + "'/>";
    WriteFile("a.svg", SmallDrawing(content));
    EXPECT_EQ(RunBounded("a.svg -o a.pdf").exitCode, 0);
    EXPECT_EQ(RunBounded("inspect a.svg > a.json").exitCode, 0);
    EXPECT_THAT(ReadFile("a.json"), testing::Not(HasSubstr("\"pixelImage\":{")));
    const ToolRun check = RunBounded("check --verbose a.svg");
    EXPECT_EQ(check.exitCode, 1);
    for (const std::string name : {"link.png", "way-out/hostname", "/etc/hostname"})
        EXPECT_THAT(check.output, HasSubstr("\"" + name + "\": the drawing may not read files there"));
    EXPECT_THAT(check.output, HasSubstr("nothing is loaded from the network"));
}

TEST_F(LimitsToolTest, AnOutputNeverTakesThePlaceOfAnInput) {
    const std::string drawing = SmallDrawing(kLeaf);
    WriteFile("a.svg", drawing);
    std::filesystem::create_hard_link(Folder() / "a.svg", Folder() / "hard.svg");
    std::filesystem::create_symlink("a.svg", Folder() / "soft.svg");
    std::filesystem::create_directory(Folder() / "x");
    std::filesystem::create_directory_symlink(".", Folder() / "here");
    for (const char* output : {"a.svg", "./a.svg", "x/../a.svg", "hard.svg", "soft.svg", "here/a.svg"}) {
        EXPECT_EQ(Run({"a.svg", "-o", output}).exitCode, 8) << output;
        EXPECT_EQ(ReadFile("a.svg"), drawing) << output;
        EXPECT_EQ(ReadFile("hard.svg"), drawing) << output;
    }
    EXPECT_EQ(Run({"a.svg", "--out-dir", "here", "-f", "svg"}).exitCode, 8);
    EXPECT_EQ(ReadFile("a.svg"), drawing);
}

}  // namespace
