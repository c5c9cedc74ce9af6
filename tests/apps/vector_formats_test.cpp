// SPDX-License-Identifier: Apache-2.0

// SVG, PostScript and EPS as the command writes them.

#include <gmock/gmock.h>

#include "tests/apps/tool_run.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class VectorFormatsTest : public ToolTest {
protected:
    VectorFormatsTest() {
        WriteFile("two.svg",
                  "<svg><svg width='90' height='90'><text x='9' y='40' fill='black'>one</text></svg>"
                  "<svg width='180' height='90'><text x='9' y='40' fill='black'>two</text></svg></svg>");
    }
};

TEST_F(VectorFormatsTest, PagesOfSvgAndEpsAreFilesOfTheirOwn) {
    EXPECT_EQ(Run({"two.svg", "-o", "s.svg"}).exitCode, 0);
    EXPECT_EQ(Run({"two.svg", "-o", "e.eps"}).exitCode, 0);
    EXPECT_EQ(Run({"two.svg", "-o", "p.ps"}).exitCode, 0);
    EXPECT_THAT(Files(), ElementsAre("e-1.eps", "e-2.eps", "p.ps", "s-1.svg", "s-2.svg", "two.svg"));
    EXPECT_THAT(ReadFile("s-2.svg"), HasSubstr("width=\"50.8mm\" height=\"25.4mm\" viewBox=\"0 0 180 90\""));
    EXPECT_THAT(ReadFile("s-2.svg"), HasSubstr(">two</text>"));
    EXPECT_THAT(ReadFile("e-2.eps"), HasSubstr("%%BoundingBox: 0 0 144 72\n"));
    EXPECT_THAT(ReadFile("p.ps"), HasSubstr("%%Pages: 2\n"));
}

TEST_F(VectorFormatsTest, OutputIsTheSameEveryTime) {
    for (const char* format : {"svg", "ps", "eps"}) {
        const std::vector<std::string> command{Example("floor-plan.svg"), "-f", format, "-o", "-"};
        const ToolRun first = Run(command), second = Run(command);
        EXPECT_EQ(first.exitCode, 0) << first.errors;
        EXPECT_FALSE(first.output.empty());
        EXPECT_EQ(first.output, second.output) << format;
    }
}

// SVG that is read back has the pages of the original and gives the same SVG.
TEST_F(VectorFormatsTest, WrittenSvgReadsAsTheSameDrawing) {
    const auto pages = [this](const std::string& drawing) {
        const std::string text = Run({"info", drawing}).output;
        return text.substr(text.find(": "));
    };
    for (const char* name : {"bracket", "chart", "link-map"}) {
        const std::string drawing = Example(std::string(name) + ".svg");
        ASSERT_EQ(Run({drawing, "-o", "once.svg"}).exitCode, 0);
        EXPECT_EQ(pages("once.svg"), pages(drawing));
        for (const char* parser : {"light", "dom"}) {
            ASSERT_EQ(Run({"once.svg", "-o", "twice.svg", "--parser", parser}).exitCode, 0);
            ASSERT_EQ(Run({"twice.svg", "-o", "thrice.svg", "--parser", parser}).exitCode, 0);
            EXPECT_EQ(ReadFile("twice.svg"), ReadFile("thrice.svg")) << name << " " << parser;
        }
    }
}

TEST_F(VectorFormatsTest, PostScriptWhoseLibraryIsDamagedIsMissedInOneLine) {
    std::filesystem::create_directories(Folder() / "damaged");
    WriteFile("damaged/libcairo.so.2", "no library");
    const auto runWithIt = [&](const char* output) {
        return RunProgram({"env", "LD_LIBRARY_PATH=" + (Folder() / "damaged").string(), ORV_TOOL_PATH,
                           "two.svg", "-o", output});
    };
    const ToolRun run = runWithIt("p.ps");
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors,
                StartsWith("orvprint: two.svg: printing failed: PostScript needs liborvpostscript.so"));
    EXPECT_THAT(run.errors, HasSubstr("libcairo.so.2"));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    EXPECT_FALSE(Exists("p.ps"));
    EXPECT_EQ(runWithIt("p.svg").exitCode, 0);
}

}  // namespace
