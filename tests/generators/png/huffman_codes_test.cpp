// SPDX-License-Identifier: Apache-2.0
#include "generators/png/huffman_codes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <queue>
#include <random>
#include <vector>

namespace {

using Counts = std::vector<std::uint32_t>;

std::vector<std::uint8_t> LengthsOf(const Counts& counts, unsigned int most) {
    std::vector<std::uint8_t> lengths(counts.size(), 99);
    ORVMakeCodeLengths(counts, most, lengths);
    return lengths;
}

/// Returns how many of all codes with `most` bits begin with one of the given codes.
std::uint64_t UsedOf(const std::vector<std::uint8_t>& lengths, unsigned int most) {
    std::uint64_t used = 0;
    for (const std::uint8_t length : lengths)
        if (length > 0) used += std::uint64_t{1} << (most - length);
    return used;
}

/// Returns the bits that an optimal code takes for all symbols: the sum of the merged pairs.
std::uint64_t LeastBits(const Counts& counts) {
    std::priority_queue<std::uint64_t, std::vector<std::uint64_t>, std::greater<>> sums;
    for (const std::uint32_t count : counts)
        if (count > 0) sums.push(count);
    std::uint64_t bits = 0;
    while (sums.size() > 1) {
        const std::uint64_t first = sums.top();
        sums.pop();
        const std::uint64_t both = first + sums.top();
        sums.pop();
        bits += both;
        sums.push(both);
    }
    return bits;
}

std::uint64_t BitsOf(const Counts& counts, const std::vector<std::uint8_t>& lengths) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) bits += std::uint64_t{counts[i]} * lengths[i];
    return bits;
}

TEST(HuffmanCodesTest, FewSymbolsHaveTheObviousCodes) {
    struct Row {
        Counts counts;
        std::vector<std::uint8_t> lengths;
    };
    for (const Row& row : {Row{{0, 0, 0}, {0, 0, 0}}, Row{{0, 5, 0}, {0, 1, 0}}, Row{{7, 0, 1}, {1, 0, 1}},
                           Row{{1, 4, 2}, {2, 1, 2}}, Row{{1, 1, 1, 1}, {2, 2, 2, 2}}})
        EXPECT_EQ(LengthsOf(row.counts, 15), row.lengths);
}

// The counts are too small for codes of more than 15 bits.
TEST(HuffmanCodesTest, CodesAreTheShortestAndLeaveNoneUnused) {
    std::mt19937 random(1);
    for (int turn = 0; turn < 300; ++turn) {
        Counts counts(2 + random() % 285);
        for (std::uint32_t& count : counts) count = random() % 3 == 0 ? 0 : 1 + random() % 5;
        counts[0] = counts[1] = 1;
        const std::vector<std::uint8_t> lengths = LengthsOf(counts, 15);
        EXPECT_EQ(UsedOf(lengths, 15), std::uint64_t{1} << 15U);
        EXPECT_EQ(BitsOf(counts, lengths), LeastBits(counts));
    }
}

// With counts that grow like this, each rarer symbol would get a code one bit longer.
TEST(HuffmanCodesTest, NoCodeIsLongerThanTheFormatAllows) {
    for (const unsigned int most : {7U, 15U}) {
        Counts counts{1, 1};
        while (counts.size() < 19) counts.push_back(counts.back() + counts[counts.size() - 2]);
        const std::vector<std::uint8_t> lengths = LengthsOf(counts, most);
        EXPECT_EQ(*std::max_element(lengths.begin(), lengths.end()), most);
        EXPECT_EQ(UsedOf(lengths, most), std::uint64_t{1} << most);
        // A rarer symbol never has a shorter code.
        EXPECT_TRUE(std::is_sorted(lengths.rbegin(), lengths.rend()));
    }
}

// The example of the format's description: lengths 3, 3, 3, 3, 3, 2, 4, 4.
TEST(HuffmanCodesTest, CodesAreThoseOfTheFormatWithTheFirstBitLowest) {
    const std::vector<std::uint8_t> lengths{3, 3, 3, 3, 3, 2, 4, 4};
    std::vector<std::uint16_t> codes(lengths.size());
    ORVMakeCodes(lengths, codes);
    EXPECT_EQ(codes, (std::vector<std::uint16_t>{0b010, 0b110, 0b001, 0b101, 0b011, 0b00, 0b0111, 0b1111}));
}

}  // namespace
