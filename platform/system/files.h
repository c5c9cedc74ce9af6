// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVFileAccessPolicy.h"
#include "platform/system/ORVUnicodeString.h"

/// Value of an environment variable, null when it is not set.
ORV_PLATFORM_EXPORT const char* ORVGetEnv(const char* name);

/// 1 when `path` names an existing regular file, else 0. Answers 0 for what the policy forbids.
ORV_PLATFORM_EXPORT int ORVFileStat(const ORVUnicodeString& path);

/// Whether the host's policy allows the file that is open as `descriptor`, wherever its name leads by now:
/// between a question about a name and the opening of it, a link may have been put in its place. True without
/// a policy, for then it was the host itself that opened the file. Where the system does not tell the names
/// of open files (a jail without /proc), the question about the name has to do, and every open file is
/// allowed.
ORV_PLATFORM_EXPORT bool ORVMayReadOpenFile(int descriptor);

/// 1 when the file at `path` may be read (mode 0) as far as the host's policy and the system go, else 0.
ORV_PLATFORM_EXPORT int ORVFileAccess(const ORVUnicodeString& path, int mode);

/// Splits a path into its folder ("" when it has none, without a trailing separator but for the root) and
/// file name.
ORV_PLATFORM_EXPORT void ORVSplitPath(const ORVUnicodeString& path, ORVUnicodeString& folder,
                                      ORVUnicodeString& name);

/// Joins a folder and a relative name. An empty folder gives the name.
ORV_PLATFORM_EXPORT ORVUnicodeString ORVMakePath(const ORVUnicodeString& folder,
                                                 const ORVUnicodeString& name);
