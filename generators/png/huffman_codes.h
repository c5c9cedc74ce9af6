// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Computes lengths of Huffman codes from symbol counts, none longer than `most` bits (at most 15). Unused
/// symbols get 0; a single used symbol gets 1.
void ORVMakeCodeLengths(std::span<const std::uint32_t> counts, unsigned int most,
                        std::span<std::uint8_t> lengths);

/// Computes canonical codes from their lengths, first bit in the lowest place.
void ORVMakeCodes(std::span<const std::uint8_t> lengths, std::span<std::uint16_t> codes);

/// The codes of an alphabet.
template <std::size_t kCount>
struct HuffmanCodes {
    std::array<std::uint8_t, kCount> lengths{};
    std::array<std::uint16_t, kCount> codes{};

    void Make(const std::array<std::uint32_t, kCount>& counts, unsigned int most) {
        ORVMakeCodeLengths(counts, most, lengths);
        ORVMakeCodes(lengths, codes);
    }
};
