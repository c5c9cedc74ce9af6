// SPDX-License-Identifier: Apache-2.0
#include "platform/system/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "tests/support/named_rows.h"
#include "tests/support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;

class FilesTest : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(root_ / "open" / "below");
        fs::create_directories(root_ / "open-not");
        for (const char* file : {"open/a.png", "open/below/b.png", "open-not/c.png", "outside.png"})
            std::ofstream(root_ / file) << "x";
        ASSERT_TRUE(policy_.AllowFolder(Path("open")));
    }
    void TearDown() override { ORVFileAccessPolicy::SetCurrent(nullptr); }
    ORVUnicodeString Path(const std::string& relative) const { return (root_ / relative).string(); }

    const ScratchFolder scratch_;
    const fs::path root_ = scratch_.Path();
    ORVFolderAccessPolicy policy_;
};

TEST_F(FilesTest, NothingIsAccessibleWithoutAPolicy) {
    EXPECT_EQ(ORVFileAccessPolicy::GetCurrent(), nullptr);
    EXPECT_EQ(ORVFileStat(Path("open/a.png")), 0);
    EXPECT_EQ(ORVFileAccess(Path("open/a.png"), 0), 0);
}

TEST_F(FilesTest, AllowedFoldersAndWhatLiesBelowAreAccessible) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_EQ(ORVFileStat(Path("open/a.png")), 1);
    EXPECT_EQ(ORVFileAccess(Path("open/a.png"), 0), 1);
    EXPECT_EQ(ORVFileStat(Path("open/below/b.png")), 1);
    EXPECT_EQ(ORVFileStat(Path("open/./below/../a.png")), 1);
    EXPECT_EQ(ORVFileStat(Path("open//a.png")), 1);
}

TEST_F(FilesTest, OtherFoldersAreNot) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_EQ(ORVFileStat(Path("outside.png")), 0);
    EXPECT_EQ(ORVFileAccess(Path("outside.png"), 0), 0);
    EXPECT_EQ(ORVFileStat(Path("open/../outside.png")), 0);
    EXPECT_EQ(ORVFileStat(Path("open-not/c.png")), 0);  // another folder whose name has the same beginning
    EXPECT_EQ(ORVFileStat("/etc/passwd"), 0);
}

TEST_F(FilesTest, SymbolicLinksLeadNowhereElse) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    fs::create_symlink(root_ / "outside.png", root_ / "open" / "link.png");
    fs::create_directory_symlink(root_, root_ / "open" / "up");
    fs::create_symlink(root_ / "open" / "a.png", root_ / "open" / "inner.png");
    EXPECT_EQ(ORVFileStat(Path("open/link.png")), 0);
    EXPECT_EQ(ORVFileStat(Path("open/up/outside.png")), 0);
    EXPECT_EQ(ORVFileStat(Path("open/inner.png")), 1);
}

// The target of a link may have been changed between the check of its name and the open.
TEST_F(FilesTest, AFileIsAskedForAgainWhenItIsOpen) {
    fs::create_symlink(root_ / "outside.png", root_ / "open" / "link.png");
    for (const auto& [name, isAllowed] : {std::pair{"open/a.png", true},
                                          {"open/below/b.png", true},
                                          {"open/link.png", false},
                                          {"outside.png", false}}) {
        const int descriptor = ::open((root_ / name).c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_GE(descriptor, 0) << name;
        ORVFileAccessPolicy::SetCurrent(&policy_);
        EXPECT_EQ(ORVMayReadOpenFile(descriptor), isAllowed) << name;
        ORVFileAccessPolicy::SetCurrent(nullptr);
        EXPECT_TRUE(ORVMayReadOpenFile(descriptor)) << name;
        ::close(descriptor);
    }
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_FALSE(ORVMayReadOpenFile(-1));
}

TEST_F(FilesTest, OnlyRegularFilesThatExistHaveAStatus) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_EQ(ORVFileStat(Path("open/none.png")), 0);
    EXPECT_EQ(ORVFileAccess(Path("open/none.png"), 0), 0);
    EXPECT_EQ(ORVFileStat(Path("open/below")), 0);
}

TEST_F(FilesTest, OnlyReadingIsAMode) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_EQ(ORVFileAccess(Path("open/a.png"), 1), 0);
    EXPECT_EQ(ORVFileAccess(Path("open/a.png"), -1), 0);
}

