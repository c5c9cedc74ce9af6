// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/face_index.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/visualization/fonts/module/fontconfig_faces.h"
#include "tests/support/scratch_folder.h"

namespace {

InstalledFace SomeFace(const std::string& family, unsigned int index = 0) {
    InstalledFace face;
    face.path = "/fonts/" + family + ".ttf";
    face.index = index;
    face.foundry = "maker";
    face.family = family;
    face.style = "Bold";
    face.fullName = family + " Bold";
    face.postScriptName = family + "-Bold";
    face.weight = 700;
    face.slant = 100;
    face.width = 75;
    face.kind = ORVFont::kCFF;
    return face;
}

FaceIndex SomeIndex() {
    FaceIndex index;
    index.environment = "HOME=/home/u\n";
    index.watched = {{"/fonts", true, 1, 2, 3, -4, 5, 6, 7}, {"/absent", false, 0, 0, 0, 0, 0, 0, 0}};
    index.faces = {SomeFace("Plain"), SomeFace("Collected", 3)};
    return index;
}

TEST(FaceIndexTest, ReadsWhatWasWritten) {
    for (const FaceIndex& index : {SomeIndex(), FaceIndex{}, FaceIndex{"", {}, {SomeFace("Only")}}}) {
        FaceIndex read;
        ASSERT_TRUE(DecodeFaceIndex(EncodeFaceIndex(index), read));
        EXPECT_EQ(read, index);
    }
}

TEST(FaceIndexTest, EveryChangedByteIsNoticed) {
    const std::string sound = EncodeFaceIndex(SomeIndex());
    FaceIndex read;
    for (std::size_t at = 0; at < sound.size(); ++at)
        for (const int change : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
            std::string bytes = sound;
            bytes[at] = static_cast<char>(bytes[at] ^ change);
            EXPECT_FALSE(DecodeFaceIndex(bytes, read)) << at;
        }
}

TEST(FaceIndexTest, CutAndExtendedFilesAreRefused) {
    const std::string sound = EncodeFaceIndex(SomeIndex());
    FaceIndex read;
    for (std::size_t size = 0; size < sound.size(); ++size)
        EXPECT_FALSE(DecodeFaceIndex(std::string_view(sound).substr(0, size), read)) << size;
    for (const char more : {'\0', 'x'}) EXPECT_FALSE(DecodeFaceIndex(sound + more, read));
}

TEST(FaceIndexTest, KeepsAllThatFontconfigSays) {
    FaceIndex index, read;
    index.faces = AskInstalledFaces();
    ASSERT_FALSE(index.faces.empty()) << "the tests need fonts-liberation and fonts-dejavu-core";
    ASSERT_TRUE(DecodeFaceIndex(EncodeFaceIndex(index), read));
    EXPECT_EQ(read.faces, index.faces);
}

TEST(FaceIndexTest, EveryFolderOfFontsIsWatched) {
    const std::optional<std::vector<std::string>> paths = PathsThatDecide();
    if (!paths) GTEST_SKIP() << "the configuration depends on more than files";
    for (const InstalledFace& face : AskInstalledFaces())
        EXPECT_THAT(*paths, testing::Contains(std::filesystem::path(face.path).parent_path().string()));
}

// A correct checksum is no proof of sound data, so the values of each face are checked as well.
TEST(FaceIndexTest, FacesThatCannotBeAreRefused) {
    const auto isRefused = [](auto change) {
        FaceIndex index = SomeIndex(), read;
        change(index.faces[1]);
        return !DecodeFaceIndex(EncodeFaceIndex(index), read);
    };
    EXPECT_FALSE(isRefused([](InstalledFace& face) { face.style.clear(); }));
    EXPECT_TRUE(isRefused([](InstalledFace& face) { face.family.clear(); }));
    EXPECT_TRUE(isRefused([](InstalledFace& face) { face.path.clear(); }));
    EXPECT_TRUE(isRefused([](InstalledFace& face) { face.path = "fonts/a.ttf"; }));
    EXPECT_TRUE(isRefused([](InstalledFace& face) { face.path += std::string("\0x", 2); }));
    EXPECT_TRUE(isRefused([](InstalledFace& face) { face.kind = ORVFont::kPlain; }));
    EXPECT_TRUE(isRefused([](InstalledFace& face) { face.kind = static_cast<ORVFont::Kind>(7); }));
}

class WatchTest : public testing::Test {
protected:
    std::string Write(const std::string& name, const std::string& content) const {
        std::ofstream(folder_.PathOf(name), std::ios::binary) << content;
        return folder_.PathOf(name);
    }
    ScratchFolder folder_;
};

TEST_F(WatchTest, ChangesAreSeen) {
    namespace fs = std::filesystem;
    const std::string fonts = folder_.PathOf("fonts"), link = folder_.PathOf("link");
    fs::create_directory(fonts);
    fs::create_symlink(fonts, link);
    const std::string file = Write("fonts.conf", "<fontconfig/>"), absent = folder_.PathOf("absent");
    const std::vector<std::string> paths{fonts, link, file, absent};
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"a new file", [&] { Write("fonts/a.ttf", "font"); }},
        {"a file less", [&] { fs::remove(folder_.PathOf("fonts/a.ttf")); }},
        {"other content", [&] { Write("fonts.conf", "<fontconfig></fontconfig>"); }},
        {"another file of the same name, size and time",
         [&] {
             const auto time = fs::last_write_time(file);
             Write("other", "<fontconfig></fontconfig>");
             fs::rename(folder_.PathOf("other"), file);
             fs::last_write_time(file, time);
         }},
        {"what was missing", [&] { Write("absent", ""); }},
        {"what goes missing",
         [&] {
             fs::remove(absent);
             fs::remove(file);
         }},
        {"a link that leads elsewhere",
         [&] {
             fs::remove(link);
             fs::create_symlink(folder_.PathOf("nowhere"), link);
         }},
    };
    for (const auto& [name, change] : changes) {
        const std::vector<WatchedPath> before = Watch(paths);
        EXPECT_TRUE(IsUnchanged(before)) << name;
        change();
        EXPECT_FALSE(IsUnchanged(before)) << name;
    }
}

TEST_F(WatchTest, TellsWhatChangedLately) {
    const std::vector<WatchedPath> watched = Watch({Write("a", "x"), folder_.PathOf("absent")});
    const std::int64_t second = watched[0].modified;
    EXPECT_FALSE(IsOlderThan(watched, second));
    EXPECT_TRUE(IsOlderThan(watched, second + 1));
    // A file's modification time can be set back, but its status change time cannot.
    struct timespec times[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, watched[0].path.c_str(), times, 0), 0);
    const std::vector<WatchedPath> setBack = Watch({watched[0].path});
    EXPECT_EQ(setBack[0].modified, 1000);
    EXPECT_FALSE(IsOlderThan(setBack, second));
}

TEST(FontEnvironmentTest, TellsVariablesApart) {
    const char* const before = std::getenv("XDG_DATA_DIRS");
    const std::string kept = before ? before : "";
    unsetenv("XDG_DATA_DIRS");
    const std::string absent = FontEnvironment();
    setenv("XDG_DATA_DIRS", "", 1);
    const std::string empty = FontEnvironment();
    setenv("XDG_DATA_DIRS", "/other", 1);
    const std::string other = FontEnvironment();
    if (before)
        setenv("XDG_DATA_DIRS", kept.c_str(), 1);
    else
        unsetenv("XDG_DATA_DIRS");
    EXPECT_NE(absent, empty);
    EXPECT_NE(absent, other);
    EXPECT_NE(empty, other);
}

}  // namespace
