// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Appends a piece of a deflate stream that ends on a byte and stands for itself, so that pieces made by
/// several threads can be put one after the other.
/// @return false when it failed
[[nodiscard]] bool ORVDeflateChunk(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& out);

/// Appends a whole zlib stream.
/// @return false when it failed
[[nodiscard]] bool ORVDeflateWhole(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& out);

/// What begins a zlib stream of pieces.
inline constexpr std::uint8_t kZlibHeader[]{0x78, 0x01};
/// What ends its pieces: an empty last block. The Adler-32 of all bytes follows.
inline constexpr std::uint8_t kLastBlock[]{0x03, 0x00};

/// Checksums: Adler-32 of bytes, of two parts together, and CRC-32.
std::uint32_t ORVAdler32(std::span<const std::uint8_t> bytes);
std::uint32_t ORVCombineAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength);
std::uint32_t ORVCrc32(std::span<const std::uint8_t> bytes);
