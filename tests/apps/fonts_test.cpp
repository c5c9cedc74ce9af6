// What becomes of texts where few fonts are installed, or none, or one that cannot be read.

#include <gmock/gmock.h>

#include <filesystem>

#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

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

    /// The command where only those fonts are installed.
    ToolRun RunHere(const std::vector<std::string>& arguments) const {
        std::vector<std::string> command{"env", "FONTCONFIG_FILE=" + (Folder() / "fonts.conf").string(),
                                         "ORVPRINT_CACHE_DIR=", ORV_TOOL_PATH};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProgram(command);
    }

    /// The fonts in a PDF of a text of this family.
    std::string FontsOf(const std::string& family) const {
        WriteFile("text.svg",
                  SmallDrawing("<text fill='black' x='9' y='20' font-family='" + family + "'>word</text>"));
        const ToolRun run = RunHere({"text.svg", "-o", "text.pdf"});
        EXPECT_EQ(run.exitCode, 0) << family << ": " << run.errors;
        return RunProgram({"pdffonts", "text.pdf"}).output;
    }
};

TEST_F(FontsTest, WithoutAnyTextTakesTheRoomThatItUsuallyTakes) {
    // The page is the box of its content: four characters of half an em each.
    WriteFile("text.svg", "<svg><text fill='black' font-size='18'>word</text></svg>");
    const ToolRun info = RunHere({"info", "text.svg"});
    EXPECT_EQ(info.exitCode, 0) << info.errors;
    EXPECT_THAT(info.output, HasSubstr("36 x 18"));
    for (const char* page : {"text.pdf", "text.png", "text.svgout.svg"})
        EXPECT_EQ(RunHere({"text.svg", "-o", page}).exitCode, 0) << page;
}

TEST_F(FontsTest, WithoutAnyEveryNameIsDrawnWithNone) {
    for (const char* family : {"serif", "sans-serif", "monospace", "cursive", "fantasy", "Nobody"})
        EXPECT_THAT(FontsOf(family), Not(HasSubstr("yes"))) << family;
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

TEST_F(FontsTest, OneThatCannotBeReadIsReplaced) {
    Install(std::string(kTrueType) + "dejavu/DejaVuSans.ttf");
    Install(std::string(kTrueType) + "liberation/LiberationSans-Regular.ttf");
    EXPECT_THAT(FontsOf("DejaVu Sans"), HasSubstr("DejaVuSans"));
    // The folder does not change: it is still listed as installed.
    fs::resize_file(Folder() / "fonts/DejaVuSans.ttf", 0);
    const std::string fonts = FontsOf("DejaVu Sans");
    EXPECT_THAT(fonts, HasSubstr("LiberationSans"));
    EXPECT_THAT(fonts, Not(HasSubstr("DejaVuSans")));
}

}  // namespace
