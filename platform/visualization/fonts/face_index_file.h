// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// Folder of the user's face index: ORVPRINT_CACHE_DIR, or "orvprint" in XDG_CACHE_HOME or ~/.cache. It need
/// not exist. Empty when no index is used: ORVPRINT_CACHE_DIR is empty, the variables give no absolute path,
/// or FONTCONFIG_SYSROOT sets another root for fontconfig.
ORV_PLATFORM_EXPORT std::string FaceIndexFolder();

/// Reads the index file. It must be a regular file; file and folder must belong to the user and must not be
/// writable by others.
/// @return false when there is no such file
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadFaceIndexFile(const std::string& folder, std::string& bytes);

/// Replaces the index file atomically. Creates its folder, accessible only to the user, if the parent folder
/// belongs to the user.
/// @return false when it could not be written; the old file is unchanged
ORV_PLATFORM_EXPORT bool WriteFaceIndexFile(const std::string& folder, std::string_view bytes);
