// SPDX-License-Identifier: Apache-2.0

// Batches of many drawings: lists, shards, reports, resuming, retries.

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <map>
#include <sstream>

#include "tests/apps/batch_run.h"

namespace fs = std::filesystem;

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

class BatchReportTest : public BatchTest {
protected:
    std::vector<json> Records(const std::string& report) const {
        std::vector<json> records;
        std::istringstream lines(ReadFile(report));
        for (std::string line; std::getline(lines, line);) records.push_back(json::parse(line));
        return records;
    }
    /// Returns the last record of each drawing.
    std::map<std::string, json> ByName(const std::string& report) const {
        std::map<std::string, json> records;
        for (json& record : Records(report)) records[record["name"]] = record;
        return records;
    }
    ToolRun Convert(std::vector<std::string> arguments) const {
        for (const char* more : {"--out-dir", "out", "-f", "pdf", "--keep-going"})
            arguments.emplace_back(more);
        return Run(arguments);
    }
    std::string HashOf(const std::string& file) const {
        const ToolRun run = RunProgram({"xxhsum", "-H128", Folder() / file});
        return run.output.substr(0, run.output.find(' '));
    }
};

TEST_F(BatchReportTest, ListsNameDrawings) {
    WriteFile("list", "a.svg\n\nb.svg");
    EXPECT_EQ(Convert({"--files-from", "list", "two.svg"}).exitCode, 0);
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "b.pdf", "two.pdf"));
    const std::string odd = "line\nbreak.svg";
    WriteFile(odd, SmallDrawing(""));
    WriteFile("zeros", odd + std::string(1, '\0') + "a.svg" + std::string(1, '\0'));
    EXPECT_EQ(Run({"--files-from", "zeros", "-0", "--out-dir", "zeros-out", "-f", "pdf"}).exitCode, 0);
    EXPECT_THAT(FilesIn("zeros-out"), ElementsAre("a.pdf", "line\nbreak.pdf"));
    const ToolRun missing = Convert({"--files-from", "nowhere"});
    EXPECT_EQ(missing.exitCode, 3);
    EXPECT_THAT(missing.errors, AllOf(HasSubstr("nowhere"), HasSubstr("No such file")));
}

TEST_F(BatchReportTest, KeptFoldersTellDrawingsOfOneNameApart) {
    WriteFile("in/deep/a.svg", SmallDrawing(""));
    EXPECT_EQ(Convert({"a.svg", "in/deep/a.svg"}).exitCode, 2);
    EXPECT_EQ(Convert({"a.svg", "./in//deep/a.svg", "--keep-folders"}).exitCode, 0);
    EXPECT_TRUE(fs::exists(Folder() / "out/a.pdf"));
    EXPECT_TRUE(fs::exists(Folder() / "out/in/deep/a.pdf"));
    const ToolRun upward = Convert({"in/../a.svg", "--keep-folders"});
    EXPECT_EQ(upward.exitCode, 2);
    EXPECT_THAT(upward.errors, HasSubstr(".."));
}

TEST_F(BatchReportTest, PartsTakeEveryDrawingOnceAndGiveTheSameBytes) {
    std::string list;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "d" + std::to_string(i) + ".svg";
        WriteFile(name, SmallDrawing("<rect width='" + std::to_string(i) + "' height='9'/>"));
        list += name + "\n";
    }
    WriteFile("list", list);
    ASSERT_EQ(Run({"--files-from", "list", "--out-dir", "whole", "-f", "pdf", "-j", "1"}).exitCode, 0);
    std::size_t seen = 0;
    for (const char* part : {"1/3", "2/3", "3/3"}) {
        const std::string report = std::string("r") + part[0];
        ASSERT_EQ(Convert({"--files-from", "list", "--shard", part, "--report", report, "-j", "3"}).exitCode,
                  0);
        const std::size_t count = Records(report).size();
        EXPECT_GT(count, 3U) << part;
        seen += count;
    }
    EXPECT_EQ(seen, 40U);
    for (int i = 0; i < 40; ++i) {
        const std::string name = "/d" + std::to_string(i) + ".pdf";
        EXPECT_EQ(ReadFile("out" + name), ReadFile("whole" + name)) << name;
    }
    for (const char* part : {"0/3", "4/3", "1", "a/b", "1/3x", "-1/3"}) {
        const ToolRun run = Convert({"--files-from", "list", "--shard", part});
        EXPECT_EQ(run.exitCode, 2) << part;
        EXPECT_THAT(run.errors, HasSubstr("--shard")) << part;
    }
}

