// SPDX-License-Identifier: Apache-2.0

// Printing, and the error messages when it fails.

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/apps/tool_run.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// Expects one error line that names the subject.
void ExpectComplaint(const ToolRun& run, int exitCode, const std::string& start) {
    EXPECT_EQ(run.exitCode, exitCode);
    EXPECT_THAT(run.errors, StartsWith("orvprint: " + start));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    EXPECT_THAT(run.output, IsEmpty());
}

class PrintTest : public ToolTest {
protected:
    PrintTest() {
        WriteFile("a.svg", SmallDrawing("<title>First</title><rect width='9' height='9' fill='red'/>"));
        WriteFile("two.svg",
                  "<svg><svg width='90' height='90'><text x='9' y='40' fill='black'>one</text></svg>"
                  "<svg width='180' height='90'><text x='9' y='40' fill='black'>two</text></svg></svg>");
        WriteFile("r.qvxml",
                  "<report><svg width='90' height='90'><svg width='9' height='9'/></svg><p/>"
                  "<x><svg id='s' width='45' height='45'><text y='20' "
                  "fill='black'>inside</text></svg></x></report>");
    }
    std::string PdfInfo(const std::string& name) const {
        return RunProgram({"pdfinfo", "-l", "99", name}).output;
    }
    std::string PdfText(const std::string& name) const {
        return RunProgram({"pdftotext", "-layout", name, "-"}).output;
    }
    void ExpectSoundPdf(const std::string& name) const {
        const ToolRun check = RunProgram({"qpdf", "--check", name});
        EXPECT_EQ(check.exitCode, 0) << check.output << check.errors;
    }
};

