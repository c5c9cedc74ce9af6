// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/visualization/fonts/InstalledFace.h"

/// A file or folder that decides which faces there are, and how it was when that was asked.
struct WatchedPath {
    std::string path;
    bool exists = false;
    std::uint64_t device = 0, inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0, modifiedPart = 0;  ///< seconds since 1970, nanoseconds
    std::int64_t changed = 0, changedPart = 0;    ///< likewise, of owner, mode and links, too

    bool operator==(const WatchedPath&) const = default;
};

/// What fontconfig answered, and all that the answer depends on.
struct FaceIndex {
    std::string environment;  ///< the variables that steer fontconfig
    std::vector<WatchedPath> watched;
    std::vector<InstalledFace> faces;

    bool operator==(const FaceIndex&) const = default;
};

/// The bytes of an index's file.
ORV_PLATFORM_EXPORT std::string EncodeFaceIndex(const FaceIndex& index);
/// Reads the bytes of an index's file. Changed, cut and foreign files are told by their checksum, and nothing
/// in them is believed without a look at the sizes.
/// @return false when it is no index of this version; `index` is then of no use
[[nodiscard]] ORV_PLATFORM_EXPORT bool DecodeFaceIndex(std::string_view bytes, FaceIndex& index);

/// The variables that steer fontconfig with their values.
ORV_PLATFORM_EXPORT std::string FontEnvironment();
/// How the paths are now. Symbolic links are followed.
ORV_PLATFORM_EXPORT std::vector<WatchedPath> Watch(const std::vector<std::string>& paths);
[[nodiscard]] ORV_PLATFORM_EXPORT bool IsUnchanged(const std::vector<WatchedPath>& watched);
/// True when none of them changed at `second` (since 1970) or later.
[[nodiscard]] ORV_PLATFORM_EXPORT bool IsOlderThan(const std::vector<WatchedPath>& watched,
                                                   std::int64_t second);