// All machines and all versions must assign a drawing to the same part.
TEST_F(BatchReportTest, PartsNeverChange) {
    ASSERT_EQ(Convert({"a.svg", "b.svg", "two.svg", "--shard", "1/2", "--report", "r"}).exitCode, 0);
    std::vector<std::string> names;
    for (const json& record : Records("r")) names.push_back(record["name"]);
    EXPECT_THAT(names, UnorderedElementsAre("a.svg", "b.svg"));
}

TEST_F(BatchReportTest, ARecordTellsWhatADrawingCameTo) {
    WriteFile("font.svg", SmallDrawing("<rect width='9' height='9' fill='nocolour'/>"));
    ASSERT_EQ(Convert({"a.svg", "two.svg", "font.svg", "bad.svg", "gone.svg", "--report", "r"}).exitCode, 11);
    const auto records = ByName("r");
    ASSERT_EQ(records.size(), 5U);
    const json& good = records.at("a.svg");
    EXPECT_EQ(good["status"], "done");
    EXPECT_EQ(good["code"], 0);
    EXPECT_EQ(good["attempts"], 1);
    EXPECT_EQ(good["pages"], 1);
    EXPECT_EQ(good["findings"], 0);
    EXPECT_EQ(good["input"], HashOf("a.svg"));
    ASSERT_EQ(good["outputs"].size(), 1U);
    EXPECT_EQ(good["outputs"][0]["file"], "out/a.pdf");
    EXPECT_EQ(good["outputs"][0]["hash"], HashOf("out/a.pdf"));
    EXPECT_EQ(good["bytes"], fs::file_size(Folder() / "out/a.pdf"));
    EXPECT_EQ(good["outputs"][0]["bytes"], good["bytes"]);
    EXPECT_GT(good["milliseconds"], 0.0);
    EXPECT_GT(good["memory"], 1'000'000);
    EXPECT_LT(good["memory"], 4'000'000'000);
    EXPECT_FALSE(good.contains("message"));

    EXPECT_EQ(records.at("two.svg")["pages"], 2);
    EXPECT_EQ(records.at("font.svg")["findings"], 1);
    const json& bad = records.at("bad.svg");
    EXPECT_EQ(bad["status"], "failed");
    EXPECT_EQ(bad["code"], 4);
    EXPECT_EQ(bad["input"], HashOf("bad.svg"));
    EXPECT_THAT(bad["outputs"], IsEmpty());
    EXPECT_THAT(bad["message"].get<std::string>(), HasSubstr("bad.svg:2:"));
    EXPECT_EQ(records.at("gone.svg")["code"], 3);
    EXPECT_EQ(records.at("gone.svg")["input"], "");
}

TEST_F(BatchReportTest, MemoryIsThatOfTheDrawingNotOfThoseBefore) {
    std::string path = "<path d='M0 0";
    for (int i = 0; i < 800'000; ++i) path += "l1 1";
    WriteFile("large.svg", SmallDrawing(path + "'/>"));
    ASSERT_EQ(Convert({"large.svg", "a.svg", "-j", "1", "--report", "r"}).exitCode, 0);
    const auto records = ByName("r");
    EXPECT_LT(records.at("a.svg")["memory"].get<double>(),
              records.at("large.svg")["memory"].get<double>() * 0.9);
}

TEST_F(BatchReportTest, NumberedFilesStandInTheRecord) {
    ASSERT_EQ(Run({"two.svg", "--out-dir", "out", "-f", "png", "--report", "r"}).exitCode, 0);
    const json record = Records("r").at(0);
    ASSERT_EQ(record["outputs"].size(), 2U);
    EXPECT_EQ(record["outputs"][0]["file"], "out/two-1.png");
    EXPECT_EQ(record["outputs"][1]["file"], "out/two-2.png");
    EXPECT_EQ(record["outputs"][1]["hash"], HashOf("out/two-2.png"));
}

TEST_F(BatchReportTest, WhatIsDoneAndUnchangedIsLeftAlone) {
    const std::vector<std::string> all{"a.svg", "b.svg", "two.svg", "--report", "r", "--resume", "r"};
    EXPECT_EQ(Convert({"a.svg", "--resume", "r"}).exitCode, 3);
    EXPECT_THAT(Convert(all).errors, HasSubstr("3 of 3 converted, 0 failed, "));  // no report yet
    fs::remove(Folder() / "r");
    ASSERT_EQ(Convert({"a.svg", "b.svg", "two.svg", "bad.svg", "--report", "r"}).exitCode, 11);
    const auto written = fs::last_write_time(Folder() / "out/a.pdf");
    const ToolRun again = Convert(all);
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_THAT(again.errors, HasSubstr("0 of 3 converted, 0 failed, 3 unchanged"));
    EXPECT_EQ(fs::last_write_time(Folder() / "out/a.pdf"), written);
    EXPECT_EQ(ByName("r").at("a.svg")["status"], "unchanged");

    WriteFile("a.svg", SmallDrawing("<circle r='9'/>"));
    fs::remove(Folder() / "out/b.pdf");
    EXPECT_THAT(Convert(all).errors, HasSubstr("2 of 3 converted, 0 failed, 1 unchanged"));
    EXPECT_TRUE(fs::exists(Folder() / "out/b.pdf"));
    EXPECT_EQ(ByName("r").at("a.svg")["status"], "done");

    auto finer = all;
    finer.insert(finer.end(), {"--pages", "1"});
    EXPECT_THAT(Convert(finer).errors, Not(HasSubstr("unchanged")));
    EXPECT_EQ(
        Convert({"a.svg", "--resume", "r", "-j", "2", "--quiet", "--pages", "1", "--report", "r"}).exitCode,
        0);
    EXPECT_EQ(ByName("r").at("a.svg")["status"], "unchanged");
}

TEST_F(BatchReportTest, OtherFilesThatADrawingReadCountAsItsContent) {
    const auto image = [this](const std::string& colour) {
        WriteFile("dot.svg", SmallDrawing("<rect width='9' height='9' fill='" + colour + "'/>"));
        ASSERT_EQ(Run({"dot.svg", "-o", "dot.png"}).exitCode, 0);
    };
    image("red");
    WriteFile("shows.svg",
              "<svg width='99' height='99' xmlns:xlink='http://www.w3.org/1999/xlink'>"
              "<image width='50' height='50' xlink:href='dot.png'/><image width='5' height='5' "
              "xlink:href='dot.png'/>"
              "<image width='50' height='50' xlink:href='missing.png'/>"
              "<image width='50' height='50' xlink:href='data:image/png;base64,AAAA'/></svg>");
    const std::vector<std::string> again{"shows.svg", "a.svg", "--report", "r", "--resume", "r"};
    ASSERT_EQ(Convert(again).exitCode, 0);
    // A report may name a file more than once: relative to the drawing's folder, and as written in the
    // drawing.
    std::map<std::string, std::string> files;
    const json record = ByName("r").at("shows.svg");
    for (const json& file : record["otherFiles"])
        files[fs::path(file["name"].get<std::string>()).filename()] = file["hash"];
    EXPECT_THAT(files, UnorderedElementsAre(Pair("dot.png", HashOf("dot.png")), Pair("missing.png", "")));
    EXPECT_THAT(ByName("r").at("a.svg")["otherFiles"], IsEmpty());
    EXPECT_THAT(Convert(again).errors, HasSubstr("0 of 2 converted, 0 failed, 2 unchanged"));

    image("blue");
    EXPECT_THAT(Convert(again).errors, HasSubstr("1 of 2 converted, 0 failed, 1 unchanged"));
    EXPECT_EQ(ByName("r").at("shows.svg")["status"], "done");
    EXPECT_THAT(Convert(again).errors, HasSubstr("0 of 2 converted, 0 failed, 2 unchanged"));

    fs::copy_file(Folder() / "dot.png", Folder() / "missing.png");
    EXPECT_THAT(Convert(again).errors, HasSubstr("1 of 2 converted, 0 failed, 1 unchanged"));
    fs::remove(Folder() / "dot.png");
    EXPECT_THAT(Convert(again).errors, HasSubstr("1 of 2 converted, 0 failed, 1 unchanged"));
    EXPECT_THAT(Convert(again).errors, HasSubstr("0 of 2 converted, 0 failed, 2 unchanged"));
}

TEST_F(BatchReportTest, NamesOfOtherFilesThatAReportCannotHoldCountAsChanged) {
    WriteFile("shows.svg",
              "<svg width='99' height='99' xmlns:xlink='http://www.w3.org/1999/xlink'>"
              "<image width='50' height='50' xlink:href='%FF.png'/></svg>");
    const std::vector<std::string> again{"shows.svg", "--interpreter", "svg2", "--report",
                                         "r",         "--resume",      "r"};
    ASSERT_EQ(Convert(again).exitCode, 0);
    ASSERT_EQ(ByName("r").at("shows.svg")["otherFiles"].size(), 1U);
    EXPECT_THAT(Convert(again).errors, HasSubstr("1 of 1 converted, 0 failed, "));
    EXPECT_EQ(ByName("r").at("shows.svg")["status"], "done");
}

TEST_F(BatchReportTest, FailuresThatMayPassAreAttemptedAgain) {
    // A folder of that name keeps the output from being put in place.
    fs::create_directories(Folder() / "out/a.pdf");
    ASSERT_EQ(Convert({"a.svg", "b.svg", "bad.svg", "--report", "r", "--retry", "2"}).exitCode, 11);
    const auto records = ByName("r");
    EXPECT_EQ(Records("r").size(), 3U);
    EXPECT_EQ(records.at("a.svg")["code"], 8);
    EXPECT_EQ(records.at("a.svg")["attempts"], 3);
    EXPECT_THAT(records.at("a.svg")["outputs"], IsEmpty());
    EXPECT_EQ(records.at("b.svg")["attempts"], 1);
    EXPECT_EQ(records.at("bad.svg")["attempts"], 1);
}

TEST_F(BatchReportTest, AWorkerThatIsKilledCostsAnAttempt) {
    MakePipe("pipe.svg");
    const RunningTool tool = Start({"pipe.svg", "a.svg", "--out-dir", "out", "-f", "pdf", "-j", "1",
                                    "--retry", "1", "--keep-going", "--report", "r"});
    const int first = OpenForTool("pipe.svg");
    ASSERT_GE(first, 0);
    const std::vector<pid_t> workers = ChildrenOf(tool.pid);
    ASSERT_EQ(workers.size(), 1U);
    kill(workers[0], SIGKILL);
    close(first);
    int second = -1;
    for (const auto deadline = Deadline(); Clock::now() < deadline && second < 0; Breathe()) {
        const std::vector<pid_t> now = ChildrenOf(tool.pid);
        if (now.size() == 1 && now != workers) second = OpenForTool("pipe.svg");
    }
    ASSERT_GE(second, 0);
    Feed(second, SmallDrawing(""));
    EXPECT_EQ(WaitFor(tool).exitCode, 0);
    EXPECT_EQ(ByName("r").at("pipe.svg")["attempts"], 2);
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "pipe.pdf"));
}

