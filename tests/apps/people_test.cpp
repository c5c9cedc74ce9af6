// SPDX-License-Identifier: Apache-2.0

// What users at a terminal meet: hints at what they meant, default output names, and no lost files.

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PeopleTest : public ToolTest {
protected:
    void SetUp() override {
        WriteFile("a.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
        WriteFile("b.svg", SmallDrawing(""));
    }
};

struct HintRow {
    const char* name;
    std::vector<std::string> words;
    int exitCode;
    const char* hint;
};
class HintTest : public PeopleTest, public testing::WithParamInterface<HintRow> {};

const HintRow kHints[] = {
    {"MisspeltCommand",
     {"inof", "a.svg"},
     2,
     "inof: is neither a file nor a command; did you mean orvprint info?"},
    {"CommandOfOthers", {"convert", "a.svg"}, 2, "did you mean orvprint print?"},
    {"MisspeltOption", {"--hlep"}, 2, "did you mean --help?"},
    {"MisspeltOptionOfACommand", {"info", "--jsno", "a.svg"}, 2, "did you mean --json?"},
    {"MisspeltOptionWithValue", {"a.svg", "--outptu=x.pdf"}, 2, "did you mean --output?"},
    {"Address", {"https://example.org/a.svg", "-o", "o.pdf"}, 3, "is an address, not a file"},
    {"AddressOfAFile", {"file:///tmp/a.svg", "-o", "o.pdf"}, 3, "is an address; give the path of the file"},
    {"OptionWithoutValue", {"a.svg", "-o"}, 2, "--output: a value is missing"},
    {"NumberWithoutValue", {"a.svg", "--dpi"}, 2, "orvprint: --dpi: a value is missing (see"},
    {"NumberOutOfRange",
     {"a.svg", "--time-limit", "0"},
     2,
     "orvprint: --time-limit: '0' is not a number from 0.001 to 1000000000 (see"},
    {"NumberThatIsNone", {"a.svg", "--dpi", "nan"}, 2, "--dpi: 'nan' is not a number from 1 to 10000 (see"},
    {"HalfAJob", {"a.svg", "-j", "2.5"}, 2, "--jobs: '2.5' is not a whole number from 1 to 1024 (see"},
    {"CommandWithoutInput", {"info"}, 2, "orvprint: no input; name a drawing (see"},
    {"OptionOfAnotherCommand", {"a.svg", "--json"}, 2, "; it is an option of orvprint info, inspect, check"},
    {"MissingFolder", {"a.svg", "-o", "missing/o.pdf"}, 8, "missing/o.pdf: there is no folder missing"},
};

TEST_F(PeopleTest, HelpIsACommandUnlessItIsAFile) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{}, {"print"}, {"check"}, {"serve"}, {"formats"}}) {
        std::vector<std::string> command = words, option = words;
        command.insert(command.begin(), "help");
        option.emplace_back("--help");
        const ToolRun run = Run(command);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_THAT(run.output, HasSubstr("Exit codes:"));
        EXPECT_EQ(run.output, Run(option).output);
    }
    WriteFile("help", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
    EXPECT_EQ(Run({"help"}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::exists(Folder() / "help.pdf"));
}

TEST_P(HintTest, SaysWhatWasMeant) {
    const ToolRun run = Run(GetParam().words);
    EXPECT_EQ(run.exitCode, GetParam().exitCode);
    EXPECT_THAT(run.errors, HasSubstr(GetParam().hint));
}

INSTANTIATE_TEST_SUITE_P(Rows, HintTest, testing::ValuesIn(kHints), kNameOfRow);

TEST_F(PeopleTest, WordsThatAreNearNothingGetNoHint) {
    EXPECT_THAT(Run({"--zzzzzzzz"}).errors, Not(HasSubstr("did you mean")));
    EXPECT_THAT(Run({"zzzzzzzz"}).errors, AllOf(HasSubstr("zzzzzzzz"), Not(HasSubstr("did you mean"))));
    // If a file of that name exists, it is an input.
    WriteFile("inof", SmallDrawing(""));
    EXPECT_EQ(Run({"inof", "-o", "o.pdf"}).exitCode, 0);
}

struct ForeignRow {
    const char* name;
    std::string content;
    int exitCode;
    const char* words;
};
class ForeignInputTest : public PeopleTest, public testing::WithParamInterface<ForeignRow> {};

const ForeignRow kForeign[] = {
    {"Pdf", "%PDF-1.7\n", 4, "is a PDF document, not an SVG drawing"},
    {"Png", "\x89PNG\r\n\x1A\n....", 4, "is a PNG image, not an SVG drawing"},
    {"Jpeg", "\xFF\xD8\xFF\xE0....", 4, "is a JPEG image"},
    {"PostScript", "%!PS-Adobe-3.0\n", 4, "is a PostScript document"},
    {"Html", "\n<!DOCTYPE HTML><p>x", 5, "is an HTML page, not an SVG drawing"},
    {"HtmlWithoutType", "<HTML><body/>", 5, "is an HTML page, not an SVG drawing"},
};

TEST_P(ForeignInputTest, IsCalledByItsName) {
    WriteFile("x.svg", GetParam().content);
    for (const char* interpreter : {"SVG", "SVG2"}) {
        const ToolRun run = Run({"x.svg", "-o", "o.pdf", "--interpreter", interpreter});
        EXPECT_EQ(run.exitCode, GetParam().exitCode);
        EXPECT_THAT(run.errors, HasSubstr(std::string("x.svg: ") + GetParam().words));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, ForeignInputTest, testing::ValuesIn(kForeign), kNameOfRow);

TEST_F(PeopleTest, XhtmlIsReadForItsDrawingsWhenAskedTo) {
    WriteFile("x.html",
              "<html xmlns='http://www.w3.org/1999/xhtml'><body>" + SmallDrawing("") + "</body></html>");
    EXPECT_EQ(Run({"x.html", "--qvxml", "-o", "o.pdf"}).exitCode, 0);
    EXPECT_THAT(Run({"x.html", "-o", "o.pdf"}).errors, HasSubstr("--qvxml"));
}

TEST_F(PeopleTest, OneDrawingWithoutAnOutputMakesAPdfOfItsName) {
    std::filesystem::create_directory(Folder() / "there");
    WriteFile("there/c.svg", SmallDrawing(""));
    EXPECT_EQ(Run({"there/c.svg"}).exitCode, 0);
    EXPECT_TRUE(Exists("c.pdf"));
    EXPECT_FALSE(Exists("there/c.pdf"));
    EXPECT_EQ(Run({"a.svg", "-f", "png"}).exitCode, 0);
    EXPECT_TRUE(Exists("a.png"));
    // Several inputs, or standard input, give no name for the output.
    EXPECT_EQ(Run({"a.svg", "b.svg"}).exitCode, 2);
    EXPECT_EQ(Run({"-"}, SmallDrawing("")).exitCode, 2);
}

TEST_F(PeopleTest, AnOutputThatNobodyNamedReplacesNoFile) {
    WriteFile("a.pdf", "mine");
    const ToolRun refused = Run({"a.svg"});
    EXPECT_EQ(refused.exitCode, 8);
    EXPECT_THAT(refused.errors, HasSubstr("a.pdf: exists; replace it with --force"));
    EXPECT_EQ(ReadFile("a.pdf"), "mine");
    EXPECT_EQ(Run({"a.svg", "--force"}).exitCode, 0);
    EXPECT_THAT(ReadFile("a.pdf"), StartsWith("%PDF"));
    // The same holds for the names of pages. An output that was named is replaced.
    WriteFile("two.svg", "<svg><svg width='9' height='9'/><svg width='18' height='9'/></svg>");
    WriteFile("two-2.png", "mine");
    EXPECT_EQ(Run({"two.svg", "-f", "png"}).exitCode, 8);
    EXPECT_EQ(ReadFile("two-2.png"), "mine");
    EXPECT_FALSE(Exists("two-1.png"));
    WriteFile("named.pdf", "mine");
    EXPECT_EQ(Run({"a.svg", "-o", "named.pdf"}).exitCode, 0);
}

TEST_F(PeopleTest, InfoTellsOfSeveralDrawings) {
    const ToolRun run = Run({"info", "a.svg", "missing.svg", "b.svg"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.output, AllOf(HasSubstr("a.svg: 1 page"), HasSubstr("b.svg: 1 page")));
    EXPECT_THAT(run.errors, HasSubstr("missing.svg"));
    const auto list = nlohmann::json::parse(Run({"info", "--json", "a.svg", "b.svg"}).output);
    ASSERT_TRUE(list.is_array());
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1]["file"], "b.svg");
    EXPECT_EQ(nlohmann::json::parse(Run({"info", "--json", "a.svg"}).output)["pageCount"], 1);
}

TEST_F(PeopleTest, FindingsThatSayTheSameAreFolded) {
    std::string shapes;
    for (int i = 0; i < 7; ++i) shapes += "<rect width='9' height='9' fill='rgb(76.07%,1%,1%)'/>\n";
    WriteFile("c.svg", SmallDrawing(shapes + "<rect width='9' height='9' fill='blurple'/>"));
    const std::string folded = Run({"check", "c.svg"}).output;
    EXPECT_THAT(folded, HasSubstr("(7 times)"));
    EXPECT_THAT(folded, HasSubstr("blurple"));
    EXPECT_THAT(folded, Not(HasSubstr("more; --verbose")));
    const std::string all = Run({"check", "--verbose", "c.svg"}).output;
    EXPECT_THAT(all, Not(HasSubstr("times)")));
}

TEST_F(PeopleTest, CheckTellsThatSizesInPxAreNotThoseOfOthers) {
    const struct {
        const char* size;
        bool isTold;
    } rows[] = {{"width='90' height='45'", true},
                {"width='90px' height='45px'", true},
                {"viewBox='0 0 9 9'", true},
                {"width='9mm' height='9mm'", false},
                {"width='100%' height='9cm'", false}};
    for (const auto& row : rows) {
        WriteFile("c.svg", std::string("<svg xmlns='http://www.w3.org/2000/svg' ") + row.size + "/>");
        const std::string note = "note: its size is in px";
        EXPECT_EQ(Run({"check", "c.svg"}).output.find(note) != std::string::npos, row.isTold) << row.size;
        EXPECT_THAT(Run({"check", "--interpreter", "svg2", "c.svg"}).output, Not(HasSubstr(note)));
    }
    EXPECT_EQ(Run({"check", "b.svg"}).exitCode, 0) << "a note is no finding";
}

TEST_F(PeopleTest, TheExampleOfTheReadmeHasThePagesThatItPrints) {
    EXPECT_EQ(Run({Example("drawing-set.svg"), "-o", "pages.pdf", "--pages", "2,1"}).exitCode, 0);
}

// The resolution of flattened parts decides how fine their edges are.
TEST_F(PeopleTest, FlattenDpiDecidesThePixelsOfTransparentParts) {
    WriteFile("t.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='96'>"
              "<g opacity='0.5'><rect width='96' height='96'/><circle cx='48' cy='48' r='30' fill='red'/></g>"
              "</svg>");
    const auto imageOf = [&](const char* dpi) {
        EXPECT_EQ(Run({"t.svg", "--interpreter", "svg2", "-o", "t.ps", "--flatten-dpi", dpi}).exitCode, 0);
        EXPECT_EQ(RunProgram({"ps2pdf", "-dDownsampleColorImages=false", "-dAutoFilterColorImages=false",
                              "-dColorImageFilter=/FlateEncode", "t.ps", "t.pdf"})
                      .exitCode,
                  0);
        return RunProgram({"pdfimages", "-list", "t.pdf"}).output;
    };
    EXPECT_THAT(imageOf("72"), testing::ContainsRegex(" 72 +72 +(rgb|icc)"));
    EXPECT_THAT(imageOf("288"), testing::ContainsRegex(" 288 +288 +(rgb|icc)"));
}

}  // namespace
