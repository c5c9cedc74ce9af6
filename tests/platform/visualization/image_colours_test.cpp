// SPDX-License-Identifier: Apache-2.0

// Colour spaces and orientation as stated in image files.

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "tests/platform/visualization/written_images.h"
#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"
#include "tests/support/sample_profiles.h"

namespace {

constexpr int kGrey = 0, kRgb = 2, kGreyAlpha = 4, kRgbAlpha = 6;

std::string AsText(const ByteList& bytes) { return {bytes.begin(), bytes.end()}; }
ByteList AsBytes(const std::string& text) { return {text.begin(), text.end()}; }

std::string BigEndian(std::initializer_list<std::uint32_t> numbers) {
    std::string text;
    for (const std::uint32_t number : numbers)
        for (const unsigned shift : {24U, 16U, 8U, 0U}) text += static_cast<char>(number >> shift);
    return text;
}

// ---- PNG ----

/// A PNG of one pixel with this colour type and these samples.
std::string Pixel(int type, std::vector<unsigned> samples, int depth = 8) {
    return AsText(WritePng({.depth = depth, .colourType = type, .sample = [&](int, int, int channel) {
                                return samples[static_cast<std::size_t>(channel)];
                            }}));
}

/// The content of an iCCP chunk with this profile.
std::string Packed(const std::string& profile) {
    uLongf size = compressBound(profile.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(profile.data()),
             profile.size());
    return std::string("name\0\0", 6) + packed.substr(0, size);
}

const std::string kUsualGamma = BigEndian({45455}), kLinear = BigEndian({100000});
const std::string kUsualPrimaries = BigEndian({31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000});
const std::string kSwappedPrimaries = BigEndian({31270, 32900, 15000, 6000, 30000, 60000, 64000, 33000});

struct Chunk {
    const char* type;
    std::string data;
};

struct PngRow {
    std::string name;
    std::vector<Chunk> chunks;
    int type;
    std::vector<unsigned> samples;
    Rgba expected;
    ORVImageRemark remark = ORVImageRemark::kNone;
    int tolerance = 0;
    int depth = 8;
};

class PngColoursTest : public testing::TestWithParam<PngRow> {};

TEST_P(PngColoursTest, BecomeThoseOfSrgb) {
    const PngRow& row = GetParam();
    std::string file = Pixel(row.type, row.samples, row.depth);
    for (auto chunk = row.chunks.rbegin(); chunk != row.chunks.rend(); ++chunk)
        file = WithPngChunk(file, chunk->type, chunk->data);
    const auto image = ReadPng(AsBytes(file));
    ASSERT_TRUE(image);
    const Rgba pixels = PixelsOf(image);
    ASSERT_EQ(pixels.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(pixels[i], row.expected[i], row.tolerance) << i;
    EXPECT_EQ(image->GetRemark(), row.remark);
    EXPECT_EQ(image->HasAlpha(), row.expected[3] != 255);
}

std::vector<PngRow> PngRows() {
    const std::vector<unsigned> samples{200, 100, 50, 128}, grey{55, 128};
    const Rgba same{200, 100, 50, 255}, swapped{50, 100, 200, 255};
    using enum ORVImageRemark;
    const std::string swap = Packed(SwappedProfile());
    std::string damaged = SwappedProfile();
    damaged[36] = 'x';  // in the signature
    return {
        {"Untagged", {}, kRgb, samples, same},
        {"SrgbChunk", {{"sRGB", std::string(1, '\0')}}, kRgb, samples, same},
        {"SrgbProfile", {{"iCCP", Packed(SrgbProfile())}}, kRgb, samples, same},
        {"Profile", {{"iCCP", swap}}, kRgb, samples, swapped, kNone, 1},
        {"ProfileWithAlpha", {{"iCCP", swap}}, kRgbAlpha, samples, {50, 100, 200, 128}, kNone, 1},
        {"ProfileOf16Bits", {{"iCCP", swap}}, kRgb, {51400, 25700, 12850}, swapped, kNone, 1, 16},
        {"GreyProfile", {{"iCCP", Packed(LinearGreyProfile())}}, kGrey, grey, {128, 128, 128, 255}, kNone, 1},
        {"GreyProfileWithAlpha",
         {{"iCCP", Packed(LinearGreyProfile())}},
         kGreyAlpha,
         grey,
         {128, 128, 128, 128},
         kNone,
         1},
        {"ProfileOfOtherPixels",
         {{"iCCP", Packed(LinearGreyProfile())}},
         kRgb,
         samples,
         same,
         kBrokenProfile},
        {"DamagedProfile", {{"iCCP", Packed(damaged)}}, kRgb, samples, same, kBrokenProfile},
        {"ProfileThatDoesNotUnpack",
         {{"iCCP", swap.substr(0, swap.size() / 2)}},
         kRgb,
         samples,
         same,
         kBrokenProfile},
        {"ProfileWithoutAnything", {{"iCCP", "name"}}, kRgb, samples, same, kBrokenProfile},
        {"ProfileTooLong",
         {{"iCCP", Packed(SwappedProfile() + std::string(9U << 20U, 'x'))}},
         kRgb,
         samples,
         same,
         kBrokenProfile},
        {"UsualGamma", {{"gAMA", kUsualGamma}, {"cHRM", kUsualPrimaries}}, kRgb, samples, same},
        {"GammaOfLight", {{"gAMA", kLinear}}, kRgb, {55, 55, 55}, {128, 128, 128, 255}, kNone, 1},
        {"GammaOfGreys", {{"gAMA", kLinear}}, kGrey, grey, {128, 128, 128, 255}, kNone, 1},
        {"GammaOfNothing", {{"gAMA", BigEndian({0})}}, kRgb, samples, same},
        {"GammaBeyondAll", {{"gAMA", BigEndian({0xFFFFFFFF})}}, kRgb, samples, same},
        {"Primaries", {{"gAMA", kUsualGamma}, {"cHRM", kSwappedPrimaries}}, kRgb, samples, swapped, kNone, 1},
        // Only the red primary differs from that of sRGB, but by enough to be converted.
        {"PrimariesNearThoseOfSrgb",
         {{"cHRM", BigEndian({31270, 32900, 68000, 32000, 30000, 60000, 15000, 6000})}},
         kRgb,
         samples,
         {200, 94, 42, 255},
         kNone,
         2},
        {"PrimariesThatAreRounded",
         {{"cHRM", BigEndian({31000, 33000, 64000, 33000, 30000, 60000, 15000, 6000})}},
         kRgb,
         samples,
         same},
        {"PrimariesWithoutGamma", {{"cHRM", kSwappedPrimaries}}, kRgb, samples, swapped, kNone, 1},
        {"PrimariesOfGreys", {{"cHRM", kSwappedPrimaries}}, kGrey, {100}, {100, 100, 100, 255}},
        {"PrimariesOfNothing", {{"cHRM", std::string(32, '\0')}}, kRgb, samples, same},
        {"PrimariesOnALine",
         {{"cHRM", BigEndian({31270, 32900, 10000, 10000, 20000, 20000, 30000, 30000})}},
         kRgb,
         samples,
         same,
         kBrokenProfile},
        {"SrgbBeforeGamma", {{"sRGB", std::string(1, '\0')}, {"gAMA", kLinear}}, kRgb, samples, same},
        {"ProfileBeforeGamma", {{"iCCP", swap}, {"gAMA", kLinear}}, kRgb, samples, swapped, kNone, 1},
        {"CodePointsOfSrgb", {{"cICP", {1, 13, 0, 1}}, {"gAMA", kLinear}}, kRgb, samples, same},
        {"OtherCodePoints", {{"cICP", {9, 16, 0, 1}}}, kRgb, samples, same, kOtherColours},
        {"Upright", {{"eXIf", SampleExif(1)}}, kRgb, samples, same},
        {"Turned", {{"eXIf", SampleExif(6)}}, kRgb, samples, same, kNotTurned},
    };
}
INSTANTIATE_TEST_SUITE_P(Rows, PngColoursTest, testing::ValuesIn(PngRows()), kNameOfRow);

TEST(ImageColoursTest, AChunkWithAWrongChecksumCountsAsAbsent) {
    const std::string plain = Pixel(kRgb, {200, 100, 50});
    std::string gamma = WithPngChunk(plain, "gAMA", kLinear);
    gamma[33 + 8] ^= 1;
    EXPECT_EQ(PixelsOf(ReadPng(AsBytes(gamma))), (Rgba{200, 100, 50, 255}));
    std::string profile = WithPngChunk(plain, "iCCP", Packed(SwappedProfile()));
    profile[33 + 20] ^= 1;
    const auto image = ReadPng(AsBytes(profile));
    EXPECT_EQ(PixelsOf(image), (Rgba{200, 100, 50, 255}));
    EXPECT_EQ(image->GetRemark(), ORVImageRemark::kBrokenProfile);
}

// Large images are converted by an interpolated table, small ones exactly. Large ones are decoded again from
// the file after their pixels have been released.
TEST(ImageColoursTest, LargeImagesAreConvertedAsSmallOnesAre) {
    const std::string large = AsText(
        WritePng({.width = 600, .height = 600, .colourType = kRgb, .sample = [](int x, int y, int channel) {
                      return static_cast<unsigned>((x / 30 * 12 + y / 30 * 5 * channel) % 256);
                  }}));
    const auto plain = ReadPng(AsBytes(large));
    const auto image = ReadPng(AsBytes(WithPngChunk(large, "iCCP", Packed(SwappedProfile()))));
    ASSERT_TRUE(plain && image);
    const Rgba before = PixelsOf(plain), after = PixelsOf(image);
    ASSERT_EQ(before.size(), after.size());
    int greatest = 0;
    for (std::size_t i = 0; i < before.size(); i += 4)
        for (std::size_t channel = 0; channel < 3; ++channel)
            greatest = std::max(greatest, std::abs(before[i + channel] - after[i + 2 - channel]));
    EXPECT_LE(greatest, 2);
    image->ReleasePixels();
    EXPECT_EQ(PixelsOf(image), after);
}

TEST(ImageColoursTest, ProfilesOfBitmapsAreRemarked) {
    for (const auto& [space, remark] : {std::pair{0x4D424544U, ORVImageRemark::kOtherColours},
                                        std::pair{0x4C494E4BU, ORVImageRemark::kOtherColours},
                                        std::pair{0x73524742U, ORVImageRemark::kNone}}) {
        BmpToWrite bmp;
        bmp.U32(124).U32(1).U32(1).U16(1).U16(24).U32(0).U32(0).U32(0).U32(0).U32(0).U32(0);
        bmp.U32(0).U32(0).U32(0).U32(0).U32(space).Append(ByteList(64));
        const auto image = ReadBmp(bmp.With({1, 2, 3, 0}));
        ASSERT_TRUE(image);
        EXPECT_EQ(image->GetRemark(), remark);
    }
}

// ---- JPEG ----

constexpr int kJpegGrey = 1, kJpegRgb = 2, kJpegYCbCr = 3, kJpegCmyk = 4, kJpegYcck = 5;

/// A JPEG of 8 x 8 pixels of one colour.
std::string JpegOf(const ByteList& colour, int input, int stored, bool adobe = false) {
    JpegToWrite jpeg{.width = 8,
                     .height = 8,
                     .components = static_cast<int>(colour.size()),
                     .inputSpace = input,
                     .storedSpace = stored,
                     .adobeMarker = adobe};
    for (int i = 0; i < 64; ++i) jpeg.samples.insert(jpeg.samples.end(), colour.begin(), colour.end());
    return AsText(WriteJpeg(jpeg));
}

std::string ProfilePiece(unsigned number, unsigned count, const std::string& bytes) {
    return std::string("ICC_PROFILE\0", 12) + static_cast<char>(number) + static_cast<char>(count) + bytes;
}
constexpr unsigned char kApp1 = 0xE1, kApp2 = 0xE2;

/// Adds a profile to a JPEG, in this number of segments, the last part of the profile first.
std::string WithProfile(std::string jpeg, const std::string& profile, unsigned pieces = 1) {
    const std::size_t size = (profile.size() + pieces - 1) / pieces;
    for (unsigned i = 0; i < pieces; ++i)
        jpeg = WithJpegSegment(jpeg, kApp2, ProfilePiece(i + 1, pieces, profile.substr(i * size, size)));
    return jpeg;
}

void ExpectColour(const std::string& jpeg, const Rgba& expected, const char* what) {
    const auto image = ReadJpeg(AsBytes(jpeg));
    ASSERT_TRUE(image) << what;
    EXPECT_EQ(image->GetRemark(), ORVImageRemark::kNone) << what;
    for (int round = 0; round < 2; ++round, image->ReleasePixels()) {
        const Rgba pixels = PixelsOf(image);
        ASSERT_EQ(pixels.size(), 256U) << what;
        for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(pixels[i], expected[i], 3) << what << i;
    }
}

TEST(ImageColoursTest, ProfilesOfJpegAreFollowed) {
    const std::string rgb = JpegOf({200, 100, 50}, kJpegRgb, kJpegYCbCr);
    for (const unsigned pieces : {1U, 2U, 7U})
        ExpectColour(WithProfile(rgb, SwappedProfile(), pieces), {50, 100, 200, 255}, "in pieces");
    ExpectColour(WithProfile(JpegOf({200, 100, 50}, kJpegRgb, kJpegRgb, true), SwappedProfile()),
                 {50, 100, 200, 255}, "stored as RGB");
    ExpectColour(WithProfile(JpegOf({55}, kJpegGrey, kJpegGrey), LinearGreyProfile()), {128, 128, 128, 255},
                 "grey");
}

TEST(ImageColoursTest, InksOfJpegAreConverted) {
    // Without Adobe's marker, a sample is the amount of ink; with it, the samples are inverted.
    ExpectColour(WithProfile(JpegOf({255, 0, 0, 0}, kJpegCmyk, kJpegCmyk), RedInkProfile()), {255, 0, 0, 255},
                 "all of the ink");
    ExpectColour(WithProfile(JpegOf({0, 255, 255, 255}, kJpegCmyk, kJpegCmyk), RedInkProfile()),
                 {255, 255, 255, 255}, "inks that do not print");
    ExpectColour(WithProfile(JpegOf({0, 255, 255, 255}, kJpegCmyk, kJpegCmyk, true), RedInkProfile()),
                 {255, 0, 0, 255}, "the other way round");
    ExpectColour(WithProfile(JpegOf({0, 255, 255, 255}, kJpegCmyk, kJpegYcck, true), RedInkProfile()),
                 {255, 0, 0, 255}, "stored with a transform");
}

TEST(ImageColoursTest, AFileOfSrgbIsGivenOnAndAnyOtherIsNot) {
    const std::string rgb = JpegOf({200, 100, 50}, kJpegRgb, kJpegYCbCr);
    const auto plain = ReadJpeg(AsBytes(rgb)), tagged = ReadJpeg(AsBytes(WithProfile(rgb, SrgbProfile()))),
               swapped = ReadJpeg(AsBytes(WithProfile(rgb, SwappedProfile())));
    ASSERT_TRUE(plain && tagged && swapped);
    EXPECT_NE(tagged->GetJpegSource(), nullptr);
    EXPECT_EQ(PixelsOf(tagged), PixelsOf(plain));
    EXPECT_EQ(swapped->GetJpegSource(), nullptr);
    EXPECT_EQ(swapped->GetTurnedJpegSource(), nullptr);
}

TEST(ImageColoursTest, ABrokenProfileOfJpegIsRemarkedAndLeftAside) {
    const std::string rgb = JpegOf({200, 100, 50}, kJpegRgb, kJpegYCbCr), profile = SwappedProfile();
    const auto piece = [&](unsigned number, unsigned count) { return ProfilePiece(number, count, profile); };
    const std::vector<std::vector<std::string>> broken{
        {piece(2, 2)},
        {piece(1, 1), piece(1, 1)},
        {piece(1, 2), piece(2, 3)},
        // Together they are the whole profile, but they disagree on the number of segments.
        {ProfilePiece(2, 3, profile.substr(99)), ProfilePiece(1, 2, profile.substr(0, 99))},
        {piece(0, 1)},
        {piece(2, 1)},
        {ProfilePiece(1, 1, "")},
        {std::string("ICC_PROFILE\0", 12)},
        {ProfilePiece(1, 1, "nothing of the kind")},
        {ProfilePiece(1, 1, LinearGreyProfile())},
        {ProfilePiece(1, 1, profile.substr(0, profile.size() / 2))},
    };
    const Rgba pixels = PixelsOf(ReadJpeg(AsBytes(rgb)));
    for (std::size_t i = 0; i < broken.size(); ++i) {
        std::string jpeg = rgb;
        for (const std::string& segment : broken[i]) jpeg = WithJpegSegment(jpeg, kApp2, segment);
        const auto image = ReadJpeg(AsBytes(jpeg));
        ASSERT_TRUE(image) << i;
        EXPECT_EQ(image->GetRemark(), ORVImageRemark::kBrokenProfile) << i;
        EXPECT_EQ(PixelsOf(image), pixels) << i;
        EXPECT_NE(image->GetJpegSource(), nullptr) << i;
    }
}

// A damaged profile never prevents an image from being read; it may only change the colours.
TEST(ImageColoursTest, AnyBytesMayBeAProfile) {
    std::mt19937 random(7);
    const std::string rgb = JpegOf({200, 100, 50}, kJpegRgb, kJpegYCbCr),
                      inks = JpegOf({255, 0, 0, 0}, kJpegCmyk, kJpegCmyk);
    for (const auto& [jpeg, profile] : {std::pair{rgb, SwappedProfile()}, std::pair{inks, RedInkProfile()}})
        for (int i = 0; i < 400; ++i) {
            std::string changed = profile;
            for (int change = 0; change < 4; ++change)
                changed[random() % std::min<std::size_t>(changed.size(), 600)] = static_cast<char>(random());
            const auto image = ReadJpeg(AsBytes(WithProfile(jpeg, changed)));
            ASSERT_TRUE(image) << i;
            ASSERT_EQ(PixelsOf(image).size(), 256U) << i;
        }
}

// ---- orientation ----

/// RGBA pixels with their dimensions.
struct Picture {
    int width, height;
    Rgba pixels;
    const std::uint8_t* At(int x, int y) const {
        return &pixels[static_cast<std::size_t>(4 * (y * width + x))];
    }
};

/// Makes an image of another size, with the pixels of another image that `pixel` returns for each position.
Picture Make(const Picture& from, int width, int height,
             const std::function<const std::uint8_t*(int, int)>& pixel) {
    Picture made{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) made.pixels.insert(made.pixels.end(), pixel(x, y), pixel(x, y) + 4);
    static_cast<void>(from);
    return made;
}
Picture Mirrored(const Picture& from) {
    return Make(from, from.width, from.height, [&](int x, int y) { return from.At(from.width - 1 - x, y); });
}
Picture TurnedClockwise(const Picture& from, int times) {
    if (times == 0) return from;
    return TurnedClockwise(
        Make(from, from.height, from.width, [&](int x, int y) { return from.At(y, from.height - 1 - x); }),
        times - 1);
}

class OrientationTest : public testing::TestWithParam<int> {};

TEST_P(OrientationTest, ShowsTheImageUpright) {
    constexpr int kWidth = 40, kHeight = 21;  // more rows than are oriented at once
    JpegToWrite jpeg{.width = kWidth, .height = kHeight, .dotsPerInch = 100};
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            for (const int sample : {x * 6, y * 12, 128})
                jpeg.samples.push_back(static_cast<std::uint8_t>(sample));
    std::string file = AsText(WriteJpeg(jpeg));
    file[14] = 0, file[15] = 50;  // the resolution across is half of that down
    const auto stored = ReadJpeg(AsBytes(file));
    ASSERT_TRUE(stored);
    const Picture lying{kWidth, kHeight, PixelsOf(stored)};

    // For each Exif orientation: whether to mirror the stored image, and how many clockwise quarter turns
    // follow.
    struct Way {
        bool isMirrored;
        int turns;
    };
    constexpr Way kWays[] = {{false, 0}, {true, 0},  {false, 2}, {true, 2},
                             {true, 3},  {false, 1}, {true, 1},  {false, 3}};
    const Way way = kWays[GetParam() - 1];
    const Picture expected = TurnedClockwise(way.isMirrored ? Mirrored(lying) : lying, way.turns);

    for (const bool isLittle : {true, false}) {
        const auto image = ReadJpeg(AsBytes(
            WithJpegSegment(file, kApp1, std::string("Exif\0\0", 6) + SampleExif(GetParam(), isLittle))));
        ASSERT_TRUE(image);
        EXPECT_EQ(image->GetWidth(), expected.width);
        EXPECT_EQ(image->GetHeight(), expected.height);
        EXPECT_EQ(PixelsOf(image), expected.pixels);
        EXPECT_EQ(image->GetHorizontalResolution() < image->GetVerticalResolution(), way.turns % 2 == 0);
        EXPECT_EQ(image->GetJpegSource() != nullptr, GetParam() == 1);
        ASSERT_NE(image->GetTurnedJpegSource(), nullptr);
        EXPECT_EQ(image->GetTurnedJpegSource()->orientation, GetParam());
        EXPECT_EQ(image->GetTurnedJpegSource()->storedWidth, kWidth);
    }
}
INSTANTIATE_TEST_SUITE_P(Exif, OrientationTest, testing::Range(1, 9));

TEST(ImageColoursTest, WhatIsNoOrientationTurnsNothing) {
    const std::string rgb = JpegOf({200, 100, 50}, kJpegRgb, kJpegYCbCr), name("Exif\0\0", 6);
    std::string isLong = SampleExif(6), ofTwo = SampleExif(6);
    isLong[24] = 4;  // type LONG instead of SHORT
    ofTwo[26] = 2;   // two values instead of one
    for (const std::string& exif :
         {SampleExif(0), SampleExif(9), isLong, ofTwo, std::string("II"), std::string(),
          SampleExif(6).substr(0, 30), std::string("XX") + SampleExif(6).substr(2)}) {
        const auto image = ReadJpeg(AsBytes(WithJpegSegment(rgb, kApp1, name + exif)));
        ASSERT_TRUE(image);
        EXPECT_NE(image->GetJpegSource(), nullptr);
    }
    // Nor does an orientation in a segment of another name, or in a second Exif segment.
    EXPECT_NE(ReadJpeg(AsBytes(WithJpegSegment(rgb, kApp1, "http://ns" + SampleExif(6))))->GetJpegSource(),
              nullptr);
    EXPECT_NE(ReadJpeg(AsBytes(WithJpegSegment(WithJpegSegment(rgb, kApp1, name + SampleExif(6)), kApp1,
                                               name + SampleExif(1))))
                  ->GetJpegSource(),
              nullptr);
}

}  // namespace
