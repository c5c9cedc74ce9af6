// SPDX-License-Identifier: Apache-2.0

// Images: how their pixels are stored, and that each is stored once.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/generators/pdf/drawn_pdf.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(PdfImagesTest, JpegFilesAreEmbeddedAsTheyAre) {
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> image(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    ASSERT_TRUE(image);
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawImage({*image, {60.0, 0.0, 0.0, 40.0, 10.0, 10.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Run("pdfimages -list"), HasSubstr("jpeg"));
    EXPECT_THAT(document.Plain(), HasSubstr("DCTDecode"));
}

TEST(PdfImagesTest, ImageDrawnTwiceIsHeldOnce) {
    const auto image = PlainImage(3, 3, {1, 2, 3});
    DrawnPdf document;
    for (int page = 0; page < 2; ++page) {
        document.BeginPage();
        for (const double x : {0.0, 20.0})
            EXPECT_EQ(document.Get().DrawImage({*image, {9.0, 0.0, 0.0, 9.0, x, 0.0}}), 1);
        document.EndPage();
    }
    document.Finish();
    const std::string plain = document.Plain();
    const std::size_t first = plain.find("/Subtype /Image");
    ASSERT_NE(first, plain.npos);
    EXPECT_EQ(plain.find("/Subtype /Image", first + 1), plain.npos);
}

TEST(PdfImagesTest, ImagesOfEqualContentAreHeldOnce) {
    const auto first = PlainImage(3, 3, {1, 2, 3}), second = PlainImage(3, 3, {1, 2, 3}),
               other = PlainImage(3, 3, {1, 2, 4}), turned = PlainImage(9, 1, {1, 2, 3});
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> jpeg(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0)),
        again(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    DrawnPdf document;
    document.BeginPage();
    for (const ORVPixelImage* image :
         {first.get(), second.get(), other.get(), turned.get(), jpeg.get(), again.get()})
        EXPECT_EQ(document.Get().DrawImage({*image, {9.0, 0.0, 0.0, 9.0, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "/Subtype /Image"), 4U);
}

TEST(PdfImagesTest, TwoColoursTakeOneBit) {
    const std::uint8_t pixels[]{200, 40, 13, 255, 7, 99, 180, 255};
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(2, 1, pixels));
    DrawnPdf document;
    document.BeginPage(90.0, 90.0);
    EXPECT_EQ(document.Get().DrawImage({*image, {90.0, 0.0, 0.0, 90.0, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("/BitsPerComponent 1"));
    EXPECT_THAT(document.Plain(), HasSubstr("/Indexed"));
    const std::string page = document.Pixels();
    ASSERT_GE(page.size(), 90U * 90U * 3U);
    const std::string row = page.substr(page.size() - 270);
    EXPECT_EQ(row.substr(0, 3), "\xC8\x28\x0D");
    EXPECT_EQ(row.substr(267), "\x07\x63\xB4");
}

TEST(PdfImagesTest, LargeImagesComeOutAsTheyAre) {
    constexpr int kSide = 800;
    std::vector<std::uint8_t> pixels;
    std::uint32_t noise = 1;
    for (int i = 0; i < kSide * kSide * 4; ++i) {
        noise = noise * 1664525U + 1013904223U;
        pixels.push_back(i % 4 == 3 ? 255 : static_cast<std::uint8_t>(noise >> 24U));
    }
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(kSide, kSide, pixels));
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawImage({*image, {60.0, 0.0, 0.0, 60.0, 10.0, 10.0}}), 1);
    document.EndPage();
    document.Finish();
    const auto extracted = document.ExtractImage();
    ASSERT_TRUE(extracted);
    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), extracted->GetPixels().begin(),
                           extracted->GetPixels().end()));
}

struct ImageCase {
    const char* name;
    std::function<std::array<std::uint8_t, 4>(int x, int y)> pixel;
    const char* listed;  // kind, colours, components and bits as pdfimages lists them
    const char* mask;    // the same of the mask; empty without a mask
};
class PdfImageTest : public testing::TestWithParam<ImageCase> {};
TEST_P(PdfImageTest, TakesTheFewestBitsThatKeepThePixels) {
    constexpr int kWidth = 37, kHeight = 29;
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            for (const std::uint8_t part : GetParam().pixel(x, y)) pixels.push_back(part);
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(kWidth, kHeight, pixels));
    ASSERT_TRUE(image);
    DrawnPdf document;
    document.BeginPage(kWidth, kHeight);
    EXPECT_EQ(document.Get().DrawImage({*image, {kWidth, 0.0, 0.0, kHeight, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    std::string list = document.Run("pdfimages -list");
    list.erase(std::unique(list.begin(), list.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
               list.end());
    EXPECT_THAT(list, HasSubstr(std::string("image 37 29 ") + GetParam().listed + " image"));
    if (*GetParam().mask == '\0')
        EXPECT_THAT(list, Not(HasSubstr("smask")));
    else
        EXPECT_THAT(list, HasSubstr(std::string("smask 37 29 ") + GetParam().mask + " image"));
    for (const std::size_t part : {0U, 1U, 2U, 3U}) {
        if (part == 3 && *GetParam().mask == '\0') continue;
        const auto extracted = document.ExtractImage(part == 3 ? 1 : 0);
        ASSERT_TRUE(extracted);
        const auto got = extracted->GetPixels();
        ASSERT_EQ(got.size(), pixels.size());
        for (std::size_t i = 0; i < got.size(); i += 4)
            ASSERT_EQ(int{got[i + part % 3]}, int{pixels[i + part]}) << "byte " << i + part;
    }
}
std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }
INSTANTIATE_TEST_SUITE_P(
    Pixels, PdfImageTest,
    testing::Values(
        ImageCase{"BlackAndWhite",
                  [](int x, int y) {
                      return std::array{Byte((x ^ y) % 2 * 255), Byte((x ^ y) % 2 * 255),
                                        Byte((x ^ y) % 2 * 255), Byte(255)};
                  },
                  "gray 1 1", ""},
        ImageCase{"FourGraysOfEvenSteps",
                  [](int x, int) {
                      return std::array{Byte(x % 4 * 85), Byte(x % 4 * 85), Byte(x % 4 * 85), Byte(255)};
                  },
                  "gray 1 2", ""},
        ImageCase{"SixteenGraysOfEvenSteps",
                  [](int x, int) {
                      return std::array{Byte(x % 16 * 17), Byte(x % 16 * 17), Byte(x % 16 * 17), Byte(255)};
                  },
                  "gray 1 4", ""},
        ImageCase{"ManyGrays",
                  [](int x, int y) {
                      return std::array{Byte(x * 5 + y), Byte(x * 5 + y), Byte(x * 5 + y), Byte(255)};
                  },
                  "gray 1 8", ""},
        ImageCase{"ThreeOddGrays",
                  [](int x, int) {
                      return std::array{Byte(x % 3 * 7), Byte(x % 3 * 7), Byte(x % 3 * 7), Byte(255)};
                  },
                  "index 1 2", ""},
        ImageCase{"ThreeColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y) % 3 * 90), Byte(40), Byte(13), Byte(255)};
                  },
                  "index 1 2", ""},
        ImageCase{"FourColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y) % 4 * 60), Byte(40), Byte(13), Byte(255)};
                  },
                  "index 1 2", ""},
        ImageCase{"FiveColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y) % 5 * 60), Byte(40), Byte(13), Byte(255)};
                  },
                  "index 1 4", ""},
        ImageCase{"SixteenColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y) % 16 * 15), Byte(40), Byte(13), Byte(255)};
                  },
                  "index 1 4", ""},
        ImageCase{"SeventeenColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y) % 17 * 15), Byte(40), Byte(13), Byte(255)};
                  },
                  "index 1 8", ""},
        ImageCase{"TwoHundredColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y * 37) % 200), Byte(92), Byte(13), Byte(255)};
                  },
                  "index 1 8", ""},
        ImageCase{"ManyColours",
                  [](int x, int y) {
                      return std::array{Byte(x * 3), Byte(y * 5), Byte(9), Byte(255)};
                  },
                  "rgb 3 8", ""},
        ImageCase{"CutOut",
                  [](int x, int y) {
                      return std::array{Byte(x * 3), Byte(y * 5), Byte(9), Byte(x % 2 * 255)};
                  },
                  "rgb 3 8", "gray 1 1"},
        ImageCase{"FadedOut",
                  [](int x, int y) {
                      return std::array{Byte(x), Byte(y * 8), Byte(9), Byte(x * 6 + y % 2)};
                  },
                  "rgb 3 8", "gray 1 8"}),
    kNameOfRow);

