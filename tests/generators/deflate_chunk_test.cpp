// SPDX-License-Identifier: Apache-2.0
#include "generators/common/deflate_chunk.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <zlib.h>

#include <algorithm>
#include <functional>
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

TEST(DeflateChunkTest, PiecesMakeOneStream) {
    std::vector<std::uint8_t> stream(std::begin(kZlibHeader), std::end(kZlibHeader)), all;
    std::uint32_t adler = 1;
    for (const auto& piece :
         {RandomBytes(70'000, 3), RandomBytes(1, 2), RandomBytes(1023, 256),
          std::vector<std::uint8_t>(300'000, 255), RandomBytes(200'000, 256), std::vector<std::uint8_t>()}) {
        ASSERT_TRUE(ORVDeflateChunk(piece, stream));
        adler = ORVCombineAdler32(adler, ORVAdler32(piece), piece.size());
        all.insert(all.end(), piece.begin(), piece.end());
    }
    stream.insert(stream.end(), std::begin(kLastBlock), std::end(kLastBlock));
    for (int shift = 24; shift >= 0; shift -= 8) stream.push_back(static_cast<std::uint8_t>(adler >> shift));
    EXPECT_EQ(Inflate(stream, all.size()), all);  // zlib verifies the checksum
}

TEST(DeflateChunkTest, WholeStreamsStandForThemselves) {
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 5000U, 1'000'000U}) {
        const std::vector<std::uint8_t> bytes = RandomBytes(size, 7);
        std::vector<std::uint8_t> stream;
        ASSERT_TRUE(ORVDeflateWhole(bytes, stream));
        EXPECT_EQ(Inflate(stream, size), bytes) << size;
    }
}

// Random decimal numbers resemble page content.
TEST(DeflateChunkTest, PacksAboutAsWellAsZlib) {
    std::mt19937 random(1);
    std::string text;
    while (text.size() < 300'000) text += std::to_string(random() % 100'000) + (random() % 2 ? " l\n" : " ");
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    std::vector<std::uint8_t> stream, usual(compressBound(bytes.size()));
    ASSERT_TRUE(ORVDeflateWhole(bytes, stream));
    EXPECT_EQ(Inflate(stream, bytes.size()), bytes);
    uLongf length = usual.size();
    ASSERT_EQ(compress2(usual.data(), &length, bytes.data(), bytes.size(), Z_BEST_SPEED), Z_OK);
    EXPECT_LT(static_cast<double>(stream.size()), 1.1 * static_cast<double>(length));
}

/// Runs a function on a thread whose stack is at a random address.
void RunElsewhere(std::mt19937_64& random, const std::function<void()>& work) {
    constexpr std::size_t kStackSize = std::size_t{1} << 20U;
    constexpr std::uint64_t kPlaces = (std::uint64_t{1} << 46U) - 1, kPage = 4096;
    void* stack = MAP_FAILED;
    while (stack == MAP_FAILED)
        stack = mmap(reinterpret_cast<void*>((random() & kPlaces) / kPage * kPage), kStackSize,
                     PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, kStackSize);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    munmap(stack, kStackSize);
}

// Without precautions, the fast compressor occasionally finds other matches, depending on memory addresses.
// What varies is whether the first bytes of the input are matched, so many different beginnings are tried.
TEST(DeflateChunkTest, BytesDoNotDependOnWhereMemoryLies) {
    constexpr int kInputs = 200, kPlaces = 600;
    std::mt19937_64 random(1);
    std::vector<std::vector<std::uint8_t>> inputs;
    for (int i = 0; i < kInputs; ++i) {
        std::vector<std::uint8_t> bytes(300);
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() % 64);
        std::copy_n(bytes.begin(), 10, bytes.begin() + 200);
        inputs.push_back(std::move(bytes));
    }
    const auto packAll = [&](std::vector<std::vector<std::uint8_t>>& streams) {
        for (const std::vector<std::uint8_t>& bytes : inputs)
            EXPECT_TRUE(ORVDeflateWhole(bytes, streams.emplace_back()));
    };
    std::vector<std::vector<std::uint8_t>> expected;
    packAll(expected);
    int others = 0;
    for (int place = 0; place < kPlaces; ++place) {
        std::vector<std::vector<std::uint8_t>> streams;
        RunElsewhere(random, [&] { packAll(streams); });
        others += streams == expected ? 0 : 1;
    }
    EXPECT_EQ(others, 0);
}

TEST(DeflateChunkTest, ChecksumsAreTheUsualOnes) {
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
