// SPDX-License-Identifier: Apache-2.0

// Printing drawings with lp: the tests' own scheduler, the types and the filter of the package, and CUPS' own
// filter after it.

#include <cups/cups.h>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <thread>

#include "tests/apps/looks.h"
#include "tests/apps/tool_run.h"
#include "tests/cups/private_scheduler.h"
#include "tests/support/sample_images.h"

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::Not;

/// Returns an A4 page with user units of 1 mm.
std::string Page(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='210mm' "
           "height='297mm' viewBox='0 0 210 297'>" +
           content + "</svg>";
}

std::string FilledPage(const std::string& colour) {
    return Page("<rect width='210' height='297' fill='" + colour + "'/>");
}

const std::string kDrawing = Page(
    "<style>circle{fill:blue}</style><rect x='20' y='30' width='100' height='50' "
    "fill='red'/><circle cx='150' cy='200' r='40'/>");

std::string ThreePages() {
    return "<?xml version='1.0'?><report><a>" + FilledPage("red") + "</a>" + FilledPage("lime") +
           FilledPage("blue") + "</report>";
}

class QueueTest : public ToolTest {
protected:
    static void SetUpTestSuite() {
        if (PrivateScheduler::WhyNot().empty()) scheduler = std::make_unique<PrivateScheduler>();
    }
    static void TearDownTestSuite() { scheduler.reset(); }

    void SetUp() override {
        if (!scheduler) GTEST_SKIP() << PrivateScheduler::WhyNot();
        ASSERT_TRUE(scheduler->IsReady()) << scheduler->GetLog();
    }

    /// Prints with lp, from standard input if no file is named. @return the job's number; 0 if it was refused
    int Print(std::vector<std::string> arguments, const std::string& input = {}) const {
        arguments.insert(arguments.begin(), {"lp", "-h", scheduler->GetAddress(), "-d", "paper"});
        const ToolRun run = RunProgram(arguments, input);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        const std::size_t at = run.output.find("paper-");
        return at == std::string::npos ? 0 : std::atoi(run.output.c_str() + at + 6);
    }
    /// Prints and waits for the job's end. The pages are then in "page.pdf".
    JobFacts PrintToEnd(const std::vector<std::string>& arguments, const std::string& input = {}) const {
        fs::remove(scheduler->GetOutput());
        const int job = Print(arguments, input);
        const JobFacts facts = scheduler->WaitForEnd(job);
        std::error_code none;
        fs::remove(Folder() / "page.pdf");
        fs::copy(scheduler->GetOutput(), Folder() / "page.pdf", none);
        return facts;
    }
    void ExpectCompleted(const JobFacts& facts, const std::string& what) const {
        EXPECT_EQ(facts.state, IPP_JSTATE_COMPLETED)
            << what << ": " << facts.reasons << ", " << facts.message;
    }
    /// Renders a page of a PDF. Each call writes another file.
    Looks LooksOf(const std::string& pdf, int page = 1) const {
        const std::string number = std::to_string(page), name = "look" + std::to_string(++looks_);
        EXPECT_EQ(
            RunProgram({"pdftoppm", "-png", "-r", "36", "-f", number, "-l", number, "-singlefile", pdf, name})
                .exitCode,
            0);
        return {(Folder() / (name + ".png")).string(), 0};
    }
    int CountPages(const std::string& pdf) const {
        const std::string text = RunProgram({"pdfinfo", pdf}).output;
        const std::size_t at = text.find("Pages:");
        return at == std::string::npos ? 0 : std::atoi(text.c_str() + at + 6);
    }
    /// Expects that a printed page looks like a page of another PDF.
    void ExpectLooksAs(const std::string& pdf, const std::string& what, int page = 1, int asPage = 1) const {
        const Looks printed = LooksOf("page.pdf", page), wanted = LooksOf(pdf, asPage);
        ASSERT_TRUE(printed.IsThere() && wanted.IsThere()) << what;
        ASSERT_EQ(printed.GetRows(), wanted.GetRows()) << what;
        EXPECT_LT(printed.DifferenceFrom(wanted), 1.0) << what;
    }

    static std::unique_ptr<PrivateScheduler> scheduler;

private:
    mutable int looks_ = 0;
};

std::unique_ptr<PrivateScheduler> QueueTest::scheduler;

class NamesAndContents : public QueueTest {};

