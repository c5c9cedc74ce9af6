// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// Deflate's length codes, for matches of 3 to 258 bytes.
struct DeflateLengths {
    std::array<std::uint8_t, 259> codes{};
    std::array<std::uint16_t, 29> bases{};
    std::array<std::uint8_t, 29> extraBits{};

    constexpr DeflateLengths() {
        std::size_t length = 3;
        for (std::size_t code = 0; code < 28; ++code) {
            extraBits[code] = static_cast<std::uint8_t>(code < 8 ? 0 : code / 4 - 1);
            bases[code] = static_cast<std::uint16_t>(length);
            for (std::size_t i = 0; i < std::size_t{1} << extraBits[code] && length < codes.size(); ++i)
                codes[length++] = static_cast<std::uint8_t>(code);
        }
        // The longest match has a code of its own without extra bits.
        bases[28] = 258;
        codes[258] = 28;
    }
};

/// A deflate block with dynamic Huffman codes. Literals and matches are collected first, then written.
class DeflateBlock {
public:
    static constexpr std::size_t kShortestMatch = 3, kLongestMatch = 258, kWindow = std::size_t{1} << 15U;
    /// Costs are in eighths of a bit.
    static constexpr unsigned int kBit = 8;

    /// Discards the tokens, and the pending bits of a previous stream.
    void Begin();

    std::size_t GetTokenCount() const { return tokenCount_; }
    /// Capacity in tokens: literals, triples of literals, and matches.
    static constexpr std::size_t kMostTokens = std::size_t{1} << 15U;

    void AddLiteral(std::uint8_t byte) {
        tokens_[tokenCount_++] = kLiteralFlag | byte;
        ++symbolCounts_[byte];
    }
    /// Adds three literals, the first one in the lowest byte.
    void AddThreeLiterals(std::uint32_t bytes) {
        tokens_[tokenCount_++] = bytes & 0xFFFFFFU;
        ++symbolCounts_[bytes & 0xFFU];
        ++symbolCounts_[bytes >> 8U & 0xFFU];
        ++symbolCounts_[bytes >> 16U & 0xFFU];
    }
    /// @param length    kShortestMatch to kLongestMatch
    /// @param distance  1 to kWindow
    void AddMatch(std::size_t length, std::size_t distance) {
        tokens_[tokenCount_++] =
            static_cast<std::uint32_t>(kMatchFlag | (length - kShortestMatch) << 15U | (distance - 1));
        ++symbolCounts_[kFirstLength + kLengths.codes[length]];
        ++distanceCounts_[DistanceCode(distance)];
    }

    /// Adds several consecutive matches of the maximum length.
    /// @param count     1 to kMostRepeats
    /// @param distance  1 to 4
    void AddLongestMatches(std::size_t count, std::size_t distance) {
        tokens_[tokenCount_++] =
            static_cast<std::uint32_t>(kMatchFlag | kRepeatFlag | count << 15U | (distance - 1));
        symbolCounts_[kFirstLength + kLengths.codes[kLongestMatch]] += static_cast<std::uint32_t>(count);
        distanceCounts_[DistanceCode(distance)] += static_cast<std::uint32_t>(count);
    }
    static constexpr std::size_t kMostRepeats = (std::size_t{1} << 15U) - 1;

    /// The estimated cost of a literal, from the tokens at the last call of UpdateCosts.
    unsigned int CostOfLiteral(std::uint8_t byte) const { return symbolCosts_[byte]; }
    unsigned int CostOfMatch(std::size_t length, std::size_t distance) const {
        return symbolCosts_[kFirstLength + kLengths.codes[length]] + distanceCosts_[DistanceCode(distance)];
    }
    void UpdateCosts();

    /// Appends the block to a stream and clears it. Up to seven bits are kept for the next block.
    void Write(std::vector<std::uint8_t>& out);
    /// Ends the stream on a byte boundary with an empty block.
    void Align(std::vector<std::uint8_t>& out);

private:
    static constexpr std::size_t kSymbols = 286, kDistances = 30, kEndOfBlock = 256, kFirstLength = 257;
    static constexpr std::uint32_t kMatchFlag = 1U << 31U, kRepeatFlag = 1U << 30U, kLiteralFlag = 1U << 30U;

    static constexpr DeflateLengths kLengths{};

    static constexpr unsigned int DistanceCode(std::size_t distance) {
        const auto number = static_cast<unsigned int>(distance - 1);
        if (number < 4) return number;
        const auto top = static_cast<unsigned int>(std::bit_width(number)) - 1;
        return 2 * top + (number >> (top - 1) & 1U);
    }
    static constexpr unsigned int ExtraBitsOfDistance(unsigned int code) {
        return code < 4 ? 0 : code / 2 - 1;
    }
    static constexpr std::size_t BaseOfDistance(unsigned int code) {
        return code < 4 ? code + 1 : ((std::size_t{2} + (code & 1U)) << ExtraBitsOfDistance(code)) + 1;
    }

    struct Codes;
    class BitWriter;
    void WriteTokens(const Codes& codes, BitWriter& writer) const;
    std::size_t CountBits(const Codes& codes) const;

    // Not initialised: a small page uses little of it.
    std::unique_ptr<std::uint32_t[]> tokens_ = std::make_unique_for_overwrite<std::uint32_t[]>(kMostTokens);
    std::size_t tokenCount_ = 0;
    std::array<std::uint32_t, kSymbols> symbolCounts_{};
    std::array<std::uint32_t, kDistances> distanceCounts_{};
    std::array<std::uint16_t, kSymbols> symbolCosts_{};
    std::array<std::uint16_t, kDistances> distanceCosts_{};
    std::uint64_t bits_ = 0;
    unsigned int bitCount_ = 0;
};
