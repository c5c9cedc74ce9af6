// SPDX-License-Identifier: Apache-2.0
#include "platform/system/modules.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

// Where modules are searched for, relative to the folder of the platform's library: the installation folder,
// and that folder itself, as in a build tree.
#if defined(ORV_MODULE_FOLDER)
constexpr std::array<std::string_view, 2> kFolders{ORV_MODULE_FOLDER "/", ""};
#else
constexpr std::array<std::string_view, 1> kFolders{""};
#endif

/// Folder of the platform's library with a trailing separator; empty when unknown.
std::string PlatformFolder() {
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || !info.dli_fname) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

std::span<const ORVLinkedModule> linkedModules;

const ORVLinkedModule* FindLinked(std::string_view library) {
    const auto found = std::find_if(linkedModules.begin(), linkedModules.end(),
                                    [&](const ORVLinkedModule& module) { return module.library == library; });
    return found == linkedModules.end() ? nullptr : &*found;
}

/// The linked module that a handle refers to; null for a handle from dlopen.
const ORVLinkedModule* LinkedOf(const void* handle) {
    const auto found = std::find_if(linkedModules.begin(), linkedModules.end(),
                                    [&](const ORVLinkedModule& module) { return &module == handle; });
    return found == linkedModules.end() ? nullptr : &*found;
}

void* FindInLinked(const ORVLinkedModule& module, std::string_view name) {
    const auto found = std::find_if(module.names.begin(), module.names.end(),
                                    [&](const ORVLinkedName& one) { return one.name == name; });
    return found == module.names.end() ? nullptr : found->address;
}

}  // namespace

void ORVUseLinkedModules(std::span<const ORVLinkedModule> modules) { linkedModules = modules; }

void* ORVLoadModule(const char* library, std::string& error) {
    error.clear();
    if (const ORVLinkedModule* linked = FindLinked(library)) {
        if (linked->prepare && !linked->prepare(error)) return nullptr;
        return const_cast<ORVLinkedModule*>(linked);
    }
    const std::string folder = PlatformFolder();
    for (const std::string_view inner : kFolders) {
        if (folder.empty()) break;
        std::string path = folder;
        path.append(inner).append(library);
        if (void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) return module;
        if (error.empty()) error = dlerror();
    }
    if (void* module = dlopen(library, RTLD_NOW | RTLD_LOCAL)) return module;
    const char* reason = dlerror();
    if (error.empty()) error = reason ? reason : "cannot be loaded";
    return nullptr;
}

void* ORVFindInModule(void* module, const char* name, std::string& error) {
    const ORVLinkedModule* const linked = LinkedOf(module);
    void* found = linked ? FindInLinked(*linked, name) : dlsym(module, name);
    if (!found) error = std::string("no ") + name + " in the module";
    return found;
}