TEST_F(NamesAndContents, DrawingsAreToldByContentAsWellAsByName) {
    WriteFile("drawing.svg", kDrawing);
    ASSERT_EQ(Run({"drawing.svg", "--interpreter", "svg2", "-o", "wanted.pdf"}).exitCode, 0);
    const std::string utf16 =
        "\xFF\xFE" + RunProgram({"iconv", "-f", "UTF-8", "-t", "UTF-16LE"}, kDrawing).output;
    const std::string utf16Big =
        "\xFE\xFF" + RunProgram({"iconv", "-f", "UTF-8", "-t", "UTF-16BE"}, kDrawing).output;
    const std::string compressed = RunProgram({"gzip", "-c"}, kDrawing).output;
    WriteFile("none", kDrawing);
    WriteFile("drawing.svgz", compressed);
    WriteFile("wide.svg", utf16);
    struct Row {
        std::string what;
        std::vector<std::string> arguments;
        std::string input;
    };
    for (const Row& row :
         {Row{"a name", {"drawing.svg"}, ""},
          {"no ending", {"none"}, ""},
          {"no name", {}, kDrawing},
          {"compressed", {"drawing.svgz"}, ""},
          {"compressed without a name", {}, compressed},
          {"UTF-16", {"wide.svg"}, ""},
          {"UTF-16 without a name", {}, utf16},
          {"UTF-16, the other way round", {}, utf16Big},
          {"a byte order mark", {}, "\xEF\xBB\xBF" + kDrawing},
          {"a document type and a long comment",
           {},
           "<?xml version='1.0'?>\n<!DOCTYPE svg>\n<!-- " + std::string(3000, '.') + " -->" + kDrawing},
          {"an element around it", {}, "<report><figure>" + kDrawing + "</figure></report>"}}) {
        ExpectCompleted(PrintToEnd(row.arguments, row.input), row.what);
        EXPECT_EQ(CountPages("page.pdf"), 1) << row.what;
        ExpectLooksAs("wanted.pdf", row.what);
    }
}

TEST_F(NamesAndContents, OtherTextsAreNoDrawings) {
    WriteFile("code.py", "page = \"\"\"" + kDrawing + "\"\"\"\n");
    WriteFile("page.html", "<!DOCTYPE html>\n<html><body>" + kDrawing + "</body></html>");
    ASSERT_EQ(Run({"-", "--interpreter", "svg2", "-f", "pdf", "-o", "drawing.pdf"}, kDrawing).exitCode, 0);
    const Looks drawing = LooksOf("drawing.pdf");
    for (const char* name : {"code.py", "page.html"}) {
        ExpectCompleted(PrintToEnd({name}), name);
        EXPECT_GT(LooksOf("page.pdf").DifferenceFrom(drawing), 3.0) << name;
    }
}

TEST_F(QueueTest, PagesCopiesAndPagesOnASheetAreLeftToTheNextFilter) {
    WriteFile("report.qvxml", ThreePages());
    ASSERT_EQ(Run({"report.qvxml", "--interpreter", "svg2", "-o", "wanted.pdf"}).exitCode, 0);

    JobFacts facts = PrintToEnd({"report.qvxml"});
    ExpectCompleted(facts, "all pages");
    ASSERT_EQ(CountPages("page.pdf"), 3);
    for (int page = 1; page <= 3; ++page) ExpectLooksAs("wanted.pdf", "all pages", page, page);
    EXPECT_EQ(facts.sheets, 3);

    facts = PrintToEnd({"-P", "2", "-n", "2", "report.qvxml"});
    ExpectCompleted(facts, "the second page, twice");
    ASSERT_EQ(CountPages("page.pdf"), 2);
    for (int page = 1; page <= 2; ++page) ExpectLooksAs("wanted.pdf", "the second page, twice", page, 2);
    // Each sheet is counted once, by the filter that knows the number of sheets.
    EXPECT_EQ(facts.sheets, 2);

    facts = PrintToEnd({"-o", "number-up=2", "report.qvxml"});
    ExpectCompleted(facts, "two on a sheet");
    EXPECT_EQ(CountPages("page.pdf"), 2);
    EXPECT_EQ(facts.sheets, 2);
}

