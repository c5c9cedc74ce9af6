// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

#include "platform/system/ORVBaseObject.h"

/// What a module exports, in a program that has the module's code linked in.
struct ORVLinkedName {
    const char* name;
    void* address;
};

/// A module that is part of the program.
struct ORVLinkedModule {
    const char* library;                   ///< file name without a folder, as ORVLoadModule is asked for
    std::span<const ORVLinkedName> names;  ///< what it exports
    /// Loads the libraries that the module calls; null when there are none to be loaded.
    /// @param error  receives what went wrong (one line) when false is returned
    bool (*prepare)(std::string& error);
};

/// Makes modules known that the program has linked in: from now on they are found instead of files.
/// To be called before the first module is asked for, by programs that link the platform's code themselves.
/// @param modules  must stay as they are until the process ends
void ORVUseLinkedModules(std::span<const ORVLinkedModule> modules);

/// Loads a library that is needed only now and then, or finds it loaded; it stays loaded until the process
/// ends. It is looked for among the modules that are linked in, in the folder that modules were installed to,
/// beside the platform's own library, then in the system's library path.
/// @param library  file name without a folder
/// @param error    receives what went wrong (one line) when null is returned
/// @return a handle for ORVFindInModule; null when the library cannot be loaded
ORV_PLATFORM_EXPORT void* ORVLoadModule(const char* library, std::string& error);

/// The address of something that a module exports; null with `error` when it does not.
ORV_PLATFORM_EXPORT void* ORVFindInModule(void* module, const char* name, std::string& error);
