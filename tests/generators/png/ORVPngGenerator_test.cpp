// SPDX-License-Identifier: Apache-2.0
#include "generators/png/ORVPngGenerator.h"

#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <random>
#include <utility>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/generators/raster/pixel_page.h"

namespace {

/// A decoded image.
struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgb;

    explicit Picture(const std::string& bytes) {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        EXPECT_NE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()), 0) << image.message;
        image.format = PNG_FORMAT_RGB;
        width = static_cast<int>(image.width);
        height = static_cast<int>(image.height);
        rgb.resize(PNG_IMAGE_SIZE(image));
        EXPECT_NE(png_image_finish_read(&image, nullptr, rgb.data(), 0, nullptr), 0) << image.message;
    }
    /// 0xRRGGBB
    unsigned int At(int x, int y) const {
        const std::size_t i = static_cast<std::size_t>(y * width + x) * 3;
        return static_cast<unsigned int>(rgb[i] << 16 | rgb[i + 1] << 8 | rgb[i + 2]);
    }
    bool HasInk() const {
        for (const std::uint8_t value : rgb)
            if (value != 255) return true;
        return false;
    }
};

/// A page drawn by a test, and the resulting image.
class PngPage {
public:
    PngPage(double width, double height, const ORVRasterOptions& options = {}, std::string_view title = "")
        : generator_(output_, options) {
        EXPECT_EQ(generator_.BeginDocument({title, 1}), 1);
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height)), 1);
    }
    ORVPngGenerator& Get() { return generator_; }
    const std::string& Finish() {
        EXPECT_EQ(generator_.EndPage(), 1);
        EXPECT_EQ(generator_.EndDocument(), 1);
        return output_.GetBytes();
    }

private:
    ORVMemoryOutput output_;
    ORVPngGenerator generator_;
};

TEST(ORVPngGeneratorTest, PaperIsWhiteAndAUserUnitAPixel) {
    PngPage page(20.0, 10.0);
    EXPECT_EQ(FillRectangle(page.Get(), 5.0, 2.0, 3.0, 4.0, {255, 0, 0}), 1);
    const Picture picture(page.Finish());
    ASSERT_EQ(picture.width, 20);
    ASSERT_EQ(picture.height, 10);
    EXPECT_EQ(picture.At(0, 0), 0xFFFFFFU);
    EXPECT_EQ(picture.At(5, 2), 0xFF0000U);
    EXPECT_EQ(picture.At(7, 5), 0xFF0000U);
    EXPECT_EQ(picture.At(8, 5), 0xFFFFFFU);
    EXPECT_EQ(picture.At(7, 6), 0xFFFFFFU);
}

TEST(ORVPngGeneratorTest, ResolutionEnlargesAndIsStated) {
    ORVRasterOptions options;
    options.dotsPerInch = 180.0;
    PngPage page(20.0, 10.5, options);
    const std::string bytes = page.Finish();
    const Picture picture(bytes);
    EXPECT_EQ(picture.width, 40);
    EXPECT_EQ(picture.height, 21);
    const std::size_t chunk = bytes.find("pHYs");
    ASSERT_NE(chunk, bytes.npos);
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[chunk + 4 + i]); };
    EXPECT_EQ(byte(2) << 8 | byte(3), 7087);  // 180 dots per inch, per metre: 180 / 0.0254
    EXPECT_EQ(byte(8), 1);                    // the unit is the metre
}

/// Returns the bit depth and the colour type of a file.
std::pair<int, int> PixelsOf(const std::string& bytes) {
    const std::size_t header = bytes.find("IHDR");
    return {bytes[header + 12], bytes[header + 13]};
}

TEST(ORVPngGeneratorTest, PagesWithoutColoursAreGrey) {
    PngPage grey(4.0, 4.0);
    EXPECT_EQ(FillRectangle(grey.Get(), 0.0, 0.0, 2.0, 4.0, {100, 100, 100}), 1);
    const std::string greyBytes = grey.Finish();
    EXPECT_EQ(PixelsOf(greyBytes), std::pair(8, 0));
    EXPECT_EQ(Picture(greyBytes).At(1, 1), 0x646464U);

    PngPage coloured(4.0, 4.0);
    EXPECT_EQ(FillRectangle(coloured.Get(), 0.0, 0.0, 2.0, 4.0, {100, 100, 101}), 1);
    EXPECT_EQ(PixelsOf(coloured.Finish()), std::pair(8, 2));
}

