// SPDX-License-Identifier: Apache-2.0
#include "generators/png/png_rows.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "generators/common/vector_power.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Rows of pixels as the compressor takes them, followed by bytes that must not affect the result.
struct Rows {
    std::size_t pixelBytes = 3, rowBytes = 0, rowCount = 0;
    Bytes bytes;

    Rows(std::size_t width, std::size_t height, std::size_t bytesOfPixel)
        : pixelBytes(bytesOfPixel), rowBytes(width * bytesOfPixel + 1), rowCount(height) {
        bytes.assign(rowBytes * rowCount + PngRows::kTail, 0xFF);
        for (std::size_t y = 0; y < rowCount; ++y) bytes[y * rowBytes] = 0;
    }
    std::size_t Size() const { return rowBytes * rowCount; }
    std::span<const std::uint8_t> Used() const { return std::span(bytes).first(Size()); }
    std::uint8_t* At(std::size_t x, std::size_t y) {
        return bytes.data() + y * rowBytes + 1 + x * pixelBytes;
    }
    void Fill(std::size_t x, std::size_t y, std::size_t width, std::size_t height, std::uint32_t colour) {
        const std::size_t columns = (rowBytes - 1) / pixelBytes;
        for (std::size_t j = y; j < std::min(y + height, rowCount); ++j)
            for (std::size_t i = x; i < std::min(x + width, columns); ++i)
                std::memcpy(At(i, j), &colour, pixelBytes);
    }
    Bytes Compressed(PngRows& compressor, std::span<const std::uint8_t> isDrawn = {}) const {
        Bytes out;
        compressor.Compress(Used(), rowBytes, pixelBytes, isDrawn, out);
        return out;
    }
    Bytes Compressed() const { return Compressed(*std::make_unique<PngRows>()); }
};

/// Decompresses consecutive chunks. Returns nothing if the stream is invalid or has bytes left over.
Bytes Inflate(const Bytes& stream, std::size_t size) {
    z_stream state{};
    EXPECT_EQ(inflateInit2(&state, -15), Z_OK);
    Bytes out(size);
    state.next_in = const_cast<Bytef*>(stream.data());
    state.avail_in = static_cast<uInt>(stream.size());
    state.next_out = out.data();
    state.avail_out = static_cast<uInt>(size);
    const int status = inflate(&state, Z_SYNC_FLUSH);
    const bool isSound =
        (status == Z_OK || status == Z_BUF_ERROR) && state.avail_in == 0 && state.avail_out == 0;
    inflateEnd(&state);
    return isSound ? out : Bytes();
}

bool BecomesItself(const Rows& rows) {
    const Bytes read = Inflate(rows.Compressed(), rows.Size());
    return std::equal(read.begin(), read.end(), rows.Used().begin(), rows.Used().end());
}

/// Returns the size that zlib compresses the rows to.
std::size_t UsualSize(const Rows& rows, int level) {
    uLongf size = compressBound(rows.Size());
    Bytes out(size);
    EXPECT_EQ(compress2(out.data(), &size, rows.bytes.data(), rows.Size(), level), Z_OK);
    return size;
}

/// Makes rows as drawings have them: many small shapes, whose right edges have varying colours.
Rows DrawnRows(std::mt19937& random, std::size_t width, std::size_t height, std::size_t pixelBytes) {
    Rows rows(width, height, pixelBytes);
    const std::size_t shapes = 1 + width * height / 600;
    for (std::size_t i = 0; i < shapes; ++i) {
        const std::uint32_t colour = random() & 0xFFFFFFU;
        const std::size_t x = random() % width, y = random() % height, w = 2 + random() % 12,
                          h = 2 + random() % 12;
        rows.Fill(x, y, w, h, colour);
        for (std::size_t j = y; j < y + h; ++j) rows.Fill(x + w, j, 1, 1, random() & 0xFFFFFFU);
    }
    return rows;
}

