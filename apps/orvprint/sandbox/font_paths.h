// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

/// The paths that fontconfig reads and writes according to its configuration.
struct FontPaths {
    std::vector<std::string> read;    ///< configuration files, font folders, and the targets of links in them
    std::vector<std::string> caches;  ///< cache folders
};

/// Follows the configuration from file to file without loading fontconfig, which would take longer than many
/// a print. May return too many paths, for example some from comments.
/// @param isKnown  true for paths that need not be listed
/// @return nothing if the configuration uses features that are not read here; fonts may then be anywhere
std::optional<FontPaths> FindFontPaths(bool (*isKnown)(const std::string& path));
