// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/platform/visualization/written_images.h"
#include "tests/support/named_rows.h"

namespace {

using ColourSpace = ORVJpegSource::ColourSpace;
// values of libjpeg's J_COLOR_SPACE
constexpr int kGrey = 1, kRgb = 2, kYCbCr = 3, kCmyk = 4, kYcck = 5;
constexpr int kWidth = 20, kHeight = 12;

/// Smooth samples, which compression hardly changes.
ByteList SmoothSamples(int components) {
    ByteList samples;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            for (int component = 0; component < components; ++component)
                samples.push_back(static_cast<std::uint8_t>(40 + x * 5 + y * 3 + component * 20));
    return samples;
}

struct JpegCase {
    const char* name;
    int components, inputSpace, storedSpace;
    bool adobe, progressive;
    ColourSpace colourSpace;
};

class JpegColourTest : public testing::TestWithParam<JpegCase> {
protected:
    JpegToWrite Image() const {
        const JpegCase& one = GetParam();
        return {.width = kWidth,
                .height = kHeight,
                .components = one.components,
                .inputSpace = one.inputSpace,
                .storedSpace = one.storedSpace,
                .adobeMarker = one.adobe,
                .progressive = one.progressive,
                .samples = SmoothSamples(one.components)};
    }

    Rgba Expected() const {
        const ByteList samples = SmoothSamples(GetParam().components);
        const auto components = static_cast<std::size_t>(GetParam().components);
        Rgba pixels;
        for (std::size_t at = 0; at < samples.size(); at += components) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const double sample = samples[at + (components == 1 ? 0 : channel)];
                const double black = components == 4 ? samples[at + 3] : 0.0;
                const double light = !(components == 4) ? sample
                                     : GetParam().adobe ? sample * black / 255.0
                                                        : (255.0 - sample) * (255.0 - black) / 255.0;
                pixels.push_back(static_cast<std::uint8_t>(std::lround(light)));
            }
            pixels.push_back(255);
        }
        return pixels;
    }
};

TEST_P(JpegColourTest, GivesEveryPixel) {
    const auto image = ReadJpeg(WriteJpeg(Image()));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetWidth(), kWidth);
    EXPECT_EQ(image->GetHeight(), kHeight);
    EXPECT_FALSE(image->HasAlpha());
    const Rgba pixels = PixelsOf(image), expected = Expected();
    ASSERT_EQ(pixels.size(), expected.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) EXPECT_NEAR(pixels[i], expected[i], 4) << i;
}

TEST_P(JpegColourTest, KeepsTheFile) {
    const ByteList file = WriteJpeg(Image());
    ByteList surplus = file;
    surplus.insert(surplus.end(), {9, 8, 7});
    const auto image = ReadJpeg(surplus);
    ASSERT_TRUE(image);
    const ORVJpegSource* source = image->GetJpegSource();
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(ByteList(source->bytes.begin(), source->bytes.end()), file);
    EXPECT_EQ(source->componentCount, GetParam().components);
    EXPECT_EQ(source->colourSpace, GetParam().colourSpace);
    EXPECT_EQ(source->inverted, GetParam().components == 4 && GetParam().adobe);
}

TEST_P(JpegColourTest, IsNullWhenCutOff) {
    const ByteList file = WriteJpeg(Image());
    for (std::size_t size = 0; size + 8 < file.size(); ++size)
        EXPECT_FALSE(ReadJpeg(ByteList(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))))
            << size;
}

TEST_P(JpegColourTest, NeedsNoEndMark) {
    const ByteList file = WriteJpeg(Image());
    const Rgba pixels = PixelsOf(ReadJpeg(file));
    for (const std::size_t missing : {1u, 2u}) {
        const auto image =
            ReadJpeg(ByteList(file.begin(), file.end() - static_cast<std::ptrdiff_t>(missing)));
        ASSERT_TRUE(image) << missing;
        const auto bytes = image->GetJpegSource()->bytes;
        EXPECT_EQ(ByteList(bytes.begin(), bytes.end()), file);
        EXPECT_EQ(PixelsOf(image), pixels);
    }
}

