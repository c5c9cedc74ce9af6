// SPDX-License-Identifier: Apache-2.0

// The reader of PNG files: each file as it is, and with correct chunk checksums, because most changed files
// would be rejected by their checksums alone.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/image_check.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

std::uint32_t Number(std::string_view file, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8U | static_cast<unsigned char>(file[offset + i]);
    return number;
}

std::uint32_t Checksum(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

// A chunk consists of the data's length, a type of four letters, the data, and a checksum of type and data.
std::string WithChecksums(std::string_view file) {
    std::string result(file);
    for (std::size_t chunk = 8; chunk + 12 <= file.size();) {
        const std::uint32_t length = Number(file, chunk);
        if (length > file.size() - chunk - 12) break;
        const std::size_t end = chunk + 8 + length;
        const std::uint32_t crc = Checksum(file.substr(chunk + 4, 4 + length));
        for (std::size_t i = 0; i < 4; ++i) result[end + i] = static_cast<char>(crc >> (24 - 8 * i) & 0xFFU);
        chunk = end + 4;
    }
    return result;
}

const FuzzTarget kTarget("png", [](std::string_view file) {
    CheckImageReader(ReadMemoryPNGPixelImage, file);
    CheckImageReader(ReadMemoryPNGPixelImage, WithChecksums(file));
});

}  // namespace
