// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Appends the names in a list: one per line, or terminated by zero bytes. Empty ones are skipped.
/// @param path       of the list, or "-" for standard input
/// @param separator  '\n' or '\0'
/// @return an exit code; a failure was reported
int ReadDrawingList(const std::string& path, char separator, std::vector<std::string>& names);

/// One part of a batch divided among several machines.
struct BatchShard {
    std::uint32_t number = 1, count = 1;  ///< 1-based number of the part, and number of parts

    /// True if a drawing belongs to this part. Depends only on its name and the number of parts, so it does
    /// not change when other drawings are added or removed.
    bool Takes(std::string_view name) const;
    /// Parses "2/8". @return false if the text is invalid
    bool Parse(std::string_view text);
};