TEST_F(PrintTest, PrintsPdf) {
    const ToolRun run = Run({"a.svg", "-o", "a.pdf"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.errors, IsEmpty());
    ExpectSoundPdf("a.pdf");
    EXPECT_THAT(PdfInfo("a.pdf"), HasSubstr("Page    1 size:  72 x 36 pts"));
    EXPECT_THAT(PdfInfo("a.pdf"), HasSubstr("First"));
}

TEST_F(PrintTest, StatesWhenTheNewestInputWasChanged) {
    EXPECT_EQ(RunProgram({"touch", "-d", "2001-09-09T01:46:40Z", "two.svg"}).exitCode, 0);
    EXPECT_EQ(RunProgram({"touch", "-d", "1999-01-01T00:00:00Z", "a.svg"}).exitCode, 0);
    const std::vector<std::string> order{"a.svg", "two.svg"}, otherOrder{"two.svg", "a.svg"};
    for (const auto& inputs : {order, otherOrder}) {
        EXPECT_EQ(Run({inputs[0], inputs[1], "-o", "one.pdf"}).exitCode, 0);
        EXPECT_THAT(RunProgram({"env", "TZ=UTC", "pdfinfo", "-isodates", "one.pdf"}).output,
                    HasSubstr("CreationDate:    2001-09-09T01:46:40Z"));
    }
    for (const char* name : {"one.pdf", "again.pdf"})
        EXPECT_EQ(Run({"a.svg", "two.svg", "-o", name}).exitCode, 0);
    EXPECT_TRUE(ReadFile("one.pdf") == ReadFile("again.pdf"));
    // Standard input has no date.
    WriteFile("piped.pdf", Run({"-", "-f", "pdf", "-o", "-"}, SmallDrawing("")).output);
    EXPECT_THAT(RunProgram({"pdfinfo", "piped.pdf"}).output, testing::Not(HasSubstr("Date")));
}

TEST_F(PrintTest, TheEnvironmentMayStateTheTimeInWholeSeconds) {
    EXPECT_EQ(RunProgram({"touch", "-d", "2001-09-09T01:46:40Z", "a.svg"}).exitCode, 0);
    const std::string ofFile = "2001-09-09T01:46:40Z";
    for (const auto& [value, date] :
         std::vector<std::pair<std::string, std::string>>{{"0", "1970-01-01T00:00:00Z"},
                                                          {"86400", "1970-01-02T00:00:00Z"},
                                                          {"", ofFile},
                                                          {"86400x", ofFile},
                                                          {"86400.5", ofFile},
                                                          {" 86400", ofFile},
                                                          {"99999999999999999999", ofFile}}) {
        ASSERT_EQ(
            RunProgram({"env", "SOURCE_DATE_EPOCH=" + value, ORV_TOOL_PATH, "a.svg", "-o", "a.pdf"}).exitCode,
            0);
        EXPECT_THAT(RunProgram({"env", "TZ=UTC", "pdfinfo", "-isodates", "a.pdf"}).output,
                    HasSubstr("CreationDate:    " + date))
            << value;
    }
}

TEST_F(PrintTest, PrintsPngAtTheResolutionAskedFor) {
    EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--dpi", "180"}).exitCode, 0);
    const std::string png = ReadFile("a.png");
    ASSERT_GT(png.size(), 24U);
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\xB4\0\0\0\x5A", 8));  // 180 x 90
}

TEST_F(PrintTest, SeveralInputsAreOnePdfInOrder) {
    EXPECT_EQ(Run({"two.svg", "a.svg", "r.qvxml", "-o", "all.pdf"}).exitCode, 0);
    ExpectSoundPdf("all.pdf");
    const std::string info = PdfInfo("all.pdf");
    EXPECT_THAT(info, HasSubstr("Pages:           5"));
    EXPECT_THAT(info, HasSubstr("Page    2 size:  144 x 72 pts"));
    EXPECT_THAT(info, HasSubstr("Page    3 size:  72 x 36 pts"));
    EXPECT_THAT(info, HasSubstr("Page    5 size:  36 x 36 pts"));
    EXPECT_THAT(PdfText("all.pdf"), HasSubstr("inside"));
}

TEST_F(PrintTest, SeveralPagesAreNumberedPictures) {
    EXPECT_EQ(Run({"two.svg", "-o", "p.png"}).exitCode, 0);
    EXPECT_THAT(Files(), ElementsAre("a.svg", "p-1.png", "p-2.png", "r.qvxml", "two.svg"));
}

TEST_F(PrintTest, OnePageAskedForIsOnePicture) {
    EXPECT_EQ(Run({"two.svg", "-o", "p.png", "--pages", "2"}).exitCode, 0);
    EXPECT_THAT(Files(), ElementsAre("a.svg", "p.png", "r.qvxml", "two.svg"));
}

TEST_F(PrintTest, PagesComeInTheOrderAskedFor) {
    EXPECT_EQ(Run({"two.svg", "-o", "p.pdf", "--pages", "2,1-2"}).exitCode, 0);
    const std::string text = PdfText("p.pdf");
    EXPECT_LT(text.find("two"), text.find("one"));
    EXPECT_THAT(PdfInfo("p.pdf"), HasSubstr("Pages:           3"));
}

TEST_F(PrintTest, StandardStreamsAreInputAndOutput) {
    const ToolRun run =
        Run({"-", "-f", "pdf", "-o", "-"}, SmallDrawing("<text y='20' fill='black'>piped</text>"));
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("%PDF"));
    WriteFile("out.pdf", run.output);
    EXPECT_THAT(PdfText("out.pdf"), HasSubstr("piped"));
}

TEST_F(PrintTest, FragmentsAreChosenByNumberAndId) {
    EXPECT_EQ(Run({"r.qvxml", "-o", "f.pdf", "--fragment", "2"}).exitCode, 0);
    EXPECT_THAT(PdfInfo("f.pdf"), HasSubstr("Page    1 size:  7.2 x 7.2 pts"));
    for (const char* parser : {"light", "dom"}) {
        EXPECT_EQ(Run({"r.qvxml", "-o", "s.pdf", "--fragment", "s", "--parser", parser}).exitCode, 0);
        EXPECT_THAT(PdfInfo("s.pdf"), HasSubstr("Page    1 size:  36 x 36 pts"));
        EXPECT_THAT(PdfInfo("s.pdf"), HasSubstr("Pages:           1"));
    }
}

