// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// 128-bit XXH3 as 32 hexadecimal digits, as printed by `xxhsum -H128`. Detects changes of content; it is not
/// secure against deliberate collisions.
std::string HashOfText(std::string_view text);

/// Hash and size of a file.
struct FileContent {
    std::string hash;         ///< empty if the file could not be read or is not a regular file
    std::uint64_t bytes = 0;  ///< size
};
FileContent HashFile(const std::string& path);

/// A number that depends only on the text, and is the same on all machines.
std::uint64_t StableNumber(std::string_view text);