TEST(PngRowsTest, RandomRowsBecomeThemselves) {
    std::mt19937 random(1);
    for (int turn = 0; turn < 400; ++turn) {
        const std::size_t width = 1 + random() % (turn % 10 == 0 ? 2000 : 60), height = 1 + random() % 40;
        Rows rows(width, height, turn % 2 == 0 ? 3 : 1);
        const unsigned int kinds = 1U << random() % 9;
        // Rows are blank, copies of the one above or of another one, partly of one colour, or noise.
        for (std::size_t y = 0; y < height; ++y) {
            std::uint8_t* row = rows.bytes.data() + y * rows.rowBytes;
            const std::uint8_t* other = rows.bytes.data() + random() % (y + 1) * rows.rowBytes;
            switch (random() % 5) {
                case 0: break;
                case 1: std::copy_n(y > 0 ? row - rows.rowBytes : row, rows.rowBytes, row); break;
                case 2: std::copy_n(other, rows.rowBytes, row); break;
                case 3: rows.Fill(random() % width, y, 1 + random() % width, 1, random() & 0xFFFFFFU); break;
                default:
                    std::generate(row + 1, row + rows.rowBytes,
                                  [&] { return static_cast<std::uint8_t>(random() % kinds); });
            }
        }
        ASSERT_TRUE(BecomesItself(rows)) << turn << ": " << width << " x " << height;
    }
}

TEST(PngRowsTest, RowsOfAllLengthsBecomeThemselves) {
    std::mt19937 random(2);
    // Rows so long that the row above is at the maximum distance of a match, or beyond.
    for (const std::size_t width :
         {1U, 2U, 85U, 86U, 87U, 170U, 10'921U, 10'922U, 10'923U, 32'766U, 32'767U, 32'768U})
        for (const std::size_t pixelBytes : {1U, 3U}) {
            Rows blank(width, 3, pixelBytes);
            EXPECT_TRUE(BecomesItself(blank)) << width;
            Rows even(width, 3, pixelBytes);
            even.Fill(0, 0, width, 3, 0);
            EXPECT_TRUE(BecomesItself(even)) << width;
            EXPECT_TRUE(BecomesItself(DrawnRows(random, width, 4, pixelBytes))) << width;
        }
}

TEST(PngRowsTest, RowsOfManyBlocksBecomeThemselves) {
    std::mt19937 random(3);
    for (const std::size_t pixelBytes : {1U, 3U}) {
        Rows noise(700, 200, pixelBytes);
        for (std::size_t y = 0; y < noise.rowCount; ++y)
            for (std::size_t i = 1; i < noise.rowBytes; ++i)
                noise.bytes[y * noise.rowBytes + i] = static_cast<std::uint8_t>(random());
        EXPECT_TRUE(BecomesItself(noise));
        // Incompressible data may grow only a little.
        EXPECT_LT(noise.Compressed().size(), noise.Size() * 101 / 100 + 200);
        EXPECT_TRUE(BecomesItself(DrawnRows(random, 1200, 300, pixelBytes)));
    }
}

TEST(PngRowsTest, PiecesFollowEachOther) {
    std::mt19937 random(4);
    PngRows compressor;
    Bytes stream, all;
    for (const std::size_t height : {1U, 16U, 5U}) {
        const Rows rows = DrawnRows(random, 90, height, 3);
        compressor.Compress(rows.Used(), rows.rowBytes, rows.pixelBytes, {}, stream);
        all.insert(all.end(), rows.Used().begin(), rows.Used().end());
    }
    EXPECT_EQ(Inflate(stream, all.size()), all);
}

TEST(PngRowsTest, TheSameRowsBecomeTheSameBytes) {
    std::mt19937 random(5);
    PngRows used;
    for (int turn = 0; turn < 30; ++turn) {
        Rows rows = DrawnRows(random, 1 + random() % 300, 1 + random() % 100, turn % 2 == 0 ? 3 : 1);
        const Bytes expected = rows.Compressed();
        EXPECT_EQ(rows.Compressed(used), expected);
    }
}

TEST(PngRowsTest, WhatLiesBehindTheRowsDoesNotCount) {
    std::mt19937 random(7);
    for (int turn = 0; turn < 300; ++turn) {
        Rows rows(3 + random() % 40, 1 + random() % 20, turn % 2 == 0 ? 3 : 1);
        const auto put = [&](std::size_t from, std::size_t to) {
            for (std::size_t i = from; i < to; ++i) rows.bytes[i] = static_cast<std::uint8_t>(random() % 3);
        };
        put(0, rows.bytes.size());
        const Bytes expected = rows.Compressed();
        for (int i = 0; i < 10; ++i) {
            put(rows.Size(), rows.bytes.size());
            ASSERT_EQ(rows.Compressed(), expected) << turn;
        }
    }
}

