// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// The folder of the user's index of faces: that of ORVPRINT_CACHE_DIR, or "orvprint" in XDG_CACHE_HOME or in
/// ~/.cache. It need not exist. Empty when there is to be no index: where ORVPRINT_CACHE_DIR is empty, where
/// no absolute path comes of the variables, and where fontconfig is told of another root
/// (FONTCONFIG_SYSROOT).
ORV_PLATFORM_EXPORT std::string FaceIndexFolder();

/// Reads the index's file. Only a regular file in a folder that both belong to the user and that nobody else
/// may write is read.
/// @return false when there is no such file
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadFaceIndexFile(const std::string& folder, std::string& bytes);

/// Replaces the index's file, so that others find either the old or the new one. The folder is made, for the
/// user alone, where the folder above it belongs to the user.
/// @return false when it could not be written; the old file is then as it was
ORV_PLATFORM_EXPORT bool WriteFaceIndexFile(const std::string& folder, std::string_view bytes);
