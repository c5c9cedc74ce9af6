// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/images/module_images.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

std::string FromHex(std::string_view hex) {
    const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(digit(hex[i]) * 16 + digit(hex[i + 1]));
    return bytes;
}

// 4 x 2 pixels: green, the first and the last one yellow.
const std::string kGif =
    FromHex("47494638396104000200f00000008000ffff0021f90400000000002c00000000040002000002030c8e51003b");
const std::string kLosslessWebP = FromHex(
    "524946462e000000574542505650384c220000002f0340000017201048529f7c0d014191ffa309088afc1f6d"
    "fe837f0a5c2d31a2ff11");
// An animation of 16 x 16 pixels: a green frame, then a blue one.
const std::string kMovingWebP = FromHex(
    "524946468400000057454250565038580a000000020000000f00000f0000414e494d06000000ffffffff0000"
    "414e4d46280000000000000000000f00000f0000640000005650384c0f0000002f0fc003000750c088fe0722"
    "a2ff0100414e4d46280000000000000000000f00000f0000640000005650384c0f0000002f0fc003000710d1"
    "fffe0722a2ff0100");

/// Describes an image by its size and the RGBA values of a pixel; "nothing" if it cannot be read.
std::string Shown(const std::string& file, std::size_t pixel) {
    const ORVRef<ORVPixelImage> image(ReadMemoryModuleImage(file.data(), file.size()));
    if (!image) return "nothing";
    std::string text = std::to_string(image->GetWidth()) + "x" + std::to_string(image->GetHeight());
    for (std::size_t i = 0; i < 4; ++i) text += " " + std::to_string(image->GetPixels()[pixel * 4 + i]);
    return text;
}

TEST(ModuleImagesTest, GifAndWebPAreRead) {
    EXPECT_EQ(Shown(kGif, 0), "4x2 255 255 0 255");
    EXPECT_EQ(Shown(kGif, 1), "4x2 0 128 0 255");
    EXPECT_EQ(Shown(kGif, 7), "4x2 255 255 0 255");
    EXPECT_EQ(Shown(kLosslessWebP, 0), "4x2 255 255 0 255");
    EXPECT_EQ(Shown(kLosslessWebP, 5), "4x2 0 128 0 255");
}

TEST(ModuleImagesTest, OfAnAnimationTheFirstFrameIsShown) {
    EXPECT_EQ(Shown(kMovingWebP, 0), "16x16 0 128 0 255");
}

TEST(ModuleImagesTest, TheTransparentColourOfAGifIsNotPainted) {
    std::string file = kGif;
    file[file.find("\x21\xf9") + 3] = 1;  // sets the flag for a transparent colour: the first one
    EXPECT_EQ(Shown(file, 0), "4x2 255 255 0 255");
    EXPECT_EQ(Shown(file, 1), "4x2 0 0 0 0");
}

TEST(ModuleImagesTest, WhatIsNotWholeIsNotRead) {
    for (const std::string& file : {kGif, kLosslessWebP, kMovingWebP}) {
        EXPECT_EQ(Shown(file.substr(0, file.size() / 2), 0), "nothing") << file.size();
        EXPECT_EQ(Shown(file.substr(0, 8), 0), "nothing") << file.size();
    }
    EXPECT_EQ(Shown("GIF89a", 0), "nothing");
    EXPECT_EQ(Shown("", 0), "nothing");
}

TEST(ModuleImagesTest, ThePixelLimitHolds) {
    const std::uint64_t before = ORVPixelImage::GetPixelLimit();
    ORVPixelImage::SetPixelLimit(7);
    EXPECT_EQ(Shown(kGif, 0), "nothing");
    EXPECT_EQ(Shown(kLosslessWebP, 0), "nothing");
    ORVPixelImage::SetPixelLimit(before);
    EXPECT_NE(Shown(kGif, 0), "nothing");
}

}  // namespace