TEST_F(QueueTest, TheJobChoosesTheInterpreter) {
    // A4 in user units of the first interpreter, which has no style sheets.
    WriteFile(
        "drawing.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='744' height='1052'><style>rect{fill:red}</style>"
        "<rect width='744' height='1052'/><circle cx='300' cy='300' r='200' fill='lime'/></svg>");
    ASSERT_EQ(Run({"drawing.svg", "-o", "first.pdf"}).exitCode, 0);
    const Looks first = LooksOf("first.pdf");
    ExpectCompleted(PrintToEnd({"-o", "svg-interpreter=svg", "drawing.svg"}), "svg");
    ExpectLooksAs("first.pdf", "svg");
    for (const char* option : {"svg-interpreter=svg2", "job-priority=50"}) {
        ExpectCompleted(PrintToEnd({"-o", option, "drawing.svg"}), option);
        EXPECT_GT(LooksOf("page.pdf").DifferenceFrom(first), 30.0) << option;
    }
}

TEST_F(QueueTest, ABrokenDrawingEndsTheJobWithItsReason) {
    WriteFile("broken.svg", "<svg xmlns='http://www.w3.org/2000/svg'>\n<rect</svg>");
    const JobFacts facts = PrintToEnd({"broken.svg"});
    EXPECT_NE(facts.state, IPP_JSTATE_COMPLETED);
    EXPECT_THAT(facts.message, HasSubstr("line 2, column 6: not well-formed"));
    EXPECT_EQ(ReadFile("page.pdf"), "");
    // It does not block the queue.
    ExpectCompleted(PrintToEnd({}, kDrawing), "after it");
}

TEST_F(QueueTest, TheFileOfAnotherJobIsNotPrinted) {
    WriteFile("secret.png", SamplePng(40, 40));
    const int secret = Print({"-o", "job-hold-until=indefinite", "secret.png"});
    std::string name = std::to_string(secret);
    name = "d" + std::string(5 - name.size(), '0') + name + "-001";
    const std::string path = scheduler->GetSpool() / name;
    ASSERT_TRUE(fs::exists(path));
    ASSERT_EQ(Run({"-", "--interpreter", "svg2", "-f", "pdf", "-o", "empty.pdf"}, Page("")).exitCode, 0);
    for (const std::string& reference : {name, path, "file://" + path}) {
        const std::string drawing = Page("<image width='210' height='210' xlink:href='" + reference + "'/>");
        // Control: if filters got drawings in a folder with other files, the image would be printed.
        if (reference == name) {
            WriteFile("spool/d00099-001", drawing);
            fs::copy(path, Folder() / "spool" / name);
            EXPECT_EQ(Run({"spool/d00099-001", "--interpreter", "svg2", "-o", "leaked.pdf"}).exitCode, 0);
            EXPECT_GT(LooksOf("leaked.pdf").DifferenceFrom(LooksOf("empty.pdf")), 50.0);
        }
        for (const char* interpreter : {"svg-interpreter=svg2", "svg-interpreter=svg"}) {
            ExpectCompleted(PrintToEnd({"-o", interpreter}, drawing), reference);
            ExpectLooksAs("empty.pdf", reference);
        }
    }
}

TEST_F(QueueTest, ACancelledJobLeavesNoFilesAndNoProcesses) {
    std::string slow =
        "<filter id='f' x='0' y='0' width='1' height='1'><feTurbulence baseFrequency='.05' "
        "numOctaves='9'/></filter>";
    for (int i = 0; i < 40; ++i) slow += "<rect width='210' height='297' filter='url(#f)'/>";
    fs::remove(scheduler->GetOutput());
    const int job = Print({}, Page(slow));
    EXPECT_EQ(scheduler->WaitForState(job, IPP_JSTATE_PROCESSING).state, IPP_JSTATE_PROCESSING);
    EXPECT_EQ(RunProgram({"cancel", "-h", scheduler->GetAddress(), std::to_string(job)}).exitCode, 0);
    EXPECT_EQ(scheduler->WaitForEnd(job).state, IPP_JSTATE_CANCELED);
    while (scheduler->HasFilters()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    // Except the font index, and the file of 13 digits that the next filter of CUPS was about to read.
    for (const auto& entry : fs::directory_iterator(scheduler->GetTemporaryFolder()))
        EXPECT_THAT(entry.path().filename().string(), testing::MatchesRegex("orvprint|[0-9a-f]{13}"));
    // The printer prints the next job.
    ExpectCompleted(PrintToEnd({}, kDrawing), "after it");
}

}  // namespace
