// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// Folder of the user's font cache: ORVPRINT_CACHE_DIR, or "orvprint" in XDG_CACHE_HOME or ~/.cache. It need
/// not exist. Empty when there is no cache: ORVPRINT_CACHE_DIR is empty, the variables give no absolute path,
/// or FONTCONFIG_SYSROOT sets another root for fontconfig.
ORV_PLATFORM_EXPORT std::string FontCacheFolder();

/// The files of the cache: the face index and the family index.
inline constexpr char kFaceIndexFile[] = "faces", kFamilyIndexFile[] = "families";

/// Reads a file of the cache. It must be a regular file; file and folder must belong to the user and must not
/// be writable by others.
/// @return false when there is no such file
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadFontCache(const std::string& folder, const char* name,
                                                     std::string& bytes);

/// Replaces a file of the cache atomically. Creates the folder, accessible only to the user, if the parent
/// folder belongs to the user.
/// @return false when it could not be written; the old file is unchanged
ORV_PLATFORM_EXPORT bool WriteFontCache(const std::string& folder, const char* name, std::string_view bytes);
