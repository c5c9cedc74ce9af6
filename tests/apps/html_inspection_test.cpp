// SPDX-License-Identifier: Apache-2.0

// The page of `inspect --html`: what it contains, how it works in a browser, and that hostile drawings cannot
// harm it.

#include <gmock/gmock.h>

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kDataStart = "<script type=\"application/json\" id=\"data\">";

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
    return count;
}

class HtmlInspectionTest : public ToolTest {
protected:
    /// Inspects a drawing. @return the HTML page
    std::string Page(const std::string& drawing, std::vector<std::string> options = {}) const {
        WriteFile("drawing.svg", drawing);
        options.insert(options.begin(), {"inspect", "drawing.svg", "--html", "page.html"});
        const ToolRun run = Run(options);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(run.errors + run.output, "");
        return ReadFile("page.html");
    }
    static json DataOf(const std::string& page) {
        const std::size_t start = page.find(kDataStart) + kDataStart.size();
        return json::parse(page.substr(start, page.find("</script>", start) - start));
    }
    json Data(const std::string& drawing, const std::vector<std::string>& options = {}) const {
        return DataOf(Page(drawing, options));
    }
    /// Returns the element names that the rows come from, in order; "" if unknown.
    static std::vector<std::string> NamesOfRows(const json& data) {
        std::vector<std::string> names;
        for (std::size_t element : data["drawings"][0]["elements"]) {
            const json& numbers = data["drawings"][0].value("elementNumbers", json());
            if (!numbers.is_null() && element > 0) element = numbers[element - 1];
            names.push_back(
                element == 0 ? "" : data["names"][data["places"][(element - 1) * 4 + 3].get<std::size_t>()]);
        }
        return names;
    }
    /// Returns the ids of the marks that a page draws, in order.
    static std::vector<std::string> MarksOf(const json& data, std::size_t page = 0) {
        const std::string svg = data["drawings"][0]["drawn"][page]["svg"];
        std::vector<std::string> marks;
        for (std::size_t at = svg.find(" id=\"r"); at != svg.npos; at = svg.find(" id=\"r", at + 1))
            marks.push_back(svg.substr(at + 5, svg.find('"', at + 5) - at - 5));
        return marks;
    }
};

TEST_F(HtmlInspectionTest, HoldsThePrimitivesOfTheDumpAndTheDrawnPage) {
    const std::string drawing = SmallDrawing("<g id='a'><rect width='9' height='9' fill='red'/></g>");
    const json data = Data(drawing), dump = json::parse(Run({"inspect", "drawing.svg"}).output);
    EXPECT_EQ(data["file"], "drawing.svg");
    EXPECT_EQ(data["interpreter"], "SVG");
    EXPECT_EQ(data["drawings"][0]["pages"], dump["pages"]);
    EXPECT_EQ(data["drawings"][0]["drawn"][0]["page"], 1);
    EXPECT_THAT(data["drawings"][0]["drawn"][0]["svg"].get<std::string>(), HasSubstr("<rect"));
    EXPECT_THAT(MarksOf(data), ElementsAre("r2"));
}

TEST_F(HtmlInspectionTest, HoldsTheCallsOfStandardSvg) {
    const std::string drawing = SmallDrawing("<g id='a'><rect width='9' height='9' fill='red'/></g>");
    const json data = Data(drawing, {"--interpreter", "svg2"});
    const json dump = json::parse(Run({"inspect", "drawing.svg", "--interpreter", "svg2"}).output);
    EXPECT_EQ(data["drawings"][0]["calls"], dump);
    EXPECT_THAT(MarksOf(data), ElementsAre("r2"));
}

TEST_F(HtmlInspectionTest, NeitherIdentifiersNorLinksOfTheDrawingAreInTheDrawnPage) {
    const std::string drawing = SmallDrawing(
        "<a xlink:href='http://elsewhere/' xmlns:xlink='http://www.w3.org/1999/xlink'>"
        "<rect id='data' width='9' height='9' fill='red'/></a>");
    for (const char* interpreter : {"SVG", "SVG2"}) {
        const std::string svg =
            Data(drawing, {"--interpreter", interpreter})["drawings"][0]["drawn"][0]["svg"];
        EXPECT_THAT(svg, Not(HasSubstr("elsewhere")));
        EXPECT_THAT(svg, Not(HasSubstr("\"data\"")));
    }
}

