#include "generators/common/deflate_piece.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <string>

namespace {

std::vector<std::uint8_t> RandomBytes(std::size_t count, unsigned int kinds) {
    std::mt19937 random(static_cast<unsigned int>(count));
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() % kinds);
    return bytes;
}

std::vector<std::uint8_t> Inflate(const std::vector<std::uint8_t>& stream, std::size_t size) {
    std::vector<std::uint8_t> out(size + 1);
    uLongf length = out.size();
    EXPECT_EQ(uncompress(out.data(), &length, stream.data(), stream.size()), Z_OK);
    out.resize(length);
    return out;
}

TEST(DeflatePieceTest, PiecesMakeOneStream) {
    std::vector<std::uint8_t> stream(std::begin(kZlibHeader), std::end(kZlibHeader)), all;
    std::uint32_t adler = 1;
    for (const auto& piece :
         {RandomBytes(70'000, 3), RandomBytes(1, 2), RandomBytes(1023, 256),
          std::vector<std::uint8_t>(300'000, 255), RandomBytes(200'000, 256), std::vector<std::uint8_t>()}) {
        ASSERT_TRUE(ORVDeflatePiece(piece, stream));
        adler = ORVCombineAdler32(adler, ORVAdler32(piece), piece.size());
        all.insert(all.end(), piece.begin(), piece.end());
    }
    stream.insert(stream.end(), std::begin(kLastBlock), std::end(kLastBlock));
    for (int shift = 24; shift >= 0; shift -= 8) stream.push_back(static_cast<std::uint8_t>(adler >> shift));
    EXPECT_EQ(Inflate(stream, all.size()), all);  // checks the checksum, too
}

TEST(DeflatePieceTest, WholeStreamsStandForThemselves) {
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 5000U, 1'000'000U}) {
        const std::vector<std::uint8_t> bytes = RandomBytes(size, 7);
        std::vector<std::uint8_t> stream;
        ASSERT_TRUE(ORVDeflateWhole(bytes, stream));
        EXPECT_EQ(Inflate(stream, size), bytes) << size;
    }
}

// The fast compressor does not always make the same of short inputs.
TEST(DeflatePieceTest, ShortInputsArePackedAsZlibPacksThem) {
    for (std::size_t size = 0; size < 1024; size += 31) {
        const std::vector<std::uint8_t> bytes = RandomBytes(size, 5);
        std::vector<std::uint8_t> stream, expected(compressBound(static_cast<uLong>(size)));
        ASSERT_TRUE(ORVDeflateWhole(bytes, stream));
        uLongf length = expected.size();
        ASSERT_EQ(compress(expected.data(), &length, bytes.data(), static_cast<uLong>(size)), Z_OK);
        expected.resize(length);
        EXPECT_EQ(stream, expected) << size;
    }
}

TEST(DeflatePieceTest, ChecksumsAreTheUsualOnes) {
    const std::vector<std::uint8_t> bytes = RandomBytes(100'003, 256);
    EXPECT_EQ(ORVAdler32(bytes), adler32(1, bytes.data(), static_cast<uInt>(bytes.size())));
    EXPECT_EQ(ORVCrc32(bytes), crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
    for (const std::size_t cut : {std::size_t{0}, std::size_t{1}, std::size_t{65521}, bytes.size()}) {
        const std::span<const std::uint8_t> all(bytes);
        EXPECT_EQ(
            ORVCombineAdler32(ORVAdler32(all.first(cut)), ORVAdler32(all.subspan(cut)), bytes.size() - cut),
            ORVAdler32(all))
            << cut;
    }
}

}  // namespace
