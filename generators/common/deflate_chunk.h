// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Appends a byte-aligned fragment of a deflate stream that refers to nothing before it, so that fragments
/// compressed by several threads can be concatenated.
/// @return false on failure
[[nodiscard]] bool ORVDeflateChunk(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& out);

/// Appends a complete zlib stream.
/// @return false on failure
[[nodiscard]] bool ORVDeflateWhole(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& out);

/// Header of a zlib stream that consists of such fragments.
inline constexpr std::uint8_t kZlibHeader[]{0x78, 0x01};
/// An empty final block, which follows the last fragment. The Adler-32 of all bytes comes next.
inline constexpr std::uint8_t kLastBlock[]{0x03, 0x00};

/// Checksums: Adler-32, the Adler-32 of two concatenated ranges, and CRC-32.
std::uint32_t ORVAdler32(std::span<const std::uint8_t> bytes);
std::uint32_t ORVCombineAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength);
std::uint32_t ORVCrc32(std::span<const std::uint8_t> bytes);