struct RowsCase {
    const char* name;
    const char* interpreter;
    const char* content;
    std::vector<std::string> elements;  ///< names for the rows, the page first
    std::vector<std::string> marks;     ///< ids of the drawn marks
};
class HtmlRowsTest : public HtmlInspectionTest, public testing::WithParamInterface<RowsCase> {};

TEST_P(HtmlRowsTest, KnowTheirElementsAndWhatTheyDraw) {
    const json data = Data(SmallDrawing(GetParam().content), {"--interpreter", GetParam().interpreter});
    EXPECT_EQ(NamesOfRows(data), GetParam().elements);
    EXPECT_EQ(MarksOf(data), GetParam().marks);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HtmlRowsTest,
    testing::Values(
        RowsCase{"Siblings",
                 "SVG",
                 "<rect width='2' height='2' fill='red'/><desc>x</desc><circle r='3' fill='blue'/>",
                 {"svg", "rect", "circle"},
                 {"r1", "r2"}},
        RowsCase{"Groups",
                 "SVG",
                 "<g><rect width='2' height='2' fill='red'/><a><circle r='3' fill='red'/></a></g>",
                 {"svg", "g", "rect", "a", "circle"},
                 {"r2", "r4"}},
        // The drawing of a closed figure belongs to its row, not to the rows of its regions.
        RowsCase{"FilledPath",
                 "SVG",
                 "<path d='M0 0H9V9Z' fill='red'/><rect width='2' height='2' fill='red'/>",
                 {"svg", "path", "", "", "", "", "rect"},
                 {"r2", "r6"}},
        RowsCase{"NothingDrawn",
                 "SVG",
                 "<rect width='2' height='2' fill='none'/><rect width='2' height='2' fill='red'/>",
                 {"svg", "rect", "rect"},
                 {"r2"}},
        // Connected segments are stroked together.
        RowsCase{"JoinedPieces",
                 "SVG",
                 "<path d='M0 0L9 9C9 9 8 8 7 20L3 3' fill='none' stroke='red'/><circle r='3' fill='red'/>",
                 {"svg", "path", "", "", "", "circle"},
                 {"r2-4", "r5"}},
        // The rows of markers follow that of their line.
        RowsCase{"Markers",
                 "SVG",
                 "<defs><marker id='m'><circle r='1' fill='red'/></marker></defs>"
                 "<line x2='9' stroke='red' marker-start='url(#m)' marker-end='url(#m)'/><g/>"
                 "<rect width='2' height='2' fill='red'/>",
                 {"svg", "line", "line", "", "", "line", "", "", "g", "rect"},
                 {"r1", "r4", "r7", "r9"}},
        RowsCase{"Uses",
                 "SVG",
                 "<defs><circle id='c' r='3' fill='red'/></defs>"
                 "<use xlink:href='#c' xmlns:xlink='http://www.w3.org/1999/xlink'/>"
                 "<rect width='2' height='2' fill='red'/>",
                 {"svg", "use", "", "rect"},
                 {"r2", "r3"}},
        RowsCase{"StandardShapes",
                 "SVG2",
                 "<g opacity='.5'><rect width='2' height='2'/><circle r='3'/></g><path d='M0 0H9'/>",
                 {"", "g", "rect", "circle", "path"},
                 {"r2", "r3", "r4"}},
        RowsCase{"StandardUses",
                 "SVG2",
                 "<defs><circle id='c' r='3'/></defs><use href='#c'/>",
                 {"", "circle"},
                 {"r1"}},
        // The interpreter skips foreign elements, but the document's numbering counts them.
        RowsCase{"StandardForeign",
                 "SVG2",
                 "<x:y xmlns:x='urn:x'><x:z/></x:y><rect width='2' height='2'/>",
                 {"", "rect"},
                 {"r1"}},
        // A mask's content shows only by its effect.
        RowsCase{"StandardMask",
                 "SVG2",
                 "<mask id='m'><circle r='9' fill='#fff'/></mask><rect width='2' height='2' mask='url(#m)'/>",
                 {"", "rect", "rect", "circle", "rect"},
                 {"r4"}}),
    kNameOfRow);

TEST_F(HtmlInspectionTest, HoldsWhatTheCheckFinds) {
    const json data = Data(SmallDrawing("<rect width='2' height='2'\nfill='reed'/>"));
    EXPECT_EQ(data["total"], 1);
    ASSERT_EQ(data["findings"].size(), 1U);
    EXPECT_EQ(data["findings"][0]["code"], "bad-colour");
    EXPECT_EQ(data["findings"][0]["line"], 2);
}

