// SPDX-License-Identifier: Apache-2.0

// No output ever replaces an input or a font.

#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/apps/batch_run.h"
#include "tests/support/sample_images.h"

namespace fs = std::filesystem;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class OutputOverInputTest : public BatchTest {
protected:
    void ExpectRefused(const std::vector<std::string>& arguments, const std::string& output) {
        const std::string before = ReadFile("a.svg");
        const ToolRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 8);
        EXPECT_EQ(run.errors, "orvprint: " + output + ": is an input; choose another name\n");
        EXPECT_EQ(ReadFile("a.svg"), before);
    }
};

/// Drawings that show p.png, and p.png itself.
class ImagesAreInputsTest : public BatchTest {
protected:
    ImagesAreInputsTest() {
        EXPECT_EQ(Run({"a.svg", "-o", "p.png"}).exitCode, 0);
        image_ = ReadFile("p.png");
        WriteFile("p.svg", ReadFile("b.svg"));
        WriteFile("shows.svg", SmallDrawing("<image width='9' height='9' xlink:href='p.png'/>"));
    }
    void ExpectRefused(const std::vector<std::string>& arguments, const std::string& output,
                       const std::string& what = "is an input; choose another name") {
        const std::vector<std::string> before = Files();
        const ToolRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 8);
        EXPECT_EQ(run.errors, "orvprint: " + output + ": " + what + "\n");
        EXPECT_EQ(ReadFile("p.png"), image_);
        EXPECT_EQ(Files(), before);
    }
    std::string image_;
};

TEST_F(ImagesAreInputsTest, ASingleOutputReplacesNone) {
    ExpectRefused({"shows.svg", "-o", "p.png"}, "p.png");
    ExpectRefused({"shows.svg", "-f", "pdf", "-o", "./p.png"}, "./p.png");
    // The image is read after the output has begun.
    ExpectRefused({"a.svg", "shows.svg", "-f", "pdf", "-o", "p.png"}, "p.png");
    ExpectRefused({"--strict", "--ignore", "image-stretched", "shows.svg", "-o", "p.png"}, "p.png");
    fs::create_symlink("p.png", Folder() / "link.png");
    fs::create_hard_link(Folder() / "p.png", Folder() / "pages-2.png");
    ExpectRefused({"shows.svg", "-o", "link.png"}, "link.png");
    // One of several files is refused, so none is made.
    ExpectRefused({"two.svg", "shows.svg", "-o", "pages.png"}, "pages.png");
    // Drawings that do not show the image may replace it.
    EXPECT_EQ(Run({"b.svg", "-o", "p.png"}).exitCode, 0);
    EXPECT_NE(ReadFile("p.png"), image_);
}

TEST_F(ImagesAreInputsTest, ABatchReplacesNoneInWhateverOrder) {
    for (const std::vector<std::string>& inputs : {std::vector<std::string>{"p.svg", "shows.svg"},
                                                   {"shows.svg", "p.svg"},
                                                   {"p.svg", "b.svg", "shows.svg"}})
        for (const char* jobs : {"1", "2"}) {
            std::vector<std::string> command = inputs;
            command.insert(command.end(),
                           {"--out-dir", ".", "-f", "png", "-j", jobs, "--keep-going", "--quiet"});
            const ToolRun run = Run(command);
            EXPECT_EQ(run.exitCode, 11);
            EXPECT_EQ(run.errors, "orvprint: ./p.png: is an input; choose another folder\n");
            EXPECT_EQ(ReadFile("p.png"), image_);
            EXPECT_TRUE(Exists("shows.png"));
            EXPECT_THAT(FilesIn("."), Not(testing::Contains(StartsWith(".orvprint"))));
        }
    WriteFile("own.svg", SmallDrawing("<image width='9' height='9' xlink:href='own.png'/>"));
    WriteFile("own.png", image_);
    EXPECT_EQ(Run({"own.svg", "--out-dir", ".", "-f", "png"}).exitCode, 8);
    EXPECT_EQ(ReadFile("own.png"), image_);
}

