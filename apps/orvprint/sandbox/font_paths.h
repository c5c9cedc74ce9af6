// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

/// The paths that fontconfig reads and writes, from its configuration.
struct FontPaths {
    /// Configuration files, font folders, and targets of links in them.
    std::vector<std::string> read;
    /// Cache folders of fontconfig.
    std::vector<std::string> caches;
};

/// Follows the configuration files without loading fontconfig, which would take as long as many a print. The
/// result may contain superfluous paths, such as those in comments.
/// @param isKnown  true for paths that may be omitted
/// @return nothing if the configuration cannot be understood; fonts may then be anywhere
std::optional<FontPaths> FindFontPaths(bool (*isKnown)(const std::string& path));
