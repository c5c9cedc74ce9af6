// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstdint>
#include <utility>

#include <gtest/gtest.h>

#include "tests/platform/visualization/written_images.h"

namespace {

constexpr std::uint32_t kRle8 = 1, kRle4 = 2, kBitFields = 3;

const ByteList kTwoColours = {0, 0, 255, 0, 0, 255, 0, 0};  // red, green, as BGR0

/// Four colours: black, red, green, blue.
const ByteList kFourColours = {0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};
const Rgba kBlack{0, 0, 0, 255}, kRed{255, 0, 0, 255}, kGreen{0, 255, 0, 255}, kBlue{0, 0, 255, 255},
    kNothing{0, 0, 0, 0};

Rgba Join(std::initializer_list<Rgba> pixels) {
    Rgba all;
    for (const Rgba& pixel : pixels) all.insert(all.end(), pixel.begin(), pixel.end());
    return all;
}

TEST(BmpReaderTest, OneBit) {
    const auto image =
        ReadBmp(BmpToWrite::Info(3, 2, 1, 0, 2).Append(kTwoColours).With({0x40, 0, 0, 0, 0xA0, 0, 0, 0}));
    EXPECT_EQ(PixelsOf(image), Join({kGreen, kRed, kGreen, kRed, kGreen, kRed}));
    EXPECT_FALSE(image->HasAlpha());
}

TEST(BmpReaderTest, FourBits) {
    const ByteList file = BmpToWrite::Info(3, 1, 4, 0, 4).Append(kFourColours).With({0x12, 0x30, 0, 0});
    EXPECT_EQ(PixelsOf(ReadBmp(file)), Join({kRed, kGreen, kBlue}));
}

TEST(BmpReaderTest, EightBitsAndAnIndexPastThePalette) {
    const ByteList file = BmpToWrite::Info(3, 1, 8, 0, 4).Append(kFourColours).With({1, 3, 200, 0});
    EXPECT_EQ(PixelsOf(ReadBmp(file)), Join({kRed, kBlue, kBlack}));
}

TEST(BmpReaderTest, SixteenBitsHaveFiveForEachColour) {
    const ByteList file = BmpToWrite::Info(3, 1, 16).With({0x00, 0x7C, 0xE0, 0x03, 0x1F, 0x00, 0, 0});
    EXPECT_EQ(PixelsOf(ReadBmp(file)), Join({kRed, kGreen, kBlue}));
}

TEST(BmpReaderTest, SixteenBitsWithMasks) {
    const ByteList file = BmpToWrite::Info(2, 1, 16, kBitFields)
                              .U32(0xF800)
                              .U32(0x07E0)
                              .U32(0x001F)
                              .With({0x00, 0xF8, 0xE0, 0x07});
    EXPECT_EQ(PixelsOf(ReadBmp(file)), Join({kRed, kGreen}));
}

TEST(BmpReaderTest, TwentyFourBitsFromBelow) {
    const ByteList file = BmpToWrite::Info(1, 2, 24).With({255, 0, 0, 0, 0, 0, 255, 0});
    EXPECT_EQ(PixelsOf(ReadBmp(file)), Join({kRed, kBlue}));
}

TEST(BmpReaderTest, NegativeHeightIsFromAbove) {
    const ByteList file = BmpToWrite::Info(1, -2, 24).With({255, 0, 0, 0, 0, 0, 255, 0});
    EXPECT_EQ(PixelsOf(ReadBmp(file)), Join({kBlue, kRed}));
}

TEST(BmpReaderTest, ThirtyTwoBitsHaveNoAlphaByThemselves) {
    const auto image = ReadBmp(BmpToWrite::Info(2, 1, 32).With({0, 0, 255, 7, 0, 255, 0, 0}));
    EXPECT_EQ(PixelsOf(image), Join({kRed, kGreen}));
    EXPECT_FALSE(image->HasAlpha());
}

/// A 108-byte header for pixels of 32 bits, with masks for the colours and alpha.
BmpToWrite HeaderWithAlphaMask(int width) {
    BmpToWrite bmp;
    bmp.U32(108).U32(static_cast<std::uint32_t>(width)).U32(1).U16(1).U16(32).U32(kBitFields).U32(0);
    bmp.U32(0).U32(0).U32(0).U32(0).U32(0x00FF0000).U32(0x0000FF00).U32(0x000000FF).U32(0xFF000000);
    return bmp.Append(ByteList(108 - 56, 0));
}

TEST(BmpReaderTest, AlphaMaskGivesAlpha) {
    const auto image = ReadBmp(HeaderWithAlphaMask(2).With({0, 0, 255, 128, 0, 255, 0, 255}));
    EXPECT_EQ(PixelsOf(image), (Rgba{255, 0, 0, 128, 0, 255, 0, 255}));
    EXPECT_TRUE(image->HasAlpha());
}

TEST(BmpReaderTest, AlphaThatIsNeverSetMeansOpaque) {
    const auto image = ReadBmp(HeaderWithAlphaMask(2).With({0, 0, 255, 0, 0, 255, 0, 0}));
    EXPECT_EQ(PixelsOf(image), Join({kRed, kGreen}));
    EXPECT_FALSE(image->HasAlpha());
}

TEST(BmpReaderTest, TenBitsAColour) {
    const ByteList file = BmpToWrite::Info(1, 1, 32, kBitFields)
                              .U32(0x3FF00000)
                              .U32(0x000FFC00)
                              .U32(0x000003FF)
                              .With({0xFF, 0x03, 0x08, 0x20});  // blue 1023, green 512, red 512
    EXPECT_EQ(PixelsOf(ReadBmp(file)), (Rgba{128, 128, 255, 255}));
}

TEST(BmpReaderTest, MasksWithHolesGiveNull) {
    EXPECT_FALSE(
        ReadBmp(BmpToWrite::Info(1, 1, 32, kBitFields).U32(0xF0F0).U32(0).U32(0).With({0, 0, 0, 0})));
}

TEST(BmpReaderTest, CoreHeader) {
    BmpToWrite bmp;
    bmp.U32(12).U16(2).U16(1).U16(1).U16(1).Append({0, 0, 255, 0, 255, 0});
    EXPECT_EQ(PixelsOf(ReadBmp(bmp.With({0x40, 0, 0, 0}))), Join({kRed, kGreen}));
}

TEST(BmpReaderTest, ResolutionIsKept) {
    const auto image = ReadBmp(BmpToWrite::Info(1, 1, 24).With({0, 0, 0}));
    EXPECT_EQ(image->GetHorizontalResolution(), 2835.0);
    EXPECT_EQ(image->GetVerticalResolution(), 3780.0);
}

TEST(BmpReaderTest, RunsOfEightBits) {
    // A run of two red pixels, then three literal pixels. Next row: one pixel skipped, then a run that is
    // longer than the row.
    const ByteList runs = {2, 1, 0, 3, 2, 3, 1, 0, 0, 0, 0, 2, 1, 0, 9, 2, 0, 1};
    const auto image = ReadBmp(BmpToWrite::Info(5, 2, 8, kRle8, 4).Append(kFourColours).With(runs));
    EXPECT_EQ(PixelsOf(image),
              Join({kNothing, kGreen, kGreen, kGreen, kGreen, kRed, kRed, kGreen, kBlue, kRed}));
    EXPECT_TRUE(image->HasAlpha());
}

TEST(BmpReaderTest, RunsOfFourBitsAlternate) {
    const ByteList runs = {3, 0x12, 0, 3, 0x31, 0x20, 0, 1};
    const auto image = ReadBmp(BmpToWrite::Info(6, 1, 4, kRle4, 4).Append(kFourColours).With(runs));
    EXPECT_EQ(PixelsOf(image), Join({kRed, kGreen, kRed, kBlue, kRed, kGreen}));
    EXPECT_FALSE(image->HasAlpha());
}

TEST(BmpReaderTest, RunsThatBreakOffGiveNull) {
    const auto file = [](const ByteList& runs) {
        return BmpToWrite::Info(4, 2, 8, kRle8, 4).Append(kFourColours).With(runs);
    };
    EXPECT_TRUE(ReadBmp(file({4, 1, 0, 0, 4, 2})));  // complete, though without an end marker
    EXPECT_FALSE(ReadBmp(file({4, 1, 0, 0, 3, 2})));
    EXPECT_FALSE(ReadBmp(file({4, 1, 0, 0})));
    EXPECT_FALSE(ReadBmp(file({4, 1, 0, 4, 1, 1})));
    EXPECT_FALSE(ReadBmp(file({4, 1, 0, 2, 1})));
    EXPECT_FALSE(ReadBmp(file({4, 1, 0, 2, 0, 9, 4, 1, 0, 1})));
    EXPECT_FALSE(ReadBmp(file({4, 1, 0, 0, 4, 1, 0, 0, 4, 1, 0, 1})));
}

TEST(BmpReaderTest, EveryTruncationOfThePixelsGivesNull) {
    const ByteList file = BmpToWrite::Info(3, 2, 24).With(ByteList(24, 77));
    for (std::size_t size = 0; size < file.size() - 3; ++size)
        EXPECT_FALSE(ReadBmp(ByteList(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))))
            << size;
    EXPECT_TRUE(ReadBmp(ByteList(file.begin(), file.end() - 3)));  // only padding of the last row is missing
    ByteList surplus = file;
    surplus.push_back(1);
    EXPECT_TRUE(ReadBmp(surplus));
}