TEST_P(JpegColourTest, PixelsComeBackAfterRelease) {
    const auto image = ReadJpeg(WriteJpeg(Image()));
    ASSERT_TRUE(image);
    const Rgba pixels = PixelsOf(image);
    image->ReleasePixels();
    EXPECT_EQ(PixelsOf(image), pixels);
}

INSTANTIATE_TEST_SUITE_P(
    Jpeg, JpegColourTest,
    testing::Values(JpegCase{"Grey", 1, kGrey, kGrey, false, false, ColourSpace::kGrey},
                    JpegCase{"YCbCr", 3, kRgb, kYCbCr, false, false, ColourSpace::kYCbCr},
                    JpegCase{"YCbCrProgressive", 3, kRgb, kYCbCr, false, true, ColourSpace::kYCbCr},
                    JpegCase{"GreyProgressive", 1, kGrey, kGrey, false, true, ColourSpace::kGrey},
                    JpegCase{"RgbWithMarker", 3, kRgb, kRgb, true, false, ColourSpace::kRGB},
                    JpegCase{"RgbByComponentNames", 3, kRgb, kRgb, false, false, ColourSpace::kRGB},
                    JpegCase{"CmykInverted", 4, kCmyk, kCmyk, true, false, ColourSpace::kCMYK},
                    JpegCase{"CmykPlain", 4, kCmyk, kCmyk, false, false, ColourSpace::kCMYK},
                    JpegCase{"YcckInverted", 4, kCmyk, kYcck, true, false, ColourSpace::kYCCK},
                    JpegCase{"YcckProgressive", 4, kCmyk, kYcck, true, true, ColourSpace::kYCCK}),
    kNameOfRow);

JpegToWrite SmallRgb() { return {.width = kWidth, .height = kHeight, .samples = SmoothSamples(3)}; }

/// Returns the offset of the height in the frame header.
std::size_t FindHeight(const ByteList& file) {
    for (std::size_t at = 0; at + 1 < file.size(); ++at)
        if (file[at] == 0xFF && file[at + 1] == 0xC0) return at + 5;
    return 0;
}

ByteList WithSize(ByteList file, unsigned width, unsigned height) {
    const std::size_t at = FindHeight(file);
    file[at] = static_cast<std::uint8_t>(height >> 8);
    file[at + 1] = static_cast<std::uint8_t>(height);
    file[at + 2] = static_cast<std::uint8_t>(width >> 8);
    file[at + 3] = static_cast<std::uint8_t>(width);
    return file;
}

TEST(JpegReaderTest, ResolutionIsKept) {
    JpegToWrite jpeg = SmallRgb();
    EXPECT_EQ(ReadJpeg(WriteJpeg(jpeg))->GetHorizontalResolution(), 0.0);
    jpeg.dotsPerInch = 254;
    EXPECT_DOUBLE_EQ(ReadJpeg(WriteJpeg(jpeg))->GetHorizontalResolution(), 10000.0);
}

TEST(JpegReaderTest, HeaderThatLiesAboutTheSizeGivesNull) {
    const ByteList file = WriteJpeg(SmallRgb());
    ASSERT_TRUE(ReadJpeg(WithSize(file, kWidth, kHeight)));
    EXPECT_FALSE(ReadJpeg(WithSize(file, kWidth, kHeight * 2)));
    EXPECT_FALSE(ReadJpeg(WithSize(file, 16000, 16000)));
    EXPECT_FALSE(ReadJpeg(WithSize(file, 65500, 65500)));
    EXPECT_FALSE(ReadJpeg(WithSize(file, 0, kHeight)));
}

TEST(JpegReaderTest, PixelLimitHolds) {
    const ByteList file = WriteJpeg(SmallRgb());
    {
        const PixelLimit limit(kWidth * kHeight - 1);
        EXPECT_FALSE(ReadJpeg(file));
    }
    const PixelLimit limit(kWidth * kHeight);
    EXPECT_TRUE(ReadJpeg(file));
}

