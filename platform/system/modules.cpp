// SPDX-License-Identifier: Apache-2.0
#include "platform/system/modules.h"

#include <dlfcn.h>

#include <array>
#include <string_view>

namespace {

// Where modules are looked for, from the folder of the platform's own library: where they are installed, and
// beside it, as in a build tree.
#if defined(ORV_MODULE_FOLDER)
constexpr std::array<std::string_view, 2> kFolders{ORV_MODULE_FOLDER "/", ""};
#else
constexpr std::array<std::string_view, 1> kFolders{""};
#endif

/// Folder of the platform's own library with a trailing separator, empty when it is not known.
std::string PlatformFolder() {
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || !info.dli_fname) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

void* ORVLoadModule(const char* library, std::string& error) {
    error.clear();
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
    void* found = dlsym(module, name);
    if (!found) error = std::string("no ") + name + " in the module";
    return found;
}
