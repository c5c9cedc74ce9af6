// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/apps/tool_run.h"

namespace {

using testing::HasSubstr;

using nlohmann::json;

class InspectTest : public ToolTest {
protected:
    json Inspect(std::vector<std::string> arguments, const std::string& input = {}) const {
        arguments.insert(arguments.begin(), {"inspect", "--json"});
        const ToolRun run = Run(arguments, input);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_TRUE(run.errors.empty()) << run.errors;
        return json::parse(run.output);
    }
};

TEST_F(InspectTest, WritesThePage) {
    const json dump = Inspect({"-"}, SmallDrawing("<title>T</title>"));
    EXPECT_EQ(dump["result"], 1);
    EXPECT_EQ(dump["pageCount"], 1);
    EXPECT_EQ(dump["infos"], json::array());
    EXPECT_EQ(dump["pages"],
              json::parse(R"([{"class": "ORVPrtImageElt", "id": "", "description": "", "title": "T",
        "origin": [0, 0], "size": [90, 45], "units": 1, "matrix": [1, 0, 0, 1], "colours": [[0, 0, 0]],
        "children": []}])"));
}

TEST_F(InspectTest, WritesPrimitivesWithAllTheyHave) {
    const json dump =
        Inspect({"-"}, SmallDrawing("<rect id='r' x='1' y='2' width='3' height='4' fill='#ff0000' "
                                    "stroke='black' stroke-dasharray='1,2' transform='scale(2)'/>"));
    EXPECT_EQ(
        dump["pages"][0]["children"][0],
        json::parse(
            R"({"class": "ORVPrtRectangleElt", "id": "r", "description": "", "title": "", "drawStyle": 3,
        "fill": {"style": 1, "rule": 0, "colour": 1, "transparency": 255, "patternImage": null},
        "stroke": {"colour": 0, "transparency": 255, "type": 7, "dash": [1, 2], "width": 1, "style": 0, "cap": 10, "join": 13},
        "transform": [["translate", 0, 45], ["scaleY", -1], ["scaleX", 2], ["scaleY", 2], ["translate", 0, 45], ["scaleY", -1]],
        "points": [[1, 43], [4, 39]]})"));
}

TEST_F(InspectTest, NumbersReadBackTheSameAndInfinitiesAreNull) {
    const json dump = Inspect({"-"}, SmallDrawing("<circle cx='0.1' cy='1e999' r='1e-7' fill='red'/>"));
    const json& circle = dump["pages"][0]["children"][0];
    EXPECT_EQ(circle["center"][0].get<double>(), 0.1);
    EXPECT_TRUE(circle["center"][1].is_null());
    EXPECT_EQ(circle["radius"].get<double>(), 1e-7);
}

TEST_F(InspectTest, TextsStayTexts) {
    const json dump = Inspect({"-"}, SmallDrawing("<text id='&quot;\\&#9;ü' fill='red'>漢</text>"));
    EXPECT_EQ(dump["pages"][0]["children"][0]["id"], "\"\\\tü");
    EXPECT_EQ(dump["pages"][0]["children"][0]["string"], "漢");
}

TEST_F(InspectTest, DocumentsThatCannotBeReadHaveADump) {
    WriteFile("empty.svg", "");
    WriteFile("bad.svg", "<svg width='9' height='9'><g></svg>");
    WriteFile("other.svg", "<x/>");
    EXPECT_EQ(Inspect({"empty.svg"}),
              json::parse(R"({"result": -1, "pageCount": 0, "infos": [], "pages": []})"));
    EXPECT_EQ(Inspect({"bad.svg", "--parser", "dom"})["result"], -1);
    EXPECT_EQ(Inspect({"bad.svg", "--parser", "light"})["pages"].size(), 1U);
    EXPECT_EQ(Inspect({"other.svg"})["result"], 1);
    EXPECT_EQ(Inspect({"other.svg"})["pageCount"], 0);
}

TEST_F(InspectTest, FragmentsAreCountedInDocumentOrder) {
    WriteFile("r.xml",
              "<r><svg id='a' width='1' height='1'><svg id='b' width='2' height='2'/></svg>"
              "<svg id='c' width='3' height='3'/></r>");
    for (const char* parser : {"light", "dom"}) {
        EXPECT_EQ(Inspect({"r.xml", "--fragment", "2", "--parser", parser})["pages"][0]["id"], "b");
        EXPECT_EQ(Inspect({"r.xml", "--fragment", "c", "--parser", parser})["pages"][0]["size"][0], 3);
    }
    // The fragment keeps its place in the document: only with the DOM parser does the interpreter go on to
    // its siblings.
    EXPECT_EQ(Inspect({"r.xml", "--fragment", "1", "--parser", "light"})["pageCount"], 1);
    EXPECT_EQ(Inspect({"r.xml", "--fragment", "1", "--parser", "dom"})["pageCount"], 2);
    EXPECT_EQ(Run({"inspect", "r.xml", "--fragment", "4"}).exitCode, 5);
}