TEST(ORVPngGeneratorTest, ColourModesDecide) {
    ORVRasterOptions options;
    options.colourMode = ORVColourMode::kGrey;
    PngPage grey(4.0, 4.0, options);
    EXPECT_EQ(FillRectangle(grey.Get(), 0.0, 0.0, 2.0, 4.0, {255, 0, 0}), 1);
    const std::string greyBytes = grey.Finish();
    EXPECT_EQ(PixelsOf(greyBytes), std::pair(8, 0));
    EXPECT_EQ(Picture(greyBytes).At(1, 1), 0x4D4D4DU);

    // Ten pixels end within a byte.
    options.colourMode = ORVColourMode::kMono;
    PngPage mono(10.0, 3.0, options);
    EXPECT_EQ(FillRectangle(mono.Get(), 1.0, 0.0, 8.0, 2.0), 1);
    const std::string monoBytes = mono.Finish();
    EXPECT_EQ(PixelsOf(monoBytes), std::pair(1, 0));
    const Picture picture(monoBytes);
    for (int x = 0; x < 10; ++x) {
        EXPECT_EQ(picture.At(x, 1), x >= 1 && x < 9 ? 0U : 0xFFFFFFU) << x;
        EXPECT_EQ(picture.At(x, 2), 0xFFFFFFU) << x;
    }
}

TEST(ORVPngGeneratorTest, BandsMakeOneStream) {
    // Bands of one row, of several and of all rows; with blank bands, and a short one at the end.
    std::vector<std::uint8_t> expected;
    for (const int rows : {100, 1, 7, 33, 64}) {
        ORVRasterOptions options;
        options.bandRows = rows;
        options.threads = 3;
        PngPage page(60.0, 100.0, options);
        EXPECT_EQ(FillRectangle(page.Get(), 5.3, 40.2, 30.0, 9.7, {200, 10, 10, 130}), 1);
        EXPECT_EQ(WriteText(page.Get(), "bands", 4.0, 90.0), 1);
        const Picture picture(page.Finish());
        ASSERT_EQ(picture.height, 100);
        if (expected.empty()) expected = picture.rgb;
        EXPECT_TRUE(picture.HasInk());
        EXPECT_EQ(picture.rgb, expected) << rows;
    }
}

TEST(ORVPngGeneratorTest, TitlesAreTextOfTheirKind) {
    PngPage latin(4.0, 4.0, {},
                  "Gr\xC3\xBC\xC3\x9F"
                  "e");
    EXPECT_NE(latin.Finish().find(std::string("tEXtTitle\0Gr\xFC\xDF"
                                              "e",
                                              15)),
              std::string::npos);
    PngPage other(4.0, 4.0, {}, "\xCE\xA9");
    EXPECT_NE(other.Finish().find(std::string("iTXtTitle\0\0\0\0\0\xCE\xA9", 16)), std::string::npos);
    PngPage none(4.0, 4.0);
    EXPECT_EQ(none.Finish().find("Title"), std::string::npos);
}

TEST(ORVPngGeneratorTest, EqualPagesGiveEqualBytes) {
    const auto draw = [](unsigned int threads) {
        ORVRasterOptions options;
        options.threads = threads;
        PngPage page(300.0, 1500.0, options);
        for (int i = 0; i < 40; ++i)
            EXPECT_EQ(FillRectangle(page.Get(), 7.3 * i, 37.1 * i, 30.0, 50.0, {20, 40, 60, 128}), 1);
        return page.Finish();
    };
    const std::string one = draw(1);
    EXPECT_EQ(draw(1), one);
    EXPECT_EQ(draw(4), one);
}

/// Draws a random drawing, which depends only on the arguments.
void DrawSomething(ORVPrintGenerator& to, unsigned int seed, double width, double height, bool inColour) {
    std::mt19937 random(seed);
    const auto upTo = [&](double most) { return most * (random() % 1000) / 1000.0; };
    for (unsigned int i = 0, count = random() % 60; i < count; ++i) {
        const auto level = [&] { return static_cast<std::uint8_t>(random()); };
        const std::uint8_t red = level(), green = inColour ? level() : red, blue = inColour ? level() : red;
        EXPECT_EQ(FillRectangle(to, upTo(width), upTo(height), 0.3 + upTo(30.0), 0.3 + upTo(60.0),
                                {red, green, blue, level()}),
                  1);
    }
    EXPECT_EQ(WriteText(to, "M8 \xC3\x97 1.25", upTo(width), upTo(height)), 1);
}

/// Converts the pixels of a page in any format to RGB.
std::vector<std::uint8_t> AsColours(const PixelSink::Pixels& drawn) {
    std::vector<std::uint8_t> rgb;
    for (int y = 0; y < drawn.page.height; ++y) {
        const std::uint8_t* row = drawn.bytes.data() + static_cast<std::size_t>(y) * drawn.rowBytes;
        for (int x = 0; x < drawn.page.width; ++x) {
            if (drawn.page.pixels == RasterPixels::kRGB)
                rgb.insert(rgb.end(), row + 3 * x, row + 3 * x + 3);
            else if (drawn.page.pixels == RasterPixels::kGrey)
                rgb.insert(rgb.end(), 3, row[x]);
            else
                rgb.insert(rgb.end(), 3, (row[x / 8] & (0x80U >> (x % 8))) != 0 ? 0 : 255);
        }
    }
    return rgb;
}

