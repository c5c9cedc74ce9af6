// SPDX-License-Identifier: Apache-2.0
#include "generators/png/huffman_codes.h"

#include <algorithm>

namespace {

constexpr std::size_t kMostSymbols = 288, kMostLengths = 16;

/// A symbol that occurs, with its count, comparable as one number.
struct Leaf {
    std::uint64_t countAndSymbol = 0;

    Leaf() = default;
    Leaf(std::uint32_t count, std::size_t symbol) : countAndSymbol(std::uint64_t{count} << 16U | symbol) {}
    std::uint32_t GetCount() const { return static_cast<std::uint32_t>(countAndSymbol >> 16U); }
    std::size_t GetSymbol() const { return countAndSymbol & 0xFFFFU; }
};

using LengthCounts = std::array<unsigned int, kMostLengths>;

/// Counts the codes of each length for leaves sorted by count. @param leaves  at least two
LengthCounts CountLengths(std::span<const Leaf> leaves, unsigned int most) {
    // Each pair joins the two rarest nodes; pairs are made in the order of their sums.
    std::array<std::uint32_t, kMostSymbols> sums{};
    std::array<std::uint16_t, kMostSymbols> leafParents{}, pairParents{};
    const std::size_t pairCount = leaves.size() - 1;
    std::size_t leaf = 0, pair = 0;
    for (std::size_t made = 0; made < pairCount; ++made) {
        for (int i = 0; i < 2; ++i) {
            const bool isLeaf =
                leaf < leaves.size() && (pair == made || leaves[leaf].GetCount() <= sums[pair]);
            sums[made] += isLeaf ? leaves[leaf].GetCount() : sums[pair];
            (isLeaf ? leafParents[leaf++] : pairParents[pair++]) = static_cast<std::uint16_t>(made);
        }
    }
    std::array<unsigned int, kMostSymbols> depths{};
    for (std::size_t i = pairCount - 1; i-- > 0;) depths[i] = depths[pairParents[i]] + 1;
    LengthCounts counts{};
    for (std::size_t i = 0; i < leaves.size(); ++i) ++counts[std::min(depths[leafParents[i]] + 1, most)];
    return counts;
}

/// Shortening codes to `most` bits leaves too many codes; lengthens others until they fit (Kraft's
/// inequality).
void FitLengths(unsigned int most, LengthCounts& counts) {
    std::uint64_t used = 0;
    for (unsigned int length = 1; length <= most; ++length)
        used += std::uint64_t{counts[length]} << (most - length);
    for (; used > std::uint64_t{1} << most; --used) {
        unsigned int length = most - 1;
        while (counts[length] == 0) --length;
        --counts[length];
        counts[length + 1] += 2;
        --counts[most];
    }
}

}  // namespace

void ORVMakeCodeLengths(std::span<const std::uint32_t> counts, unsigned int most,
                        std::span<std::uint8_t> lengths) {
    std::array<Leaf, kMostSymbols> all;
    std::size_t count = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        lengths[i] = 0;
        if (counts[i] > 0) all[count++] = {counts[i], i};
    }
    const std::span<Leaf> leaves = std::span(all).first(count);
    if (count < 2) {
        for (const Leaf& leaf : leaves) lengths[leaf.GetSymbol()] = 1;
        return;
    }
    std::sort(leaves.begin(), leaves.end(),
              [](const Leaf& a, const Leaf& b) { return a.countAndSymbol < b.countAndSymbol; });
    LengthCounts lengthCounts = CountLengths(leaves, most);
    FitLengths(most, lengthCounts);
    std::size_t next = 0;
    for (unsigned int length = most; length > 0; --length)
        for (unsigned int i = 0; i < lengthCounts[length]; ++i)
            lengths[leaves[next++].GetSymbol()] = static_cast<std::uint8_t>(length);
}

void ORVMakeCodes(std::span<const std::uint8_t> lengths, std::span<std::uint16_t> codes) {
    LengthCounts counts{};
    for (const std::uint8_t length : lengths) ++counts[length];
    counts[0] = 0;
    LengthCounts next{};
    for (unsigned int length = 1; length < kMostLengths; ++length)
        next[length] = (next[length - 1] + counts[length - 1]) << 1U;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const unsigned int code = next[lengths[i]]++;
        unsigned int reversed = 0;
        for (unsigned int bit = 0; bit < lengths[i]; ++bit)
            reversed |= (code >> bit & 1U) << (lengths[i] - 1U - bit);
        codes[i] = static_cast<std::uint16_t>(reversed);
    }
}