TEST_F(BatchReportTest, TheReportIsGoodAfterASignal) {
    MakePipe("pipe.svg");
    const RunningTool tool =
        Start({"a.svg", "b.svg", "pipe.svg", "--out-dir", "out", "-f", "pdf", "-j", "1", "--report", "r"});
    const int feed = OpenForTool("pipe.svg");
    ASSERT_GE(feed, 0);
    kill(tool.pid, SIGTERM);
    WaitFor(tool);
    close(feed);
    EXPECT_EQ(Records("r").size(), 2U);
    EXPECT_THAT(FilesIn("out"), ElementsAre("a.pdf", "b.pdf"));
}

TEST_F(BatchReportTest, ALineThatWasCutShortIsPassedOver) {
    ASSERT_EQ(Convert({"a.svg", "--report", "r"}).exitCode, 0);
    const std::string line = ReadFile("r");
    WriteFile("r", line + line.substr(0, line.size() / 2));
    EXPECT_THAT(Convert({"a.svg", "b.svg", "--report", "r", "--resume", "r"}).errors,
                HasSubstr("1 unchanged"));
    const ToolRun run = Run({"report", "r"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, AllOf(HasSubstr("2 drawings: 2 done"), HasSubstr("1 lines are no records")));
}

TEST_F(BatchReportTest, AReportThatCannotBeWrittenIsAFailure) {
    EXPECT_EQ(Convert({"a.svg", "--report", "missing/r"}).exitCode, 8);
    EXPECT_FALSE(fs::exists(Folder() / "out"));
    EXPECT_EQ(Convert({"a.svg", "--report", "a.svg"}).exitCode, 8);
    EXPECT_THAT(ReadFile("a.svg"), Not(HasSubstr("status")));
    const ToolRun full = Convert({"a.svg", "--report", "/dev/full"});
    EXPECT_EQ(full.exitCode, 8);
    EXPECT_THAT(full.errors, HasSubstr("/dev/full"));
}

TEST_F(BatchReportTest, OptionsOfBatchesNeedAFolder) {
    for (const char* option : {"--report", "--shard", "--retry"})
        EXPECT_EQ(Run({"a.svg", "-o", "a.pdf", option, "1/1"}).exitCode, 2) << option;
}

std::string Line(const std::string& name, const std::string& input, const std::string& status,
                 const std::string& more = "\"code\":0") {
    return R"({"name":")" + name + R"(","input":")" + input + R"(","status":")" + status + "\"," + more +
           "}\n";
}

