// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// XXH3 of 128 bits, as 32 hexadecimal digits: what `xxhsum -H128` prints. Tells whether content changed; no
/// protection against somebody who wants two contents to look alike.
std::string HashOfText(std::string_view text);

/// What a file holds.
struct FileContent {
    std::string hash;         ///< empty when it could not be read, or is no regular file
    std::uint64_t bytes = 0;  ///< its size
};
FileContent HashFile(const std::string& path);

/// A number that depends on nothing but the text, on any machine.
std::uint64_t StableNumber(std::string_view text);