TEST(BmpReaderTest, HeadersThatLieGiveNull) {
    const ByteList pixels(64, 1);
    EXPECT_TRUE(ReadBmp(BmpToWrite::Info(4, 4, 24).With(pixels)));
    for (const auto& [width, height] :
         {std::pair{16000, 16000}, {0, 4}, {4, 0}, {-4, 4}, {0x7FFFFFFF, 0x7FFFFFFF}, {4, -0x7FFFFFFF - 1}})
        EXPECT_FALSE(ReadBmp(BmpToWrite::Info(width, height, 24).With(pixels))) << width << " x " << height;
    EXPECT_FALSE(ReadBmp(BmpToWrite::Info(1, 1, 7).With(pixels)));
    EXPECT_FALSE(ReadBmp(BmpToWrite::Info(1, 1, 24, kRle8).With(pixels)));
    EXPECT_FALSE(ReadBmp(BmpToWrite::Info(1, 1, 24, 77).With(pixels)));
    EXPECT_FALSE(ReadBmp(BmpToWrite::Info(1, 1, 8).With({0})));  // the palette of 256 colours is missing
}

TEST(BmpReaderTest, PixelLimitHolds) {
    const ByteList file = BmpToWrite::Info(3, 2, 24).With(ByteList(24, 77));
    const PixelLimit limit(5);
    EXPECT_FALSE(ReadBmp(file));
}