// One rule for all commands: with the DOM parser, the following siblings are pages of the same drawing.
TEST_F(InspectTest, AllCommandsAgreeOnThePagesOfAFragment) {
    const auto svg = [](const std::string& id, const std::string& content = {}) {
        return "<svg id='" + id + "' width='9' height='9'><title>" + id + "</title>" + content + "</svg>";
    };
    WriteFile("r.xml",
              "<r>" + svg("a", svg("b")) + "<p>text" + svg("c") + "</p><!-- -->" + svg("d") + "</r>");
    struct Row {
        const char *fragment, *parser, *pages;
    };
    for (const Row& row :
         {Row{"a", "light", "a"}, Row{"a", "dom", "acd"}, Row{"1", "dom", "acd"}, Row{"b", "dom", "b"},
          Row{"c", "dom", "c"}, Row{"d", "dom", "d"}, Row{"3", "light", "c"}, Row{"4", "dom", "d"}}) {
        const std::vector<std::string> options{"--fragment", row.fragment, "--parser", row.parser};
        const auto with = [&](std::vector<std::string> command) {
            command.insert(command.end(), options.begin(), options.end());
            return Run(command);
        };
        const std::string name = std::string(row.fragment) + " " + row.parser;
        std::string inspected, told;
        const json model = json::parse(with({"inspect", "r.xml"}).output);
        for (const json& page : model["pages"]) inspected += page["id"].get<std::string>();
        const json facts = json::parse(with({"info", "--json", "r.xml"}).output);
        for (const json& page : facts["pages"]) told += page["title"].get<std::string>();
        EXPECT_EQ(inspected, row.pages) << name;
        EXPECT_EQ(told, row.pages) << name;
        std::filesystem::remove_all(Folder() / "out");
        std::filesystem::create_directories(Folder() / "out");
        EXPECT_EQ(with({"r.xml", "-o", "out/x.png"}).exitCode, 0) << name;
        const auto files = std::filesystem::directory_iterator(Folder() / "out");
        EXPECT_EQ(static_cast<std::size_t>(std::distance(begin(files), end(files))),
                  std::string(row.pages).size())
            << name;
        // When all drawings are printed, each comes once.
        EXPECT_THAT(Run({"info", "--qvxml", "r.xml", "--parser", row.parser}).output, HasSubstr("3 pages"));
    }
}

TEST_F(InspectTest, TheCheckLooksAtAllPagesOfAFragment) {
    WriteFile("r.xml",
              "<r><svg width='9' height='9'/><p><svg width='9' height='9'><rect rx='3' width='1' "
              "height='1'/></svg></p><svg width='9' height='9'><blink/></svg></r>");
    EXPECT_THAT(Run({"check", "r.xml", "--fragment", "1", "--parser", "dom"}).output,
                testing::AllOf(HasSubstr("square-corners (1)"), HasSubstr("unknown-element (1)")));
    EXPECT_THAT(Run({"check", "r.xml", "--fragment", "1"}).output, HasSubstr("nothing found"));
}

TEST_F(InspectTest, SharedPrimitivesAppearInEachPlace) {
    const json dump = Inspect(
        {"-"}, SmallDrawing("<defs><circle id='c' r='1' fill='red'/></defs>"
                            "<use fill='red' xlink:href='#c'/><use fill='red' xlink:href='#c' x='9'/>"));
    const json& children = dump["pages"][0]["children"];
    ASSERT_EQ(children.size(), 2U);
    EXPECT_EQ(children[0]["children"][0]["class"], "ORVPrtCircleElt");
    EXPECT_EQ(children[0]["children"], children[1]["children"]);
}

TEST_F(InspectTest, DumpsBeyondAllMeasureAreRefused) {
    // Eight levels of ten references: 100 million primitives, of which few are allocated.
    std::string content = "<defs><g id='a0'><rect width='1' height='1'/></g>";
    for (int i = 1; i <= 8; ++i) {
        content += "<g id='a" + std::to_string(i) + "'>";
        for (int k = 0; k < 10; ++k) content += "<use xlink:href='#a" + std::to_string(i - 1) + "'/>";
        content += "</g>";
    }
    const ToolRun run =
        Run({"inspect", "-", "--json"}, SmallDrawing(content + "</defs><use xlink:href='#a8'/>"));
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_TRUE(run.output.empty());
}

TEST_F(InspectTest, InputThatIsNotThere) { EXPECT_EQ(Run({"inspect", "missing.svg", "--json"}).exitCode, 3); }

}  // namespace
