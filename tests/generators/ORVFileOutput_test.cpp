// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVFileOutput.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <utility>

#include "generators/common/ORVTemporaryFile.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_texts.h"

namespace {

namespace fs = std::filesystem;

/// Gives each test a folder of its own.
class FileOutputTest : public testing::Test {
protected:
    std::string Path(const char* name) const { return folder_.PathOf(name); }
    std::string Content(const char* name) const { return ReadAll(folder_.Path() / name); }
    std::size_t CountFiles() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator()));
    }
    static void WritePart(ORVFileOutput& output, const std::string& text) {
        ASSERT_EQ(output.BeginPart(), 1) << output.GetError();
        ASSERT_EQ(output.Write(text.data(), text.size()), 1);
        ASSERT_EQ(output.EndPart(), 1);
    }

    ScratchFolder folder_;
};

TEST_F(FileOutputTest, ShowsUnderItsNameOnlyWhenCommitted) {
    ORVFileOutput output(Path("a.txt"), false);
    WritePart(output, "new");
    EXPECT_FALSE(fs::exists(Path("a.txt")));
    EXPECT_EQ(output.Commit(), 1);
    EXPECT_EQ(Content("a.txt"), "new");
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(FileOutputTest, WhatWasNotCommittedLeavesNothingBehind) {
    std::ofstream(Path("a.txt")) << "old";
    {
        ORVFileOutput output(Path("a.txt"), false);
        WritePart(output, "new");
    }
    EXPECT_EQ(Content("a.txt"), "old");
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(FileOutputTest, ReplacesAndKeepsThePermissions) {
    std::ofstream(Path("a.txt")) << "old";
    fs::permissions(Path("a.txt"), fs::perms::owner_read | fs::perms::owner_write);
    ORVFileOutput output(Path("a.txt"), false);
    WritePart(output, "new");
    EXPECT_EQ(output.Commit(), 1);
    EXPECT_EQ(Content("a.txt"), "new");
    EXPECT_EQ(fs::status(Path("a.txt")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(FileOutputTest, NumbersParts) {
    ORVFileOutput output(Path("page.png"), true);
    WritePart(output, "one");
    WritePart(output, "two");
    EXPECT_EQ(output.Commit(), 1);
    EXPECT_EQ(Content("page-1.png"), "one");
    EXPECT_EQ(Content("page-2.png"), "two");
}

TEST_F(FileOutputTest, NumbersStandBeforeTheEndingIfThereIsOne) {
    fs::create_directory(Path("folder.d"));
    for (const auto& [name, numbered] : {std::pair{"page", "page-1"},
                                         {".hidden", ".hidden-1"},
                                         {".hidden.png", ".hidden-1.png"},
                                         {"a.b.png", "a.b-1.png"},
                                         {"folder.d/page", "folder.d/page-1"},
                                         {"folder.d/.png", "folder.d/.png-1"}}) {
        ORVFileOutput output(Path(name), true);
        WritePart(output, "one");
        EXPECT_EQ(output.Commit(), 1) << name;
        EXPECT_EQ(Content(numbered), "one") << name;
    }
}

TEST_F(FileOutputTest, TakesOnePartWhenNotNumbered) {
    ORVFileOutput output(Path("a.txt"), false);
    WritePart(output, "one");
    EXPECT_EQ(output.BeginPart(), 0);
    EXPECT_EQ(output.Commit(), 0);
    EXPECT_FALSE(fs::exists(Path("a.txt")));
}

TEST_F(FileOutputTest, LinksStayLinks) {
    std::ofstream(Path("real.txt")) << "old";
    fs::create_symlink("real.txt", Path("link.txt"));
    ORVFileOutput output(Path("link.txt"), false);
    WritePart(output, "new");
    EXPECT_EQ(output.Commit(), 1);
    EXPECT_TRUE(fs::is_symlink(Path("link.txt")));
    EXPECT_EQ(Content("real.txt"), "new");
}

TEST_F(FileOutputTest, PrepareTellsWhatCannotBeWrittenAndLeavesNothing) {
    EXPECT_EQ(ORVFileOutput(Path("a.txt"), false).Prepare(), 1);
    EXPECT_EQ(CountFiles(), 0U);
    EXPECT_EQ(ORVFileOutput(Path("no/such/folder.txt"), false).Prepare(), 0);
    ORVFileOutput folder(folder_.Path().string(), false);
    EXPECT_EQ(folder.Prepare(), 0);
    EXPECT_FALSE(folder.GetError().empty());
}

TEST_F(FileOutputTest, ProtectedFilesAreKeptUnderEveryName) {
    std::ofstream(Path("input")) << "old";
    fs::create_hard_link(Path("input"), Path("a-2.txt"));
    fs::create_symlink("input", Path("link"));
    for (const char* name : {"input", "link"}) {
        ORVFileOutput output(Path(name), false);
        output.Protect(Path("input"));
        EXPECT_EQ(output.Prepare(), 0);
        EXPECT_NE(output.GetError().find("is an input"), std::string::npos);
    }
    ORVFileOutput output(Path("a.txt"), true);
    output.Protect(Path("input"));
    output.Protect(Path("missing"));
    output.Protect("/dev/null");
    EXPECT_EQ(output.Prepare(), 1);
    WritePart(output, "1");
    EXPECT_EQ(output.BeginPart(), 0);
    EXPECT_EQ(output.Commit(), 0);
    EXPECT_EQ(Content("input"), "old");
    EXPECT_FALSE(fs::exists(Path("a-1.txt")));
}

TEST_F(FileOutputTest, DevicesMayBeInputAndOutput) {
    ORVFileOutput output("/dev/null", false);
    output.Protect("/dev/null");
    EXPECT_EQ(output.Prepare(), 1);
}

TEST_F(FileOutputTest, EndOfTheProcessTakesTemporaryFilesAlong) {
    ORVFileOutput committed(Path("b.txt"), true);
    WritePart(committed, "1");
    EXPECT_EQ(committed.Commit(), 1);
    {
        ORVFileOutput dropped(Path("c.txt"), false);
        WritePart(dropped, "1");
    }
    ORVFileOutput output(Path("a.txt"), true);
    WritePart(output, "1");
    WritePart(output, "2");
    EXPECT_EQ(CountFiles(), 3U);
    ORVTemporaryFile::RemoveAll();
    EXPECT_EQ(CountFiles(), 1U);
    EXPECT_EQ(Content("b-1.txt"), "1");
}

TEST_F(FileOutputTest, FullDevicesAreNoticed) {
    if (!fs::exists("/dev/full")) GTEST_SKIP();
    ORVFileOutput output("/dev/full", false);
    ASSERT_EQ(output.BeginPart(), 1);
    const bool written = output.Write("x", 1) == 1 && output.EndPart() == 1;
    EXPECT_FALSE(written);
    EXPECT_EQ(output.Commit(), 0);
    EXPECT_FALSE(output.GetError().empty());
}

}  // namespace