TEST_F(BatchReportTest, ReportsAreMergedByNameAndContent) {
    WriteFile("r1", Line("a", "1", "failed", "\"code\":9,\"message\":\"slow\"") +
                        Line("b", "2", "done",
                             R"("code":0,"milliseconds":5,"outputs":[{"file":"b","bytes":7,"hash":"x"}])") +
                        Line("c", "", "failed", "\"code\":3") + Line("d", "4", "failed", "\"code\":4"));
    WriteFile("r2",
              Line("a", "1", "done", "\"code\":0,\"milliseconds\":8,\"pages\":3") +
                  Line("b", "2", "failed", "\"code\":9") +
                  Line("b", "2", "unchanged", R"("code":0,"outputs":[{"file":"b","bytes":7,"hash":"x"}])") +
                  Line("c", "3", "done") + Line("d", "5", "done"));
    const ToolRun run = Run({"report", "r1", "r2", "--json", "--merged", "all"});
    EXPECT_EQ(run.exitCode, 11);
    const json summary = json::parse(run.output);
    EXPECT_EQ(summary["drawings"], 5);  // d counts twice: its content changed
    EXPECT_EQ(summary["done"], 4);
    EXPECT_EQ(summary["failed"], 1);
    EXPECT_EQ(summary["pages"], 3);
    EXPECT_EQ(summary["bytes"], 7);
    EXPECT_EQ(summary["milliseconds"], 13.0);
    EXPECT_EQ(summary["repeats"], 4);
    EXPECT_THAT(summary["failures"], ElementsAre("d"));
    EXPECT_EQ(summary["slowest"][0], "a");
    EXPECT_THAT(summary["conflicts"], IsEmpty());
    EXPECT_EQ(summary["codes"], (json{{"0", 4}, {"4", 1}}));
    EXPECT_EQ(Records("all").size(), 5U);
    EXPECT_EQ(json::parse(Run({"report", "all", "--json"}).output)["repeats"], 0);
}