/// Returns the RGB bytes of a pixel on a page of 90 x 90 pixels.
std::string ColourAt(const std::string& pixels, std::size_t x, std::size_t y) {
    return pixels.size() < 90U * 90U * 3U ? "" : pixels.substr(pixels.size() - 3 * (90 * (90 - y) - x), 3);
}

// Without a statement in the file, readers take three components for YCbCr.
TEST(PdfImagesTest, JpegSaysWhetherItsColoursAreTransformed) {
    constexpr int kRgb = 2, kYCbCr = 3;
    for (const int stored : {kRgb, kYCbCr}) {
        JpegToWrite jpeg{.width = 8, .height = 8, .storedSpace = stored};
        for (int i = 0; i < 64; ++i) jpeg.samples.insert(jpeg.samples.end(), {200, 100, 50});
        const auto image = ReadJpeg(WriteJpeg(jpeg));
        ASSERT_TRUE(image);
        DrawnPdf document;
        document.BeginPage();
        EXPECT_EQ(document.Get().DrawImage({*image, {90.0, 0.0, 0.0, 90.0, 0.0, 0.0}}), 1);
        document.EndPage();
        document.Finish();
        EXPECT_THAT(document.Plain(), HasSubstr(stored == kRgb ? "/ColorTransform 0" : "/ColorTransform 1"));
        const std::string colour = ColourAt(document.Pixels(), 45, 45);
        ASSERT_EQ(colour.size(), 3U);
        const std::array<int, 3> expected{200, 100, 50};
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(static_cast<unsigned char>(colour[i]), expected[i], 4) << stored << i;
    }
}