TEST_F(HtmlInspectionTest, APageWithoutAreaIsListedAndNotDrawn) {
    const json data = Data("<svg width='0' height='5'><rect fill='red' width='5' height='5'/></svg>");
    EXPECT_EQ(data["drawings"][0]["pages"].size(), 1U);
    EXPECT_TRUE(data["drawings"][0]["drawn"].empty());
}

TEST_F(HtmlInspectionTest, EveryPageIsDrawn) {
    const json data = Data(
        "<svg><svg width='9' height='9'><rect width='2' height='2' fill='red'/></svg>"
        "<svg width='9' height='9'/><svg width='9' height='9'><g/><rect width='2' height='2' "
        "fill='red'/></svg></svg>");
    EXPECT_EQ(data["drawings"][0]["drawn"].size(), 3U);
    EXPECT_THAT(MarksOf(data, 0), ElementsAre("r1"));
    EXPECT_THAT(MarksOf(data, 2), ElementsAre("r5"));
    EXPECT_THAT(NamesOfRows(data), ElementsAre("svg", "rect", "svg", "svg", "g", "rect"));
}

TEST_F(HtmlInspectionTest, TakesStandardInputAndWritesStandardOutput) {
    const ToolRun run = Run({"inspect", "-", "--html", "-"}, SmallDrawing("<circle r='3' fill='red'/>"));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(DataOf(run.output)["file"], "standard input");
    EXPECT_THAT(MarksOf(DataOf(run.output)), ElementsAre("r1"));
}

TEST_F(HtmlInspectionTest, FailuresLeaveNoPage) {
    WriteFile("broken.svg", "<svg><rect</svg>");
    WriteFile("drawing.svg", SmallDrawing(""));
    struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* message;
    } const rows[]{
        {{"inspect", "broken.svg", "--html", "page.html"}, 4, "broken.svg:1:11"},
        {{"inspect", "missing.svg", "--html", "page.html"}, 3, "missing.svg"},
        {{"inspect", "drawing.svg", "--html", "missing/page.html"}, 8, "missing/page.html"},
        {{"inspect", "drawing.svg", "--html", "drawing.svg"}, 8, "drawing.svg"},
        {{"inspect", "drawing.svg", "--html", "page.html", "--json"}, 2, "--html"},
        {{"inspect", "drawing.svg", "--html", "page.html", "--limit", "output-bytes=1000"},
         9,
         "output-bytes"},
    };
    for (const auto& row : rows) {
        const ToolRun run = Run(row.arguments);
        EXPECT_EQ(run.exitCode, row.exitCode) << run.errors;
        EXPECT_THAT(run.errors, HasSubstr(row.message));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_THAT(Files(), ElementsAre("broken.svg", "drawing.svg")) << row.message;
    }
}

// Texts that would be markup or script if they were not escaped.
const std::string kHostile =
    "<svg width='90' height='45'><title>&lt;/script>&lt;script>alert(1)&lt;/script></title>"
    "<g id='&lt;/script>&lt;img src=x onerror=alert(2)>'><desc>--&gt;&lt;!--&amp;lt;b></desc>"
    "<rect id='&quot; onload=&quot;alert(3)' width='9' height='9' fill='\"/>&lt;svg onload=alert(4)>'/>"
    "<text x='9' y='20' fill='red'>&lt;/script>&lt;img src=x onerror=alert(5)>\xE2\x80\xA8&amp;#60;</text>"
    "<rect id='javascript:alert(6)' width='5' height='5' fill='url(javascript:alert(7))'/>"
    "<rect id='documentElement' width='5' height='5' fill='red'/></g></svg>";

TEST_F(HtmlInspectionTest, HostileTextIsNoMarkup) {
    const std::string plain = Page(SmallDrawing(""));
    for (const char* interpreter : {"SVG", "SVG2"}) {
        const std::string page = Page(kHostile, {"--interpreter", interpreter});
        for (const char* markup : {"<script", "</script", "<img", "<!--", "-->", "<svg"})
            EXPECT_EQ(CountOf(page, markup), CountOf(plain, markup)) << markup;
        const std::string data = page.substr(page.find(kDataStart) + kDataStart.size());
        EXPECT_EQ(data.substr(0, data.find("</script>")).find_first_of("<>&"), std::string::npos);
        EXPECT_NO_THROW(DataOf(page));
    }
}