TEST(PngRowsTest, WhatIsKnownOfPaperDoesNotCount) {
    std::mt19937 random(8);
    PngRows compressor;
    for (int turn = 0; turn < 200; ++turn) {
        const std::size_t width = 1 + random() % 400, height = 1 + random() % 60;
        Rows rows = DrawnRows(random, width, height, turn % 2 == 0 ? 3 : 1);
        Bytes isDrawn(height, 1);
        for (std::size_t y = 0; y < height; ++y) {
            if (random() % 3 != 0) continue;
            rows.Fill(0, y, width, 1, 0xFFFFFF);
            isDrawn[y] = 0;
        }
        ASSERT_EQ(rows.Compressed(compressor, isDrawn), rows.Compressed(compressor)) << turn;
    }
}

TEST(PngRowsTest, RowsOfPaperAreNotReadToTheirEnds) {
    // Rows with ink are declared blank. If the compressor read them, the result would be another one.
    Rows rows(500, 4, 3);
    rows.Fill(400, 0, 1, 4, 0);
    const Bytes isDrawn(4, 0);
    EXPECT_EQ(rows.Compressed(*std::make_unique<PngRows>(), isDrawn), Rows(500, 4, 3).Compressed());
}

TEST(PngRowsTest, AllProcessorsMakeTheSameBytes) {
    std::mt19937 random(9);
    PngRows compressor;
    const VectorPower had = UsedVectorPower();
    for (int turn = 0; turn < 200; ++turn) {
        const Rows rows = DrawnRows(random, 1 + random() % 2000, 1 + random() % 12, turn % 2 == 0 ? 3 : 1);
        UsedVectorPower() = VectorPower::kPlain;
        const Bytes expected = rows.Compressed(compressor);
        UsedVectorPower() = had;
        ASSERT_EQ(rows.Compressed(compressor), expected) << turn;
    }
}

TEST(PngRowsTest, RunsOfAllLengthsBecomeThemselves) {
    // A run of one pixel value among others. The search for the end of a run takes steps of several sizes.
    for (const std::size_t pixelBytes : {1U, 3U})
        for (std::size_t length = 1; length <= 420; ++length) {
            Rows rows(430, 2, pixelBytes);
            rows.Fill(3, 0, length, 2, 0x123456);
            ASSERT_TRUE(BecomesItself(rows)) << length;
        }
}

TEST(PngRowsTest, BlankRowsTakeNextToNothing) {
    for (const std::size_t pixelBytes : {1U, 3U}) {
        const Rows rows(1667, 157, pixelBytes);
        // A match of the maximum length takes at least two bits.
        const std::size_t least = rows.Size() / 258 / 4;
        EXPECT_LT(rows.Compressed().size(), least + rows.rowCount * 3 + 100);
    }
}

TEST(PngRowsTest, RowsOfShortRunsRepeatTheRowAbove) {
    // Bars of ten pixels: four matches per row, no runs between them.
    std::mt19937 random(10);
    Rows rows(300, 200, 3);
    for (std::size_t x = 0; x < 300; x += 10) rows.Fill(x, 0, 10, 200, random() & 0xFFFFFFU);
    EXPECT_LT(rows.Compressed().size(), rows.rowCount * 7);
}

TEST(PngRowsTest, DrawingsAreSmallerThanTheUsualCompressorMakesThem) {
    std::mt19937 random(6);
    for (const std::size_t pixelBytes : {1U, 3U}) {
        const Rows rows = DrawnRows(random, 1667, 157, pixelBytes);
        EXPECT_LT(rows.Compressed().size(), UsualSize(rows, 6)) << pixelBytes;
    }
    // Also for an icon, although the compressor knows nothing about its content at first.
    const Rows icon = DrawnRows(random, 64, 64, 3);
    EXPECT_LT(icon.Compressed().size(), UsualSize(icon, 6) * 110 / 100);
}

}  // namespace
