// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/platform/visualization/written_images.h"
#include "tests/support/named_rows.h"

namespace {

constexpr int kGrey = 0, kRgb = 2, kPalette = 3, kGreyAlpha = 4, kRgbAlpha = 6;

/// Samples that differ from pixel to pixel and from channel to channel.
unsigned SampleAt(int depth, int x, int y, int channel) {
    const unsigned mixed = static_cast<unsigned>(x * 7919 + y * 104729 + channel * 31337 + 12345);
    return mixed % (1u << depth);
}

std::uint8_t ToEightBits(unsigned value, int depth) {
    const unsigned largest = (1u << depth) - 1;
    return static_cast<std::uint8_t>((value * 255 + largest / 2) / largest);
}

struct PngCase {
    std::string name;
    int colourType, depth;
    bool interlaced;
};

class PngColourTest : public testing::TestWithParam<PngCase> {
protected:
    static constexpr int kWidth = 13, kHeight = 11;

    PngToWrite Image() const {
        const int depth = GetParam().depth;
        return {.width = kWidth,
                .height = kHeight,
                .depth = depth,
                .colourType = GetParam().colourType,
                .interlaced = GetParam().interlaced,
                .sample = [depth](int x, int y, int channel) { return SampleAt(depth, x, y, channel); }};
    }

    Rgba Expected() const {
        const int depth = GetParam().depth, type = GetParam().colourType;
        Rgba pixels;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                const auto channel = [&](int number) {
                    return ToEightBits(SampleAt(depth, x, y, number), depth);
                };
                const bool isColour = type == kRgb || type == kRgbAlpha;
                for (int number = 0; number < 3; ++number) pixels.push_back(channel(isColour ? number : 0));
                pixels.push_back(type == kRgbAlpha ? channel(3) : type == kGreyAlpha ? channel(1) : 255);
            }
        return pixels;
    }
};

TEST_P(PngColourTest, GivesEveryPixel) {
    const auto image = ReadPng(WritePng(Image()));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetWidth(), kWidth);
    EXPECT_EQ(image->GetHeight(), kHeight);
    EXPECT_EQ(image->HasAlpha(), GetParam().colourType == kGreyAlpha || GetParam().colourType == kRgbAlpha);
    EXPECT_EQ(image->GetJpegSource(), nullptr);
    EXPECT_EQ(PixelsOf(image), Expected());
}

std::vector<PngCase> ColourCases() {
    std::vector<PngCase> cases;
    for (const bool interlaced : {false, true}) {
        const std::string ending = interlaced ? "Interlaced" : "";
        for (const int depth : {1, 2, 4, 8, 16})
            cases.push_back({"Grey" + std::to_string(depth) + ending, kGrey, depth, interlaced});
        for (const int depth : {8, 16}) {
            cases.push_back({"Rgb" + std::to_string(depth) + ending, kRgb, depth, interlaced});
            cases.push_back({"GreyAlpha" + std::to_string(depth) + ending, kGreyAlpha, depth, interlaced});
            cases.push_back({"RgbAlpha" + std::to_string(depth) + ending, kRgbAlpha, depth, interlaced});
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Png, PngColourTest, testing::ValuesIn(ColourCases()), kNameOfRow);

PngToWrite SmallRgb() {
    return {.width = 9, .height = 5, .colourType = kRgb, .sample = [](int x, int y, int channel) {
                return SampleAt(8, x, y, channel);
            }};
}

/// Returns the offset of the data of the only chunk of this type.
std::size_t FindChunk(const ByteList& file, std::string_view type) {
    const auto found = std::search(file.begin(), file.end(), type.begin(), type.end());
    return static_cast<std::size_t>(found - file.begin()) + 4;
}

std::uint32_t Crc(const std::uint8_t* bytes, std::size_t size) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
    }
    return ~crc;
}

void PutBigEndian(ByteList& file, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) file[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
}

/// Returns the file with another size in its header, and the header's checksum updated.
ByteList WithSize(ByteList file, std::uint32_t width, std::uint32_t height) {
    const std::size_t header = FindChunk(file, "IHDR");
    PutBigEndian(file, header, width);
    PutBigEndian(file, header + 4, height);
    PutBigEndian(file, header + 13, Crc(&file[header - 4], 17));
    return file;
}

TEST(PngReaderTest, PaletteWithTransparentColours) {
    PngToWrite palette{.width = 3,
                       .height = 1,
                       .depth = 2,
                       .colourType = kPalette,
                       .sample = [](int x, int, int) { return static_cast<unsigned>(x); },
                       .palette = {10, 20, 30, 40, 50, 60, 70, 80, 90},
                       .paletteAlpha = {0, 128}};
    const auto image = ReadPng(WritePng(palette));
    EXPECT_EQ(PixelsOf(image), (Rgba{10, 20, 30, 0, 40, 50, 60, 128, 70, 80, 90, 255}));
    EXPECT_TRUE(image->HasAlpha());

    palette.paletteAlpha = {};
    EXPECT_FALSE(ReadPng(WritePng(palette))->HasAlpha());
}