TEST(PdfImagesTest, APatternLiesWhereItsMapPutsIt) {
    const std::uint8_t colours[]{255, 0, 0, 255, 0, 0, 255, 255, 0, 255, 0, 255, 0, 0, 0, 255};
    const ORVRef<ORVPixelImage> tile(ORVPixelImage::CreateFromPixels(2, 2, colours));
    DrawnPdf document;
    document.BeginPage();
    ORVPrintFill fill;
    fill.pattern = tile.get();
    // A pixel becomes 15 units wide and 9 high; the first tile is at (20, 6).
    fill.patternToPage = {15.0, 0.0, 0.0, 9.0, 20.0, 6.0};
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 90.0, 90.0);
    EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    document.EndPage();
    document.Finish();
    const std::string pixels = document.Pixels();
    const std::string red("\xFF\0\0", 3), blue("\0\0\xFF", 3), green("\0\xFF\0", 3), black(3, '\0');
    EXPECT_EQ(ColourAt(pixels, 27, 10), red);
    EXPECT_EQ(ColourAt(pixels, 42, 10), blue);
    EXPECT_EQ(ColourAt(pixels, 27, 19), green);
    EXPECT_EQ(ColourAt(pixels, 42, 19), black);
    EXPECT_EQ(ColourAt(pixels, 57, 28), red);
    EXPECT_EQ(ColourAt(pixels, 12, 2), black) << "the tile before";
}

TEST(PdfImagesTest, AJpegThatLiesTurnedIsPassedOnAndTurnedOnThePage) {
    const std::string red("\xFF\0\0", 3);
    // Where the first pixels of the file are on the page, by orientation. 0 to 3: top left, top right, bottom
    // left, bottom right.
    constexpr int kCorner[] = {0, 1, 3, 2, 0, 1, 3, 2};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const std::string file = WithJpegSegment(
            SampleJpegOf(64, 32,
                         [](int x, int y) {
                             return x < 32 && y < 16 ? std::array<unsigned char, 3>{254, 0, 0}
                                                     : std::array<unsigned char, 3>{0, 0, 254};
                         }),
            0xE1, std::string("Exif\0\0", 6) + SampleExif(orientation));
        const ORVRef<ORVPixelImage> image(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
        ASSERT_TRUE(image);
        for (const bool isPattern : {false, true}) {
            DrawnPdf document;
            document.BeginPage();
            ORVPrintFill fill;
            fill.pattern = image.get();
            fill.patternToPage =
                ORVMathAffine2D::Scaling(90.0 / image->GetWidth(), 90.0 / image->GetHeight());
            const ORVPrintPath path = RectanglePath(0.0, 0.0, 90.0, 90.0);
            if (isPattern)
                EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, nullptr}), 1);
            else
                EXPECT_EQ(document.Get().DrawImage({*image, {90.0, 0.0, 0.0, 90.0, 0.0, 0.0}}), 1);
            document.EndPage();
            document.Finish();
            EXPECT_THAT(document.Plain(), HasSubstr("DCTDecode"));
            const std::string pixels = document.Pixels();
            for (int corner = 0; corner < 4; ++corner) {
                const std::string colour = ColourAt(pixels, corner % 2 == 0 ? 20 : 70, corner < 2 ? 20 : 70);
                ASSERT_EQ(colour.size(), 3U);
                EXPECT_EQ(static_cast<unsigned char>(colour[0]) > 128, corner == kCorner[orientation - 1])
                    << orientation << isPattern << corner;
            }
        }
    }
}

}  // namespace
