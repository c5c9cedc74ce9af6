// SPDX-License-Identifier: Apache-2.0

// The answers that the command keeps between runs for families that no installed face is named after.

#include "platform/visualization/fonts/family_index.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/visualization/fonts/face_index.h"
#include "tests/apps/tool_run.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* kFaces = "cache/faces";
constexpr const char* kFamilies = "cache/families";

class FamilyIndexRunTest : public ToolTest {
protected:
    FamilyIndexRunTest() {
        fs::permissions(Folder(), fs::perms::owner_all);
        for (const char* name : {"home", "data", "cache"}) fs::create_directory(Folder() / name);
        fs::permissions(Folder() / "cache", fs::perms::owner_all);
        WriteFile("text.svg",
                  SmallDrawing("<text x='9' y='20' font-family='Nobody, sans-serif'>word</text>"));
    }

    ToolRun Print(const std::vector<std::string>& variables = {}) const {
        std::vector<std::string> command{"env", "-u", "FONTCONFIG_FILE", "-u", "LC_ALL", "-u", "FC_LANG"};
        for (const char* folder : {"HOME=home", "XDG_DATA_HOME=data", "ORVPRINT_CACHE_DIR=cache"}) {
            const std::string text = folder;
            const std::size_t name = text.find('=') + 1;
            command.push_back(text.substr(0, name) + (Folder() / text.substr(name)).string());
        }
        command.insert(command.end(), variables.begin(), variables.end());
        command.insert(command.end(), {ORV_TOOL_PATH, "text.svg", "--interpreter", "svg2", "-o", "text.pdf"});
        return RunProgram(command);
    }
    std::string FontsOfPage() const { return RunProgram({"pdffonts", "text.pdf"}).output; }
    FamilyIndex ReadIndex() const {
        FamilyIndex index;
        EXPECT_TRUE(Exists(kFamilies) && DecodeFamilyIndex(ReadFile(kFamilies), index));
        return index;
    }
    /// Prints, and changes the answers to a face that fontconfig would not choose.
    void MakeMarkedIndex() const {
        ASSERT_EQ(Print().exitCode, 0);
        FaceIndex faces;
        ASSERT_TRUE(DecodeFaceIndex(ReadFile(kFaces), faces));
        const auto marker =
            std::find_if(faces.faces.begin(), faces.faces.end(), [](const InstalledFace& face) {
                return face.family == "Liberation Mono" && face.slant == 0 && face.weight == 400;
            });
        ASSERT_NE(marker, faces.faces.end()) << "the tests need fonts-liberation";
        FamilyIndex index = ReadIndex();
        for (FamilyAnswer& answer : index.answers) {
            answer.path = marker->path;
            answer.index = marker->index;
        }
        WriteFile(kFamilies, EncodeFamilyIndex(index));
    }
    /// Whether a run uses the marked index.
    bool FindsMarker(const std::vector<std::string>& variables = {}) const {
        const ToolRun run = Print(variables);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return FontsOfPage().find("Mono") != std::string::npos;
    }
};

TEST_F(FamilyIndexRunTest, AnswersAreKeptAndUsed) {
    ASSERT_EQ(Print().exitCode, 0);
    const std::string page = ReadFile("text.pdf");
    const FamilyIndex index = ReadIndex();
    ASSERT_EQ(index.answers.size(), 2U);
    EXPECT_THAT(index.answers[0].query, HasSubstr("Nobody\n"));
    EXPECT_EQ(index.answers[0].path, "");
    EXPECT_THAT(index.answers[1].query, HasSubstr("sans-serif\n"));
    EXPECT_NE(index.answers[1].path, "");

    const ToolRun again = Print({"FC_DEBUG=1024"});  // fontconfig reports the files that it reads
    EXPECT_EQ(again.output, "");
    EXPECT_TRUE(ReadFile("text.pdf") == page);
    MakeMarkedIndex();
    EXPECT_TRUE(FindsMarker());
}

TEST_F(FamilyIndexRunTest, FontconfigIsAskedAgainWhenItMayAnswerDifferently) {
    MakeMarkedIndex();
    EXPECT_FALSE(FindsMarker({"LC_ALL=ja_JP.UTF-8"}));
    MakeMarkedIndex();
    fs::create_directories(Folder() / "data/fonts");
    EXPECT_FALSE(FindsMarker());
}

TEST_F(FamilyIndexRunTest, DamagedFilesAreReplaced) {
    ASSERT_EQ(Print().exitCode, 0);
    const std::string sound = ReadFile(kFamilies), page = ReadFile("text.pdf");
    for (const std::string& bytes :
         {std::string(), std::string("x"), sound.substr(0, sound.size() / 2), sound + sound}) {
        WriteFile(kFamilies, bytes);
        EXPECT_EQ(Print().exitCode, 0);
        EXPECT_EQ(ReadFile(kFamilies), sound);
        EXPECT_TRUE(ReadFile("text.pdf") == page);
    }
}

TEST_F(FamilyIndexRunTest, AFaceThatIsNotInstalledIsAskedForAgain) {
    ASSERT_EQ(Print().exitCode, 0);
    const std::string page = ReadFile("text.pdf");
    FamilyIndex index = ReadIndex();
    for (FamilyAnswer& answer : index.answers) answer.path = "/nowhere/font.ttf";
    WriteFile(kFamilies, EncodeFamilyIndex(index));
    EXPECT_EQ(Print().exitCode, 0);
    EXPECT_TRUE(ReadFile("text.pdf") == page);
}

TEST_F(FamilyIndexRunTest, OneDocumentCannotReplaceAllAnswers) {
    ASSERT_EQ(Print().exitCode, 0);
    const std::vector<FamilyAnswer> before = ReadIndex().answers;
    std::string texts;
    for (int i = 0; i < 300; ++i)
        texts += "<text y='9' font-family='Nobody " + std::to_string(i) + "'>word</text>";
    WriteFile("text.svg",
              SmallDrawing(texts + "<text y='9' font-family='" + std::string(1000, 'x') + "'>w</text>"));
    ASSERT_EQ(Print().exitCode, 0);
    const std::vector<FamilyAnswer> after = ReadIndex().answers;
    EXPECT_EQ(after.size(), before.size() + 16);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), after.begin()));
}

TEST_F(FamilyIndexRunTest, TheOldestAnswersGoFirst) {
    ASSERT_EQ(Print().exitCode, 0);
    FamilyIndex index = ReadIndex();
    const std::vector<FamilyAnswer> own = index.answers;
    index.answers.clear();
    for (int i = 0; i < 256; ++i) index.answers.push_back({"Nobody " + std::to_string(i), "", 0, false});
    WriteFile(kFamilies, EncodeFamilyIndex(index));
    ASSERT_EQ(Print().exitCode, 0);
    const std::vector<FamilyAnswer> after = ReadIndex().answers;
    ASSERT_EQ(after.size(), 256U);
    EXPECT_EQ(after.front().query, "Nobody 2");
    EXPECT_EQ(after.back(), own.back());
}

TEST_F(FamilyIndexRunTest, WithoutAFaceIndexThereIsNone) {
    EXPECT_EQ(Print({"ORVPRINT_CACHE_DIR="}).exitCode, 0);
    EXPECT_FALSE(Exists(kFamilies));
}

}  // namespace