// With other names, the document itself is the drawing.
TEST_F(PrintTest, NamesOfDocumentsThatContainDrawingsEndInQvxml) {
    const std::string document = "<r><g>" + SmallDrawing("") + "</g></r>";
    for (const auto& [name, code] :
         {std::pair{"r.qvxml", 0}, {".qvxml", 0}, {"rqvxml", 5}, {"r.qvxml.xml", 5}, {"r.QVXML", 5}}) {
        WriteFile(name, document);
        EXPECT_EQ(Run({name, "-o", "r.pdf"}).exitCode, code) << name;
    }
}

TEST_F(PrintTest, EveryFragmentPrintsOnceWithEitherParser) {
    WriteFile("siblings.xml",
              "<r><svg width='9' height='9'/><svg width='18' height='9'/><svg width='27' height='9'/></r>");
    for (const char* parser : {"light", "dom"}) {
        EXPECT_EQ(Run({"siblings.xml", "--qvxml", "-o", "f.pdf", "--parser", parser}).exitCode, 0);
        EXPECT_THAT(PdfInfo("f.pdf"), HasSubstr("Pages:           3")) << parser;
    }
}

TEST_F(PrintTest, PicturesBesideTheDrawingAreReadOthersOnlyWhenAllowed) {
    // Without the image file, the PDF contains no image.
    WriteFile("inner/drawing.svg", SmallDrawing("<image xlink:href='../outer/p.png' width='9' height='9'/>"));
    WriteFile("inner/beside.svg", SmallDrawing("<image xlink:href='p.png' width='9' height='9'/>"));
    ASSERT_EQ(Run({"a.svg", "-o", "inner/p.png"}).exitCode, 0);
    std::filesystem::create_directories(Folder() / "outer");
    ASSERT_EQ(Run({"a.svg", "-o", "outer/p.png"}).exitCode, 0);
    const auto countImages = [this](const std::vector<std::string>& arguments) {
        EXPECT_EQ(Run(arguments).exitCode, 0);
        const std::string list = RunProgram({"pdfimages", "-list", "i.pdf"}).output;
        return std::count(list.begin(), list.end(), '\n') - 2;  // two header lines
    };
    EXPECT_EQ(countImages({"inner/beside.svg", "-o", "i.pdf"}), 1);
    EXPECT_EQ(countImages({"inner/drawing.svg", "-o", "i.pdf"}), 0);
    EXPECT_EQ(countImages({"inner/drawing.svg", "-o", "i.pdf", "--allow-dir", "outer"}), 1);
    EXPECT_EQ(countImages({"inner/drawing.svg", "-o", "i.pdf", "--allow-dir", "outer", "--parser", "dom"}),
              1);
    EXPECT_EQ(countImages({"--qvxml", "inner/beside.svg", "-o", "i.pdf"}), 1);
}

