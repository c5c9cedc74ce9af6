// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/apps/tool_run.h"

namespace {

class InfoTest : public ToolTest {
protected:
    InfoTest() {
        WriteFile("two.svg",
                  "<svg><svg width='90' height='45'><title>One &quot;1&quot;\nline</title></svg>"
                  "<svg width='45.5' height='90'/></svg>");
    }
};

TEST_F(InfoTest, TellsPagesWithSizesAndTitles) {
    const ToolRun run = Run({"info", "two.svg"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output,
              "two.svg: 2 pages\n"
              "page 1: 90 x 45 units, 25.40 x 12.70 mm, \"One \"1\"\\nline\"\n"
              "page 2: 45.5 x 90 units, 12.84 x 25.40 mm\n");
}

TEST_F(InfoTest, TellsTheSameAsJson) {
    const ToolRun run = Run({"info", "--json", "-"}, ReadFile("two.svg"));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    const nlohmann::json info = nlohmann::json::parse(run.output);
    EXPECT_EQ(info["pageCount"], 2);
    EXPECT_EQ(info["pages"][0]["title"], "One \"1\"\nline");
    EXPECT_EQ(info["pages"][1]["number"], 2);
    EXPECT_EQ(info["pages"][1]["width"], 45.5);
    EXPECT_DOUBLE_EQ(info["pages"][0]["widthMm"].get<double>(), 25.4);
}

TEST_F(InfoTest, CountsThePagesOfAllFragments) {
    const ToolRun run = Run({"info", Example("report.qvxml"), "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(nlohmann::json::parse(run.output)["pageCount"], 3);
}

TEST_F(InfoTest, FailsAsPrintingDoes) {
    WriteFile("bad.svg", "<svg><g></svg>");
    WriteFile("nothing.svg", "<x/>");
    EXPECT_EQ(Run({"info", "missing.svg"}).exitCode, 3);
    EXPECT_EQ(Run({"info", "bad.svg"}).exitCode, 4);
    EXPECT_EQ(Run({"info", "nothing.svg"}).exitCode, 5);
    EXPECT_EQ(Run({"info"}).exitCode, 2);
}

}  // namespace
