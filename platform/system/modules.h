// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

#include "platform/system/ORVBaseObject.h"

/// A symbol exported by a module that is linked into the program.
struct ORVLinkedName {
    const char* name;
    void* address;
};

/// A module that is linked into the program.
struct ORVLinkedModule {
    const char* library;                   ///< file name as passed to ORVLoadModule, without a folder
    std::span<const ORVLinkedName> names;  ///< exported symbols
    /// Loads the libraries that the module depends on; null when there are none to load.
    /// @param error  receives a message of one line when false is returned
    bool (*prepare)(std::string& error);
};

/// Registers modules that are linked into the program; they are then used instead of files. Programs that
/// link the platform's code statically call this before the first module is loaded.
/// @param modules  must stay valid until the process ends
void ORVUseLinkedModules(std::span<const ORVLinkedModule> modules);

/// Loads a module, or returns it if it is already loaded; it stays loaded until the process ends. The search
/// order is: modules linked into the program, the folder that modules are installed to, the folder of the
/// platform's own library, the system's library path.
/// @param library  file name without a folder
/// @param error    receives a message of one line when null is returned
/// @return a handle for ORVFindInModule; null when the module cannot be loaded
ORV_PLATFORM_EXPORT void* ORVLoadModule(const char* library, std::string& error);

/// Address of a symbol that a module exports; null, with `error` set, when it does not export it.
ORV_PLATFORM_EXPORT void* ORVFindInModule(void* module, const char* name, std::string& error);