TEST_F(BatchReportTest, DifferentOutputsFromTheSameContentAreNamed) {
    const auto outputs = [](const std::string& hash) {
        return R"("code":0,"options":"o","outputs":[{"file":"a","bytes":1,"hash":")" + hash + "\"}]";
    };
    const auto shows = [&](const std::string& image, const std::string& output) {
        return Line("c", "1", "done",
                    R"("otherFiles":[{"name":"i","hash":")" + image + "\"}]," + outputs(output));
    };
    WriteFile("r",
              Line("a", "1", "done", outputs("x")) + Line("b", "1", "done", outputs("x")) + shows("1", "x"));
    WriteFile("s",
              Line("a", "1", "done", outputs("y")) + Line("b", "1", "done", outputs("x")) + shows("2", "y"));
    const ToolRun run = Run({"report", "r", "s"});
    EXPECT_THAT(run.output, HasSubstr("different outputs from the same content: a\n"));
    EXPECT_THAT(run.output, Not(HasSubstr("content: b")));
    EXPECT_THAT(run.output, Not(HasSubstr("content: c")));  // the image that it shows has changed
}

TEST_F(BatchReportTest, WhatIsNoReportIsRefusedOrPassedOver) {
    EXPECT_EQ(Run({"report", "nowhere"}).exitCode, 3);
    EXPECT_EQ(Run({"report", "."}).exitCode, 3);
    WriteFile("odd", "[]\n{}\nnull\n" + std::string(100000, '[') + "\n" + Line("", "1", "done") +
                         Line("a", "1", "perhaps") + R"({"name":7,"status":"done"})" + "\n" +
                         Line("b", "1", "done"));
    const ToolRun run = Run({"report", "odd"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, AllOf(HasSubstr("1 drawings: 1 done"), HasSubstr("7 lines are no records")));
    EXPECT_EQ(Run({"report", "odd", "--merged", "odd"}).exitCode, 8);
    EXPECT_EQ(Run({"report", "odd", "--html", "missing/x.html"}).exitCode, 8);
}

TEST_F(BatchReportTest, ThePageShowsFailuresAndObeysNoName) {
    WriteFile("r", Line("in/<b>&'.svg", "1", "failed", R"("code":4,"message":"<script>alert(1)</script>")") +
                       Line("javascript:alert(1)", "2", "failed", "\"code\":4") +
                       Line("good.svg", "3", "done"));
    ASSERT_EQ(Run({"report", "r", "--html", "pages/../x.html"}).exitCode, 8);
    ASSERT_EQ(Run({"report", "r", "--html", "x.html"}).exitCode, 11);
    const std::string page = ReadFile("x.html");
    EXPECT_THAT(page, AllOf(HasSubstr("&lt;script&gt;alert"), Not(HasSubstr("<script")),
                            Not(HasSubstr("<b>")), HasSubstr("src=\"./in/%3Cb%3E%26%27.svg\""),
                            HasSubstr("src=\"./javascript%3Aalert%281%29\""), HasSubstr("good.svg")));
}

}  // namespace