TEST_F(FilesTest, StrangePathsAreNotAccessible) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_EQ(ORVFileStat(""), 0);
    EXPECT_EQ(ORVFileStat(std::string(Path("open/a.png").GetView()) + std::string("\0.jpg", 5)), 0);
    EXPECT_EQ(ORVFileStat("data:image/png;base64," + std::string(10000000, 'A')), 0);
    EXPECT_EQ(ORVFileStat(Path("open/a.png/x")), 0);
    EXPECT_EQ(ORVFileStat("\xFF\xFE"), 0);
}

TEST_F(FilesTest, AFolderThatDoesNotExistIsNotAllowed) {
    EXPECT_FALSE(policy_.AllowFolder(Path("none")));
    EXPECT_FALSE(policy_.AllowFolder(Path("outside.png")));
    EXPECT_FALSE(policy_.MayRead(Path("outside.png")));
}

TEST_F(FilesTest, SeveralFoldersAreAllowed) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_TRUE(policy_.AllowFolder(Path("open-not/")));
    EXPECT_EQ(ORVFileStat(Path("open-not/c.png")), 1);
    EXPECT_EQ(ORVFileStat(Path("open/a.png")), 1);
    EXPECT_EQ(ORVFileStat(Path("outside.png")), 0);
}

// The answer must not reveal whether a file outside of the allowed folders exists.
TEST_F(FilesTest, TheAnswerDependsOnNoFileOutside) {
    fs::create_symlink(root_ / "outside.png", root_ / "open" / "link.png");
    fs::create_symlink(root_ / "none.png", root_ / "open" / "dangling.png");
    fs::create_directory_symlink(root_, root_ / "open" / "up");
    for (const char* path :
         {"outside.png", "none.png", "open-not/c.png", "open-not/none.png", "none/none.png",
          "open/../outside.png", "open/../none.png", "open/link.png", "open/dangling.png",
          "open/up/outside.png", "open/up/none.png", "open/up/open-not/none.png"})
        EXPECT_FALSE(policy_.MayRead(Path(path))) << path;
    for (const char* path :
         {"open/a.png", "open/none.png", "open/none/none.png", "open/none/../../outside.png",
          "open/up/open/a.png", "open/up/open/none.png", "open/below/../none.png"})
        EXPECT_TRUE(policy_.MayRead(Path(path))) << path;
    ORVFileAccessPolicy::SetCurrent(&policy_);
    EXPECT_EQ(ORVFileStat(Path("open/none/../../outside.png")), 0)
        << "nothing is there for the system either";
}

TEST_F(FilesTest, LinksLeadFromOneAllowedFolderToAnother) {
    fs::create_directory_symlink(root_ / "open-not", root_ / "open" / "other");
    fs::create_directory_symlink("../below/..", root_ / "open" / "below" / "back");
    fs::create_symlink("loop.png", root_ / "open" / "loop.png");
    EXPECT_FALSE(policy_.MayRead(Path("open/other/c.png")));
    EXPECT_TRUE(policy_.MayRead(Path("open/below/back/a.png")));
    EXPECT_FALSE(policy_.MayRead(Path("open/loop.png")));
    ASSERT_TRUE(policy_.AllowFolder(Path("open-not")));
    EXPECT_TRUE(policy_.MayRead(Path("open/other/c.png")));
}

TEST_F(FilesTest, FortyLinksAreFollowedAsTheSystemDoes) {
    fs::create_symlink("a.png", root_ / "open" / "1");
    for (int i = 2; i <= 41; ++i)
        fs::create_symlink(std::to_string(i - 1), root_ / "open" / std::to_string(i));
    ORVFileAccessPolicy::SetCurrent(&policy_);
    for (const auto& [name, isFollowed] : {std::pair{"open/1", 1}, {"open/40", 1}, {"open/41", 0}})
        EXPECT_EQ(ORVFileStat(Path(name)), isFollowed) << name;
    EXPECT_TRUE(policy_.MayRead(Path("open/40")));
    EXPECT_FALSE(policy_.MayRead(Path("open/41")));
}

