// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/system/ORVBaseObject.h"

/// Loads a library that is needed only now and then, or finds it loaded; it stays loaded until the process
/// ends. It is looked for in the folder that modules were installed to, beside the
/// platform's own library, then in the system's library path.
/// @param library  file name without a folder
/// @param error    receives what went wrong (one line) when null is returned
/// @return a handle as dlsym takes it; null when the library cannot be loaded
ORV_PLATFORM_EXPORT void* ORVLoadModule(const char* library, std::string& error);

/// The address of something that a module exports; null with `error` when it does not.
ORV_PLATFORM_EXPORT void* ORVFindInModule(void* module, const char* name, std::string& error);
