// SPDX-License-Identifier: Apache-2.0

// Text when few fonts are installed, or none, or one that cannot be read.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kTrueType = "/usr/share/fonts/truetype/";
constexpr const char* kOpenType = "/usr/share/fonts/opentype/urw-base35/";

class FontsTest : public ToolTest {
protected:
    FontsTest() {
        fs::create_directory(Folder() / "fonts");
        WriteFile("fonts.conf", "<?xml version='1.0'?><fontconfig><dir>" + (Folder() / "fonts").string() +
                                    "</dir><cachedir>" + (Folder() / "cache").string() +
                                    "</cachedir></fontconfig>");
    }

    void Install(const std::string& file) const {
        fs::copy_file(file, Folder() / "fonts" / fs::path(file).filename());
    }

    /// Runs the command with only the fonts of this folder installed.
    ToolRun RunHere(const std::vector<std::string>& arguments) const { return RunHereBehind({}, arguments); }
    /// The same, started by another program.
    ToolRun RunHereBehind(std::vector<std::string> command, const std::vector<std::string>& arguments) const {
        command.insert(command.end(), {"env", "FONTCONFIG_FILE=" + (Folder() / "fonts.conf").string(),
                                       "ORVPRINT_CACHE_DIR=", ORV_TOOL_PATH});
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProgram(command);
    }

    /// Lists the fonts in a PDF with text in this family.
    std::string FontsOf(const std::string& family) const {
        WriteFile("text.svg",
                  SmallDrawing("<text fill='black' x='9' y='20' font-family='" + family + "'>word</text>"));
        const ToolRun run = RunHere({"text.svg", "-o", "text.pdf"});
        EXPECT_EQ(run.exitCode, 0) << family << ": " << run.errors;
        return RunProgram({"pdffonts", "text.pdf"}).output;
    }
};

/// Expects no output, and one error line that says why text cannot be set.
void ExpectNoText(const ToolRun& run, const std::string& part, const std::string& trial) {
    EXPECT_EQ(run.exitCode, 9) << trial << run.errors;
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << trial << run.errors;
    EXPECT_THAT(run.errors, StartsWith("orvprint: ")) << trial;
    EXPECT_THAT(run.errors, HasSubstr(part)) << trial;
    EXPECT_EQ(run.output, "") << trial;
}

constexpr std::array kFormats{"pdf", "ps", "eps", "svg", "png", "tiff", "pwg", "urf"};
constexpr const char* kSized =
    "<svg width='90' height='45'><text fill='black' x='9' y='20'>word</text></svg>";
// The page size is the bounding box of the content.
constexpr const char* kUnsized = "<svg><text fill='black' font-size='18'>word</text></svg>";

TEST_F(FontsTest, WithoutAnyNoTextIsPrinted) {
    WriteFile("text.svg", kSized);
    for (const char* format : kFormats) {
        ExpectNoText(RunHere({"text.svg", "-o", "out", "-f", format}),
                     "text.svg: text cannot be set: no font is installed; install one", format);
        EXPECT_FALSE(Exists("out")) << format;
    }
    WriteFile("figure.svg", SmallDrawing("<rect width='9' height='9' fill='red' font-family='serif'/>"));
    EXPECT_EQ(RunHere({"figure.svg", "-o", "figure.pdf"}).exitCode, 0);
}

TEST_F(FontsTest, WithoutAnyPagesOfTheSizeOfTheirTextHaveNone) {
    WriteFile("text.svg", kUnsized);
    for (const char* command : {"info", "inspect"})
        ExpectNoText(RunHere({command, "text.svg"}), "no font is installed", command);
    WriteFile("sized.svg", kSized);
    for (const char* command : {"info", "inspect"})
        EXPECT_EQ(RunHere({command, "sized.svg"}).exitCode, 0) << command;
}