// The host may name a folder by a path with links. Documents may use that path as well as the real one.
TEST_F(FilesTest, AFolderIsKnownByTheNameThatItWasGiven) {
    fs::create_directory_symlink(root_ / "open-not", root_ / "alias");
    fs::create_directory_symlink(root_ / "open" / "below", root_ / "odd");
    for (const char* given : {"alias", "odd/../../open-not", "alias//"}) {
        ORVFolderAccessPolicy policy;
        ASSERT_TRUE(policy.AllowFolder(Path(given)));
        ORVFileAccessPolicy::SetCurrent(&policy);
        EXPECT_EQ(ORVFileStat(Path(std::string(given) + "/c.png")), 1) << given;
        EXPECT_EQ(ORVFileStat(Path("open-not/c.png")), 1) << given;
        EXPECT_EQ(ORVFileStat(Path(std::string(given) + "/../outside.png")), 0) << given;
        EXPECT_EQ(ORVFileStat(Path("outside.png")), 0) << given;
        ORVFileAccessPolicy::SetCurrent(nullptr);
    }
}

TEST_F(FilesTest, RelativeNamesBeginInTheWorkingFolder) {
    const fs::path before = fs::current_path();
    for (const auto& [here, given, path, isAllowed] :
         {std::tuple{"open", ".", "a.png", true},
          {"open", "", "below/b.png", true},
          {"open", ".", "../outside.png", false},
          {"", "open", "open/a.png", true},
          {"", "open", "a.png", false},
          {"open/below", "..", "../a.png", true},
          {"open/below", "..", "b.png", true},
          {"open-not", "../open", "../open/a.png", true},
          {"open-not", "../open", "c.png", false},
          {"", "/", "outside.png", true},
          {"open", "../open/below/..", "../open/below/../a.png", true}}) {
        fs::current_path(root_ / here);
        ORVFolderAccessPolicy policy;
        ASSERT_TRUE(policy.AllowFolder(given));
        EXPECT_EQ(policy.MayRead(path), isAllowed) << here << ": " << given << ": " << path;
    }
    fs::current_path(before);
}

TEST_F(FilesTest, APolicyIsItsThreadsOwn) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    int elsewhere = -1;
    std::thread([&] { elsewhere = ORVFileStat(Path("open/a.png")); }).join();
    EXPECT_EQ(elsewhere, 0);
    EXPECT_EQ(ORVFileStat(Path("open/a.png")), 1);
}

struct SplitCase {
    const char* name;
    const char* path;
    const char* folder;
    const char* file;
};
class SplitPathTest : public testing::TestWithParam<SplitCase> {};
TEST_P(SplitPathTest, GivesFolderAndName) {
    ORVUnicodeString folder("x"), file("y");
    ORVSplitPath(GetParam().path, folder, file);
    EXPECT_EQ(folder.GetView(), GetParam().folder);
    EXPECT_EQ(file.GetView(), GetParam().file);
}
INSTANTIATE_TEST_SUITE_P(Files, SplitPathTest,
                         testing::Values(SplitCase{"Both", "/a/b/c.svg", "/a/b", "c.svg"},
                                         SplitCase{"Relative", "b/c.svg", "b", "c.svg"},
                                         SplitCase{"NameOnly", "c.svg", "", "c.svg"},
                                         SplitCase{"Root", "/c.svg", "/", "c.svg"},
                                         SplitCase{"FolderOnly", "a/b/", "a/b", ""},
                                         SplitCase{"Empty", "", "", ""}),
                         kNameOfRow);

TEST(Files, PathsAreJoined) {
    EXPECT_EQ(ORVMakePath("/a", "b.png").GetView(), "/a/b.png");
    EXPECT_EQ(ORVMakePath("/a/", "b.png").GetView(), "/a/b.png");
    EXPECT_EQ(ORVMakePath("", "b.png").GetView(), "b.png");
    EXPECT_EQ(ORVMakePath("/", "b.png").GetView(), "/b.png");
    EXPECT_EQ(ORVMakePath("a", "../b.png").GetView(), "a/../b.png");
}

TEST(Files, TheEnvironmentIsRead) {
    ::setenv("ORV_TEST_VARIABLE", "", 1);
    EXPECT_STREQ(ORVGetEnv("ORV_TEST_VARIABLE"), "");
    ::unsetenv("ORV_TEST_VARIABLE");
    EXPECT_EQ(ORVGetEnv("ORV_TEST_VARIABLE"), nullptr);
}

}  // namespace