TEST(ORVPngGeneratorTest, PicturesHaveThePixelsThatWereDrawnInAnyNumberOfThreads) {
    for (unsigned int seed = 0; seed < 30; ++seed) {
        const double width = 1.0 + seed * 37 % 400, height = 1.0 + seed * 53 % 300;
        const bool inColour = seed % 2 == 0;
        ORVRasterOptions options;
        options.bandRows = static_cast<int>(seed % 5 * 13);
        if (seed % 3 == 1) options.colourMode = ORVColourMode::kMono;
        if (seed % 3 == 2) options.colourMode = ORVColourMode::kGrey;
        PixelPage expected(width, height, options);
        DrawSomething(expected.Get(), seed, width, height, inColour);
        const std::vector<std::uint8_t> colours = AsColours(expected.Finish());
        std::string one;
        for (const unsigned int threads : {1U, 2U, 5U}) {
            options.threads = threads;
            PngPage page(width, height, options);
            DrawSomething(page.Get(), seed, width, height, inColour);
            const std::string bytes = page.Finish();
            if (threads == 1) one = bytes;
            EXPECT_EQ(bytes, one) << seed;
            EXPECT_TRUE(Picture(bytes).rgb == colours) << seed;
        }
    }
}

TEST(ORVPngGeneratorTest, EveryPageIsAPart) {
    ORVMemoryOutput output;
    ORVPngGenerator generator(output, {});
    EXPECT_EQ(generator.BeginDocument({"", 2}), 1);
    for (unsigned int i = 1; i <= 2; ++i) {
        EXPECT_EQ(generator.BeginPage(PageInfo(5.0, 5.0, i)), 1);
        EXPECT_EQ(generator.EndPage(), 1);
    }
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(output.GetPartCount(), 2U);
}

/// Returns the size of all rows after decompression, which verifies the checksum; 0 if the stream is invalid.
std::size_t SizeOfRows(const std::string& png) {
    std::string stream;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const auto byte = [&](std::size_t i) { return std::size_t{static_cast<unsigned char>(png[at + i])}; };
        const std::size_t length = byte(0) << 24U | byte(1) << 16U | byte(2) << 8U | byte(3);
        if (png.compare(at + 4, 4, "IDAT") == 0) stream += png.substr(at + 8, length);
        at += length + 12;
    }
    std::string rows(std::size_t{1} << 20U, '\0');
    uLongf size = rows.size();
    uLong used = stream.size();
    const int status = uncompress2(reinterpret_cast<Bytef*>(rows.data()), &size,
                                   reinterpret_cast<const Bytef*>(stream.data()), &used);
    return status == Z_OK && used == stream.size() ? size : 0;
}

// Blank bands are compressed once; the last one may have fewer rows than the others.
TEST(ORVPngGeneratorTest, TheStreamOfRowsIsWholeWhateverBandsAreBlank) {
    for (const bool blankStart : {true, false})
        for (const bool blankEnd : {true, false})
            for (const double height : {64.0, 67.0}) {
                ORVRasterOptions options;
                options.bandRows = 16;
                options.threads = 1;
                PngPage page(30.0, height, options);
                if (!blankStart) EXPECT_EQ(FillRectangle(page.Get(), 2.0, 2.0, 9.0, 9.0), 1);
                if (!blankEnd) EXPECT_EQ(FillRectangle(page.Get(), 2.0, height - 2.0, 9.0, 2.0), 1);
                EXPECT_EQ(SizeOfRows(page.Finish()), static_cast<std::size_t>(height) * 31)
                    << blankStart << blankEnd << height;
            }
}

TEST(ORVPngGeneratorTest, ControlCharactersOfATitleAreNotWrittenAsLatin) {
    struct Row {
        const char* title;
        const char* chunk;
    };
    for (const Row& row : {Row{"Stra\xC3\x9F"
                               "e",
                               "tEXt"},
                           Row{"a\xC2\xA0"
                               "b",
                               "tEXt"},
                           Row{"a\xC2\x9F"
                               "b",
                               "iTXt"},
                           Row{"a\xC2\x85"
                               "b",
                               "iTXt"},
                           Row{"a\x7F"
                               "b",
                               "iTXt"},
                           Row{"a\nb", "iTXt"}}) {
        PngPage page(4.0, 4.0, {}, row.title);
        EXPECT_NE(page.Finish().find(row.chunk), std::string::npos) << row.title;
    }
}

}  // namespace
