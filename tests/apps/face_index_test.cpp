// SPDX-License-Identifier: Apache-2.0

// The face index that the command keeps between runs, and the libraries that it loads at start.

#include "platform/visualization/fonts/face_index.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kMarker = "Marker Sans";

class FaceIndexRunTest : public ToolTest {
protected:
    FaceIndexRunTest() {
        fs::permissions(Folder(), fs::perms::owner_all);
        for (const char* name : {"home", "data", "config"}) fs::create_directory(Folder() / name);
        WriteFile("text.svg", SmallDrawing("<text x='9' y='20'>word</text>"));
        WriteFile("figure.svg", SmallDrawing("<rect width='9' height='9' fill='red'/>"));
        WriteFile("marked.svg", SmallDrawing("<text x='9' y='20' font-family='Marker Sans'>word</text>"));
    }

    /// Builds a command line that uses the test's own home folder.
    std::vector<std::string> Command(const std::vector<std::string>& arguments,
                                     const std::vector<std::string>& variables = {}) const {
        std::vector<std::string> command{"env", "-u", "ORVPRINT_CACHE_DIR", "-u", "FONTCONFIG_FILE"};
        command.push_back("HOME=" + (Folder() / "home").string());
        command.push_back("XDG_CACHE_HOME=" + (Folder() / "cache").string());
        command.push_back("XDG_DATA_HOME=" + (Folder() / "data").string());
        command.push_back("XDG_CONFIG_HOME=" + (Folder() / "config").string());
        command.insert(command.end(), variables.begin(), variables.end());
        command.emplace_back(ORV_TOOL_PATH);
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }
    ToolRun RunAtHome(const std::vector<std::string>& arguments,
                      const std::vector<std::string>& variables = {}) const {
        return RunProgram(Command(arguments, variables));
    }

    static constexpr const char* kIndex = "cache/orvprint/faces";

    FaceIndex ReadIndex() const {
        FaceIndex index;
        EXPECT_TRUE(Exists(kIndex) && DecodeFaceIndex(ReadFile(kIndex), index));
        return index;
    }
    /// Makes an index, and renames a family in it to a name that no font has.
    void MakeMarkedIndex() const {
        ASSERT_EQ(RunAtHome({"text.svg", "-o", "text.pdf"}).exitCode, 0);
        FaceIndex index = ReadIndex();
        const auto face = std::find_if(index.faces.begin(), index.faces.end(),
                                       [](const InstalledFace& one) { return one.family == "DejaVu Sans"; });
        ASSERT_NE(face, index.faces.end()) << "the tests need fonts-dejavu-core";
        face->family = kMarker;
        WriteFile(kIndex, EncodeFaceIndex(index));
    }
    /// Whether a run uses the marked index.
    bool FindsMarker(const std::vector<std::string>& variables = {}) const {
        const ToolRun run = RunAtHome({"check", "marked.svg"}, variables);
        const bool isMissing = run.output.find(kMarker) != std::string::npos;
        EXPECT_EQ(run.exitCode, isMissing ? 1 : 0) << run.output << run.errors;
        return !isMissing;
    }
};

TEST_F(FaceIndexRunTest, IsMadeForTextAndThenUsed) {
    EXPECT_EQ(RunAtHome({"figure.svg", "-o", "figure.pdf"}).exitCode, 0);
    EXPECT_FALSE(Exists(kIndex));
    EXPECT_FALSE(FindsMarker());
    EXPECT_TRUE(Exists(kIndex));
    MakeMarkedIndex();
    EXPECT_TRUE(FindsMarker());
    EXPECT_TRUE(FindsMarker());
}