// A batch recognises images by their first bytes, not by their names.
TEST_F(ImagesAreInputsTest, ABatchReplacesNoImageOfAnyKind) {
    const std::string bitmap =
        std::string("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30) +
        std::string(24, '\0') + std::string("\0\0\xFF\0", 4);
    for (const std::string& image : {image_, SampleJpeg(6, 4), bitmap}) {
        WriteFile("p.png", image);
        const ToolRun run = Run({"p.svg", "b.svg", "shows.svg", "--out-dir", ".", "-f", "png", "-j", "1",
                                 "--keep-going", "--quiet"});
        EXPECT_EQ(run.exitCode, 11);
        EXPECT_EQ(run.errors, "orvprint: ./p.png: is an input; choose another folder\n");
        EXPECT_EQ(ReadFile("p.png"), image);
    }
}

TEST_F(ImagesAreInputsTest, ABatchReplacesOldImagesThatNobodyShows) {
    for (const char* name : {"a.png", "b.png", "p.png"}) WriteFile(std::string("out/") + name, image_);
    const ToolRun run = Run({"a.svg", "b.svg", "p.svg", "shows.svg", "--out-dir", "out", "-f", "png"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("4 of 4 converted, 0 failed"));
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.png", "b.png", "p.png", "shows.png"));
    EXPECT_EQ(ReadFile("out/a.png"), image_);
    EXPECT_NE(ReadFile("out/b.png"), image_);
    EXPECT_EQ(ReadFile("out/p.png"), ReadFile("out/b.png"));
    // After a failure, the drawings converted before it still replace their files.
    WriteFile("out/b.png", image_);
    EXPECT_EQ(Run({"b.svg", "bad.svg", "--out-dir", "out", "-f", "png", "-j", "1"}).exitCode, 4);
    EXPECT_NE(ReadFile("out/b.png"), image_);
}

TEST_F(ImagesAreInputsTest, FontsAreNoOutputs) {
    for (const std::string& start :
         {std::string("\0\1\0\0", 4), std::string("OTTO"), std::string("ttcf"), std::string("true"),
          std::string("wOFF"), std::string("wOF2"), std::string("\x80\1"), std::string("%!PS-AdobeFont-1.0"),
          std::string("%!FontType1"), std::string("\1fcp"), std::string("STARTFONT 2.1")}) {
        WriteFile("font.png", start + std::string(100, 'x'));
        ExpectRefused({"b.svg", "-o", "font.png"}, "font.png", "is a font; choose another name");
    }
    EXPECT_EQ(Run({"b.svg", "a.svg", "--out-dir", "out", "-f", "png"}).exitCode, 0);
    WriteFile("out/b.png", ReadFile("font.png"));
    EXPECT_THAT(Run({"b.svg", "--out-dir", "out", "-f", "png"}).errors, HasSubstr("out/b.png: is a font"));
    WriteFile("b.ps", "%!PS-Adobe-3.0\n");
    EXPECT_EQ(Run({"b.svg", "-o", "b.ps"}).exitCode, 0);
}

TEST_F(OutputOverInputTest, IsRefusedUnderEveryName) {
    ExpectRefused({"a.svg", "-f", "pdf", "-o", "a.svg"}, "a.svg");
    ExpectRefused({"b.svg", "a.svg", "-f", "pdf", "-o", "./a.svg"}, "./a.svg");
    fs::create_hard_link(Folder() / "a.svg", Folder() / "hard.pdf");
    ExpectRefused({"a.svg", "-o", "hard.pdf"}, "hard.pdf");
    fs::create_symlink("a.svg", Folder() / "soft.pdf");
    ExpectRefused({"a.svg", "-o", "soft.pdf"}, "soft.pdf");
    EXPECT_TRUE(fs::is_symlink(Folder() / "soft.pdf"));
}

TEST_F(OutputOverInputTest, IsRefusedForNumberedPagesAndStandardInput) {
    fs::create_hard_link(Folder() / "a.svg", Folder() / "p-3.png");
    ExpectRefused({"two.svg", "a.svg", "-o", "p.png"}, "p.png");
    EXPECT_FALSE(Exists("p-1.png"));

    const std::string before = ReadFile("a.svg");
    const ToolRun run =
        RunProgram({"bash", "-c", std::string("'") + ORV_TOOL_PATH + "' - -f pdf -o a.svg < a.svg"});
    EXPECT_EQ(run.exitCode, 8);
    EXPECT_EQ(ReadFile("a.svg"), before);
}

}  // namespace
