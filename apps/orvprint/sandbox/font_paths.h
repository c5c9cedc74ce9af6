// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

/// What fontconfig reads and writes, by its configuration.
struct FontPaths {
    std::vector<std::string> read;  ///< configuration files, folders of fonts, and what links in them lead to
    std::vector<std::string> caches;  ///< folders where it keeps what it found
};

/// Follows the configuration from file to file without loading fontconfig, which would take as long as many a
/// print. Paths too many may be named, such as those in comments.
/// @param isKnown  true for paths that need not be named
/// @return nothing where the configuration says more than that: then fonts may lie anywhere
std::optional<FontPaths> FindFontPaths(bool (*isKnown)(const std::string& path));
