// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/glyph_bitmap.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/scratch_folder.h"

namespace {

/// Writes the bytes of a font, in big-endian order.
class FontBytes {
public:
    FontBytes& U8(int value) {
        bytes_.push_back(static_cast<char>(value));
        return *this;
    }
    FontBytes& U16(int value) { return U8(value >> 8).U8(value); }
    FontBytes& U16s(std::initializer_list<int> values) {
        for (const int value : values) U16(value);
        return *this;
    }
    FontBytes& U32(std::size_t value) {
        return U16(static_cast<int>(value >> 16 & 0xFFFF)).U16(static_cast<int>(value & 0xFFFF));
    }
    FontBytes& Append(const std::string& bytes) {
        bytes_ += bytes;
        return *this;
    }
    FontBytes& Zeros(std::size_t count) {
        bytes_.append(count, '\0');
        return *this;
    }
    const std::string& Get() const { return bytes_; }
    std::size_t Size() const { return bytes_.size(); }

private:
    std::string bytes_;
};

using Tables = std::map<std::string, std::string>;
constexpr std::size_t kOne = 0x10000;  // 1 as a 16.16 fixed-point number

/// A font of three glyphs: the first two have no outlines, the second one is mapped to "A"; the third one is
/// a square of one em on the baseline.
/// @param pictures  tables to add
std::string FontWith(const Tables& pictures) {
    const std::string square = FontBytes()
                                   .U16s({1, 0, 0, 1000, 1000, 3, 0})
                                   .Append(std::string(4, '\x01'))  // flags of the corners
                                   .U16s({0, 0, 1000, 0, 0, 1000, 0, -1000})
                                   .Get();
    const int squareEnd = static_cast<int>(square.size() / 2);
    Tables tables = pictures;
    tables["head"] = FontBytes()
                         .U32(kOne)
                         .U32(kOne)
                         .U32(0)
                         .U32(0x5F0F3CF5)
                         .U16s({0, 1000})
                         .Zeros(16)
                         .U16s({0, 0, 1000, 1000, 0, 8, 2, 0, 0})
                         .Get();
    tables["hhea"] = FontBytes().U32(kOne).U16s({800, -200, 0, 1000}).Zeros(22).U16(3).Get();
    tables["maxp"] = FontBytes().U32(kOne).U16s({3, 4, 1, 0, 0, 2}).Zeros(16).Get();
    tables["hmtx"] = FontBytes().U16s({1000, 0, 1000, 0, 1000, 0}).Get();
    tables["loca"] = FontBytes().U16s({0, 0, 0, squareEnd}).Get();
    tables["glyf"] = square;
    tables["post"] = FontBytes().U32(3 * kOne).Zeros(28).Get();
    tables["cmap"] = FontBytes()
                         .U16s({0, 1, 3, 1})
                         .U32(12)
                         .U16s({4, 32, 0, 4, 4, 1, 0, 'A', 0xFFFF, 0, 'A', 0xFFFF, 1 - 'A', 1, 0, 0})
                         .Get();

    FontBytes font;
    font.U32(kOne).U16s({static_cast<int>(tables.size()), 128, 3, 16});
    std::string bodies;
    for (const auto& [tag, body] : tables) {
        font.Append(tag).U32(0).U32(12 + 16 * tables.size() + bodies.size()).U32(body.size());
        bodies += body;
        bodies.resize((bodies.size() + 3) / 4 * 4, '\0');
    }
    return font.Append(bodies).Get();
}

/// Registers a font for the rest of the process and returns its face; null if it cannot be read.
const ORVFontFace* FaceOf(const std::string& name, const Tables& pictures) {
    const ScratchFolder folder;
    const std::string file = folder.PathOf("pictures.ttf");
    std::ofstream(file, std::ios::binary) << FontWith(pictures);
    const ORVFont* font = ORVFont::sRegisterPlainFont(name, file);
    return font ? font->GetFace(25) : nullptr;
}

/// An embedded bitmap of "A" at one size. `left` and `top` are the position of its upper left corner,
/// relative to the glyph's origin, in pixels.
struct Strike {
    int pixelsPerEm;
    int width, height;
    int left, top;
    std::string rows;  // each begins with a new byte
};

/// Tables of embedded bitmaps with this number of bits of opacity per pixel.
Tables Strikes(int bits, const std::vector<Strike>& strikes) {
    constexpr std::size_t kSizeRecord = 48, kArray = 8, kSubTable = 16;
    FontBytes pictures, places;
    std::string subTables;
    pictures.U32(2 * kOne);
    places.U32(2 * kOne).U32(strikes.size());
    for (const Strike& strike : strikes) {
        const std::size_t start = pictures.Size();
        pictures.U8(strike.height).U8(strike.width).U8(strike.left).U8(strike.top).U8(strike.width);
        pictures.Append(strike.rows);

        places.U32(8 + kSizeRecord * strikes.size() + subTables.size()).U32(kArray + kSubTable).U32(1).U32(0);
        for (int direction = 0; direction < 2; ++direction)
            places.U8(strike.top).U8(strike.top - strike.height).U8(strike.width).Zeros(9);
        places.U16s({1, 1}).U8(strike.pixelsPerEm).U8(strike.pixelsPerEm).U8(bits).U8(1);
        subTables += FontBytes()
                         .U16s({1, 1})
                         .U32(kArray)
                         .U16s({1, 1})
                         .U32(start)
                         .U32(0)
                         .U32(pictures.Size() - start)
                         .Get();
    }
    return {{"EBDT", pictures.Get()}, {"EBLC", places.Append(subTables).Get()}};
}

/// Tables that paint "A" as the square, in one colour.
Tables Layers(int red, int green, int blue, int opacity) {
    return {
        {"COLR", FontBytes().U16s({0, 1}).U32(14).U32(20).U16s({1, 1, 0, 1, 2, 0}).Get()},
        {"CPAL", FontBytes().U16s({0, 1, 1, 1}).U32(14).U16(0).U8(blue).U8(green).U8(red).U8(opacity).Get()}};
}

// A font with bitmaps of three sizes, deliberately not sorted.
const ORVFontFace* Sizes() {
    const std::string full(2, '\xFF');
    static const ORVFontFace* const face = FaceOf(
        "Sizes.font", Strikes(1, {{32, 4, 2, 3, 7, full}, {16, 2, 2, 1, -1, full}, {64, 5, 2, 0, 5, full}}));
    return face;
}

int WidthAt(double pixelsPerEm) {
    const ORVGlyphBitmap bitmap = ORVMakeGlyphBitmap(*Sizes(), 1, pixelsPerEm, {});
    return bitmap.image ? bitmap.image->GetWidth() : 0;
}

TEST(GlyphBitmapTest, TheSmallestThatIsLargeEnoughIsTaken) {
    ASSERT_NE(Sizes(), nullptr);
    EXPECT_EQ(WidthAt(1.0), 2);
    EXPECT_EQ(WidthAt(16.0), 2);
    EXPECT_EQ(WidthAt(16.5), 4);
    EXPECT_EQ(WidthAt(32.0), 4);
    EXPECT_EQ(WidthAt(33.0), 5);
    EXPECT_EQ(WidthAt(1e9), 5) << "else the largest";
}

TEST(GlyphBitmapTest, ItsBoxIsInEm) {
    ASSERT_NE(Sizes(), nullptr);
    const ORVGlyphBitmap bitmap = ORVMakeGlyphBitmap(*Sizes(), Sizes()->GetGlyph('A'), 32.0, {});
    ASSERT_TRUE(bitmap.image);
    EXPECT_EQ(bitmap.image->GetHeight(), 2);
    EXPECT_DOUBLE_EQ(bitmap.left, 3.0 / 32.0);
    EXPECT_DOUBLE_EQ(bitmap.top, 7.0 / 32.0);
    EXPECT_DOUBLE_EQ(bitmap.width, 4.0 / 32.0);
    EXPECT_DOUBLE_EQ(bitmap.height, 2.0 / 32.0);
    EXPECT_DOUBLE_EQ(ORVMakeGlyphBitmap(*Sizes(), 1, 16.0, {}).top, -1.0 / 16.0);
}

TEST(GlyphBitmapTest, BitmapsWithoutColoursTakeThatOfTheText) {
    const ORVFontFace* mono =
        FaceOf("Mono.font", Strikes(1, {{16, 9, 2, 0, 2, {'\x80', '\x80', '\x41', '\0'}}}));
    ASSERT_NE(mono, nullptr);
    const ORVGlyphBitmap bits = ORVMakeGlyphBitmap(*mono, 1, 16.0, {1, 2, 3});
    ASSERT_TRUE(bits.image);
    const auto pixels = bits.image->GetPixels();
    std::string seen;
    for (std::size_t at = 0; at < pixels.size(); at += 4) {
        EXPECT_EQ(Rgba(pixels.begin() + static_cast<std::ptrdiff_t>(at),
                       pixels.begin() + static_cast<std::ptrdiff_t>(at) + 3),
                  (Rgba{1, 2, 3}));
        seen += pixels[at + 3] == 255 ? '#' : pixels[at + 3] == 0 ? '.' : '?';
    }
    EXPECT_EQ(seen, "#.......#.#.....#.");

    const ORVFontFace* grey = FaceOf("Grey.font", Strikes(8, {{16, 3, 1, 0, 1, {'\0', '\x40', '\xFF'}}}));
    ASSERT_NE(grey, nullptr);
    const ORVGlyphBitmap levels = ORVMakeGlyphBitmap(*grey, 1, 16.0, {1, 2, 3});
    ASSERT_TRUE(levels.image);
    const auto shades = levels.image->GetPixels();
    EXPECT_EQ(Rgba(shades.begin(), shades.end()), (Rgba{1, 2, 3, 0, 1, 2, 3, 0x40, 1, 2, 3, 0xFF}));
}

TEST(GlyphBitmapTest, LayersKeepTheirColoursAndComeInAnySize) {
    const ORVFontFace* emblem = FaceOf("Emblem.font", Layers(200, 100, 0, 128));
    ASSERT_NE(emblem, nullptr);
    for (const int size : {8, 37}) {
        const ORVGlyphBitmap bitmap = ORVMakeGlyphBitmap(*emblem, 1, size - 0.5, {1, 2, 3});
        ASSERT_TRUE(bitmap.image) << size;
        EXPECT_EQ(bitmap.image->GetWidth(), size);
        EXPECT_DOUBLE_EQ(bitmap.left, 0.0);
        EXPECT_DOUBLE_EQ(bitmap.top, 1.0);
        EXPECT_DOUBLE_EQ(bitmap.width, 1.0);
        EXPECT_DOUBLE_EQ(bitmap.height, 1.0);
        const auto pixels = bitmap.image->GetPixels();
        EXPECT_NEAR(pixels[0], 200, 2);
        EXPECT_NEAR(pixels[1], 100, 2);
        EXPECT_NEAR(pixels[2], 0, 2);
        EXPECT_NEAR(pixels[3], 128, 1);
    }
    const ORVGlyphBitmap largest = ORVMakeGlyphBitmap(*emblem, 1, 1e300, {});
    ASSERT_TRUE(largest.image);
    EXPECT_EQ(largest.image->GetWidth(), 1024);
}

TEST(GlyphBitmapTest, WhatHasNoneGivesNone) {
    ASSERT_NE(Sizes(), nullptr);
    EXPECT_FALSE(ORVMakeGlyphBitmap(*Sizes(), 0, 32.0, {}).image);
    EXPECT_FALSE(ORVMakeGlyphBitmap(*Sizes(), 77, 32.0, {}).image);
    const ORVFontFace& outlines = *FindFontForAttribute("Liberation Sans")->GetFace(25);
    EXPECT_FALSE(ORVMakeGlyphBitmap(outlines, outlines.GetGlyph('A'), 32.0, {}).image);
}

}  // namespace