TEST_F(FaceIndexRunTest, IsMadeAnewWhenFontsOrTheirConfigurationChange) {
    MakeMarkedIndex();
    ASSERT_TRUE(FindsMarker());

    // Missing folders appear.
    fs::create_directories(Folder() / "data/fonts");
    EXPECT_FALSE(FindsMarker());
    fs::remove(Folder() / "data/fonts");
    EXPECT_TRUE(FindsMarker());
    fs::create_directory(Folder() / "home/.fonts");
    EXPECT_FALSE(FindsMarker());
    fs::remove(Folder() / "home/.fonts");

    for (const char* file : {"config/fontconfig/fonts.conf", "home/.fonts.conf"}) {
        ASSERT_TRUE(FindsMarker());
        fs::create_directories((Folder() / file).parent_path());
        WriteFile(file, "<fontconfig/>");
        EXPECT_FALSE(FindsMarker()) << file;
        fs::remove(Folder() / file);
        if (fs::exists(Folder() / "config/fontconfig")) fs::remove(Folder() / "config/fontconfig");
    }
    EXPECT_TRUE(FindsMarker());
    EXPECT_FALSE(FindsMarker({"HOME=" + (Folder() / "data").string()}));
}

TEST_F(FaceIndexRunTest, FontsThatAreJustInstalledAreFound) {
    MakeMarkedIndex();
    const FaceIndex before = ReadIndex();
    const auto liberation = std::find_if(before.faces.begin(), before.faces.end(),
                                         [](const auto& face) { return face.family == "Liberation Mono"; });
    ASSERT_NE(liberation, before.faces.end());
    fs::create_directories(Folder() / "data/fonts");
    fs::copy_file(liberation->path, Folder() / "data/fonts/JustInstalled.ttf");
    const ToolRun run = RunAtHome({"inspect", "text.svg", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    // Within the second of a change, more changes could go unnoticed, so no index is saved then.
    EXPECT_EQ(ReadIndex(), before);
}

TEST_F(FaceIndexRunTest, DamagedFilesAreReplaced) {
    ASSERT_EQ(RunAtHome({"text.svg", "-o", "text.pdf"}).exitCode, 0);
    const std::string sound = ReadFile(kIndex), page = ReadFile("text.pdf");
    std::string flipped = sound;
    flipped.at(sound.rfind("Liberation Mono")) = 'M';
    for (const std::string& bytes :
         {std::string(), std::string("x"), sound.substr(0, sound.size() / 2), flipped, sound + sound}) {
        WriteFile(kIndex, bytes);
        EXPECT_EQ(RunAtHome({"text.svg", "-o", "text.pdf"}).exitCode, 0);
        EXPECT_EQ(ReadFile(kIndex), sound);
        EXPECT_EQ(ReadFile("text.pdf"), page);
    }
}

TEST_F(FaceIndexRunTest, IsNotNeeded) {
    const std::vector<std::string> without[] = {
        {"ORVPRINT_CACHE_DIR="},
        {"ORVPRINT_CACHE_DIR=/proc/orvprint"},
        {"XDG_CACHE_HOME=/dev/null"},
        {"XDG_CACHE_HOME=", "HOME="},
    };
    for (const std::vector<std::string>& variables : without) {
        const ToolRun run = RunAtHome({"text.svg", "-o", "text.pdf"}, variables);
        EXPECT_EQ(run.exitCode, 0) << variables[0];
        EXPECT_EQ(run.errors, "") << variables[0];
        EXPECT_FALSE(Exists("cache")) << variables[0];
    }
    const std::string own = (Folder() / "own").string();
    EXPECT_EQ(RunAtHome({"text.svg", "-o", "text.pdf"}, {"ORVPRINT_CACHE_DIR=" + own}).exitCode, 0);
    EXPECT_TRUE(Exists("own/faces"));
    EXPECT_FALSE(Exists("cache"));
}

// All families in all weights, names replaced by other fonts, and characters that few fonts have.
TEST_F(FaceIndexRunTest, PagesAreTheSameWithAndWithoutIt) {
    ASSERT_EQ(RunAtHome({"text.svg", "-o", "text.pdf"}).exitCode, 0);
    std::set<std::string> names = {"serif",         "sans-serif", "monospace",        "cursive",
                                   "Arial",         "Times",      "times.ttf",        "arial.ttf",
                                   "Adobe Poetica", "cour.ttf",   "Courier New",      "MTCORSVA.TTF",
                                   "Nobody",        "Helvetica",  "Alpha Geometrique"};
    for (const InstalledFace& face : ReadIndex().faces) {
        names.insert(face.family);
        names.insert(face.fullName);
        names.insert(face.postScriptName);
    }
    ASSERT_GT(names.size(), 30U);
    std::string texts;
    for (const std::string& name : names) {
        if (name.find_first_of("'<&") != std::string::npos) continue;
        for (const char* weight : {"normal", "bold", "lighter", "bolder"})
            for (const char* slant : {"normal", "italic"})
                texts += "<text x='9' y='20' fill='black' font-family='" + name + "' font-weight='" + weight +
                         "' font-style='" + slant + "'>word \u05d0\u4e2d\u2603</text>";
    }
    WriteFile("all.svg", SmallDrawing(texts));

    ASSERT_EQ(RunAtHome({"all.svg", "-o", "without.pdf"}, {"ORVPRINT_CACHE_DIR="}).exitCode, 0);
    ASSERT_EQ(RunAtHome({"all.svg", "-o", "with.pdf"}).exitCode, 0);
    EXPECT_TRUE(ReadFile("without.pdf") == ReadFile("with.pdf"));
    const ToolRun without = RunAtHome({"inspect", "all.svg", "--json"}, {"ORVPRINT_CACHE_DIR="});
    const ToolRun with = RunAtHome({"inspect", "all.svg", "--json"});
    EXPECT_EQ(without.exitCode, 0);
    EXPECT_TRUE(without.output == with.output);
}

TEST_F(FaceIndexRunTest, ManyMayMakeItAtOnce) {
    constexpr int kRuns = 8;
    std::string command;
    for (const std::string& word : Command({"text.svg"})) command += "'" + word + "' ";
    std::string script;
    for (int i = 0; i < kRuns; ++i) script += command + "-o " + std::to_string(i) + ".pdf || echo failed &\n";
    const ToolRun run = RunProgram({"sh", "-c", script + "wait"});
    EXPECT_EQ(run.output + run.errors, "");
    for (int i = 1; i < kRuns; ++i)
        EXPECT_TRUE(ReadFile(std::to_string(i) + ".pdf") == ReadFile("0.pdf")) << i;
    EXPECT_FALSE(ReadIndex().faces.empty());
    EXPECT_EQ(std::distance(fs::directory_iterator(Folder() / "cache/orvprint"), fs::directory_iterator()),
              1);
}

TEST_F(FaceIndexRunTest, LibrariesAreLoadedWhenTheyAreNeeded) {
    const std::vector<std::string> traced{"LD_DEBUG=files"};
    const std::string figure = RunAtHome({"figure.svg", "-o", "figure.pdf"}, traced).errors;
    EXPECT_THAT(figure, HasSubstr("libc.so"));
    for (const char* library : {"libharfbuzz", "libfreetype", "libfontconfig", "libfribidi", "libglib"})
        EXPECT_THAT(figure, Not(HasSubstr(library)));

    const std::string text = RunAtHome({"text.svg", "-o", "text.pdf"}, traced).errors;
    for (const char* library : {"libharfbuzz.so", "libfontconfig.so"}) EXPECT_THAT(text, HasSubstr(library));
}

TEST_F(FaceIndexRunTest, FontconfigIsNotAskedWhereTheIndexKnows) {
    const std::vector<std::string> traced{"FC_DEBUG=1024"};  // reports the files that fontconfig reads
    EXPECT_THAT(RunAtHome({"text.svg", "-o", "text.pdf"}, traced).output, HasSubstr("fonts.conf"));
    EXPECT_EQ(RunAtHome({"text.svg", "-o", "text.pdf"}, traced).output, "");
}

// Printing in an untrusted folder must not load libraries from it.
TEST_F(FaceIndexRunTest, LibrariesOfTheWorkingDirectoryAreNotLoaded) {
    for (const char* library : {"libz.so.1", "libharfbuzz.so.0", "libstdc++.so.6", "libfontconfig.so.1"})
        WriteFile(library, "no library");
    const ToolRun run = RunAtHome({"text.svg", "-o", "text.pdf"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(RunProgram({"pdffonts", "text.pdf"}).output, HasSubstr("Liberation"));
}

}  // namespace