TEST_F(PrintTest, ExamplesPrintAsSoundPdf) {
    for (const auto& entry : std::filesystem::directory_iterator(Example(""))) {
        const std::string extension = entry.path().extension();
        if (extension != ".svg" && extension != ".qvxml") continue;
        SCOPED_TRACE(entry.path());
        const ToolRun run = Run({entry.path(), "-o", "e.pdf"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        ExpectSoundPdf("e.pdf");
        EXPECT_THAT(PdfText("e.pdf"), testing::ContainsRegex("[A-Za-z]{3}"));
    }
}

TEST_F(PrintTest, FontsOfCubicOutlinesAreEmbeddedAsTheyAre) {
    WriteFile("f.svg",
              SmallDrawing("<text x='5' y='20' font-family='Nimbus Sans' fill='black'>Cubic \xC3\xA9</text>"
                           "<text x='5' y='40' font-family='Nimbus Sans' fill='black'>fit (2)</text>"));
    ASSERT_EQ(Run({"f.svg", "-o", "f.pdf"}).exitCode, 0);
    ExpectSoundPdf("f.pdf");
    EXPECT_THAT(RunProgram({"pdffonts", "f.pdf"}).output,
                testing::ContainsRegex("NimbusSans-Regular +CID Type 0C +Custom +yes yes yes"));
    EXPECT_THAT(PdfText("f.pdf"), AllOf(HasSubstr("Cubic \xC3\xA9"), HasSubstr("fit (2)")));
}

TEST_F(PrintTest, CommandLineThatCannotBeUnderstood) {
    ExpectComplaint(Run({}), 2, "");
    ExpectComplaint(Run({"a.svg", "b.svg"}), 2, "no output");
    ExpectComplaint(Run({"-o", "a.pdf"}), 2, "no input");
    ExpectComplaint(Run({"a.svg", "-o", "a.pdf", "--nonsense"}), 2, "");
    ExpectComplaint(Run({"a.svg", "-o", "a.pdf", "--parser", "sax"}), 2, "");
    ExpectComplaint(Run({"a.svg", "-o", "a.png", "--dpi", "0"}), 2, "");
    for (const std::vector<std::string>& before : {std::vector<std::string>{"--limit", "pages=1"},
                                                   {"--time-limit", "5"},
                                                   {"-o", "a.pdf"},
                                                   {"--strict"}}) {
        std::vector<std::string> arguments = before;
        arguments.insert(arguments.end(), {"info", "a.svg"});
        ExpectComplaint(Run(arguments), 2, before[0] == "-o" ? "--output" : before[0]);
    }
    for (const char* pages : {"0", "x", "3-1", "1,,2", "", "-3"})
        ExpectComplaint(Run({"a.svg", "-o", "a.pdf", std::string("--pages=") + pages}), 2, "--pages");
}

TEST_F(PrintTest, InputThatCannotBeRead) {
    WriteFile("empty.svg", "");
    ExpectComplaint(Run({"missing.svg", "-o", "a.pdf"}), 3, "missing.svg: ");
    ExpectComplaint(Run({"a.svg", "missing.svg", "-o", "a.pdf"}), 3, "missing.svg: ");
    ExpectComplaint(Run({".", "-o", "a.pdf"}), 3, ".: ");
    ExpectComplaint(Run({"empty.svg", "-o", "a.pdf"}), 3, "empty.svg: is empty");
    ExpectComplaint(Run({"-", "-o", "a.pdf"}), 3, "standard input: is empty");
    EXPECT_FALSE(Exists("a.pdf"));
}

TEST_F(PrintTest, InputThatIsNotWellFormedIsRefusedWithItsPlace) {
    WriteFile("bad.svg", "<svg width='9' height='9'>\n <g></svg>");
    for (const char* parser : {"light", "dom"})
        ExpectComplaint(Run({"bad.svg", "-o", "a.pdf", "--parser", parser}), 4, "bad.svg:2:");
    EXPECT_FALSE(Exists("a.pdf"));

    const ToolRun run = Run({"bad.svg", "-o", "a.pdf", "--keep-going"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.errors, StartsWith("orvprint: bad.svg:2:"));
    EXPECT_TRUE(Exists("a.pdf"));
}

TEST_F(PrintTest, InputWithoutPages) {
    WriteFile("nothing.svg", "<drawing/>");
    ExpectComplaint(Run({"nothing.svg", "-o", "a.pdf"}), 5, "nothing.svg: ");
    ExpectComplaint(Run({"nothing.svg", "--qvxml", "-o", "a.pdf"}), 5, "nothing.svg: ");
    ExpectComplaint(Run({"r.qvxml", "--fragment", "4", "-o", "a.pdf"}), 5, "r.qvxml: ");
    ExpectComplaint(Run({"r.qvxml", "--fragment", "zzz", "-o", "a.pdf"}), 5, "r.qvxml: ");
}

TEST_F(PrintTest, PageThatIsNotThere) {
    ExpectComplaint(Run({"two.svg", "-o", "a.pdf", "--pages", "3"}), 6,
                    "two.svg: there is no page 3 (2 pages)");
    ExpectComplaint(Run({"two.svg", "a.svg", "-o", "a.pdf", "--pages", "1,4"}), 6, "two.svg and others: ");
    EXPECT_FALSE(Exists("a.pdf"));
}

TEST_F(PrintTest, FormatThatIsUnknown) {
    ExpectComplaint(Run({"a.svg", "-o", "a.xyz"}), 7, "a.xyz: ");
    ExpectComplaint(Run({"a.svg", "-o", "a"}), 7, "a: ");
    ExpectComplaint(Run({"a.svg", "-o", "-"}), 7, "standard output: ");
    ExpectComplaint(Run({"a.svg", "-o", "a.pdf", "-f", "xyz"}), 7, "xyz: ");
}

TEST_F(PrintTest, OutputThatCannotBeWritten) {
    ExpectComplaint(Run({"a.svg", "-o", "no/such/folder.pdf"}), 8, "no/such/folder.pdf: ");
    ExpectComplaint(Run({"a.svg", "-o", ".", "-f", "pdf"}), 8, ".: ");
    if (std::filesystem::exists("/dev/full"))
        ExpectComplaint(Run({"a.svg", "-o", "/dev/full", "-f", "pdf"}), 8, "/dev/full: ");
}

TEST_F(PrintTest, PrintingThatFailsSaysWhy) {
    WriteFile("flat.svg", "<svg width='0' height='9'><rect width='0' height='9'/></svg>");
    WriteFile("vast.svg", "<svg width='99999' height='99999'/>");
    ExpectComplaint(Run({"flat.svg", "-o", "a.pdf"}), 9, "flat.svg: page 1 has no area");
    ExpectComplaint(Run({"vast.svg", "-o", "a.pdf"}), 9, "vast.svg: ");
    ExpectComplaint(Run({"vast.svg", "-o", "a.png"}), 9, "vast.svg: ");
    ExpectComplaint(Run({"two.svg", "-o", "a.pdf", "--max-primitives", "3"}), 9,
                    "two.svg: has more than 3 primitives");
    EXPECT_EQ(Run({"two.svg", "-o", "a.pdf", "--max-primitives", "4"}).exitCode, 0);
}

TEST_F(PrintTest, PagesWithoutAreaArePassedOverAndTold) {
    const std::string flat = "<svg width='0' height='9'/>", page = "<svg width='90' height='90'/>";
    WriteFile("set.svg", "<svg>" + page + flat + page + "</svg>");
    WriteFile("flats.svg", "<svg>" + flat + page + flat + flat + "</svg>");
    const auto flats = [&](std::size_t count) {
        std::string set = "<svg>" + page;
        for (std::size_t i = 0; i < count; ++i) set += flat;
        return set + "</svg>";
    };
    WriteFile("six.svg", flats(6));
    WriteFile("seven.svg", flats(7));
    WriteFile("flat.svg", flat);
    WriteFile("endless.svg", "<svg>" + page + "<svg width='1e999' height='9'/></svg>");
    WriteFile("set.qvxml", "<r>" + page + flat + "</r>");
    struct Row {
        std::vector<std::string> inputs;
        std::string complaint;
        const char* pages;
    };
    for (const Row& row :
         {Row{{"set.svg"}, "set.svg: page 2 has no area", "2"},
          Row{{"flats.svg"}, "flats.svg: pages 1, 3 and 4 have no area", "1"},
          Row{{"six.svg"}, "six.svg: pages 2, 3, 4, 5, 6 and 7 have no area", "1"},
          Row{{"seven.svg"}, "seven.svg: pages 2, 3, 4, 5, 6 and 2 others have no area", "1"},
          Row{{"endless.svg"}, "endless.svg: page 2 has no area", "1"},
          Row{{"set.qvxml"}, "set.qvxml: page 2 has no area", "1"},
          Row{{"a.svg", "set.svg"}, "set.svg: page 3 has no area", "3"},
          Row{{"a.svg", "flat.svg"}, "flat.svg: page 2 has no area", "1"}}) {
        std::vector<std::string> arguments = row.inputs;
        arguments.insert(arguments.end(), {"-o", "out.pdf"});
        ExpectComplaint(Run(arguments), 9, row.complaint);
        ExpectSoundPdf("out.pdf");
        EXPECT_THAT(PdfInfo("out.pdf"), HasSubstr(std::string("Pages:           ") + row.pages + "\n"));
        std::filesystem::remove(Folder() / "out.pdf");
    }
    // Files of one page each are numbered without gaps.
    EXPECT_EQ(Run({"set.svg", "-o", "out.svg"}).exitCode, 9);
    EXPECT_TRUE(Exists("out-1.svg") && Exists("out-2.svg") && !Exists("out-3.svg"));
}

TEST_F(PrintTest, PageWithoutAreaThatIsAskedForOrAlonePrintsNothing) {
    const std::string flat = "<svg width='0' height='9'/>", page = "<svg width='90' height='90'/>";
    WriteFile("set.svg", "<svg>" + page + flat + page + "</svg>");
    WriteFile("flat.svg", flat);
    WriteFile("flats.svg", "<svg>" + flat + flat + "</svg>");
    for (const char* pages : {"2", "1,2", "1-3"})
        ExpectComplaint(Run({"set.svg", "-o", "out.pdf", "--pages", pages}), 9,
                        "set.svg: page 2 has no area");
    ExpectComplaint(Run({"flat.svg", "-o", "out.pdf"}), 9, "flat.svg: page 1 has no area");
    ExpectComplaint(Run({"flats.svg", "-o", "out.pdf"}), 9, "flats.svg: pages 1 and 2 have no area");
    ExpectComplaint(Run({"flat.svg", "-f", "pdf", "-o", "-"}), 9, "flat.svg: page 1 has no area");
    EXPECT_FALSE(Exists("out.pdf"));
    EXPECT_EQ(Run({"set.svg", "-o", "out.pdf", "--pages", "1,3"}).exitCode, 0);
}

TEST_F(PrintTest, LinksLeadToEveryKindOfElement) {
    const std::vector<std::string> elements{
        "<rect id='goal' x='20' y='30' width='9' height='9' fill='red'/>",
        "<circle id='goal' cx='24' cy='34' r='4' fill='red'/>",
        "<ellipse id='goal' cx='24' cy='34' rx='4' ry='4' fill='red'/>",
        "<line id='goal' x1='20' y1='30' x2='40' y2='40' stroke='red'/>",
        "<polygon id='goal' points='20,30 40,30 40,40' fill='red'/>",
        "<polyline id='goal' points='20,30 40,30 40,40' fill='none' stroke='red'/>",
        "<path id='goal' d='M20 30L40 30 40 40z' fill='red'/>",
        "<text id='goal' x='20' y='40' fill='red'>goal</text>",
        "<image id='goal' x='20' y='30' width='9' height='9' xlink:href='data:image/png;base64,"
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8BQDwAEhQGAhKmMIQAAAABJRU5ErkJggg=='/>",
        "<g id='goal'><rect x='20' y='30' width='9' height='9' fill='red'/></g>"};
    for (const std::string& element : elements) {
        SCOPED_TRACE(element);
        const std::string link =
            "<a xlink:href='#goal'><rect width='9' height='9' fill='blue'/></a><rect id='other' y='50' "
            "width='9' "
            "height='9' fill='red'/>";
        WriteFile("link.svg", "<svg width='180' height='90' xmlns:xlink='http://www.w3.org/1999/xlink'>" +
                                  link + element + "</svg>");
        EXPECT_EQ(Run({"link.svg", "-o", "link.pdf"}).exitCode, 0);
        ExpectSoundPdf("link.pdf");
        const std::string places = RunProgram({"pdfinfo", "-dests", "link.pdf"}).output;
        EXPECT_THAT(places, HasSubstr("\"goal\""));
        EXPECT_THAT(places, testing::Not(HasSubstr("\"other\"")));
        EXPECT_THAT(RunProgram({"qpdf", "--qdf", "--object-streams=disable", "link.pdf", "-"}).output,
                    HasSubstr("/Dest (goal)"));
        EXPECT_EQ(Run({"link.svg", "-o", "out.svg"}).exitCode, 0);
        for (const char* id : {"id=\"goal\"", "id=\"other\"", "xlink:href=\"#goal\""})
            EXPECT_THAT(ReadFile("out.svg"), HasSubstr(id));
    }
}

TEST_F(PrintTest, LinksLeadToPages) {
    WriteFile(
        "pages.svg",
        "<svg xmlns:xlink='http://www.w3.org/1999/xlink'><svg width='180' height='90'><a "
        "xlink:href='#last'><rect width='9' height='9' fill='blue'/></a></svg><svg id='last' width='180' "
        "height='90'><rect x='20' y='30' width='9' height='9' fill='red'/></svg></svg>");
    EXPECT_EQ(Run({"pages.svg", "-o", "pages.pdf"}).exitCode, 0);
    ExpectSoundPdf("pages.pdf");
    // The target is the page's upper left corner, not its content.
    EXPECT_THAT(RunProgram({"pdfinfo", "-dests", "pages.pdf"}).output,
                testing::ContainsRegex("2 \\[ *XYZ +0 +72 .*\"last\""));
    // A page that is not printed cannot be a target.
    EXPECT_EQ(Run({"pages.svg", "-o", "first.pdf", "--pages", "1"}).exitCode, 0);
    EXPECT_THAT(RunProgram({"qpdf", "--qdf", "--object-streams=disable", "first.pdf", "-"}).output,
                testing::Not(HasSubstr("/Dest")));
    EXPECT_EQ(Run({"pages.svg", "-o", "out.svg"}).exitCode, 0);
    EXPECT_THAT(ReadFile("out-2.svg"), HasSubstr("<svg xmlns"));
    EXPECT_THAT(ReadFile("out-2.svg"), testing::Not(HasSubstr("<g")));
}

TEST_F(PrintTest, DescriptionsOfShapesGoToSvg) {
    WriteFile(
        "shape.svg",
        "<svg width='180' height='90'><rect id='r' width='9' height='9'><desc>Wall</desc></rect></svg>");
    EXPECT_EQ(Run({"shape.svg", "-o", "out.svg"}).exitCode, 0);
    EXPECT_THAT(ReadFile("out.svg"), HasSubstr("<g id=\"r\">\n<desc>Wall</desc>"));
}

TEST_F(PrintTest, FailureLeavesWhatWasThereAndNothingElse) {
    WriteFile("keep.pdf", "old");
    WriteFile("vast.svg", "<svg width='99999' height='99999'/>");
    EXPECT_EQ(Run({"a.svg", "vast.svg", "-o", "keep.pdf"}).exitCode, 9);
    EXPECT_EQ(ReadFile("keep.pdf"), "old");
    EXPECT_EQ(Run({"a.svg", "vast.svg", "-o", "keep.png"}).exitCode, 9);
    EXPECT_THAT(Files(), ElementsAre("a.svg", "keep.pdf", "r.qvxml", "two.svg", "vast.svg"));
}

TEST_F(PrintTest, SeveralPicturesDoNotFitIntoOneStream) {
    ExpectComplaint(Run({"two.svg", "-f", "png", "-o", "-"}), 2, "standard output: ");
    EXPECT_THAT(Run({"two.svg", "-f", "png", "-o", "-", "--pages", "1"}).output, StartsWith("\x89PNG"));
}

TEST_F(PrintTest, PrintingHasAName) {
    EXPECT_EQ(Run({"print", "a.svg", "-o", "named.png"}).exitCode, 0);
    EXPECT_EQ(Run({"a.svg", "-o", "plain.png"}).exitCode, 0);
    EXPECT_EQ(ReadFile("named.png"), ReadFile("plain.png"));
    EXPECT_EQ(Run({"print"}).exitCode, 2);
    EXPECT_EQ(Run({"print", "--help"}).output, Run({"--help"}).output);
}

TEST_F(PrintTest, FormatsAreListed) {
    const ToolRun run = Run({"formats"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("pdf    one file for all pages\n"));
    EXPECT_THAT(run.output, HasSubstr("png    a file for each page\n"));
}

TEST_F(PrintTest, ResolutionsThatAreNone) {
    for (const char* value : {"nan", "-nan", "inf", "0", "0.5", "10001", "x", ""}) {
        EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--dpi", value}).exitCode, 2) << value;
        EXPECT_EQ(Run({"a.svg", "-o", "a.png", "--flatten-dpi", value}).exitCode, 2) << value;
        EXPECT_FALSE(Exists("a.png")) << value;
    }
}

TEST_F(PrintTest, HelpAndVersionAreNoFailures) {
    const ToolRun help = Run({"--help"}), version = Run({"--version"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option :
         {"--output", "--pages", "--parser", "--qvxml", "--fragment", "--allow-dir", "inspect"})
        EXPECT_THAT(help.output, HasSubstr(option));
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("orvprint [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