// In the 64-byte headers of OS/2, the code of bit fields stands for another compression.
TEST(BmpReaderTest, CodesOfOs2AreNoBitFields) {
    for (const std::uint32_t size : {64U, 52U}) {
        BmpToWrite bmp;
        bmp.U32(size).U32(1).U32(1).U16(1).U16(32).U32(kBitFields).U32(0).U32(0).U32(0).U32(0).U32(0);
        bmp.U32(0x00FF0000).U32(0x0000FF00).U32(0x000000FF).Append(ByteList(size - 52, 0));
        EXPECT_EQ(static_cast<bool>(ReadBmp(bmp.With({0, 0, 255, 0}))), size == 52U) << size;
    }
}

TEST(BmpReaderTest, OtherBytesGiveNull) {
    EXPECT_FALSE(ReadBmp({}));
    EXPECT_FALSE(ReadBmp({'B', 'M'}));
    EXPECT_FALSE(ReadBmp(ByteList(100, 0xFF)));
    EXPECT_EQ(ReadMemBMPPixelImage(nullptr, 0, 0), nullptr);
}

TEST(BmpReaderTest, FiveBitsAreRoundedToTheNearestOfEight) {
    for (unsigned value = 0; value < 32; ++value) {
        const ByteList file = BmpToWrite::Info(1, 1, 16).With(
            {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value << 2), 0, 0});
        const Rgba pixels = PixelsOf(ReadBmp(file));
        ASSERT_EQ(pixels.size(), 4U);
        const auto nearest = static_cast<std::uint8_t>(std::lround(value * 255.0 / 31.0));
        EXPECT_EQ(pixels[0], nearest) << value;
        EXPECT_EQ(pixels[2], nearest) << value;
    }
}

TEST(BmpReaderTest, RunLengthsFromAboveAreNone) {
    const ByteList red = {1, 1, 0, 1};
    EXPECT_EQ(PixelsOf(ReadBmp(BmpToWrite::Info(1, 1, 8, kRle8, 4).Append(kFourColours).With(red))), kRed);
    EXPECT_FALSE(ReadBmp(BmpToWrite::Info(1, -1, 8, kRle8, 4).Append(kFourColours).With(red)));
    EXPECT_FALSE(ReadBmp(BmpToWrite::Info(1, -1, 4, kRle4, 4).Append(kFourColours).With({1, 0x10, 0, 1})));
}

}  // namespace