TEST_F(HtmlInspectionTest, ThePolicyAllowsTheScriptOfThePageAndNoOther) {
    const std::string page = Page(SmallDrawing(""));
    WriteFile("hash.py",
              "import base64, hashlib, re\n"
              "page = open('page.html', encoding='utf-8').read()\n"
              "script = re.search(r'<script>(.*?)</script>', page, re.S).group(1)\n"
              "print('sha256-' + base64.b64encode(hashlib.sha256(script.encode()).digest()).decode())\n");
    const ToolRun run = RunProgram({"python3", "hash.py"});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const std::string hash = run.output.substr(0, run.output.find('\n'));
    EXPECT_THAT(page, HasSubstr("content=\"default-src 'none'; script-src '" + hash + "'; style-src"));
    // The page loads nothing from elsewhere: its only addresses are namespaces.
    EXPECT_EQ(CountOf(page, "://"), CountOf(page, "http://www.w3.org/"));
}

// ---- In a browser.

struct BrowserCase {
    const char* name;
    const char* interpreter;
    std::string content;
    std::vector<std::string> steps;
    std::vector<std::string> answers;  ///< of the `eval` steps, as JSON
};

constexpr const char* kBrowser = "/usr/bin/chromium";

class HtmlBrowserTest : public HtmlInspectionTest, public testing::WithParamInterface<BrowserCase> {};

TEST_P(HtmlBrowserTest, ShowsAndAnswers) {
    if (access(kBrowser, X_OK) != 0) GTEST_SKIP() << kBrowser << " is not installed";
    Page(GetParam().content, {"--interpreter", GetParam().interpreter});
    std::vector<std::string> command{"python3", ORV_SOURCE_PATH "/tests/apps/drive_browser.py", kBrowser,
                                     (Folder() / "page.html").string()};
    command.insert(command.end(), GetParam().steps.begin(), GetParam().steps.end());
    const ToolRun run = RunProgram(command);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    std::vector<std::string> answers;
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) answers.push_back(line);
    EXPECT_EQ(answers, GetParam().answers);
}

/// Returns the expression for the drawing of a row.
std::string Drawn(int row) {
    return "document.querySelector('#drawing').shadowRoot.querySelector('#r" + std::to_string(row) + "')";
}
const std::string kChosen = "eval:document.querySelector('.row[aria-selected=true]')?.dataset.row ?? null";
const std::string kHovered = "eval:document.querySelector('.row.hover')?.dataset.row ?? null";
const std::string kActive = "eval:document.querySelector('#tree').getAttribute('aria-activedescendant')";
const std::string kRowCount = "eval:document.querySelectorAll('.row').length";
/// Returns a step that tells whether the box `mark` surrounds the drawing of a row.
std::string IsMarked(const std::string& mark, int row) {
    return "eval:(() => { const a = document.querySelector('.box." + mark +
           "')?.getBoundingClientRect(), b = " + Drawn(row) +
           ".getBoundingClientRect(); return !!a && Math.abs(a.left - b.left) < 2 && "
           "Math.abs(a.right - b.right) < 2 && Math.abs(a.top - b.top) < 2; })()";
}
std::string Row(int row) { return "document.querySelector('#row-" + std::to_string(row) + "')"; }

const std::string kTwoShapes = SmallDrawing(
    "<g id='left'><rect id='door' width='20' height='20' fill='red'/></g>"
    "<circle id='knob' cx='60' cy='20' r='9' fill='reed'/>");

