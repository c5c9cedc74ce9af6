// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/font_cache_bytes.h"

#include <algorithm>

namespace {

constexpr std::size_t kHeaderSize = 2 * sizeof(std::uint64_t);

/// Every step is a bijection of the state, so any change of a single word changes the result.
std::uint64_t Checksum(std::string_view bytes) {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15ULL;
    std::uint64_t sum = bytes.size();
    while (!bytes.empty()) {
        std::uint64_t word = 0;
        const std::size_t count = std::min(bytes.size(), sizeof word);
        std::memcpy(&word, bytes.data(), count);
        bytes.remove_prefix(count);
        sum = (sum ^ word) * kOdd;
        sum ^= sum >> 29;
    }
    return sum;
}

}  // namespace

std::string SealCacheFile(std::uint64_t magic, std::string_view body) {
    CacheWriter header;
    header.Put(magic);
    header.Put(Checksum(body));
    return header.Bytes() + std::string(body);
}

bool OpenCacheFile(std::string_view bytes, std::uint64_t magic, std::string_view& body) {
    if (bytes.size() < kHeaderSize) return false;
    CacheReader header(bytes.substr(0, kHeaderSize));
    std::uint64_t given = 0, checksum = 0;
    header.Take(given);
    header.Take(checksum);
    body = bytes.substr(kHeaderSize);
    return given == magic && checksum == Checksum(body);
}

std::string_view HeaderOfCacheFile(std::string_view bytes) { return bytes.substr(0, kHeaderSize); }
