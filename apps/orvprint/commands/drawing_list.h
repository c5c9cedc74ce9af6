// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Adds the names that a list holds, in its order: one a line, or with a zero byte behind each. Empty ones
/// are passed over.
/// @param path       of the list, or "-" for standard input
/// @param separator  '\n' or '\0'
/// @return an exit code; a failure was reported
int ReadDrawingList(const std::string& path, char separator, std::vector<std::string>& names);

/// One part of a batch that several machines share.
struct BatchShard {
    std::uint32_t number = 1, count = 1;  ///< number from 1 on

    /// Which part a drawing belongs to depends on its name and the count alone: it stays in its part when
    /// others come and go.
    bool Takes(std::string_view name) const;
    /// Reads "2/8". @return false when it is no such text
    bool Parse(std::string_view text);
};