INSTANTIATE_TEST_SUITE_P(
    Pages, HtmlBrowserTest,
    testing::Values(
        BrowserCase{"AClickOnAShapeMarksItsRow",
                    "SVG",
                    kTwoShapes,
                    {"click:" + Drawn(2), kChosen, IsMarked("chosen", 2),
                     "eval:document.querySelector('#attributes h2').textContent"},
                    {"\"2\"", "true", "\"Rectangle door\""}},
        BrowserCase{"AClickOnAShapeMarksItsRowOfStandardSvg",
                    "SVG2",
                    kTwoShapes,
                    {"click:" + Drawn(2), kChosen, IsMarked("chosen", 2)},
                    {"\"2\"", "true"}},
        BrowserCase{"AClickOnARowMarksItsShape",
                    "SVG",
                    kTwoShapes,
                    {"click:" + Row(3), IsMarked("chosen", 3), "click:" + Row(1), IsMarked("chosen", 2)},
                    {"true", "true"}},
        BrowserCase{"ThePointerMarksBothSides",
                    "SVG",
                    kTwoShapes,
                    {"hover:" + Drawn(2), kHovered, IsMarked("hover", 2), "hover:" + Row(3), kHovered,
                     IsMarked("hover", 3)},
                    {"\"2\"", "true", "\"3\"", "true"}},
        BrowserCase{"KeysWalkTheTree",
                    "SVG",
                    kTwoShapes,
                    {"eval:document.querySelector('#tree').focus()", kActive, "key:ArrowDown", kChosen,
                     "key:ArrowLeft", kRowCount, "key:ArrowRight", "key:ArrowRight", kActive, "key:End",
                     kChosen, "key:Home", kChosen, "key:d", kChosen, "key:ArrowLeft", kChosen},
                    {"null", "\"row-0\"", "\"1\"", "3", "\"row-2\"", "\"3\"", "\"0\"", "\"2\"", "\"1\""}},
        BrowserCase{"KeysZoom",
                    "SVG",
                    kTwoShapes,
                    {"eval:(window.fit = document.querySelector('#paper').offsetWidth) > 100", "key:+",
                     "eval:document.querySelector('#paper').offsetWidth > 1.2 * window.fit", "key:0",
                     "eval:document.querySelector('#paper').offsetWidth === window.fit"},
                    {"true", "true", "true"}},
        BrowserCase{"FindingsStandAtTheirRowsAndOnThePage",
                    "SVG",
                    kTwoShapes,
                    {"eval:[...document.querySelectorAll('.row .warn')].map((one) => one.closest('.row').id "
                     "+ one.textContent)",
                     "eval:[...document.querySelectorAll('.badge')].map((one) => one.dataset.row)",
                     "click:document.querySelector('.badge')", kChosen,
                     "eval:document.querySelectorAll('#attributes .finding').length"},
                    {R"(["row-3bad-colour"])", R"(["3"])", "\"3\"", "1"}},
        BrowserCase{"TheTreeSaysWhatItIs",
                    "SVG",
                    kTwoShapes,
                    {"eval:document.querySelector('#tree').getAttribute('role')",
                     "eval:[...document.querySelectorAll('[role=treeitem]')].map((one) => "
                     "one.getAttribute('aria-level') + one.getAttribute('aria-expanded'))"},
                    {"\"tree\"", R"(["1true", "2true", "3null", "2null"])"}},
        BrowserCase{"HostileTextIsInert",
                    "SVG",
                    kHostile,
                    {"eval:document.querySelectorAll('img, script').length",
                     "eval:document.querySelector('#drawing').shadowRoot.querySelectorAll('script, a, "
                     "foreignObject, img').length",
                     "click:" + Row(2), "click:" + Row(3), "click:" + Row(4),
                     "eval:document.querySelectorAll('img, script').length",
                     "eval:document.querySelector('#row-1 .id').textContent"},
                    {"2", "0", "2", "\"#</script><img src=x onerror=alert(2)>\""}},
        BrowserCase{"HostileTextOfStandardSvgIsInert",
                    "SVG2",
                    kHostile,
                    {"eval:document.querySelectorAll('img, script').length",
                     "eval:document.querySelector('#drawing').shadowRoot.querySelectorAll('script, a, "
                     "foreignObject, img').length"},
                    {"2", "0"}}),
    kNameOfRow);

TEST_F(HtmlInspectionTest, ManyRowsAreUsable) {
    if (access(kBrowser, X_OK) != 0) GTEST_SKIP() << kBrowser << " is not installed";
    std::string content;
    for (int i = 0; i < 20'000; ++i) content += "<rect width='2' height='2' fill='red'/>";
    Page(SmallDrawing(content));
    const ToolRun run =
        RunProgram({"python3", ORV_SOURCE_PATH "/tests/apps/drive_browser.py", kBrowser,
                    (Folder() / "page.html").string(), "eval:document.querySelector('#tree').focus()",
                    "key:End", kChosen, "eval:document.querySelectorAll('.row').length < 100"});
    EXPECT_EQ(run.output, "null\n\"20000\"\ntrue\n") << run.errors;
}

}  // namespace
