// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVFileAccessPolicy.h"
#include "platform/system/ORVUnicodeString.h"

/// Value of an environment variable; null when it is not set.
ORV_PLATFORM_EXPORT const char* ORVGetEnv(const char* name);

/// 1 when `path` names an existing regular file that the calling thread's ORVFileAccessPolicy allows, else 0.
ORV_PLATFORM_EXPORT int ORVFileStat(const ORVUnicodeString& path);

/// Whether the calling thread's policy allows an open file. To be called after opening, because a symbolic
/// link may have been substituted between the check of the name and the open. The name is taken from
/// /proc/self/fd; where that does not exist, the check of the name has to suffice and every open file is
/// allowed. True without a policy, since then the host itself opened the file.
ORV_PLATFORM_EXPORT bool ORVMayReadOpenFile(int descriptor);

/// 1 when the policy and the system allow the file at `path` to be read, else 0. @param mode  must be 0
ORV_PLATFORM_EXPORT int ORVFileAccess(const ORVUnicodeString& path, int mode);

/// Splits a path into its folder (without a trailing slash, except for the root; "" when there is none) and
/// its file name.
ORV_PLATFORM_EXPORT void ORVSplitPath(const ORVUnicodeString& path, ORVUnicodeString& folder,
                                      ORVUnicodeString& name);

/// Joins a folder and a relative name. Returns the name when the folder is empty.
ORV_PLATFORM_EXPORT ORVUnicodeString ORVMakePath(const ORVUnicodeString& folder,
                                                 const ORVUnicodeString& name);