TEST(PngReaderTest, OneGreyMayBeTransparent) {
    const PngToWrite grey{.width = 3,
                          .height = 1,
                          .sample = [](int x, int, int) { return static_cast<unsigned>(x * 100); },
                          .transparentGrey = 100};
    EXPECT_EQ(PixelsOf(ReadPng(WritePng(grey))), (Rgba{0, 0, 0, 255, 100, 100, 100, 0, 200, 200, 200, 255}));
}

TEST(PngReaderTest, OpaqueAlphaChannelIsNoAlpha) {
    const PngToWrite opaque{
        .width = 2, .height = 2, .colourType = kRgbAlpha, .sample = [](int x, int, int channel) {
            return channel == 3 ? 255u : static_cast<unsigned>(x);
        }};
    EXPECT_FALSE(ReadPng(WritePng(opaque))->HasAlpha());
}

TEST(PngReaderTest, ResolutionIsKept) {
    PngToWrite png = SmallRgb();
    EXPECT_EQ(ReadPng(WritePng(png))->GetHorizontalResolution(), 0.0);
    png.pixelsPerMetre = 11811;
    const auto image = ReadPng(WritePng(png));
    EXPECT_EQ(image->GetHorizontalResolution(), 11811.0);
    EXPECT_EQ(image->GetVerticalResolution(), 11811.0);
}

TEST(PngReaderTest, EveryTruncationOfThePixelsGivesNull) {
    const ByteList file = WritePng(SmallRgb());
    const std::size_t endOfPixels = FindChunk(file, "IEND") - 8;
    for (std::size_t size = 0; size < endOfPixels; ++size)
        EXPECT_FALSE(ReadPng(ByteList(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))))
            << size;
}

TEST(PngReaderTest, SurplusBytesAndAMissingEndMarkDoNoHarm) {
    ByteList file = WritePng(SmallRgb());
    const Rgba pixels = PixelsOf(ReadPng(file));
    ASSERT_FALSE(pixels.empty());
    file.insert(file.end(), {1, 2, 3});
    EXPECT_EQ(PixelsOf(ReadPng(file)), pixels);
    file.resize(FindChunk(file, "IEND") - 8);
    EXPECT_EQ(PixelsOf(ReadPng(file)), pixels);
}

TEST(PngReaderTest, EveryFlippedBitOfThePixelsGivesNull) {
    const ByteList file = WritePng(SmallRgb());
    for (std::size_t at = FindChunk(file, "IDAT"); at < FindChunk(file, "IEND") - 8; ++at) {
        ByteList broken = file;
        broken[at] ^= 0x10;
        EXPECT_FALSE(ReadPng(broken)) << at;
    }
}

TEST(PngReaderTest, HeaderThatLiesAboutTheSizeGivesNull) {
    const ByteList file = WritePng(SmallRgb());
    ASSERT_TRUE(ReadPng(WithSize(file, 9, 5)));
    for (const auto& [width, height] : {std::pair{9u, 6u},
                                        {10u, 5u},
                                        {16000u, 16000u},
                                        {0u, 5u},
                                        {0x7FFFFFFFu, 1u},
                                        {0x7FFFFFFFu, 0x7FFFFFFFu},
                                        {0xFFFFFFFFu, 1u}})
        EXPECT_FALSE(ReadPng(WithSize(file, width, height))) << width << " x " << height;
}

TEST(PngReaderTest, PixelLimitHolds) {
    const ByteList file = WritePng(SmallRgb());
    {
        const PixelLimit limit(44);
        EXPECT_FALSE(ReadPng(file));
    }
    const PixelLimit limit(45);
    EXPECT_TRUE(ReadPng(file));
}

TEST(PngReaderTest, OtherBytesGiveNull) {
    EXPECT_FALSE(ReadPng({}));
    EXPECT_FALSE(ReadPng({'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(ReadPng({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}));
    EXPECT_EQ(ReadMemoryPNGPixelImage(nullptr, 0, 0), nullptr);
}

TEST(PngReaderTest, NoMemoryIsAskedForWhatAFileCannotHold) {
    const ByteList file = WritePng(SmallRgb());
    const PixelLimit limit(std::uint64_t{1} << 62U);
    // An attempt to allocate that much memory would be reported as out of memory.
    EXPECT_FALSE(ReadPng(WithSize(file, 20000, 0x7FFFFFFF)));
    EXPECT_FALSE(ORVPixelImage::RanOutOfMemory());
}

TEST(PngReaderTest, AResolutionInNoUnitIsNone) {
    PngToWrite png = SmallRgb();
    png.pixelsPerMetre = 11811;
    ByteList file = WritePng(png);
    const std::size_t chunk = FindChunk(file, "pHYs");
    file[chunk + 8] = 0;
    PutBigEndian(file, chunk + 9, Crc(&file[chunk - 4], 13));
    const auto image = ReadPng(file);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetHorizontalResolution(), 0.0);
}

}  // namespace