TEST(JpegReaderTest, EndlessScansGiveNull) {
    const ByteList file =
        WriteJpeg({.width = kWidth, .height = kHeight, .progressive = true, .samples = SmoothSamples(3)});
    // Repeats the last scan, from its marker up to the end marker.
    std::size_t scan = file.size();
    while (!(file[scan - 2] == 0xFF && file[scan - 1] == 0xDA)) --scan;
    const auto begin = file.begin() + static_cast<std::ptrdiff_t>(scan) - 2;
    ByteList longer(file.begin(), file.end() - 2);
    for (int i = 0; i < 600; ++i) longer.insert(longer.end(), begin, file.end() - 2);
    longer.insert(longer.end(), {0xFF, 0xD9});
    EXPECT_FALSE(ReadJpeg(longer));
}

TEST(JpegReaderTest, MissingRestartMarkersGiveNull) {
    JpegToWrite jpeg = SmallRgb();
    jpeg.restartInterval = 1;
    ByteList file = WriteJpeg(jpeg);
    ASSERT_TRUE(ReadJpeg(file));
    for (std::size_t at = 0; at + 1 < file.size(); ++at) {
        if (file[at] != 0xFF || file[at + 1] < 0xD0 || file[at + 1] > 0xD7) continue;
        ByteList without = file;
        without.erase(without.begin() + static_cast<std::ptrdiff_t>(at),
                      without.begin() + static_cast<std::ptrdiff_t>(at) + 2);
        EXPECT_FALSE(ReadJpeg(without)) << at;
    }
}

TEST(JpegReaderTest, ColoursOfAnUnknownSpaceGiveNull) {
    constexpr int kUnknown = 0;
    EXPECT_FALSE(ReadJpeg(WriteJpeg({.width = kWidth,
                                     .height = kHeight,
                                     .components = 2,
                                     .inputSpace = kUnknown,
                                     .storedSpace = kUnknown,
                                     .samples = SmoothSamples(2)})));
}

TEST(JpegReaderTest, OtherBytesGiveNull) {
    EXPECT_FALSE(ReadJpeg({}));
    EXPECT_FALSE(ReadJpeg({0xFF, 0xD8}));
    EXPECT_FALSE(ReadJpeg({0xFF, 0xD8, 0xFF, 0xD9}));
    EXPECT_FALSE(ReadJpeg({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}));
    EXPECT_EQ(ReadMemoryJPEGPixelImage(nullptr, 0, 0), nullptr);
}

/// A grey image with the same scan `count` times. Only the number of scans may make it invalid.
ByteList WithScans(int count) {
    const ByteList file = WriteJpeg({.width = kWidth,
                                     .height = kHeight,
                                     .components = 1,
                                     .inputSpace = kGrey,
                                     .storedSpace = kGrey,
                                     .progressive = true,
                                     .samples = SmoothSamples(1)});
    // Keeps only the first scan; later ones refine it.
    const auto isMarker = [&](std::size_t at, int marker) {
        return file[at] == 0xFF && file[at + 1] == marker;
    };
    std::size_t start = 0;
    while (!isMarker(start, 0xDA)) ++start;
    std::size_t end = start + 2;
    while (!(file[end] == 0xFF && file[end + 1] != 0)) ++end;
    ByteList longer(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(end));
    for (int i = 1; i < count; ++i)
        longer.insert(longer.end(), file.begin() + static_cast<std::ptrdiff_t>(start),
                      file.begin() + static_cast<std::ptrdiff_t>(end));
    longer.insert(longer.end(), {0xFF, 0xD9});
    return longer;
}

TEST(JpegReaderTest, FiveHundredScansAreTheMost) {
    for (const int scans : {1, 10, 499}) EXPECT_TRUE(ReadJpeg(WithScans(scans))) << scans;
    for (const int scans : {502, 2000}) EXPECT_FALSE(ReadJpeg(WithScans(scans))) << scans;
}

}  // namespace
