// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/visualization/fonts/InstalledFace.h"

/// State of a file or folder that determines which faces are installed.
struct WatchedPath {
    std::string path;
    bool exists = false;
    std::uint64_t device = 0, inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0, modifiedPart = 0;  ///< modification time: seconds since 1970, nanoseconds
    std::int64_t changed = 0, changedPart = 0;    ///< status change time, which includes owner, mode and
                                                  ///< links: seconds since 1970, nanoseconds

    bool operator==(const WatchedPath&) const = default;
};

/// The installed faces as reported by fontconfig, together with everything that the report depends on.
struct FaceIndex {
    std::string environment;  ///< the environment variables that affect fontconfig
    std::vector<WatchedPath> watched;
    std::vector<InstalledFace> faces;

    bool operator==(const FaceIndex&) const = default;
};

/// Serialises an index.
ORV_PLATFORM_EXPORT std::string EncodeFaceIndex(const FaceIndex& index);
/// Deserialises an index. A checksum detects modified, truncated and foreign files; sizes are checked before
/// use.
/// @return false when the bytes are not an index of this version; `index` is then unspecified
[[nodiscard]] ORV_PLATFORM_EXPORT bool DecodeFaceIndex(std::string_view bytes, FaceIndex& index);

/// The environment variables that affect fontconfig, with their values.
ORV_PLATFORM_EXPORT std::string FontEnvironment();
/// Current state of the paths. Symbolic links are followed.
ORV_PLATFORM_EXPORT std::vector<WatchedPath> Watch(const std::vector<std::string>& paths);
[[nodiscard]] ORV_PLATFORM_EXPORT bool IsUnchanged(const std::vector<WatchedPath>& watched);
/// True when none of the paths changed at or after `second` (seconds since 1970).
[[nodiscard]] ORV_PLATFORM_EXPORT bool IsOlderThan(const std::vector<WatchedPath>& watched,
                                                   std::int64_t second);
