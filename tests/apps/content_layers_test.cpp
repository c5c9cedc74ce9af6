// SPDX-License-Identifier: Apache-2.0

// Layers of an editor's drawing, as viewers of the output see them.

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/apps/tool_run.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

using Colour = std::array<int, 3>;
constexpr Colour kWhite{255, 255, 255}, kRed{255, 0, 0}, kGreen{0, 255, 0};

/// Left: a visible layer; middle: a hidden one; right: a locked one inside another.
constexpr const char* kLayers =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
    "xmlns:i='http://www.inkscape.org/namespaces/inkscape' "
    "xmlns:s='http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd' width='96' height='32'>"
    "<g id='one' i:groupmode='layer' i:label='W\xC3\xA4nde'><rect width='32' height='32' fill='#f00'/></g>"
    "<g i:groupmode='layer' i:label='Pipes' style='display:none'>"
    "<rect x='32' width='32' height='32' fill='#0f0'/></g>"
    "<g i:groupmode='layer' i:label='Outer' opacity='0.999'>"
    "<g i:groupmode='layer' i:label='Inner' s:insensitive='true'>"
    "<rect x='64' width='32' height='32' fill='#00f'/></g></g>"
    "<g i:groupmode='layer'/><g i:label='no layer'/><g style='display:none'><rect width='96' "
    "height='32'/></g>"
    "%s</svg>";

class ContentLayersTest : public ToolTest {
protected:
    void Write(const std::string& more = {}) const {
        std::string text(kLayers);
        text.replace(text.find("%s"), 2, more);
        WriteFile("a.svg", text);
    }
    ToolRun Print(const std::string& output, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> words{"a.svg", "-o", output, "--interpreter", "svg2"};
        words.insert(words.end(), options.begin(), options.end());
        return Run(words);
    }
    /// Returns the colours at the centres of three equal parts.
    std::vector<Colour> Thirds(const std::string& name) const {
        const ORVRef<const ORVPixelImage> image(
            ORVPixelImage::CreateFromFile((Folder() / name).string(), 0, 0));
        std::vector<Colour> colours;
        for (int i = 0; image && i < 3; ++i) {
            const int x = image->GetWidth() * (2 * i + 1) / 6, y = image->GetHeight() / 2;
            const auto* pixel = &image->GetPixels()[4 * static_cast<std::size_t>(y * image->GetWidth() + x)];
            colours.push_back({pixel[0], pixel[1], pixel[2]});
        }
        return colours;
    }
    /// Returns the text of a PDF object.
    std::string Show(const std::string& pdf, const std::string& path) const {
        return RunProgram({"mutool", "show", pdf, path}).output;
    }
};

TEST_F(ContentLayersTest, APdfHasThemAsItsReadersExpectThem) {
    Write();
    ASSERT_EQ(Print("a.pdf").exitCode, 0);
    const ToolRun check = RunProgram({"qpdf", "--check", "a.pdf"});
    EXPECT_EQ(check.exitCode, 0) << check.output << check.errors;
    const std::string properties = Show("a.pdf", "trailer/Root/OCProperties");
    EXPECT_THAT(properties, ContainsRegex("/OCGs +\\[ *([0-9]+ 0 R *){4}\\]"));
    // Three at the top, the last of which contains one.
    EXPECT_THAT(properties,
                ContainsRegex("/Order +\\[ *[0-9]+ 0 R +[0-9]+ 0 R +[0-9]+ 0 R +\\[ *[0-9]+ 0 R *\\] *\\]"));
    EXPECT_THAT(properties, ContainsRegex("/OFF +\\[ *[0-9]+ 0 R *\\]"));
    EXPECT_THAT(properties, ContainsRegex("/Locked +\\[ *[0-9]+ 0 R *\\]"));
    EXPECT_THAT(Show("a.pdf", "trailer/Root/OCProperties/OCGs/2"), HasSubstr("(Pipes)"));
    EXPECT_THAT(Show("a.pdf", "trailer/Root/OCProperties/D/OFF/1"), HasSubstr("(Pipes)"));
    EXPECT_THAT(Show("a.pdf", "trailer/Root/OCProperties/D/Locked/1"), HasSubstr("(Inner)"));
}

TEST_F(ContentLayersTest, ReadersHideWhatIsHiddenAndShowTheRest) {
    Write();
    ASSERT_EQ(Print("a.pdf").exitCode, 0);
    ASSERT_EQ(RunProgram({"pdftoppm", "-r", "72", "-png", "-singlefile", "a.pdf", "poppler"}).exitCode, 0);
    ASSERT_EQ(RunProgram({"mutool", "draw", "-q", "-r", "72", "-o", "mupdf.png", "a.pdf"}).exitCode, 0);
    for (const char* name : {"poppler.png", "mupdf.png"}) {
        const auto colours = Thirds(name);
        ASSERT_EQ(colours.size(), 3U);
        EXPECT_EQ(colours[0], kRed) << name;
        EXPECT_EQ(colours[1], kWhite) << name;
        EXPECT_NEAR(colours[2][2], 255, 1) << name;
        EXPECT_LT(colours[2][0], 3) << name;
    }
}

