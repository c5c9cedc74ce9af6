// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/apps/tool_run.h"
#include "tests/support/test_texts.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class CheckTest : public ToolTest {
protected:
    CheckTest() {
        WriteFile("good.svg", SmallDrawing("<rect width='9' height='9'/>"));
        WriteFile("bad.svg", SmallDrawing("\n<rect width='2em'/>\n<rect width='3em' foo='1'/>"));
    }
};

/// The note on drawings whose size is in px.
const std::string kNote =
    "note: its size is in px, which are 1/90 inch here and 1/96 inch in browsers and editors: it prints 6.7 "
    "% "
    "larger than they show it; --interpreter svg2 counts as they do\n";

TEST_F(CheckTest, SaysNothingFound) {
    const ToolRun run = Run({"check", "good.svg"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "good.svg: nothing found\n" + kNote);
    EXPECT_EQ(run.errors, "");
}

TEST_F(CheckTest, ListsFindingsByKind) {
    const ToolRun run = Run({"check", "bad.svg"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "bad.svg: 3 findings of 2 kinds\n" + kNote +
                              "\n"
                              "unknown-attribute (1): Unknown attributes\n"
                              "bad.svg:3:19: rect foo \"1\": is not known\n"
                              "\n"
                              "unknown-unit (2): Unsupported units: the number is taken as user units\n"
                              "bad.svg:2:7: rect width \"2em\": 'em' is not a unit: read as 2\n"
                              "bad.svg:3:7: rect width \"3em\": 'em' is not a unit: read as 3\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(CheckTest, ShowsTheFirstOfManyAndAllWhenAsked) {
    std::string content;
    for (int i = 0; i < 20; ++i) content += "<rect foo='n" + std::to_string(i) + "'/>";
    WriteFile("many.svg", SmallDrawing(content + "<e:x xmlns:e='urn:e'/>"));
    const std::string some = Run({"check", "many.svg"}).output;
    EXPECT_THAT(some, HasSubstr("\"n4\""));
    EXPECT_THAT(some, Not(HasSubstr("\"n5\"")));
    EXPECT_THAT(some, HasSubstr("  and 15 more; --verbose lists them\n"));
    EXPECT_THAT(some, Not(HasSubstr("vocabularies")));
    const std::string all = Run({"check", "--verbose", "many.svg"}).output;
    EXPECT_THAT(all, HasSubstr("\"n19\""));
    EXPECT_THAT(all, HasSubstr("\n1 name of other vocabularies left alone\n"));
}

TEST_F(CheckTest, WritesJsonForPrograms) {
    WriteFile("broken.svg", "<svg>\n<g></svg>");
    const ToolRun run = Run({"check", "--json", "bad.svg", "good.svg", "broken.svg"});
    EXPECT_EQ(run.exitCode, 4);
    const nlohmann::json files = nlohmann::json::parse(run.output);
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0]["file"], "bad.svg");
    EXPECT_EQ(files[0]["total"], 3);
    EXPECT_EQ(files[0]["counts"]["unknown-unit"], 2);
    EXPECT_EQ(files[0]["foreign"], 0);
    const nlohmann::json expected{{"code", "unknown-unit"},
                                  {"line", 2},
                                  {"column", 7},
                                  {"element", "rect"},
                                  {"attribute", "width"},
                                  {"value", "2em"},
                                  {"message", "'em' is not a unit: read as 2"}};
    EXPECT_EQ(files[0]["findings"][0], expected);
    EXPECT_EQ(files[1]["findings"], nlohmann::json::array());
    EXPECT_EQ(files[2]["error"]["exitCode"], 4);
    EXPECT_EQ(files[2]["error"]["line"], 2);
    EXPECT_FALSE(files[2].contains("findings"));
}

TEST_F(CheckTest, LeavesOutWhatIsIgnored) {
    EXPECT_EQ(Run({"check", "--ignore", "unknown-unit", "--ignore", "unknown-attribute", "bad.svg"}).exitCode,
              0);
    EXPECT_EQ(Run({"check", "--ignore", "unknown-unit", "bad.svg"}).exitCode, 1);
    const ToolRun wrong = Run({"check", "--ignore", "unknown-thing", "bad.svg"});
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_THAT(wrong.errors, HasSubstr("unknown-thing"));
}

TEST_F(CheckTest, ReadsStandardInput) {
    const ToolRun run = Run({"check", "-"}, ReadFile("bad.svg"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, HasSubstr("standard input:2:7: rect width"));
}

TEST_F(CheckTest, ReadsDrawingsInDocuments) {
    WriteFile("report.qvxml", "<r><blink/>" + ReadFile("bad.svg") + ReadFile("good.svg") + "</r>");
    WriteFile("report.xml", ReadFile("report.qvxml"));
    EXPECT_THAT(Run({"check", "report.qvxml"}).output, HasSubstr("3 findings of 2 kinds"));
    EXPECT_THAT(Run({"check", "--qvxml", "report.xml"}).output, HasSubstr("3 findings of 2 kinds"));
    EXPECT_EQ(Run({"check", "--fragment", "2", "report.xml"}).exitCode, 0);
    EXPECT_EQ(Run({"check", "--fragment", "3", "report.xml"}).exitCode, 5);
}

TEST_F(CheckTest, GoesOnBehindAnInputThatCannotBeRead) {
    const ToolRun run = Run({"check", "missing.svg", "bad.svg"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("missing.svg"));
    EXPECT_THAT(run.output, HasSubstr("bad.svg: 3 findings"));
    // The first failure gives the code.
    WriteFile("broken.svg", "<svg>\n<g></svg>");
    EXPECT_EQ(Run({"check", "missing.svg", "broken.svg"}).exitCode, 3);
    EXPECT_EQ(Run({"check", "broken.svg", "missing.svg"}).exitCode, 4);
}

TEST_F(CheckTest, ListsFindingsOfALineInTheirOrder) {
    for (const std::string attributes :
         {"x='1em' y='2em' width='3em' height='4em'", "height='1em' width='2em' y='3em' x='4em'"}) {
        WriteFile("line.svg", SmallDrawing("<rect " + attributes + "/>"));
        const std::string output = Run({"check", "line.svg"}).output;
        EXPECT_THAT(output, testing::ContainsRegex("\"1em\"(.|\n)*\"2em\"(.|\n)*\"3em\"(.|\n)*\"4em\""));
    }
}

TEST_F(CheckTest, SaysWhereADocumentIsNotWellFormed) {
    WriteFile("broken.svg", "<svg>\n<g></svg>");
    const ToolRun run = Run({"check", "broken.svg"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.errors, Run({"broken.svg", "-o", "x.pdf"}).errors);
    EXPECT_EQ(run.output, "");
}

TEST_F(CheckTest, PicturesAreReadWhereThePrintMayReadThem) {
    WriteFile("elsewhere/picture.png", "no picture");
    WriteFile("drawing/it.svg",
              SmallDrawing("<image width='2' height='2' xlink:href='../elsewhere/picture.png'/>"));
    EXPECT_THAT(Run({"check", "drawing/it.svg"}).output, HasSubstr("image-refused (1)"));
    EXPECT_THAT(Run({"check", "--allow-dir", "elsewhere", "drawing/it.svg"}).output,
                HasSubstr("image-format (1)"));
}

// Whether a file exists is reported only if the drawing may read it.
TEST_F(CheckTest, NothingIsToldOfFilesElsewhere) {
    WriteFile("elsewhere/there.png", "no picture");
    WriteFile("drawing/inner/there.png", "no picture");
    const auto check = [this](const std::string& name, const std::vector<std::string>& options = {}) {
        WriteFile("drawing/it.svg", SmallDrawing("<image width='2' height='2' xlink:href='" + name + "'/>"));
        std::vector<std::string> command{"check", "drawing/it.svg"};
        command.insert(command.end(), options.begin(), options.end());
        std::string output = Run(command).output;
        for (std::size_t at = 0; (at = output.find(name, at)) != std::string::npos;)
            output.replace(at, name.size(), "NAME");
        return output;
    };
    const std::string refused = check("../elsewhere/none.png");
    EXPECT_THAT(refused, HasSubstr("image-refused (1)"));
    std::filesystem::create_directory_symlink(Folder() / "elsewhere", Folder() / "drawing/link");
    for (const std::string& name :
         {std::string("../elsewhere/there.png"), (Folder() / "elsewhere/there.png").string(),
          (Folder() / "elsewhere/none.png").string(), std::string("link/there.png"),
          std::string("link/none.png"), std::string("/etc/passwd"), std::string("/etc/no-such-file"),
          std::string("inner/../../elsewhere/there.png"), std::string("..")})
        EXPECT_EQ(check(name), refused) << name;
    EXPECT_THAT(check("inner/none.png"), HasSubstr("image-missing (1)"));
    EXPECT_THAT(check("inner/there.png"), HasSubstr("image-format (1)"));
    EXPECT_THAT(check("../elsewhere/none.png", {"--allow-dir", "elsewhere"}), HasSubstr("image-missing (1)"));
    EXPECT_THAT(check("../elsewhere/there.png", {"--allow-dir", "elsewhere"}), HasSubstr("image-format (1)"));
    for (const char* name : {"there.png", "/etc/passwd", "none.png"})
        EXPECT_THAT(Run({"check", "-"},
                        SmallDrawing(std::string("<image width='2' height='2' xlink:href='") + name + "'/>"))
                        .output,
                    HasSubstr("image-refused (1)"))
            << "standard input has no folder";
}

#ifdef ORV_SHIM_PATH
// Even timing must reveal nothing: forbidden names are not looked up.
TEST_F(CheckTest, NamesThatLeadElsewhereAreNotLookedUp) {
    WriteFile("elsewhere/there.png", "no picture");
    WriteFile("drawing/inside.png", "no picture");
    std::filesystem::create_directories(Folder() / "drawing/folder");
    std::filesystem::create_directory_symlink(Folder() / "elsewhere", Folder() / "drawing/link");
    const std::string elsewhere = (Folder() / "elsewhere").string();
    const auto touched = [&](const std::string& name, const std::string& watched) {
        WriteFile("drawing/it.svg", SmallDrawing("<image width='2' height='2' xlink:href='" + name + "'/>"));
        std::string told;
        for (const std::string command : {"check drawing/it.svg", "drawing/it.svg -o x.pdf",
                                          "info drawing/it.svg", "inspect drawing/it.svg"})
            told += RunProgram({"bash", "-c",
                                "export ORV_WATCH_PATH='" + watched +
                                    "'; LD_PRELOAD=" ORV_SHIM_PATH " exec '" ORV_TOOL_PATH "' " + command})
                        .errors;
        return told;
    };
    // Control: a permitted file is looked up.
    EXPECT_THAT(touched("inside.png", "inside.png"), HasSubstr("looked up: drawing/inside.png"));
    for (const std::string& name :
         {elsewhere + "/there.png", elsewhere + "/none.png", std::string("../elsewhere/there.png"),
          std::string("folder/../../elsewhere/there.png"), std::string("link/there.png"),
          std::string("link/none.png")})
        // An absolute path is also looked up below the drawing's folder, which is permitted.
        EXPECT_THAT(touched(name, name.substr(name.rfind('/') + 1)),
                    Not(HasSubstr(name.starts_with('/') ? "looked up: /" : "looked up")))
            << name;
}
#endif

// The examples must print as other programs show them. Findings about fonts depend on the machine.
TEST_F(CheckTest, ExamplesAreFreeOfFindings) {
    for (const auto& entry : std::filesystem::directory_iterator(Example(""))) {
        if (entry.path().extension() != ".svg" && entry.path().extension() != ".qvxml") continue;
        // Two examples differ on purpose: several pages in one drawing, and tiled floors.
        const ToolRun run = Run({"check", "--ignore", "font-fallback", "--ignore", "missing-glyph",
                                 "--ignore", "page-set", "--ignore", "pattern-tile", entry.path()});
        EXPECT_EQ(run.exitCode, 0) << run.output << run.errors;
    }
}

TEST_F(CheckTest, StrictPrintsWhatIsGood) {
    const ToolRun run = Run({"--strict", "good.svg", "-o", "good.pdf"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_TRUE(Exists("good.pdf"));
}

TEST_F(CheckTest, StrictPrintsNothingElse) {
    const ToolRun run = Run({"--strict", "good.svg", "bad.svg", "-o", "all.pdf"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_FALSE(Exists("all.pdf"));
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, HasSubstr("bad.svg: 3 findings of 2 kinds"));
    EXPECT_THAT(run.errors, HasSubstr("bad.svg:2:7: rect width \"2em\""));
    EXPECT_EQ(Run({"good.svg", "bad.svg", "-o", "all.pdf"}).exitCode, 0);
}

TEST_F(CheckTest, StrictLeavesOutWhatIsIgnored) {
    const std::vector<std::string> strict{"--strict", "bad.svg", "-o", "bad.pdf", "--ignore", "unknown-unit"};
    EXPECT_EQ(Run(strict).exitCode, 1);
    std::vector<std::string> lenient = strict;
    lenient.insert(lenient.end(), {"--ignore", "unknown-attribute"});
    EXPECT_EQ(Run(lenient).exitCode, 0);
    EXPECT_TRUE(Exists("bad.pdf"));
    EXPECT_EQ(Run({"bad.svg", "-o", "x.pdf", "--ignore", "unknown-unit"}).exitCode, 2);
    EXPECT_EQ(Run({"--strict", "bad.svg", "-o", "x.pdf", "--ignore", "unknown"}).exitCode, 2);
}

TEST_F(CheckTest, StrictReadsStandardInputTwice) {
    const ToolRun file = Run({"--strict", "-", "-o", "file.pdf"}, ReadFile("good.svg"));
    EXPECT_EQ(file.exitCode, 0) << file.errors;
    EXPECT_TRUE(Exists("file.pdf"));
    // A pipe cannot be rewound.
    const ToolRun pipe = RunProgram({"sh", "-c", "cat good.svg | " ORV_TOOL_PATH " --strict - -o pipe.pdf"});
    EXPECT_EQ(pipe.exitCode, 0) << pipe.errors;
    EXPECT_TRUE(Exists("pipe.pdf"));
}

// Time must grow with the document, but memory not with the findings.
TEST_F(CheckTest, AnswersHostileDocuments) {
    std::string many;
    many += Repeat("<blink/>", 200000);
    WriteFile("many.svg", SmallDrawing(many));
    const ToolRun run = Run({"check", "--json", "many.svg"});
    EXPECT_EQ(run.exitCode, 1);
    const nlohmann::json files = nlohmann::json::parse(run.output);
    EXPECT_EQ(files[0]["total"], 200000);
    EXPECT_EQ(files[0]["findings"].size(), 1000U);

    WriteFile("long.svg", SmallDrawing("<path d='M0 0" + std::string(300000, 'L') + "'/><g transform='" +
                                       std::string(300000, '(') + "' style='" + std::string(300000, ':') +
                                       "' fill='" + std::string(300000, '#') + "'/>"));
    EXPECT_EQ(Run({"check", "long.svg"}).exitCode, 1);
}

}  // namespace
