// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/images/ORVPixelImage.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/system/files.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/scratch_folder.h"

namespace {

class PixelImageFileTest : public testing::Test {
protected:
    std::string Path(const char* name) const { return folder_.PathOf(name); }
    std::string Write(const char* name, const ByteList& bytes) const {
        std::ofstream(Path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return Path(name);
    }
    static ORVRef<ORVPixelImage> Load(const std::string& path) {
        return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromFile(path, 1, 0));
    }

private:
    ScratchFolder folder_;
};

TEST_F(PixelImageFileTest, ContentDecidesNotTheName) {
    const ByteList png = WritePng({.width = 2, .height = 3, .sample = [](int, int, int) { return 9u; }});
    const ByteList jpeg = WriteJpeg({.width = 4, .height = 5, .samples = ByteList(60, 99)});
    const ByteList bmp = BmpToWrite::Info(6, 7, 32).With(ByteList(168, 50));
    const auto fromPng = Load(Write("a.bmp", png)), fromJpeg = Load(Write("b.png", jpeg)),
               fromBmp = Load(Write("c", bmp));
    ASSERT_TRUE(fromPng && fromJpeg && fromBmp);
    EXPECT_EQ(fromPng->GetWidth(), 2);
    EXPECT_EQ(fromJpeg->GetWidth(), 4);
    EXPECT_NE(fromJpeg->GetJpegSource(), nullptr);
    EXPECT_EQ(fromBmp->GetWidth(), 6);
}

TEST_F(PixelImageFileTest, WhatIsNoImageFileGivesNull) {
    EXPECT_FALSE(Load(Path("missing")));
    EXPECT_FALSE(Load(""));
    EXPECT_FALSE(Load(Path(".")));
    EXPECT_FALSE(Load(Write("empty", {})));
    EXPECT_FALSE(Load(Write("text.png", {'h', 'e', 'l', 'l', 'o'})));
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(Load(Path("pipe")));
}

TEST_F(PixelImageFileTest, ThePolicyIsAskedForWhatIsOpen) {
    const ByteList png = WritePng({.width = 2, .height = 3, .sample = [](int, int, int) { return 9u; }});
    ASSERT_EQ(::mkdir(Path("open").c_str(), 0700), 0);
    const std::string inside = Write("open/inside.png", png);
    ASSERT_EQ(::symlink(Write("outside.png", png).c_str(), Path("open/link.png").c_str()), 0);
    ORVFolderAccessPolicy policy;
    ASSERT_TRUE(policy.AllowFolder(Path("open").c_str()));
    ORVFileAccessPolicy::SetCurrent(&policy);
    EXPECT_TRUE(Load(inside));
    EXPECT_FALSE(Load(Path("open/link.png")));
    ORVFileAccessPolicy::SetCurrent(nullptr);
    EXPECT_TRUE(Load(Path("open/link.png")));
}

TEST(ORVPixelImageTest, MadeFromPixels) {
    const Rgba pixels = {1, 2, 3, 255, 4, 5, 6, 7};
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(2, 1, pixels));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetReferenceCount(), 1u);
    EXPECT_STREQ(image->IsA(), "ORVPixelImage");
    EXPECT_TRUE(image->HasAlpha());
    EXPECT_EQ(PixelsOf(image), pixels);
    image->ReleasePixels();  // kept: there is no file to decode them from again
    EXPECT_EQ(PixelsOf(image), pixels);
}

TEST(ORVPixelImageTest, LargePixelsComeBackAfterRelease) {
    // Large enough for the readers to keep the file instead of the pixels.
    const auto sample = [](int x, int y, int) { return static_cast<unsigned>((x / 64 + y / 64) % 2); };
    const auto png = ReadPng(WritePng({.width = 2100, .height = 2100, .depth = 1, .sample = sample}));
    const ByteList rows(static_cast<std::size_t>(2112 / 8 * 2100), 0x55);
    const auto bmp =
        ReadBmp(BmpToWrite::Info(2100, 2100, 1, 0, 2).Append({9, 9, 9, 0, 80, 80, 80, 0}).With(rows));
    for (const auto& image : {png, bmp}) {
        ASSERT_TRUE(image);
        const Rgba pixels = PixelsOf(image);
        ASSERT_EQ(pixels.size(), 2100u * 2100u * 4u);
        image->ReleasePixels();
        EXPECT_EQ(PixelsOf(image), pixels);
        EXPECT_EQ(image->GetJpegSource(), nullptr);
    }
}

TEST(ORVPixelImageTest, SizesMustFit) {
    const Rgba pixels(8);
    EXPECT_EQ(ORVPixelImage::CreateFromPixels(1, 1, pixels), nullptr);
    EXPECT_EQ(ORVPixelImage::CreateFromPixels(0, 2, {}), nullptr);
    EXPECT_EQ(ORVPixelImage::CreateFromPixels(-2, -1, pixels), nullptr);
}

}  // namespace