TEST_F(ContentLayersTest, WhatIsHiddenIsInThePdfAndCanBeShown) {
    Write();
    ASSERT_EQ(Print("a.pdf").exitCode, 0);
    // The same file with all layers on.
    ASSERT_EQ(RunProgram({"qpdf", "--qdf", "--object-streams=disable", "a.pdf", "q.pdf"}).exitCode, 0);
    std::string text = ReadFile("q.pdf");
    const std::size_t off = text.find("/OFF");
    ASSERT_NE(off, std::string::npos);
    text.replace(off, 4, "/Off");
    WriteFile("on.pdf", text);
    RunProgram({"pdftoppm", "-r", "72", "-png", "-singlefile", "on.pdf", "on"});
    EXPECT_EQ(Thirds("on.png").at(1), kGreen);
}

TEST_F(ContentLayersTest, FormatsWithoutLayersLeaveHiddenOnesOut) {
    Write();
    for (const char* name : {"a.png", "a.tiff", "a.ps"}) ASSERT_EQ(Print(name).exitCode, 0) << name;
    EXPECT_EQ(Thirds("a.png").at(1), kWhite);
    ASSERT_EQ(RunProgram({"gs", "-q", "-dBATCH", "-dNOPAUSE", "-dEPSCrop", "-r72", "-sDEVICE=png16m",
                          "-sOutputFile=ps.png", "a.ps"})
                  .exitCode,
              0);
    EXPECT_EQ(Thirds("ps.png").at(0), kRed);
    EXPECT_EQ(Thirds("ps.png").at(1), kWhite);
}

TEST_F(ContentLayersTest, SvgOutputKeepsThemAsLayersOfTheEditor) {
    Write();
    ASSERT_EQ(Print("b.svg").exitCode, 0);
    const std::string written = ReadFile("b.svg");
    EXPECT_THAT(written, AllOf(HasSubstr("inkscape:groupmode=\"layer\" inkscape:label=\"W\xC3\xA4nde\""),
                               HasSubstr("sodipodi:insensitive=\"true\""), HasSubstr("display:none")));
    // Reading it again gives the same layers.
    ASSERT_EQ(Run({"b.svg", "-o", "b.pdf", "--interpreter", "svg2"}).exitCode, 0);
    EXPECT_THAT(Show("b.pdf", "trailer/Root/OCProperties"),
                ContainsRegex("/OCGs +\\[ *([0-9]+ 0 R *){4}\\]"));
}

TEST_F(ContentLayersTest, WhatIsUsedAgainIsInNoLayerOfItsOwn) {
    Write(
        "<use xlink:href='#one' x='9'/><pattern id='p' width='9' height='9' patternUnits='userSpaceOnUse'>"
        "<g i:groupmode='layer' i:label='In a pattern'><rect width='3' height='3'/></g></pattern>"
        "<rect width='9' height='9' fill='url(#p)'/>");
    ASSERT_EQ(Print("a.pdf").exitCode, 0);
    EXPECT_THAT(Show("a.pdf", "trailer/Root/OCProperties"),
                ContainsRegex("/OCGs +\\[ *([0-9]+ 0 R *){4}\\]"));
}

TEST_F(ContentLayersTest, ALayerOfSeveralPagesIsOneLayer) {
    Write(
        "<s:namedview><i:page x='0' y='0' width='48' height='32'/>"
        "<i:page x='48' y='0' width='48' height='32'/></s:namedview>");
    ASSERT_EQ(Print("a.pdf").exitCode, 0);
    EXPECT_THAT(RunProgram({"pdfinfo", "a.pdf"}).output, HasSubstr("Pages:           2"));
    EXPECT_THAT(Show("a.pdf", "trailer/Root/OCProperties"),
                ContainsRegex("/OCGs +\\[ *([0-9]+ 0 R *){4}\\]"));
    // The same on sheets.
    ASSERT_EQ(Print("n.pdf", {"--paper", "A4", "--nup", "2"}).exitCode, 0);
    EXPECT_EQ(RunProgram({"qpdf", "--check", "n.pdf"}).exitCode, 0);
    ASSERT_EQ(
        Print("t.pdf", {"--paper", "20x20mm", "--margin", "2mm", "--overlap", "1mm", "--tile"}).exitCode, 0);
    EXPECT_EQ(RunProgram({"qpdf", "--check", "t.pdf"}).exitCode, 0);
    EXPECT_THAT(Show("t.pdf", "trailer/Root/OCProperties"), HasSubstr("/OFF"));
}

TEST_F(ContentLayersTest, DrawingsWithoutLayersHaveNone) {
    WriteFile("a.svg", SmallDrawing("<g id='g'><rect width='9' height='9'/></g>"));
    ASSERT_EQ(Print("a.pdf").exitCode, 0);
    EXPECT_THAT(ReadFile("a.pdf"), Not(HasSubstr("/OC")));
    Write();
    ASSERT_EQ(Run({"a.svg", "-o", "first.pdf"}).exitCode, 0);
    EXPECT_THAT(ReadFile("first.pdf"), Not(HasSubstr("/OCProperties"))) << "the first dialect knows none";
}

}  // namespace
