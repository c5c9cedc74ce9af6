// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Lengths of Huffman codes for symbols that occur so often, none longer than `most` bits (at most 15). A
/// symbol that does not occur gets 0; one that is alone gets 1.
void ORVMakeCodeLengths(std::span<const std::uint32_t> counts, unsigned int most,
                        std::span<std::uint8_t> lengths);

/// The canonical codes of such lengths, the first bit being the lowest.
void ORVMakeCodes(std::span<const std::uint8_t> lengths, std::span<std::uint16_t> codes);

/// Codes of some symbols.
template <std::size_t kCount>
struct HuffmanCodes {
    std::array<std::uint8_t, kCount> lengths{};
    std::array<std::uint16_t, kCount> codes{};

    void Make(const std::array<std::uint32_t, kCount>& counts, unsigned int most) {
        ORVMakeCodeLengths(counts, most, lengths);
        ORVMakeCodes(lengths, codes);
    }
};