TEST_F(FontsTest, WithoutAnyTheCheckTells) {
    WriteFile("text.svg", kSized);
    const ToolRun run = RunHere({"check", "text.svg"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.output, HasSubstr("text-cannot-be-set"));
    EXPECT_THAT(run.output, HasSubstr("no font is installed"));
}

TEST_F(FontsTest, WithoutAnyMarksOfPostersAreNotPrintedEither) {
    WriteFile("figure.svg",
              "<svg width='900' height='900'><rect width='900' height='900' fill='red'/></svg>");
    ExpectNoText(RunHere({"figure.svg", "-o", "out.pdf", "--paper", "A4", "--tile", "--margin", "15mm"}),
                 "text cannot be set: no font is installed", "poster");
    EXPECT_FALSE(Exists("out.pdf"));
}

TEST_F(FontsTest, TheOnlyOneStandsForAllNames) {
    Install(std::string(kOpenType) + "C059-Roman.otf");
    for (const char* family : {"serif", "sans-serif", "monospace", "cursive", "fantasy", "Nobody"})
        EXPECT_THAT(FontsOf(family), HasSubstr("C059-Roman")) << family;
}

TEST_F(FontsTest, NamesStandForTheLookThatIsThere) {
    for (const char* file :
         {"DejaVuSans.ttf", "DejaVuSerif.ttf", "DejaVuSansMono.ttf", "DejaVuSans-Bold.ttf"})
        Install(std::string(kTrueType) + "dejavu/" + file);
    EXPECT_THAT(FontsOf("serif"), HasSubstr("DejaVuSerif"));
    EXPECT_THAT(FontsOf("cursive"), HasSubstr("DejaVuSerif"));
    EXPECT_THAT(FontsOf("monospace"), HasSubstr("DejaVuSansMono"));
    EXPECT_THAT(FontsOf("fantasy"), HasSubstr("DejaVuSans-Bold"));
    const std::string sans = FontsOf("sans-serif");
    EXPECT_THAT(sans, HasSubstr("DejaVuSans"));
    EXPECT_THAT(sans, Not(HasSubstr("DejaVuSans-Bold")));
}

// A generic family first selects a font by file name, case-insensitively.
TEST_F(FontsTest, TheFileOfThatNameStandsForIt) {
    Install(std::string(kTrueType) + "liberation/LiberationSans-Regular.ttf");
    EXPECT_THAT(FontsOf("sans-serif"), HasSubstr("LiberationSans"));
    fs::copy_file(std::string(kTrueType) + "dejavu/DejaVuSerif.ttf", Folder() / "fonts/ARIAL.TTF");
    EXPECT_THAT(FontsOf("sans-serif"), HasSubstr("DejaVuSerif"));
}

TEST_F(FontsTest, CharactersOfASlantedFontThatItLacksAreSlantedToo) {
    Install(std::string(kTrueType) + "liberation/LiberationSerif-Regular.ttf");
    Install(std::string(kTrueType) + "liberation/LiberationSerif-Italic.ttf");
    for (const char* file : {"DejaVuSans.ttf", "DejaVuSans-Oblique.ttf"})
        Install(std::string(kTrueType) + "dejavu/" + file);
    for (const auto& [family, isSlanted] :
         {std::pair{"Liberation Serif", false}, {"Liberation Serif Italic", true}}) {
        WriteFile("text.svg", SmallDrawing(std::string("<text fill='black' x='9' y='20' font-family='") +
                                           family + "'>a\u2603</text>"));
        ASSERT_EQ(RunHere({"text.svg", "-o", "text.pdf"}).exitCode, 0);
        const std::string fonts = RunProgram({"pdffonts", "text.pdf"}).output;
        EXPECT_THAT(fonts, HasSubstr("DejaVuSans")) << family;
        EXPECT_EQ(fonts.find("DejaVuSans-Oblique") != fonts.npos, isSlanted) << family;
    }
}

// Weights come from the configuration. A face that is bold enough is not thickened; of two equally near
// weights, the lighter is used.
TEST_F(FontsTest, BoldIsTheNearestThatIsBoldEnough) {
    struct Row {
        const char *sans, *mono;  // weights of two faces in the family
        const char* font;
        bool isThickened;
    };
    for (const char* file : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf", "DejaVuSansMono-Bold.ttf"})
        Install(std::string(kTrueType) + "dejavu/" + file);
    const auto edit = [](const char* file, const char* weight) {
        return std::string("<match target='scan'><test name='file' compare='contains'><string>/") + file +
               "</string></test><edit name='family' mode='assign'><string>DejaVu Sans</string></edit>"
               "<edit name='weight' mode='assign'><const>" +
               weight + "</const></edit></match>";
    };
    const std::string configuration = ReadFile("fonts.conf");
    for (const Row& row : {Row{"demibold", "heavy", "DejaVuSans-Bold", false},
                           Row{"demibold", "extrabold", "DejaVuSans-Bold", false},
                           Row{"extrabold", "demibold", "DejaVuSansMono-Bold", false},
                           Row{"medium", "medium", "DejaVuSans", true},
                           Row{"medium", "heavy", "DejaVuSansMono-Bold", false}}) {
        std::string edited = configuration;
        edited.insert(edited.find("</fontconfig>"),
                      edit("DejaVuSans-Bold", row.sans) + edit("DejaVuSansMono-Bold", row.mono));
        WriteFile("fonts.conf", edited);
        fs::remove_all(Folder() / "cache");
        WriteFile("text.svg", SmallDrawing("<text fill='black' x='9' y='20' font-family='DejaVu Sans' "
                                           "font-weight='bold'>word</text>"));
        const ToolRun run = RunHere({"text.svg", "-o", "text.pdf", "--no-sandbox"});
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_THAT(RunProgram({"pdffonts", "text.pdf"}).output, HasSubstr(std::string("+") + row.font + " "))
            << row.sans << " " << row.mono;
        const std::string page = RunProgram({"qpdf", "--qdf", "text.pdf", "-"}).output;
        EXPECT_EQ(page.find("2 Tr\n") != page.npos, row.isThickened) << row.sans << " " << row.mono;
    }
}

// Another font would change the text, so a damaged one is an error.
TEST_F(FontsTest, OneThatCannotBeUsedIsTold) {
    Install(std::string(kTrueType) + "dejavu/DejaVuSans.ttf");
    Install(std::string(kTrueType) + "liberation/LiberationSans-Regular.ttf");
    EXPECT_THAT(FontsOf("DejaVu Sans"), HasSubstr("DejaVuSans"));
    // The folder's time does not change, so the font is still listed as installed.
    fs::resize_file(Folder() / "fonts/DejaVuSans.ttf", 0);
    ExpectNoText(RunHere({"text.svg", "-o", "out.pdf"}), "DejaVuSans.ttf is damaged; install it anew",
                 "damaged");
    EXPECT_FALSE(Exists("out.pdf"));
    const ToolRun check = RunHere({"check", "text.svg"});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_THAT(check.output, HasSubstr("DejaVuSans.ttf is damaged"));
    EXPECT_THAT(FontsOf("Liberation Sans"), HasSubstr("LiberationSans"));
}

TEST_F(FontsTest, OneOfPixelsIsInstalledButNotUsed) {
    Install(std::string(kTrueType) + "liberation/LiberationSans-Regular.ttf");
    WriteFile("fonts/dots.bdf",
              "STARTFONT 2.1\nFONT -x-Dotty-Medium-R-Normal--8-80-75-75-C-80-ISO10646-1\nSIZE 8 75 75\n"
              "FONTBOUNDINGBOX 8 8 0 0\nSTARTPROPERTIES 6\nFAMILY_NAME \"Dotty\"\nFONT_ASCENT 8\n"
              "FONT_DESCENT 0\nPIXEL_SIZE 8\nCHARSET_REGISTRY \"ISO10646\"\nCHARSET_ENCODING "
              "\"1\"\nENDPROPERTIES\nCHARS 1\nSTARTCHAR A\nENCODING 65\n"
              "SWIDTH 1000 0\nDWIDTH 8 0\nBBX 8 8 0 0\nBITMAP\nFF\n81\n81\n81\n81\n81\n81\nFF\nENDCHAR\n"
              "ENDFONT\n");
    WriteFile("text.svg", SmallDrawing("<text x='9' y='20' font-family='Dotty, Nobody, sans-serif'>A</text>"
                                       "<text x='9' y='40' font-family='Nobody'>A</text>"));
    const ToolRun run = RunHere({"check", "text.svg"});
    EXPECT_THAT(run.output, HasSubstr("Dotty is installed, but has pixels and no outlines"));
    EXPECT_THAT(run.output, HasSubstr("Nobody is not installed"));
}

// ---- libraries ----

/// The command on its own, without the modules that are installed with it.
class FontLibrariesTest : public FontsTest {
protected:
    FontLibrariesTest() {
        for (const char* folder : {"bin", "damaged"}) fs::create_directories(Tree() / folder);
        fs::copy_file(ORV_TOOL_PATH, Tree() / "bin/orvprint");
        WriteFile("text.svg", kSized);
        WriteFile("unsized.svg", kUnsized);
        WriteFile("figure.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
    }
    fs::path Tree() const { return Folder() / "tree"; }
    ToolRun RunInTree(const std::vector<std::string>& arguments) const {
        std::vector<std::string> command{
            "env", "ORVPRINT_CACHE_DIR=", "LD_LIBRARY_PATH=" + (Tree() / "damaged").string(),
            (Tree() / "bin/orvprint").string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProgram(command);
    }
    /// Everything that needs text fails for lack of that library, and nothing else fails.
    void ExpectMissed(const std::string& library) const {
        for (const char* format : {"pdf", "ps", "svg", "png"}) {
            ExpectNoText(RunInTree({"text.svg", "-o", "out", "-f", format}), library, format);
            EXPECT_FALSE(Exists("out")) << library << format;
        }
        for (const char* command : {"info", "inspect"})
            ExpectNoText(RunInTree({command, "unsized.svg"}), library, command);
        const ToolRun check = RunInTree({"check", "text.svg"});
        EXPECT_EQ(check.exitCode, 1) << library;
        EXPECT_THAT(check.output, HasSubstr("text-cannot-be-set")) << library;
        EXPECT_THAT(check.output, HasSubstr(library));
        for (const char* format : {"pdf", "svg", "png"})
            EXPECT_EQ(RunInTree({"figure.svg", "-o", "figure", "-f", format}).exitCode, 0) << library;
    }
};

TEST_F(FontLibrariesTest, AreAllThatTextNeeds) {
    const ToolRun run = RunInTree({"text.svg", "-o", "out.pdf"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(RunProgram({"pdftotext", "out.pdf", "-"}).output, HasSubstr("word"));
}

TEST_F(FontLibrariesTest, DamagedOnesAreTold) {
    for (const char* library : {"libfontconfig.so.1", "libfreetype.so.6", "libfribidi.so.0",
                                "libharfbuzz.so.0", "libharfbuzz-subset.so.0"}) {
        WriteFile(std::string("tree/damaged/") + library, "no library");
        ExpectMissed(library);
        fs::remove(Tree() / "damaged" / library);
    }
}

TEST_F(FontLibrariesTest, ThoseWithoutAFunctionAreTold) {
    // A library that loads, but is a different one.
    fs::copy_file(fs::canonical(ORV_OTHER_LIBRARY), Tree() / "damaged/libfribidi.so.0");
    ExpectMissed("libfribidi.so.0: no function fribidi_");
}

TEST_F(FontLibrariesTest, ThoseThatOtherDocumentsNeedEndTheCommandInOneLine) {
    WriteFile("tree/damaged/libexpat.so.1", "no library");
    WriteFile("entity.svg",
              "<!DOCTYPE svg [<!ENTITY e '9'>]>" + SmallDrawing("<rect width='&e;' height='9' fill='red'/>"));
    const ToolRun run = RunInTree({"entity.svg", "-o", "out.pdf"});
    EXPECT_EQ(run.exitCode, 9);
    EXPECT_THAT(run.errors, AllOf(StartsWith("orvprint: "), HasSubstr("libexpat.so.1")));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    EXPECT_FALSE(Exists("out.pdf"));
    EXPECT_EQ(RunInTree({"figure.svg", "-o", "out.pdf"}).exitCode, 0);
}

// ---- few file descriptors ----

TEST_F(FontsTest, WithFewFilesOpenTextIsPrintedOrTold) {
    Install(std::string(kTrueType) + "liberation/LiberationSans-Regular.ttf");
    WriteFile("text.svg",
              SmallDrawing("<text fill='black' x='9' y='20' font-family='Liberation Sans'>word</text>"));
    int told = 0, printed = 0;
    for (const char* format : kFormats)
        for (int files = 3; files < 16; ++files) {
            const std::string trial = std::string(format) + " with " + std::to_string(files) + " files: ";
            const ToolRun run =
                RunHereBehind({"sh", "-c", "ulimit -n " + std::to_string(files) + "; exec \"$@\"", "sh"},
                              {"text.svg", "-o", "out", "-f", format});
            if (run.exitCode == 0) {
                EXPECT_TRUE(Exists("out")) << trial;
                if (std::string(format) == "pdf")
                    EXPECT_THAT(RunProgram({"pdffonts", "out"}).output, HasSubstr("LiberationSans")) << trial;
                if (std::string(format) == "svg") EXPECT_THAT(ReadFile("out"), HasSubstr("word")) << trial;
                ++printed;
                fs::remove(Folder() / "out");
            } else {
                EXPECT_FALSE(run.errors.empty()) << trial;
                EXPECT_FALSE(Exists("out")) << trial;
                told += run.exitCode == 9 ? 1 : 0;
            }
        }
    EXPECT_GT(told, 0);
    EXPECT_GT(printed, 0);
}

}  // namespace
