// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// XXH3-128 as 32 hexadecimal digits, as `xxhsum -H128` prints it. Detects changed content; not a
/// cryptographic hash.
std::string HashOfText(std::string_view text);

/// The content of a file.
struct FileContent {
    std::string hash;         ///< empty if it could not be read or is not a regular file
    std::uint64_t bytes = 0;  ///< its size in bytes
};
FileContent HashFile(const std::string& path);

/// A hash that depends on the text only and is the same on all machines.
std::uint64_t StableNumber(std::string_view text);
