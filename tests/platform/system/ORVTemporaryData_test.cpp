// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVTemporaryData.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/system/ORVPrintLimits.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;

std::string ReadAll(ORVTemporaryData& data) {
    std::string all(1000, '\0');
    if (data.Seek(0, SEEK_SET) != 0) return "no beginning";
    const std::ptrdiff_t count = data.Read(all.data(), all.size());
    return count < 0 ? "not read" : all.substr(0, static_cast<std::size_t>(count));
}

/// Returns the number of open files of this process below a folder, including deleted ones.
int CountOpenFilesIn(const fs::path& folder) {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry.path(), error).string().starts_with(folder.string() + "/")) ++count;
    }
    return count;
}

TEST(TemporaryDataTest, AreReadAsTheyWereWritten) {
    ORVTemporaryData data;
    EXPECT_FALSE(data.IsOpen());
    ASSERT_TRUE(data.Open());
    EXPECT_EQ(data.Write("abcdef", 6), 6U);
    EXPECT_EQ(data.Seek(2, SEEK_SET), 2);
    EXPECT_EQ(data.Write("XY", 2), 2U);
    EXPECT_EQ(data.GetSize(), 6);
    EXPECT_EQ(ReadAll(data), "abXYef");
    ASSERT_TRUE(data.Open()) << "again, without what was there";
    EXPECT_EQ(data.GetSize(), 0);
}

TEST(TemporaryDataTest, StandInTheFolderThatTheEnvironmentNames) {
    const ScratchFolder folder;
    const ScopedEnvironment environment("TMPDIR", folder.Path().c_str());
    EXPECT_EQ(ORVTemporaryData::GetFolder(), folder.Path());
    {
        ORVTemporaryData data;
        ASSERT_TRUE(data.Open());
        EXPECT_EQ(CountOpenFilesIn(folder.Path()), 1);
        EXPECT_TRUE(fs::is_empty(folder.Path())) << "the file has no name";
    }
    EXPECT_EQ(CountOpenFilesIn(folder.Path()), 0);
}

TEST(TemporaryDataTest, NeedAFolder) {
    const ScratchFolder folder;
    const ScopedEnvironment environment("TMPDIR", folder.PathOf("missing").c_str());
    ORVTemporaryData data;
    errno = 0;
    EXPECT_FALSE(data.Open());
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(data.IsOpen());
}

TEST(TemporaryDataTest, HaveAFolderWithoutTheEnvironment) {
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedEnvironment environment("TMPDIR", value);
        EXPECT_STREQ(ORVTemporaryData::GetFolder(), "/tmp");
    }
}

TEST(TemporaryDataTest, AreNoMoreThanAnOutputMayBe) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kOutputBytes, 6);
    ORVTemporaryData data;
    ASSERT_TRUE(data.Open());
    EXPECT_EQ(data.Write("abcdef", 6), 6U);
    EXPECT_FALSE(data.IsPastLimit());
    EXPECT_EQ(data.Write("g", 1), 0U);
    EXPECT_TRUE(data.IsPastLimit());
    EXPECT_EQ(ReadAll(data), "abcdef");
    ASSERT_TRUE(data.Open());
    EXPECT_FALSE(data.IsPastLimit());
    EXPECT_EQ(data.Write("abcdefg", 7), 0U) << "a write that does not fit is not begun";
}

}  // namespace
