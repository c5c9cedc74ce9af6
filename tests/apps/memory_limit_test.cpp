// SPDX-License-Identifier: Apache-2.0

// The limit on memory, which grows with the inputs.

#include <sys/resource.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include <sstream>

#include "tests/apps/limits_run.h"
#include "tests/support/test_texts.h"

namespace {

using testing::HasSubstr;

class MemoryLimitTest : public BoundedToolTest {};

#if !defined(ORV_SANITIZED)
TEST_F(MemoryLimitTest, Memory) {
    // About 30 MB of model, alone and after white space of 36 MB.
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
    // Large inputs may use more.
    EXPECT_EQ(RunBounded("-o a.pdf large.svg" + few).exitCode, 0);
    EXPECT_EQ(RunBounded("info - < large.svg" + few).exitCode, 0);
}

// Each path becomes five objects with points. The limit has no room for allocator overhead on each object.
TEST_F(MemoryLimitTest, ModelsTakeNoMoreThanTheirObjects) {
    WriteFile("a.svg", SmallDrawing(Repeat("<path fill='red' d='M0 0c1 1 2 2 3 3z'/>", 200'000)));
    const ToolRun run = RunBounded("a.svg -o a.pdf --limit memory=144000000");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
}

/// Reads the limit on the command's data segment while the command waits for its next input, a pipe.
class MemoryBoundTest : public BoundedToolTest {
protected:
    static constexpr std::uint64_t kBase = std::uint64_t{900} << 20U, kFree = std::uint64_t{32} << 20U;

    MemoryBoundTest() {
        EXPECT_EQ(mkfifo((Folder() / "waits.svg").c_str(), 0600), 0);
        WriteFile("small.svg", SmallDrawing(kLeaf));
    }

    /// @param command    reads waits.svg after the inputs that count; its process is the last shell job
    /// @param readsSoFar reads of waits.svg before the one at which the limit is read
    std::uint64_t BoundOf(const std::string& command, int readsSoFar = 0) const {
        std::string script = "t='" ORV_TOOL_PATH "'; " + command + " & p=$!; ";
        // Each read must end before the next one is awaited.
        for (int i = 0; i < readsSoFar; ++i)
            script +=
                "open() { ls -l /proc/$p/fd | grep -q waits.svg; }; exec 3> waits.svg; cat small.svg >&3; "
                "until open; do sleep 0.01; done; exec 3>&-; while open; do sleep 0.01; done; ";
        // Opening the pipe blocks until the other end is opened.
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
    // The compressed size counts: here it is below kFree, but expands to about 40 MB.
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

// The command never raises the user's limit, only the one that it set itself.
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

// Compressed data of a few MB that claim to hold 1 GB: the claim reserves no memory.
TEST_F(MemoryLimitTest, MemoryOfWhatCompressedDataClaimToHold) {
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

// Images of 30 million pixels, which compress to a tenth and must not be held several times.
TEST_F(MemoryLimitTest, MemoryOfTransparentPagesInPostScript) {
    const std::string shapes =
        "<rect width='2000' height='1500' fill='red'/><circle cx='900' cy='700' r='600' "
        "fill='blue' opacity='0.5'/><rect width='2000' height='1500' fill='lime' "
        "opacity='0.5'/></svg>";
    WriteFile("a.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='2000' height='1500'>" + shapes);
    const ToolRun run = RunBounded("a.svg --interpreter SVG2 -o a.ps --limit memory=150000000");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
}

// Within every other limit, but would take gigabytes.
TEST_F(MemoryLimitTest, MemoryOfManyMarkers) {
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

}  // namespace
