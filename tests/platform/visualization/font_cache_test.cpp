// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/font_cache.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;

class FontCacheTest : public testing::Test {
protected:
    FontCacheTest() { fs::permissions(scratch_.Path(), fs::perms::owner_all); }

    std::string Folder() const { return scratch_.PathOf("cache/orvprint"); }
    std::string File() const { return Folder() + "/faces"; }
    std::optional<std::string> Read() const {
        std::string bytes;
        return ReadFontCache(Folder(), kFaceIndexFile, bytes) ? std::optional(bytes) : std::nullopt;
    }
    std::size_t CountFiles() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(Folder()), fs::directory_iterator()));
    }
    static unsigned int ModeOf(const std::string& path) {
        struct stat status = {};
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
    }
    ScratchFolder scratch_;
};

TEST_F(FontCacheTest, ReadsWhatWasWritten) {
    EXPECT_EQ(Read(), std::nullopt);
    ASSERT_TRUE(WriteFontCache(Folder(), kFaceIndexFile, "first"));
    EXPECT_EQ(Read(), "first");
    ASSERT_TRUE(WriteFontCache(Folder(), kFaceIndexFile, "the second"));
    EXPECT_EQ(Read(), "the second");
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(FontCacheTest, OnlyTheUserMayWriteOrRead) {
    const mode_t before = umask(0);
    const bool isWritten = WriteFontCache(Folder(), kFaceIndexFile, "x");
    umask(before);
    ASSERT_TRUE(isWritten);
    EXPECT_EQ(ModeOf(Folder()), 0700U);
    EXPECT_EQ(ModeOf(File()), 0600U);
}

TEST_F(FontCacheTest, WhatOthersMayWriteIsRefused) {
    ASSERT_TRUE(WriteFontCache(Folder(), kFaceIndexFile, "x"));
    for (const std::string& path : {File(), Folder()})
        for (const unsigned int mode : {0020U, 0002U}) {
            const unsigned int sound = ModeOf(path);
            ASSERT_EQ(chmod(path.c_str(), sound | mode), 0);
            EXPECT_EQ(Read(), std::nullopt) << path << mode;
            if (path == Folder()) {
                EXPECT_FALSE(WriteFontCache(Folder(), kFaceIndexFile, "y")) << mode;
            }
            ASSERT_EQ(chmod(path.c_str(), sound), 0);
            EXPECT_EQ(Read(), "x");
        }
}

TEST_F(FontCacheTest, WhatBelongsToOthersIsRefused) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
    constexpr uid_t kOther = 65534;
    ASSERT_TRUE(WriteFontCache(Folder(), kFaceIndexFile, "x"));
    for (const std::string& path : {File(), Folder()}) {
        ASSERT_EQ(chown(path.c_str(), kOther, static_cast<gid_t>(-1)), 0);
        EXPECT_EQ(Read(), std::nullopt) << path;
        if (path == Folder()) {
            EXPECT_FALSE(WriteFontCache(Folder(), kFaceIndexFile, "y"));
        }
        ASSERT_EQ(chown(path.c_str(), 0, static_cast<gid_t>(-1)), 0);
    }
    EXPECT_EQ(Read(), "x");
    // Nor is anything created in a folder that belongs to another user.
    fs::remove_all(scratch_.PathOf("cache"));
    ASSERT_EQ(chown(scratch_.Path().c_str(), kOther, static_cast<gid_t>(-1)), 0);
    EXPECT_FALSE(WriteFontCache(Folder(), kFaceIndexFile, "y"));
    EXPECT_FALSE(fs::exists(scratch_.PathOf("cache")));
}

TEST_F(FontCacheTest, LinksAndOtherThingsAreRefused) {
    ASSERT_TRUE(WriteFontCache(Folder(), kFaceIndexFile, "x"));
    fs::rename(File(), scratch_.PathOf("elsewhere"));
    fs::create_symlink(scratch_.PathOf("elsewhere"), File());
    EXPECT_EQ(Read(), std::nullopt);
    fs::remove(File());
    ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
    EXPECT_EQ(Read(), std::nullopt);
    fs::remove(File());
    fs::create_directory(File());
    EXPECT_EQ(Read(), std::nullopt);
    EXPECT_FALSE(WriteFontCache(Folder(), kFaceIndexFile, "y"));
    EXPECT_EQ(CountFiles(), 1U);  // no temporary file is left

    fs::rename(Folder(), scratch_.PathOf("moved"));
    fs::create_directory_symlink(scratch_.PathOf("moved"), Folder());
    EXPECT_FALSE(WriteFontCache(Folder(), kFaceIndexFile, "y"));
    EXPECT_EQ(Read(), std::nullopt);
}

TEST_F(FontCacheTest, FoldersThatCannotBeMadeAreNoMatter) {
    std::ofstream(scratch_.PathOf("cache")) << "a file";
    EXPECT_FALSE(WriteFontCache(Folder(), kFaceIndexFile, "x"));
    EXPECT_EQ(Read(), std::nullopt);
    EXPECT_FALSE(WriteFontCache("/proc/orvprint", kFaceIndexFile, "x"));
}

/// Sets or removes environment variables for its lifetime.
class Variables {
public:
    explicit Variables(const std::map<std::string, std::optional<std::string>>& values) {
        for (const auto& [name, value] : values) {
            const char* before = std::getenv(name.c_str());
            before_[name] = before ? std::optional<std::string>(before) : std::nullopt;
            Set(name, value);
        }
    }
    ~Variables() {
        for (const auto& [name, value] : before_) Set(name, value);
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

private:
    static void Set(const std::string& name, const std::optional<std::string>& value) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    std::map<std::string, std::optional<std::string>> before_;
};

TEST(FontCacheFolderTest, ComesOfTheVariables) {
    using Text = std::optional<std::string>;
    struct Row {
        Text own, cache, home, root;
        const char* folder;
    };
    const Row rows[] = {
        {{}, {}, "/home/u", {}, "/home/u/.cache/orvprint"},
        {{}, "", "/home/u", {}, "/home/u/.cache/orvprint"},
        {{}, "here", "/home/u", {}, "/home/u/.cache/orvprint"},
        {{}, "/var/c", "/home/u", {}, "/var/c/orvprint"},
        {"/own/", "/var/c", "/home/u", {}, "/own"},
        {"", "/var/c", "/home/u", {}, ""},
        {"own", "/var/c", "/home/u", {}, ""},
        {{}, {}, {}, {}, ""},
        {{}, {}, "", {}, ""},
        {{}, {}, "home", {}, ""},
        {{}, "/var/c", {}, {}, "/var/c/orvprint"},
        {{}, {}, "/home/u", "/other", ""},
        {"/own", {}, "/home/u", "", ""},
    };
    for (const Row& row : rows) {
        const Variables set({{"ORVPRINT_CACHE_DIR", row.own},
                             {"XDG_CACHE_HOME", row.cache},
                             {"HOME", row.home},
                             {"FONTCONFIG_SYSROOT", row.root}});
        EXPECT_EQ(FontCacheFolder(), row.folder) << row.own.value_or("-") << row.cache.value_or("-")
                                                 << row.home.value_or("-") << row.root.value_or("-");
    }
}

}  // namespace
