// SPDX-License-Identifier: Apache-2.0

// Images in files, and the detection of documents that contain drawings.

#include <gmock/gmock.h>

#include "tests/apps/tool_run.h"
#include "tests/support/sample_images.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class FileImagesTest : public ToolTest {
protected:
    FileImagesTest() {
        WriteFile("image.png", SamplePng(20, 20));
        WriteFile("named.svg", SmallDrawing("<image width='20' height='20' xlink:href='image.png'/>"));
        WriteFile("inside.svg",
                  SmallDrawing("<image width='20' height='20' xlink:href='data:image/png;base64," +
                               ToBase64(SamplePng(20, 20)) + "'/>"));
    }
    bool HasImage(const std::string& pdf) const {
        return RunProgram({"pdfimages", "-list", pdf}).output.find(" image ") != std::string::npos;
    }
};

TEST_F(FileImagesTest, NoFileImagesLeavesOutWhatDrawingsName) {
    for (const char* interpreter : {"SVG", "SVG2"}) {
        EXPECT_EQ(Run({"named.svg", "-o", "o.pdf", "--interpreter", interpreter}).exitCode, 0);
        EXPECT_TRUE(HasImage("o.pdf"));
        EXPECT_EQ(
            Run({"named.svg", "-o", "o.pdf", "--no-file-images", "--interpreter", interpreter}).exitCode, 0);
        EXPECT_FALSE(HasImage("o.pdf")) << interpreter;
        EXPECT_EQ(
            Run({"inside.svg", "-o", "o.pdf", "--no-file-images", "--interpreter", interpreter}).exitCode, 0);
        EXPECT_TRUE(HasImage("o.pdf")) << interpreter;
        const ToolRun check = Run({"check", "named.svg", "--no-file-images", "--interpreter", interpreter});
        EXPECT_EQ(check.exitCode, 1);
        EXPECT_THAT(check.output, HasSubstr("image-")) << interpreter;
    }
    EXPECT_EQ(Run({"named.svg", "--out-dir", "pages", "-f", "pdf", "--no-file-images"}).exitCode, 0);
    EXPECT_FALSE(HasImage("pages/named.pdf"));
    EXPECT_EQ(Run({"named.svg", "-o", "o.pdf", "--no-file-images", "--allow-dir", "."}).exitCode, 2);
}

TEST_F(FileImagesTest, DetectQvxmlLooksAtTheRoot) {
    WriteFile("report.xml", "<report><a>" + SmallDrawing("") + "</a>" + SmallDrawing("") + "</report>");
    for (const char* interpreter : {"SVG", "SVG2"}) {
        EXPECT_THAT(Run({"info", "report.xml", "--detect-qvxml", "--interpreter", interpreter}).output,
                    HasSubstr("2 pages"));
        EXPECT_THAT(Run({"info", "named.svg", "--detect-qvxml", "--interpreter", interpreter}).output,
                    HasSubstr("1 page\n"));
    }
    // Pages of a drawing are not taken for separate drawings.
    for (const char* example : {"drawing-set.svg", "floor-plan.svg"})
        EXPECT_EQ(Run({Example(example), "--detect-qvxml", "-f", "pdf", "-o", "-"}).output,
                  Run({Example(example), "-f", "pdf", "-o", "-"}).output);
    EXPECT_THAT(Run({"info", "report.xml", "--interpreter", "svg2"}).output, Not(HasSubstr("2 pages")));
}

}  // namespace
